#include "platform/text.h"

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

} // namespace

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
