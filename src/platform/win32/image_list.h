#pragma once

#include "platform/image_list.h"

#include <windows.h>

#include <commctrl.h>

namespace pmx::win32 {

/// An icon of the system, owned.
class WindowsIcon final : public Icon {
public:
    explicit WindowsIcon(HICON icon) noexcept : Handle(icon) {}
    ~WindowsIcon() override { DestroyIcon(Handle); }
    WindowsIcon(const WindowsIcon&) = delete;
    WindowsIcon& operator=(const WindowsIcon&) = delete;

    HICON Get() const noexcept { return Handle; }

private:
    HICON Handle;
};

/// An image list of the system, owned.
class WindowsImageList final : public ImageList {
public:
    explicit WindowsImageList(HIMAGELIST list) noexcept : Handle(list) {}
    ~WindowsImageList() override { ImageList_Destroy(Handle); }
    WindowsImageList(const WindowsImageList&) = delete;
    WindowsImageList& operator=(const WindowsImageList&) = delete;

    HIMAGELIST Get() const noexcept { return Handle; }
    int Count() const override { return ImageList_GetImageCount(Handle); }
    std::unique_ptr<Icon> IconOf(std::int64_t index) const override;

private:
    HIMAGELIST Handle;
};

} // namespace pmx::win32
