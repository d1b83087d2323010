#pragma once

#include <string>
#include <vector>

// Values of list files made to do harm.
namespace pmx::test {

/// Numbers in each of the fields that hold one.
std::vector<std::string> FavoritesAtEveryLimit();

/// Names and file names of broken double-byte characters, of every length, and with marks of other formats.
std::vector<std::string> FavoritesWithBrokenNames();

/// Favorites whose file fields lead out of the folder, to outside.pmt beside it, whose path is given, to devices, or to
/// what is no favorite.
std::vector<std::string> FavoritesThatPointOutside(const std::string& outside);

/// Counts that say anything but how many favorites follow.
std::vector<std::string> HostileCounts();

} // namespace pmx::test
