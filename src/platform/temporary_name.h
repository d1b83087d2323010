#pragma once

#include <string>

namespace pmx {

/// A name for a temporary file, `Pmx` and eight hexadecimal digits and `.tmp`: another one at every call, and
/// most likely none that another process has. Whoever creates the file must still refuse an existing one.
std::string TemporaryName();

/// How many names to try before giving up.
constexpr int TemporaryNameAttempts = 100;

} // namespace pmx
