#pragma once

#include "platform/text.h"
#include "store/store_services.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pmx {

/// Extension of favorite files that hosts leave to the library.
inline constexpr const char* DefaultExtension = ".pmt";

/// Repeats an attempt for up to 28 seconds while the file is held: four times after the first at each wait of
/// 1000, 2000 and 4000 ms. Any other error ends at the first attempt. Gives the last one's error.
FileError RetryWhileHeld(const StoreServices& services, const std::function<FileError()>& attempt);

/// Repeats an attempt for up to one second while the file is held, which is what a user waits for.
FileError RetryBriefly(const StoreServices& services, const std::function<FileError()>& attempt);

/// Opens an existing file for reading and writing beside others who do so, and closes it, with the long
/// retries.
FileError RetryCreateFile(const StoreServices& services, const std::string& path);

/// Copies a file, with the long retries. The copy is whole or not there, and not read-only; Exists when there
/// is a file of that name. Throws std::bad_alloc.
FileError RetryCopyFile(const StoreServices& services, const std::string& source, const std::string& target);

/// Deletes a file, with the long retries; false also when memory runs out.
bool RetryDeleteFile(const StoreServices& services, const std::string& path);

/// The lock under which the list file at `path` is read again and replaced. Waits up to two seconds while
/// another program has it. Null when it cannot be had: better to save without it than not at all.
std::unique_ptr<FileLock> WaitForLock(const StoreServices& services, const std::string& path);

/// The name made safe for the file system: unchanged when the host's CheckFileName accepts it, otherwise with
/// each of \ / : * ? " < > | replaced by =. Second bytes of double-byte characters are never replaced.
std::string SanitizeFileName(const std::string& name);

/// True when the text names a file directly in a folder: it is not empty, holds no separator, drive or stream
/// mark, is not made of dots and blanks alone, and is no device name of the platform (NUL, COM1 … with or
/// without extension). What a damaged text has behind a lead byte counts too, since systems differ in whether
/// they take it for a second byte.
bool IsPlainFileName(std::string_view fileName);

/// A text that is the same for all file names that mean one file, differing in the case of A to Z or in the
/// dots and blanks at the end, which the platform drops.
std::string FoldedFileName(std::string_view fileName, const LeadByteTable& leadBytes = SystemLeadBytes());

/// A text that is the same for all names that differ in the case of A to Z only.
std::string FoldedName(std::string_view name, const LeadByteTable& leadBytes);

/// The folder of a path with its separator; empty for a mere name.
std::string FolderOf(std::string_view path);

/// The file name of a path without its folder and its extension, cut to 255 bytes between characters.
std::string BaseNameOf(std::string_view path);

} // namespace pmx
