#pragma once

#include "store/list_data_array.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace pmx::bench {

using Records = std::vector<std::unique_ptr<CPMXTemplUIListData>>;

/// That many user favorites at document level, with Japanese names of different lengths in code page 932,
/// trail bytes equal to separators among them, and a favorite file named after each. The same at every call.
Records MakeFavorites(std::size_t count);

/// True when both hold the same favorites in the same order, as far as the list file tells.
bool AreEqual(const Records& left, const Records& right);

/// A favorites folder of its own, gone at the end, with a list file of that many favorites that the store
/// wrote.
class FavoritesFolder {
public:
    explicit FavoritesFolder(std::size_t count);

    const std::string& Path() const { return Folder.Path(); }

    /// The path of a file in it, in code page 932.
    std::string Path(const std::string& name) const { return Folder.Path(name); }

    std::size_t Count() const { return FavoriteCount; }

    /// Opens the folder; its list is not read yet.
    std::unique_ptr<CPMXTemplUIListDataArray> Open() const;

private:
    test::TempFolder Folder{"benchmark"};
    std::size_t FavoriteCount;
};

/// Name of the list file in the folder.
inline constexpr const char* ListFileName = "PmxTempleList.ini";

} // namespace pmx::bench
