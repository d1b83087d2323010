#pragma once

#include <string>
#include <string_view>

// Files as durable as the store makes them. Paths are the system's. What fails throws.

namespace pmx::bench {

/// The bytes of a file.
std::string ReadWhole(const std::string& path);

/// Where a new file is written before it takes the place of the old one.
std::string Aside(const std::string& path);

/// Writes these bytes to a new file.
void WriteWhole(const std::string& path, std::string_view bytes);

/// Flushes the file that was written aside and puts it in the place of the old one.
void PutInPlace(const std::string& path);

/// Gives the file a time of change that it did not have before, so that nobody answers out of what he
/// remembers of it.
void Touch(const std::string& path);

} // namespace pmx::bench
