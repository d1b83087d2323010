#include "platform/win32/wide_text.h"

#include <array>
#include <utility>

#include <windows.h>

namespace pmx::win32 {

namespace {

/// Characters that converters of other systems use where Windows uses another one for the same Japanese
/// character.
constexpr std::array<std::pair<wchar_t, wchar_t>, 8> Lookalikes{{
    {0x301C, 0xFF5E}, // wave dash
    {0x2016, 0x2225}, // double vertical line
    {0x2212, 0xFF0D}, // minus sign
    {0x2014, 0x2015}, // em dash
    {0x00A2, 0xFFE0}, // cent sign
    {0x00A3, 0xFFE1}, // pound sign
    {0x00AC, 0xFFE2}, // not sign
    {0x00A6, 0xFFE4}, // broken bar
}};

bool HasCode(wchar_t character) {
    std::array<char, 4> bytes{};
    BOOL usedDefault = FALSE;
    const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, &character, 1, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, &usedDefault);
    return size > 0 && !usedDefault;
}

} // namespace

static_assert(AnsiCodePage == CP_ACP);

std::wstring ToWide(std::string_view narrow, unsigned codePage) {
    const int length = static_cast<int>(narrow.size());
    const int size = MultiByteToWideChar(codePage, 0, narrow.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(codePage, 0, narrow.data(), length, wide.data(), size);
    return wide;
}

std::string ToNarrow(std::wstring_view wide, unsigned codePage) {
    // UTF-8 has every character, and the system refuses flags for it.
    const bool isUtf8 = codePage == CP_UTF8 || (codePage == CP_ACP && GetACP() == CP_UTF8);
    const DWORD flags = isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(codePage, flags, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(codePage, flags, wide.data(), length, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

wchar_t WithCode(wchar_t character) {
    if (HasCode(character)) {
        return character;
    }
    for (const auto& [foreign, own] : Lookalikes) {
        if (foreign == character && HasCode(own)) {
            return own;
        }
    }
    return 0;
}

std::size_t NarrowSize(std::wstring_view wide) {
    return ToNarrow(wide).size();
}

} // namespace pmx::win32
