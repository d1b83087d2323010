#include "limit.h"

#include "durable.h"
#include "parse.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace pmx::bench {

namespace {

constexpr std::string_view Header = "[PMXTemplateList]";
constexpr std::string_view CountKey = "TemplateNum";
constexpr std::string_view LineEnd = "\r\n";
constexpr std::size_t ShortestLine = std::string_view("TemplateData0=0~a~1~0~0~b\n").size();

/// Takes the next line, without its end, off the text.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

void SkipToSection(std::string_view& text) {
    while (!text.empty() && TakeLine(text) != Header) {
    }
}

void AppendNumber(std::string& text, std::int64_t number) {
    std::array<char, 24> digits{};
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

void AppendFavorite(std::string& text, std::size_t number, const CPMXTemplUIListData& record) {
    text += "TemplateData";
    AppendNumber(text, static_cast<std::int64_t>(number));
    text += record.GetStandard() == 1 ? "=1~" : "=0~";
    text += record.GetName();
    text += '~';
    AppendNumber(text, record.GetLevel());
    text += record.GetToolbar() == 1 ? "~1~" : "~0~";
    AppendNumber(text, record.GetIconIndex());
    text += '~';
    text += record.GetFileName();
    text += LineEnd;
}

} // namespace

Records LoadAtLimit(const std::string& path) {
    const std::string bytes = ReadBytes(path);
    std::string_view text = bytes;
    SkipToSection(text);
    Records records;
    std::size_t count = 0;
    while (!text.empty() && text.front() != '[') {
        const std::string_view line = TakeLine(text);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            continue;
        }
        const std::string_view key = line.substr(0, equals);
        const std::string_view value = line.substr(equals + 1);
        if (const std::optional<std::size_t> number = DataNumber(key)) {
            std::unique_ptr<CPMXTemplUIListData> record = *number < count ? FavoriteOf(value, true) : nullptr;
            if (record) {
                records.push_back(std::move(record));
            }
        } else if (key == CountKey) {
            count = CountOf(value);
            records.reserve(std::min(count, text.size() / ShortestLine));
        }
    }
    return records;
}

void SaveAtLimit(const std::string& path, const Records& records) {
    constexpr std::size_t UsualLength = 80;
    std::string text;
    text.reserve(records.size() * UsualLength);
    text += Header;
    text += LineEnd;
    text += CountKey;
    text += '=';
    AppendNumber(text, static_cast<std::int64_t>(records.size()));
    text += LineEnd;
    for (std::size_t number = 0; number < records.size(); ++number) {
        AppendFavorite(text, number, *records[number]);
    }
    ReplaceDurably(path, text);
}

} // namespace pmx::bench
