#pragma once

#include "docmgr/attribute_table.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// The favorite file of the sample host, described in docs/files.md.
namespace pmx::sample {

/// What a favorite file carries.
struct FavoriteContent {
    AttributeTable Table = FreshTable();
    std::int32_t Level = 1; ///< 1 to 5, or 101 to 105 for a copy of a standard favorite
    std::string Name;       ///< code page 932, at most MaxNameSize bytes, without zero bytes
};

inline constexpr std::size_t MaxNameSize = 260;
inline constexpr std::size_t FavoriteOverhead =
    8 + 2 + 2 + 4 + 4; ///< magic, version, name length, level, checksum
inline constexpr std::size_t MaxFavoriteSize = FavoriteOverhead + MaxNameSize + TableSize;

/// Whether the content can be written and would be read again.
bool IsStorable(const FavoriteContent& content);

/// The bytes of a favorite file. The content must be storable.
std::vector<unsigned char> Encode(const FavoriteContent& content);

/// The content of a favorite file, or nothing when the bytes are not exactly those of one.
std::optional<FavoriteContent> Decode(std::span<const unsigned char> bytes);

} // namespace pmx::sample
