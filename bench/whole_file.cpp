#include "whole_file.h"

#include "favorites.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#ifdef _WIN32
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace pmx::bench {

namespace {

namespace fs = std::filesystem;

struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

using File = std::unique_ptr<std::FILE, Close>;

File OpenFile(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode));
    Require(file != nullptr, path + " cannot be opened");
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    return file;
}

#ifdef _WIN32

void Flush(const std::string& path) {
    Require(_commit(_fileno(OpenFile(path, "r+b").get())) == 0, path + " cannot be flushed");
}

/// There, what is renamed is not flushed by its folder.
void FlushFolderOf(const std::string& /*path*/) {}

#else

void Flush(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isFlushed = file >= 0 && fsync(file) == 0;
    close(file);
    Require(isFlushed, path + " cannot be flushed");
}

void FlushFolderOf(const std::string& path) {
    Flush(fs::path(path).parent_path().string());
}

#endif

} // namespace

std::string ReadWhole(const std::string& path) {
    const File file = OpenFile(path, "rb");
    std::fseek(file.get(), 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(std::ftell(file.get())), '\0');
    std::rewind(file.get());
    Require(std::fread(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(), path + " cannot be read");
    return bytes;
}

std::string Aside(const std::string& path) {
    return path + ".new";
}

void WriteWhole(const std::string& path, std::string_view bytes) {
    const File file = OpenFile(path, "wb");
    Require(std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(),
            path + " cannot be written");
}

void PutInPlace(const std::string& path) {
    Flush(Aside(path));
    fs::rename(Aside(path), path);
    FlushFolderOf(path);
}

void Touch(const std::string& path) {
    static fs::file_time_type time = fs::last_write_time(path);
    time += std::chrono::seconds(1);
    fs::last_write_time(path, time);
}

} // namespace pmx::bench
