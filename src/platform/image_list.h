#pragma once

#include "platform/window_types.h"

#include <cstdint>
#include <memory>

namespace pmx {

/// A picture that a control can show. Destroying it releases the system's icon.
class Icon {
public:
    virtual ~Icon() = default;
    Icon(const Icon&) = delete;
    Icon& operator=(const Icon&) = delete;

protected:
    Icon() = default;
};

/// Images of one size, numbered from 0. Destroying it releases the system's image list, so it must live at
/// least as long as the controls that show its images.
class ImageList {
public:
    virtual ~ImageList() = default;
    ImageList(const ImageList&) = delete;
    ImageList& operator=(const ImageList&) = delete;

    virtual int Count() const = 0;

    /// An icon of that image, drawn normally. Null when `index` is outside the list or the system makes none.
    virtual std::unique_ptr<Icon> IconOf(std::int64_t index) const = 0;

protected:
    ImageList() = default;
};

/// Making of image lists.
class ImageLists {
public:
    virtual ~ImageLists() = default;

    /// An image list from a bitmap of the current resource module, cut into images `imageWidth` pixels wide;
    /// pixels of the colour `mask` are transparent. Null when there is no such bitmap or the system makes no
    /// list.
    virtual std::unique_ptr<ImageList> FromBitmap(ResourceId bitmap, int imageWidth, Color mask) = 0;

protected:
    ImageLists() = default;
    ImageLists(const ImageLists&) = default;
    ImageLists& operator=(const ImageLists&) = default;
};

/// The system's image lists. Lives as long as the process.
ImageLists& SystemImageLists();

} // namespace pmx
