#include "platform/text.h"

#include "platform/posix/code_page.h"

namespace pmx {

/// Code page 932, whatever the locale.
const LeadByteTable& SystemLeadBytes() {
    return LeadBytesOf932();
}

std::u16string ToUtf16(std::string_view text) {
    return posix::ToUtf16(text);
}

std::string FromUtf16(std::u16string_view utf16) {
    return posix::FromUtf16(utf16);
}

std::string ToUtf8(std::string_view text) {
    return posix::ToUtf8(text);
}

std::string FromUtf8(std::string_view utf8) {
    return posix::FromUtf8(utf8);
}

} // namespace pmx
