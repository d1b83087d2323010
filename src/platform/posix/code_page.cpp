#include "platform/posix/code_page.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

#include <iconv.h>

namespace pmx::posix {

namespace {

constexpr char32_t EscapedByte = 0x10FE00;
constexpr char32_t NoCharacter = 0xFFFFFFFF;
constexpr char Replacement = '?';

bool IsLead(unsigned char byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

/// One of the system's converters between encodings.
class Converter {
public:
    Converter(const char* to, const char* from) : Handle(iconv_open(to, from)) {
        if (reinterpret_cast<std::intptr_t>(Handle) == -1) {
            throw std::runtime_error("the system has no converter for code page 932");
        }
    }
    ~Converter() { iconv_close(Handle); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    /// Converts the bytes of one character into `output`; the number of bytes written, 0 when it has no
    /// counterpart.
    template <std::size_t InputSize>
    std::size_t Convert(std::array<char, InputSize> input, std::array<char, 4>& output) const {
        char* from = input.data();
        char* to = output.data();
        std::size_t fromLeft = input.size();
        std::size_t toLeft = output.size();
        const std::size_t result = iconv(Handle, &from, &fromLeft, &to, &toLeft);
        if (result != 0 || fromLeft != 0) {
            iconv(Handle, nullptr, nullptr, nullptr, nullptr);
            return 0;
        }
        return output.size() - toLeft;
    }

private:
    iconv_t Handle;
};

/// Both directions of the code page, made once from the system's converter.
class Tables {
public:
    Tables() {
        FillSingleBytes();
        const Converter decoder("UTF-16LE", "CP932");
        const Converter encoder("CP932", "UTF-16LE");
        for (unsigned lead = 0x81; lead <= 0xFC; ++lead) {
            if (IsLead(static_cast<unsigned char>(lead))) {
                FillLead(lead, decoder, encoder);
            }
        }
    }

    /// The character of a single byte that is no lead byte, or of a double-byte code; 0 when there is none.
    char16_t Character(unsigned code) const { return Characters[code]; }

    /// The code of a character; 0 when there is none (and for U+0000).
    std::uint16_t Code(char16_t character) const { return Codes[character]; }

private:
    void FillSingleBytes() {
        for (unsigned byte = 0; byte <= 0x80; ++byte) {
            SetSingle(byte, static_cast<char16_t>(byte));
        }
        for (unsigned byte = 0xA1; byte <= 0xDF; ++byte) {
            SetSingle(byte, static_cast<char16_t>(0xFF61 + (byte - 0xA1)));
        }
        SetSingle(0xA0, 0xF8F0);
        for (unsigned byte = 0xFD; byte <= 0xFF; ++byte) {
            SetSingle(byte, static_cast<char16_t>(0xF8F1 + (byte - 0xFD)));
        }
    }

    void SetSingle(unsigned byte, char16_t character) {
        Characters[byte] = character;
        Codes[character] = static_cast<std::uint16_t>(byte);
    }

    void FillLead(unsigned lead, const Converter& decoder, const Converter& encoder) {
        for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
            std::array<char, 4> bytes{};
            if (decoder.Convert(std::array{static_cast<char>(lead), static_cast<char>(trail)}, bytes) != 2) {
                continue;
            }
            const char low = bytes[0];
            const char high = bytes[1];
            const auto character = static_cast<char16_t>(static_cast<unsigned char>(low) |
                                                         (static_cast<unsigned char>(high) << 8U));
            Characters[lead << 8U | trail] = character;
            if (encoder.Convert(std::array{low, high}, bytes) == 2) {
                Codes[character] = static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[0]) << 8U |
                                                              static_cast<unsigned char>(bytes[1]));
            }
        }
    }

    std::array<char16_t, 0x10000> Characters{};
    std::array<std::uint16_t, 0x10000> Codes{};
};

const Tables& CodePage() {
    static const auto Shared = std::make_unique<const Tables>();
    return *Shared;
}

/// Calls `take` for every character of a text of the code page, in order; of bytes that are no
/// character, for each of them with its escape.
template <typename Taker>
void Decode(std::string_view sjis, const Taker& take) {
    const Tables& tables = CodePage();
    for (std::size_t position = 0; position < sjis.size(); ++position) {
        const auto first = static_cast<unsigned char>(sjis[position]);
        if (!IsLead(first)) {
            take(tables.Character(first));
            continue;
        }
        if (position + 1 == sjis.size()) {
            take(EscapedByte + first);
            continue;
        }
        const auto second = static_cast<unsigned char>(sjis[++position]);
        const unsigned code = static_cast<unsigned>(first) << 8U | second;
        if (tables.Character(code) != 0) {
            take(tables.Character(code));
            continue;
        }
        take(EscapedByte + first);
        take(EscapedByte + second);
    }
}

void AppendCode(std::string& text, char32_t character) {
    if (character >= EscapedByte && character <= EscapedByte + 0xFF) {
        text += static_cast<char>(character - EscapedByte);
        return;
    }
    const std::uint16_t code =
        character <= 0xFFFF ? CodePage().Code(static_cast<char16_t>(character)) : std::uint16_t{0};
    if (code > 0xFF) {
        text += static_cast<char>(code >> 8U);
    }
    text += code == 0 && character != 0 ? Replacement : static_cast<char>(code & 0xFFU);
}

void AppendUtf8(std::string& text, char32_t character) {
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80U | (character >> shift & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | character >> 6U);
        continuation(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0U | character >> 12U);
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0U | character >> 18U);
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

/// The beginning of a text up to the first byte that is not ASCII: of most paths all.
std::string_view AsciiBeginning(std::string_view sjis) {
    const auto end = std::find_if(sjis.begin(), sjis.end(), [](char character) {
        return static_cast<unsigned char>(character) >= 0x80;
    });
    return sjis.substr(0, static_cast<std::size_t>(end - sjis.begin()));
}

bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Number of bytes that a UTF-8 sequence with this first byte has; 0 when none begins with it.
std::size_t SequenceLength(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return 3;
    }
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

/// Reads the character at `position` and steps over it. Of bytes that are not UTF-8 one is stepped over, and
/// the result is NoCharacter.
char32_t NextUtf8(std::string_view utf8, std::size_t& position) {
    static constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(utf8[position]);
    const std::size_t length = SequenceLength(first);
    const std::size_t begin = position++;
    if (length == 0 || utf8.size() - begin < length) {
        return NoCharacter;
    }
    char32_t character = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        const auto byte = static_cast<unsigned char>(utf8[begin + index]);
        if ((byte & 0xC0U) != 0x80) {
            return NoCharacter;
        }
        character = character << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = IsHighSurrogate(character) || IsLowSurrogate(character);
    if (character < Smallest[length] || character > 0x10FFFF || isSurrogate) {
        return NoCharacter;
    }
    position = begin + length;
    return character;
}

} // namespace

std::u16string ToUtf16(std::string_view sjis) {
    std::u16string text;
    text.reserve(sjis.size());
    Decode(sjis, [&](char32_t character) {
        if (character > 0xFFFF) {
            text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10U));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
            return;
        }
        text += static_cast<char16_t>(character);
    });
    return text;
}

std::string FromUtf16(std::u16string_view utf16) {
    std::string text;
    text.reserve(utf16.size() * 2);
    for (std::size_t position = 0; position < utf16.size(); ++position) {
        char32_t character = utf16[position];
        const bool isPair =
            IsHighSurrogate(character) && position + 1 < utf16.size() && IsLowSurrogate(utf16[position + 1]);
        if (isPair) {
            character = 0x10000 + ((character & 0x3FFU) << 10U | (utf16[++position] & 0x3FFU));
        }
        AppendCode(text, character);
    }
    return text;
}

std::string ToUtf8(std::string_view sjis) {
    const std::string_view ascii = AsciiBeginning(sjis);
    std::string text(ascii);
    text.reserve(sjis.size() * 2);
    Decode(sjis.substr(ascii.size()), [&](char32_t character) { AppendUtf8(text, character); });
    return text;
}

std::string FromUtf8(std::string_view utf8) {
    std::string text;
    text.reserve(utf8.size());
    for (std::size_t position = 0; position < utf8.size();) {
        AppendCode(text, NextUtf8(utf8, position));
    }
    return text;
}

std::string NativePath(std::string_view path) {
    const std::string_view ascii = AsciiBeginning(path);
    std::string native(ascii);
    std::replace(native.begin(), native.end(), '\\', '/');
    native.reserve(path.size() * 2);
    Decode(path.substr(ascii.size()),
           [&](char32_t character) { AppendUtf8(native, character == '\\' ? '/' : character); });
    return native;
}

} // namespace pmx::posix
