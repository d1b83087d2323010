#include "layout/layout.h"

#include "layout/finishing.h"
#include "layout/imposition.h"
#include "layout/numbers.h"

#include <algorithm>
#include <utility>

namespace pmx::sample {

namespace {

constexpr int LineHeight = 50; // Of header, footer and page number.

struct PageSettings {
    Scaling Scale = Scaling::FitToCell;
    Rotation Turn = Rotation::None;
    int Percent = 100;
    int ShiftX = 0;
    int ShiftY = 0;
    ColorMode Color = ColorMode::Automatic;
};

Box Inset(const Extent& paper, int left, int top, int right, int bottom) {
    return {left, top, std::max(1, paper.Width - left - right), std::max(1, paper.Height - top - bottom)};
}

Extent Turned(const Extent& extent, bool turn) {
    return turn ? Extent{extent.Height, extent.Width} : extent;
}

/// Makes the faces of a document one after the other.
class FaceMaker {
public:
    FaceMaker(const AttributeTable& table, const Original& original)
        : Table(table),
          Source(original),
          Page(PaperExtent(table.Document)),
          Paper(Turned(Page, IsPaperTurned(table))) {}

    const Extent& PaperOfSheets() const { return Paper; }

    FaceLayout Make(const PagesOfFace& pages, bool back) {
        FaceLayout face;
        const bool printed = !pages.empty();
        if (printed) {
            face.Number = ++FaceCount;
        }
        face.Printable = PrintableArea(face.Number, back);
        if (printed) {
            AddPages(face, pages);
            AddLines(face);
        }
        AddFinishing(face, back, Paper, Table);
        return face;
    }

private:
    Margins MarginsOf(int faceNumber, bool back) const {
        for (const auto& other : Table.Face.Overrides) {
            if (faceNumber != 0 && other.Face == faceNumber) {
                return other.Edges;
            }
        }
        if (!back) {
            return Table.Face.FrontMargins;
        }
        Margins margins = Table.Face.MirrorMargins ? Table.Face.FrontMargins : Table.Face.BackMargins;
        if (Table.Face.MirrorMargins) {
            std::swap(margins.Left, margins.Right);
        }
        return margins;
    }

    Box PrintableArea(int faceNumber, bool back) const {
        const Margins margins = MarginsOf(faceNumber, back);
        int left = margins.Left;
        int top = margins.Top;
        int right = margins.Right;
        if (!IsBooklet(Table)) {
            const Edge edge = BindingOn(back, Table);
            (edge == Edge::Left ? left : edge == Edge::Right ? right : top) += Table.Face.Gutter;
        }
        return Inset(Paper, left, top, right, margins.Bottom);
    }

    int GapBetweenColumns() const { return Table.Face.GapX + (IsBooklet(Table) ? 2 * Table.Face.Gutter : 0); }

    Box CellOf(int column, int row, const Grid& grid, const Box& area) const {
        const int gapX = GapBetweenColumns();
        const int gapY = Table.Face.GapY;
        const int width = (area.Width - gapX * (grid.Columns - 1)) / grid.Columns;
        const int height = (area.Height - gapY * (grid.Rows - 1)) / grid.Rows;
        return {area.X + column * (width + gapX), area.Y + row * (height + gapY), std::max(width, 1),
                std::max(height, 1)};
    }

    void AddPages(FaceLayout& face, const PagesOfFace& pages) {
        const Grid grid = GridOf(Table);
        for (int index = 0; index < grid.Count(); ++index) {
            const int page = pages[static_cast<std::size_t>(index)];
            if (page == 0) {
                continue;
            }
            const Box cell = CellOf(index % grid.Columns, index / grid.Columns, grid, face.Printable);
            face.Pages.push_back(PlaceInCell(page, cell));
            AddNumber(face, page, cell);
        }
    }

    PageSettings SettingsOf(int page) const {
        const auto& own = Table.Page;
        PageSettings settings{own.Scale, own.Turn, own.Percent, own.ShiftX, own.ShiftY, own.Color};
        for (const auto& other : own.Overrides) {
            if (other.First != 0 && other.First <= page && page <= other.Last) {
                settings = {other.Scale, other.Turn, other.Percent, other.ShiftX, other.ShiftY, other.Color};
            }
        }
        return settings;
    }

    /// Its own colours, or those of the document.
    ColorMode ColorOf(ColorMode own) const {
        return own == ColorMode::Automatic ? Table.Document.Color.Get() : own;
    }

    PlacedPage PlaceInCell(int page, const Box& cell) const {
        const PageSettings settings = SettingsOf(page);
        const bool quarter = settings.Turn == Rotation::Quarter || settings.Turn == Rotation::ThreeQuarters;
        const Extent size = ScaledSize(Turned(Page, quarter), cell, settings);
        PlacedPage placed;
        placed.Number = page;
        placed.Section = SectionOf(page, Source);
        placed.Cell = cell;
        placed.Area = Aligned(size, cell);
        placed.Area.X += settings.ShiftX;
        placed.Area.Y += settings.ShiftY;
        placed.Turn = settings.Turn;
        placed.Color = ColorOf(settings.Color);
        placed.HasFrame = Table.Page.Frame;
        placed.Stamp = Table.Page.Stamp.Get();
        return placed;
    }

    static Extent ScaledSize(const Extent& page, const Box& cell, const PageSettings& settings) {
        if (settings.Scale == Scaling::ActualSize) {
            return page;
        }
        const double fit = std::min(1.0 * cell.Width / page.Width, 1.0 * cell.Height / page.Height);
        const double factor = settings.Scale == Scaling::Percent ? fit * settings.Percent / 100 : fit;
        return {static_cast<int>(page.Width * factor), static_cast<int>(page.Height * factor)};
    }

    Box Aligned(const Extent& size, const Box& cell) const {
        const Place at = Table.Page.At;
        const int roomX = cell.Width - size.Width;
        const int roomY = cell.Height - size.Height;
        const bool left = at == Place::UpperLeft || at == Place::Left || at == Place::LowerLeft;
        const bool right = at == Place::UpperRight || at == Place::Right || at == Place::LowerRight;
        const bool top = at == Place::UpperLeft || at == Place::Top || at == Place::UpperRight;
        const bool bottom = at == Place::LowerLeft || at == Place::Bottom || at == Place::LowerRight;
        const int x = left ? 0 : right ? roomX : roomX / 2;
        const int y = top ? 0 : bottom ? roomY : roomY / 2;
        return {cell.X + x, cell.Y + y, size.Width, size.Height};
    }

    /// Where a page's number stands: outside is the edge away from the binding.
    TextPlace SideOfNumber(int page) const {
        switch (Table.Document.NumberAt.Get()) {
        case NumberPlace::BottomLeft:
        case NumberPlace::TopLeft:
            return TextPlace::Left;
        case NumberPlace::BottomRight:
        case NumberPlace::TopRight:
            return TextPlace::Right;
        case NumberPlace::BottomOutside:
        case NumberPlace::TopOutside: {
            const bool rightHand = (page % 2 != 0) != (Table.Document.Binding == Edge::Right);
            return rightHand ? TextPlace::Right : TextPlace::Left;
        }
        default:
            return TextPlace::Middle;
        }
    }

    void AddNumber(FaceLayout& face, int page, const Box& cell) const {
        const auto words = PrintedNumber(page, Table, Source);
        if (!words) {
            return;
        }
        const NumberPlace at = Table.Document.NumberAt;
        const bool top = at >= NumberPlace::TopCenter;
        const Box line{cell.X, top ? cell.Y : cell.Bottom() - LineHeight, cell.Width, LineHeight};
        face.Texts.push_back({line, SideOfNumber(page), Table.Document.NumberFontSize, *words});
    }

    void AddLine(FaceLayout& face, const LineOfText& line, int y) const {
        const Box area{face.Printable.X, y, face.Printable.Width, LineHeight};
        const std::pair<TextPlace, std::string_view> parts[] = {{TextPlace::Left, line.Left.Get()},
                                                                {TextPlace::Middle, line.Middle.Get()},
                                                                {TextPlace::Right, line.Right.Get()}};
        for (const auto& [at, words] : parts) {
            if (!words.empty()) {
                face.Texts.push_back({area, at, line.FontSize, std::string(words)});
            }
        }
    }

    void AddLines(FaceLayout& face) const {
        const auto& settings = Table.Face;
        if (settings.HeaderOn) {
            AddLine(face, settings.Header, std::max(0, face.Printable.Y - LineHeight));
        }
        if (settings.FooterOn) {
            AddLine(face, settings.Footer, std::min(face.Printable.Bottom(), Paper.Height - LineHeight));
        }
        AddDividingLines(face);
        face.HasFrame = settings.FaceFrame;
        face.HasCropMarks = settings.CropMarks;
        if (settings.WatermarkOn && (face.Number == 1 || !settings.Mark.FirstFaceOnly)) {
            face.Mark = PlacedWatermark{settings.Mark.Angle, settings.Mark.Size, settings.Mark.Density,
                                        ColorOf(settings.Mark.Color), std::string(settings.Mark.Words.Get())};
        }
    }

    void AddDividingLines(FaceLayout& face) const {
        if (Table.Face.DividingLine == Line::None) {
            return;
        }
        const Grid grid = GridOf(Table);
        const Box& area = face.Printable;
        for (int column = 1; column < grid.Columns; ++column) {
            const int x = CellOf(column, 0, grid, area).X - GapBetweenColumns() / 2;
            face.DividingLines.push_back({{x, area.Y}, {x, area.Bottom()}});
        }
        for (int row = 1; row < grid.Rows; ++row) {
            const int y = CellOf(0, row, grid, area).Y - Table.Face.GapY / 2;
            face.DividingLines.push_back({{area.X, y}, {area.Right(), y}});
        }
    }

    const AttributeTable& Table;
    const Original& Source;
    Extent Page;
    Extent Paper;
    int FaceCount = 0;
};

SheetColor ColorOf(SheetKind kind, const AttributeTable& table) {
    switch (kind) {
    case SheetKind::FrontCover:
        return table.Document.FrontCover.Color;
    case SheetKind::BackCover:
        return table.Document.BackCover.Color;
    case SheetKind::Insert:
        return table.Section.InsertColor;
    default:
        return table.Sheet.Color;
    }
}

void AddTab(SheetLayout& sheet, int section, const AttributeTable& table) {
    sheet.TabCount = table.Section.TabsPerSet;
    sheet.TabIndex = (section - 1) % sheet.TabCount;
    sheet.TabText = table.Section.TabText.Get();
    if (sheet.TabText.empty()) {
        sheet.TabText = std::to_string(section);
    }
}

} // namespace

DocumentLayout LayOut(const AttributeTable& table, const Original& original) {
    const AttributeTable limited = Limited(table);
    FaceMaker faces(limited, original);
    DocumentLayout layout;
    layout.BothSides = limited.Document.Sides == PrintSides::Both || IsBooklet(limited);
    for (const auto& pages : Impose(limited, original)) {
        SheetLayout sheet;
        sheet.Kind = pages.Kind;
        sheet.Number = static_cast<int>(layout.Sheets.size()) + 1;
        sheet.Paper = faces.PaperOfSheets();
        sheet.Color = ColorOf(pages.Kind, limited);
        sheet.Front = faces.Make(pages.Front, false);
        sheet.Back = faces.Make(pages.Back, true);
        if (pages.Kind == SheetKind::Tab) {
            AddTab(sheet, pages.Section, limited);
        }
        layout.Sheets.push_back(std::move(sheet));
    }
    return layout;
}

} // namespace pmx::sample
