#include "dialogs/base/favorite_icons.h"

#include "res/ids.h"

namespace pmx {

std::unique_ptr<ImageList> LoadFavoriteIcons(ImageLists& images) {
    constexpr int IconWidth = 32;
    return images.FromBitmap(bitmap::LargeIcons, IconWidth, Color::LightGrey);
}

void ShowFavoriteIcon(DialogWindow& window, ControlId iconBox, const ImageList* icons,
                      std::int64_t iconValue) {
    if (icons) {
        window.SetIcon(iconBox, icons->IconOf(iconValue));
    }
}

} // namespace pmx
