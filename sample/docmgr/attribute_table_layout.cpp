// The layout is fixed by favorite files that exist: where each field stands, and how long each structure is.
#include "docmgr/attribute_table.h"

namespace pmx::sample {

static_assert(offsetof(Margins, Top) == 0);
static_assert(offsetof(Margins, Bottom) == 2);
static_assert(offsetof(Margins, Left) == 4);
static_assert(offsetof(Margins, Right) == 6);
static_assert(sizeof(Margins) == 8);

static_assert(offsetof(CoverSheet, Kind) == 0);
static_assert(offsetof(CoverSheet, Source) == 1);
static_assert(offsetof(CoverSheet, Paper) == 2);
static_assert(offsetof(CoverSheet, Color) == 3);
static_assert(sizeof(CoverSheet) == 4);

static_assert(offsetof(DocumentPart, LayoutVersion) == 0);
static_assert(offsetof(DocumentPart, Paper) == 2);
static_assert(offsetof(DocumentPart, PageOrientation) == 3);
static_assert(offsetof(DocumentPart, CustomWidth) == 4);
static_assert(offsetof(DocumentPart, CustomHeight) == 6);
static_assert(offsetof(DocumentPart, Sides) == 8);
static_assert(offsetof(DocumentPart, Binding) == 9);
static_assert(offsetof(DocumentPart, BookletKind) == 10);
static_assert(offsetof(DocumentPart, SheetsPerSignature) == 11);
static_assert(offsetof(DocumentPart, Creep) == 13);
static_assert(offsetof(DocumentPart, StaplePlace) == 15);
static_assert(offsetof(DocumentPart, PunchHoles) == 16);
static_assert(offsetof(DocumentPart, Folding) == 17);
static_assert(offsetof(DocumentPart, Color) == 18);
static_assert(offsetof(DocumentPart, PrintQuality) == 19);
static_assert(offsetof(DocumentPart, SaveToner) == 20);
static_assert(offsetof(DocumentPart, Copies) == 21);
static_assert(offsetof(DocumentPart, Collate) == 23);
static_assert(offsetof(DocumentPart, FaceUp) == 24);
static_assert(offsetof(DocumentPart, ReverseOrder) == 25);
static_assert(offsetof(DocumentPart, FrontCover) == 26);
static_assert(offsetof(DocumentPart, BackCover) == 30);
static_assert(offsetof(DocumentPart, SeparatorSheets) == 34);
static_assert(offsetof(DocumentPart, SeparatorSource) == 35);
static_assert(offsetof(DocumentPart, NumberAt) == 36);
static_assert(offsetof(DocumentPart, NumberAs) == 37);
static_assert(offsetof(DocumentPart, NumberStart) == 38);
static_assert(offsetof(DocumentPart, FirstNumberedPage) == 40);
static_assert(offsetof(DocumentPart, NumberFontSize) == 42);
static_assert(offsetof(DocumentPart, FrontShiftX) == 44);
static_assert(offsetof(DocumentPart, FrontShiftY) == 46);
static_assert(offsetof(DocumentPart, BackShiftX) == 48);
static_assert(offsetof(DocumentPart, BackShiftY) == 50);
static_assert(offsetof(DocumentPart, Rest) == 52);
static_assert(sizeof(DocumentPart) == 82);

static_assert(offsetof(SectionPart, StartsOn) == 0);
static_assert(offsetof(SectionPart, TabSheet) == 1);
static_assert(offsetof(SectionPart, TabsPerSet) == 2);
static_assert(offsetof(SectionPart, Insertion) == 3);
static_assert(offsetof(SectionPart, InsertSource) == 4);
static_assert(offsetof(SectionPart, InsertColor) == 5);
static_assert(offsetof(SectionPart, RestartNumbers) == 6);
static_assert(offsetof(SectionPart, StapleEachSection) == 7);
static_assert(offsetof(SectionPart, NumberStart) == 8);
static_assert(offsetof(SectionPart, TabText) == 10);
static_assert(offsetof(SectionPart, Rest) == 26);
static_assert(sizeof(SectionPart) == 44);

static_assert(offsetof(SheetPart, Source) == 0);
static_assert(offsetof(SheetPart, Paper) == 1);
static_assert(offsetof(SheetPart, Color) == 2);
static_assert(offsetof(SheetPart, TurnBack) == 3);
static_assert(offsetof(SheetPart, Weight) == 4);
static_assert(offsetof(SheetPart, FirstSheetSource) == 6);
static_assert(offsetof(SheetPart, LastSheetSource) == 7);
static_assert(offsetof(SheetPart, Rest) == 8);
static_assert(sizeof(SheetPart) == 24);

static_assert(offsetof(LineOfText, Left) == 0);
static_assert(offsetof(LineOfText, Middle) == 64);
static_assert(offsetof(LineOfText, Right) == 128);
static_assert(offsetof(LineOfText, FontSize) == 192);
static_assert(sizeof(LineOfText) == 194);

static_assert(offsetof(Watermark, Words) == 0);
static_assert(offsetof(Watermark, Angle) == 128);
static_assert(offsetof(Watermark, Size) == 130);
static_assert(offsetof(Watermark, Density) == 132);
static_assert(offsetof(Watermark, FirstFaceOnly) == 133);
static_assert(offsetof(Watermark, Color) == 134);
static_assert(offsetof(Watermark, Spare) == 135);
static_assert(sizeof(Watermark) == 136);

static_assert(offsetof(FaceMargins, Face) == 0);
static_assert(offsetof(FaceMargins, Edges) == 2);
static_assert(sizeof(FaceMargins) == 10);

static_assert(offsetof(FacePart, Pages) == 0);
static_assert(offsetof(FacePart, Order) == 1);
static_assert(offsetof(FacePart, FrontMargins) == 2);
static_assert(offsetof(FacePart, BackMargins) == 10);
static_assert(offsetof(FacePart, MirrorMargins) == 18);
static_assert(offsetof(FacePart, Gutter) == 19);
static_assert(offsetof(FacePart, GapX) == 21);
static_assert(offsetof(FacePart, GapY) == 23);
static_assert(offsetof(FacePart, DividingLine) == 25);
static_assert(offsetof(FacePart, FaceFrame) == 26);
static_assert(offsetof(FacePart, CropMarks) == 27);
static_assert(offsetof(FacePart, HeaderOn) == 28);
static_assert(offsetof(FacePart, FooterOn) == 29);
static_assert(offsetof(FacePart, Header) == 30);
static_assert(offsetof(FacePart, Footer) == 224);
static_assert(offsetof(FacePart, WatermarkOn) == 418);
static_assert(offsetof(FacePart, Mark) == 419);
static_assert(offsetof(FacePart, OverlayFile) == 555);
static_assert(offsetof(FacePart, Spare) == 815);
static_assert(offsetof(FacePart, Overrides) == 816);
static_assert(offsetof(FacePart, Rest) == 1136);
static_assert(sizeof(FacePart) == 2071);

static_assert(offsetof(PageOverride, First) == 0);
static_assert(offsetof(PageOverride, Last) == 2);
static_assert(offsetof(PageOverride, Scale) == 4);
static_assert(offsetof(PageOverride, Turn) == 5);
static_assert(offsetof(PageOverride, Percent) == 6);
static_assert(offsetof(PageOverride, ShiftX) == 8);
static_assert(offsetof(PageOverride, ShiftY) == 10);
static_assert(offsetof(PageOverride, Color) == 12);
static_assert(offsetof(PageOverride, Source) == 13);
static_assert(offsetof(PageOverride, NoNumber) == 14);
static_assert(offsetof(PageOverride, NoHeader) == 15);
static_assert(offsetof(PageOverride, StartNewSheet) == 16);
static_assert(offsetof(PageOverride, Rest) == 17);
static_assert(sizeof(PageOverride) == 24);

static_assert(offsetof(PagePart, Scale) == 0);
static_assert(offsetof(PagePart, At) == 1);
static_assert(offsetof(PagePart, Turn) == 2);
static_assert(offsetof(PagePart, Frame) == 3);
static_assert(offsetof(PagePart, Percent) == 4);
static_assert(offsetof(PagePart, Trim) == 6);
static_assert(offsetof(PagePart, ShiftX) == 14);
static_assert(offsetof(PagePart, ShiftY) == 16);
static_assert(offsetof(PagePart, Color) == 18);
static_assert(offsetof(PagePart, NumberOnPage) == 19);
static_assert(offsetof(PagePart, Stamp) == 20);
static_assert(offsetof(PagePart, Rest) == 84);
static_assert(offsetof(PagePart, Overrides) == 292);
static_assert(sizeof(PagePart) == 6436);

static_assert(offsetof(AttributeTable, Document) == 0);
static_assert(offsetof(AttributeTable, Section) == 82);
static_assert(offsetof(AttributeTable, Sheet) == 126);
static_assert(offsetof(AttributeTable, Face) == 150);
static_assert(offsetof(AttributeTable, Page) == 2221);
static_assert(sizeof(AttributeTable) == 8657);

} // namespace pmx::sample
