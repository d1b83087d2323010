#pragma once

#include <string>
#include <string_view>

/// Windows are made with the wide functions, so that input methods work and nothing is lost unseen; the
/// library's texts are narrow. This is where the two meet.
namespace pmx::win32 {

/// The ANSI code page, as the system's conversions name it.
inline constexpr unsigned AnsiCodePage = 0;

/// The text, given in that code page, as UTF-16. Bytes that are no character become the system's default.
std::wstring ToWide(std::string_view narrow, unsigned codePage = AnsiCodePage);

/// The text in that code page. A character without a code there becomes `?`.
std::string ToNarrow(std::wstring_view wide, unsigned codePage = AnsiCodePage);

/// The character as it has a code in the ANSI code page: itself, or the one that Japanese text uses in its
/// place (the wave dash of other systems is the full-width tilde here). 0 when it has none; half of a pair
/// never has.
wchar_t WithCode(wchar_t character);

/// Number of bytes of the text in the ANSI code page.
std::size_t NarrowSize(std::wstring_view wide);

} // namespace pmx::win32
