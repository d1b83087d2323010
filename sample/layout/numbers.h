#pragma once

#include "layout/layout.h"

#include <optional>
#include <string>

namespace pmx::sample {

/// The printed number of a page, or nothing when the page carries none.
std::optional<std::string> PrintedNumber(int page, const AttributeTable& table, const Original& original);

} // namespace pmx::sample
