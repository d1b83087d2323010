#include "platform/profile_lines.h"

#include "platform/text.h"

#include <cstddef>

namespace pmx {

std::string InOneCase(std::string_view name) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    std::string folded(name);
    for (std::size_t position = 0; position < folded.size();
         position += CharacterLength(folded, position, leadBytes)) {
        const char character = folded[position];
        if (character >= 'A' && character <= 'Z') {
            folded[position] = static_cast<char>(character - 'A' + 'a');
        }
    }
    return folded;
}

void SectionLines::TakeBare(std::string_view name) {
    Hidden.insert(InOneCase(name));
}

bool SectionLines::IsHidden(std::string_view key) const {
    return Hidden.count(InOneCase(key)) != 0;
}

} // namespace pmx
