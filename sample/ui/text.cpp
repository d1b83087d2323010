#include "ui/text.h"

#include "host/PmxUser.h"

namespace pmx::sample {

namespace {

HMODULE LoadLanguage() {
    const HMODULE user = LoadBeside(PMX_USER_LIBRARY);
    if (user == nullptr) {
        return nullptr;
    }
    const auto entry = reinterpret_cast<void (*)()>(GetProcAddress(user, PMX_USER_ENTRY));
    const auto choose = reinterpret_cast<PmxLoadDefaultResourceDLL>(entry);
    return choose == nullptr ? nullptr : static_cast<HMODULE>(choose(OwnModule(), "ENU"));
}

} // namespace

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

HMODULE OwnModule() {
    static const char Place = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       &Place, &module);
    return module;
}

HMODULE LoadBeside(std::string_view fileName) {
    constexpr std::size_t LongestPath = 0x8000;
    std::wstring path(LongestPath, L'\0');
    const DWORD length = GetModuleFileNameW(OwnModule(), path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    const auto separator = path.rfind(L'\\');
    if (separator == std::wstring::npos) {
        return nullptr;
    }
    path.resize(separator + 1);
    path += ToWide(fileName);
    return LoadLibraryExW(path.c_str(), nullptr,
                          LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

HMODULE ResourceModule() {
    static const HMODULE Chosen = [] {
        const HMODULE language = LoadLanguage();
        return language != nullptr ? language : OwnModule();
    }();
    return Chosen;
}

std::wstring ResourceText(unsigned id) {
    const wchar_t* text = nullptr;
    // With no buffer the function gives the text's place in the resources, which is not terminated.
    const int length = LoadStringW(ResourceModule(), id, reinterpret_cast<wchar_t*>(&text), 0);
    return {text, static_cast<std::size_t>(length)};
}

} // namespace pmx::sample
