#include "host/image_list.h"

namespace pmx::host {

ImageList LoadFavoriteIcons() {
    constexpr int SmallIcons = 2000;
    constexpr int Size = 16;
    constexpr COLORREF Transparent = RGB(192, 192, 192);
    return ImageList(ImageList_LoadImageW(GetModuleHandleW(L"PMXTemplUI.dll"), MAKEINTRESOURCEW(SmallIcons),
                                          Size, 0, Transparent, IMAGE_BITMAP, LR_CREATEDIBSECTION));
}

} // namespace pmx::host
