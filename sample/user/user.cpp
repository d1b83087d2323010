// PmxUser.h: chooses the resource library from the user's language.
#include "host/PmxUser.h"

#include <optional>
#include <string>

#include <windows.h>

namespace {

constexpr const char* LanguageVariable = "PMX_UI_LANGUAGE";

std::optional<std::string> ReadVariable(const char* name) {
    char value[16];
    const DWORD length = GetEnvironmentVariableA(name, value, sizeof value);
    return length > 0 && length < sizeof value ? std::optional(std::string(value, length)) : std::nullopt;
}

bool WantsBuiltInLanguage() {
    const auto chosen = ReadVariable(LanguageVariable);
    if (chosen == "ja") {
        return true;
    }
    return chosen != "en" && PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_JAPANESE;
}

/// The path of the module; wide, so that it may stand in any folder. Empty when it cannot be told.
std::wstring PathOf(HMODULE module) {
    std::wstring path(32768, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    return path;
}

} // namespace

/// Loads the resource library that lies beside the given module and is called like it with the tag added: for
/// example PMXTemplUIENU.dll beside PMXTemplUI.dll, PmxSampleHostENU.dll beside PmxSampleHost.exe. Null when
/// the user's language is the built-in one (Japanese) or when there is no such library.
extern "C" void* EX_LoadDefaultResourceDLL(void* instance, const char* tag) {
    if (tag == nullptr || WantsBuiltInLanguage()) {
        return nullptr;
    }
    std::wstring path = PathOf(static_cast<HMODULE>(instance));
    const auto dot = path.rfind(L'.');
    if (dot == std::wstring::npos) {
        return nullptr;
    }
    path.resize(dot);
    path += std::wstring(tag, tag + std::char_traits<char>::length(tag)) + L".dll";
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
}
