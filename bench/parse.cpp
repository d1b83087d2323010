#include "parse.h"

#include "store/levels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace pmx::bench {

namespace {

constexpr std::string_view KeyPrefix = "TemplateData";
constexpr char Separator = '~';

constexpr std::array<bool, 256> MakeLeadBytes() {
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    }
    return table;
}

constexpr std::array<bool, 256> LeadBytes = MakeLeadBytes();

constexpr bool IsBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Blanks are never trail bytes.
std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

template <typename Number>
Number NumberOf(std::string_view text) {
    Number number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

constexpr bool IsLeadByte(char character) {
    return LeadBytes[static_cast<unsigned char>(character)];
}

/// True when the byte at `position`, itself no lead byte, is the second of a character of the text from
/// `begin`: when an odd number of lead bytes stands right before it.
bool IsTrailByte(std::string_view text, std::size_t begin, std::size_t position) {
    std::size_t run = position;
    while (run > begin && IsLeadByte(text[run - 1])) {
        --run;
    }
    return (position - run) % 2 != 0;
}

std::size_t SeparatorAfter(std::string_view value, std::size_t begin, bool isDoubleByte) {
    std::size_t position = value.find(Separator, begin);
    while (isDoubleByte && position != std::string_view::npos && IsTrailByte(value, begin, position)) {
        position = value.find(Separator, position + 1);
    }
    return std::min(position, value.size());
}

using Fields = std::array<std::string_view, 6>;

bool Split(std::string_view value, bool isDoubleByte, Fields& fields) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < value.size();) {
        const std::size_t end = SeparatorAfter(value, begin, isDoubleByte);
        if (end > begin) {
            if (count == fields.size()) {
                return false;
            }
            fields[count++] = value.substr(begin, end - begin);
        }
        begin = end + 1;
    }
    return count == fields.size();
}

} // namespace

std::optional<std::size_t> DataNumber(std::string_view key) {
    if (!key.starts_with(KeyPrefix)) {
        return std::nullopt;
    }
    const std::string_view digits = key.substr(KeyPrefix.size());
    std::size_t number = 0;
    const std::from_chars_result end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = end.ec == std::errc() && end.ptr == digits.data() + digits.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::size_t CountOf(std::string_view value) {
    return static_cast<std::size_t>(std::max(NumberOf<std::int32_t>(value), 0));
}

std::unique_ptr<CPMXTemplUIListData> FavoriteOf(std::string_view value, bool isDoubleByte) {
    Fields fields;
    if (!Split(value, isDoubleByte, fields)) {
        return nullptr;
    }
    const std::string_view name = WithoutBlanks(fields[1]);
    const std::string_view fileName = WithoutBlanks(fields[5]);
    const auto level = NumberOf<std::int32_t>(fields[2]);
    const bool isDamaged =
        name.empty() || fileName.empty() ||
        (IsStandardLevel(level) && !IsKnownStandardNumber(NumberOf<std::int32_t>(fileName)));
    if (isDamaged) {
        return nullptr;
    }
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetStandard(NumberOf<std::int32_t>(fields[0]) != 0 ? 1 : 0);
    record->SetName(name);
    record->SetLevel(level);
    record->SetToolbar(NumberOf<std::int32_t>(fields[3]) != 0 ? 1 : 0);
    record->SetIconIndex(NumberOf<std::int32_t>(fields[4]));
    record->SetFileName(fileName);
    return record;
}

} // namespace pmx::bench
