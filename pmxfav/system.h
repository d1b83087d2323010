#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the tool asks of the operating system beyond the store's services. Names and paths are in the system's code page,
// as in the store; texts for people are UTF-8.

namespace pmx::tool {

enum class Stream { Output, Error };

/// Writes a text: to a console in its own encoding, to anything else as UTF-8. False when it could not be written.
bool WriteText(Stream stream, std::string_view utf8);

bool IsTerminal(Stream stream);

/// True when every byte of the text belongs to a character of the system's code page.
bool IsAllCharacters(std::string_view text);

/// A file of a folder.
struct FolderFile {
    std::string Name;       ///< in the system's code page
    std::string Shown;      ///< UTF-8
    bool IsNameable = true; ///< false when the code page lacks a character of the name
    std::uint64_t Size = 0;
    std::int64_t Written = 0; ///< seconds since the beginning of 1970, UTC
};

/// The files directly in a folder, folders left out, in the order of their names; none when it cannot be read.
std::optional<std::vector<FolderFile>> FilesIn(const std::string& folder);

/// A text that is the same for all names of one file.
std::string FileKey(const std::string& fileName);

/// Whether this process may make files in the folder, which is asked without making one.
bool MayAddFiles(const std::string& folder);

/// Seconds since the beginning of 1970, UTC.
std::int64_t Now();

} // namespace pmx::tool
