#include "platform/posix/files.h"

#include "platform/posix/code_page.h"
#include "platform/posix/file_descriptor.h"
#include "platform/temporary_name.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx {

using posix::ErrorOf;

namespace {

using posix::FileDescriptor;

constexpr mode_t NewFileMode = 0666;
constexpr mode_t AnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

/// A pipe or a terminal under the name of a file must not make an open wait, or become our terminal.
constexpr int AlwaysFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

thread_local FileError LastErrorOfThread = FileError::None;

std::optional<struct stat> StatusOf(const std::string& native) {
    struct stat status {};
    if (stat(native.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

/// True when a query that failed so says that nothing has the name.
bool IsAbsence(int error) {
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

bool IsFolderStatus(const std::optional<struct stat>& status) {
    return status && S_ISDIR(status->st_mode);
}

/// The folder of a path, ending in a separator; `./` for a mere name.
std::string FolderOf(const std::string& native) {
    const std::size_t separator = native.rfind('/');
    return separator == std::string::npos ? "./" : native.substr(0, separator + 1);
}

FileError MissingError(const std::string& native) {
    return IsFolderStatus(StatusOf(FolderOf(native))) ? FileError::NotFound : FileError::PathNotFound;
}

FileError PathErrors(const std::string& source, const std::string& target) {
    const FileError error = PathError(source);
    return error == FileError::None ? PathError(target) : error;
}

/// The mark counts for the super-user too, as on Windows.
bool IsReadOnlyFile(const std::string& native, const struct stat& status) {
    if ((status.st_mode & AnyWrite) == 0) {
        return true;
    }
    return faccessat(AT_FDCWD, native.c_str(), W_OK, AT_EACCESS) != 0;
}

/// False when another user of this service holds the file in a way that the lock excludes. A file system
/// without locks excludes nobody.
bool TryLock(const FileDescriptor& file, bool exclusive) {
    return flock(file.Get(), (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool IsHeld(const std::string& native) {
    const FileDescriptor file(open(native.c_str(), O_RDONLY | AlwaysFlags));
    return file.IsOpen() && !TryLock(file, true);
}

/// Why a file of that status may not be overwritten or deleted; None when it may, or when there is none.
FileError ChangeError(const std::string& native, const std::optional<struct stat>& status) {
    if (!status) {
        return FileError::None;
    }
    if (IsFolderStatus(status) || IsReadOnlyFile(native, *status)) {
        return FileError::AccessDenied;
    }
    return IsHeld(native) ? FileError::SharingViolation : FileError::None;
}

/// Opens a regular file and locks it. Gives none with the reason in `error` on failure.
FileDescriptor OpenLocked(const std::string& native, int flags, bool exclusive, FileError& error) {
    FileDescriptor file(open(native.c_str(), flags | AlwaysFlags, NewFileMode));
    if (!file.IsOpen()) {
        error = ErrorOf(errno, native);
        return {};
    }
    struct stat status {};
    if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        error = FileError::AccessDenied;
        return {};
    }
    if (!TryLock(file, exclusive)) {
        error = FileError::SharingViolation;
        return {};
    }
    error = FileError::None;
    return file;
}

int FlagsOf(const OpenRequest& request) {
    int flags = O_RDWR;
    if (request.Disposition != FileDisposition::CreateAlways) {
        flags = request.Access == FileAccess::Read    ? O_RDONLY
                : request.Access == FileAccess::Write ? O_WRONLY
                                                      : O_RDWR;
    }
    switch (request.Disposition) {
    case FileDisposition::CreateNew:
        return flags | O_CREAT | O_EXCL;
    case FileDisposition::CreateAlways:
    case FileDisposition::OpenAlways:
        return flags | O_CREAT;
    case FileDisposition::OpenExisting:
        break;
    }
    return flags;
}

class LockedFile : public OpenFile {
public:
    FileDescriptor File;
};

/// A file that is deleted at the end unless it was given another name.
class TemporaryFile {
public:
    /// `folder` ends in a separator. Without IsOpen the reason is in Error.
    explicit TemporaryFile(const std::string& folder) {
        for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
            Name = folder + TemporaryName();
            File = FileDescriptor(open(Name.c_str(), O_WRONLY | O_CREAT | O_EXCL | AlwaysFlags, NewFileMode));
            Error = File.IsOpen() ? FileError::None : ErrorOf(errno, Name);
            if (Error != FileError::FileExists) {
                return;
            }
        }
    }
    ~TemporaryFile() {
        if (File.IsOpen() && !IsKept) {
            unlink(Name.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string Name;
    FileDescriptor File;
    FileError Error = FileError::None;

    /// Leaves the file on disk.
    void Keep() { IsKept = true; }

private:
    bool IsKept = false;
};

bool WriteAll(const FileDescriptor& file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(file.Get(), bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

/// False with the reason in `errno` on failure.
bool CopyBytes(const FileDescriptor& source, const FileDescriptor& target) {
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count = read(source.Get(), buffer.data(), buffer.size());
        if (count == 0) {
            return true;
        }
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 || !WriteAll(target, buffer.data(), static_cast<std::size_t>(count))) {
            return false;
        }
    }
}

/// Renames without ever replacing a file; false with the reason in `errno` on failure.
bool RenameToNew(const std::string& source, const std::string& target) {
    if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // The file system does not know that kind of renaming.
    if (link(source.c_str(), target.c_str()) != 0) {
        return false;
    }
    unlink(source.c_str());
    return true;
}

/// Makes a changed name durable. That cannot be undone or repeated when it fails, so there is no result.
void FlushFolder(const std::string& folder) {
    const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.IsOpen()) {
        fsync(descriptor.Get());
    }
}

FileError CopyNative(const std::string& source, const std::string& target, bool failIfExists) {
    FileError error = FileError::None;
    const FileDescriptor from = posix::OpenToCopy(source, error);
    if (!from.IsOpen()) {
        return error;
    }
    const auto targetStatus = StatusOf(target);
    if (targetStatus && failIfExists) {
        return FileError::FileExists;
    }
    error = ChangeError(target, targetStatus);
    if (error != FileError::None) {
        return error;
    }
    TemporaryFile copy(FolderOf(target));
    if (!copy.File.IsOpen()) {
        return copy.Error;
    }
    if (!CopyBytes(from, copy.File)) {
        return ErrorOf(errno, target);
    }
    const bool isDone =
        failIfExists ? RenameToNew(copy.Name, target) : rename(copy.Name.c_str(), target.c_str()) == 0;
    if (!isDone) {
        return ErrorOf(errno, target);
    }
    copy.Keep();
    return FileError::None;
}

FileError ReplaceNative(const std::string& source, const std::string& target) {
    const auto sourceStatus = StatusOf(source);
    if (!sourceStatus) {
        return ErrorOf(errno, source);
    }
    const auto targetStatus = StatusOf(target);
    const bool isRefused =
        IsFolderStatus(sourceStatus) || ChangeError(target, targetStatus) != FileError::None;
    if (isRefused) {
        return FileError::AccessDenied;
    }
    if (targetStatus && chmod(source.c_str(), targetStatus->st_mode & 07777U) != 0) {
        return ErrorOf(errno, source);
    }
    const std::string folder = FolderOf(target); // before the renaming, after which nothing may fail
    if (rename(source.c_str(), target.c_str()) != 0) {
        return ErrorOf(errno, target);
    }
    FlushFolder(folder);
    return FileError::None;
}

/// Sharing is emulated among the users of this service, of this process or another, by advisory locks: a file
/// opened with FileShare::None excludes every other open, copy, removal and replacement meanwhile, and fails
/// while there is another open file. Two opens that share anything do not exclude each other. An open file
/// also keeps others from removing or replacing it. Programs that ask for no locks are not excluded.
class PosixFiles : public Files {
public:
    bool Exists(const std::string& path) override {
        struct stat status {};
        return PathError(path) == FileError::None &&
               (lstat(posix::NativePath(path).c_str(), &status) == 0 || !IsAbsence(errno));
    }

    bool IsFolder(const std::string& path) override {
        return PathError(path) == FileError::None && IsFolderStatus(StatusOf(posix::NativePath(path)));
    }

    bool IsReadOnly(const std::string& path) override {
        if (PathError(path) != FileError::None) {
            return false;
        }
        const std::string native = posix::NativePath(path);
        const auto status = StatusOf(native);
        return status && !IsFolderStatus(status) && IsReadOnlyFile(native, *status);
    }

    OpenResult Open(const OpenRequest& request) override {
        FileError error = PathError(request.Path);
        if (error != FileError::None) {
            return {nullptr, error};
        }
        const std::string native = posix::NativePath(request.Path);
        const int flags = FlagsOf(request);
        const auto status = StatusOf(native);
        if ((flags & O_ACCMODE) != O_RDONLY && (flags & O_EXCL) == 0 && status &&
            IsReadOnlyFile(native, *status)) {
            return {nullptr, FileError::AccessDenied};
        }
        auto file = std::make_unique<LockedFile>(); // first: nothing may fail once there is a file
        file->File = OpenLocked(native, flags, request.Share == FileShare::None, error);
        if (!file->File.IsOpen()) {
            return {nullptr, error};
        }
        if (request.Disposition == FileDisposition::CreateAlways && ftruncate(file->File.Get(), 0) != 0) {
            return {nullptr, ErrorOf(errno, native)};
        }
        return {std::move(file), FileError::None};
    }

    FileError Copy(const std::string& source, const std::string& target, bool failIfExists) override {
        const FileError error = PathErrors(source, target);
        if (error != FileError::None) {
            return error;
        }
        return CopyNative(posix::NativePath(source), posix::NativePath(target), failIfExists);
    }

    FileError Remove(const std::string& path) override {
        FileError error = PathError(path);
        if (error != FileError::None) {
            return error;
        }
        const std::string native = posix::NativePath(path);
        error = ChangeError(native, StatusOf(native));
        if (error != FileError::None) {
            return error;
        }
        return unlink(native.c_str()) == 0 ? FileError::None : ErrorOf(errno, native);
    }

    FileError Flush(const std::string& path) override {
        const FileError error = PathError(path);
        if (error != FileError::None) {
            return error;
        }
        const std::string native = posix::NativePath(path);
        const FileDescriptor file(open(native.c_str(), O_RDONLY | AlwaysFlags));
        const bool isDone = file.IsOpen() && fsync(file.Get()) == 0;
        return isDone ? FileError::None : ErrorOf(errno, native);
    }

    FileError Replace(const std::string& source, const std::string& target) override {
        const FileError error = PathErrors(source, target);
        if (error != FileError::None) {
            return error;
        }
        return ReplaceNative(posix::NativePath(source), posix::NativePath(target));
    }

    OpenResult Lock(const std::string& path) override {
        const FileError error = PathError(path);
        if (error != FileError::None) {
            return {nullptr, error};
        }
        const std::string folder = FolderOf(posix::NativePath(path));
        auto lock = std::make_unique<LockedFile>();
        lock->File = FileDescriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!lock->File.IsOpen() || flock(lock->File.Get(), LOCK_EX | LOCK_NB) != 0) {
            return {nullptr, ErrorOf(errno, folder)};
        }
        return {std::move(lock), FileError::None};
    }

    std::string CreateTemporary(const std::string& folder, FileError& error) override {
        error = PathError(folder);
        if (error != FileError::None) {
            return {};
        }
        TemporaryFile file(posix::NativePath(folder));
        error = file.Error;
        if (error != FileError::None) {
            return {};
        }
        std::string path = folder + file.Name.substr(file.Name.rfind('/') + 1);
        file.Keep();
        return path;
    }

    void SetLastError(FileError error) override { LastErrorOfThread = error; }
};

} // namespace

namespace posix {

FileError LastError() {
    return LastErrorOfThread;
}

FileError ErrorOf(int error, const std::string& native) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
        return FileError::AccessDenied;
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK:
        return FileError::SharingViolation;
    case ENOENT:
        return MissingError(native);
    case ENOTDIR:
        return FileError::PathNotFound;
    case EEXIST:
        return FileError::FileExists;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return FileError::DiskFull;
    case ENAMETOOLONG:
        return FileError::InvalidName;
    case EINVAL:
        return FileError::InvalidParameter;
    default:
        return FileError::Other;
    }
}

FileDescriptor OpenToCopy(const std::string& native, FileError& error) {
    return OpenLocked(native, O_RDONLY, false, error);
}

} // namespace posix

Files& SystemFiles() {
    static PosixFiles files;
    return files;
}

} // namespace pmx
