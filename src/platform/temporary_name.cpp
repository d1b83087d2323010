#include "platform/temporary_name.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <random>

namespace pmx {

std::string TemporaryName() {
    // A step with many bits keeps the sequences of two processes apart.
    constexpr std::uint32_t Step = 0x9E3779B1U;
    static std::atomic<std::uint32_t> next{static_cast<std::uint32_t>(std::random_device{}())};
    std::array<char, 16> name{};
    const auto number = static_cast<unsigned>(next.fetch_add(Step));
    const int length = std::snprintf(name.data(), name.size(), "Pmx%08X.tmp", number);
    return {name.data(), static_cast<std::size_t>(length)};
}

} // namespace pmx
