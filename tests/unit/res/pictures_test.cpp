#include "support/built_resources.h"

#include "PMXTemplUIVersion.h"
#include "res/ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <tuple>

namespace pmx {
namespace {

using test::BuiltResources;
using test::Language;
using test::ResourceKind;

std::uint32_t Number(std::span<const std::byte> bytes, std::size_t position, std::size_t size) {
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < size && position + index < bytes.size(); ++index) {
        number |= std::to_integer<std::uint32_t>(bytes[position + index]) << (8 * index);
    }
    return number;
}

std::span<const std::byte> Own(ResourceKind kind, int id) {
    return BuiltResources::Of(Language::Japanese).Find(kind, id);
}

TEST(Pictures, HaveTheSizesOfTheirImagesAndTrueColourForLowResolution) {
    constexpr std::uint32_t HeaderSize = 40;
    for (const auto& [id, width, height, depth] :
         {std::tuple{bitmap::SmallIcons, 960U, 16U, 24U}, std::tuple{bitmap::LargeIcons, 1920U, 32U, 24U},
          std::tuple{bitmap::StateImages, 320U, 14U, 24U}, std::tuple{bitmap::Icons20, 1200U, 20U, 8U},
          std::tuple{bitmap::Icons24, 1440U, 24U, 8U}, std::tuple{bitmap::Icons40, 2400U, 40U, 8U},
          std::tuple{bitmap::Icons48, 2880U, 48U, 8U}, std::tuple{bitmap::Icons64, 3840U, 64U, 8U},
          std::tuple{bitmap::States20, 400U, 18U, 8U}, std::tuple{bitmap::States24, 480U, 21U, 8U},
          std::tuple{bitmap::States32, 640U, 28U, 8U}}) {
        const auto picture = Own(ResourceKind::Bitmap, id);
        EXPECT_EQ(Number(picture, 4, 4), width) << id;
        EXPECT_EQ(Number(picture, 8, 4), height) << id;
        EXPECT_EQ(Number(picture, 14, 2), depth) << id;
        EXPECT_EQ(Number(picture, 16, 4), 0U) << id << " is compressed";
        const std::uint32_t paletteSize = 4 * Number(picture, 32, 4);
        EXPECT_EQ(picture.size(), HeaderSize + paletteSize + depth / 8 * width * height) << id;
    }
}

bool Contains(std::span<const std::byte> bytes, std::span<const std::byte> wanted) {
    return std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end()) != bytes.end();
}

bool ContainsText(std::span<const std::byte> bytes, std::u16string_view text) {
    return Contains(bytes, std::as_bytes(std::span(text)));
}

TEST(VersionInformation, NamesTheProductInJapaneseAndNeutrally) {
    constexpr std::size_t FixedInformation = 40;
    const auto version = Own(ResourceKind::Version, 1);
    ASSERT_EQ(Number(version, FixedInformation, 4), 0xFEEF04BDU);
    EXPECT_EQ(Number(version, FixedInformation + 8, 4), PMX_VERSION_MAJOR << 16U | PMX_VERSION_MINOR);
    EXPECT_EQ(Number(version, FixedInformation + 12, 4), PMX_VERSION_PATCH << 16U);
    const std::string_view number = PMX_VERSION;
    EXPECT_TRUE(ContainsText(version, std::u16string(number.begin(), number.end())));
    for (const std::u16string_view text :
         {u"041104B0", u"000004B0", u"PMXTemplUI.dll", u"お気に入り管理ライブラリ", u"Favorites library"}) {
        EXPECT_TRUE(ContainsText(version, text)) << testing::PrintToString(text);
    }
}

TEST(Manifest, AsksForThemedControls) {
    constexpr int OfALibrary = 2;
    const auto manifest = Own(ResourceKind::Manifest, OfALibrary);
    for (const std::string_view text : {"Microsoft.Windows.Common-Controls", "6.0.0.0", "6595b64144ccf1df"}) {
        EXPECT_TRUE(Contains(manifest, std::as_bytes(std::span(text)))) << text;
    }
}

} // namespace
} // namespace pmx
