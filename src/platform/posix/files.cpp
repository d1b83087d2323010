#include "platform/files.h"

#include "platform/posix/code_page.h"
#include "platform/posix/file_descriptor.h"

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx {

namespace {

using posix::FileDescriptor;

constexpr mode_t NewFileMode = 0666;
constexpr mode_t AnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

/// A pipe or a terminal under the name of a file must not make an open wait, or become our terminal.
constexpr int AlwaysFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// The path as the system takes it; none when no file can have it.
std::optional<std::string> NativeFile(const std::string& path) {
    const bool isPossible = !path.empty() && path.find('\0') == std::string::npos;
    return isPossible ? std::optional(posix::NativePath(path)) : std::nullopt;
}

std::optional<struct stat> StatusOf(const std::string& native) {
    struct stat status {};
    return stat(native.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// True when a query that failed so says that nothing has the name.
bool IsAbsence(int error) {
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

FileError ErrorOf(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK:
        return FileError::Held;
    case ENOENT:
    case ENOTDIR:
        return FileError::NotFound;
    case EEXIST:
        return FileError::Exists;
    default:
        return FileError::Other;
    }
}

FileError ErrorUnless(bool succeeded) {
    return succeeded ? FileError::None : ErrorOf(errno);
}

bool IsFolderStatus(const std::optional<struct stat>& status) {
    return status && S_ISDIR(status->st_mode);
}

/// The folder of a path, ending in a separator; `./` for a mere name.
std::string FolderOf(const std::string& native) {
    const std::size_t separator = native.rfind('/');
    return separator == std::string::npos ? "./" : native.substr(0, separator + 1);
}

/// The mark counts for the super-user too, as on Windows.
bool IsReadOnlyFile(const std::string& native, const struct stat& status) {
    return (status.st_mode & AnyWrite) == 0 || faccessat(AT_FDCWD, native.c_str(), W_OK, AT_EACCESS) != 0;
}

/// False when another user of this service holds the file in a way that the lock excludes. A file system
/// without locks excludes nobody.
bool TryLock(const FileDescriptor& file, bool exclusive) {
    return flock(file.Get(), (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

/// The same for a shared lock. Whoever only asks whether the file is held, to replace it, has it for a moment.
bool TryShare(const FileDescriptor& file) {
    bool isFree = TryLock(file, false);
    for (int attempts = 3; attempts > 0 && !isFree; --attempts) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        isFree = TryLock(file, false);
    }
    return isFree;
}

/// Why a file with that status may not be replaced or deleted; None when it may, or when there is none.
FileError ChangeError(const std::string& native, const std::optional<struct stat>& status) {
    if (!status) {
        return FileError::None;
    }
    if (IsFolderStatus(status) || IsReadOnlyFile(native, *status)) {
        return FileError::Held;
    }
    const FileDescriptor file(open(native.c_str(), O_RDONLY | AlwaysFlags));
    return file.IsOpen() && !TryLock(file, true) ? FileError::Held : FileError::None;
}

/// Opens a regular file beside others who share it. Without one the reason is in `error`.
FileDescriptor OpenShared(const std::string& path, int flags, FileError& error) {
    error = FileError::NotFound;
    const std::optional<std::string> native = NativeFile(path);
    if (!native) {
        return {};
    }
    const std::optional<struct stat> before = flags != O_RDONLY ? StatusOf(*native) : std::nullopt;
    if (before && IsReadOnlyFile(*native, *before)) {
        error = FileError::Held;
        return {};
    }
    FileDescriptor file(open(native->c_str(), flags | AlwaysFlags));
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0) {
        error = ErrorOf(errno);
        return {};
    }
    const bool isFree = S_ISREG(status.st_mode) && TryShare(file);
    error = isFree ? FileError::None : FileError::Held;
    return isFree ? std::move(file) : FileDescriptor();
}

bool ReadAll(const FileDescriptor& file, std::string& content) {
    struct stat status {};
    if (fstat(file.Get(), &status) != 0) {
        return false;
    }
    std::size_t done = 0;
    for (std::size_t room = static_cast<std::size_t>(status.st_size) + 1;; room *= 2) { // it may grow
        content.resize(room);
        while (done < room) {
            const ssize_t count = read(file.Get(), content.data() + done, room - done);
            if (count == 0) {
                content.resize(done);
                return true;
            }
            if (count < 0 && errno != EINTR) {
                return false;
            }
            done += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
    }
}

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

FileDescriptor OpenNew(const std::string& native) {
    return FileDescriptor(open(native.c_str(), O_WRONLY | O_CREAT | O_EXCL | AlwaysFlags, NewFileMode));
}

/// Gives a file the permissions of another that it is to replace.
bool TakeMode(const std::string& native, const struct stat& status, const struct stat& former) {
    constexpr mode_t Permissions = 07777;
    const mode_t mode = former.st_mode & Permissions;
    return (status.st_mode & Permissions) == mode || chmod(native.c_str(), mode) == 0;
}

/// Makes a changed name durable. That cannot be undone or repeated when it fails, so there is no result.
void FlushFolder(const std::string& folder) {
    const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.IsOpen()) {
        fsync(descriptor.Get());
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

class LockedFolder : public FileLock {
public:
    explicit LockedFolder(const std::string& folder)
        : Folder(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {}

    FileError TryLock() const {
        if (Folder.IsOpen() && flock(Folder.Get(), LOCK_EX | LOCK_NB) == 0) {
            return FileError::None;
        }
        return Folder.IsOpen() && errno == EWOULDBLOCK ? FileError::Held : FileError::Other;
    }

private:
    FileDescriptor Folder;
};

class PosixFiles : public Files {
public:
    bool Exists(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        struct stat status {};
        return native && (lstat(native->c_str(), &status) == 0 || !IsAbsence(errno));
    }

    bool IsFolder(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        return native && IsFolderStatus(StatusOf(*native));
    }

    bool IsReadOnly(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        const std::optional<struct stat> status = native ? StatusOf(*native) : std::nullopt;
        return status && !IsFolderStatus(status) && IsReadOnlyFile(*native, *status);
    }

    bool IsSame(const std::string& left, const std::string& right) override {
        const std::optional<std::string> nativeLeft = NativeFile(left);
        const std::optional<std::string> nativeRight = NativeFile(right);
        if (!nativeLeft || !nativeRight) {
            return false;
        }
        const std::optional<struct stat> first = StatusOf(*nativeLeft);
        const std::optional<struct stat> second = StatusOf(*nativeRight);
        return first && second && first->st_dev == second->st_dev && first->st_ino == second->st_ino;
    }

    FileError Read(const std::string& path, std::string& content) override {
        FileError error = FileError::None;
        const FileDescriptor file = OpenShared(path, O_RDONLY, error);
        std::string read;
        if (file.IsOpen() && !ReadAll(file, read)) {
            error = FileError::Other;
        }
        if (error == FileError::None) {
            content = std::move(read);
        }
        return error;
    }

    FileError TryOpen(const std::string& path) override {
        FileError error = FileError::None;
        OpenShared(path, O_RDWR, error);
        return error;
    }

    FileError CreateNew(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        if (!native) {
            return FileError::NotFound;
        }
        return ErrorUnless(OpenNew(*native).IsOpen());
    }

    FileError WriteNew(const std::string& path, const std::string& content) override {
        const std::optional<std::string> native = NativeFile(path);
        if (!native) {
            return FileError::NotFound;
        }
        const FileDescriptor file = OpenNew(*native);
        if (!file.IsOpen()) {
            return ErrorOf(errno);
        }
        if (WriteAll(file, content.data(), content.size()) && fsync(file.Get()) == 0) {
            return FileError::None;
        }
        unlink(native->c_str());
        return FileError::Other;
    }

    FileError Overwrite(const std::string& path, const std::string& content) override {
        FileError error = FileError::None;
        const FileDescriptor file = OpenShared(path, O_WRONLY, error);
        if (!file.IsOpen()) {
            return error;
        }
        const bool isWritten = WriteAll(file, content.data(), content.size()) &&
                               ftruncate(file.Get(), static_cast<off_t>(content.size())) == 0 &&
                               fsync(file.Get()) == 0;
        return isWritten ? FileError::None : FileError::Other;
    }

    FileError Flush(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        if (!native) {
            return FileError::NotFound;
        }
        const FileDescriptor file(open(native->c_str(), O_RDONLY | AlwaysFlags));
        return ErrorUnless(file.IsOpen() && fsync(file.Get()) == 0);
    }

    FileError Replace(const std::string& source, const std::string& target) override {
        const std::optional<std::string> from = NativeFile(source);
        const std::optional<std::string> to = NativeFile(target);
        if (!from || !to) {
            return FileError::NotFound;
        }
        const std::optional<struct stat> status = StatusOf(*from);
        if (!status) {
            return ErrorOf(errno);
        }
        const std::optional<struct stat> former = StatusOf(*to);
        if (ChangeError(*to, former) != FileError::None) {
            return FileError::Held;
        }
        const std::string folder = FolderOf(*to); // before the renaming, after which nothing may fail
        if ((former && !TakeMode(*from, *status, *former)) || rename(from->c_str(), to->c_str()) != 0) {
            return ErrorOf(errno);
        }
        FlushFolder(folder);
        return FileError::None;
    }

    FileError Rename(const std::string& source, const std::string& target) override {
        const std::optional<std::string> from = NativeFile(source);
        const std::optional<std::string> to = NativeFile(target);
        if (!from || !to) {
            return FileError::NotFound;
        }
        return ErrorUnless(RenameToNew(*from, *to));
    }

    FileError Remove(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        if (!native) {
            return FileError::NotFound;
        }
        const FileError error = ChangeError(*native, StatusOf(*native));
        return error == FileError::None ? ErrorUnless(unlink(native->c_str()) == 0) : error;
    }

    LockResult Lock(const std::string& path) override {
        const std::optional<std::string> native = NativeFile(path);
        if (!native) {
            return {nullptr, FileError::Other};
        }
        auto lock = std::make_unique<LockedFolder>(FolderOf(*native));
        const FileError error = lock->TryLock();
        return error == FileError::None ? LockResult{std::move(lock)} : LockResult{nullptr, error};
    }
};

} // namespace

Files& SystemFiles() {
    static PosixFiles files;
    return files;
}

} // namespace pmx
