#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace pmx {

/// Which byte values begin a double-byte character in the system's code page, indexed by the byte.
using LeadByteTable = std::array<bool, 256>;

/// The lead bytes of the system's multibyte code page, in which all strings are (932 in practice, and always
/// in the native build). A code page without double-byte characters (1252, UTF-8) has none.
const LeadByteTable& SystemLeadBytes();

/// Those of code page 932, whatever the system's.
const LeadByteTable& LeadBytesOf932();

/// True when the text is well-formed UTF-8, as every text of ASCII is.
bool IsUtf8(std::string_view text);

/// The lead bytes by which a text of the list file is to be read, which another process may have written in
/// code page 932: the system's where it has any; otherwise none for well-formed UTF-8, and those of 932 for
/// all else.
const LeadByteTable& LeadBytesIn(std::string_view text, const LeadByteTable& system = SystemLeadBytes());

/// Conversion from the system's code page and back. Bytes that are no character come back from Unicode as they
/// were in the native build, as the system's default character on Windows; a character without a code becomes
/// a question mark.
std::u16string ToUtf16(std::string_view text);
std::string FromUtf16(std::u16string_view utf16);
std::string ToUtf8(std::string_view text);
std::string FromUtf8(std::string_view utf8);

/// A text in the system's code page, and whether it says all that it was made from.
struct DecodedText {
    std::string Text;
    bool IsWhole = true;
};

/// The content of a text file in the system's code page. Content with a UTF-8 or UTF-16 mark at its beginning
/// is decoded, and the mark left out; any other is as it is.
DecodedText DecodeContent(std::string content);

/// Where the file name begins that a path ends with.
std::size_t FileNameStart(std::string_view path);

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
/// full-width letters and second bytes that have the value of a letter included, compares exactly.
bool EqualIgnoringCase(std::string_view left, std::string_view right, const LeadByteTable& leadBytes);

/// The same for two names of favorites.
inline bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return left.size() == right.size() && EqualIgnoringCase(left, right, LeadBytesIn(left));
}

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
