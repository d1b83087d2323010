#include "platform/text.h"

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

} // namespace pmx
