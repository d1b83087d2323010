#pragma once

#include <cstddef>
#include <span>

namespace pmx {

/// The compiled resource file (.res) of the library's own resources, for programs that the system's loader
/// gives none. Lives as long as the process.
std::span<const std::byte> EmbeddedResources() noexcept;

} // namespace pmx
