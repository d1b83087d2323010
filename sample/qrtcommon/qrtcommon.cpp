// The functions of QrtCommon.h. None lets a C++ exception out: lack of memory is a failure result.
#include "host/QrtCommon.h"

#include "common/files.h"

#include <new>
#include <string_view>

using namespace pmx::sample;

struct QrtFile {
    std::unique_ptr<OpenFile> File;
};

namespace {

/// Whether the byte begins a double-byte character of code page 932.
bool IsLeadByte(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

} // namespace

int32_t CheckFileName(const char* name) {
    if (name == nullptr || *name == '\0') {
        return 0;
    }
    constexpr std::string_view Forbidden = "\\/:*?\"<>|";
    const std::string_view text(name);
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (IsLeadByte(text[index])) {
            ++index;
        } else if (Forbidden.find(text[index]) != std::string_view::npos) {
            return 0;
        }
    }
    return 1;
}

int32_t QrtFileOpen(const char* path, int32_t mode, QrtFile** file) {
    *file = nullptr;
    if (path == nullptr || mode != 0) {
        return 0;
    }
    try {
        auto opened = OpenFile::Open(path);
        if (opened == nullptr) {
            return 0;
        }
        auto owner = std::make_unique<QrtFile>();
        owner->File = std::move(opened);
        *file = owner.release();
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int64_t QrtFileGetSize(const QrtFile* file) {
    return file->File->Size();
}

void QrtFileClose(QrtFile* file) {
    const std::unique_ptr<QrtFile> owner(file);
}
