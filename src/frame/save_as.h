#pragma once

#include "PMXTemplUI.h"
#include "dialogs/base/dialog_services.h"
#include "store/list_data_array.h"

#include <cstdint>

namespace pmx {

/// How EX_SaveAsTemplInfo ended.
enum class SaveAsResult : std::int64_t { Saved = 0, Cancelled = 1, Failed = -1 };

/// The mode of EX_SaveAsTemplInfo that makes a new favorite; every other one overwrites.
inline constexpr std::int32_t SaveAsNew = 1;

/// Asks for a name and stores `table` (TableSize bytes) as a favorite of `info`'s level: a new one at the end
/// of the list when `mode` is SaveAsNew, otherwise over the one at `info`'s position, whose document must be
/// loaded. Updates `info` and rewrites the list file. `parent` may be none.
SaveAsResult SaveAsFavorite(CPMXTemplUIListDataArray& list, std::int32_t mode, TemplInfo& info,
                            const void* table, WindowHandle parent, const DialogServices& services);

} // namespace pmx
