#include "drawing/page_art.h"

#include "drawing/palette.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pmx::sample {

using Gdiplus::Color;
using Gdiplus::Graphics;
using Gdiplus::PointF;
using Gdiplus::RectF;
using Gdiplus::SolidBrush;

namespace {

constexpr float LineDistance = 62;

/// A page being drawn from top to bottom; each element takes its height from what is left.
class ArtPage {
public:
    ArtPage(Graphics& graphics, const PlacedPage& page, float width, float height, const DocumentWords& words)
        : Canvas(graphics),
          Colors(page.Color),
          Section(page.Section),
          Number(page.Number),
          Words(words),
          Area(0, 0, width, height),
          Body(width * 0.1F, height * 0.08F, width * 0.8F, height * 0.84F) {}

    void DrawTitlePage() {
        Fill({0, 0, Area.Width, Area.Height * 0.36F}, Colors.Accent(Section));
        Fill({0, Area.Height * 0.36F, Area.Width, Area.Height * 0.012F}, Colors.Of(Color(0xF2, 0xB1, 0x34)));
        Write(Words.Title, {Body.X, Area.Height * 0.09F, Body.Width, 270}, 190, Color(255, 255, 255));
        Write(Words.Subtitle, {Body.X, Area.Height * 0.21F, Body.Width, 170}, 116, Color(255, 255, 255));
        DrawPicture({Body.X, Area.Height * 0.44F, Body.Width, Area.Height * 0.36F});
        Top = Area.Height * 0.86F;
        DrawLines(2, 0.5F);
    }

    void DrawSectionStart(const std::wstring& heading) {
        Fill({Body.X, Body.Y, 30, 190}, Colors.Accent(Section));
        Write(heading, {Body.X + 60, Body.Y + 4, Body.Width - 60, 220}, 150, Colors.Accent(Section));
        Top = Body.Y + 270;
        DrawBody();
    }

    void DrawPlainPage(const std::wstring& heading) {
        Write(heading, {Body.X, Body.Y - 70, Body.Width, 140}, 92, Colors.Of(Color(0x70, 0x70, 0x70)));
        Fill({Body.X, Body.Y + 58, Body.Width, 5}, Colors.Accent(Section));
        Top = Body.Y + 120;
        DrawBody();
    }

    void DrawNumeral() {
        const Color accent = Colors.Accent(Section);
        const float size = std::min(Area.Width, Area.Height) * 0.5F;
        Write(std::to_wstring(Number), {0, (Area.Height - size) / 2, Area.Width, size * 1.3F}, size,
              Color(54, accent.GetR(), accent.GetG(), accent.GetB()), Gdiplus::StringAlignmentCenter);
    }

private:
    void DrawBody() {
        switch (Number % 3) {
        case 0:
            DrawLines(5, 0.7F);
            DrawChart(Take(Area.Height * 0.27F));
            DrawLinesToEnd();
            break;
        case 1:
            DrawPicture(Take(Area.Height * 0.25F));
            DrawLinesToEnd();
            break;
        default:
            DrawLines(4, 0.45F);
            DrawTable(Take(Area.Height * 0.24F));
            DrawLinesToEnd();
            break;
        }
    }

    RectF Take(float height) {
        const RectF taken(Body.X, Top, Body.Width, height);
        Top += height + LineDistance;
        return taken;
    }

    float PixelsPerUnit() const {
        Gdiplus::Matrix transform;
        Canvas.GetTransform(&transform);
        std::array<Gdiplus::REAL, 6> elements{};
        transform.GetElements(elements.data());
        return std::hypot(elements[0], elements[1]);
    }

    void Fill(const RectF& area, Color color) {
        const SolidBrush brush(color);
        Canvas.FillRectangle(&brush, area);
    }

    /// Words, or a bar of their length where they would be too small to read.
    void Write(const std::wstring& text, const RectF& area, float size, Color color,
               Gdiplus::StringAlignment alignment = Gdiplus::StringAlignmentNear) {
        constexpr float SmallestPixels = 8.5F;
        if (size * PixelsPerUnit() < SmallestPixels) {
            const float length = std::min(area.Width, static_cast<float>(text.size()) * size);
            return Fill({area.X, area.Y + size * 0.4F, length, size * 0.5F}, color);
        }
        const Gdiplus::FontFamily family(Words.FontName.c_str());
        const Gdiplus::Font full(&family, size, Gdiplus::FontStyleBold, Gdiplus::UnitPixel);
        RectF needed;
        Canvas.MeasureString(text.c_str(), -1, &full, PointF(), &needed);
        constexpr float Reserve = 1.2F; // Small letters come out wider than they measure.
        const float fitting = size * std::min(1.0F, area.Width / std::max(1.0F, needed.Width * Reserve));
        const Gdiplus::Font font(&family, fitting, Gdiplus::FontStyleBold, Gdiplus::UnitPixel);
        Gdiplus::StringFormat format;
        format.SetAlignment(alignment);
        format.SetFormatFlags(Gdiplus::StringFormatFlagsNoWrap);
        const SolidBrush brush(color);
        Canvas.DrawString(text.c_str(), -1, &font, area, &format, &brush);
    }

    /// Lines of text, the last one so long as `lastLine` says.
    void DrawLines(int count, float lastLine) {
        const Color ink = Colors.Of(Color(0xB4, 0xB9, 0xC1));
        for (int line = 0; line < count; ++line) {
            const float part =
                line + 1 == count ? lastLine : 1.0F - 0.02F * static_cast<float>((line * 7) % 3);
            Fill({Body.X, Top, Body.Width * part, 22}, ink);
            Top += LineDistance;
        }
        Top += LineDistance / 2;
    }

    void DrawLinesToEnd() {
        const float bottom = Body.Y + Body.Height;
        while (Top + 5 * LineDistance < bottom) {
            DrawLines(4, 0.35F + 0.1F * static_cast<float>((Number * 3) % 5));
        }
        const int rest = static_cast<int>((bottom - Top) / LineDistance);
        if (rest > 0) {
            DrawLines(rest, 0.6F);
        }
    }

    /// Hills under a sun.
    void DrawPicture(const RectF& area) {
        Fill(area, Colors.Of(Color(0xD5, 0xE8, 0xF7)));
        const SolidBrush sun(Colors.Of(Color(0xF6, 0xC3, 0x4A)));
        const float sunSize = area.Height * 0.26F;
        Canvas.FillEllipse(&sun, area.X + area.Width * 0.7F, area.Y + area.Height * 0.12F, sunSize, sunSize);
        DrawHill(area, 0.0F, 0.34F, 0.62F, Color(0x8F, 0xB9, 0x96));
        DrawHill(area, 0.3F, 0.68F, 1.0F, Color(0x5F, 0x96, 0x72));
    }

    void DrawHill(const RectF& area, float left, float peak, float right, Color color) {
        const SolidBrush brush(Colors.Of(color));
        const float bottom = area.Y + area.Height;
        const std::array<PointF, 3> corners{
            PointF(area.X + area.Width * left, bottom),
            PointF(area.X + area.Width * peak, area.Y + area.Height * (peak < 0.5F ? 0.3F : 0.48F)),
            PointF(area.X + area.Width * right, bottom)};
        Canvas.FillPolygon(&brush, corners.data(), static_cast<INT>(corners.size()));
    }

    void DrawChart(const RectF& area) {
        Fill(area, Colors.Pale(Section));
        constexpr int Bars = 6;
        const float step = area.Width / (Bars + 0.5F);
        for (int bar = 0; bar < Bars; ++bar) {
            const float part = 0.25F + 0.6F * std::fabs(std::sin(static_cast<float>(bar + Number)));
            const float height = area.Height * part;
            Fill({area.X + step * (static_cast<float>(bar) + 0.45F), area.Y + area.Height - height,
                  step * 0.6F, height},
                 bar % 3 == 2 ? Colors.Of(Color(0xF2, 0xB1, 0x34)) : Colors.Accent(Section));
        }
    }

    void DrawTable(const RectF& area) {
        constexpr int Rows = 5;
        const float step = area.Height / Rows;
        for (int row = 0; row < Rows; ++row) {
            const RectF line(area.X, area.Y + step * static_cast<float>(row), area.Width, step);
            Fill(line, row == 0       ? Colors.Accent(Section)
                       : row % 2 == 0 ? Colors.Pale(Section)
                                      : Color(255, 255, 255));
        }
        const Gdiplus::Pen pen(Colors.Accent(Section), 5);
        Canvas.DrawRectangle(&pen, area);
        Canvas.DrawLine(&pen, area.X + area.Width * 0.4F, area.Y, area.X + area.Width * 0.4F,
                        area.Y + area.Height);
        Canvas.DrawLine(&pen, area.X + area.Width * 0.7F, area.Y, area.X + area.Width * 0.7F,
                        area.Y + area.Height);
    }

    Graphics& Canvas;
    Palette Colors;
    int Section;
    int Number;
    const DocumentWords& Words;
    RectF Area, Body;
    float Top = 0;
};

const std::wstring& HeadingOf(int section, const DocumentWords& words) {
    static const std::wstring None;
    const auto index = static_cast<std::size_t>(section - 1);
    return index < words.SectionHeadings.size() ? words.SectionHeadings[index] : None;
}

bool IsSectionStart(int page, const Original& original) {
    return std::find(original.SectionStarts.begin(), original.SectionStarts.end(), page) !=
           original.SectionStarts.end();
}

} // namespace

void DrawPageArt(Graphics& graphics, const PlacedPage& page, float width, float height,
                 const Original& original, const DocumentWords& words) {
    ArtPage art(graphics, page, width, height, words);
    if (page.Number == 1) {
        art.DrawTitlePage();
    } else if (IsSectionStart(page.Number, original)) {
        art.DrawSectionStart(HeadingOf(page.Section, words));
    } else {
        art.DrawPlainPage(HeadingOf(page.Section, words));
    }
    art.DrawNumeral();
}

} // namespace pmx::sample
