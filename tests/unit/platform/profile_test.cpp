#include "platform/profile.h"

#include "support/profile_checks.h"
#include "support/temp_folder.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// What the platform's profile functions do, through the service. The same tables run on both systems, so they
// also prove that the native implementation does what the platform does.

namespace pmx::test {

namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr const char* FileName = "list.ini";

/// Repeated text: `count` times `piece`.
std::string Times(std::size_t count, std::string_view piece) {
    std::string text;
    for (; count > 0; --count) {
        text += piece;
    }
    return text;
}

class ProfileTest : public testing::Test {
protected:
    std::string File() const { return Folder.Path(FileName); }

    std::string ReadIn(std::string_view content, std::string_view section, std::string_view key,
                       std::string_view defaultValue) const {
        Folder.Write(FileName, content);
        return System.ReadString(File(), section, key, defaultValue);
    }

    std::string Visited(std::string_view section) const {
        std::string lines;
        System.VisitSection(File(), section, [&](std::string_view key, std::string_view value) {
            lines.append(key).append("=").append(value).append("|");
        });
        return lines;
    }

    TempFolder Folder{"profile"};
    Profile& System = SystemProfile();
};

// Reading one key

struct ReadCase {
    const char* Name;
    std::string_view File;
    std::string_view Section;
    std::string_view Key;
    std::string_view Expected;
};

void PrintTo(const ReadCase& test, std::ostream* out) {
    *out << Escaped(test.File);
}

class ProfileReading : public ProfileTest, public testing::WithParamInterface<ReadCase> {};

TEST_P(ProfileReading, GivesTheValue) {
    const ReadCase& test = GetParam();
    EXPECT_EQ(Escaped(ReadIn(test.File, test.Section, test.Key, "none")), Escaped(test.Expected));
}

constexpr ReadCase Lines[] = {
    {"LineEndsCrLf", "[S]\r\na=1\r\nk=v\r\n"sv, "S", "k", "v"},
    {"LineEndsLf", "[S]\na=1\nk=v\n"sv, "S", "k", "v"},
    {"LineEndsCr", "[S]\ra=1\rk=v\r"sv, "S", "k", "v"},
    {"LineEndsMixed", "[S]\n\ra=1\r\r\nk=v\r\n"sv, "S", "k", "v"},
    {"CrInsideALfFile", "[S]\na=1\rk=v\n"sv, "S", "k", "v"},
    {"NoFinalLineEnd", "[S]\r\nk=v"sv, "S", "k", "v"},
    {"BlanksAtBothEnds", "[S]\n \t\v\f\x1Ak=v \t\v\f\x1A\n"sv, "S", "k", "v"},
    {"IdeographicSpaceIsNoBlank", "[S]\nk=\x81\x40v\x81\x40\n"sv, "S", "k", "\x81\x40v\x81\x40"},
    {"EmptyLines", "\n\n[S]\n\n  \nk=v\n"sv, "S", "k", "v"},
    {"EmptyFile", ""sv, "S", "k", "none"},
};

constexpr ReadCase Headers[] = {
    {"EndsAtTheLastBracket", "[S]x]\nk=v\n"sv, "S]x", "k", "v"},
    {"DropsBlanksInside", "[ \tS ]\nk=v\n"sv, "S", "k", "v"},
    {"IgnoresTextAfterIt", "[S] ; comment\nk=v\n"sv, "S", "k", "v"},
    {"WithoutBracketIsALine", "[S]\n[T\nk=v\n"sv, "S", "k", "v"},
    {"WithoutBracketIsNoHeader", "[S]\n[T\nk=v\n"sv, "T", "k", "none"},
    {"WithEqualsSign", "[k=v]\na=b\n"sv, "k=v", "a", "b"},
    {"BeforeAnEqualsSign", "[k]=v\na=b\n"sv, "k", "a", "b"},
    {"OpenBracketInAKey", "[S]\n[k=v\n"sv, "S", "[k", "v"},
    {"LinesBeforeTheFirst", "k=v\n[S]\nk=w\n"sv, "", "k", "v"},
    {"LinesBeforeTheFirstAreNotInIt", "k=v\n[S]\n"sv, "S", "k", "none"},
    {"EmptyNameCannotBeReached", "a=1\n[]\nk=v\n"sv, "", "k", "none"},
    {"EmptyNameEndsTheSection", "[S]\na=1\n[]\nk=v\n"sv, "S", "k", "none"},
    {"FirstOfDuplicatesCounts", "[S]\na=1\n[T]\n[S]\nk=v\n"sv, "S", "k", "none"},
    {"TrailByteIsNoBracket", "[\x83\x5D]\nk=v\n"sv, "\x83\x5D", "k", "v"},
    {"BracketAsTrailByteClosesNothing", "[S]\n[\x83\x5D\nk=v\n"sv, "S", "k", "v"},
};

constexpr ReadCase Keys[] = {
    {"BlanksAroundTheSign", "[S]\nk \t= \t v\n"sv, "S", "k", "v"},
    {"FirstEqualsSignCounts", "[S]\na = = c\n"sv, "S", "a", "= c"},
    {"MayHoldSpecialLetters", "[S]\na [b];# c=v\n"sv, "S", "a [b];# c", "v"},
    {"FirstOfDuplicatesCounts", "[S]\nk=1\nk=2\n"sv, "S", "k", "1"},
    {"WithoutSignGivesTheDefault", "[S]\nk\n"sv, "S", "k", "none"},
    {"WithoutSignHidesLaterOnes", "[S]\nk\nk=v\n"sv, "S", "k", "none"},
    {"EmptyName", "[S]\n=v\n"sv, "S", "", "v"},
    {"CommentIsFoundWithItsSemicolon", "[S]\n;k=v\n"sv, "S", ";k", "v"},
    {"CommentIsNotFoundWithout", "[S]\n;k=v\n"sv, "S", "k", "none"},
    {"HashIsALetter", "[S]\n#k=v\n"sv, "S", "#k", "v"},
    {"SlashesAreLetters", "[S]\n//k=v\n"sv, "S", "//k", "v"},
    {"SemicolonInTheValue", "[S]\nk=v ; text # more\n"sv, "S", "k", "v ; text # more"},
    {"EmptyValueIsNotTheDefault", "[S]\nk=\n"sv, "S", "k", ""},
};

constexpr ReadCase Names[] = {
    {"CaseOfSectionAndKey", "[SecTion]\nKey=v\n"sv, "sECtION", "kEY", "v"},
    {"FullWidthLettersDiffer", "[S]\n\x82\x60=v\n"sv, "S", "\x82\x81", "none"},
    {"TrailBytesDifferInCase", "[S]\n\x83\x41=1\n\x83\x61=2\n"sv, "S", "\x83\x61", "2"},
    {"BlanksAroundTheAskedNames", "[S]\nk=v\n"sv, " \t\x1AS\t ", "\n k \t", "v"},
    {"AskedLoneLeadByteIsLost", "[S]\nk=v\n"sv, "S\x83", "k\x83", "v"},
};

constexpr ReadCase Quotes[] = {
    {"DoublePair", "[S]\nk=\" v \"\n"sv, "S", "k", " v "},
    {"SinglePair", "[S]\nk=' v '\n"sv, "S", "k", " v "},
    {"LoneQuoteStays", "[S]\nk=\"\n"sv, "S", "k", "\""},
    {"UnevenPairStays", "[S]\nk=\"v'\n"sv, "S", "k", "\"v'"},
    {"OnlyTheOuterPair", "[S]\nk=\"\"v\"\"\n"sv, "S", "k", "\"v\""},
    {"EmptyPair", "[S]\nk=\"\"\n"sv, "S", "k", ""},
    {"TextAfterThemKeepsThem", "[S]\nk=\"v\" x\n"sv, "S", "k", "\"v\" x"},
};

constexpr ReadCase Zeros[] = {
    {"EndTheValue", "[S]\nk=v\0w\n"sv, "S", "k", "v"},
    {"EndTheKey", "[S]\nk\0l=v\n"sv, "S", "k", "v"},
    {"EndTheHeader", "[S\0T]\nk=v\n"sv, "S", "k", "v"},
    {"DoNotEndTheFile", "[S]\na=1\0\nk=v\n"sv, "S", "k", "v"},
    {"BeforeAHeaderHideIt", "\0\0\0[S]\nk=v\n"sv, "S", "k", "none"},
};

constexpr ReadCase DoubleBytes[] = {
    {"TrailBytesAreKept", "[S]\nk=\x83\x7E\x95\x5C\x83\x5C\n"sv, "S", "k", "\x83\x7E\x95\x5C\x83\x5C"},
    {"LeadBeforeCrLfEatsTheCr", "[S]\r\nk=a\x83\r\nl=b\r\n"sv, "S", "k", "a\x81\x45"},
    {"LeadBeforeCrLfKeepsTheNextLine", "[S]\r\nk=a\x83\r\nl=b\r\n"sv, "S", "l", "b"},
    {"LeadBeforeLfEatsTheLineEnd", "[S]\nk=a\x83\nl=b\n"sv, "S", "k", "a\x81\x45l=b"},
    {"LeadBeforeLfHidesTheNextHeader", "[R]\nk=a\x83\n[S]\nl=b\n"sv, "S", "l", "none"},
    {"LeadAtTheEndOfTheFile", "[S]\nk=a\x83"sv, "S", "k", "a\x81\x45"},
    {"LeadBeforeZeroLeavesTheZero", "[S]\nk=a\x83\0b\n"sv, "S", "k", "a\x81\x45"},
    {"BadTrailIsEaten",
     "[S]\nk=a\x83\x20"
     "b\n"sv,
     "S", "k", "a\x81\x45\x62"},
    {"CodeWithoutALetter", "[S]\nk=\x85\x40\n"sv, "S", "k", "\x81\x45"},
    {"SecondCodesOfLetters", "[S]\nk=\xED\x40\x87\x90\xFA\x4A\xEE\xEF\n"sv, "S", "k",
     "\xFA\x5C\x81\xE0\x87\x54\xFA\x40"},
    {"KeptBytes", "[S]\nk=\x80\xA0\xFD\xFE\xFF\xF0\x40\xF9\xFC\n"sv, "S", "k",
     "\x80\xA0\xFD\xFE\xFF\xF0\x40\xF9\xFC"},
    {"HalfWidthKana", "[S]\nk=\xB1\xB2\xDF\n"sv, "S", "k", "\xB1\xB2\xDF"},
};

constexpr ReadCase Unicode[] = {
    {"Utf8Mark", "\xEF\xBB\xBF[S]\nk=\xE3\x82\xA2\n"sv, "S", "k", "\x83\x41"},
    {"Utf8Names", "\xEF\xBB\xBF[\xE3\x82\xA2]\n\xE3\x83\x9F=v\n"sv, "\x83\x41", "\x83\x7E", "v"},
    {"Utf16LittleMark", "\xFF\xFE[\0S\0]\0\r\0\n\0k\0=\0\xA2\x30\r\0\n\0"sv, "S", "k", "\x83\x41"},
    {"Utf16BigMark", "\xFE\xFF\0[\0S\0]\0\r\0\n\0k\0=\x30\xA2\0\r\0\n"sv, "S", "k", "\x83\x41"},
    {"Utf8CutOff", "\xEF\xBB\xBF[S]\nk=a\xE3\x82\n"sv, "S", "k", "a?"},
    {"Utf8AtTheEndOfTheFile", "\xEF\xBB\xBF[S]\nk=a\xE3\x82"sv, "S", "k", "a?"},
    {"NoMarkIsTheCodePage", "[S]\nk=\xE3\x82\xA2\xE3\x82\xA4\n"sv, "S", "k", "\xE3\x82\xA2\xE3\x82\xA4"},
};

template <typename Case>
std::string CaseName(const testing::TestParamInfo<Case>& test) {
    return test.param.Name;
}

INSTANTIATE_TEST_SUITE_P(Lines, ProfileReading, testing::ValuesIn(Lines), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Headers, ProfileReading, testing::ValuesIn(Headers), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Keys, ProfileReading, testing::ValuesIn(Keys), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Names, ProfileReading, testing::ValuesIn(Names), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Quotes, ProfileReading, testing::ValuesIn(Quotes), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Zeros, ProfileReading, testing::ValuesIn(Zeros), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(DoubleBytes, ProfileReading, testing::ValuesIn(DoubleBytes), CaseName<ReadCase>);
INSTANTIATE_TEST_SUITE_P(Unicode, ProfileReading, testing::ValuesIn(Unicode), CaseName<ReadCase>);

TEST_F(ProfileTest, DefaultIsGivenForAMissingFileSectionOrKey) {
    EXPECT_EQ(System.ReadString(File(), "S", "k", "none"), "none");
    EXPECT_EQ(ReadIn("[T]\nk=v\n", "S", "k", "none"), "none");
    EXPECT_EQ(ReadIn("[S]\na=v\n", "S", "k", "none"), "none");
    EXPECT_EQ(System.ReadString(Folder.Path("missing\\list.ini"), "S", "k", "none"), "none");
}

TEST_F(ProfileTest, DefaultLosesBlanksAtItsEndAndQuotes) {
    const std::vector<std::pair<std::string_view, std::string_view>> defaults = {
        {"", ""},       {"  x  ", "  x"}, {"x\t", "x\t"},          {"   ", " "},
        {"\"x\"", "x"}, {"'x'  ", "x"},   {"\"x \" ", "x "},       {"\"", "\""},
        {"\t", "\t"},   {"x\0y"sv, "x"},  {"\x87\x90", "\x81\xE0"}};
    for (const auto& [given, expected] : defaults) {
        EXPECT_EQ(Escaped(System.ReadString(File(), "S", "k", given)), Escaped(expected)) << Escaped(given);
    }
}

TEST_F(ProfileTest, ValuesAreReadWholeAtAnyLength) {
    for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 4093U, 4094U, 4095U, 4096U, 4097U, 16383U,
                                     16384U, 32766U, 32767U, 32768U, 65535U, 65536U, 200000U}) {
        const std::string value = Times(length, "x");
        EXPECT_EQ(ReadIn("[S]\nk=" + value + "\n", "S", "k", ""), value) << length;
        EXPECT_EQ(ReadIn("[S]\nk=\"" + value + "\"\n", "S", "k", ""), value) << "quoted " << length;
    }
}

TEST_F(ProfileTest, LongValuesKeepTheirDoubleByteLettersWhole) {
    for (const std::size_t length : {510U, 511U, 512U, 2046U, 2047U, 2048U, 8191U, 8192U, 40000U}) {
        const std::string value = Times(length, "\x83\x7E");
        EXPECT_EQ(ReadIn("[S]\nk=" + value + "\n", "S", "k", ""), value) << length;
        EXPECT_EQ(ReadIn("[S]\nk='a" + value + "'\n", "S", "k", ""), "a" + value) << "quoted " << length;
    }
}

// Integers

struct IntegerCase {
    std::string_view Text;
    std::uint32_t Expected;
};

constexpr std::int32_t IntegerDefault = 77;

constexpr IntegerCase Integers[] = {
    {"-1", 4294967295U},
    {"+1", 1},
    {"- 1", 0},
    {"--1", 0},
    {"+-1", 0},
    {" 7", 7},
    {"\t7", 7},
    {"7 ", 7},
    {"12abc", 12},
    {"12 34", 12},
    {"1.9", 1},
    {"1,000", 1},
    {"abc", 0},
    {"true", 0},
    {"~5", 0},
    {"\x82\x50\x82\x51", 0},
    {"0x10", 16},
    {"0xfF", 255},
    {"0o17", 15},
    {"0o18", 1},
    {"0b101", 5},
    {"0b12", 1},
    {"-0x10", 4294967280U},
    {"0X10", 0},
    {"0B1", 0},
    {"0x", 0},
    {"0xg", 0},
    {"2147483648", 2147483648U},
    {"4294967295", 4294967295U},
    {"4294967296", 0},
    {"4294967297", 1},
    {"9999999999", 1410065407U},
    {"99999999999", 1215752191U},
    {"-2147483649", 2147483647U},
    {"00000000000000000000000000012", 12},
    {"000000000000000000000000000012", 1},
    {"0000000000000000000000000000012", 0},
    {"\"12\"", 12},
    {"'-3'", 4294967293U},
    {"\"\x01\x1F 5\"", 5},
    {"\"\"", static_cast<std::uint32_t>(IntegerDefault)},
    {"", static_cast<std::uint32_t>(IntegerDefault)},
};

TEST_F(ProfileTest, IntegersAreReadAsThePlatformReadsThem) {
    for (const IntegerCase& test : Integers) {
        Folder.Write(FileName, "[S]\nk=" + std::string(test.Text) + "\n");
        EXPECT_EQ(System.ReadInt(File(), "S", "k", IntegerDefault), static_cast<std::int32_t>(test.Expected))
            << Escaped(test.Text);
    }
}

TEST_F(ProfileTest, VisitedTextsGiveTheSameIntegers) {
    for (const IntegerCase& test : Integers) {
        Folder.Write(FileName, "[S]\nk=" + std::string(test.Text) + "\n");
        System.VisitSection(File(), "S", [&](std::string_view, std::string_view value) {
            EXPECT_EQ(ProfileInteger(value, IntegerDefault), static_cast<std::int32_t>(test.Expected))
                << Escaped(test.Text);
        });
    }
}

TEST_F(ProfileTest, MissingIntegerIsTheDefault) {
    EXPECT_EQ(System.ReadInt(File(), "S", "k", -5), -5);
    Folder.Write(FileName, "[S]\nk\n");
    EXPECT_EQ(System.ReadInt(File(), "S", "k", -5), -5);
}

// Visiting a section

struct VisitCase {
    const char* Name;
    std::string_view File;
    std::string_view Section;
    std::string_view Expected;
};

void PrintTo(const VisitCase& test, std::ostream* out) {
    *out << Escaped(test.File);
}

class ProfileVisiting : public ProfileTest, public testing::WithParamInterface<VisitCase> {};

TEST_P(ProfileVisiting, GivesTheKeysInTheirOrder) {
    const VisitCase& test = GetParam();
    Folder.Write(FileName, test.File);
    EXPECT_EQ(Escaped(Visited(test.Section)), Escaped(test.Expected));
}

constexpr VisitCase Visits[] = {
    {"Plain", "[R]\na=0\n[S]\na=1\nb=2\n[T]\nc=3\n"sv, "S", "a=1|b=2|"},
    {"MissingSection", "[R]\na=0\n"sv, "S", ""},
    {"EmptySection", "[S]\n[R]\na=0\n"sv, "S", ""},
    {"EmptyFile", ""sv, "S", ""},
    {"Duplicates", "[S]\na=1\nA=2\na=3\n"sv, "S", "a=1|A=2|a=3|"},
    {"OnlyTheFirstSection", "[S]\na=1\n[R]\n[S]\nb=2\n"sv, "S", "a=1|"},
    {"NoComments", "[S]\n;a=1\n; text\nb=2\n ;c=3\n"sv, "S", "b=2|"},
    {"NoLinesWithoutSign", "[S]\na\nb=2\n[c\n"sv, "S", "b=2|"},
    {"HiddenByALineWithoutSign", "[S]\nK\nb=2\nk=3\n"sv, "S", "b=2|"},
    {"NotHiddenByALaterOne", "[S]\nk=3\nk\n"sv, "S", "k=3|"},
    {"QuotesRemoved", "[S]\na=\" x \"\nb='y'\nc=\"\nd=\"\"z\"\"\n"sv, "S", "a= x |b=y|c=\"|d=\"z\"|"},
    {"BlanksDropped", "[S]\n a = 1 \n\tb\t=\t2\t\n"sv, "S", "a=1|b=2|"},
    {"EmptyValues", "[S]\na=\nb= \nc=\"\"\n"sv, "S", "a=|b=|c=|"},
    {"EmptyKeyOnce", "[S]\n=1\n=2\na=3\n=4\n"sv, "S", "=1|a=3|=4|"},
    {"EqualsSignInTheValue", "[S]\na=b=c\n"sv, "S", "a=b=c|"},
    {"AskedWithBlanksAndInAnotherCase", "[Sec]\na=1\n"sv, " sEC\t", "a=1|"},
    {"LinesBeforeTheFirstHeader", "a=1\n;b=2\n[S]\nc=3\n"sv, "", "a=1|"},
    {"ZerosCut", "[S]\na\0x=1\0y\nb=2\n"sv, "S", "a=1|b=2|"},
    {"LeadByteEatsTheLineEnd", "[S]\na=1\x83\nb=2\nc=3\n"sv, "S",
     "a=1\x81\x45"
     "b=2|c=3|"},
    {"DoubleByteLetters", "[S]\n\x83\x7E=\x95\x5C\x83\x5D\n\x83\x41=1\n\x83\x61=2\n"sv, "S",
     "\x83\x7E=\x95\x5C\x83\x5D|\x83\x41=1|\x83\x61=2|"},
    {"SecondCodesOfLetters", "[S]\na=\xED\x40\n"sv, "S", "a=\xFA\x5C|"},
    {"Utf8Mark", "\xEF\xBB\xBF[S]\n\xE3\x82\xA2=\xE3\x83\x9F\n"sv, "S", "\x83\x41=\x83\x7E|"},
    {"Utf16Mark", "\xFF\xFE[\0S\0]\0\n\0k\0=\0\xDF\x30\n\0"sv, "S", "k=\x83\x7E|"},
    {"CrOnly", "[S]\ra=1\rb=2\r"sv, "S", "a=1|b=2|"},
};

INSTANTIATE_TEST_SUITE_P(Cases, ProfileVisiting, testing::ValuesIn(Visits), CaseName<VisitCase>);

TEST_F(ProfileTest, VisitingAMissingFileOrAFolderGivesNothing) {
    EXPECT_EQ(Visited("S"), "");
    Folder.AddFolder(FileName);
    EXPECT_EQ(Visited("S"), "");
}

TEST_F(ProfileTest, LargeSectionsAreVisitedWhole) {
    std::string content = "[S]\r\n";
    std::string expected;
    for (int number = 0; number < 3000; ++number) {
        const std::string line = "TemplateData" + std::to_string(number) + "=0~\x83\x7E\x95\x5C~1~1~14~x.pmt";
        content += line + "\r\n";
        expected += line + "|";
    }
    Folder.Write(FileName, content);
    EXPECT_EQ(Visited("S"), expected);
}

// Writing one key

struct WriteCase {
    const char* Name;
    std::string_view File;
    std::string_view Section;
    std::optional<std::string_view> Key;
    std::optional<std::string_view> Value;
    std::string_view Expected;
};

void PrintTo(const WriteCase& test, std::ostream* out) {
    *out << Escaped(test.File);
}

class ProfileWriting : public ProfileTest, public testing::WithParamInterface<WriteCase> {};

TEST_P(ProfileWriting, LeavesTheseBytes) {
    const WriteCase& test = GetParam();
    Folder.Write(FileName, test.File);
    EXPECT_TRUE(System.WriteString(File(), test.Section, test.Key, test.Value));
    EXPECT_EQ(Escaped(Folder.Read(FileName)), Escaped(test.Expected));
}

constexpr std::nullopt_t None = std::nullopt;

const WriteCase Writes[] = {
    {"ExistingKey", "[S]\r\na=1\r\nk=2\r\nb=3\r\n"sv, "S", "k", "v", "[S]\r\na=1\r\nk=v\r\nb=3\r\n"},
    {"KeepsTheSpelling", "[Sec]\nKey=1\n"sv, "sEC", "kEY", "v", "[Sec]\r\nKey=v\r\n"},
    {"FirstOfDuplicates", "[S]\nk=1\nk=2\n[S]\nk=3\n"sv, "S", "k", "v",
     "[S]\r\nk=v\r\nk=2\r\n[S]\r\nk=3\r\n"},
    {"NewKeyAtTheEndOfTheSection", "[S]\na=1\n; text\n\n[T]\nb=2\n"sv, "S", "k", "v",
     "[S]\r\na=1\r\n; text\r\nk=v\r\n[T]\r\nb=2\r\n"},
    {"NewSectionAtTheEndOfTheFile", "[R]\na=1"sv, "S", "k", "v", "[R]\r\na=1\r\n[S]\r\nk=v\r\n"},
    {"EmptyFile", ""sv, "S", "k", "v", "[S]\r\nk=v\r\n"},
    {"LineWithoutSignGetsTheValue", "[S]\nk\n"sv, "S", "k", "v", "[S]\r\nk=v\r\n"},
    {"BeforeTheFirstHeader", "a=1\n[S]\n"sv, "", "k", "v", "a=1\r\nk=v\r\n[S]\r\n"},
    {"EmptyKey", "[S]\na=1\n"sv, "S", "", "v", "[S]\r\na=1\r\n=v\r\n"},
    {"EmptyValue", "[S]\nk=1\n"sv, "S", "k", "", "[S]\r\nk=\r\n"},
    {"LeadingBlanksOfTheValue", ""sv, "S", "k", " \t\r\n\x1Av", "[S]\r\nk=v\r\n"},
    {"TrailingBlanksOfTheValue", ""sv, "S", "k", "v \t", "[S]\r\nk=v \t\r\n"},
    {"TrailingBlanksGoAtTheNextWrite", "[S]\r\na=1  \r\n"sv, "S", "k", "v", "[S]\r\na=1\r\nk=v\r\n"},
    {"QuotesAsTheyAre", ""sv, "S", "k", "\"v\"", "[S]\r\nk=\"v\"\r\n"},
    {"BlanksAroundNewNames", ""sv, " S  ", "\tk ", "v", "[S  ]\r\nk =v\r\n"},
    {"BlanksAroundNamesThatAreThere", "[S]\nk=1\n"sv, " S  ", "\tk ", "v", "[S]\r\nk=v\r\n"},
    {"LineEndInTheValue", ""sv, "S", "k", "v\r\n[T]\r\nl=w", "[S]\r\nk=v\r\n[T]\r\nl=w\r\n"},
    {"EqualsSignInTheKey", ""sv, "S", "k=l", "v", "[S]\r\nk=l=v\r\n"},
    {"BracketsInTheKey", ""sv, "S", "[k]", "v", "[S]\r\n[k]=v\r\n"},
    {"BracketInTheSection", ""sv, "S]T", "k", "v", "[S]T]\r\nk=v\r\n"},
    {"SemicolonInTheKey", "[S]\n;k=1\n"sv, "S", ";k", "v", "[S]\r\n;k=v\r\n"},
    {"LoneLeadByteAtTheEnd", ""sv, "S", "k\x83", "v\x83", "[S]\r\nk=v\r\n"},
    {"BadTrailByte", ""sv, "S", "k", "a\x83\x20z", "[S]\r\nk=a\x81\x45z\r\n"},
    {"SecondCodesOfLetters", ""sv, "\x87\x90", "\xED\x40", "\xFA\x54", "[\x81\xE0]\r\n\xFA\x5C=\x81\xCA\r\n"},
    {"DoubleByteLetters", ""sv, "\x83\x5D", "\x83\x7E", "\x95\x5C", "[\x83\x5D]\r\n\x83\x7E=\x95\x5C\r\n"},

    {"SameValueTouchesNothing", "[S]\n k = v \n\n"sv, "S", "k", " v", "[S]\n k = v \n\n"},
    {"RemoveKey", "[S]\na=1\nk=2\nk=3\n"sv, "S", "k", None, "[S]\r\na=1\r\nk=3\r\n"},
    {"RemoveTheOnlyKeyKeepsTheHeader", "[S]\nk=2\n"sv, "S", "k", None, "[S]\r\n"},
    {"RemoveKeyLooksThroughAllSections", "[S]\na=1\n[S]\nk=2\n"sv, "S", "k", None, "[S]\r\na=1\r\n[S]\r\n"},
    {"RemoveKeyDropsNoBlanks", "[S]\nk=2\n"sv, " S", "k ", None, "[S]\nk=2\n"},
    {"RemoveMissingKeyTouchesNothing", "[S]\n a = 1\n"sv, "S", "k", None, "[S]\n a = 1\n"},

    {"RemoveSection", "x=0\n[R]\na=1\n[S]\n; text\nline\nk=2\n[T]\nb=3"sv, "S", None, None,
     "x=0\r\n[R]\r\na=1\r\n[T]\r\nb=3\r\n"},
    {"RemoveSectionIgnoresTheValue", "[S]\nk=2\n"sv, "s", None, "v", ""},
    {"RemoveTheFirstOfTwo", "[S]\na=1\n[S]\nb=2\n"sv, "S", None, None, "[S]\r\nb=2\r\n"},
    {"RemoveSectionDropsNoBlanks", "[S]\nk=2\n"sv, " S ", None, None, "[S]\nk=2\n"},
    {"RemoveMissingSectionTouchesNothing", "[R]\n a = 1\n"sv, "S", None, None, "[R]\n a = 1\n"},

    {"MakesTheFileRegular", "\n [ R ] text\r\r\n a = = 1 \n;c = 2\n; d\n\nline\n=1\n=2\n[]\n#e=f\n[R2\n"sv,
     "S", "k", "v", "[R]\r\na== 1\r\n;c=2\r\n; d\r\nline\r\n=1\r\n#e=f\r\n[R2\r\n[S]\r\nk=v\r\n"},
    {"ZerosVanish", "[R\0x]\na\0b=1\0z\n\0\nc=2\n"sv, "S", "k", "v",
     "[R]\r\na=1\r\n\r\nc=2\r\n[S]\r\nk=v\r\n"},
    {"BrokenBytesBecomeADot", "[R]\na=\x83\nb=\x85\x40\n"sv, "S", "k", "v",
     "[R]\r\na=\x81\x45"
     "b=\x81\x45\r\n[S]\r\nk=v\r\n"},
    {"Utf8FileStaysSo", "\xEF\xBB\xBF[S]\na=\xE3\x82\xA2\xF0\x9F\x98\x80\n"sv, "S", "k", "\x83\x7E",
     "\xEF\xBB\xBF[S]\r\na=\xE3\x82\xA2\xF0\x9F\x98\x80\r\nk=\xE3\x83\x9F\r\n"},
    {"Utf16FileStaysSo", "\xFF\xFE[\0S\0]\0\n\0a\0=\0\x3D\xD8\x00\xDE\n\0"sv, "S", "k", "\x83\x7E",
     "\xFF\xFE[\0S\0]\0\r\0\n\0a\0=\0\x3D\xD8\x00\xDE\r\0\n\0k\0=\0\xDF\x30\r\0\n\0"sv},
    {"Utf16HalvesOfPairsStay", "\xFF\xFE[\0S\0]\0\n\0a\0=\0\x3D\xD8\x00\xE0|\0\x00\xDE\n\0"sv, "S", "k",
     "\x83\x7E",
     "\xFF\xFE[\0S\0]\0\r\0\n\0a\0=\0\x3D\xD8\x00\xE0|\0\x00\xDE\r\0\n\0k\0=\0\xDF\x30\r\0\n\0"sv},
    {"Utf8LastCharacterStays", "\xEF\xBB\xBF[S]\na=\xF4\x8F\xBF\xBF\n"sv, "S", "k", "v",
     "\xEF\xBB\xBF[S]\r\na=\xF4\x8F\xBF\xBF\r\nk=v\r\n"},
    {"Utf16HalfAtTheEndStays", "\xFF\xFE[\0S\0]\0\n\0a\0=\0\x3D\xD8"sv, "S", "k", "\x83\x7E",
     "\xFF\xFE[\0S\0]\0\r\0\n\0a\0=\0\x3D\xD8\r\0\n\0k\0=\0\xDF\x30\r\0\n\0"sv},
    {"Utf16BigFileStaysSo", "\xFE\xFF\0[\0S\0]\0\n"sv, "S", "k", "\x83\x7E",
     "\xFE\xFF\0[\0S\0]\0\r\0\n\0k\0=\x30\xDF\0\r\0\n"sv},
    {"OnlyAMark", "\xEF\xBB\xBF"sv, "S", "k", "v", "\xEF\xBB\xBF[S]\r\nk=v\r\n"},
};

INSTANTIATE_TEST_SUITE_P(Cases, ProfileWriting, testing::ValuesIn(Writes), CaseName<WriteCase>);

TEST_F(ProfileTest, ValuesAreWrittenWholeAtAnyLength) {
    for (const std::size_t length : {32766U, 32767U, 65535U, 65536U, 65539U, 200000U}) {
        const std::string value = Times(length, "x");
        EXPECT_TRUE(System.WriteString(File(), "S", "k\x83\x7E", value + "\x83"));
        EXPECT_EQ(Folder.Read(FileName), "[S]\r\nk\x83\x7E=" + value + "\r\n") << length;
    }
    const std::string letters = Times(40000, "\x83\x7E");
    EXPECT_TRUE(System.WriteString(File(), "S", "k\x83\x7E", letters));
    EXPECT_EQ(Folder.Read(FileName), "[S]\r\nk\x83\x7E=" + letters + "\r\n");
}

TEST_F(ProfileTest, WritingMakesAMissingFile) {
    EXPECT_TRUE(System.WriteString(File(), "S", "k", "v"));
    EXPECT_EQ(Folder.Read(FileName), "[S]\r\nk=v\r\n");
}

TEST_F(ProfileTest, RemovingInAMissingFileMakesNone) {
    EXPECT_TRUE(System.WriteString(File(), "S", "k", std::nullopt));
    EXPECT_TRUE(System.WriteString(File(), "S", std::nullopt, std::nullopt));
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ProfileTest, WritingIntoAMissingFolderFailsAndMakesNone) {
    EXPECT_FALSE(System.WriteString(Folder.Path("missing\\list.ini"), "S", "k", "v"));
    EXPECT_FALSE(System.WriteString(Folder.Path("missing\\list.ini"), "S", std::nullopt, std::nullopt));
    EXPECT_FALSE(ReplaceInPlace(Folder.Path("missing\\list.ini"), "S", {{"k", "v"}}));
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ProfileTest, WritingToAFolderFails) {
    Folder.AddFolder(FileName);
    EXPECT_FALSE(System.WriteString(File(), "S", "k", "v"));
    EXPECT_FALSE(ReplaceInPlace(File(), "S", {{"k", "v"}}));
}

TEST_F(ProfileTest, FileWithAJapaneseNameIsFound) {
    const std::string name = "\x83\x7E\x95\x5C\x83\x5C.ini";
    EXPECT_TRUE(System.WriteString(Folder.Path(name), "S", "k", "v"));
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{name});
    EXPECT_EQ(System.ReadString(Folder.Path(name), "S", "k", ""), "v");
}

TEST_F(ProfileTest, ChangesByOthersAreSeen) {
    EXPECT_EQ(ReadIn("[S]\nk=1\n", "S", "k", ""), "1");
    EXPECT_EQ(ReadIn("[S]\nk=2\n", "S", "k", ""), "2");
}

TEST_F(ProfileTest, FileInAFileIsMissing) {
    Folder.Write("file", "[S]\nk=1\n");
    const std::string path = Folder.Path("file\\list.ini");
    EXPECT_TRUE(System.VisitSection(path, "S", [](std::string_view, std::string_view) { ADD_FAILURE(); }));
    EXPECT_EQ(System.ReadString(path, "S", "k", "none"), "none");
    EXPECT_FALSE(System.WriteString(path, "S", "k", "v"));
}

// Replacing a section

struct ContentCase {
    const char* Name;
    std::string_view File;
};

constexpr ContentCase Contents[] = {
    {"Empty", ""sv},
    {"Alone", "[List]\r\nNum=1\r\nData0=x\r\n"sv},
    {"First", "[List]\r\nNum=1\r\n[Other]\r\na=1\r\n"sv},
    {"Between", "[Alpha]\r\nx=1\r\n[List]\r\nNum=9\r\nData7=stale\r\n[Beta]\r\nz=3\r\n"sv},
    {"Last", "[Alpha]\r\nx=1\r\n[List]\r\nNum=9\r\n"sv},
    {"Lf", "[Alpha]\nx=1\n[List]\nNum=9\n[Beta]\nz=3\n"sv},
    {"Cr", "[Alpha]\rx=1\r[List]\rNum=9\r[Beta]\rz=3\r"sv},
    {"NoFinalLineEnd", "[Alpha]\r\nx=1\r\n[List]\r\nNum=9"sv},
    {"BlankLines", "\r\n[Alpha]\r\n\r\nx=1\r\n\r\n[List]\r\n\r\nNum=9\r\n\r\n\r\n"sv},
    {"Comments", "; top\r\n[Alpha]\r\n; a = 1\r\nx=1\r\n[List]\r\n; inside\r\nNum=9\r\n[Beta]\r\n;end"sv},
    {"Twice", "[List]\na=1\n[Beta]\nz=3\n[LIST]\nTemplateData7=stale\n"sv},
    {"ManyTimes", "[List]\n[list]\na=1\n[List]\n[b]\n[LIST]\n[List]\nk=1\n"sv},
    {"NotThere", "[Alpha]\nx = 1\n"sv},
    {"BeforeTheFirstHeader", "x=1\nline\n[List]\nNum=1\n"sv},
    {"Torn", "\0\0\0\0\0\0\0\0[List]\r\nNum=1\r\n"sv},
    {"TornAtItsEnd", "[Alpha]\r\nx=1\r\n[List]\r\nNum=1\r\nData0=\0\0\0\0\0\0\0"sv},
    {"ZerosThatNeedTwoWrites", "[A \0 ]\na \0b=1\nk=v \0\n=1\n\0\n=2\n[]\n=3\n[List]\n\0x=1\n"sv},
    {"EmptyHeaders", "=1\n[]\n=2\n[ ]\n=3\n[List]\n[]\n=4\n[x]\n[]\na=b\n"sv},
    {"LeadByteBeforeTheHeader", "[Alpha]\nx=\x83\n[List]\nNum=1\n"sv},
    {"SecondCodes", "[Alpha]\nx=\xED\x40\n[List]\nNum=1\n"sv},
    {"SecondCodesInTheSection", "[Alpha]\n[List]\nx=\xED\x40\n[Beta]\nz=3\n"sv},
    {"SecondCodesInItsCopy", "[List]\na=1\n[Beta]\n[List]\nx=\xED\x40\n\xED\x40\n[Gamma]\nz=3\n"sv},
    {"SecondCodesInItsHeader", "[List]\na=1\n[\xED\x40]\nx=1\n[Beta]\n"sv},
    {"DoubleByteBeforeTheNextHeader", "[List]\nx=\x83\x81\n[Beta]\nz=\x83\x81\n"sv},
    {"LeadByteBeforeTheNextHeader", "[List]\nx=\x83\n[Beta]\nz=3\n[Gamma]\n"sv},
    {"LeadByteBeforeTheNextHeaderAndCr", "[List]\rx=\x83\r[Beta]\rz=3\r[Gamma]\r"sv},
    {"LeadByteBeforeTheNextHeaderAndCrLf", "[List]\r\nx=\x83\r\n[Beta]\r\nz=3\r\n"sv},
    {"LeadByteBeforeBlanksAndTheNextHeader", "[List]\nx=\x83 \n[Beta]\nz=3\n\x83\n [Gamma]\n"sv},
    {"LeadByteBeforeTheNextBracket", "[List]\nx=1\n\x83[Beta]\nz=3\n[Gamma]\n"sv},
    {"LeadByteInTheNextHeader", "[List]\nx=1\n[a\x83\n]\nb=1\n[c]\nd=2\n"sv},
    {"LeadByteBeforeTheNextClosingBracket", "[List]\nx=1\n[a\x83]\nb=1\n[c]\nd=2\n"sv},
    {"LeadByteInTheSectionsHeader", "[Alpha]\n[List\x83]\nx=1\n[Beta]\nz=3\n"sv},
    {"LeadByteBehindTheSectionsHeader", "[List]\x83\n[Beta]\nz=3\n[Gamma]\n"sv},
    {"LeadByteAtTheEnd", "[List]\nx=\x83"sv},
    {"LeadByteAndZeroBeforeTheNextHeader", "[List]\nx=\x83\0\n[Beta]\nz=3\n"sv},
    {"Brackets",
     "a=[List]\n[open\n[Alpha]\n x [List]\n[List\n\x81\x5BList]\n \t[List]\nNum=1\n[[List]\n]\n[B]x"sv},
    {"OnlyBlanksBetweenHeaders", "[Alpha]\n \n\r\n[List]\r\r \x1A \n[Beta] ;\n"sv},
    {"Japanese", "[\x83\x5D]\n\x83\x7E=\x95\x5C\n[List]\nNum=1\n"sv},
    {"BeginsWithAMarkOnceWritten", " \xFF\xFE[A\r\n[List]\r\nNum=1\r\n[B]\r\nb=1\r\n"sv},
    {"BeginsWithAMarkOnceWrittenAndHasCopies",
     " \xFF\xFE[A\r\n[List]\r\nNum=1\r\n[List]\r\nx=\xED\x40\r\n[B]\r\nb=1\r\n"sv},
    {"Utf8", "\xEF\xBB\xBF[Alpha]\nx=\xE3\x82\xA2\n[List]\nNum=1\n"sv},
    {"Utf16", "\xFF\xFE[\0L\0i\0s\0t\0]\0\n\0a\0=\0\x31\0\n\0[\0B\0]\0"sv},
};

using NamedEntries = std::pair<const char*, ProfileEntries>;

const NamedEntries PlainEntries = {"plain",
                                   {{"Num", "5"},
                                    {"Data0", "0~\x83\x7E~1~1~14~a.pmt"},
                                    {"Data1", "b"},
                                    {"Data2", "\"c\""},
                                    {"Data3", ""},
                                    {"Data4", "="},
                                    {"\x83\x41", "1"},
                                    {"\x83\x61", "2"}}};

const NamedEntries OddEntries[] = {
    {"none", {}},
    {"one", {{"Num", "0"}}},
    {"three", {{"Num", "2"}, {"Data0", "a"}, {"Data1", "b"}}},
    {"odd values",
     {{"Num", "5"},
      {"Data0", "trailing \t"},
      {"Data1", "\t leading"},
      {"Data2", "lone\x83"},
      {"Data3", "bad\x83\x20z"},
      {"Data4", "\xED\x40\x85\x40"},
      {"Data5", "ze\0ro"s},
      {"Data6", "after"}}},
    {"odd keys",
     {{"Num", "5"},
      {" lead", "1"},
      {"trail ", "2"},
      {"a=b", "3"},
      {";c", "4"},
      {"[d", "5"},
      {"", "6"},
      {"", "7"},
      {"[e", "]"},
      {"last", "8"}}},
    {"header as key", {{"Num", "1"}, {"a", "1"}, {"[k]", "1"}, {"b", "2"}, {"c", "3"}}},
    {"duplicates", {{"Num", "1"}, {"A", "1"}, {"b", "2"}, {"a", "3"}, {"B", "2"}, {"c", "4"}, {"num", "5"}}},
    {"names out of order", {{"a", "1"}, {"d", "2"}, {"c", "3"}, {"d", "4"}, {"e", "5"}, {"f", "6"}}},
    {"a name again at the end", {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}, {"e", "5"}, {"B", "6"}}},
    {"a header without a name",
     {{"Num", "1"}, {"a", "1"}, {"b", "2"}, {"c", "3\n[]\nx\n=y"}, {"d", "4"}, {"e", "5"}, {"f", "6"}}},
    {"line ends",
     {{"Num", "1"}, {"a", "1\r\nb=2"}, {"c", "3\n[List]\nd=4"}, {"e", "5\r[Other]"}, {"f", "6"}}},
};

std::vector<std::string> PlainValues() {
    return {
        "0~\x83\x7E~1~1~14~a.pmt", "b", "\"c\"", "", "=", "[x]", ";", "7", "8", "9", "a b", "\xB1\xA0\x80"};
}

const ProfileEntries FewNamed = {{"Num", "12"}};
const ProfileEntries MoreNamed = {{"a", "1"}, {"b", "2"}, {"c", "3"}, {"Num", "12"}};

NamedEntries Numbered(const std::string& prefix, const std::vector<std::string>& values,
                      ProfileEntries entries = FewNamed) {
    AddNumbered(entries, prefix, values);
    return {"numbered", entries};
}

class ProfileReplacingOdd : public ProfileTest {
protected:
    void ExpectSameAsPlainSequence(std::string_view content, const NamedEntries& list) const {
        Folder.Write(FileName, content);
        EXPECT_TRUE(ReplaceInPlace(File(), "List", list.second));
        EXPECT_EQ(Escaped(Folder.Read(FileName)),
                  Escaped(ReplacedPlainly(Folder, content, "List", list.second)))
            << list.first;
    }
};

class ProfileReplacing : public ProfileReplacingOdd, public testing::WithParamInterface<ContentCase> {};

TEST_P(ProfileReplacing, LeavesTheBytesOfThePlainSequence) {
    ExpectSameAsPlainSequence(GetParam().File, PlainEntries);
}

TEST_P(ProfileReplacing, ByNumberedEntriesLeavesTheBytesOfThePlainSequence) {
    ExpectSameAsPlainSequence(GetParam().File, Numbered("Data", PlainValues()));
}

INSTANTIATE_TEST_SUITE_P(Cases, ProfileReplacing, testing::ValuesIn(Contents), CaseName<ContentCase>);

TEST_F(ProfileReplacingOdd, LeavesTheBytesOfThePlainSequence) {
    for (const NamedEntries& list : OddEntries) {
        ExpectSameAsPlainSequence("[Alpha]\r\nx=1\r\n[List]\r\nNum=9\r\n[Beta]\r\nz=3\r\n"sv, list);
        ExpectSameAsPlainSequence("[A \0 ]\na \0b=1\nk=v \0\n=1\n\0\n=2\n[]\n=3\n"sv, list);
    }
}

TEST_F(ProfileReplacingOdd, ByNumberedEntriesWithAnOddValueLeavesTheBytesOfThePlainSequence) {
    const std::string odd[] = {
        " lead",  "trail ",   " ",       "tab\tinside",      "tab\t",     "a\r\nb=2", "3\n[List]\nd=4",
        "5\r[B]", "lone\x83", "b\x83 z", "\xED\x40\x85\x40", "ze\0ro\0"s, "\x1F",     "\x81\x45\x81"};
    for (const std::string& value : odd) {
        std::vector<std::string> values = PlainValues();
        values[7] = value;
        ExpectSameAsPlainSequence("[Alpha]\r\nx=1\r\n[List]\r\nNum=9\r\n[Beta]\r\nz=3\r\n"sv,
                                  Numbered("Data", values));
    }
}

TEST_F(ProfileReplacingOdd, ByNumberedEntriesWithAnOddPrefixLeavesTheBytesOfThePlainSequence) {
    for (const char* const prefix : {"", " ", "Data ", " Data", "[Data", "Data=", "=", ";Data", "\x83",
                                     "Data\x83", "Data\n", "\tData", "Data\xED\x40", "num"}) {
        for (const ProfileEntries& named : {FewNamed, MoreNamed}) {
            ExpectSameAsPlainSequence("[List]\r\nNum=9\r\n"sv, Numbered(prefix, PlainValues(), named));
        }
    }
}

TEST_F(ProfileReplacingOdd, ByNumberedEntriesAndOthersOfTheirNamesLeavesTheBytesOfThePlainSequence) {
    const ProfileEntries named[] = {{{"Data3", "named"}},
                                    {{"data3", "named"}, {"Num", "12"}},
                                    {{"Data11", "named"}, {"Num", "12"}},
                                    {{"Num", "12"}, {"Data3x", "named"}},
                                    {{"a", "1"}, {"b", "2"}, {"Num", "12"}, {"Data3", "named"}}};
    for (const ProfileEntries& entries : named) {
        ExpectSameAsPlainSequence("[List]\r\nNum=9\r\n"sv, Numbered("Data", PlainValues(), entries));
    }
}

TEST_F(ProfileReplacingOdd, ByEntriesOnBothSidesOfNumberedOnesLeavesTheBytesOfThePlainSequence) {
    NamedEntries list = Numbered("a", PlainValues());
    AddNumbered(list.second, "b", PlainValues());
    ExpectSameAsPlainSequence("[List]\nNum=9\n"sv, list);
    AddNumbered(list.second, "A", {"again", "and again", "once more"});
    ExpectSameAsPlainSequence("[List]\nNum=9\n"sv, list);
    list.second.Add("b1", "replaced");
    ExpectSameAsPlainSequence("[List]\nNum=9\n"sv, list);
}

TEST_F(ProfileReplacingOdd, RemovingASectionOfAMissingFileIsDone) {
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("new.ini"), "List", {}), FileError::None);
    EXPECT_EQ(Visited("List"), "");
}

/// Without the section, the file begins with a mark and is read anew.
TEST_F(ProfileReplacingOdd, RemovingTheSectionLeavesTheBytesOfThePlainSequence) {
    const NamedEntries none = {"none", {}};
    ExpectSameAsPlainSequence(" \xFF\xFE[A\r\n[List]\r\nNum=1\r\n[B]\r\nb=1\r\n"sv, none);
    ExpectSameAsPlainSequence(" \xEF\xBB\xBF[A]\r\n[List]\r\nNum=1\r\n[B]\r\nb=1\r\n"sv, none);
}

TEST_F(ProfileTest, ReplacingASectionWithAnOddNameLeavesTheBytesOfThePlainSequence) {
    const ProfileEntries entries = {{"Num", "4"}, {"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}};
    for (const std::string_view section : {" S"sv, "S "sv, "S]"sv, "[S]"sv, "S\nT"sv, "S\x83"sv, ";S"sv}) {
        for (const std::string_view content : {""sv, "[S]\na=0\n[R]\n[S ]\nb=0\n"sv}) {
            Folder.Write(FileName, content);
            EXPECT_TRUE(ReplaceInPlace(File(), section, entries));
            EXPECT_EQ(Escaped(Folder.Read(FileName)),
                      Escaped(ReplacedPlainly(Folder, content, section, entries)))
                << Escaped(section) << " in " << Escaped(content);
        }
    }
}

TEST_F(ProfileTest, ReplacedSectionMovesToTheEnd) {
    Folder.Write(FileName, "[Alpha]\nx=1\n\n[List]\nNum=9\nData7=stale\n[Beta]\nz=3\n\n");
    EXPECT_TRUE(
        ReplaceInPlace(File(), "List", {{"Num", "3"}, {"Data0", "a"}, {"Data1", "b"}, {"Data2", "c"}}));
    EXPECT_EQ(Folder.Read(FileName), "[Alpha]\r\nx=1\r\n[Beta]\r\nz=3\r\n"
                                     "[List]\r\nNum=3\r\nData0=a\r\nData1=b\r\nData2=c\r\n");
}

TEST_F(ProfileTest, ReplacingMakesAMissingFile) {
    EXPECT_TRUE(ReplaceInPlace(File(), "List", {{"Num", "0"}}));
    EXPECT_EQ(Folder.Read(FileName), "[List]\r\nNum=0\r\n");
}

TEST_F(ProfileTest, ReplacingByNothingRemovesTheSection) {
    Folder.Write(FileName, "[List]\nNum=1\n[Beta]\nz=3\n[List]\n");
    EXPECT_TRUE(ReplaceInPlace(File(), "List", {}));
    EXPECT_EQ(Folder.Read(FileName), "[Beta]\r\nz=3\r\n");
}

TEST_F(ProfileTest, ReplacingByNothingTouchesNothingWhenThereIsNone) {
    Folder.Write(FileName, "[Beta]\n z = 3\n");
    EXPECT_TRUE(ReplaceInPlace(File(), "List", {}));
    EXPECT_EQ(Folder.Read(FileName), "[Beta]\n z = 3\n");
}

TEST_F(ProfileTest, SectionWithoutANameCannotBeReplaced) {
    Folder.Write(FileName, "a=1\n");
    for (const std::string_view section : {""sv, "  "sv, "\0S"sv}) {
        EXPECT_FALSE(ReplaceInPlace(File(), section, {{"k", "v"}}));
    }
    EXPECT_EQ(Folder.Read(FileName), "a=1\n");
}

TEST_F(ProfileTest, ReplacingWithALongValueLeavesTheBytesOfThePlainSequence) {
    for (const std::size_t length : {32766U, 32767U, 65536U, 70000U}) {
        const ProfileEntries entries = {
            {"Num", "4"}, {"a", "1"}, {"b", "2"}, {"c", Times(length, "x")}, {"d", "3"}};
        Folder.Write(FileName, "[List]\nNum=1\n[B]\n");
        EXPECT_TRUE(ReplaceInPlace(File(), "List", entries));
        const std::string expected = ReplacedPlainly(Folder, "[List]\nNum=1\n[B]\n", "List", entries);
        EXPECT_EQ(Folder.Read(FileName), expected) << length;
    }
}

TEST_F(ProfileTest, ReplacingIntoAnotherFileLeavesTheSourceAlone) {
    const std::string content = "[List]\nNum=1\n[Beta]\n z = 3\n";
    Folder.Write(FileName, content);
    Folder.Write("target.ini", "overwritten");
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("target.ini"), "List", {{"Num", "0"}}),
              FileError::None);
    EXPECT_EQ(Folder.Read("target.ini"), "[Beta]\r\nz=3\r\n[List]\r\nNum=0\r\n");
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("target.ini"), "None", {}), FileError::None);
    EXPECT_EQ(Folder.Read("target.ini"), content);
    EXPECT_EQ(Folder.Read(FileName), content);
}

TEST_F(ProfileTest, AMissingSourceCountsAsEmpty) {
    Folder.Write("target.ini", "");
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("target.ini"), "List", {{"Num", "0"}}),
              FileError::None);
    EXPECT_EQ(Folder.Read("target.ini"), "[List]\r\nNum=0\r\n");
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"target.ini"});
}

TEST_F(ProfileTest, ASourceThatCannotBeReadIsAnError) {
    Folder.AddFolder(FileName);
    Folder.Write("target.ini", "");
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("target.ini"), "List", {{"Num", "0"}}),
              FileError::AccessDenied);
    EXPECT_EQ(System.ReplaceSection(Folder.Path("none\\a.ini"), Folder.Path("target.ini"), "List", {}),
              FileError::PathNotFound);
}

TEST_F(ProfileTest, ASourceThatAnotherHoldsIsASharingViolation) {
    Folder.Write(FileName, "[List]\nNum=1\n");
    Folder.Write("target.ini", "");
    const OpenResult held =
        SystemFiles().Open({File(), FileAccess::ReadWrite, FileShare::None, FileDisposition::OpenExisting});
    ASSERT_EQ(held.Error, FileError::None);
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("target.ini"), "List", {{"Num", "0"}}),
              FileError::SharingViolation);
}

TEST_F(ProfileTest, ReplacedSectionReadsBack) {
    ProfileEntries entries = {{"Num", "1000"}};
    std::string expected = "Num=1000|";
    for (int number = 0; number < 1000; ++number) {
        const std::string key = "Data" + std::to_string(number);
        const std::string value = "0~\x83\x7E\x95\x5C" + std::to_string(number);
        entries.Add(key, value);
        expected.append(key).append("=").append(value).append("|");
    }
    Folder.Write(FileName, "[List]\nNum=1\n[Beta]\nz=3\n");
    EXPECT_TRUE(ReplaceInPlace(File(), "List", entries));
    EXPECT_EQ(Visited("List"), expected);
}

} // namespace

} // namespace pmx::test
