#include "durable.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx::bench {

namespace {

constexpr mode_t NewFileMode = 0666;

void Check(bool isDone, const char* what) {
    if (!isDone) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

class Descriptor {
public:
    Descriptor(const std::string& path, int flags)
        : Number(open(path.c_str(), flags | O_CLOEXEC, NewFileMode)) {
        Check(Number >= 0, path.c_str());
    }
    ~Descriptor() { close(Number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return Number; }

private:
    int Number;
};

void WriteAll(const Descriptor& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file.Get(), bytes.data(), bytes.size());
        Check(written > 0, "write");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Rename(const std::string& from, const std::string& to) {
    Check(std::rename(from.c_str(), to.c_str()) == 0, "rename");
    FlushFolderOf(to);
}

} // namespace

std::string ReadBytes(const std::string& path) {
    const Descriptor file(path, O_RDONLY);
    struct stat status {};
    Check(fstat(file.Get(), &status) == 0, "fstat");
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count = read(file.Get(), bytes.data() + length, bytes.size() - length);
        Check(count > 0, "read");
        length += static_cast<std::size_t>(count);
    }
    return bytes;
}

void ReplaceDurably(const std::string& path, std::string_view bytes) {
    const std::string temporary = path + ".new";
    {
        const Descriptor file(temporary, O_WRONLY | O_CREAT | O_EXCL);
        WriteAll(file, bytes);
        Check(fsync(file.Get()) == 0, "fsync");
    }
    Rename(temporary, path);
}

void RenameDurably(const std::string& temporary, const std::string& path) {
    {
        const Descriptor file(temporary, O_RDONLY);
        Check(fsync(file.Get()) == 0, "fsync");
    }
    Rename(temporary, path);
}

void FlushFolderOf(const std::string& path) {
    const Descriptor folder(path.substr(0, path.rfind('/') + 1), O_RDONLY | O_DIRECTORY);
    Check(fsync(folder.Get()) == 0, "fsync");
}

void Touch(const std::string& path) {
    static std::atomic<time_t> seconds = 1'000'000'000;
    const timespec time{++seconds, 0};
    const timespec times[2] = {time, time};
    Check(utimensat(AT_FDCWD, path.c_str(), times, 0) == 0, "utimensat");
}

} // namespace pmx::bench
