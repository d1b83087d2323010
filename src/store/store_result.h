#pragma once

#include <cstdint>

namespace pmx {

/// How an operation on a favorite and its file ended. Those who show messages have one for each.
enum class StoreResult : std::int32_t {
    Success = 0,
    NoFileName = 4096, ///< no file name could be made
    NotWritten = 8192, ///< the favorite file could not be written
    NotRead = 16384,   ///< the favorite file is missing, in use, or no favorite
    OutOfMemory,       ///< the host or the system had no memory for a document
    NotCopied,         ///< a file to import could not be copied into the folder
    OwnFile,           ///< an export would have overwritten the file of a favorite
};

} // namespace pmx
