#include "platform/win32/image_list.h"

#include "platform/win32/handles.h"

#include <type_traits>
#include <utility>

namespace pmx {

namespace win32 {

std::unique_ptr<Icon> WindowsImageList::IconOf(std::int64_t index) const {
    if (index < 0 || index >= Count()) {
        return nullptr;
    }
    const HICON icon = ImageList_GetIcon(Handle, static_cast<int>(index), ILD_NORMAL);
    return icon ? std::make_unique<WindowsIcon>(icon) : nullptr;
}

} // namespace win32

namespace {

struct BitmapDeleter {
    void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, BitmapDeleter>;

/// The bitmap in the screen's colours. As a section one with a palette would keep that, and image lists know only
/// palettes of their own.
Bitmap LoadStrip(ResourceId id) {
    return Bitmap(static_cast<HBITMAP>(
        LoadImageW(win32::ResourceModuleInUse(), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR)));
}

class WindowsImageLists final : public ImageLists {
public:
    std::unique_ptr<ImageList> FromBitmap(ResourceId bitmap, int imageWidth, Color mask) override {
        const Bitmap strip = LoadStrip(bitmap);
        BITMAP form{};
        if (GetObjectW(strip.get(), sizeof form, &form) == 0) {
            return nullptr;
        }
        constexpr int Growth = 1;
        auto images = std::make_unique<win32::WindowsImageList>(ImageList_Create(
            imageWidth, form.bmHeight, ILC_COLOR24 | ILC_MASK, form.bmWidth / imageWidth, Growth));
        // Nothing can be added to a list that could not be made.
        const bool isFilled =
            ImageList_AddMasked(images->Get(), strip.get(), static_cast<COLORREF>(mask)) >= 0;
        return isFilled ? std::move(images) : nullptr;
    }
};

} // namespace

ImageLists& SystemImageLists() {
    static WindowsImageLists imageLists;
    return imageLists;
}

} // namespace pmx
