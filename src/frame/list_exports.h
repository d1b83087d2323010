#pragma once

#include "PMXTemplUI.h"
#include "store/list_data_array.h"

#include <cstdint>
#include <memory>
#include <string_view>

// What the exports on a list handle do once their arguments are checked. Texts are in the system's code page.

namespace pmx {

/// Opens the favorites of a folder; null when the folder is none or its list cannot be read. `listFileName`
/// and `extension` may be null for the defaults. `services` must outlive the list.
std::unique_ptr<CPMXTemplUIListDataArray> OpenList(const char* folder, const char* listFileName,
                                                   const char* extension, const StoreServices& services);

/// True for the favorites that a host asks for with `level`: up to 100 those of exactly that level; above,
/// those of the level less 100 and the standard favorites of the level itself whose number the library knows.
bool Qualifies(const CPMXTemplUIListData& record, std::int32_t level);

/// The number of favorites that qualify.
std::int64_t CountQualifying(const CPMXTemplUIListDataArray& list, std::int32_t level);

/// Writes the summaries of the favorites that qualify to `buffer`, which has room for them, and gives their
/// number.
std::int64_t CopySummaries(const CPMXTemplUIListDataArray& list, std::int32_t level, void* buffer);

/// Copies the part of the attribute table that belongs to level `part` to `buffer`, loading the favorite
/// first when it is not. False, with the buffer as it was, unless `bufferSize` is the part's exact length.
bool CopyTablePart(CPMXTemplUIListDataArray& list, std::int64_t position, std::int32_t part, void* buffer,
                   std::int64_t bufferSize);

/// Appends a standard favorite and rewrites the list file; a file that cannot be written is not reported.
void AddStandardFavorite(CPMXTemplUIListDataArray& list, const char* name, std::int64_t number,
                         std::int64_t icon, bool toolbar);

/// Cuts `text` to what fits before the end of a TemplInfo text, never inside a character, and ends it with a
/// zero. The target's other bytes become zero.
void FillSummaryText(char (&target)[PMX_TEMPLINFO_TEXT_SIZE], std::string_view text);

} // namespace pmx
