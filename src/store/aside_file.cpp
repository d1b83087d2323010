#include "store/aside_file.h"

#include "store/favorite_files.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <random>

namespace pmx {

namespace {

constexpr int Attempts = 100;

/// Another name at every call, and most likely none that another process has.
std::string AsideName() {
    // A step with many bits keeps the sequences of two processes apart.
    constexpr std::uint32_t Step = 0x9E3779B1U;
    static std::atomic<std::uint32_t> next{static_cast<std::uint32_t>(std::random_device{}())};
    std::array<char, 16> name{};
    const auto number = static_cast<unsigned>(next.fetch_add(Step));
    const int length = std::snprintf(name.data(), name.size(), "Pmx%08X.tmp", number);
    return {name.data(), static_cast<std::size_t>(length)};
}

} // namespace

AsideFile::AsideFile(const StoreServices& services, const std::string& folder) : AsideFile(services) {
    MakeIn(folder, [&] { return Services.FileSystem.CreateNew(OwnPath); });
}

AsideFile::AsideFile(const StoreServices& services, const std::string& folder, const std::string& content)
    : AsideFile(services) {
    MakeIn(folder, [&] { return Services.FileSystem.WriteNew(OwnPath, content); });
}

AsideFile::AsideFile(const StoreServices& services, const std::string& folder, const std::string& content,
                     const std::string& target, FileError& refusal)
    : AsideFile(services) {
    bool isMade = false;
    MakeIn(folder, [&] {
        refusal = Services.FileSystem.WriteOver(OwnPath, content, target, isMade);
        return isMade ? FileError::None : refusal;
    });
    if (!isMade) {
        refusal = FileError::None;
    } else if (refusal == FileError::None) {
        Keep();
    }
}

template <typename Make>
void AsideFile::MakeIn(const std::string& folder, Make make) {
    for (int attempt = 0; attempt < Attempts && Made == FileError::Exists; ++attempt) {
        OwnPath = folder + AsideName(); // before there is a file, after which nothing may fail
        Made = make();
    }
    if (Made != FileError::None) {
        OwnPath.clear();
    }
}

AsideFile::~AsideFile() {
    if (!OwnPath.empty()) {
        RetryDeleteFile(Services, OwnPath);
    }
}

FileError AsideFile::PutOver(const std::string& target) {
    const FileError error = Services.FileSystem.Replace(OwnPath, target);
    if (error == FileError::None) {
        Keep();
    }
    return error;
}

FileError AsideFile::PutNew(const std::string& target) {
    const FileError error = Services.FileSystem.Rename(OwnPath, target);
    if (error == FileError::None) {
        Keep();
    }
    return error;
}

} // namespace pmx
