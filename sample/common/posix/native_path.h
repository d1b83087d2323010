#pragma once

#include <string>
#include <string_view>

namespace pmx::sample {

/// The path, given in code page 932, as this system names it: UTF-8 with `/` between folders. Empty, which no
/// file is called, when it cannot be converted.
std::string NativePath(std::string_view path);

} // namespace pmx::sample
