#include "platform/posix/code_page.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace pmx::posix {
namespace {

std::string Bytes(std::u8string_view text) {
    return {text.begin(), text.end()};
}

TEST(CodePage, MapsAsWindowsDoes) {
    EXPECT_EQ(ToUtf16("A\\~"), u"A\\~");
    EXPECT_EQ(ToUtf16("\x81\x60"), u"\uFF5E");
    EXPECT_EQ(ToUtf16("\x81\x7C"), u"\uFF0D");
    EXPECT_EQ(ToUtf16("\xF0\x40\xF9\xFC"), u"\uE000\uE757");
    EXPECT_EQ(ToUtf16("\x80\xA0\xFD\xFE\xFF"), u"\u0080\uF8F0\uF8F1\uF8F2\uF8F3");
    EXPECT_EQ(ToUtf16("\xB1"), u"ｱ");
}

TEST(CodePage, ChoosesTheCodeOfWindowsAmongSeveral) {
    EXPECT_EQ(FromUtf16(u"≒"), "\x81\xE0");
    EXPECT_EQ(FromUtf16(ToUtf16("\x87\x90")), "\x81\xE0");
    EXPECT_EQ(FromUtf16(ToUtf16("\xED\x40")), "\xFA\x5C");
    EXPECT_EQ(FromUtf16(u"∵"), "\x81\xE6");
}

TEST(CodePage, ReplacesWhatHasNoCode) {
    EXPECT_EQ(FromUtf16(u"a\u00E9\u301Cz"), "a??z");
    EXPECT_EQ(FromUtf16(u"\xD83D\xDE00"), "?");
    EXPECT_EQ(FromUtf16(u"\xD83D"), "?");
    EXPECT_EQ(FromUtf8("\xC0\xAF\xE3\x81"), "????");
    EXPECT_EQ(FromUtf16(u"\xD83D"
                        u"a"),
              "?a");
}

TEST(CodePage, ReplacesEachByteThatIsNotUtf8) {
    const std::pair<const char*, const char*> texts[] = {
        {"\xE3\x82z", "??z"},         // ends too early
        {"\xE0\x80\xAF", "???"},      // longer than it need be
        {"\xED\xA0\x80", "???"},      // half of a pair
        {"\xED\xBF\xBF", "???"},      // the other half
        {"\xF4\x90\x80\x80", "????"}, // beyond the last character
        {"\xF5z", "?z"},
        {"\xFF", "?"},
        {"\xF0\x9F\x98\x80z", "?z"}, // one character
    };
    for (const auto& [utf8, expected] : texts) {
        EXPECT_EQ(FromUtf8(utf8), expected) << utf8;
    }
}

TEST(CodePage, KeepsZeroBytes) {
    EXPECT_EQ(ToUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(FromUtf8(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(CodePage, BringsEveryPairOfBytesBack) {
    for (unsigned first = 0; first <= 0xFF; ++first) {
        for (unsigned second = 0; second <= 0xFF; ++second) {
            const std::string text = {static_cast<char>(first), static_cast<char>(second)};
            const std::u16string utf16 = ToUtf16(text);
            ASSERT_EQ(ToUtf16(FromUtf16(utf16)), utf16) << first << ' ' << second;
            ASSERT_EQ(FromUtf8(ToUtf8(text)), FromUtf16(utf16)) << first << ' ' << second;
        }
    }
}

TEST(CodePage, KeepsBrokenBytesApartFromEveryCharacter) {
    const std::string lonelyLead = "ab\x83";
    EXPECT_EQ(ToUtf8(lonelyLead), "ab\xF4\x8F\xBA\x83");
    EXPECT_EQ(FromUtf8(ToUtf8(lonelyLead)), lonelyLead);
    const std::string noCharacter = "\x85\x5C";
    EXPECT_EQ(ToUtf8(noCharacter), "\xF4\x8F\xBA\x85\xF4\x8F\xB9\x9C");
    EXPECT_EQ(FromUtf8(ToUtf8(noCharacter)), noCharacter);
}

TEST(NativePath, TurnsOnlyTrueBackslashesIntoSlashes) {
    EXPECT_EQ(NativePath("\\a\\\x95\x5C\\\x83\x5C.pmt"), Bytes(u8"/a/表/ソ.pmt"));
    EXPECT_EQ(NativePath("/a/b"), "/a/b");
}

TEST(NativePath, NamesFilesAsWineDoes) {
    for (const auto& [name, onDisk] : test::NamesOnDisk()) {
        EXPECT_EQ(NativePath("\\tmp\\" + name), "/tmp/" + onDisk);
    }
}

} // namespace
} // namespace pmx::posix
