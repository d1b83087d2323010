#pragma once

#include "layout/layout.h"

/// What is done to the sheets after printing, as it shows on a face: bound edge, staples, punch holes, folds.
namespace pmx::sample {

/// The bound edge as seen on the front or on the back; left and right change places when the sheet is turned
/// over.
Edge BindingOn(bool back, const AttributeTable& table);

/// Adds the marks of finishing to a face of the given paper.
void AddFinishing(FaceLayout& face, bool back, const Extent& paper, const AttributeTable& table);

} // namespace pmx::sample
