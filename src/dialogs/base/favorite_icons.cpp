#include "dialogs/base/favorite_icons.h"

#include "res/ids.h"

#include <algorithm>
#include <span>
#include <utility>

namespace pmx {

namespace {

/// A strip, and the resolution from which on it is used.
struct Strip {
    int Resolution;
    ResourceId Bitmap;
    int ImageWidth;
};

/// The strip for the resolution. The first one stands in for those that a resource library of the host lacks.
std::unique_ptr<ImageList> Load(ImageLists& images, std::span<const Strip> strips, int resolution,
                                Color mask) {
    const auto fitting = std::find_if(strips.rbegin(), strips.rend() - 1, [resolution](const Strip& strip) {
        return strip.Resolution <= resolution;
    });
    std::unique_ptr<ImageList> loaded = images.FromBitmap(fitting->Bitmap, fitting->ImageWidth, mask);
    const bool isFirst = &*fitting == &strips.front();
    return loaded || isFirst ? std::move(loaded)
                             : images.FromBitmap(strips.front().Bitmap, strips.front().ImageWidth, mask);
}

} // namespace

std::unique_ptr<ImageList> LoadFavoriteIcons(ImageLists& images, int resolution) {
    static constexpr Strip Icons[] = {{96, bitmap::LargeIcons, 32},
                                      {120, bitmap::Icons40, 40},
                                      {144, bitmap::Icons48, 48},
                                      {192, bitmap::Icons64, 64}};
    return Load(images, Icons, resolution, Color::LightGrey);
}

std::unique_ptr<ImageList> LoadToolbarMarks(ImageLists& images, int resolution) {
    static constexpr Strip Marks[] = {{96, bitmap::StateImages, 16},
                                      {120, bitmap::States20, 20},
                                      {144, bitmap::States24, 24},
                                      {192, bitmap::States32, 32}};
    return Load(images, Marks, resolution, Color::White);
}

void ShowFavoriteIcon(DialogWindow& window, ControlId iconBox, const ImageList* icons,
                      std::int64_t iconValue) {
    if (icons) {
        window.SetIcon(iconBox, icons->IconOf(iconValue));
    }
}

} // namespace pmx
