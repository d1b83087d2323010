#include "host/options.h"

#include <filesystem>
#include <memory>
#include <vector>

#include <windows.h>

#include <shellapi.h>

namespace pmx::host {

namespace {

std::vector<std::wstring> Arguments() {
    struct Freer {
        void operator()(wchar_t** arguments) const { LocalFree(arguments); }
    };
    int count = 0;
    const std::unique_ptr<wchar_t*, Freer> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
    return {arguments.get() + 1, arguments.get() + count};
}

std::wstring FolderBesideProgram(const wchar_t* name) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return (std::filesystem::path(path).parent_path() / name).wstring();
}

} // namespace

Options ReadOptions() {
    Options options;
    const auto arguments = Arguments();
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        if (arguments[index] == L"--tour" && index + 1 < arguments.size()) {
            options.TourFolder = arguments[++index];
        } else {
            options.FavoritesFolder = arguments[index];
        }
    }
    if (options.FavoritesFolder.empty()) {
        options.FavoritesFolder = FolderBesideProgram(L"favorites");
    }
    // The list file is reached through the system's profile functions, which take a bare name for the Windows
    // folder's.
    options.FavoritesFolder = std::filesystem::absolute(options.FavoritesFolder).wstring();
    return options;
}

} // namespace pmx::host
