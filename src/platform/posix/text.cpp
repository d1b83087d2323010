#include "platform/text.h"

namespace pmx {

namespace {

LeadByteTable MakeLeadBytes() {
    LeadByteTable table{};
    for (std::size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    }
    return table;
}

/// Code page 932, whatever the locale.
class CodePage932 : public Text {
public:
    const LeadByteTable& LeadBytes() const override { return Table; }

    bool EqualIgnoringCase(std::string_view left, std::string_view right) const override {
        return EqualIgnoringLetterCase(left, right, Table);
    }

private:
    const LeadByteTable Table = MakeLeadBytes();
};

} // namespace

Text& SystemText() {
    static CodePage932 text;
    return text;
}

} // namespace pmx
