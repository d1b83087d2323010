#pragma once

#include "store/list_data_array.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <string>

namespace pmx::bench {

/// A favorites folder, and its list file by the system's path.
struct Place {
    std::string Folder;
    std::string Path;
};

/// A favorites folder of its own, empty at first, gone at the end.
class FavoritesFolder {
public:
    const Place& GetPlace() const { return ItsPlace; }

private:
    test::TempFolder Folder{"benchmark"};
    Place ItsPlace{Folder.Path(), test::DiskPath(Folder.Path("PmxTempleList.ini")).string()};
};

/// An empty list of this system.
struct SystemList : CPMXTemplUIListDataArray {
    SystemList() : CPMXTemplUIListDataArray(nullptr, nullptr, SystemStoreServices()) {}
};

/// Makes it the list's folder. Throws when that cannot be done, as all here do.
void Open(const Place& place, CPMXTemplUIListDataArray& list);

/// Adds that many user favorites at document level, with Japanese names of different lengths in code page
/// 932, trail bytes equal to separators among them, and a favorite file named after each. The same every
/// time.
void AddFavorites(std::size_t count, CPMXTemplUIListDataArray& list);

/// A folder with a list file of that many favorites, written by the store.
void WriteFavorites(std::size_t count, const Place& place);

/// True when both hold the same favorites in the same order, as far as the list file tells.
bool AreEqual(const CPMXTemplUIListDataArray& left, const CPMXTemplUIListDataArray& right);

/// Throws with `what` unless it holds.
void Require(bool holds, const std::string& what);

} // namespace pmx::bench
