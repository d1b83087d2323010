// The functions of QrtCommon.h.
#include "host/QrtCommon.h"

#include <string_view>

namespace {

/// Whether the byte begins a double-byte character of code page 932.
bool IsLeadByte(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

} // namespace

int32_t CheckFileName(const char* name) {
    if (name == nullptr || *name == '\0') {
        return 0;
    }
    constexpr std::string_view Forbidden = "\\/:*?\"<>|";
    const std::string_view text(name);
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (IsLeadByte(text[index])) {
            ++index;
        } else if (Forbidden.find(text[index]) != std::string_view::npos) {
            return 0;
        }
    }
    return 1;
}
