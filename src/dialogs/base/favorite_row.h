#pragma once

#include "platform/resources.h"
#include "store/list_data.h"

#include <cstdint>
#include <string>

namespace pmx {

/// The pictures of the editor's toolbar column.
enum class ToolbarMark : int { Empty = 1, Ticked = 2, Unavailable = 3 };

/// What the rows of lists show of a favorite. Texts are in the system's code page.
struct FavoriteRow {
    ToolbarMark Mark = ToolbarMark::Unavailable;
    std::string Name;
    std::string Category;
    std::string Kind;
};

FavoriteRow FormatRow(const CPMXTemplUIListData& record, const Resources& strings);

} // namespace pmx
