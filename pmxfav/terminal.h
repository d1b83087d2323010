#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::tool {

/// How the tool ends.
inline constexpr int Fine = 0;
inline constexpr int Found = 1; ///< something was found or not done
inline constexpr int WrongCall = 2;

/// A result, on the output stream. The text is UTF-8. Ends the process when it cannot be written.
void Print(std::string_view text);

/// A line for people, on the error stream, with the tool's name before it. The text is UTF-8; it is made printable.
void Say(std::string_view text);

/// Number of columns that a text takes on a terminal.
std::size_t WidthOf(std::string_view utf8);

/// A text of the system's code page as UTF-8; a byte that is no character as `\\x` and two hexadecimal digits.
std::string Readable(std::string_view narrow);

/// The text with what would change the terminal replaced by `?`.
std::string Printable(std::string_view utf8);

/// A text of the system's code page as it is shown to people: readable and printable.
std::string Shown(std::string_view narrow);

/// Lines of cells as text: columns line up, two blanks apart, the last one without blanks at its end.
std::string FormatTable(const std::vector<std::vector<std::string>>& lines);

/// Shows on a terminal how far work over many files is; shows nothing elsewhere, nor when it is done quickly.
class Progress {
public:
    explicit Progress(std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Step();

private:
    void Show(std::string_view text);

    const std::size_t Total;
    const bool IsShown;
    std::size_t Done = 0;
    std::size_t Width = 0;
};

} // namespace pmx::tool
