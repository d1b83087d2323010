#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The text of profile (INI) files in the native build, as the platform's functions see it under Wine with
/// code page 932.
namespace pmx::posix {

/// The bytes of a file.
struct FileBytes {
    std::unique_ptr<char[]> Data; ///< may be null when Size is 0
    std::size_t Size = 0;

    std::string_view View() const { return {Data.get(), Size}; }
};

/// What becomes of a lead byte that nothing follows.
enum class LoneLead {
    Replaced, ///< by the katakana middle dot, as in files
    Dropped   ///< as in the texts of a call
};

/// True when the platform gives these bytes back as they are: every lead byte has its trail byte, every code
/// is a character, and of several codes for one character it is the one that the platform writes.
bool IsCanonical(std::string_view codePageText);

/// Number of the control characters (below the space) in a canonical text; nothing when it is not canonical.
std::optional<std::size_t> CountControls(std::string_view codePageText);

/// The text as the platform gives it back after converting it to Unicode and back. What is no character
/// becomes the katakana middle dot, together with the byte after the lead byte unless that is zero: even a
/// line feed there is lost.
std::string Canonical(std::string_view codePageText, LoneLead loneLead);

/// How a profile is stored. Without a mark at its beginning it is in code page 932, whatever the bytes.
enum class ProfileEncoding { CodePage, Utf8, Utf16Little, Utf16Big };

/// The text of a profile in one form for all encodings: canonical code page 932 or, when the file has a
/// Unicode mark, UTF-8. In both every byte below 0x40 is a character of its own, so line ends, blanks, `=`,
/// `;`, quotes and zeros are found byte by byte; brackets are not, in the code page.
class ProfileText {
public:
    /// An empty profile in the code page.
    ProfileText() = default;

    /// The text of a file with that content.
    explicit ProfileText(FileBytes content);

    /// The same, but text in the code page is as it stands in the file until MakeCanonical: for those who
    /// need only parts of it.
    static ProfileText AsItStands(FileBytes content);

    bool IsSurelyCanonical() const { return IsChecked; }
    void MakeCanonical();

    std::string_view View() const { return IsConverted ? std::string_view(Converted) : Content.View(); }
    ProfileEncoding Encoding() const { return Stored; }

    /// Exchanges the text for another in the same form.
    void Assign(std::string text);

    /// Exchanges the text for that of a file with that content.
    void Reread(std::string_view content);

private:
    FileBytes Content;
    std::string Converted; ///< counts when IsConverted
    bool IsConverted = false;
    bool IsChecked = true;
    ProfileEncoding Stored = ProfileEncoding::CodePage;
};

/// A text of a call (section, key, value or default, in code page 932, up to its first zero) in the form of a
/// profile of that encoding. May refer to the text that it is made of, which must stay.
class CallText {
public:
    CallText(std::string_view text, ProfileEncoding encoding);
    ~CallText() = default;
    CallText(const CallText&) = delete;
    CallText& operator=(const CallText&) = delete;

    std::string_view View() const { return Text; }

    /// False when the view is one of the caller's text.
    bool IsConverted() const { return HasOwnText; }

private:
    std::string Converted;
    bool HasOwnText = false;
    std::string_view Text; ///< into Converted or the caller's text
};

/// A piece of a profile's text, in code page 932.
std::string ToCaller(std::string_view profileText, ProfileEncoding encoding);

/// True when a file that begins with these bytes is taken for Unicode.
bool HasUnicodeMark(std::string_view content);

/// The bytes of a file with that text, its mark included.
std::string EncodedProfile(std::string text, ProfileEncoding encoding);

/// True for the characters that are dropped at the ends of lines, names and values.
constexpr bool IsProfileBlank(char character) {
    const bool mayBe = static_cast<unsigned char>(character) <= ' ';
    return mayBe && (character == ' ' || (character >= '\t' && character <= '\r') || character == '\x1A');
}

constexpr std::string_view WithoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && IsProfileBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

constexpr std::string_view WithoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && IsProfileBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Without those at both ends.
constexpr std::string_view WithoutBlanks(std::string_view text) {
    return WithoutLeadingBlanks(WithoutTrailingBlanks(text));
}

/// The part before the first zero byte.
std::string_view UpToZero(std::string_view text);

/// True when both texts are equal without regard to the case of A to Z; characters of several bytes compare
/// exactly.
bool EqualNames(std::string_view left, std::string_view right, ProfileEncoding encoding);

/// Position of the last `]` of a text, npos when there is none.
std::size_t LastClosingBracket(std::string_view text, ProfileEncoding encoding);

} // namespace pmx::posix
