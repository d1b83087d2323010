#pragma once

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/text.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pmx {

/// Waiting times of the retrying operations: four attempts after the first at each of 1000, 2000 and 4000 ms.
inline constexpr std::uint32_t FirstRetryWait = 1000;
inline constexpr std::uint32_t LastRetryWait = 4000;

/// Opens a file, trying again for up to 28 seconds while it is shared or denied (errors 32 and 5). Any other
/// error ends at the first attempt. On failure the thread's last error is the operation's.
OpenResult RetryCreateFile(Files& files, Clock& clock, const OpenRequest& request);

/// Repeats any attempt with the same retries; gives the last one's error.
FileError RetryWhileHeld(Files& files, Clock& clock, const std::function<FileError()>& attempt);

/// Copies a file with the same retries; true on success.
bool RetryCopyFile(Files& files, Clock& clock, const std::string& source, const std::string& target,
                   bool failIfExists);

/// Deletes a file with the same retries; true on success, false also when memory runs out.
bool RetryDeleteFile(Files& files, Clock& clock, const std::string& path);

/// Puts `source` in the place of `target` (Files::Replace) with the same retries; true on success.
bool RetryReplaceFile(Files& files, Clock& clock, const std::string& source, const std::string& target);

/// The lock under which the list file at `path` is read again and replaced. Waits up to two seconds while
/// another program has it. Null when it cannot be had: better to save without it than not at all.
std::unique_ptr<OpenFile> WaitForLock(Files& files, Clock& clock, const std::string& path);

/// The name made safe for the file system: unchanged when the host's CheckFileName accepts it, otherwise with
/// each of \ / : * ? " < > | replaced by =. Second bytes of double-byte characters are never replaced.
std::string SanitizeFileName(const std::string& name, const LeadByteTable& leadBytes);

/// True when the text names a file directly in a folder: it is not empty, holds no separator, drive or stream
/// mark, is not made of dots and blanks alone, and is no device name of the platform (NUL, COM1 … with or
/// without extension). What a damaged text has behind a lead byte counts too, since systems differ in whether
/// they take it for a second byte.
bool IsPlainFileName(std::string_view fileName, const LeadByteTable& leadBytes);

/// A text that is the same for all file names that mean one file, differing in the case of A to Z or in the
/// dots and blanks at the end, which the platform drops.
std::string FoldedFileName(std::string_view fileName, const LeadByteTable& leadBytes);

} // namespace pmx
