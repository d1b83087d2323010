#include "host/text.h"

#include <windows.h>

namespace pmx::host {

std::wstring ToWide(std::string_view narrow) {
    const int size = static_cast<int>(narrow.size());
    std::wstring wide(narrow.size(), L'\0');
    wide.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, narrow.data(), size, wide.data(), size)));
    return wide;
}

std::string ToNarrow(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    const int needed = WideCharToMultiByte(CP_ACP, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), size, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}

std::wstring ResourceText(unsigned id) {
    const wchar_t* text = nullptr;
    // With no buffer the function gives the text's place in the resources, which is not terminated.
    const int length = LoadStringW(GetModuleHandleW(nullptr), id, reinterpret_cast<wchar_t*>(&text), 0);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace pmx::host
