#pragma once

#include "docmgr/table_fields.h"
#include "host/PmxDocMgr.h"

/// The attribute table of the sample host: what its documents can be told about printing. It has one part for
/// each attribute level; a level's favorite covers its own part and those below it, to the table's end.
/// docs/files.md describes every field. Lengths are in tenths of a millimetre unless stated.
namespace pmx::sample {

/// The attribute levels of a favorite.
enum class Level : std::int32_t { Document = 1, Section = 2, Sheet = 3, Face = 4, Page = 5 };

enum class PaperSize : unsigned char { A4, A3, A5, B4, B5, Letter, Postcard, Custom, Count };
enum class Orientation : unsigned char { Portrait, Landscape, Count };
enum class PrintSides : unsigned char { Front, Both, Count };
enum class Edge : unsigned char { Left, Right, Top, Count };
enum class Booklet : unsigned char { None, SaddleStitch, PerfectBinding, Count };
enum class Staple : unsigned char { None, UpperLeft, UpperRight, TwoLeft, TwoRight, TwoTop, Saddle, Count };
enum class Punch : unsigned char { None, TwoHoles, ThreeHoles, FourHoles, Count };
enum class Fold : unsigned char { None, Half, ThreeFold, ZFold, Count };
enum class ColorMode : unsigned char { Automatic, Color, Gray, TwoColors, Count };
enum class Quality : unsigned char { Standard, Draft, Fine, Count };
enum class Cover : unsigned char { None, Blank, PrintedOutside, PrintedBothSides, Count };
enum class Separator : unsigned char { None, BetweenCopies, BetweenSections, Count };
enum class PaperSource : unsigned char { Automatic, Tray1, Tray2, Tray3, Tray4, Manual, Inserter, Count };
enum class Media : unsigned char { Plain, Recycled, Thick, Coated, Colored, Transparency, Tab, Count };
enum class SheetColor : unsigned char { White, Yellow, Pink, Blue, Green, Gray, Count };
enum class NumberPlace : unsigned char {
    None,
    BottomCenter,
    BottomOutside,
    BottomLeft,
    BottomRight,
    TopCenter,
    TopOutside,
    TopLeft,
    TopRight,
    Count
};
enum class NumberFormat : unsigned char { Plain, Dashes, OfTotal, Roman, SectionAndNumber, Count };
enum class SectionStart : unsigned char { Continue, NewFace, NewSheet, Count };
enum class SheetInsertion : unsigned char { None, BeforeSection, AfterSection, Count };
enum class PagesPerFace : unsigned char { One, Two, Four, Six, Eight, Nine, Sixteen, Count };
enum class PageOrder : unsigned char { RightThenDown, DownThenRight, LeftThenDown, DownThenLeft, Count };
enum class Line : unsigned char { None, Solid, Dashed, Count };
enum class Scaling : unsigned char { FitToCell, ActualSize, Percent, Count };
enum class Place : unsigned char {
    Center,
    UpperLeft,
    Top,
    UpperRight,
    Left,
    Right,
    LowerLeft,
    Bottom,
    LowerRight,
    Count
};
enum class Rotation : unsigned char { None, Quarter, Half, ThreeQuarters, Count };
enum class Strength : unsigned char { Light, Medium, Strong, Count };

struct Margins {
    U16 Top, Bottom, Left, Right;
};

/// A cover in front of or behind the document.
struct CoverSheet {
    Choice<Cover> Kind;
    Choice<PaperSource> Source;
    Choice<Media> Paper;
    Choice<SheetColor> Color;
};

/// Settings of the document as a whole.
struct DocumentPart {
    U16 LayoutVersion;
    Choice<PaperSize> Paper;
    Choice<Orientation> PageOrientation;
    U16 CustomWidth, CustomHeight; ///< with PaperSize::Custom
    Choice<PrintSides> Sides;
    Choice<Edge> Binding;
    Choice<Booklet> BookletKind;
    U16 SheetsPerSignature; ///< of a booklet; 0 puts all sheets in one
    S16 Creep;              ///< shift of the innermost sheet of a booklet, hundredths of a millimetre
    Choice<Staple> StaplePlace;
    Choice<Punch> PunchHoles;
    Choice<Fold> Folding;
    Choice<ColorMode> Color;
    Choice<Quality> PrintQuality;
    Flag SaveToner;
    U16 Copies;
    Flag Collate;
    Flag FaceUp;
    Flag ReverseOrder;
    CoverSheet FrontCover;
    CoverSheet BackCover;
    Choice<Separator> SeparatorSheets;
    Choice<PaperSource> SeparatorSource;
    Choice<NumberPlace> NumberAt;
    Choice<NumberFormat> NumberAs;
    U16 NumberStart;       ///< the first number printed
    U16 FirstNumberedPage; ///< the page that carries it
    U16 NumberFontSize;    ///< tenths of a point
    S16 FrontShiftX, FrontShiftY, BackShiftX, BackShiftY;
    Reserved<30> Rest;
};

/// Settings of a section.
struct SectionPart {
    Choice<SectionStart> StartsOn;
    Flag TabSheet;
    unsigned char TabsPerSet = 0;
    Choice<SheetInsertion> Insertion;
    Choice<PaperSource> InsertSource;
    Choice<SheetColor> InsertColor;
    Flag RestartNumbers;
    Flag StapleEachSection;
    U16 NumberStart;
    Text<16> TabText;
    Reserved<18> Rest;
};

/// Settings of a sheet.
struct SheetPart {
    Choice<PaperSource> Source;
    Choice<Media> Paper;
    Choice<SheetColor> Color;
    Flag TurnBack; ///< the back is upside down to the front
    U16 Weight;    ///< grams per square metre
    Choice<PaperSource> FirstSheetSource;
    Choice<PaperSource> LastSheetSource;
    Reserved<16> Rest;
};

/// Three texts in a line: at the left, in the middle, at the right.
struct LineOfText {
    Text<64> Left, Middle, Right;
    U16 FontSize; ///< tenths of a point
};

struct Watermark {
    Text<128> Words;
    S16 Angle; ///< degrees, counter-clockwise
    U16 Size;  ///< points
    Choice<Strength> Density;
    Flag FirstFaceOnly;
    Choice<ColorMode> Color;
    unsigned char Spare = 0;
};

/// Margins of single faces, counted from 1 over the whole document; face 0 is none.
struct FaceMargins {
    U16 Face;
    Margins Edges;
};

/// Settings of a face, which is one side of a sheet.
struct FacePart {
    Choice<PagesPerFace> Pages;
    Choice<PageOrder> Order;
    Margins FrontMargins;
    Margins BackMargins;
    Flag MirrorMargins; ///< the back takes the front's margins with left and right exchanged
    U16 Gutter;         ///< added to the margin at the binding edge
    U16 GapX, GapY;     ///< between the pages of a face
    Choice<Line> DividingLine;
    Flag FaceFrame;
    Flag CropMarks;
    Flag HeaderOn, FooterOn;
    LineOfText Header;
    LineOfText Footer;
    Flag WatermarkOn;
    Watermark Mark;
    Text<260> OverlayFile;
    Reserved<1> Spare;
    std::array<FaceMargins, 32> Overrides;
    Reserved<935> Rest;
};

/// A different setting for the pages First to Last, counted from 1; First 0 is none.
struct PageOverride {
    U16 First, Last;
    Choice<Scaling> Scale;
    Choice<Rotation> Turn;
    U16 Percent;
    S16 ShiftX, ShiftY;
    Choice<ColorMode> Color;
    Choice<PaperSource> Source;
    Flag NoNumber;
    Flag NoHeader;
    Flag StartNewSheet;
    Reserved<7> Rest;
};

/// Settings of a page of the original.
struct PagePart {
    Choice<Scaling> Scale;
    Choice<Place> At;
    Choice<Rotation> Turn;
    Flag Frame;
    U16 Percent; ///< with Scaling::Percent, 25 to 400
    Margins Trim;
    S16 ShiftX, ShiftY;
    Choice<ColorMode> Color;
    Flag NumberOnPage; ///< the original's own number under each page
    Text<64> Stamp;    ///< printed in the upper right corner of each page
    Reserved<208> Rest;
    std::array<PageOverride, 256> Overrides;
};

/// The whole table.
struct AttributeTable {
    DocumentPart Document;
    SectionPart Section;
    SheetPart Sheet;
    FacePart Face;
    PagePart Page;
};

inline constexpr std::uint16_t TableLayoutVersion = 1;
inline constexpr std::size_t TableSize = PMX_DOCUMENT_TABLE_SIZE;

/// A table that prints a document page by page on one side of A4.
AttributeTable FreshTable();

/// The standard settings, made on top of what the table holds.
void SetTwoUpBothSides(AttributeTable& table);
void SetSaddleStitchedBooklet(AttributeTable& table);
void SetBothSidesBoundUpperLeft(AttributeTable& table);

/// The table with every number brought into the range that the settings allow. Whoever computes with a table,
/// which may come from a damaged or a newer file, does so with this one; what is stored and passed on stays
/// as it is.
AttributeTable Limited(const AttributeTable& table);

/// A size in tenths of a millimetre.
struct Extent {
    int Width = 0;
    int Height = 0;
};

/// The paper as it lies for one page a face: turned for landscape pages.
Extent PaperExtent(const DocumentPart& document);

/// How many pages a face takes.
int CountOf(PagesPerFace pages);

static_assert(std::is_trivially_copyable_v<AttributeTable> && std::is_standard_layout_v<AttributeTable>);
static_assert(alignof(AttributeTable) == 1 && sizeof(AttributeTable) == TableSize);
static_assert(offsetof(AttributeTable, Document) == 0 && sizeof(DocumentPart) == 82);
static_assert(offsetof(AttributeTable, Section) == 82 && sizeof(SectionPart) == 44);
static_assert(offsetof(AttributeTable, Sheet) == 126 && sizeof(SheetPart) == 24);
static_assert(offsetof(AttributeTable, Face) == 150 && sizeof(FacePart) == 2071);
static_assert(offsetof(AttributeTable, Page) == 2221 && sizeof(PagePart) == 6436);

} // namespace pmx::sample
