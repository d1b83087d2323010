#include "platform/win32/image_list.h"

#include "platform/win32/handles.h"

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

class WindowsImageLists final : public ImageLists {
public:
    std::unique_ptr<ImageList> FromBitmap(ResourceId bitmap, int imageWidth, Color mask) override {
        constexpr int Growth = 1;
        // As a section the bitmap keeps its own colours, whatever the screen has.
        const HIMAGELIST list =
            ImageList_LoadImageW(win32::ResourceModuleInUse(), MAKEINTRESOURCEW(bitmap), imageWidth, Growth,
                                 static_cast<COLORREF>(mask), IMAGE_BITMAP, LR_CREATEDIBSECTION);
        return list ? std::make_unique<win32::WindowsImageList>(list) : nullptr;
    }
};

} // namespace

ImageLists& SystemImageLists() {
    static WindowsImageLists imageLists;
    return imageLists;
}

} // namespace pmx
