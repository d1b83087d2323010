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

/// The ANSI code page. It does not change while a process runs, so the system is asked once.
class AnsiCodePage : public Text {
public:
    const LeadByteTable& LeadBytes() const override { return Table; }

    /// Not the system's own comparison: that one takes full-width letters for equal too, and depends on the
    /// locale.
    bool EqualIgnoringCase(std::string_view left, std::string_view right) const override {
        return EqualIgnoringLetterCase(left, right, Table);
    }

private:
    const LeadByteTable Table = MakeLeadBytes();
};

} // namespace

Text& SystemText() {
    static AnsiCodePage text;
    return text;
}

} // namespace pmx
