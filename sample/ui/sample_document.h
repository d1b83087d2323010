#pragma once

#include "drawing/page_art.h"
#include "layout/layout.h"

namespace pmx::sample {

/// The document that this host shows: twelve pages in three sections.
const Original& SampleDocument();
const DocumentWords& SampleWords();

} // namespace pmx::sample
