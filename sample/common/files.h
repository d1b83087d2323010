#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// The little that the sample host's libraries ask of the file system. Paths are zero-terminated in the
/// system's multibyte code page; the native build takes them as code page 932 with `\` or `/` between
/// folders, as the library does, so that a folder made on Windows opens there too.
namespace pmx::sample {

/// The file's bytes, or nothing when it is no plain file, cannot be read or is longer than `maxSize`.
std::optional<std::vector<unsigned char>> ReadWholeFile(const char* path, std::size_t maxSize);

/// Writes the file whole: to a new file in the same folder, flushed to the disk, which then takes the file's
/// place. When that fails, the former file stays and the new one is removed; a read-only file is never
/// replaced. A process killed in between
/// leaves the former file and, beside it, the unfinished one.
bool ReplaceWholeFile(const char* path, std::span<const unsigned char> bytes);

} // namespace pmx::sample
