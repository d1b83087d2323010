#pragma once

#include "platform/dialog_window.h"
#include "platform/image_list.h"
#include "store/rules.h"

#include <cstdint>
#include <memory>

namespace pmx {

/// The icons in the size for a screen of that many dots per inch (32 pixels at 96), image n for the icon value n.
/// Null when the resources have none.
std::unique_ptr<ImageList> LoadFavoriteIcons(ImageLists& images, int resolution);

/// The state images of the editor's list, in the same way (16 pixels wide at 96).
std::unique_ptr<ImageList> LoadToolbarMarks(ImageLists& images, int resolution);

/// Shows the icon of that value in an icon box. Without such an icon (no strip, or a value outside it) the
/// box keeps what it showed.
void ShowFavoriteIcon(DialogWindow& window, ControlId iconBox, const ImageList* icons,
                      std::int64_t iconValue);

} // namespace pmx
