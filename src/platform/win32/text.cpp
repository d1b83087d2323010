#include "platform/text.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

namespace pmx {

namespace {

LeadByteTable MakeLeadBytes() {
    LeadByteTable table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = IsDBCSLeadByte(static_cast<BYTE>(byte)) != FALSE;
    }
    return table;
}

} // namespace

/// The ANSI code page does not change while a process runs, so the system is asked once.
const LeadByteTable& SystemLeadBytes() {
    static const LeadByteTable Table = MakeLeadBytes();
    return Table;
}

std::u16string ToUtf16(std::string_view text) {
    const std::wstring wide = win32::ToWide(text);
    return {wide.begin(), wide.end()};
}

std::string FromUtf16(std::u16string_view utf16) {
    return win32::ToNarrow(std::wstring(utf16.begin(), utf16.end()));
}

std::string ToUtf8(std::string_view text) {
    return win32::ToNarrow(win32::ToWide(text), CP_UTF8);
}

std::string FromUtf8(std::string_view utf8) {
    return win32::ToNarrow(win32::ToWide(utf8, CP_UTF8));
}

} // namespace pmx
