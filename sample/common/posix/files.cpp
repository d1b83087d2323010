#include "common/files.h"

#include "common/posix/native_path.h"
#include "common/unfinished_name.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx::sample {

namespace {

/// Owns a file descriptor.
class Descriptor {
public:
    explicit Descriptor(int number) : Number(number) {}
    Descriptor(Descriptor&& other) noexcept : Number(std::exchange(other.Number, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor() { Close(); }

    bool IsOpen() const { return Number >= 0; }
    int Get() const { return Number; }
    void Close() {
        if (IsOpen()) {
            close(std::exchange(Number, -1));
        }
    }

private:
    int Number;
};

/// Removes the file again unless told that it has found its place.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string path) : Path(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile() {
        if (!Kept) {
            unlink(Path.c_str());
        }
    }
    bool MoveTo(const std::string& target) {
        Kept = std::rename(Path.c_str(), target.c_str()) == 0;
        return Kept;
    }

private:
    std::string Path;
    bool Kept = false;
};

std::int64_t SizeOf(const Descriptor& file) {
    struct stat status {};
    return fstat(file.Get(), &status) == 0 ? status.st_size : -1;
}

/// A pipe or a device is refused, and never waited for; a link is refused because it leads out of its folder.
Descriptor OpenForReading(const char* path) {
    Descriptor file(open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    struct stat status {};
    if (file.IsOpen() && (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode))) {
        file.Close();
    }
    return file;
}

bool ReadAll(const Descriptor& file, std::span<unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = read(file.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool WriteAndFlush(const Descriptor& file, std::span<const unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return fsync(file.Get()) == 0;
}

/// The folder of a path with its separator; empty for a mere name.
std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

/// Creates a file beside `path` that nobody else uses; its path is given back in `temporary`.
Descriptor CreateBeside(const std::string& path, std::string& temporary) {
    constexpr int Attempts = 100;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        temporary = FolderOf(path) + UnfinishedName(static_cast<std::uint32_t>(getpid()));
        Descriptor file(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
        if (file.IsOpen() || errno != EEXIST) {
            return file;
        }
    }
    return Descriptor(-1);
}

/// Makes the new name of a file last through a power failure; that it may fail does not undo the replacement.
void FlushFolderOf(const std::string& path) {
    const std::string folder = FolderOf(path);
    const Descriptor handle(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (handle.IsOpen()) {
        fsync(handle.Get());
    }
}

/// A rename would replace such a file without asking.
bool IsReadOnly(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && (status.st_mode & S_IWUSR) == 0;
}

} // namespace

std::optional<std::vector<unsigned char>> ReadWholeFile(const char* path, std::size_t maxSize) {
    const Descriptor file = OpenForReading(path);
    const std::int64_t size = file.IsOpen() ? SizeOf(file) : -1;
    if (size < 0 || size > static_cast<std::int64_t>(maxSize)) {
        return std::nullopt;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    return ReadAll(file, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

bool ReplaceWholeFile(const char* path, std::span<const unsigned char> bytes) {
    const std::string target = NativePath(path);
    if (IsReadOnly(target)) {
        return false;
    }
    std::string name;
    Descriptor file = CreateBeside(target, name);
    if (!file.IsOpen()) {
        return false;
    }
    TemporaryFile temporary(name);
    const bool written = WriteAndFlush(file, bytes);
    file.Close();
    if (!written || !temporary.MoveTo(target)) {
        return false;
    }
    FlushFolderOf(target);
    return true;
}

} // namespace pmx::sample
