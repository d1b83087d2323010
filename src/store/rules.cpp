#include "store/rules.h"

#include <algorithm>

namespace pmx {

namespace {

bool IsNameBlank(std::string_view character) {
    constexpr std::string_view FullWidthBlank = "\x81\x40";
    return character == FullWidthBlank || (character.size() == 1 && IsBlank(character.front()));
}

} // namespace

std::string TrimmedName(std::string_view name) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    std::size_t begin = name.size();
    std::size_t end = 0;
    for (std::size_t position = 0; position < name.size();) {
        const std::size_t length = CharacterLength(name, position, leadBytes);
        if (!IsNameBlank(name.substr(position, length))) {
            begin = std::min(begin, position);
            end = position + length;
        }
        position += length;
    }
    return std::string(name.substr(begin, end > begin ? end - begin : 0));
}

} // namespace pmx
