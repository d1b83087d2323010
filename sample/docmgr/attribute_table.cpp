#include "docmgr/attribute_table.h"

#include <algorithm>

namespace pmx::sample {

namespace {

template <typename Number>
void Limit(LittleEndian<Number>& field, int lowest, int highest) {
    field = static_cast<Number>(std::clamp<int>(field.Get(), lowest, highest));
}

void Limit(Margins& margins) {
    for (U16* margin : {&margins.Top, &margins.Bottom, &margins.Left, &margins.Right}) {
        Limit(*margin, 0, 500);
    }
}

void Limit(DocumentPart& document) {
    Limit(document.CustomWidth, 900, 4500);
    Limit(document.CustomHeight, 900, 4500);
    Limit(document.SheetsPerSignature, 0, 50);
    Limit(document.Creep, -500, 500);
    Limit(document.Copies, 1, 9999);
    Limit(document.NumberStart, 0, 9999);
    Limit(document.FirstNumberedPage, 1, 9999);
    Limit(document.NumberFontSize, 60, 240);
    for (S16* shift :
         {&document.FrontShiftX, &document.FrontShiftY, &document.BackShiftX, &document.BackShiftY}) {
        Limit(*shift, -500, 500);
    }
}

void Limit(SectionPart& section) {
    section.TabsPerSet = std::clamp<unsigned char>(section.TabsPerSet, 1, 10);
    Limit(section.NumberStart, 0, 9999);
}

void Limit(FacePart& face) {
    Limit(face.FrontMargins);
    Limit(face.BackMargins);
    Limit(face.Gutter, 0, 500);
    Limit(face.GapX, 0, 300);
    Limit(face.GapY, 0, 300);
    Limit(face.Header.FontSize, 60, 240);
    Limit(face.Footer.FontSize, 60, 240);
    Limit(face.Mark.Angle, -180, 180);
    Limit(face.Mark.Size, 12, 200);
    for (auto& override : face.Overrides) {
        Limit(override.Edges);
    }
}

void Limit(PagePart& page) {
    Limit(page.Percent, 25, 400);
    Limit(page.Trim);
    Limit(page.ShiftX, -1000, 1000);
    Limit(page.ShiftY, -1000, 1000);
    for (auto& override : page.Overrides) {
        Limit(override.Percent, 25, 400);
        Limit(override.ShiftX, -1000, 1000);
        Limit(override.ShiftY, -1000, 1000);
    }
}

Extent UprightExtent(const DocumentPart& document) {
    switch (document.Paper.Get()) {
    case PaperSize::A3:
        return {2970, 4200};
    case PaperSize::A5:
        return {1480, 2100};
    case PaperSize::B4:
        return {2570, 3640};
    case PaperSize::B5:
        return {1820, 2570};
    case PaperSize::Letter:
        return {2159, 2794};
    case PaperSize::Postcard:
        return {1000, 1480};
    case PaperSize::Custom:
        return {document.CustomWidth, document.CustomHeight};
    default:
        return {2100, 2970};
    }
}

} // namespace

AttributeTable FreshTable() {
    AttributeTable table;
    table.Document.LayoutVersion = TableLayoutVersion;
    table.Document.CustomWidth = std::uint16_t{2100};
    table.Document.CustomHeight = std::uint16_t{2970};
    table.Document.Copies = std::uint16_t{1};
    table.Document.Collate = true;
    table.Document.NumberStart = std::uint16_t{1};
    table.Document.FirstNumberedPage = std::uint16_t{1};
    table.Document.NumberFontSize = std::uint16_t{90};
    table.Section.TabsPerSet = 5;
    table.Section.NumberStart = std::uint16_t{1};
    table.Sheet.Weight = std::uint16_t{64};
    table.Face.FrontMargins = {50, 50, 50, 50};
    table.Face.BackMargins = table.Face.FrontMargins;
    table.Face.MirrorMargins = true;
    table.Face.Header.FontSize = std::uint16_t{80};
    table.Face.Footer.FontSize = std::uint16_t{80};
    table.Face.Mark.Angle = std::int16_t{45};
    table.Face.Mark.Size = std::uint16_t{72};
    table.Page.Percent = std::uint16_t{100};
    for (auto& override : table.Page.Overrides) {
        override.Percent = std::uint16_t{100};
    }
    return table;
}

void SetTwoUpBothSides(AttributeTable& table) {
    table.Document.Sides = PrintSides::Both;
    table.Document.BookletKind = Booklet::None;
    table.Face.Pages = PagesPerFace::Two;
    table.Face.Order = PageOrder::RightThenDown;
}

void SetSaddleStitchedBooklet(AttributeTable& table) {
    table.Document.Sides = PrintSides::Both;
    table.Document.BookletKind = Booklet::SaddleStitch;
    table.Document.Binding = Edge::Left;
    table.Document.StaplePlace = Staple::Saddle;
    table.Document.Folding = Fold::Half;
    table.Document.PunchHoles = Punch::None;
    table.Face.Pages = PagesPerFace::One;
}

void SetBothSidesBoundUpperLeft(AttributeTable& table) {
    table.Document.Sides = PrintSides::Both;
    table.Document.BookletKind = Booklet::None;
    table.Document.Binding = Edge::Left;
    table.Document.StaplePlace = Staple::UpperLeft;
    table.Document.Folding = Fold::None;
    table.Face.Pages = PagesPerFace::One;
}

AttributeTable Limited(const AttributeTable& table) {
    AttributeTable limited = table;
    Limit(limited.Document);
    Limit(limited.Section);
    Limit(limited.Sheet.Weight, 40, 400);
    Limit(limited.Face);
    Limit(limited.Page);
    return limited;
}

Extent PaperExtent(const DocumentPart& document) {
    const Extent upright = UprightExtent(document);
    return document.PageOrientation == Orientation::Portrait ? upright
                                                             : Extent{upright.Height, upright.Width};
}

int CountOf(PagesPerFace pages) {
    constexpr std::array<int, static_cast<std::size_t>(PagesPerFace::Count)> Counts{1, 2, 4, 6, 8, 9, 16};
    return Counts.at(static_cast<std::size_t>(pages));
}

} // namespace pmx::sample
