#pragma once

#include "drawing/gdi_plus.h"
#include "drawing/page_art.h"
#include "layout/layout.h"

namespace pmx::sample {

/// Draws one face of a sheet, with what is printed on it and what is done to it afterwards.
class SheetPainter {
public:
    /// The original and the words must outlive the painter.
    SheetPainter(const Original& original, const DocumentWords& words) : Source(original), Words(words) {}

    /// Draws the front or the back so that the paper fills `area`, in pixels; its shadow, and a tab, stand
    /// out a little.
    void Paint(Gdiplus::Graphics& graphics, const SheetLayout& sheet, bool back,
               const Gdiplus::RectF& area) const;

private:
    const Original& Source;
    const DocumentWords& Words;
};

} // namespace pmx::sample
