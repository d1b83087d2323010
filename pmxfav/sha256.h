#pragma once

#include <string>
#include <string_view>

namespace pmx::tool {

/// The SHA-256 digest of the bytes, in hexadecimal digits.
std::string Sha256(std::string_view bytes);

} // namespace pmx::tool
