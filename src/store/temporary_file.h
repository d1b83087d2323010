#pragma once

#include "store/favorite_files.h"

#include <string>

namespace pmx {

/// An empty file made aside in a folder, under a name that nobody else uses. Deleted at the end unless it has
/// been put in its place.
class TemporaryFile {
public:
    /// `folder` ends in a separator; `files` and `clock` must outlive this object.
    TemporaryFile(Files& files, Clock& clock, const std::string& folder)
        : FileSystem(files), Timer(clock), Path(Create(files, folder)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!Path.empty()) {
            RetryDeleteFile(FileSystem, Timer, Path);
        }
    }

    /// Empty when no file could be made.
    const std::string& GetPath() const { return Path; }

    /// The file is no longer this object's concern.
    void Release() { Path.clear(); }

private:
    static std::string Create(Files& files, const std::string& folder) {
        FileError error = FileError::None;
        return files.CreateTemporary(folder, error);
    }

    Files& FileSystem;
    Clock& Timer;
    std::string Path;
};

} // namespace pmx
