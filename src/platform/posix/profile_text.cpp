#include "platform/posix/profile_text.h"

#include "platform/posix/code_page.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

namespace pmx::posix {

namespace {

constexpr std::string_view MiddleDot = "\x81\x45";
constexpr unsigned FirstTrail = 0x40;
constexpr unsigned LastTrail = 0xFC;
constexpr unsigned NoTrail = 0x7F;
constexpr unsigned TrailsOfLead = LastTrail - FirstTrail; // NoTrail lies between and is none

constexpr bool IsLead(unsigned byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

constexpr bool IsTrail(unsigned byte) {
    return byte >= FirstTrail && byte <= LastTrail && byte != NoTrail;
}

/// The n-th double-byte code, counted as if there were no gap between the lead bytes.
constexpr unsigned IndexOf(unsigned code) {
    const unsigned trail = code & 0xFFU;
    return (code >> 8U) * TrailsOfLead + trail - FirstTrail - (trail > NoTrail ? 1 : 0);
}

constexpr unsigned CodeAt(unsigned index) {
    const unsigned offset = index % TrailsOfLead;
    return (index / TrailsOfLead) << 8U | (offset + FirstTrail + (offset >= NoTrail - FirstTrail ? 1 : 0));
}

struct CodeRange {
    unsigned First;
    unsigned Last;
};

/// The codes that come back as they are.
constexpr std::array<CodeRange, 31> KeptCodes = {
    {{0x8140, 0x81AC}, {0x81B8, 0x81BF}, {0x81C8, 0x81CE}, {0x81DA, 0x81E8}, {0x81F0, 0x81F7},
     {0x81FC, 0x81FC}, {0x824F, 0x8258}, {0x8260, 0x8279}, {0x8281, 0x829A}, {0x829F, 0x82F1},
     {0x8340, 0x8396}, {0x839F, 0x83B6}, {0x83BF, 0x83D6}, {0x8440, 0x8460}, {0x8470, 0x8491},
     {0x849F, 0x84BE}, {0x8740, 0x875D}, {0x875F, 0x8775}, {0x877E, 0x877E}, {0x8780, 0x878F},
     {0x8793, 0x8794}, {0x8798, 0x8799}, {0x889F, 0x88FC}, {0x8940, 0x9872}, {0x989F, 0x98FC},
     {0x9940, 0x9FFC}, {0xE040, 0xEAA4}, {0xF040, 0xF9FC}, {0xFA40, 0xFA49}, {0xFA55, 0xFA57},
     {0xFA5C, 0xFC4B}}};

struct CodeExchange {
    CodeRange From;
    unsigned To; ///< for the first; the others follow in order
};

/// Second codes of characters, which come back as the first.
constexpr std::array<CodeExchange, 19> ExchangedCodes = {{{{0x8790, 0x8790}, 0x81E0},
                                                          {{0x8791, 0x8791}, 0x81DF},
                                                          {{0x8792, 0x8792}, 0x81E7},
                                                          {{0x8795, 0x8795}, 0x81E3},
                                                          {{0x8796, 0x8796}, 0x81DB},
                                                          {{0x8797, 0x8797}, 0x81DA},
                                                          {{0x879A, 0x879A}, 0x81E6},
                                                          {{0x879B, 0x879B}, 0x81BF},
                                                          {{0x879C, 0x879C}, 0x81BE},
                                                          {{0xED40, 0xEEEC}, 0xFA5C},
                                                          {{0xEEEF, 0xEEF8}, 0xFA40},
                                                          {{0xEEF9, 0xEEF9}, 0x81CA},
                                                          {{0xEEFA, 0xEEFC}, 0xFA55},
                                                          {{0xFA4A, 0xFA53}, 0x8754},
                                                          {{0xFA54, 0xFA54}, 0x81CA},
                                                          {{0xFA58, 0xFA58}, 0x878A},
                                                          {{0xFA59, 0xFA59}, 0x8782},
                                                          {{0xFA5A, 0xFA5A}, 0x8784},
                                                          {{0xFA5B, 0xFA5B}, 0x81E6}}};

/// What stands at a place of a text.
enum class Stand : std::uint8_t {
    Broken,     ///< a lead byte that begins no character that comes back as it is
    SingleByte, ///< another byte that is not ASCII
    DoubleByte, ///< a code that comes back as it is
    Ascii
};

/// The Stand for each pair of bytes.
class StandTable {
public:
    constexpr StandTable() {
        for (unsigned first = 0; first <= 0xFF; ++first) {
            const Stand stand = first < 0x80    ? Stand::Ascii
                                : IsLead(first) ? Stand::Broken
                                                : Stand::SingleByte;
            for (unsigned second = 0; second <= 0xFF; ++second) {
                Stands[PlaceOf(first, second)] = stand;
            }
        }
        for (const CodeRange& range : KeptCodes) {
            for (unsigned index = IndexOf(range.First); index <= IndexOf(range.Last); ++index) {
                const unsigned code = CodeAt(index);
                Stands[PlaceOf(code >> 8U, code & 0xFFU)] = Stand::DoubleByte;
            }
        }
    }

    constexpr Stand Of(unsigned first, unsigned second) const { return Stands[PlaceOf(first, second)]; }

private:
    static constexpr std::size_t PlaceOf(unsigned first, unsigned second) { return first | second << 8U; }

    std::array<Stand, 0x10000> Stands{};
};

constexpr StandTable Table;

void AppendCode(std::string& text, unsigned code) {
    text += static_cast<char>(code >> 8U);
    text += static_cast<char>(code & 0xFFU);
}

/// The code that the platform writes for the character of a code; 0 when the code is no character.
unsigned CanonicalCode(unsigned code) {
    if (Table.Of(code >> 8U, code & 0xFFU) == Stand::DoubleByte) {
        return code;
    }
    if (!IsTrail(code & 0xFFU)) {
        return 0;
    }
    const unsigned index = IndexOf(code);
    for (const CodeExchange& exchange : ExchangedCodes) {
        if (index >= IndexOf(exchange.From.First) && index <= IndexOf(exchange.From.Last)) {
            return CodeAt(IndexOf(exchange.To) + index - IndexOf(exchange.From.First));
        }
    }
    return 0;
}

unsigned ByteAt(std::string_view text, std::size_t position) {
    return static_cast<unsigned char>(text[position]);
}

constexpr bool IsLittleEndian = std::endian::native == std::endian::little;

bool IsAscii(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

bool IsControl(char character) {
    return static_cast<unsigned char>(character) < ' ';
}

/// Eight bytes of a text, looked at all at once.
struct Word {
    explicit Word(const char* position) { std::memcpy(&Bytes, position, sizeof Bytes); }

    /// So many words lie between two places.
    static std::size_t CountBetween(const char* position, const char* end) {
        return static_cast<std::size_t>(end - position) / sizeof(Word);
    }

    bool IsAscii() const { return (Bytes & HighBits) == 0; }

    /// Number of bytes before the first that is not ASCII, which there must be.
    int LeadingAscii() const {
        const std::uint64_t high = Bytes & HighBits;
        return (IsLittleEndian ? std::countr_zero(high) : std::countl_zero(high)) / 8;
    }

    /// The number of control characters among the bytes, all of which are ASCII.
    std::size_t CountControls() const { return CountHighBits(ControlBits()); }

    /// The same among those before the first that is not ASCII, which there must be.
    std::size_t CountLeadingControls() const {
        const int unwanted = 8 * (7 - LeadingAscii());
        const std::uint64_t bits = ControlBits();
        return CountHighBits(IsLittleEndian ? bits << 8U << unwanted : bits >> 8U >> unwanted);
    }

private:
    static constexpr std::uint64_t Ones = 0x0101010101010101U;
    static constexpr std::uint64_t HighBits = Ones * 0x80U;

    /// The high bits of the bytes that are control characters; what is not ASCII may count as one.
    std::uint64_t ControlBits() const {
        constexpr std::uint64_t FromSpaceToHighBit = Ones * (0x80U - ' ');
        return ~((Bytes & ~HighBits) + FromSpaceToHighBit) & HighBits;
    }

    static std::size_t CountHighBits(std::uint64_t bits) {
        return static_cast<std::size_t>((bits >> 7U) * Ones >> 56U);
    }

    std::uint64_t Bytes = 0;
};

/// The first byte of a text that is not ASCII, or its end.
inline const char* SkipAscii(const char* position, const char* end) {
    for (std::size_t words = Word::CountBetween(position, end); words != 0; --words) {
        const Word word(position);
        if (!word.IsAscii()) {
            return position + word.LeadingAscii();
        }
        position += sizeof word;
    }
    while (position != end && IsAscii(*position)) {
        ++position;
    }
    return position;
}

/// The same, which adds the number of control characters on the way.
inline const char* SkipAscii(const char* position, const char* end, std::size_t& controls) {
    for (std::size_t words = Word::CountBetween(position, end); words != 0; --words) {
        const Word word(position);
        if (!word.IsAscii()) {
            controls += word.CountLeadingControls();
            return position + word.LeadingAscii();
        }
        controls += word.CountControls();
        position += sizeof word;
    }
    while (position != end && IsAscii(*position)) {
        controls += IsControl(*position++) ? 1 : 0;
    }
    return position;
}

/// Behind the characters from `position` on that are not ASCII; null when one of them is not canonical.
inline const char* SkipCanonical(const char* position, const char* end) {
    while (end - position >= 2) {
        const Stand stand =
            Table.Of(static_cast<unsigned char>(position[0]), static_cast<unsigned char>(position[1]));
        if (stand == Stand::DoubleByte) {
            position += 2;
        } else if (stand == Stand::SingleByte) {
            ++position;
        } else {
            return stand == Stand::Ascii ? position : nullptr;
        }
    }
    const bool endsInLead = position != end && IsLead(static_cast<unsigned char>(*position));
    return endsInLead ? nullptr : position + (position != end && !IsAscii(*position) ? 1 : 0);
}

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view LittleMark = "\xFF\xFE";
constexpr std::string_view BigMark = "\xFE\xFF";

struct Mark {
    std::string_view Bytes;
    ProfileEncoding Encoding;
};

constexpr std::array<Mark, 3> Marks = {{{Utf8Mark, ProfileEncoding::Utf8},
                                        {LittleMark, ProfileEncoding::Utf16Little},
                                        {BigMark, ProfileEncoding::Utf16Big}}};

Mark MarkOf(std::string_view content) {
    for (const Mark& mark : Marks) {
        if (content.starts_with(mark.Bytes)) {
            return mark;
        }
    }
    return {{}, ProfileEncoding::CodePage};
}

Mark MarkOf(ProfileEncoding encoding) {
    const auto* const found =
        std::find_if(Marks.begin(), Marks.end(), [&](const Mark& mark) { return mark.Encoding == encoding; });
    return found == Marks.end() ? Mark{{}, encoding} : *found;
}

constexpr std::uint32_t ReplacementCharacter = 0xFFFD;

void AppendUtf8(std::string& text, std::uint32_t character) {
    const auto append = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
        return;
    }
    if (character < 0x800) {
        append(0xC0U | character >> 6U);
    } else if (character < 0x10000) {
        append(0xE0U | character >> 12U);
        append(0x80U | (character >> 6U & 0x3FU));
    } else {
        append(0xF0U | character >> 18U);
        append(0x80U | (character >> 12U & 0x3FU));
        append(0x80U | (character >> 6U & 0x3FU));
    }
    append(0x80U | (character & 0x3FU));
}

bool IsHighSurrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(std::uint32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

std::uint32_t UnitAt(std::string_view bytes, std::size_t position, ProfileEncoding encoding) {
    const std::uint32_t first = ByteAt(bytes, position);
    const std::uint32_t second = ByteAt(bytes, position + 1);
    return encoding == ProfileEncoding::Utf16Little ? first | second << 8U : first << 8U | second;
}

/// A lone surrogate is kept as three bytes, so that it goes back into the file as it was. An odd last byte is
/// dropped.
std::string Utf8FromUtf16(std::string_view bytes, ProfileEncoding encoding) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t position = 0; position + 1 < bytes.size(); position += 2) {
        std::uint32_t character = UnitAt(bytes, position, encoding);
        if (IsHighSurrogate(character) && position + 3 < bytes.size()) {
            const std::uint32_t low = UnitAt(bytes, position + 2, encoding);
            if (IsLowSurrogate(low)) {
                character = 0x10000 + ((character & 0x3FFU) << 10U | (low & 0x3FFU));
                position += 2;
            }
        }
        AppendUtf8(text, character);
    }
    return text;
}

struct Utf8Sequence {
    std::size_t Length;      ///< bytes to step over
    std::uint32_t Character; ///< ReplacementCharacter for bytes that are not UTF-8
};

/// How the bytes after a first byte of UTF-8 must look.
struct Utf8Form {
    std::size_t Length; ///< 0 when no sequence begins with the byte
    unsigned SecondFrom;
    unsigned SecondTo;
};

Utf8Form FormOf(unsigned first, bool allowSurrogates) {
    if (first < 0x80) {
        return {1, 0, 0};
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return {2, 0x80, 0xBF};
    }
    if (first >= 0xE0 && first <= 0xEF) {
        const unsigned from = first == 0xE0 ? 0xA0 : 0x80;
        return {3, from, first == 0xED && !allowSurrogates ? 0x9FU : 0xBFU};
    }
    if (first >= 0xF0 && first <= 0xF4) {
        return {4, first == 0xF0 ? 0x90U : 0x80U, first == 0xF4 ? 0x8FU : 0xBFU};
    }
    return {0, 0, 0};
}

Utf8Sequence ReadUtf8(std::string_view text, std::size_t position, bool allowSurrogates) {
    const unsigned first = ByteAt(text, position);
    const Utf8Form form = FormOf(first, allowSurrogates);
    if (form.Length == 0) {
        return {1, ReplacementCharacter};
    }
    std::uint32_t character = form.Length == 1 ? first : first & (0x7FU >> form.Length);
    for (std::size_t step = 1; step < form.Length; ++step) {
        const unsigned next = position + step < text.size() ? ByteAt(text, position + step) : 0;
        const bool fits =
            step == 1 ? next >= form.SecondFrom && next <= form.SecondTo : (next & 0xC0U) == 0x80;
        if (!fits) {
            return {step, ReplacementCharacter};
        }
        character = character << 6U | (next & 0x3FU);
    }
    return {form.Length, character};
}

std::string ValidUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t position = 0; position < bytes.size();) {
        const Utf8Sequence sequence = ReadUtf8(bytes, position, false);
        AppendUtf8(text, sequence.Character);
        position += sequence.Length;
    }
    return text;
}

void AppendUnit(std::string& bytes, std::uint32_t unit, ProfileEncoding encoding) {
    const bool isLittle = encoding == ProfileEncoding::Utf16Little;
    bytes += static_cast<char>(isLittle ? unit & 0xFFU : unit >> 8U);
    bytes += static_cast<char>(isLittle ? unit >> 8U : unit & 0xFFU);
}

void AppendUtf16(std::string& bytes, std::string_view text, ProfileEncoding encoding) {
    for (std::size_t position = 0; position < text.size();) {
        const Utf8Sequence sequence = ReadUtf8(text, position, true);
        position += sequence.Length;
        if (sequence.Character < 0x10000) {
            AppendUnit(bytes, sequence.Character, encoding);
            continue;
        }
        const std::uint32_t offset = sequence.Character - 0x10000;
        AppendUnit(bytes, 0xD800U | offset >> 10U, encoding);
        AppendUnit(bytes, 0xDC00U | (offset & 0x3FFU), encoding);
    }
}

char Folded(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::size_t CharacterLength(std::string_view text, std::size_t position, ProfileEncoding encoding) {
    const bool isDouble = encoding == ProfileEncoding::CodePage && IsLead(ByteAt(text, position));
    return isDouble && position + 1 < text.size() ? 2 : 1;
}

} // namespace

bool IsCanonical(std::string_view codePageText) {
    const char* position = codePageText.data();
    const char* const end = position + codePageText.size();
    while (position != nullptr && (position = SkipAscii(position, end)) != end) {
        position = SkipCanonical(position, end);
    }
    return position == end;
}

std::optional<std::size_t> CountControls(std::string_view codePageText) {
    const char* position = codePageText.data();
    const char* const end = position + codePageText.size();
    std::size_t controls = 0;
    while (position != nullptr && (position = SkipAscii(position, end, controls)) != end) {
        position = SkipCanonical(position, end);
    }
    return position == end ? std::optional(controls) : std::nullopt;
}

std::string Canonical(std::string_view codePageText, LoneLead loneLead) {
    std::string text;
    text.reserve(codePageText.size() + 1);
    for (std::size_t position = 0; position < codePageText.size(); ++position) {
        const unsigned first = ByteAt(codePageText, position);
        if (!IsLead(first)) {
            text += codePageText[position];
            continue;
        }
        if (position + 1 == codePageText.size()) {
            text += loneLead == LoneLead::Replaced ? MiddleDot : std::string_view();
            break;
        }
        const unsigned second = ByteAt(codePageText, position + 1);
        position += second == 0 ? 0 : 1;
        const unsigned code = CanonicalCode(first << 8U | second);
        if (code == 0) {
            text += MiddleDot;
        } else {
            AppendCode(text, code);
        }
    }
    return text;
}

ProfileText::ProfileText(FileBytes content) : ProfileText(AsItStands(std::move(content))) {
    MakeCanonical();
}

ProfileText ProfileText::AsItStands(FileBytes content) {
    ProfileText text;
    const Mark mark = MarkOf(content.View());
    text.Stored = mark.Encoding;
    const std::string_view bytes = content.View().substr(mark.Bytes.size());
    if (mark.Encoding == ProfileEncoding::Utf8) {
        text.Assign(ValidUtf8(bytes));
    } else if (mark.Encoding != ProfileEncoding::CodePage) {
        text.Assign(Utf8FromUtf16(bytes, mark.Encoding));
    } else {
        text.Content = std::move(content);
        text.IsChecked = false;
    }
    return text;
}

void ProfileText::MakeCanonical() {
    if (!IsChecked && !IsCanonical(View())) {
        Assign(Canonical(View(), LoneLead::Replaced));
    }
    IsChecked = true;
}

void ProfileText::Reread(std::string_view content) {
    FileBytes copy;
    copy.Data = std::make_unique_for_overwrite<char[]>(content.size());
    copy.Size = content.size();
    std::copy(content.begin(), content.end(), copy.Data.get());
    *this = ProfileText(std::move(copy));
}

void ProfileText::Assign(std::string text) {
    Converted = std::move(text);
    IsConverted = true;
    IsChecked = true;
    Content = {};
}

CallText::CallText(std::string_view text, ProfileEncoding encoding) : Text(UpToZero(text)) {
    const bool isCanonical = IsCanonical(Text);
    if (isCanonical && encoding == ProfileEncoding::CodePage) {
        return;
    }
    Converted = isCanonical ? std::string(Text) : Canonical(Text, LoneLead::Dropped);
    if (encoding != ProfileEncoding::CodePage) {
        Converted = ToUtf8(Converted);
    }
    HasOwnText = true;
    Text = Converted;
}

std::string ToCaller(std::string_view profileText, ProfileEncoding encoding) {
    return encoding == ProfileEncoding::CodePage ? std::string(profileText) : FromUtf8(profileText);
}

bool HasUnicodeMark(std::string_view content) {
    return MarkOf(content).Encoding != ProfileEncoding::CodePage;
}

std::string EncodedProfile(std::string text, ProfileEncoding encoding) {
    if (encoding == ProfileEncoding::CodePage) {
        return text;
    }
    std::string bytes(MarkOf(encoding).Bytes);
    if (encoding == ProfileEncoding::Utf8) {
        return bytes += text;
    }
    bytes.reserve(bytes.size() + text.size() * 2);
    AppendUtf16(bytes, text, encoding);
    return bytes;
}

std::string_view UpToZero(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

bool EqualNames(std::string_view left, std::string_view right, ProfileEncoding encoding) {
    if (left.size() != right.size()) {
        return false;
    }
    for (std::size_t position = 0; position < left.size();) {
        const std::size_t length = CharacterLength(left, position, encoding);
        const bool isEqual = length == 1 ? Folded(left[position]) == Folded(right[position])
                                         : left.substr(position, length) == right.substr(position, length);
        if (!isEqual) {
            return false;
        }
        position += length;
    }
    return true;
}

std::size_t LastClosingBracket(std::string_view text, ProfileEncoding encoding) {
    std::size_t last = std::string_view::npos;
    for (std::size_t position = 0; position < text.size();
         position += CharacterLength(text, position, encoding)) {
        if (text[position] == ']') {
            last = position;
        }
    }
    return last;
}

} // namespace pmx::posix
