#pragma once

#include "drawing/page_art.h"
#include "layout/layout.h"

namespace pmx::host {

/// The document that this host shows: twelve pages in three sections.
const sample::Original& SampleDocument();
const sample::DocumentWords& SampleWords();

} // namespace pmx::host
