#include "platform/text.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace pmx {
namespace {

using test::Sjis;

const LeadByteTable& LeadBytes() {
    return SystemLeadBytes();
}

TEST(Text, KnowsTheLeadBytesOfShiftJis) {
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const bool isLead = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
        EXPECT_EQ(LeadBytes()[byte], isLead) << byte;
    }
}

TEST(Text, ComparesSingleByteLettersWithoutCase) {
    EXPECT_TRUE(EqualIgnoringCase("Template-1.PMT", "tEMPLATE-1.pmt"));
    EXPECT_TRUE(EqualIgnoringCase("", ""));
    EXPECT_FALSE(EqualIgnoringCase("a", "ab"));
    EXPECT_FALSE(EqualIgnoringCase("@[", "`{"));
}

TEST(Text, ComparesDoubleByteCharactersExactly) {
    const std::string small = Sjis(u8"ア");
    const std::string other = Sjis(u8"ヂ");
    ASSERT_EQ(small, "\x83\x41");
    ASSERT_EQ(other, "\x83\x61");
    EXPECT_FALSE(EqualIgnoringCase(small, other));
    EXPECT_FALSE(EqualIgnoringCase(Sjis(u8"Ａ"), Sjis(u8"ａ")));
    EXPECT_TRUE(EqualIgnoringCase(Sjis(u8"アB"), Sjis(u8"アb")));
    EXPECT_FALSE(EqualIgnoringCase(Sjis(u8"ア"), Sjis(u8"ｱ")));
}

TEST(Text, ComparesLettersAfterHalfWidthKanaWithoutCase) {
    EXPECT_TRUE(EqualIgnoringCase(Sjis(u8"ｱAﾝZ"), Sjis(u8"ｱaﾝz")));
}

TEST(Text, ComparesALoneLeadByteAtTheEndAsItself) {
    EXPECT_TRUE(EqualIgnoringCase("a\x83", "A\x83"));
    EXPECT_FALSE(EqualIgnoringCase("a\x83", "A\x84"));
}

TEST(CharacterLength, IsTwoForADoubleByteCharacter) {
    const std::string text = Sjis(u8"aミｱ");
    EXPECT_EQ(CharacterLength(text, 0, LeadBytes()), 1U);
    EXPECT_EQ(CharacterLength(text, 1, LeadBytes()), 2U);
    EXPECT_EQ(CharacterLength(text, 3, LeadBytes()), 1U);
    EXPECT_EQ(CharacterLength("a\x83", 1, LeadBytes()), 1U);
}

TEST(FindSingleByte, PassesOverSecondBytes) {
    const std::string tilde = Sjis(u8"ミ");
    ASSERT_EQ(tilde, "\x83\x7E");
    EXPECT_EQ(FindSingleByte(tilde + '~', '~', LeadBytes()), 2U);
    EXPECT_EQ(FindSingleByte(tilde, '~', LeadBytes()), std::string_view::npos);
    const std::string backslashes = Sjis(u8"表ソ");
    ASSERT_EQ(backslashes, "\x95\x5C\x83\x5C");
    EXPECT_EQ(FindSingleByte(backslashes, '\\', LeadBytes()), std::string_view::npos);
    EXPECT_EQ(FindSingleByte(backslashes + "\\a", '\\', LeadBytes()), 4U);
}

/// Calls `check` with every text of up to six bytes made of a letter, a blank, the separator and two lead
/// bytes, one of which is also a trail byte.
template <typename Check>
void ForEveryText(Check check) {
    constexpr std::string_view Bytes = "a ~\x83\x95";
    constexpr std::size_t MostBytes = 6;
    for (std::size_t length = 0; length <= MostBytes; ++length) {
        std::string digits(length, '\0');
        do {
            std::string text;
            for (const char digit : digits) {
                text += Bytes[static_cast<std::size_t>(digit)];
            }
            check(text);
            std::size_t place = 0;
            while (place < length && ++digits[place] == static_cast<char>(Bytes.size())) {
                digits[place++] = '\0';
            }
            if (place == length) {
                break;
            }
        } while (true);
    }
}

TEST(FindSingleByte, FindsWhatWalkingFromCharacterToCharacterFinds) {
    ForEveryText([](const std::string& text) {
        std::size_t expected = std::string_view::npos;
        for (std::size_t position = 0; position < text.size() && expected == std::string_view::npos;
             position += CharacterLength(text, position, LeadBytes())) {
            expected = text[position] == '~' ? position : expected;
        }
        ASSERT_EQ(FindSingleByte(text, '~', LeadBytes()), expected) << testing::PrintToString(text);
    });
}

TEST(Trimmed, CutsWhatWalkingFromCharacterToCharacterCuts) {
    ForEveryText([](const std::string& text) {
        const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
        std::size_t end = begin;
        for (std::size_t position = begin; position < text.size();) {
            const std::size_t length = CharacterLength(text, position, LeadBytes());
            end = length == 2 || text[position] != ' ' ? position + length : end;
            position += length;
        }
        ASSERT_EQ(Trimmed(text, LeadBytes()), text.substr(begin, end - begin))
            << testing::PrintToString(text);
    });
}

TEST(IsTrailByte, IsTrueForTheSecondByteOfACharacterOnly) {
    const std::string text = Sjis(u8"ミ") + "~\x83\x83~";
    EXPECT_FALSE(IsTrailByte(text, 0, LeadBytes()));
    EXPECT_TRUE(IsTrailByte(text, 1, LeadBytes()));
    EXPECT_FALSE(IsTrailByte(text, 2, LeadBytes()));
    EXPECT_TRUE(IsTrailByte(text, 4, LeadBytes()));
    EXPECT_FALSE(IsTrailByte(text, 5, LeadBytes()));
    EXPECT_TRUE(IsTrailByte(text, 5, LeadBytes(), 4));
}

TEST(FindSingleByte, BeginsAtTheGivenPlace) {
    EXPECT_EQ(FindSingleByte("a~b~", '~', LeadBytes(), 2), 3U);
    EXPECT_EQ(FindSingleByte("a", 'a', LeadBytes(), 1), std::string_view::npos);
}

TEST(FindSingleByte, FindsHalfWidthKana) {
    EXPECT_EQ(FindSingleByte(Sjis(u8"ミｱ"), '\xB1', LeadBytes()), 2U);
}

TEST(LengthWithin, NeverSplitsACharacter) {
    const std::string text = Sjis(u8"aミミ");
    EXPECT_EQ(LengthWithin(text, 0, LeadBytes()), 0U);
    EXPECT_EQ(LengthWithin(text, 1, LeadBytes()), 1U);
    EXPECT_EQ(LengthWithin(text, 2, LeadBytes()), 1U);
    EXPECT_EQ(LengthWithin(text, 3, LeadBytes()), 3U);
    EXPECT_EQ(LengthWithin(text, 4, LeadBytes()), 3U);
    EXPECT_EQ(LengthWithin(text, 5, LeadBytes()), 5U);
    EXPECT_EQ(LengthWithin(text, 100, LeadBytes()), 5U);
}

TEST(Trimmed, TakesBlanksOffBothEnds) {
    EXPECT_EQ(Trimmed(" \t\r\n\v\fa b \t", LeadBytes()), "a b");
    EXPECT_EQ(Trimmed("   ", LeadBytes()), "");
    EXPECT_EQ(Trimmed("", LeadBytes()), "");
}

TEST(Trimmed, KeepsDoubleByteBlanksAndSecondBytes) {
    const std::string wide = Sjis(u8"\u3000a\u3000");
    EXPECT_EQ(Trimmed(' ' + wide + ' ', LeadBytes()), wide);
    EXPECT_EQ(Trimmed("\x83 ", LeadBytes()), "\x83 ");
}

TEST(IsUtf8, IsTrueForWellFormedSequencesOnly) {
    for (const char* const text :
         {"", "abc", "\xC2\x80", "\xDF\xBFz", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
          "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "a\xE3\x83\x9F~"}) {
        EXPECT_TRUE(IsUtf8(text)) << testing::PrintToString(text);
    }
    for (const char* const text :
         {"\x80", "\xBF", "\xC1\xBF", "\xF5\x80\x80\x80", "\xFF",                    // begin nothing
          "a\xC2", "\xE3\x83", "\xF0\x90\x80", "\xC2z", "\xE3\x83z", "\xE3\x83\xC0", // end too early
          "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF",    // longer than they need be
          "\xED\xA0\x80", "\xF4\x90\x80\x80"}) { // a half of a pair, and beyond the last character
        EXPECT_FALSE(IsUtf8(text)) << testing::PrintToString(text);
    }
}

TEST(LeadBytesIn, AreTheSystemsWhereItHasAnyOtherwiseThoseThatTheTextNeeds) {
    const std::string sjis = Sjis(u8"ミ");
    const std::string utf8 = test::Utf8(sjis);
    constexpr LeadByteTable None{};
    EXPECT_EQ(LeadBytesIn(utf8, LeadBytesOf932()), LeadBytesOf932());
    EXPECT_EQ(LeadBytesIn(sjis, None), LeadBytesOf932());
    EXPECT_EQ(LeadBytesIn(utf8, None), None);
    EXPECT_EQ(LeadBytesIn("ascii", None), None);
}

} // namespace
} // namespace pmx
