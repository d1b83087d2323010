#include "terminal.h"

#include "system.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace pmx::tool {

namespace {

constexpr std::size_t StepsBetweenShows = 100;

struct Range {
    char32_t First;
    char32_t Last;
};

/// What is as wide as two letters in Japanese terminals, as far as code page 932 has it: what lies in the plane of letters
/// and signs between Greek and the arrows is left as narrow, as terminals have it outside of Japan.
constexpr std::array<Range, 9> WideRanges = {{{0x1100, 0x115F},
                                              {0x2E80, 0x303E},
                                              {0x3041, 0xA4CF},
                                              {0xAC00, 0xD7A3},
                                              {0xF900, 0xFAFF},
                                              {0xFE30, 0xFE6F},
                                              {0xFF01, 0xFF60},
                                              {0xFFE0, 0xFFE6},
                                              {0x1F300, 0x3FFFD}}};

std::size_t WidthOfCharacter(char32_t character) {
    const bool isWide = std::any_of(WideRanges.begin(), WideRanges.end(), [character](const Range& range) {
        return character >= range.First && character <= range.Last;
    });
    return isWide ? 2 : 1;
}

/// Takes the next character off the front of a text that is well-formed.
char32_t NextCharacter(std::string_view& utf8) {
    const auto first = static_cast<unsigned char>(utf8.front());
    const std::size_t size = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    char32_t character = size == 1 ? first : first & (0xFFU >> (size + 1));
    for (std::size_t position = 1; position < std::min(size, utf8.size()); ++position) {
        character = character << 6 | (static_cast<unsigned char>(utf8[position]) & 0x3FU);
    }
    utf8.remove_prefix(std::min(size, utf8.size()));
    return character;
}

} // namespace

void Print(std::string_view text) {
    if (!WriteText(Stream::Output, text)) {
        std::_Exit(Found); // the reader has gone
    }
}

void Say(std::string_view text) {
    WriteText(Stream::Error, "pmxfav: " + Printable(text) + "\n");
}

std::size_t WidthOf(std::string_view utf8) {
    std::size_t width = 0;
    while (!utf8.empty()) {
        width += WidthOfCharacter(NextCharacter(utf8));
    }
    return width;
}

std::string Readable(std::string_view narrow) {
    if (IsAllCharacters(narrow)) {
        return ToUtf8(narrow);
    }
    std::string text;
    while (!narrow.empty()) {
        const std::string_view character = narrow.substr(0, CharacterLength(narrow, 0, SystemLeadBytes()));
        if (IsAllCharacters(character)) {
            text += ToUtf8(character);
            narrow.remove_prefix(character.size());
            continue;
        }
        std::array<char, 8> escape{};
        std::snprintf(escape.data(), escape.size(), "\\x%02X", static_cast<unsigned char>(narrow.front()));
        text += escape.data();
        narrow.remove_prefix(1);
    }
    return text;
}

std::string Printable(std::string_view utf8) {
    std::string text(utf8);
    std::replace_if(
        text.begin(), text.end(), [](char unit) { return (unit >= '\0' && unit < ' ') || unit == '\x7F'; },
        '?');
    return text;
}

std::string Shown(std::string_view narrow) {
    return Printable(Readable(narrow));
}

std::string FormatTable(const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths;
    for (const std::vector<std::string>& line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t column = 0; column < line.size(); ++column) {
            widths[column] = std::max(widths[column], WidthOf(line[column]));
        }
    }
    std::string text;
    for (const std::vector<std::string>& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column) {
            text += line[column];
            if (column + 1 < line.size()) {
                text.append(widths[column] - WidthOf(line[column]) + 2, ' ');
            }
        }
        text += '\n';
    }
    return text;
}

Progress::Progress(std::size_t total) : Total(total), IsShown(IsTerminal(Stream::Error)) {}

Progress::~Progress() {
    Show("");
}

void Progress::Step() {
    ++Done;
    if (IsShown && Done % StepsBetweenShows == 0) {
        Show(std::to_string(Done) + " of " + std::to_string(Total) + " files");
    }
}

void Progress::Show(std::string_view text) {
    if (!IsShown || (text.empty() && Width == 0)) {
        return;
    }
    const std::string blanks(Width, ' ');
    WriteText(Stream::Error, "\r" + blanks + "\r" + std::string(text));
    Width = text.size();
}

} // namespace pmx::tool
