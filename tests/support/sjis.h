#pragma once

#include <string>
#include <string_view>

namespace pmx::test {

/// The text, given as UTF-8, in code page 932. Fails the program when a character has no code there.
std::string Sjis(std::u8string_view utf8);

/// The text, given in code page 932, as UTF-8, for messages and for file names of the native build.
std::string Utf8(std::string_view sjis);

} // namespace pmx::test
