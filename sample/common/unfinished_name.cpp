#include "common/unfinished_name.h"

#include <array>
#include <atomic>
#include <cstdio>

namespace pmx::sample {

std::string UnfinishedName(std::uint32_t process) {
    static std::atomic<std::uint32_t> counter = 0;
    constexpr std::uint32_t NamesOfAProcess = 0x10000;
    std::array<char, 17> name{};
    std::snprintf(name.data(), name.size(), "Pmx%08X.tmp",
                  static_cast<unsigned>(process * NamesOfAProcess + ++counter));
    return name.data();
}

} // namespace pmx::sample
