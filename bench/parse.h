#pragma once

#include "favorites.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

// The quickest straightforward reading of the list's keys and values: what the practical limit and every peer
// use, so that they differ only in how they come by the keys and values.

namespace pmx::bench {

/// The number in a key "TemplateData" + number; none for other keys.
std::optional<std::size_t> DataNumber(std::string_view key);

/// A count as it stands in the file; 0 when it is no number or negative.
std::size_t CountOf(std::string_view value);

/// The favorite that a value describes; null when it is damaged. With `isDoubleByte` the text is in code page
/// 932, else it is UTF-8, in which the separator is never part of another character.
std::unique_ptr<CPMXTemplUIListData> FavoriteOf(std::string_view value, bool isDoubleByte);

} // namespace pmx::bench
