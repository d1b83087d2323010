#include "drawing/palette.h"

#include <array>

namespace pmx::sample {

using Gdiplus::Color;

namespace {

struct SectionColors {
    Color Accent, Pale;
};

const SectionColors& ColorsOf(int section) {
    static const std::array<SectionColors, 4> Colors{{{Color(0x1F, 0x5F, 0xA8), Color(0xDD, 0xE9, 0xF6)},
                                                      {Color(0x2B, 0x80, 0x52), Color(0xDD, 0xF0, 0xE4)},
                                                      {Color(0xC2, 0x63, 0x1C), Color(0xFA, 0xE8, 0xD9)},
                                                      {Color(0x78, 0x4A, 0x9E), Color(0xEC, 0xE2, 0xF4)}}};
    return Colors[static_cast<std::size_t>(section - 1) % Colors.size()];
}

BYTE Brightness(Color color) {
    return static_cast<BYTE>((color.GetR() * 30 + color.GetG() * 59 + color.GetB() * 11) / 100);
}

bool IsGray(Color color) {
    return color.GetR() == color.GetG() && color.GetG() == color.GetB();
}

} // namespace

Color Palette::Of(Color color) const {
    const BYTE bright = Brightness(color);
    if (Mode == ColorMode::Gray) {
        return {color.GetA(), bright, bright, bright};
    }
    if (Mode == ColorMode::TwoColors && !IsGray(color)) {
        const auto rest = static_cast<BYTE>(bright * 3 / 4);
        return {color.GetA(), static_cast<BYTE>(150 + bright * 105 / 255), rest, rest};
    }
    return color;
}

Color Palette::Accent(int section) const {
    return Of(ColorsOf(section).Accent);
}

Color Palette::Pale(int section) const {
    return Of(ColorsOf(section).Pale);
}

Color PaperColor(SheetColor color) {
    switch (color) {
    case SheetColor::Yellow:
        return {0xFF, 0xF6, 0xC8};
    case SheetColor::Pink:
        return {0xFD, 0xE3, 0xE6};
    case SheetColor::Blue:
        return {0xDF, 0xEC, 0xFA};
    case SheetColor::Green:
        return {0xE0, 0xF3, 0xE2};
    case SheetColor::Gray:
        return {0xE4, 0xE4, 0xE4};
    default:
        return {0xFF, 0xFF, 0xFF};
    }
}

} // namespace pmx::sample
