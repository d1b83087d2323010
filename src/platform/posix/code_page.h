#pragma once

#include <string>
#include <string_view>

/// Code page 932 on systems that do not have it: conversions with the mapping of Windows (and of Wine).
///
/// Single bytes: 0x00 to 0x80 are the characters of the same number (0x5C the backslash, 0x7E the tilde),
/// 0xA1 to 0xDF the half-width katakana, 0xA0 and 0xFD to 0xFF U+F8F0 to U+F8F3. Double bytes as Windows has
/// them: 0x8160 is U+FF5E, the user area from 0xF040 is U+E000 and following.
///
/// Bytes that are no character (a lead byte at the end, a code without a character) become U+10FE00 plus the
/// byte, one for each byte, which no character of the code page does; so they come back unchanged and cannot
/// be mistaken for another text. No operation fails, except that the first use throws std::runtime_error when
/// the system lacks its converter for code page 932.
namespace pmx::posix {

std::u16string ToUtf16(std::string_view sjis);

/// A character without a code, and a lone surrogate, becomes `?`. Of several codes for one character the one
/// that Windows chooses.
std::string FromUtf16(std::u16string_view utf16);

std::string ToUtf8(std::string_view sjis);

/// As FromUtf16. Bytes that are not UTF-8 become `?`.
std::string FromUtf8(std::string_view utf8);

/// A path of the library as the system's file functions take it: UTF-8, every `\` that is a character of its
/// own replaced by `/`.
std::string NativePath(std::string_view path);

} // namespace pmx::posix
