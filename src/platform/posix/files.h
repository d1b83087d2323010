#pragma once

#include "platform/files.h"
#include "platform/posix/file_descriptor.h"

#include <string>

namespace pmx::posix {

/// What an error number of the system means for the file of that native name.
FileError ErrorOf(int error, const std::string& native);

/// Opens a regular file for reading, as one that is copied: not while another user of the file service holds
/// it for itself. Gives none with the reason in `error` on failure.
FileDescriptor OpenToCopy(const std::string& native, FileError& error);

/// What the calling thread's last Files::SetLastError left; None at first.
FileError LastError();

} // namespace pmx::posix
