#pragma once

#include <cstdint>
#include <string>

namespace pmx::sample {

/// Another name at every call for a file in the making, likely none of another process: `Pmx`, eight hexadecimal digits and
/// `.tmp`, which is what the favorites library calls its own, so that whoever cleans up after a killed process knows both.
std::string UnfinishedName(std::uint32_t process);

} // namespace pmx::sample
