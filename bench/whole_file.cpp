#include "whole_file.h"

#include "favorites.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#ifdef _WIN32
#include <io.h>
#else
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

void Flush(const File& file, const std::string& path) {
    Require(_commit(_fileno(file.get())) == 0, path + " cannot be flushed");
}

/// Folders are not flushed there.
void FlushFolderOf(const std::string& /*path*/) {}

#else

void Flush(const File& file, const std::string& path) {
    Require(fsync(fileno(file.get())) == 0, path + " cannot be flushed");
}

void FlushFolderOf(const std::string& path) {
    const std::string folder = fs::path(path).parent_path().string();
    Flush(OpenFile(folder, "r"), folder);
}

#endif

void Rename(const std::string& path) {
    fs::rename(Aside(path), path);
    FlushFolderOf(path);
}

} // namespace

std::string ReadWhole(const std::string& path) {
    const File file = OpenFile(path, "rb");
    std::fseek(file.get(), 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(std::ftell(file.get())), '\0');
    std::rewind(file.get());
    Require(std::fread(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(), path + " cannot be read");
    return bytes;
}

void ReplaceWhole(const std::string& path, std::string_view bytes) {
    {
        const File file = OpenFile(Aside(path), "wb");
        Require(std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(),
                path + " cannot be written");
        Flush(file, path);
    }
    Rename(path);
}

std::string Aside(const std::string& path) {
    return path + ".new";
}

void PutInPlace(const std::string& path) {
    Flush(OpenFile(Aside(path), "r+b"), path);
    Rename(path);
}

void Touch(const std::string& path) {
    static fs::file_time_type time = fs::last_write_time(path);
    time += std::chrono::seconds(1);
    fs::last_write_time(path, time);
}

} // namespace pmx::bench
