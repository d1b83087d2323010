#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

#include <algorithm>

// The practical limit: what a program would do that trusts the file to be as the store writes it, keeps
// nothing else in it, and does no more work than that needs.

namespace pmx::bench {

namespace {

constexpr std::string_view LineEnd = "\r\n";

/// Takes the next line off the text.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end == 0 ? 0 : end - 1);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    const std::string bytes = ReadWhole(place.Path);
    std::string_view text = bytes;
    TakeLine(text); // the section's
    SectionReader reader(list);
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        const std::size_t equals = line.find('=');
        reader.Take(line.substr(0, equals), line.substr(equals + 1));
    }
}

void Save(const Place& place, CPMXTemplUIListDataArray& list) {
    constexpr std::size_t usualLength = 80;
    std::string text;
    text.reserve(static_cast<std::size_t>(list.GetSize()) * usualLength);
    text.append("[").append(Section).append("]").append(LineEnd);
    text.append(CountKey).append("=").append(std::to_string(list.GetSize())).append(LineEnd);
    for (std::int64_t index = 0; index < list.GetSize(); ++index) {
        text.append(DataKeyPrefix).append(std::to_string(index)).append("=");
        AppendValue(list.At(index), text);
        text.append(LineEnd);
    }
    ReplaceWhole(place.Path, text);
}

const Added Limit{{"limit", Load, Save}};

} // namespace

} // namespace pmx::bench
