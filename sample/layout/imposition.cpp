#include "layout/imposition.h"

#include <algorithm>
#include <iterator>

namespace pmx::sample {

namespace {

bool BeginsSection(int page, const Original& original) {
    return page > 1 && std::binary_search(original.SectionStarts.begin(), original.SectionStarts.end(), page);
}

bool BeginsSheetByItself(int page, const AttributeTable& table) {
    return std::any_of(
        table.Page.Overrides.begin(), table.Page.Overrides.end(),
        [page](const PageOverride& other) { return other.First == page && other.StartNewSheet; });
}

/// A sheet of its own in front of or behind the section.
bool HasSheetAtSections(const AttributeTable& table) {
    return table.Section.TabSheet || table.Section.Insertion != SheetInsertion::None;
}

SectionStart StartOf(int page, const AttributeTable& table, const Original& original) {
    if (BeginsSheetByItself(page, table)) {
        return SectionStart::NewSheet;
    }
    if (!BeginsSection(page, original)) {
        return SectionStart::Continue;
    }
    return HasSheetAtSections(table) ? SectionStart::NewSheet : table.Section.StartsOn.Get();
}

/// Fills up with empty places to a multiple of `count`.
void FillUp(std::vector<int>& places, std::size_t count) {
    while (places.size() % count != 0) {
        places.push_back(0);
    }
}

std::vector<int> PlacesOf(const AttributeTable& table, const Original& original, std::size_t perFace,
                          std::size_t perSheet) {
    std::vector<int> places;
    for (int page = 1; page <= original.PageCount; ++page) {
        switch (StartOf(page, table, original)) {
        case SectionStart::NewSheet:
            FillUp(places, perSheet);
            break;
        case SectionStart::NewFace:
            FillUp(places, perFace);
            break;
        default:
            break;
        }
        places.push_back(page);
    }
    FillUp(places, perFace);
    return places;
}

/// Where in the grid, counted row by row, the n-th page of a face stands.
std::size_t PlaceInGrid(int index, const Grid& grid, PageOrder order) {
    const bool byColumn = order == PageOrder::DownThenRight || order == PageOrder::DownThenLeft;
    const bool fromRight = order == PageOrder::LeftThenDown || order == PageOrder::DownThenLeft;
    const int column = byColumn ? index / grid.Rows : index % grid.Columns;
    const int row = byColumn ? index % grid.Rows : index / grid.Columns;
    const int place = row * grid.Columns + (fromRight ? grid.Columns - 1 - column : column);
    return static_cast<std::size_t>(place);
}

std::vector<PagesOfFace> FacesOf(const std::vector<int>& places, const AttributeTable& table) {
    const Grid grid = GridOf(table);
    const auto perFace = static_cast<std::size_t>(grid.Count());
    std::vector<PagesOfFace> faces;
    for (std::size_t first = 0; first < places.size(); first += perFace) {
        PagesOfFace face(perFace);
        for (std::size_t index = 0; index < perFace; ++index) {
            face[PlaceInGrid(static_cast<int>(index), grid, table.Face.Order)] = places[first + index];
        }
        faces.push_back(std::move(face));
    }
    return faces;
}

class SheetMaker {
public:
    SheetMaker(const AttributeTable& table, const Original& original) : Table(table), Source(original) {}

    std::vector<PagesOfSheet> Make() {
        const bool both = Table.Document.Sides == PrintSides::Both;
        const auto perFace = static_cast<std::size_t>(GridOf(Table).Count());
        Faces = FacesOf(PlacesOf(Table, Source, perFace, both ? perFace * 2 : perFace), Table);
        Last = Faces.size();
        AddFrontCover();
        const auto backCover = TakeBackCover();
        AddBody(both);
        if (backCover) {
            Sheets.push_back(*backCover);
        }
        return std::move(Sheets);
    }

private:
    bool HasFaces() const { return Next < Last; }
    PagesOfFace TakeFirst() { return HasFaces() ? Faces[Next++] : PagesOfFace(); }
    PagesOfFace TakeLast() { return HasFaces() ? Faces[--Last] : PagesOfFace(); }

    void AddFrontCover() {
        const Cover kind = Table.Document.FrontCover.Kind;
        if (kind == Cover::None) {
            return;
        }
        PagesOfSheet sheet{SheetKind::FrontCover, 1, {}, {}};
        if (kind != Cover::Blank) {
            sheet.Front = TakeFirst();
        }
        if (kind == Cover::PrintedBothSides) {
            sheet.Back = TakeFirst();
        }
        Sheets.push_back(std::move(sheet));
    }

    /// The outside of the back cover is its back.
    std::optional<PagesOfSheet> TakeBackCover() {
        const Cover kind = Table.Document.BackCover.Kind;
        if (kind == Cover::None) {
            return std::nullopt;
        }
        PagesOfSheet sheet{SheetKind::BackCover, static_cast<int>(Source.SectionStarts.size()), {}, {}};
        if (kind != Cover::Blank) {
            sheet.Back = TakeLast();
        }
        if (kind == Cover::PrintedBothSides) {
            sheet.Front = TakeLast();
        }
        return sheet;
    }

    void AddBody(bool both) {
        while (HasFaces()) {
            const int section = SectionOfFace(Faces[Next]);
            if (section != Section) {
                EnterSection(section);
            }
            PagesOfSheet sheet{SheetKind::Body, section, TakeFirst(), {}};
            if (both) {
                sheet.Back = TakeFirst();
            }
            Sheets.push_back(std::move(sheet));
        }
        LeaveSection();
    }

    int SectionOfFace(const PagesOfFace& face) const {
        const auto page = std::find_if(face.begin(), face.end(), [](int number) { return number != 0; });
        return page == face.end() ? Section : SectionOf(*page, Source);
    }

    void EnterSection(int section) {
        LeaveSection();
        Section = section;
        if (Table.Section.Insertion == SheetInsertion::BeforeSection) {
            Sheets.push_back({SheetKind::Insert, section, {}, {}});
        }
        if (Table.Section.TabSheet) {
            Sheets.push_back({SheetKind::Tab, section, {}, {}});
        }
    }

    void LeaveSection() {
        if (Section != 0 && Table.Section.Insertion == SheetInsertion::AfterSection) {
            Sheets.push_back({SheetKind::Insert, Section, {}, {}});
        }
    }

    const AttributeTable& Table;
    const Original& Source;
    std::vector<PagesOfFace> Faces;
    std::size_t Next = 0;
    std::size_t Last = 0;
    int Section = 0;
    std::vector<PagesOfSheet> Sheets;
};

/// One signature: sheets laid into each other and folded together.
void AddSignature(std::vector<PagesOfSheet>& sheets, int firstPage, int pages, int pageCount,
                  bool fromRight) {
    const auto known = [pageCount](int page) { return page <= pageCount ? page : 0; };
    const auto face = [&](int left, int right) {
        return fromRight ? PagesOfFace{known(right), known(left)} : PagesOfFace{known(left), known(right)};
    };
    const int lastPage = firstPage + pages - 1;
    for (int offset = 0; offset < pages / 2; offset += 2) {
        sheets.push_back({SheetKind::Body, 1, face(lastPage - offset, firstPage + offset),
                          face(firstPage + offset + 1, lastPage - offset - 1)});
    }
}

std::vector<PagesOfSheet> ImposeBooklet(const AttributeTable& table, const Original& original) {
    constexpr int PagesPerSheet = 4;
    const int sheetCount = (original.PageCount + PagesPerSheet - 1) / PagesPerSheet;
    int sheetsPerSignature = table.Document.SheetsPerSignature;
    if (table.Document.BookletKind == Booklet::PerfectBinding) {
        sheetsPerSignature = 1;
    } else if (sheetsPerSignature == 0) {
        sheetsPerSignature = std::max(sheetCount, 1);
    }
    std::vector<PagesOfSheet> sheets;
    for (int done = 0; done < sheetCount; done += sheetsPerSignature) {
        const int now = std::min(sheetsPerSignature, sheetCount - done);
        AddSignature(sheets, done * PagesPerSheet + 1, now * PagesPerSheet, original.PageCount,
                     table.Document.Binding == Edge::Right);
    }
    if (table.Document.FrontCover.Kind != Cover::None && !sheets.empty()) {
        sheets.front().Kind = SheetKind::FrontCover;
    }
    return sheets;
}

} // namespace

Grid GridOf(const AttributeTable& table) {
    if (IsBooklet(table)) {
        return {2, 1};
    }
    Grid grid;
    switch (table.Face.Pages.Get()) {
    case PagesPerFace::Two:
        grid = {2, 1};
        break;
    case PagesPerFace::Four:
        return {2, 2};
    case PagesPerFace::Six:
        grid = {3, 2};
        break;
    case PagesPerFace::Eight:
        grid = {4, 2};
        break;
    case PagesPerFace::Nine:
        return {3, 3};
    case PagesPerFace::Sixteen:
        return {4, 4};
    default:
        return {1, 1};
    }
    const bool upright = table.Document.PageOrientation == Orientation::Portrait;
    return upright ? grid : Grid{grid.Rows, grid.Columns};
}

bool IsPaperTurned(const AttributeTable& table) {
    const Grid grid = GridOf(table);
    return grid.Columns != grid.Rows;
}

bool IsBooklet(const AttributeTable& table) {
    return table.Document.BookletKind != Booklet::None;
}

int SectionOf(int page, const Original& original) {
    const auto behind = std::upper_bound(original.SectionStarts.begin(), original.SectionStarts.end(), page);
    return std::max(1, static_cast<int>(std::distance(original.SectionStarts.begin(), behind)));
}

std::vector<PagesOfSheet> Impose(const AttributeTable& table, const Original& original) {
    return IsBooklet(table) ? ImposeBooklet(table, original) : SheetMaker(table, original).Make();
}

} // namespace pmx::sample
