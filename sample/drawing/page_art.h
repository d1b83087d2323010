#pragma once

#include "drawing/gdi_plus.h"
#include "layout/layout.h"

#include <string>
#include <vector>

namespace pmx::sample {

/// The words of the sample document: its title and the headings of its sections.
struct DocumentWords {
    std::wstring Title;
    std::wstring Subtitle;
    std::vector<std::wstring> SectionHeadings;
    std::wstring Blank;    ///< what an empty face is called
    std::wstring FontName; ///< of everything that is drawn on the sheets
};

/// Draws the content of a page of the original on an area of `width` by `height`, whose upper left corner is
/// the origin of `graphics`; one unit is a tenth of a millimetre on an A4 page.
void DrawPageArt(Gdiplus::Graphics& graphics, const PlacedPage& page, float width, float height,
                 const Original& original, const DocumentWords& words);

} // namespace pmx::sample
