#pragma once

#include "host/favorites.h"

namespace pmx::host {

/// Lets the user change the table in the print-attribute dialog of PMXPropUI; changed only when accepted.
/// Failed also when that library is not there.
Outcome ShowPrintAttributes(sample::AttributeTable& table, HWND owner);

} // namespace pmx::host
