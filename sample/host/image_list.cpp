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
    constexpr int Count = 60;
    const auto strip = std::find_if(std::rbegin(Strips), std::rend(Strips), [resolution](const Strip& each) {
        return each.Resolution <= resolution;
    });
    // ImageList_LoadImage would make do with a fixed palette for the strips that have one.
    const auto bitmap =
        static_cast<HBITMAP>(LoadImageW(GetModuleHandleW(L"PMXTemplUI.dll"), MAKEINTRESOURCEW(strip->Number),
                                        IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR));
    ImageList icons(ImageList_Create(strip->Size, strip->Size, ILC_COLOR24 | ILC_MASK, Count, 0));
    ImageList_AddMasked(icons.get(), bitmap, Transparent);
    DeleteObject(bitmap);
    return icons;
}

} // namespace pmx::host
