#include "host/options.h"

#include <filesystem>
#include <memory>
#include <vector>

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

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

std::filesystem::path FolderOfProgram() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
}

/// The user's documents; empty when the system does not tell.
std::filesystem::path DocumentsFolder() {
    wchar_t* text = nullptr;
    const HRESULT result = SHGetKnownFolderPath(FOLDERID_Documents, 0, nullptr, &text);
    const std::unique_ptr<wchar_t, decltype(&CoTaskMemFree)> owner(text, CoTaskMemFree);
    return SUCCEEDED(result) ? text : L"";
}

/// Makes the folder if need be; false when no file can be made in it.
bool CanBeWritten(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    const HANDLE file = CreateFileW((folder / L"~write~").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != FALSE;
}

/// Beside the program; where that cannot be written, as in the folder of installed programs, in the documents.
std::wstring DefaultFolder() {
    const std::filesystem::path beside = FolderOfProgram() / L"favorites";
    const std::filesystem::path documents = DocumentsFolder();
    const bool isBeside = documents.empty() || CanBeWritten(beside);
    return (isBeside ? beside : documents / L"PmxSampleHost" / L"favorites").wstring();
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
        options.FavoritesFolder = DefaultFolder();
    }
    // The list file is reached through the system's profile functions, which take a bare name for the Windows
    // folder's.
    options.FavoritesFolder = std::filesystem::absolute(options.FavoritesFolder).wstring();
    return options;
}

} // namespace pmx::host
