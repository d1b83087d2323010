#pragma once

#include <string>
#include <string_view>

// Files as durable as the store makes them. Paths are the system's. What fails throws.

namespace pmx::bench {

/// The bytes of a file.
std::string ReadWhole(const std::string& path);

/// Replaces a file by these bytes: writes them aside, flushes them and puts them in the place of the old ones.
void ReplaceWhole(const std::string& path, std::string_view bytes);

/// Where others write a new file before it takes the place of the old one.
std::string Aside(const std::string& path);

/// Flushes the file that was written aside and puts it there.
void PutInPlace(const std::string& path);

/// Gives the file a time of change that it did not have before, so that nobody answers out of what he
/// remembers of it.
void Touch(const std::string& path);

} // namespace pmx::bench
