#pragma once

#include "drawing/sheet_painter.h"
#include "layout/layout.h"

#include <windows.h>

namespace pmx::sample {

/// The picture of one sheet that a table makes of the sample document: its front, and its back where one is
/// printed.
class SheetPreview {
public:
    SheetPreview();

    void Show(const AttributeTable& table);

    int Count() const { return static_cast<int>(Layout.Sheets.size()); }
    /// The sheet shown, from 0.
    int Current() const { return Index; }
    void Go(int index);

    /// Draws the picture over the whole area.
    void Paint(HDC device, const RECT& area) const;

private:
    void PaintSheet(Gdiplus::Graphics& graphics, const Gdiplus::RectF& room) const;

    SheetPainter Painter;
    DocumentLayout Layout;
    int Index = 0;
};

} // namespace pmx::sample
