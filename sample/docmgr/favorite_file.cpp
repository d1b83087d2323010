#include "docmgr/favorite_file.h"

#include "docmgr/crc32.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace pmx::sample {

namespace {

// The line end and the end-of-text byte show damage by a transfer that took the file for text.
constexpr std::array<unsigned char, 8> Magic{'P', 'M', 'X', 'F', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr std::uint16_t FileVersion = 1;

/// Everything before the name.
struct FileHead {
    std::array<unsigned char, 8> Mark = Magic;
    LittleEndian<std::uint16_t> Version = FileVersion;
    LittleEndian<std::uint16_t> NameSize;
    LittleEndian<std::int32_t> Level;
};

using Checksum = LittleEndian<std::uint32_t>;

static_assert(sizeof(FileHead) + sizeof(Checksum) == FavoriteOverhead);

template <typename Structure>
void Append(std::vector<unsigned char>& bytes, const Structure& structure) {
    const auto* first = reinterpret_cast<const unsigned char*>(&structure);
    bytes.insert(bytes.end(), first, first + sizeof(Structure));
}

template <typename Structure>
Structure Take(std::span<const unsigned char>& bytes) {
    Structure structure;
    std::memcpy(&structure, bytes.data(), sizeof(Structure));
    bytes = bytes.subspan(sizeof(Structure));
    return structure;
}

bool IsLevel(std::int32_t level) {
    return (level >= 1 && level <= 5) || (level >= 101 && level <= 105);
}

bool IsHeadOf(const FileHead& head, std::size_t size) {
    return head.Mark == Magic && head.Version == FileVersion && head.NameSize <= MaxNameSize &&
           size == FavoriteOverhead + head.NameSize + TableSize;
}

bool HasItsChecksum(std::span<const unsigned char> bytes) {
    auto tail = bytes.last(sizeof(Checksum));
    return Take<Checksum>(tail) == Crc32(bytes.first(bytes.size() - sizeof(Checksum)));
}

} // namespace

bool IsStorable(const FavoriteContent& content) {
    return IsLevel(content.Level) && content.Name.size() <= MaxNameSize &&
           content.Name.find('\0') == std::string::npos;
}

std::vector<unsigned char> Encode(const FavoriteContent& content) {
    FileHead head;
    head.NameSize = static_cast<std::uint16_t>(content.Name.size());
    head.Level = content.Level;
    std::vector<unsigned char> bytes;
    bytes.reserve(MaxFavoriteSize);
    Append(bytes, head);
    bytes.insert(bytes.end(), content.Name.begin(), content.Name.end());
    Append(bytes, content.Table);
    Append(bytes, Checksum(Crc32(bytes)));
    return bytes;
}

std::optional<FavoriteContent> Decode(std::span<const unsigned char> bytes) {
    if (bytes.size() < FavoriteOverhead + TableSize || bytes.size() > MaxFavoriteSize) {
        return std::nullopt;
    }
    auto rest = bytes;
    const auto head = Take<FileHead>(rest);
    if (!IsHeadOf(head, bytes.size()) || !HasItsChecksum(bytes)) {
        return std::nullopt;
    }
    FavoriteContent content;
    content.Level = head.Level;
    content.Name.assign(rest.begin(), rest.begin() + head.NameSize);
    rest = rest.subspan(head.NameSize);
    content.Table = Take<AttributeTable>(rest);
    return IsStorable(content) ? std::optional(std::move(content)) : std::nullopt;
}

} // namespace pmx::sample
