#pragma once

#include "platform/profile.h"
#include "support/temp_folder.h"

#include <string>
#include <string_view>
#include <vector>

namespace pmx::test {

/// Bytes as they would stand in a C++ literal.
std::string Escaped(std::string_view bytes);

/// The bytes that a file of that content has after the entries were written the plain way: the section
/// removed until it is gone, then key by key. Uses a file of its own in the folder. A write that fails fails
/// the test.
std::string ReplacedPlainly(const TempFolder& folder, std::string_view content, std::string_view section,
                            const ProfileEntries& entries);

/// Replaces the section in the file itself; true on success.
bool ReplaceInPlace(const std::string& path, std::string_view section, const ProfileEntries& entries);

/// Adds the values to the entries with numbered keys.
void AddNumbered(ProfileEntries& entries, std::string_view prefix, const std::vector<std::string>& values);

} // namespace pmx::test
