#pragma once

#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pmx::test {

inline constexpr const char* ListFile = "PmxTempleList.ini";

/// One favorite of a list file, and of a favorite file of the same name and level.
struct ListedFavorite {
    std::string Name{}; ///< code page 932
    std::int32_t Level = 1;
    bool OnToolbar = false;
    std::int64_t Icon = 14;
    bool IsStandard = false;
    std::string File{}; ///< empty: F0.pmt, F1.pmt … by position
    bool HasFile = true;
};

/// A standard favorite as the exports make it.
ListedFavorite Standard(const std::string& name, std::int32_t level = 101);

/// The value of a key of the section in a list file as the library writes one; none without it.
std::optional<std::string> ListedValue(const std::string& list, const std::string& key);

/// The values of the numbered keys of the section in such a list file, up to the first gap.
std::vector<std::string> ListedValuesIn(const std::string& list);

/// A folder of favorites on disk, with the host's libraries faked.
class FavoriteFolder {
public:
    /// Writes the list file and the files of its user favorites. The table of the favorite at position n is
    /// TableOf(SeedOf(n)).
    void Given(std::vector<ListedFavorite> favorites);

    static unsigned char SeedOf(std::size_t position) { return static_cast<unsigned char>(100 + position); }

    /// The number of favorites that the list file states, and the values of its numbered keys up to the first
    /// gap.
    std::string ListedCount() const;
    std::vector<std::string> ListedValues() const;

    /// The names in those values, in order.
    std::vector<std::string> ListedNames() const;

    TempFolder Folder{"favorites"};
    FakeHost Host;
    FakeServices Store;
};

} // namespace pmx::test
