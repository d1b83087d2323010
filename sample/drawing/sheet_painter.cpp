#include "drawing/sheet_painter.h"

#include "drawing/palette.h"

#include <algorithm>
#include <string>

namespace pmx::sample {

using Gdiplus::Color;
using Gdiplus::Graphics;
using Gdiplus::Pen;
using Gdiplus::PointF;
using Gdiplus::RectF;
using Gdiplus::SolidBrush;

namespace {

constexpr UINT TableCodePage = 932;
constexpr float TenthMillimetresPerPoint = 254.0F / 72;

std::wstring WideOf(const std::string& text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(TableCodePage, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(std::max(length, 0)));
    return wide;
}

/// Keeps the state of the graphics and brings it back.
class SavedState {
public:
    explicit SavedState(Graphics& graphics) : Canvas(graphics), State(graphics.Save()) {}
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;
    ~SavedState() { Canvas.Restore(State); }

private:
    Graphics& Canvas;
    Gdiplus::GraphicsState State;
};

void FillBox(Graphics& graphics, const RectF& area, Color color) {
    const SolidBrush brush(color);
    graphics.FillRectangle(&brush, area);
}

void DrawShadow(Graphics& graphics, const RectF& area) {
    constexpr int Depth = 5;
    for (int step = Depth; step > 0; --step) {
        const auto grow = static_cast<float>(step);
        FillBox(graphics,
                RectF(area.X - grow + 2, area.Y - grow + 3, area.Width + 2 * grow - 1,
                      area.Height + 2 * grow - 1),
                Color(10, 0, 0, 0));
    }
}

/// One face being painted. Pixels and tenths of millimetres are told apart by `Scale`.
class FacePainter {
public:
    FacePainter(Graphics& graphics, const SheetLayout& sheet, bool back, const RectF& area,
                const Original& original, const DocumentWords& words)
        : Canvas(graphics),
          Sheet(sheet),
          Face(back ? sheet.Back : sheet.Front),
          IsBack(back),
          Area(area),
          Source(original),
          Words(words),
          Scale(area.Width / static_cast<float>(sheet.Paper.Width)) {}

    void Paint() {
        DrawShadow(Canvas, Area);
        if (Sheet.Kind == SheetKind::Tab) {
            PaintTab();
        }
        FillBox(Canvas, Area, PaperColor(Sheet.Color));
        {
            const SavedState state(Canvas);
            Canvas.SetClip(Area, Gdiplus::CombineModeIntersect);
            PaintPrint();
        }
        PaintFinishing();
        const Pen border(Color(0x8A, 0x8F, 0x98), 1);
        Canvas.DrawRectangle(&border, Area.X, Area.Y, Area.Width, Area.Height);
    }

private:
    float X(int place) const { return Area.X + static_cast<float>(place) * Scale; }
    float Y(int place) const { return Area.Y + static_cast<float>(place) * Scale; }
    float Length(int length) const { return static_cast<float>(length) * Scale; }
    PointF At(const Point& point) const { return {X(point.X), Y(point.Y)}; }
    RectF At(const Box& box) const { return {X(box.X), Y(box.Y), Length(box.Width), Length(box.Height)}; }
    void DrawSegment(const Pen& pen, const Segment& segment) {
        Canvas.DrawLine(&pen, At(segment.From), At(segment.To));
    }

    void PaintTab() {
        const float step = Area.Height / static_cast<float>(Sheet.TabCount);
        const float width = std::max(10.0F, Length(120));
        const float left = IsBack ? Area.X - width : Area.X + Area.Width;
        const RectF tab(left, Area.Y + step * static_cast<float>(Sheet.TabIndex), width, step);
        FillBox(Canvas, tab, Color(0xF5, 0xC2, 0x5B));
        const Pen border(Color(0x8A, 0x8F, 0x98), 1);
        Canvas.DrawRectangle(&border, tab);
        Write(WideOf(Sheet.TabText), tab, std::min(width * 0.8F, step * 0.3F), Color(0x40, 0x30, 0x10),
              Gdiplus::StringAlignmentCenter);
    }

    void PaintPrint() {
        if (Face.Number == 0 && Sheet.Kind == SheetKind::Body) {
            Write(Words.Blank, Area, std::min(14.0F, Area.Width * 0.1F), Color(0xA0, 0xA6, 0xB0),
                  Gdiplus::StringAlignmentCenter);
        }
        for (const PlacedPage& page : Face.Pages) {
            PaintPage(page);
        }
        const Pen line(Color(0x50, 0x50, 0x50), 1);
        for (const Segment& segment : Face.DividingLines) {
            DrawSegment(line, segment);
        }
        if (Face.HasFrame) {
            Canvas.DrawRectangle(&line, At(Face.Printable));
        }
        if (Face.Number != 0) {
            PaintMargins();
        }
        for (const PlacedText& text : Face.Texts) {
            PaintText(text);
        }
        if (Face.HasCropMarks) {
            PaintCropMarks();
        }
        if (Face.Mark) {
            PaintWatermark(*Face.Mark);
        }
    }

    void PaintMargins() {
        Pen pen(Color(150, 0x4C, 0x8D, 0xD6), 1);
        pen.SetDashStyle(Gdiplus::DashStyleDot);
        Canvas.DrawRectangle(&pen, At(Face.Printable));
    }

    void PaintPage(const PlacedPage& page) {
        const RectF area = At(page.Area);
        const SavedState state(Canvas);
        Canvas.SetClip(area, Gdiplus::CombineModeIntersect);
        FillBox(Canvas, area, Color(110, 255, 255, 255));
        PaintTurned(page, area);
        if (page.HasFrame) {
            const Pen frame(Color(0x40, 0x40, 0x40), 1);
            Canvas.DrawRectangle(&frame, area.X, area.Y, area.Width - 1, area.Height - 1);
        }
        if (!page.Stamp.empty()) {
            PaintStamp(page, area);
        }
    }

    /// The content is drawn on an upright page and turned and scaled into its place.
    void PaintTurned(const PlacedPage& page, const RectF& area) {
        const bool quarter = page.Turn == Rotation::Quarter || page.Turn == Rotation::ThreeQuarters;
        const float width = quarter ? area.Height : area.Width;
        const float height = quarter ? area.Width : area.Height;
        const SavedState state(Canvas);
        constexpr float ShortSide = 2100;
        const float scale = std::min(width, height) / ShortSide;
        Canvas.TranslateTransform(area.X + area.Width / 2, area.Y + area.Height / 2);
        Canvas.RotateTransform(90.0F * static_cast<float>(page.Turn));
        Canvas.TranslateTransform(-width / 2, -height / 2);
        Canvas.ScaleTransform(scale, scale);
        DrawPageArt(Canvas, page, width / scale, height / scale, Source, Words);
    }

    void PaintStamp(const PlacedPage& page, const RectF& area) {
        const float width = area.Width * 0.26F;
        const float height = width * 0.42F;
        const RectF box(area.X + area.Width * 0.94F - width, area.Y + area.Width * 0.06F, width, height);
        const Color red = Palette(page.Color).Of(Color(0xD0, 0x2B, 0x2B));
        FillBox(Canvas, box, Color(200, 255, 255, 255));
        const Pen pen(red, std::max(1.0F, width / 24));
        Canvas.DrawRectangle(&pen, box);
        Write(WideOf(page.Stamp), box, height * 0.6F, red, Gdiplus::StringAlignmentCenter);
    }

    void PaintText(const PlacedText& text) {
        const float size =
            std::max(6.5F, static_cast<float>(text.Points) / 10 * TenthMillimetresPerPoint * Scale * 1.3F);
        RectF area = At(text.Area);
        const float missing = size * 1.3F - area.Height;
        if (missing > 0) {
            area.Y -= missing;
            area.Height += missing;
        }
        const auto alignment = text.At == TextPlace::Left     ? Gdiplus::StringAlignmentNear
                               : text.At == TextPlace::Middle ? Gdiplus::StringAlignmentCenter
                                                              : Gdiplus::StringAlignmentFar;
        Write(WideOf(text.Words), area, size, Color(0x20, 0x20, 0x20), alignment);
    }

    void PaintWatermark(const PlacedWatermark& mark) {
        const BYTE alpha = mark.Density == Strength::Light ? 40 : mark.Density == Strength::Medium ? 75 : 120;
        const float size = static_cast<float>(mark.Points) * TenthMillimetresPerPoint * Scale;
        const SavedState state(Canvas);
        Canvas.TranslateTransform(Area.X + Area.Width / 2, Area.Y + Area.Height / 2);
        Canvas.RotateTransform(static_cast<float>(-mark.Angle));
        const float reach = Area.Width + Area.Height;
        Write(WideOf(mark.Words), RectF(-reach, -size, 2 * reach, 2 * size), size,
              Palette(mark.Color).Of(Color(alpha, 0xC0, 0x20, 0x20)), Gdiplus::StringAlignmentCenter);
    }

    void PaintCropMarks() {
        const Pen pen(Color(0, 0, 0), 1);
        const RectF area = At(Face.Printable);
        const float size = std::max(4.0F, Length(60));
        for (const float x : {area.X, area.X + area.Width}) {
            for (const float y : {area.Y, area.Y + area.Height}) {
                const float outX = x == area.X ? -size : size;
                const float outY = y == area.Y ? -size : size;
                Canvas.DrawLine(&pen, x, y, x + outX, y);
                Canvas.DrawLine(&pen, x, y, x, y + outY);
            }
        }
    }

    void PaintFinishing() {
        if (Face.BoundEdge) {
            PaintBoundEdge(*Face.BoundEdge);
        }
        Pen fold(Color(0x6B, 0x72, 0x80), 1);
        fold.SetDashStyle(Gdiplus::DashStyleDash);
        for (const Segment& segment : Face.Folds) {
            DrawSegment(fold, segment);
        }
        for (const Point& hole : Face.Holes) {
            PaintHole(At(hole));
        }
        for (const Segment& staple : Face.Staples) {
            PaintStaple(staple);
        }
    }

    void PaintBoundEdge(const Segment& edge) {
        const float depth = std::max(4.0F, Length(45));
        RectF band(At(edge.From).X, At(edge.From).Y, depth, depth);
        if (edge.From.X == edge.To.X) {
            band.Height = At(edge.To).Y - band.Y;
            band.X -= edge.From.X == 0 ? 0 : depth;
        } else {
            band.Width = At(edge.To).X - band.X;
        }
        FillBox(Canvas, band, Color(70, 0xE0, 0x86, 0x1A));
    }

    void PaintHole(const PointF& center) {
        const float radius = std::max(3.0F, Length(30));
        const RectF area(center.X - radius, center.Y - radius, 2 * radius, 2 * radius);
        const SolidBrush ground(Color(0x9B, 0xA3, 0xAE));
        Canvas.FillEllipse(&ground, area);
        const Pen rim(Color(0x5A, 0x61, 0x6C), 1.2F);
        Canvas.DrawEllipse(&rim, area);
    }

    void PaintStaple(const Segment& staple) {
        Pen under(Color(0x3C, 0x42, 0x4C), std::max(3.0F, Length(24)));
        under.SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
        DrawSegment(under, staple);
        Pen light(Color(0xD8, 0xDC, 0xE2), std::max(1.0F, Length(8)));
        light.SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
        DrawSegment(light, staple);
    }

    void Write(const std::wstring& text, const RectF& area, float size, Color color,
               Gdiplus::StringAlignment alignment) {
        const Gdiplus::FontFamily family(Words.FontName.c_str());
        const Gdiplus::Font font(&family, size, Gdiplus::FontStyleRegular, Gdiplus::UnitPixel);
        Gdiplus::StringFormat format;
        format.SetAlignment(alignment);
        format.SetLineAlignment(Gdiplus::StringAlignmentCenter);
        format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
        const SolidBrush brush(color);
        Canvas.DrawString(text.c_str(), -1, &font, area, &format, &brush);
    }

    Graphics& Canvas;
    const SheetLayout& Sheet;
    const FaceLayout& Face;
    bool IsBack;
    RectF Area;
    const Original& Source;
    const DocumentWords& Words;
    float Scale;
};

} // namespace

void SheetPainter::Paint(Graphics& graphics, const SheetLayout& sheet, bool back, const RectF& area) const {
    FacePainter(graphics, sheet, back, area, Source, Words).Paint();
}

} // namespace pmx::sample
