#pragma once

#include <string>
#include <string_view>

// Files as durably as the store writes them. Paths are the system's. What fails throws std::system_error.

namespace pmx::bench {

/// The bytes of a file.
std::string ReadBytes(const std::string& path);

/// Replaces a file: temporary file beside it, write, flush, rename, flush of the folder.
void ReplaceDurably(const std::string& path, std::string_view bytes);

/// The second half of that, for a temporary file that others wrote.
void RenameDurably(const std::string& temporary, const std::string& path);

/// Flushes the folder that holds the file.
void FlushFolderOf(const std::string& path);

/// Gives the file a time of change that it did not have before.
void Touch(const std::string& path);

} // namespace pmx::bench
