#include "platform/win32/row_drag.h"

#include <algorithm>
#include <utility>

#include <commctrl.h>
#include <windowsx.h>

namespace pmx::win32 {

namespace {

constexpr UINT_PTR ScrollTimer = 0x504D58;
constexpr UINT ScrollInterval = 80; // milliseconds for a row

} // namespace

LRESULT RowDrag::Ask(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(List, message, wParam, lParam);
}

void RowDrag::Begin(int row) {
    Button = Held::Dragging;
    Row = row;
    SetCapture(List);
    SetTimer(List, ScrollTimer, ScrollInterval, nullptr);
}

void RowDrag::Cancel() {
    SetPlace(-1);
    Button = Held::Cancelled;
}

bool RowDrag::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!IsOn()) {
        return false;
    }
    switch (message) {
    case WM_MOUSEMOVE:
        Point(GET_Y_LPARAM(lParam));
        return true;
    case WM_LBUTTONUP:
        Drop();
        return true;
    case WM_RBUTTONDOWN:
        Cancel();
        return true;
    case WM_RBUTTONUP:
        return true;
    case WM_CAPTURECHANGED:
        End();
        return false;
    case WM_TIMER:
        if (wParam == ScrollTimer) {
            ScrollAtEdge();
        }
        return wParam == ScrollTimer;
    default:
        return false;
    }
}

std::optional<ListMove> RowDrag::TakeMove() {
    return std::exchange(Made, std::nullopt);
}

RowDrag::Rows RowDrag::Measure() const {
    RECT first{};
    first.left = LVIR_BOUNDS;
    const auto top = static_cast<int>(Ask(LVM_GETTOPINDEX));
    Ask(LVM_GETITEMRECT, static_cast<WPARAM>(top), reinterpret_cast<LPARAM>(&first));
    return {.Top = top,
            .Count = static_cast<int>(Ask(LVM_GETITEMCOUNT)),
            .Y = static_cast<int>(first.top),
            .Height = std::max(static_cast<int>(first.bottom - first.top), 1)};
}

RECT RowDrag::LineAt(int place) const {
    constexpr int Thickness = 2;
    const Rows rows = Measure();
    RECT line{};
    GetClientRect(List, &line);
    line.top = rows.Y + (place - rows.Top) * rows.Height - (place > rows.Top ? Thickness / 2 : 0);
    line.bottom = line.top + Thickness;
    return line;
}

void RowDrag::DrawLine() const {
    if (!IsMove()) {
        return;
    }
    const RECT line = LineAt(Place);
    const HDC canvas = GetDC(List);
    FillRect(canvas, &line, GetSysColorBrush(COLOR_WINDOWTEXT));
    ReleaseDC(List, canvas);
}

void RowDrag::SetPlace(int place) {
    if (place == Place) {
        return;
    }
    for (const int changed : {std::exchange(Place, place), place}) {
        const RECT line = LineAt(changed);
        InvalidateRect(List, &line, TRUE);
    }
    UpdateWindow(List);
}

/// The line goes to the row boundary that is next to the mouse.
void RowDrag::Point(int y) {
    if (Button == Held::Dragging) {
        const Rows rows = Measure();
        const int below = std::max(y - rows.Y + rows.Height / 2, 0) / rows.Height;
        const auto seen = static_cast<int>(Ask(LVM_GETCOUNTPERPAGE));
        SetPlace(std::min({rows.Top + below, rows.Top + seen, rows.Count}));
    }
}

void RowDrag::ScrollAtEdge() {
    POINT mouse{};
    RECT area{};
    GetCursorPos(&mouse);
    ScreenToClient(List, &mouse);
    GetClientRect(List, &area);
    const Rows rows = Measure();
    const bool isAbove = mouse.y < rows.Y + rows.Height / 2 && rows.Top > 0;
    const bool isBelow = mouse.y > area.bottom - rows.Height / 2 &&
                         rows.Top + static_cast<int>(Ask(LVM_GETCOUNTPERPAGE)) < rows.Count;
    if (Button != Held::Dragging || (!isAbove && !isBelow)) {
        return;
    }
    SetPlace(-1);
    Ask(LVM_SCROLL, 0, isAbove ? -rows.Height : rows.Height);
    Point(mouse.y);
}

void RowDrag::Drop() {
    if (IsMove()) {
        Made = ListMove{.From = Row, .To = Place > Row ? Place - 1 : Place};
    }
    End();
}

void RowDrag::End() {
    SetPlace(-1);
    Button = Held::No;
    KillTimer(List, ScrollTimer);
    if (GetCapture() == List) {
        ReleaseCapture();
    }
}

} // namespace pmx::win32
