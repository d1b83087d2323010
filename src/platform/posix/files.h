#pragma once

#include "platform/files.h"

namespace pmx::posix {

/// What the calling thread's last Files::SetLastError left; None at first.
FileError LastError();

} // namespace pmx::posix
