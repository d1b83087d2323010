#pragma once

#include <string>

namespace pmx::host {

/// The command line: [--tour FOLDER] [FAVORITES FOLDER]
struct Options {
    std::wstring FavoritesFolder; ///< by default `favorites` beside the program or in the documents
    std::wstring TourFolder;      ///< empty without a tour
};

Options ReadOptions();

} // namespace pmx::host
