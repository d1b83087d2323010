#include "platform/text.h"

namespace pmx {

namespace {

char Folded(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

} // namespace

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

bool EqualIgnoringLetterCase(std::string_view left, std::string_view right, const LeadByteTable& leadBytes) {
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
