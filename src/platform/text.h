#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace pmx {

/// Which byte values begin a double-byte character in the system's code page, indexed by the byte.
using LeadByteTable = std::array<bool, 256>;

/// The multibyte code page of the system (932 in practice; always 932 in the native build).
/// All strings are narrow strings in that code page. No operation fails.
class Text {
public:
    virtual ~Text() = default;

    /// Valid for the lifetime of the service.
    virtual const LeadByteTable& LeadBytes() const = 0;

    /// True when both texts are equal without regard to the case of single-byte letters A to Z;
    /// double-byte characters, full-width letters included, compare exactly.
    virtual bool EqualIgnoringCase(std::string_view left, std::string_view right) const = 0;

protected:
    Text() = default;
    Text(const Text&) = default;
    Text& operator=(const Text&) = default;
};

/// The system's code page. Lives as long as the process.
Text& SystemText();

/// Length in bytes (1 or 2) of the character that begins at `position`, which must be inside `text`.
/// A lead byte at the very end counts as one byte.
std::size_t CharacterLength(std::string_view text, std::size_t position, const LeadByteTable& leadBytes);

/// True when the byte at `position` is the second of a character. `from` is a character boundary at or before
/// it. Only the lead bytes right before the position are looked at: what is none ends a character.
inline bool IsTrailByte(std::string_view text, std::size_t position, const LeadByteTable& leadBytes,
                        std::size_t from = 0) {
    std::size_t run = position;
    while (run > from && leadBytes[static_cast<unsigned char>(text[run - 1])]) {
        --run;
    }
    return (position - run) % 2 != 0;
}

/// Position of the first character that is the single byte `wanted`, at or after `from`, which must be a
/// character boundary; npos when there is none. The second byte of a double-byte character never matches.
std::size_t FindSingleByte(std::string_view text, char wanted, const LeadByteTable& leadBytes,
                           std::size_t from = 0);

/// Length in bytes of the longest beginning of `text` that has at most `limit` bytes and splits no character.
std::size_t LengthWithin(std::string_view text, std::size_t limit, const LeadByteTable& leadBytes);

/// True when both texts are equal without regard to the case of single-byte letters A to Z; everything else,
/// second bytes that have the value of a letter included, compares exactly.
bool EqualIgnoringLetterCase(std::string_view left, std::string_view right, const LeadByteTable& leadBytes);

/// True for space, tab, line feed, vertical tab, form feed and carriage return.
constexpr bool IsBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// `text` without the blanks at its ends, of which there is one at least.
std::string_view TrimmedAtEnds(std::string_view text, const LeadByteTable& leadBytes);

/// `text` without the blanks at both ends.
inline std::string_view Trimmed(std::string_view text, const LeadByteTable& leadBytes) {
    const bool hasBlanks = !text.empty() && (IsBlank(text.front()) || IsBlank(text.back()));
    return hasBlanks ? TrimmedAtEnds(text, leadBytes) : text;
}

} // namespace pmx
