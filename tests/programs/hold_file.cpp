// Opens a file for reading and writing without sharing it, says so by a line on the standard output, and holds
// it until the standard input ends. With shared: before the path others may read and write the file
// meanwhile, but not replace or delete it. Usage: pmx_hold_file [shared:]path

#include <cstdio>
#include <string>
#include <string_view>

#ifdef _WIN32
#include <windows.h>
#else
#include "platform/posix/code_page.h"

#include <fcntl.h>
#include <sys/file.h>
#endif

namespace {

// The file is closed by the end of the process, whatever that is.
#ifdef _WIN32
bool Hold(const std::string& path, bool isShared) {
    const DWORD share = isShared ? FILE_SHARE_READ | FILE_SHARE_WRITE : 0;
    return CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr, OPEN_EXISTING, 0,
                       nullptr) != INVALID_HANDLE_VALUE;
}
#else
bool Hold(const std::string& path, bool isShared) {
    const int file = open(pmx::posix::NativePath(path).c_str(), O_RDWR | O_CLOEXEC);
    return file >= 0 && flock(file, (isShared ? LOCK_SH : LOCK_EX) | LOCK_NB) == 0;
}
#endif

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        return 2;
    }
    constexpr std::string_view SharedMark = "shared:";
    const std::string_view path = arguments[1];
    const bool isShared = path.starts_with(SharedMark);
    if (!Hold(std::string(path.substr(isShared ? SharedMark.size() : 0)), isShared)) {
        return 1;
    }
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
