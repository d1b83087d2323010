#include "host/document_commands.h"

#include "host/resource.h"
#include "host/text.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace pmx::host {

using namespace sample;

namespace {

template <auto Part, auto Field, auto Value>
void SetField(AttributeTable& table) {
    table.*Part.*Field = Value;
}

template <auto Part, auto Field, auto Value>
bool HasField(const AttributeTable& table) {
    return (table.*Part.*Field).Get() == Value;
}

template <auto Part, auto Field, auto Value>
constexpr DocumentCommand Choose(int id) {
    return {id, &SetField<Part, Field, Value>, &HasField<Part, Field, Value>};
}

constexpr auto Document = &AttributeTable::Document;

template <Orientation Value>
constexpr DocumentCommand Orient(int id) {
    return Choose<Document, &DocumentPart::PageOrientation, Value>(id);
}
template <PrintSides Value>
constexpr DocumentCommand Print(int id) {
    return Choose<Document, &DocumentPart::Sides, Value>(id);
}
template <PagesPerFace Value>
constexpr DocumentCommand Put(int id) {
    return Choose<&AttributeTable::Face, &FacePart::Pages, Value>(id);
}
template <Edge Value>
constexpr DocumentCommand Bind(int id) {
    return Choose<Document, &DocumentPart::Binding, Value>(id);
}
template <Staple Value>
constexpr DocumentCommand StapleAt(int id) {
    return Choose<Document, &DocumentPart::StaplePlace, Value>(id);
}
template <Punch Value>
constexpr DocumentCommand PunchWith(int id) {
    return Choose<Document, &DocumentPart::PunchHoles, Value>(id);
}

bool IsFresh(const AttributeTable& table) {
    const AttributeTable fresh = FreshTable();
    return std::memcmp(&table, &fresh, TableSize) == 0;
}

bool HasBooklet(const AttributeTable& table) {
    return table.Document.BookletKind != Booklet::None;
}

void SwitchBooklet(AttributeTable& table) {
    if (!HasBooklet(table)) {
        return SetSaddleStitchedBooklet(table);
    }
    table.Document.BookletKind = Booklet::None;
    table.Document.StaplePlace = Staple::None;
    table.Document.Folding = Fold::None;
}

bool HasCover(const AttributeTable& table) {
    return table.Document.FrontCover.Kind != Cover::None;
}

void SwitchCover(AttributeTable& table) {
    const bool on = !HasCover(table);
    table.Document.FrontCover.Kind = on ? Cover::PrintedOutside : Cover::None;
    table.Document.FrontCover.Color = on ? SheetColor::Yellow : SheetColor::White;
}

bool HasTabs(const AttributeTable& table) {
    return table.Section.TabSheet;
}

void SwitchTabs(AttributeTable& table) {
    table.Section.TabSheet = !HasTabs(table);
}

bool HasNumbers(const AttributeTable& table) {
    return table.Document.NumberAt != NumberPlace::None;
}

void SwitchNumbers(AttributeTable& table) {
    table.Document.NumberAt = HasNumbers(table) ? NumberPlace::None : NumberPlace::BottomCenter;
    table.Document.NumberAs = NumberFormat::Dashes;
}

bool HasWatermark(const AttributeTable& table) {
    return table.Face.WatermarkOn;
}

void SwitchWatermark(AttributeTable& table) {
    const std::string words = ToNarrow(ResourceText(IDS_WATERMARK_TEXT));
    constexpr std::size_t Largest = 120;
    constexpr std::size_t LineLength = 900; // So that a long word stays on the paper.
    table.Face.WatermarkOn = !HasWatermark(table);
    table.Face.Mark.Words.Set(words);
    table.Face.Mark.Density = Strength::Medium;
    table.Face.Mark.Size = static_cast<std::uint16_t>(std::min(Largest, LineLength / (words.size() + 1)));
}

bool IsGray(const AttributeTable& table) {
    return table.Document.Color == ColorMode::Gray;
}

void SwitchGray(AttributeTable& table) {
    table.Document.Color = IsGray(table) ? ColorMode::Automatic : ColorMode::Gray;
}

constexpr DocumentCommand Commands[] = {
    {IDM_FRESH, [](AttributeTable& table) { table = FreshTable(); }, &IsFresh},
    Orient<Orientation::Portrait>(IDM_PORTRAIT),
    Orient<Orientation::Landscape>(IDM_LANDSCAPE),
    Print<PrintSides::Front>(IDM_FRONT_ONLY),
    Print<PrintSides::Both>(IDM_BOTH_SIDES),
    Put<PagesPerFace::One>(IDM_PAGES_1),
    Put<PagesPerFace::Two>(IDM_PAGES_2),
    Put<PagesPerFace::Four>(IDM_PAGES_4),
    Put<PagesPerFace::Six>(IDM_PAGES_6),
    Put<PagesPerFace::Eight>(IDM_PAGES_8),
    Put<PagesPerFace::Nine>(IDM_PAGES_9),
    Put<PagesPerFace::Sixteen>(IDM_PAGES_16),
    Bind<Edge::Left>(IDM_BIND_LEFT),
    Bind<Edge::Right>(IDM_BIND_RIGHT),
    Bind<Edge::Top>(IDM_BIND_TOP),
    StapleAt<Staple::None>(IDM_STAPLE_NONE),
    StapleAt<Staple::UpperLeft>(IDM_STAPLE_UPPER_LEFT),
    StapleAt<Staple::UpperRight>(IDM_STAPLE_UPPER_RIGHT),
    StapleAt<Staple::TwoLeft>(IDM_STAPLE_TWO_LEFT),
    StapleAt<Staple::TwoRight>(IDM_STAPLE_TWO_RIGHT),
    StapleAt<Staple::TwoTop>(IDM_STAPLE_TWO_TOP),
    StapleAt<Staple::Saddle>(IDM_STAPLE_SADDLE),
    PunchWith<Punch::None>(IDM_PUNCH_NONE),
    PunchWith<Punch::TwoHoles>(IDM_PUNCH_2),
    PunchWith<Punch::ThreeHoles>(IDM_PUNCH_3),
    PunchWith<Punch::FourHoles>(IDM_PUNCH_4),
    {IDM_BOOKLET, &SwitchBooklet, &HasBooklet},
    {IDM_COVER, &SwitchCover, &HasCover},
    {IDM_TABS, &SwitchTabs, &HasTabs},
    {IDM_NUMBERS, &SwitchNumbers, &HasNumbers},
    {IDM_WATERMARK, &SwitchWatermark, &HasWatermark},
    {IDM_GRAY, &SwitchGray, &IsGray},
};

} // namespace

std::span<const DocumentCommand> DocumentCommands() {
    return Commands;
}

} // namespace pmx::host
