#pragma once

#include "PMXTemplUI.h"
#include "host/CPmxDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace pmx {

/// Number of bytes of an attribute table that belong to no smaller part: the whole block.
inline constexpr std::size_t TableSize = PMX_TABLE_SIZE;

static_assert(TableSize == sizeof(_LM_DOCUMENTLAYOUTTABLE));

/// Byte at which the part of the attribute table that belongs to `level` (1 to 5) starts; every part runs to
/// the table's end. None for any other level.
constexpr std::optional<std::size_t> PartStart(std::int32_t level) {
    switch (level) {
    case PMX_LEVEL_DOCUMENT:
        return PMX_TABLE_DOCUMENT_START;
    case PMX_LEVEL_SECTION:
        return PMX_TABLE_SECTION_START;
    case PMX_LEVEL_SHEET:
        return PMX_TABLE_SHEET_START;
    case PMX_LEVEL_FACE:
        return PMX_TABLE_FACE_START;
    case PMX_LEVEL_PAGE:
        return PMX_TABLE_PAGE_START;
    default:
        return std::nullopt;
    }
}

/// True for levels that mark standard favorites made through the exports.
constexpr bool IsStandardLevel(std::int32_t level) {
    return level > PMX_LEVEL_STANDARD;
}

/// True for level 1 and its standard form 101, the only ones whose favorites may stand on the toolbar.
constexpr bool IsDocumentLevel(std::int32_t level) {
    return level == PMX_LEVEL_DOCUMENT || level == PMX_LEVEL_STANDARD + PMX_LEVEL_DOCUMENT;
}

/// Standard numbers that the library knows.
inline constexpr std::int32_t FirstStandardNumber = 1;
inline constexpr std::int32_t LastStandardNumber = 5;

constexpr bool IsKnownStandardNumber(std::int32_t number) {
    return number >= FirstStandardNumber && number <= LastStandardNumber;
}

/// Icon value of a favorite that is new in the list.
inline constexpr std::int64_t NewFavoriteIcon = 14;

} // namespace pmx
