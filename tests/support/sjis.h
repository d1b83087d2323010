#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pmx::test {

/// The text, given as UTF-8, in code page 932. Fails the program when a character has no code there.
std::string Sjis(std::u8string_view utf8);

/// The text, given in code page 932, as UTF-8, for messages and for file names of the native build.
std::string Utf8(std::string_view sjis);

/// Names in code page 932, each with what it is called on a disk of Linux, in UTF-8: natively as under Wine, so that a folder
/// made by one build opens in the other.
std::vector<std::pair<std::string, std::string>> NamesOnDisk();

} // namespace pmx::test
