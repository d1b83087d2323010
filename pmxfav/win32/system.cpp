#include "system.h"

#include "platform/win32/wide_text.h"
#include "store/favorite_files.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <windows.h>

namespace pmx::tool {

namespace {

HANDLE HandleOf(Stream stream) {
    return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { FindClose(search); }
};

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

std::int64_t SecondsOf(const FILETIME& time) {
    constexpr std::int64_t From1601To1970 = 11644473600;
    constexpr std::int64_t UnitsOfASecond = 10000000;
    const auto units =
        static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    return units / UnitsOfASecond - From1601To1970;
}

FolderFile FileOf(const WIN32_FIND_DATAW& found) {
    FolderFile file{.Name = win32::ToNarrow(found.cFileName),
                    .Shown = win32::ToNarrow(found.cFileName, CP_UTF8),
                    .Size = std::uint64_t{found.nFileSizeHigh} << 32 | found.nFileSizeLow,
                    .Written = SecondsOf(found.ftLastWriteTime)};
    file.IsNameable = win32::ToWide(file.Name) == found.cFileName;
    return file;
}

} // namespace

bool WriteText(Stream stream, std::string_view utf8) {
    const HANDLE handle = HandleOf(stream);
    if (!IsTerminal(stream)) {
        DWORD written = 0;
        return WriteFile(handle, utf8.data(), static_cast<DWORD>(utf8.size()), &written, nullptr) != FALSE &&
               written == utf8.size();
    }
    constexpr std::size_t AtOnce = 8192; // a console takes no more than about 64 KB in one call
    const std::wstring wide = win32::ToWide(utf8, CP_UTF8);
    for (std::size_t begin = 0; begin < wide.size(); begin += AtOnce) {
        const auto size = static_cast<DWORD>(std::min(AtOnce, wide.size() - begin));
        DWORD written = 0;
        if (WriteConsoleW(handle, wide.data() + begin, size, &written, nullptr) == FALSE) {
            return false;
        }
    }
    return true;
}

bool IsTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != FALSE;
}

bool IsAllCharacters(std::string_view text) {
    return text.empty() || MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text.data(),
                                               static_cast<int>(text.size()), nullptr, 0) != 0;
}

std::optional<std::vector<FolderFile>> FilesIn(const std::string& folder) {
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = win32::ToWide(folder) + L"\\*";
    const HANDLE first = FindFirstFileW(pattern.c_str(), &found);
    if (first == INVALID_HANDLE_VALUE) {
        return std::nullopt;
    }
    const std::unique_ptr<void, SearchCloser> search(first);
    std::vector<FolderFile> files;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            files.push_back(FileOf(found));
        }
    } while (FindNextFileW(search.get(), &found) != FALSE);
    std::sort(files.begin(), files.end(),
              [](const FolderFile& left, const FolderFile& right) { return left.Name < right.Name; });
    return files;
}

std::string FileKey(const std::string& fileName) {
    std::wstring key = win32::ToWide(FoldedFileName(fileName));
    CharUpperBuffW(key.data(), static_cast<DWORD>(key.size())); // full-width letters, too
    return win32::ToNarrow(key, CP_UTF8);
}

bool MayAddFiles(const std::string& folder) {
    constexpr DWORD AllShares = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle = CreateFileW(win32::ToWide(folder).c_str(), FILE_ADD_FILE, AllShares, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    const std::unique_ptr<void, HandleCloser> closing(handle);
    return true;
}

std::int64_t Now() {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return SecondsOf(now);
}

} // namespace pmx::tool
