#include "platform/text.h"

#include <utility>

namespace pmx {

namespace {

char Folded(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr LeadByteTable MakeLeadBytesOf932() {
    LeadByteTable table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    }
    return table;
}

constexpr LeadByteTable None{};
constexpr LeadByteTable Of932 = MakeLeadBytesOf932();

/// Number of bytes of the well-formed UTF-8 sequence that begins with `first`; 0 when none does.
std::size_t Utf8Length(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xC2 || first > 0xF4) {
        return 0;
    }
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/// The values that the second byte of a sequence may have: neither longer forms, nor surrogates, nor more
/// than there is.
bool IsUtf8Second(unsigned char first, unsigned char second) {
    const unsigned char least = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned char most = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    return second >= least && second <= most;
}

std::u16string Utf16Units(std::string_view bytes, bool isBigEndian) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t position = 0; position + 1 < bytes.size(); position += 2) {
        const auto first = static_cast<unsigned char>(bytes[position]);
        const auto second = static_cast<unsigned char>(bytes[position + 1]);
        units += static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
    }
    return units;
}

DecodedText DecodeUtf16(std::string_view bytes, bool isBigEndian) {
    const std::u16string units = Utf16Units(bytes, isBigEndian);
    std::string text = FromUtf16(units);
    const bool isWhole = bytes.size() % 2 == 0 && ToUtf16(text) == units;
    return {std::move(text), isWhole};
}

} // namespace

DecodedText DecodeContent(std::string content) {
    const std::string_view bytes = content;
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        std::string text = FromUtf8(bytes.substr(3));
        const bool isWhole = ToUtf8(text) == bytes.substr(3);
        return {std::move(text), isWhole};
    }
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        return DecodeUtf16(bytes.substr(2), bytes.front() == '\xFE');
    }
    return {std::move(content)};
}

std::size_t FileNameStart(std::string_view path) {
    std::size_t start = 0;
    for (std::size_t position = 0; position < path.size();
         position += CharacterLength(path, position, SystemLeadBytes())) {
        if (path[position] == '\\' || path[position] == '/' || path[position] == ':') {
            start = position + 1;
        }
    }
    return start;
}

bool IsUtf8(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
        const std::size_t length = Utf8Length(byteAt(position));
        if (length == 0 || text.size() - position < length ||
            (length > 1 && !IsUtf8Second(byteAt(position), byteAt(position + 1)))) {
            return false;
        }
        for (std::size_t next = position + 2; next < position + length; ++next) {
            if ((byteAt(next) & 0xC0U) != 0x80) {
                return false;
            }
        }
        position += length;
    }
    return true;
}

const LeadByteTable& LeadBytesOf932() {
    return Of932;
}

const LeadByteTable& LeadBytesIn(std::string_view text, const LeadByteTable& system) {
    if (system[0x81]) {
        return system;
    }
    return IsUtf8(text) ? None : Of932;
}

std::size_t CharacterLength(std::string_view text, std::size_t position, const LeadByteTable& leadBytes) {
    const bool isLead = leadBytes[static_cast<unsigned char>(text[position])];
    return isLead && position + 1 < text.size() ? 2 : 1;
}

std::size_t FindSingleByte(std::string_view text, char wanted, const LeadByteTable& leadBytes,
                           std::size_t from) {
    std::size_t position = text.find(wanted, from);
    while (position != std::string_view::npos && IsTrailByte(text, position, leadBytes, from)) {
        from = position + 1;
        position = text.find(wanted, from);
    }
    return position;
}

std::size_t LengthWithin(std::string_view text, std::size_t limit, const LeadByteTable& leadBytes) {
    if (text.size() <= limit) {
        return text.size();
    }
    std::size_t length = 0;
    while (length < limit) {
        const std::size_t next = length + CharacterLength(text, length, leadBytes);
        if (next > limit) {
            break;
        }
        length = next;
    }
    return length;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right, const LeadByteTable& leadBytes) {
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t position = 0; position < left.size();) {
        const std::size_t length = CharacterLength(left, position, leadBytes);
        const bool equal = length == 1 ? Folded(left[position]) == Folded(right[position])
                                       : left.substr(position, 2) == right.substr(position, 2);
        if (!equal) {
            return false;
        }
        position += length;
    }
    return true;
}

std::string_view TrimmedAtEnds(std::string_view text, const LeadByteTable& leadBytes) {
    std::size_t begin = 0;
    while (begin < text.size() && IsBlank(text[begin])) {
        ++begin;
    }
    std::size_t end = text.size();
    while (end > begin && IsBlank(text[end - 1])) {
        --end;
    }
    if (end < text.size() && IsTrailByte(text, end, leadBytes, begin)) {
        ++end;
    }
    return text.substr(begin, end - begin);
}

} // namespace pmx
