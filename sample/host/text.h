#pragma once

#include "ui/sample_document.h"
#include "ui/text.h"

namespace pmx::host {

using sample::FormatText;
using sample::OwnModule;
using sample::ResourceModule;
using sample::ResourceText;
using sample::SampleDocument;
using sample::SampleWords;
using sample::ToNarrow;
using sample::ToWide;

} // namespace pmx::host
