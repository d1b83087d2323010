#include "propui/win32/sheet_preview.h"

#include "ui/sample_document.h"

#include <algorithm>
#include <memory>
#include <type_traits>

namespace pmx::sample {

namespace {

constexpr float Border = 12;
constexpr float Gap = 10;

struct DeviceDeleter {
    void operator()(HDC device) const { DeleteDC(device); }
};
struct ObjectDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};

bool HasBack(const DocumentLayout& layout, const SheetLayout& sheet) {
    return layout.BothSides || sheet.Back.Number != 0;
}

/// Where the faces lie: side by side or one below the other, whichever makes them larger.
struct Arrangement {
    float Scale = 1;
    bool IsColumn = false;
};

Arrangement Arrange(const Extent& paper, int faces, const Gdiplus::RectF& room) {
    const auto width = static_cast<float>(paper.Width);
    const auto height = static_cast<float>(paper.Height);
    const auto count = static_cast<float>(faces);
    const float gaps = Gap * (count - 1);
    const float row = std::min((room.Width - gaps) / (width * count), room.Height / height);
    const float column = std::min(room.Width / width, (room.Height - gaps) / (height * count));
    return {std::max(row, column), column > row};
}

} // namespace

SheetPreview::SheetPreview() : Painter(SampleDocument(), SampleWords()) {}

void SheetPreview::Show(const AttributeTable& table) {
    Layout = LayOut(table, SampleDocument());
    Go(Index);
}

void SheetPreview::Go(int index) {
    Index = std::clamp(index, 0, std::max(0, Count() - 1));
}

void SheetPreview::Paint(HDC device, const RECT& area) const {
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const std::unique_ptr<std::remove_pointer_t<HDC>, DeviceDeleter> memory(CreateCompatibleDC(device));
    const std::unique_ptr<std::remove_pointer_t<HBITMAP>, ObjectDeleter> picture(
        CreateCompatibleBitmap(device, width, height));
    const HGDIOBJ former = SelectObject(memory.get(), picture.get());
    {
        Gdiplus::Graphics graphics(memory.get());
        const Gdiplus::SolidBrush desk(Gdiplus::Color(0xC9, 0xCF, 0xD8));
        graphics.FillRectangle(&desk, 0, 0, width, height);
        graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
        graphics.SetTextRenderingHint(Gdiplus::TextRenderingHintAntiAlias);
        if (Index < Count()) {
            PaintSheet(graphics, {Border, Border, static_cast<float>(width) - 2 * Border,
                                  static_cast<float>(height) - 2 * Border});
        }
    }
    BitBlt(device, area.left, area.top, width, height, memory.get(), 0, 0, SRCCOPY);
    SelectObject(memory.get(), former);
}

void SheetPreview::PaintSheet(Gdiplus::Graphics& graphics, const Gdiplus::RectF& room) const {
    const SheetLayout& sheet = Layout.Sheets[static_cast<std::size_t>(Index)];
    const int faces = HasBack(Layout, sheet) ? 2 : 1;
    const auto [scale, isColumn] = Arrange(sheet.Paper, faces, room);
    const float width = static_cast<float>(sheet.Paper.Width) * scale;
    const float height = static_cast<float>(sheet.Paper.Height) * scale;
    const auto steps = static_cast<float>(faces - 1);
    const float stepX = isColumn ? 0 : width + Gap;
    const float stepY = isColumn ? height + Gap : 0;
    const float left = room.X + (room.Width - width - steps * stepX) / 2;
    const float top = room.Y + (room.Height - height - steps * stepY) / 2;
    for (int face = 0; face < faces; ++face) {
        const auto step = static_cast<float>(face);
        Painter.Paint(graphics, sheet, face == 1, {left + step * stepX, top + step * stepY, width, height});
    }
}

} // namespace pmx::sample
