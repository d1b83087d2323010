#include "support/temp_folder.h"

#include "support/sjis.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>
#include <system_error>

namespace pmx::test {

namespace fs = std::filesystem;

namespace {

std::string SjisOf(const fs::path& path) {
    return Sjis(path.generic_u8string());
}

fs::path Parent() {
    if (const char* const folder = std::getenv("PMX_TEMP_FOLDER")) {
        return fs::absolute(folder);
    }
    const char* const buildFolder = std::getenv("PMX_BUILD_FOLDER");
    return buildFolder == nullptr ? fs::temp_directory_path() : fs::absolute(buildFolder) / "temp";
}

std::string UniqueName(std::string_view label) {
    static const unsigned Process = std::random_device{}();
    static std::atomic<unsigned> count = 0;
    return "pmx-" + std::string(label) + '-' + std::to_string(Process) + '-' + std::to_string(++count);
}

std::string WithBackslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

void MakeWritable(const fs::path& path) {
    std::error_code ignored;
    fs::permissions(path, fs::perms::owner_write, fs::perm_options::add, ignored);
}

void RemoveAll(const fs::path& path) {
    if (fs::is_directory(path)) {
        MakeWritable(path);
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
            MakeWritable(entry.path());
        }
    } else {
        MakeWritable(path);
    }
    fs::remove_all(path);
}

} // namespace

fs::path DiskPath(std::string_view path) {
    const std::string utf8 = Utf8(path);
    std::u8string native(utf8.begin(), utf8.end());
    std::replace(native.begin(), native.end(), u8'\\', u8'/');
    return {native};
}

TempFolder::TempFolder(std::string_view label) : TempFolder(Parent(), label) {}

TempFolder::TempFolder(const fs::path& parent, std::string_view label) {
    fs::create_directories(parent);
    const std::string prefix = WithBackslashes(SjisOf(parent)) + '\\';
    do {
        FolderPath = prefix + UniqueName(label) + '\\';
    } while (!fs::create_directory(DiskPath(FolderPath)));
}

TempFolder::~TempFolder() {
    try {
        RemoveAll(DiskPath(FolderPath));
    } catch (const fs::filesystem_error& error) {
        std::fprintf(stderr, "a temporary folder is left behind: %s\n", error.what());
    }
}

void TempFolder::Write(std::string_view name, std::string_view bytes) const {
    std::ofstream file(DiskPath(Path(name)), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + Utf8(name));
    }
}

std::string TempFolder::Read(std::string_view name) const {
    const fs::path path = DiskPath(Path(name));
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + Utf8(name));
    }
    std::string bytes(fs::file_size(path), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

void TempFolder::AddFolder(std::string_view name) const {
    fs::create_directory(DiskPath(Path(name)));
}

bool TempFolder::Exists(std::string_view name) const {
    return fs::exists(DiskPath(Path(name)));
}

std::vector<std::string> TempFolder::Names() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(DiskPath(FolderPath))) {
        names.push_back(SjisOf(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void TempFolder::Remove(std::string_view name) const {
    RemoveAll(DiskPath(Path(name)));
}

void TempFolder::SetReadOnly(std::string_view name, bool readOnly) const {
    constexpr fs::perms AnyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    const fs::path path = DiskPath(Path(name));
    if (readOnly) {
        fs::permissions(path, AnyWrite, fs::perm_options::remove);
    } else {
        fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
    }
}

} // namespace pmx::test
