#pragma once

#include "drawing/sheet_painter.h"
#include "host/window.h"
#include "layout/layout.h"

#include <string>
#include <vector>

namespace pmx::host {

/// The area in which the document's sheets lie, as large as the window allows; scrolls when they would become
/// too small to tell apart.
class PageView : public Window {
public:
    PageView(HWND parent, int controlId);

    void Show(const sample::DocumentLayout& layout);

protected:
    std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    /// A face and where it lies, in pixels from the upper left corner of the whole picture.
    struct Item {
        const sample::SheetLayout* Sheet = nullptr;
        bool Back = false;
        Gdiplus::RectF Area;
        std::wstring Label;
    };
    struct Arrangement {
        int Columns = 1;
        float Scale = 1;
        int Height = 0;
    };

    /// The inside of the window, in pixels at 96 dots per inch.
    RECT Client() const;
    void Arrange();
    Arrangement FindArrangement(int width, int height) const;
    Arrangement ArrangementOf(int columns, int width) const;
    void PlaceItems(const Arrangement& arrangement, int width);
    void AddSheet(const sample::SheetLayout& sheet, float left, float top, float scale);
    void UpdateScrollBar();
    void ScrollTo(int offset);
    void OnScrollBar(int request);
    void OnKey(WPARAM key);
    void Paint();
    void PaintOn(HDC device);
    void PaintItem(Gdiplus::Graphics& graphics, const Item& item);

    sample::DocumentLayout Layout;
    sample::SheetPainter Painter;
    std::vector<Item> Items;
    int PictureHeight = 0;
    int Offset = 0;
};

} // namespace pmx::host
