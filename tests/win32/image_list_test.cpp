#include "platform/win32/image_list.h"

#include "platform/win32/handles.h"
#include "res/ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <tuple>
#include <vector>

// Whether images of the lists look as they are drawn in the library's bitmaps.

namespace pmx {
namespace {

constexpr std::uint32_t Ground = 0x0012CD56; ///< a colour of no picture, as a pixel: 0x00RRGGBB

/// A surface to draw on, whose pixels can be looked at.
class Canvas {
public:
    Canvas(int width, int height) : Device(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        Bitmap = CreateDIBSection(Device, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        Former = SelectObject(Device, Bitmap);
        First = static_cast<std::uint32_t*>(bits);
        Size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        std::fill_n(First, Size, Ground);
    }
    ~Canvas() {
        SelectObject(Device, Former);
        DeleteObject(Bitmap);
        DeleteDC(Device);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC Get() const { return Device; }

    /// The colours without what else the system keeps in a pixel.
    std::vector<std::uint32_t> Colors() const {
        GdiFlush();
        std::vector<std::uint32_t> colors(First, First + Size);
        for (std::uint32_t& color : colors) {
            color &= 0x00FFFFFF;
        }
        return colors;
    }

private:
    HDC Device;
    HBITMAP Bitmap;
    HGDIOBJ Former;
    std::uint32_t* First;
    std::size_t Size;
};

/// The bitmap as it is stored, with the ground in the place of the transparent colour.
std::vector<std::uint32_t> Stored(ResourceId id, int width, int height, Color transparent) {
    const Canvas canvas(width, height);
    const auto bitmap = static_cast<HBITMAP>(LoadImageW(win32::ResourceModuleInUse(), MAKEINTRESOURCEW(id),
                                                        IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
    const HDC source = CreateCompatibleDC(nullptr);
    const HGDIOBJ former = SelectObject(source, bitmap);
    BitBlt(canvas.Get(), 0, 0, width, height, source, 0, 0, SRCCOPY);
    SelectObject(source, former);
    DeleteDC(source);
    DeleteObject(bitmap);
    std::vector<std::uint32_t> colors = canvas.Colors();
    std::replace(colors.begin(), colors.end(), static_cast<std::uint32_t>(transparent), Ground);
    return colors;
}

TEST(SystemImages, AreNoneOutsideTheListAndWithoutABitmap) {
    EXPECT_EQ(SystemImageLists().FromBitmap(9999, 32, Color::White), nullptr);
    const std::unique_ptr<ImageList> images = SystemImageLists().FromBitmap(2001, 32, Color::White);
    ASSERT_NE(images, nullptr);
    EXPECT_NE(images->IconOf(images->Count() - 1), nullptr);
    for (const std::int64_t index :
         {std::int64_t{-1}, std::int64_t{images->Count()}, std::int64_t{1} << 40}) {
        EXPECT_EQ(images->IconOf(index), nullptr) << index;
    }
}

TEST(SystemImages, LookAsTheyAreStoredAndAreTransparentWhereTheyShall) {
    for (const auto& [id, imageWidth, height, transparent] :
         {std::tuple{bitmap::SmallIcons, 16, 16, Color::LightGrey},
          std::tuple{bitmap::LargeIcons, 32, 32, Color::LightGrey},
          std::tuple{bitmap::Icons20, 20, 20, Color::LightGrey},
          std::tuple{bitmap::Icons24, 24, 24, Color::LightGrey},
          std::tuple{bitmap::Icons40, 40, 40, Color::LightGrey},
          std::tuple{bitmap::Icons48, 48, 48, Color::LightGrey},
          std::tuple{bitmap::Icons64, 64, 64, Color::LightGrey},
          std::tuple{bitmap::StateImages, 16, 14, Color::White},
          std::tuple{bitmap::States20, 20, 18, Color::White},
          std::tuple{bitmap::States24, 24, 21, Color::White},
          std::tuple{bitmap::States32, 32, 28, Color::White}}) {
        const std::unique_ptr<ImageList> images = SystemImageLists().FromBitmap(id, imageWidth, transparent);
        ASSERT_NE(images, nullptr) << id;
        const int width = images->Count() * imageWidth;
        const Canvas canvas(width, height);
        for (int index = 0; index < images->Count(); ++index) {
            ImageList_Draw(static_cast<win32::WindowsImageList&>(*images).Get(), index, canvas.Get(),
                           index * imageWidth, 0, ILD_NORMAL);
        }
        EXPECT_GE(images->Count(), 20) << id;
        EXPECT_TRUE(canvas.Colors() == Stored(id, width, height, transparent)) << id;
    }
}

} // namespace
} // namespace pmx
