#include "host/image_list.h"

#include <algorithm>
#include <iterator>

namespace pmx::host {

namespace {

struct Strip {
    int Resolution; ///< from which on it is used
    int Number;
    int Size;
};
constexpr Strip Strips[] = {{0, 2000, 16}, {120, 2020, 20}, {144, 2024, 24}, {192, 2001, 32}};

} // namespace

ImageList LoadFavoriteIcons(int resolution) {
    constexpr COLORREF Transparent = RGB(192, 192, 192);
    const auto strip = std::find_if(std::rbegin(Strips), std::rend(Strips), [resolution](const Strip& each) {
        return each.Resolution <= resolution;
    });
    return ImageList(ImageList_LoadImageW(GetModuleHandleW(L"PMXTemplUI.dll"),
                                          MAKEINTRESOURCEW(strip->Number), strip->Size, 0, Transparent,
                                          IMAGE_BITMAP, LR_CREATEDIBSECTION));
}

} // namespace pmx::host
