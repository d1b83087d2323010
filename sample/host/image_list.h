#pragma once

#include <memory>
#include <type_traits>

#include <windows.h>

#include <commctrl.h>

namespace pmx::host {

struct ImageListDeleter {
    void operator()(HIMAGELIST list) const { ImageList_Destroy(list); }
};
using ImageList = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter>;

/// The icons that the favorites library has for toolbars on a screen of that resolution: 16 by 16 pixels at 96
/// dots per inch. A favorite's IconIndex counts in them.
ImageList LoadFavoriteIcons(int resolution);

} // namespace pmx::host
