#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace pmx::sample {

/// The CRC-32 of ISO 3309 (polynomial 04C11DB7, reflected, all ones before and inverted after).
constexpr std::uint32_t Crc32(std::span<const unsigned char> bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const unsigned char byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~value;
}

inline constexpr std::array<unsigned char, 9> Crc32CheckText{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
static_assert(Crc32(Crc32CheckText) == 0xCBF43926);

} // namespace pmx::sample
