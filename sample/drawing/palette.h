#pragma once

#include "docmgr/attribute_table.h"
#include "drawing/gdi_plus.h"

namespace pmx::sample {

/// Turns the colours of the original into those that are printed.
class Palette {
public:
    explicit Palette(ColorMode mode) : Mode(mode) {}

    Gdiplus::Color Of(Gdiplus::Color color) const;
    /// The leading colour of a section, from 1.
    Gdiplus::Color Accent(int section) const;
    /// A pale ground in that colour.
    Gdiplus::Color Pale(int section) const;

private:
    ColorMode Mode;
};

/// The colour of the paper itself.
Gdiplus::Color PaperColor(SheetColor color);

} // namespace pmx::sample
