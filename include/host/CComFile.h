#pragma once

#include "host/QrtCommon.h"

#include <memory>

/// A file opened through the host's common library: a thin class over the functions of QrtCommon.h. Owns its
/// file and closes it when destroyed.
class CComFile {
public:
    /// Opens an existing file, mode 0 for reading; 1 on success. A file opened before is closed first.
    int32_t Open(const char* path, int32_t mode) {
        Close();
        QrtFile* opened = nullptr;
        const int32_t result = QrtFileOpen(path, mode, &opened);
        Handle.reset(opened);
        return result;
    }

    /// Size in bytes of the open file; -1 when none is open or the size cannot be told.
    int64_t GetFileSize() const { return Handle ? QrtFileGetSize(Handle.get()) : -1; }

    void Close() { Handle.reset(); }

private:
    struct Closer {
        void operator()(QrtFile* file) const { QrtFileClose(file); }
    };

    std::unique_ptr<QrtFile, Closer> Handle;
};
