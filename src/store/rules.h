#pragma once

#include "platform/text.h"
#include "store/levels.h"
#include "store/list_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What favorites may be, whoever makes or changes them.

namespace pmx {

/// Most bytes of a name that a user gives.
inline constexpr std::size_t NameLimit = 32;

/// Most favorites that may be on the toolbar.
inline constexpr std::int64_t ToolbarLimit = 20;

/// Icon values that a user may choose. The values from 0 on below them are left to standard favorites; there is no icon
/// of any other value.
inline constexpr std::int64_t FirstOfferedIcon = NewFavoriteIcon;
inline constexpr std::int64_t LastOfferedIcon = 59;

/// The name without the blanks at its ends, full-width ones among them.
std::string TrimmedName(std::string_view name);

/// True when the name holds the character that parts the fields of the list file.
inline bool HasSeparator(std::string_view name) {
    return FindSingleByte(name, FieldSeparator, SystemLeadBytes()) != std::string_view::npos;
}

} // namespace pmx
