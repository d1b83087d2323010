#include "system.h"

#include "platform/posix/code_page.h"
#include "platform/text.h"

#include <algorithm>
#include <ctime>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx::tool {

namespace {

int DescriptorOf(Stream stream) {
    return stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

std::optional<FolderFile> FileOf(int folder, const char* name) {
    struct stat status {};
    if (fstatat(folder, name, &status, 0) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    FolderFile file{.Name = FromUtf8(name),
                    .Shown = name,
                    .Size = static_cast<std::uint64_t>(status.st_size),
                    .Written = static_cast<std::int64_t>(status.st_mtime)};
    file.IsNameable = posix::NativePath(file.Name) == name;
    file.Shown = IsUtf8(name) ? file.Shown : ToUtf8(file.Name);
    return file;
}

} // namespace

bool WriteText(Stream stream, std::string_view utf8) {
    while (!utf8.empty()) {
        const ssize_t written = write(DescriptorOf(stream), utf8.data(), utf8.size());
        if (written < 0) {
            return false;
        }
        utf8.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool IsTerminal(Stream stream) {
    return isatty(DescriptorOf(stream)) != 0;
}

/// No character of the code page lies beyond the first 65536, where bytes that are none come to stand.
bool IsAllCharacters(std::string_view text) {
    const std::u16string wide = ToUtf16(text);
    return std::none_of(wide.begin(), wide.end(),
                        [](char16_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; });
}

std::optional<std::vector<FolderFile>> FilesIn(const std::string& folder) {
    const std::unique_ptr<DIR, FolderCloser> listing(opendir(posix::NativePath(folder).c_str()));
    if (!listing) {
        return std::nullopt;
    }
    std::vector<FolderFile> files;
    while (const dirent* const entry = readdir(listing.get())) {
        if (std::optional<FolderFile> file = FileOf(dirfd(listing.get()), entry->d_name)) {
            files.push_back(*std::move(file));
        }
    }
    std::sort(files.begin(), files.end(),
              [](const FolderFile& left, const FolderFile& right) { return left.Name < right.Name; });
    return files;
}

/// Some characters have two codes in the code page.
std::string FileKey(const std::string& fileName) {
    return posix::NativePath(fileName);
}

bool MayAddFiles(const std::string& folder) {
    return access(posix::NativePath(folder).c_str(), W_OK | X_OK) == 0;
}

std::int64_t Now() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

} // namespace pmx::tool
