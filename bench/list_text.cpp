#include "list_text.h"

#include <array>
#include <charconv>
#include <memory>

namespace pmx::bench {

namespace {

constexpr char Separator = '~';

/// Of code page 932.
constexpr bool IsLeadByte(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/// True when the byte at `position`, itself no lead byte, is the second of a character: when an odd number of
/// lead bytes stands right before it.
bool IsTrailByte(std::string_view text, std::size_t position) {
    std::size_t run = position;
    while (run > 0 && IsLeadByte(text[run - 1])) {
        --run;
    }
    return (position - run) % 2 != 0;
}

std::size_t SeparatorIn(std::string_view text) {
    std::size_t position = text.find(Separator);
    while (position != std::string_view::npos && IsTrailByte(text, position)) {
        position = text.find(Separator, position + 1);
    }
    return std::min(position, text.size());
}

/// Takes the next field, and the separator after it, off the value.
std::string_view TakeField(std::string_view& value) {
    const std::size_t end = SeparatorIn(value);
    const std::string_view field = value.substr(0, end);
    value.remove_prefix(std::min(end + 1, value.size()));
    return field;
}

} // namespace

std::size_t NumberOf(std::string_view text) {
    std::size_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void AddFavorite(std::string_view value, CPMXTemplUIListDataArray& list) {
    std::array<std::string_view, 6> fields;
    for (std::string_view& field : fields) {
        field = TakeField(value);
    }
    if (fields.back().empty() || !value.empty()) {
        return;
    }
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetStandard(fields[0] == "1" ? 1 : 0);
    record->SetName(fields[1]);
    record->SetLevel(static_cast<std::int32_t>(NumberOf(fields[2])));
    record->SetToolbar(fields[3] == "1" ? 1 : 0);
    record->SetIconIndex(static_cast<std::int64_t>(NumberOf(fields[4])));
    record->SetFileName(fields[5]);
    list.Add(std::move(record));
}

void AppendValue(const CPMXTemplUIListData& record, std::string& text) {
    text += record.IsStandard() ? "1~" : "0~";
    text += record.GetName();
    text += Separator;
    text += std::to_string(record.GetLevel());
    text += record.GetToolbar() == 1 ? "~1~" : "~0~";
    text += std::to_string(record.GetIconIndex());
    text += Separator;
    text += record.GetFileName();
}

void SectionReader::Take(std::string_view key, std::string_view value) {
    constexpr std::string_view prefix = DataKeyPrefix;
    if (key.starts_with(prefix)) {
        if (NumberOf(key.substr(prefix.size())) < Count) {
            AddFavorite(value, List);
        }
    } else if (key == CountKey) {
        Count = NumberOf(value);
    }
}

} // namespace pmx::bench
