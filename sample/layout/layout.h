#pragma once

#include "docmgr/attribute_table.h"

#include <optional>
#include <string>
#include <vector>

/// What the attribute table makes of a document: the sheets that come out of the printer. Lengths and places
/// are in tenths of a millimetre, places from the upper left corner of the face as a reader sees it. Texts
/// are in code page 932.
namespace pmx::sample {

struct Point {
    int X = 0;
    int Y = 0;
};

struct Segment {
    Point From, To;
};

struct Box {
    int X = 0;
    int Y = 0;
    int Width = 0;
    int Height = 0;

    int Right() const { return X + Width; }
    int Bottom() const { return Y + Height; }
};

/// A page of the original where it is printed.
struct PlacedPage {
    int Number = 0;  ///< from 1
    int Section = 0; ///< from 1
    Box Cell;        ///< the place that the page has
    Box Area;        ///< the page itself; may stand out of its cell
    Rotation Turn = Rotation::None;
    ColorMode Color = ColorMode::Automatic;
    bool HasFrame = false;
    std::string Stamp;
};

enum class TextPlace { Left, Middle, Right };

/// A line of text printed on the face: a page number, a part of a header or footer.
struct PlacedText {
    Box Area;
    TextPlace At = TextPlace::Middle;
    int Points = 80; ///< tenths of a point
    std::string Words;
};

struct PlacedWatermark {
    int Angle = 0; ///< degrees, counter-clockwise
    int Points = 72;
    Strength Density = Strength::Light;
    ColorMode Color = ColorMode::Automatic;
    std::string Words;
};

/// One side of a sheet.
struct FaceLayout {
    int Number = 0; ///< from 1 over all printed faces; 0 for a face that stays empty
    Box Printable;
    std::vector<PlacedPage> Pages;
    std::vector<PlacedText> Texts;
    std::vector<Segment> DividingLines;
    std::optional<PlacedWatermark> Mark;
    bool HasFrame = false;
    bool HasCropMarks = false;
    std::optional<Segment> BoundEdge;
    std::vector<Segment> Staples;
    std::vector<Point> Holes;
    std::vector<Segment> Folds;
};

enum class SheetKind { Body, FrontCover, BackCover, Tab, Insert };

struct SheetLayout {
    SheetKind Kind = SheetKind::Body;
    int Number = 0; ///< from 1 over all sheets
    Extent Paper;
    SheetColor Color = SheetColor::White;
    FaceLayout Front, Back;
    std::string TabText;
    int TabIndex = 0; ///< with SheetKind::Tab: place of the tab among TabCount, from 0
    int TabCount = 1;
};

struct DocumentLayout {
    bool BothSides = false; ///< whether backs are printed at all
    std::vector<SheetLayout> Sheets;
};

/// A document to print, as far as the layout needs to know it.
struct Original {
    int PageCount = 0;
    std::vector<int> SectionStarts; ///< first page of each section, ascending, beginning with 1
};

/// Lays the document out. Any table can be given.
DocumentLayout LayOut(const AttributeTable& table, const Original& original);

} // namespace pmx::sample
