#pragma once

#include "layout/layout.h"

#include <vector>

/// Which page goes where: the part of the layout that knows numbers and no lengths.
namespace pmx::sample {

/// The pages of a face by place, row by row from the upper left; 0 is an empty place.
using PagesOfFace = std::vector<int>;

struct PagesOfSheet {
    SheetKind Kind = SheetKind::Body;
    int Section =
        1; ///< the section that begins behind a tab or an inserted sheet, or that the first page belongs to
    PagesOfFace Front, Back;
};

/// Columns and rows of the pages on a face.
struct Grid {
    int Columns = 1;
    int Rows = 1;

    int Count() const { return Columns * Rows; }
};

/// The grid for so many pages a face. Two, six and eight pages lie on paper turned by a quarter.
Grid GridOf(const AttributeTable& table);

/// Whether the paper lies turned by a quarter against a single page.
bool IsPaperTurned(const AttributeTable& table);

bool IsBooklet(const AttributeTable& table);

/// The section of a page, from 1.
int SectionOf(int page, const Original& original);

/// All sheets in the order of the document.
std::vector<PagesOfSheet> Impose(const AttributeTable& table, const Original& original);

} // namespace pmx::sample
