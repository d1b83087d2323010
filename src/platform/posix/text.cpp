#include "platform/text.h"

namespace pmx {

/// Code page 932, whatever the locale.
const LeadByteTable& SystemLeadBytes() {
    return LeadBytesOf932();
}

} // namespace pmx
