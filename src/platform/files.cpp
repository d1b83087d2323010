#include "platform/files.h"

namespace pmx {

FileError PathError(const std::string& path) {
    if (path.empty()) {
        return FileError::PathNotFound;
    }
    return path.find('\0') == std::string::npos ? FileError::None : FileError::InvalidName;
}

} // namespace pmx
