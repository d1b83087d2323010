#include "support/sjis.h"

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/posix/code_page.h"
#endif

namespace pmx::test {

namespace {

#ifdef _WIN32

constexpr unsigned CodePage = 932;

std::wstring Wide(unsigned codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

std::string Narrow(unsigned codePage, const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    std::string text(wide.size() * 3, '\0');
    const int length = WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(),
                                           static_cast<int>(text.size()), nullptr, nullptr);
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::string FromUtf8(std::string_view utf8) {
    return Narrow(CodePage, Wide(CP_UTF8, utf8));
}

std::string ToUtf8(std::string_view sjis) {
    return Narrow(CP_UTF8, Wide(CodePage, sjis));
}

#else

using posix::FromUtf8;
using posix::ToUtf8;

#endif

} // namespace

std::string Sjis(std::u8string_view utf8) {
    const std::string text(utf8.begin(), utf8.end());
    std::string sjis = FromUtf8(text);
    if (ToUtf8(sjis) != text) {
        std::fprintf(stderr, "no text of code page 932: %s\n", text.c_str());
        std::abort();
    }
    return sjis;
}

std::string Utf8(std::string_view sjis) {
    return ToUtf8(sjis);
}

std::vector<std::pair<std::string, std::string>> NamesOnDisk() {
    return {{"\x83\x7E", "\xE3\x83\x9F"},
            {"\x95\x5C\x83\x5C", "\xE8\xA1\xA8\xE3\x82\xBD"},
            {"\x81\x60", "\xEF\xBD\x9E"},
            {"\x81\x7C", "\xEF\xBC\x8D"},
            {"\xB1", "\xEF\xBD\xB1"},
            {"\x80\xA0", "\xC2\x80\xEF\xA3\xB0"},
            {"\xFD\xFE\xFF", "\xEF\xA3\xB1\xEF\xA3\xB2\xEF\xA3\xB3"},
            {"\xF0\x40\xF9\xFC", "\xEE\x80\x80\xEE\x9D\x97"},
            {"\xED\x40", "\xE7\xBA\x8A"},
            {"~", "~"}};
}

} // namespace pmx::test
