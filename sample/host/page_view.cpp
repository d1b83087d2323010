#include "host/page_view.h"

#include "host/resource.h"
#include "host/screen.h"
#include "host/text.h"

#include <algorithm>
#include <memory>
#include <type_traits>

#include <windowsx.h>

namespace pmx::host {

using sample::SheetKind;
using sample::SheetLayout;

namespace {

// All lengths, also those of what is laid out, are pixels at 96 dots per inch; painting scales them.
constexpr int Margin = 22;  // Around the sheets and between them.
constexpr int PairGap = 12; // Between the front and the back of a sheet.
constexpr int LabelHeight = 24;
constexpr float SmallestFace =
    130; // The height below which the picture scrolls instead of shrinking further.
constexpr float LargestScale = 0.22F;

struct DeviceDeleter {
    void operator()(HDC device) const { DeleteDC(device); }
};
struct ObjectDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using MemoryDevice = std::unique_ptr<std::remove_pointer_t<HDC>, DeviceDeleter>;
using Bitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, ObjectDeleter>;

unsigned KindText(SheetKind kind) {
    switch (kind) {
    case SheetKind::FrontCover:
        return IDS_SHEET_COVER;
    case SheetKind::BackCover:
        return IDS_SHEET_BACK_COVER;
    case SheetKind::Tab:
        return IDS_SHEET_TAB;
    case SheetKind::Insert:
        return IDS_SHEET_INSERT;
    default:
        return 0;
    }
}

std::wstring LabelOf(const SheetLayout& sheet, bool back, bool bothSides) {
    const unsigned face = !bothSides ? IDS_FACE_SINGLE : back ? IDS_FACE_BACK : IDS_FACE_FRONT;
    std::wstring label = FormatText(face, sheet.Number);
    if (const unsigned kind = KindText(sheet.Kind); kind != 0) {
        label += L" (" + ResourceText(kind) + L")";
    }
    return label;
}

bool ShowsBack(const SheetLayout& sheet, bool bothSides) {
    return bothSides || sheet.Back.Number != 0;
}

bool ShowsBacks(const sample::DocumentLayout& layout) {
    return std::any_of(layout.Sheets.begin(), layout.Sheets.end(),
                       [&](const SheetLayout& sheet) { return ShowsBack(sheet, layout.BothSides); });
}

} // namespace

PageView::PageView(HWND parent, int controlId) : Painter(SampleDocument(), SampleWords()) {
    Create({.ClassName = L"PmxPageView",
            .Style = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_CLIPSIBLINGS | WS_TABSTOP,
            .Parent = parent,
            .MenuOrId = reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId))});
}

void PageView::Show(const sample::DocumentLayout& layout) {
    Layout = layout;
    Offset = 0;
    Arrange();
}

std::optional<LRESULT> PageView::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        Arrange();
        return 0;
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return 1; // Everything is painted at once, without flicker.
    case WM_VSCROLL:
        OnScrollBar(LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        ScrollTo(Offset - GET_WHEEL_DELTA_WPARAM(wParam));
        return 0;
    case WM_KEYDOWN:
        OnKey(wParam);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(Get());
        return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(Get(), nullptr, FALSE);
        return 0;
    default:
        static_cast<void>(lParam);
        return std::nullopt;
    }
}

RECT PageView::Client() const {
    RECT client{};
    GetClientRect(Get(), &client);
    const int resolution = ResolutionOf(Get());
    client.right = MulDiv(client.right, USER_DEFAULT_SCREEN_DPI, resolution);
    client.bottom = MulDiv(client.bottom, USER_DEFAULT_SCREEN_DPI, resolution);
    return client;
}

void PageView::Arrange() {
    const RECT client = Client();
    const auto arrangement = FindArrangement(client.right, client.bottom);
    PlaceItems(arrangement, client.right);
    PictureHeight = arrangement.Height;
    UpdateScrollBar();
    InvalidateRect(Get(), nullptr, FALSE);
}

/// The number of columns with which the sheets become largest; of equally large ones the most columns, which
/// scroll least.
PageView::Arrangement PageView::FindArrangement(int width, int height) const {
    Arrangement best{1, 0, 0};
    const int count = static_cast<int>(Layout.Sheets.size());
    for (int columns = 1; columns <= count; ++columns) {
        Arrangement candidate = ArrangementOf(columns, width);
        const int rows = (count + columns - 1) / columns;
        const float room = static_cast<float>(height - Margin - rows * (LabelHeight + Margin));
        const float fitting = room / static_cast<float>(rows * Layout.Sheets.front().Paper.Height);
        const float smallest = SmallestFace / static_cast<float>(Layout.Sheets.front().Paper.Height);
        candidate.Scale = std::min({candidate.Scale, std::max(fitting, smallest), LargestScale});
        if (candidate.Scale >= best.Scale) {
            candidate.Height =
                Margin + rows * (LabelHeight + Margin +
                                 static_cast<int>(static_cast<float>(Layout.Sheets.front().Paper.Height) *
                                                  candidate.Scale));
            best = candidate;
        }
    }
    return best;
}

PageView::Arrangement PageView::ArrangementOf(int columns, int width) const {
    const int faces = ShowsBacks(Layout) ? 2 : 1;
    const int fixed = Margin + columns * (Margin + (faces - 1) * PairGap);
    const int paper = columns * faces * Layout.Sheets.front().Paper.Width;
    return {columns, std::max(0.001F, static_cast<float>(width - fixed) / static_cast<float>(paper)), 0};
}

void PageView::PlaceItems(const Arrangement& arrangement, int width) {
    Items.clear();
    if (Layout.Sheets.empty()) {
        return;
    }
    const auto& paper = Layout.Sheets.front().Paper;
    const float faces = ShowsBacks(Layout) ? 2 : 1;
    const float stepX =
        static_cast<float>(paper.Width) * arrangement.Scale * faces + (faces - 1) * PairGap + Margin;
    const float stepY = static_cast<float>(paper.Height) * arrangement.Scale + LabelHeight + Margin;
    const float used = stepX * static_cast<float>(arrangement.Columns) - Margin;
    const float left = std::max<float>(Margin, (static_cast<float>(width) - used) / 2);
    for (std::size_t index = 0; index < Layout.Sheets.size(); ++index) {
        const auto columns = static_cast<std::size_t>(arrangement.Columns);
        const std::size_t column = index % columns;
        const std::size_t row = index / columns;
        AddSheet(Layout.Sheets[index], left + static_cast<float>(column) * stepX,
                 Margin + static_cast<float>(row) * stepY, arrangement.Scale);
    }
}

void PageView::AddSheet(const SheetLayout& sheet, float left, float top, float scale) {
    const float width = static_cast<float>(sheet.Paper.Width) * scale;
    const float height = static_cast<float>(sheet.Paper.Height) * scale;
    const bool back = ShowsBack(sheet, Layout.BothSides);
    Items.push_back({&sheet, false, {left, top, width, height}, LabelOf(sheet, false, back)});
    if (back) {
        Items.push_back(
            {&sheet, true, {left + width + PairGap, top, width, height}, LabelOf(sheet, true, true)});
    }
}

void PageView::UpdateScrollBar() {
    const RECT client = Client();
    Offset = std::clamp(Offset, 0, std::max<int>(0, PictureHeight - client.bottom));
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = std::max(0, PictureHeight - 1);
    info.nPage = static_cast<UINT>(client.bottom);
    info.nPos = Offset;
    SetScrollInfo(Get(), SB_VERT, &info, TRUE);
}

void PageView::ScrollTo(int offset) {
    Offset = offset;
    UpdateScrollBar();
    InvalidateRect(Get(), nullptr, FALSE);
}

void PageView::OnScrollBar(int request) {
    constexpr int LineStep = 40;
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(Get(), SB_VERT, &info);
    const int page = static_cast<int>(info.nPage);
    switch (request) {
    case SB_LINEUP:
        return ScrollTo(Offset - LineStep);
    case SB_LINEDOWN:
        return ScrollTo(Offset + LineStep);
    case SB_PAGEUP:
        return ScrollTo(Offset - page);
    case SB_PAGEDOWN:
        return ScrollTo(Offset + page);
    case SB_TOP:
        return ScrollTo(0);
    case SB_BOTTOM:
        return ScrollTo(PictureHeight);
    case SB_THUMBTRACK:
        return ScrollTo(info.nTrackPos);
    default:
        return;
    }
}

/// The keys that scroll lists.
void PageView::OnKey(WPARAM key) {
    static constexpr struct {
        WPARAM Key;
        int Request;
    } Requests[] = {{VK_UP, SB_LINEUP},     {VK_DOWN, SB_LINEDOWN}, {VK_PRIOR, SB_PAGEUP},
                    {VK_NEXT, SB_PAGEDOWN}, {VK_HOME, SB_TOP},      {VK_END, SB_BOTTOM}};
    for (const auto& each : Requests) {
        if (each.Key == key) {
            OnScrollBar(each.Request);
        }
    }
}

void PageView::Paint() {
    PAINTSTRUCT paint{};
    const HDC window = BeginPaint(Get(), &paint);
    RECT client{};
    GetClientRect(Get(), &client);
    {
        const MemoryDevice memory(CreateCompatibleDC(window));
        const Bitmap picture(CreateCompatibleBitmap(window, client.right, client.bottom));
        const HGDIOBJ former = SelectObject(memory.get(), picture.get());
        PaintOn(memory.get());
        if (GetFocus() == Get()) {
            DrawFocusRect(memory.get(), &client);
        }
        BitBlt(window, 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);
        SelectObject(memory.get(), former);
    }
    EndPaint(Get(), &paint);
}

void PageView::PaintOn(HDC device) {
    const RECT area = Client();
    const float scale = static_cast<float>(ResolutionOf(Get())) / USER_DEFAULT_SCREEN_DPI;
    Gdiplus::Graphics graphics(device);
    graphics.ScaleTransform(scale, scale);
    const Gdiplus::SolidBrush desk(Gdiplus::Color(0xC9, 0xCF, 0xD8));
    graphics.FillRectangle(&desk, 0, 0, static_cast<INT>(area.right) + 1, static_cast<INT>(area.bottom) + 1);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    graphics.SetTextRenderingHint(Gdiplus::TextRenderingHintAntiAlias);
    for (const Item& item : Items) {
        const float top = item.Area.Y - static_cast<float>(Offset);
        if (top < static_cast<float>(area.bottom) && top + item.Area.Height + LabelHeight > 0) {
            PaintItem(graphics, item);
        }
    }
}

void PageView::PaintItem(Gdiplus::Graphics& graphics, const Item& item) {
    Gdiplus::RectF area = item.Area;
    area.Y -= static_cast<float>(Offset);
    Painter.Paint(graphics, *item.Sheet, item.Back, area);
    const Gdiplus::FontFamily family(SampleWords().FontName.c_str());
    constexpr float LabelSize = 12;
    const Gdiplus::Font font(&family, LabelSize, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
    const Gdiplus::SolidBrush ink(Gdiplus::Color(0x2C, 0x36, 0x46));
    Gdiplus::StringFormat format;
    format.SetAlignment(Gdiplus::StringAlignmentCenter);
    format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
    format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
    const Gdiplus::RectF place(area.X - Margin, area.Y + area.Height + 2, area.Width + 2 * Margin,
                               LabelHeight);
    graphics.DrawString(item.Label.c_str(), -1, &font, place, &format, &ink);
}

} // namespace pmx::host
