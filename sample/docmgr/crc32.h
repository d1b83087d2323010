#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace pmx::sample {

using Crc32Table = std::array<std::uint32_t, 256>;

constexpr Crc32Table MakeCrc32Table() {
    Crc32Table table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = byte;
        for (int bit = 0; bit < 8; ++bit) {
            table[byte] = (table[byte] >> 1) ^ ((table[byte] & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return table;
}

/// What each byte makes of a checksum whose lowest byte it is.
inline constexpr Crc32Table Crc32OfByte = MakeCrc32Table();

/// The CRC-32 of ISO 3309 (polynomial 04C11DB7, reflected, all ones before and inverted after).
constexpr std::uint32_t Crc32(std::span<const unsigned char> bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const unsigned char byte : bytes) {
        value = (value >> 8) ^ Crc32OfByte[(value ^ byte) & 0xFF];
    }
    return ~value;
}

inline constexpr std::array<unsigned char, 9> Crc32CheckText{'1', '2', '3', '4', '5', '6', '7', '8', '9'};
static_assert(Crc32(Crc32CheckText) == 0xCBF43926);

} // namespace pmx::sample
