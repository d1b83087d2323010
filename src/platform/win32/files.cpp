#include "platform/files.h"

#include "platform/temporary_name.h"
#include "platform/text.h"

#include <array>
#include <optional>
#include <utility>

#include <windows.h>

namespace pmx {

namespace {

constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// The calling thread's last error, as it is after a call that failed; never None.
FileError LastError() {
    const DWORD code = GetLastError();
    if (code == ERROR_SUCCESS) {
        return FileError::Other;
    }
    return code == ERROR_ALREADY_EXISTS ? FileError::FileExists : static_cast<FileError>(code);
}

FileError ErrorUnless(BOOL succeeded) {
    return succeeded ? FileError::None : LastError();
}

FileError PathErrors(const std::string& source, const std::string& target) {
    const FileError error = PathError(source);
    return error == FileError::None ? PathError(target) : error;
}

std::optional<DWORD> AttributesOf(const std::string& path) {
    if (PathError(path) != FileError::None) {
        return std::nullopt;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
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

FileHandle OpenPath(const std::string& path, DWORD access, DWORD share, DWORD disposition) {
    return FileHandle(
        CreateFileA(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Opens a file, a folder or a link for nothing but questions about it.
FileHandle OpenAsIs(const char* path) {
    return FileHandle(CreateFileA(path, 0, ShareAll, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

class HeldFile : public OpenFile {
public:
    explicit HeldFile(FileHandle file) : File(std::move(file)) {}
    explicit HeldFile(const OpenRequest& request)
        : File(CreateFileA(request.Path.c_str(), static_cast<DWORD>(request.Access),
                           static_cast<DWORD>(request.Share), nullptr,
                           static_cast<DWORD>(request.Disposition), static_cast<DWORD>(request.Attributes),
                           nullptr)) {}

    bool IsOpen() const { return File.IsOpen(); }

private:
    const FileHandle File;
};

/// Opens the file that stands for a lock; none with the reason in `error` while another has it. Only a file
/// that is made here is deleted with its handle: one that a computer left behind when it went down, or that
/// somebody has put there, locks as well and stays.
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
    if (error == FileError::FileExists || oldError == FileError::SharingViolation ||
        oldError == FileError::AccessDenied) {
        error = FileError::SharingViolation;
    }
    return old;
}

/// True when an attribute query that failed so says that nothing has the name.
bool IsAbsence(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
           error == ERROR_BAD_PATHNAME || error == ERROR_FILENAME_EXCED_RANGE;
}

/// Where the name begins that a path ends with.
std::size_t NameStart(const std::string& path) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    std::size_t start = 0;
    for (std::size_t position = 0; position < path.size();
         position += CharacterLength(path, position, leadBytes)) {
        const char character = path[position];
        if (character == '\\' || character == '/' || character == ':') {
            start = position + 1;
        }
    }
    return start;
}

/// The folder of a path with its separator; empty for a mere name.
std::string FolderOf(const std::string& path) {
    return path.substr(0, NameStart(path));
}

/// A file that is deleted at the end unless it was given another name.
class TemporaryFile {
public:
    /// `folder` ends in a separator. Without a Name the reason is in Error.
    explicit TemporaryFile(const std::string& folder) {
        for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
            Name = folder + TemporaryName(); // before there is a file, after which nothing may fail
            const FileHandle file = OpenPath(Name, GENERIC_WRITE, 0, CREATE_NEW);
            Error = ErrorUnless(file.IsOpen());
            if (Error == FileError::None) {
                return;
            }
            Name.clear();
            if (Error != FileError::FileExists) {
                return;
            }
        }
    }
    ~TemporaryFile() {
        if (!Name.empty() && !IsKept) {
            DeleteFileA(Name.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string Name;
    FileError Error = FileError::None;

    /// Leaves the file on disk.
    void Keep() { IsKept = true; }

private:
    bool IsKept = false;
};

/// True for a file with the read-only mark. The system keeps such a file from being changed; Wine does not
/// when it runs as the super-user, nor when a file is replaced, so it is asked before.
bool IsReadOnlyFile(const std::string& path) {
    const auto attributes = AttributesOf(path);
    return HasAny(attributes, FILE_ATTRIBUTE_READONLY) && !HasAny(attributes, FILE_ATTRIBUTE_DIRECTORY);
}

/// A path of the system, on the stack: deleting must not need memory, whose lack may be the reason for it.
class FinalPath {
public:
    /// The path under which the system knows what has been opened.
    explicit FinalPath(const FileHandle& file)
        : Length(GetFinalPathNameByHandleW(file.Get(), Text.data(), Room, FILE_NAME_NORMALIZED)) {
        Length = Length < Room ? Length : 0;
    }

    /// False when the system does not tell, or the path is longer than any that narrow functions take.
    bool IsKnown() const { return Length > 0; }

    /// Appends a name in the code page of the system.
    void Append(const char* name) {
        if (Length > 0 && Text[Length - 1] != L'\\') {
            Text[Length++] = L'\\';
        }
        const int room = static_cast<int>(Text.size() - Length);
        const int added = MultiByteToWideChar(CP_ACP, 0, name, -1, Text.data() + Length, room);
        Length = added > 0 ? Length + static_cast<DWORD>(added) - 1 : 0;
    }

    bool operator==(const FinalPath& other) const {
        return CompareStringOrdinal(Text.data(), static_cast<int>(Length), other.Text.data(),
                                    static_cast<int>(other.Length), TRUE) == CSTR_EQUAL;
    }

private:
    static constexpr std::size_t Room = 1024;
    std::array<wchar_t, 2 * Room> Text;
    DWORD Length;
};

/// Opens the folder of a path.
FileHandle OpenFolderOf(const std::string& path, std::size_t nameStart) {
    constexpr std::size_t Room = 1024;
    std::array<char, Room> folder{'.'};
    if (nameStart >= Room) {
        return FileHandle(INVALID_HANDLE_VALUE);
    }
    path.copy(folder.data(), nameStart);
    return OpenAsIs(folder.data());
}

/// True when `path` is a link that the system passes over as if it were what it leads to, as Wine does with
/// the links of the system beneath: deleting it would delete the other file. Links that Windows knows are
/// opened themselves.
bool IsHiddenLink(const std::string& path) {
    const std::size_t nameStart = NameStart(path);
    const FileHandle self = OpenAsIs(path.c_str());
    const FileHandle folder = OpenFolderOf(path, nameStart);
    if (!self.IsOpen() || !folder.IsOpen()) {
        return false;
    }
    const FinalPath actual(self);
    FinalPath expected(folder);
    if (!actual.IsKnown() || !expected.IsKnown()) {
        return false;
    }
    expected.Append(path.c_str() + nameStart);
    return !(actual == expected);
}

/// Why the file may not be overwritten; None when it may, or when there is none. Asks for what an overwriting
/// needs, because the final renaming reports an open file as a denied access.
FileError OverwriteError(const std::string& target) {
    if (IsReadOnlyFile(target)) {
        return FileError::AccessDenied;
    }
    const FileHandle file = OpenPath(target, GENERIC_WRITE | DELETE, ShareAll, OPEN_EXISTING);
    if (file.IsOpen()) {
        return FileError::None;
    }
    const FileError error = LastError();
    return error == FileError::NotFound ? FileError::None : error;
}

class WindowsFiles : public Files {
public:
    bool Exists(const std::string& path) override {
        return PathError(path) == FileError::None &&
               (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES || !IsAbsence(GetLastError()));
    }

    bool IsFolder(const std::string& path) override {
        return HasAny(AttributesOf(path), FILE_ATTRIBUTE_DIRECTORY);
    }

    bool IsReadOnly(const std::string& path) override { return IsReadOnlyFile(path); }

    OpenResult Open(const OpenRequest& request) override {
        const FileError nameError = PathError(request.Path);
        if (nameError != FileError::None) {
            return {nullptr, nameError};
        }
        if (request.Access != FileAccess::Read && IsReadOnlyFile(request.Path) &&
            request.Disposition != FileDisposition::CreateNew) {
            return {nullptr, FileError::AccessDenied};
        }
        auto file =
            std::make_unique<HeldFile>(request); // its memory first: nothing may fail once there is a file
        if (!file->IsOpen()) {
            return {nullptr, LastError()};
        }
        return {std::move(file), FileError::None};
    }

    /// The system's own copy may leave a part of a file behind, so it goes to a temporary file first.
    FileError Copy(const std::string& source, const std::string& target, bool failIfExists) override {
        FileError error = PathErrors(source, target);
        if (error != FileError::None) {
            return error;
        }
        if (failIfExists && Exists(target)) {
            return FileError::FileExists;
        }
        error = OverwriteError(target);
        if (error != FileError::None) {
            return error;
        }
        TemporaryFile copy(FolderOf(target));
        if (copy.Name.empty()) {
            return copy.Error;
        }
        const DWORD flags = failIfExists ? 0 : MOVEFILE_REPLACE_EXISTING;
        const bool isDone = CopyFileA(source.c_str(), copy.Name.c_str(), FALSE) &&
                            SetFileAttributesA(copy.Name.c_str(), FILE_ATTRIBUTE_NORMAL) &&
                            MoveFileExA(copy.Name.c_str(), target.c_str(), flags);
        if (!isDone) {
            return LastError();
        }
        copy.Keep();
        return FileError::None;
    }

    FileError Remove(const std::string& path) override {
        const FileError error = PathError(path);
        if (error != FileError::None) {
            return error;
        }
        return IsHiddenLink(path) ? FileError::Other : ErrorUnless(DeleteFileA(path.c_str()));
    }

    FileError Flush(const std::string& path) override {
        const FileError error = PathError(path);
        if (error != FileError::None) {
            return error;
        }
        const FileHandle file = OpenPath(path, GENERIC_WRITE, ShareAll, OPEN_EXISTING);
        return ErrorUnless(file.IsOpen() && FlushFileBuffers(file.Get()));
    }

    /// MoveFileEx and not ReplaceFile: it is one renaming, so there is no moment without the target, and the
    /// target need not exist.
    FileError Replace(const std::string& source, const std::string& target) override {
        const FileError error = PathErrors(source, target);
        if (error != FileError::None) {
            return error;
        }
        if (IsFolder(source) || IsFolder(target) || IsReadOnlyFile(target)) {
            return FileError::AccessDenied;
        }
        constexpr DWORD Flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        return ErrorUnless(MoveFileExA(source.c_str(), target.c_str(), Flags));
    }

    OpenResult Lock(const std::string& path) override {
        const FileError error = PathError(path);
        if (error != FileError::None) {
            return {nullptr, error};
        }
        FileError lockError = FileError::None;
        FileHandle file = OpenLockFile(path + ".lock", lockError);
        if (!file.IsOpen()) {
            return {nullptr, lockError};
        }
        return {std::make_unique<HeldFile>(std::move(file)), FileError::None};
    }

    std::string CreateTemporary(const std::string& folder, FileError& error) override {
        error = PathError(folder);
        if (error != FileError::None) {
            return {};
        }
        TemporaryFile file(folder);
        error = file.Error;
        std::string path = file.Name;
        file.Keep();
        return path;
    }

    void SetLastError(FileError error) override { ::SetLastError(static_cast<DWORD>(error)); }
};

} // namespace

Files& SystemFiles() {
    static WindowsFiles files;
    return files;
}

} // namespace pmx
