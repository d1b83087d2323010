#pragma once

#include "folder.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::tool {

/// Kinds of trouble, in the order of the table in check.cpp.
enum class Trouble : std::size_t {
    ListUnreadable,
    ListLossy,
    ListMark,
    ListReadOnly,
    ListHeld,
    FolderReadOnly,
    CountHigh,
    BeyondCount,
    SecondNumber,
    OtherLine,
    SecondSection,
    TooFewFields,
    TooManyFields,
    StandardNumber,
    NameEmpty,
    NameLong,
    NameSeparator,
    NameTwice,
    Bytes,
    Level,
    ToolbarLevel,
    ToolbarMany,
    Icon,
    FieldEmpty,
    FileMissing,
    FileOutside,
    FileUnreadable,
    FileEmpty,
    FileDamaged,
    FileForeign,
    FileShared,
    FileUnlisted,
    FileStray,
    LeftoverAside,
    LeftoverEmpty,
};

/// Something that is wrong in a folder, or will be lost when the list is saved next.
struct Finding {
    Trouble What;
    std::optional<std::int32_t> Number; ///< of the entry's key
    std::string Name;                   ///< of the favorite, in the system's code page
    std::string File;                   ///< UTF-8
    std::string Detail;                 ///< UTF-8, may be empty
    bool IsMendable = false;            ///< repair takes care of it
};

/// The word that stands for it in results.
std::string_view CodeOf(Trouble trouble);

/// What it means, as a part of a sentence.
std::string_view ReasonOf(Trouble trouble);

/// The trouble that a value with that fault is.
Trouble TroubleOf(ValueFault fault);

/// Whether a file is what a killed program leaves: an unfinished file of the store, or an empty favorite file that no entry
/// names.
enum class Leftover { None, Aside, Empty };
Leftover LeftoverKind(const FavoritesFolder& folder, const FolderFile& file, bool isListed);

/// Leftovers that are younger may belong to a program that is at work.
bool IsOldLeftover(const FolderFile& file, std::int64_t now);

/// The lines of the favorites that repair would take over, in the order of the list: what the library lists, readable
/// entries beyond the count, and those that are when their name holds no `~`.
std::vector<const ListLine*> KeptLines(const FavoritesFolder& folder);

/// The favorite that a file which no entry names becomes, with the fields that an import gives it; null when the file is
/// not whole, no entry can name it, or it says no name or no level of a user's favorite.
std::unique_ptr<CPMXTemplUIListData> FavoriteOf(const FavoritesFolder& folder, const FolderFile& file);

/// Everything that is wrong in a folder that has been read: first the list, then its entries in order, then the files.
std::vector<Finding> Check(const FavoritesFolder& folder, std::int64_t now);

} // namespace pmx::tool
