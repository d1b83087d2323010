#include "platform/files.h"

#include "platform/text.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

namespace pmx {

namespace {

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// What a file that takes the place of another takes over of its marks.
constexpr DWORD KeptAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

/// Most bytes that one call of the system reads or writes.
constexpr std::size_t LargestPiece = std::size_t{1} << 30U;

/// Why the call that has just failed did so; never None.
FileError LastError() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return FileError::NotFound;
    case ERROR_SHARING_VIOLATION:
    case ERROR_ACCESS_DENIED:
        return FileError::Held;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        return FileError::Exists;
    default:
        return FileError::Other;
    }
}

FileError ErrorUnless(bool succeeded) {
    return succeeded ? FileError::None : LastError();
}

/// True for a path that a file may have, as far as can be told without looking.
bool IsPossible(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

std::optional<DWORD> AttributesOf(const std::string& path) {
    const DWORD attributes = IsPossible(path) ? GetFileAttributesA(path.c_str()) : INVALID_FILE_ATTRIBUTES;
    return attributes == INVALID_FILE_ATTRIBUTES ? std::nullopt : std::optional(attributes);
}

bool HasAny(const std::optional<DWORD>& attributes, DWORD wanted) {
    return attributes && (*attributes & wanted) != 0;
}

class FileHandle {
public:
    /// Takes over the handle, which may be the invalid one.
    explicit FileHandle(HANDLE handle) : Handle(handle) {}
    ~FileHandle() {
        if (IsOpen()) {
            CloseHandle(Handle);
        }
    }
    FileHandle(FileHandle&& other) noexcept : Handle(std::exchange(other.Handle, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&&) = delete;
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool IsOpen() const { return Handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return Handle; }

private:
    HANDLE Handle;
};

FileHandle OpenPath(const std::string& path, DWORD access, DWORD share, DWORD disposition, DWORD flags = 0) {
    if (!IsPossible(path)) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return FileHandle(INVALID_HANDLE_VALUE);
    }
    return FileHandle(CreateFileA(path.c_str(), access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

/// False for a device or a pipe that has taken the name of a file.
bool IsOnDisk(const FileHandle& file) {
    return GetFileType(file.Get()) == FILE_TYPE_DISK;
}

/// Opens a file or a folder for nothing but questions about it; with `flags` a link itself.
FileHandle OpenToAsk(const std::string& path, DWORD flags = 0) {
    return FileHandle(CreateFileA(path.c_str(), 0, ShareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

/// True when an attribute query that failed so says that nothing has the name.
bool IsAbsence(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_PATHNAME || error == ERROR_FILENAME_EXCED_RANGE;
}

/// True for a file with the read-only mark. The system keeps such a file from being changed; Wine does not
/// when it runs as the super-user, nor when a file is replaced, so it is asked before.
bool IsReadOnlyFile(const std::string& path) {
    const auto attributes = AttributesOf(path);
    return HasAny(attributes, FILE_ATTRIBUTE_READONLY) && !HasAny(attributes, FILE_ATTRIBUTE_DIRECTORY);
}

std::optional<BY_HANDLE_FILE_INFORMATION> InformationOf(const std::string& path) {
    const FileHandle file = IsPossible(path) ? OpenToAsk(path) : FileHandle(INVALID_HANDLE_VALUE);
    BY_HANDLE_FILE_INFORMATION information{};
    const bool isKnown = file.IsOpen() && GetFileInformationByHandle(file.Get(), &information);
    return isKnown ? std::optional(information) : std::nullopt;
}

/// The path under which the system knows what has been opened; empty when it does not tell.
std::wstring FinalPath(const FileHandle& file) {
    std::wstring path(32768, L'\0');
    path.resize(GetFinalPathNameByHandleW(file.Get(), path.data(), static_cast<DWORD>(path.size()),
                                          FILE_NAME_NORMALIZED));
    return path;
}

/// True when `path` is a link that the system passes over as if it were what it leads to, as Wine does with
/// the links of the system beneath: deleting it would delete the other file. Links that Windows knows are
/// opened themselves.
bool IsHiddenLink(const std::string& path) {
    const std::size_t nameStart = FileNameStart(path);
    const FileHandle self = OpenToAsk(path, FILE_FLAG_OPEN_REPARSE_POINT);
    const FileHandle folder = OpenToAsk(nameStart > 0 ? path.substr(0, nameStart) : ".");
    if (!self.IsOpen() || !folder.IsOpen()) {
        return false;
    }
    const std::wstring actual = FinalPath(self);
    std::wstring expected = FinalPath(folder);
    if (actual.empty() || expected.empty()) {
        return false;
    }
    if (expected.back() != L'\\') {
        expected += L'\\';
    }
    const std::u16string name = ToUtf16(std::string_view(path).substr(nameStart));
    expected.append(name.begin(), name.end());
    return CompareStringOrdinal(actual.data(), static_cast<int>(actual.size()), expected.data(),
                                static_cast<int>(expected.size()), TRUE) != CSTR_EQUAL;
}

bool ReadAll(const FileHandle& file, std::string& content) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.Get(), &size)) {
        return false;
    }
    content.resize(static_cast<std::size_t>(size.QuadPart));
    std::size_t done = 0;
    while (done < content.size()) {
        const auto piece = static_cast<DWORD>(std::min(content.size() - done, LargestPiece));
        DWORD count = 0;
        if (!ReadFile(file.Get(), content.data() + done, piece, &count, nullptr)) {
            return false;
        }
        if (count == 0) {
            break; // somebody has made it shorter
        }
        done += count;
    }
    content.resize(done);
    return true;
}

bool WriteAll(const FileHandle& file, const std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const auto piece = static_cast<DWORD>(std::min(content.size() - done, LargestPiece));
        DWORD count = 0;
        if (!WriteFile(file.Get(), content.data() + done, piece, &count, nullptr) || count == 0) {
            return false;
        }
        done += count;
    }
    return true;
}

/// Has the system delete the file with its handle, which has the right to do so.
void DeleteWithHandle(const FileHandle& file) {
    FILE_DISPOSITION_INFO deletion{TRUE};
    SetFileInformationByHandle(file.Get(), FileDispositionInfo, &deletion, sizeof deletion);
}

/// Writes the whole content of a new file, durably, or has it deleted with its handle.
bool FillNew(const FileHandle& file, const std::string& content) {
    const bool isFilled = WriteAll(file, content) && FlushFileBuffers(file.Get());
    if (!isFilled) {
        DeleteWithHandle(file);
    }
    return isFilled;
}

/// Gives an open file another name in its folder, in the place of what has it.
bool RenameOver(const FileHandle& file, const std::string& target) {
    const std::u16string name = ToUtf16(target);
    const std::size_t nameSize = name.size() * sizeof(wchar_t);
    std::vector<FILE_RENAME_INFO> room(nameSize / sizeof(FILE_RENAME_INFO) + 2);
    FILE_RENAME_INFO& request = room.front();
    request.ReplaceIfExists = TRUE;
    request.FileNameLength = static_cast<DWORD>(nameSize);
    std::memcpy(request.FileName, name.data(), nameSize);
    const auto size = static_cast<DWORD>(room.size() * sizeof(FILE_RENAME_INFO));
    return SetFileInformationByHandle(file.Get(), FileRenameInfo, &request, size);
}

/// Puts `source` in the place of `target` by `rename`, with the marks of what was there.
template <typename Rename>
FileError PutInPlace(const std::string& source, const std::string& target, Rename rename) {
    if (!IsPossible(source) || !IsPossible(target)) {
        return FileError::NotFound;
    }
    const std::optional<DWORD> former = AttributesOf(target);
    if (HasAny(former, FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) {
        return FileError::Held;
    }
    if (HasAny(former, KeptAttributes)) {
        SetFileAttributesA(source.c_str(), (*former & KeptAttributes) | FILE_ATTRIBUTE_ARCHIVE);
    }
    return ErrorUnless(rename());
}

class LockFile : public FileLock {
public:
    explicit LockFile(FileHandle file) : File(std::move(file)) {}

private:
    const FileHandle File;
};

/// Opens the file that stands for a lock; none with the reason in `error`, Held while another has it. Only a
/// file that is made here is deleted with its handle: one that a computer left behind when it went down, or
/// that somebody has put there, locks as well and stays.
FileHandle OpenLockFile(const std::string& path, FileError& error) {
    constexpr DWORD NewFlags = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE;
    FileHandle made(
        CreateFileA(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW, NewFlags, nullptr));
    error = ErrorUnless(made.IsOpen());
    if (made.IsOpen()) {
        return made;
    }
    FileHandle old = OpenPath(path, GENERIC_READ, 0, OPEN_EXISTING);
    const FileError oldError = ErrorUnless(old.IsOpen());
    // One that is just being deleted is denied at both attempts, or is gone at the second.
    const bool isHeld = error == FileError::Exists || oldError == FileError::Held;
    error = isHeld ? FileError::Held : FileError::Other;
    return old;
}

class WindowsFiles : public Files {
public:
    bool Exists(const std::string& path) override {
        return IsPossible(path) &&
               (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES || !IsAbsence(GetLastError()));
    }

    bool IsFolder(const std::string& path) override {
        return HasAny(AttributesOf(path), FILE_ATTRIBUTE_DIRECTORY);
    }

    bool IsReadOnly(const std::string& path) override { return IsReadOnlyFile(path); }

    bool IsSame(const std::string& left, const std::string& right) override {
        const auto first = InformationOf(left);
        const auto second = InformationOf(right);
        return first && second && first->dwVolumeSerialNumber == second->dwVolumeSerialNumber &&
               first->nFileIndexHigh == second->nFileIndexHigh &&
               first->nFileIndexLow == second->nFileIndexLow;
    }

    FileError Read(const std::string& path, std::string& content) override {
        const FileHandle file = OpenPath(path, GENERIC_READ, ShareAll, OPEN_EXISTING);
        if (file.IsOpen() && !IsOnDisk(file)) {
            return FileError::Other;
        }
        std::string read;
        if (!file.IsOpen() || !ReadAll(file, read)) {
            return LastError();
        }
        content = std::move(read);
        return FileError::None;
    }

    FileError TryOpen(const std::string& path) override {
        if (IsReadOnlyFile(path)) {
            SetLastError(ERROR_ACCESS_DENIED);
            return FileError::Held;
        }
        constexpr DWORD Share = FILE_SHARE_READ | FILE_SHARE_WRITE;
        return ErrorUnless(OpenPath(path, GENERIC_READ | GENERIC_WRITE, Share, OPEN_EXISTING).IsOpen());
    }

    FileError CreateNew(const std::string& path) override {
        return ErrorUnless(OpenPath(path, GENERIC_WRITE, 0, CREATE_NEW).IsOpen());
    }

    FileError WriteNew(const std::string& path, const std::string& content) override {
        const FileHandle file = OpenPath(path, GENERIC_WRITE | DELETE, 0, CREATE_NEW);
        if (!file.IsOpen()) {
            return LastError();
        }
        return FillNew(file, content) ? FileError::None : FileError::Other;
    }

    FileError WriteOver(const std::string& source, const std::string& content, const std::string& target,
                        bool& isMade) override {
        isMade = false;
        // Shared by all: the file is open for a moment under the name under which others read it.
        const FileHandle file =
            OpenPath(source, GENERIC_WRITE | DELETE, ShareAll, CREATE_NEW, FILE_FLAG_WRITE_THROUGH);
        if (!file.IsOpen()) {
            return LastError();
        }
        isMade = FillNew(file, content);
        return isMade ? PutInPlace(source, target, [&] { return RenameOver(file, target); })
                      : FileError::Other;
    }

    FileError Overwrite(const std::string& path, const std::string& content) override {
        if (IsReadOnlyFile(path)) {
            return FileError::Held;
        }
        const FileHandle file = OpenPath(path, GENERIC_WRITE, ShareAll, OPEN_EXISTING);
        if (!file.IsOpen()) {
            return LastError();
        }
        if (!IsOnDisk(file)) {
            return FileError::Held;
        }
        const bool isWritten =
            WriteAll(file, content) && SetEndOfFile(file.Get()) && FlushFileBuffers(file.Get());
        return isWritten ? FileError::None : FileError::Other;
    }

    FileError Flush(const std::string& path) override {
        const FileHandle file = OpenPath(path, GENERIC_WRITE, ShareAll, OPEN_EXISTING);
        return ErrorUnless(file.IsOpen() && FlushFileBuffers(file.Get()));
    }

    /// MoveFileEx and not ReplaceFile: it is one renaming, so there is no moment without the target, and the
    /// target need not exist.
    FileError Replace(const std::string& source, const std::string& target) override {
        constexpr DWORD Flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        return PutInPlace(source, target,
                          [&] { return MoveFileExA(source.c_str(), target.c_str(), Flags) != FALSE; });
    }

    FileError Rename(const std::string& source, const std::string& target) override {
        if (!IsPossible(source) || !IsPossible(target)) {
            return FileError::NotFound;
        }
        return ErrorUnless(MoveFileExA(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH));
    }

    FileError Remove(const std::string& path) override {
        if (!IsPossible(path)) {
            return FileError::NotFound;
        }
        return IsHiddenLink(path) ? FileError::Other : ErrorUnless(DeleteFileA(path.c_str()));
    }

    LockResult Lock(const std::string& path) override {
        if (!IsPossible(path)) {
            return {nullptr, FileError::Other};
        }
        FileError error = FileError::None;
        FileHandle file = OpenLockFile(path + ".lock", error);
        if (!file.IsOpen()) {
            return {nullptr, error};
        }
        return {std::make_unique<LockFile>(std::move(file))};
    }
};

} // namespace

Files& SystemFiles() {
    static WindowsFiles files;
    return files;
}

} // namespace pmx
