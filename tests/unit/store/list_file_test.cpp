#include "store/list_file.h"

#include "store/list_data_array.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

std::unique_ptr<CPMXTemplUIListData> Record(std::uint32_t standard, std::string_view name, std::int32_t level,
                                            std::int32_t toolbar, std::int64_t icon,
                                            std::string_view fileName) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetStandard(standard);
    record->SetName(name);
    record->SetLevel(level);
    record->SetToolbar(toolbar);
    record->SetIconIndex(icon);
    record->SetFileName(fileName);
    return record;
}

std::unique_ptr<CPMXTemplUIListData> Parse(std::string_view value) {
    return ParseListValue(value, SystemLeadBytes());
}

/// A section of the list file with this count and these entries, numbered from 0.
std::string Section(const std::string& count, const std::vector<std::string>& values) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + count + "\r\n";
    for (std::size_t number = 0; number < values.size(); ++number) {
        text += "TemplateData" + std::to_string(number) + "=" + values[number] + "\r\n";
    }
    return text;
}

/// The value and the section of favorites of which only the name matters.
std::string Named(const std::string& name) {
    return "0~" + name + "~1~0~14~f.pmt";
}

std::string SectionOf(std::vector<std::string> names) {
    for (std::string& name : names) {
        name = Named(name);
    }
    return Section(std::to_string(names.size()), names);
}

// The value of one favorite

TEST(ListValue, IsSixFieldsInTheirOrder) {
    EXPECT_EQ(FormatListValue(*Record(0, Sjis(u8"両面印刷"), 1, 1, 14, "Template.pmt")),
              Sjis(u8"0~両面印刷~1~1~14~Template.pmt"));
    EXPECT_EQ(FormatListValue(*Record(1, "Duplex", 101, 0, 3, "3")), "1~Duplex~101~0~3~3");
}

TEST(ListValue, FlagsAreOneOnlyForOne) {
    EXPECT_EQ(FormatListValue(*Record(7, "A", 1, 2, 0, "f")), "0~A~1~0~0~f");
    EXPECT_EQ(FormatListValue(*Record(1, "A", 1, 1, 0, "f")), "1~A~1~1~0~f");
}

TEST(ListValue, NumbersHave32Bits) {
    EXPECT_EQ(FormatListValue(*Record(0, "A", -5, 0, -1, "f")), "0~A~-5~0~-1~f");
    EXPECT_EQ(FormatListValue(*Record(0, "A", 1, 0, 0x1'0000'0007, "f")), "0~A~1~0~7~f");
}

TEST(ListValue, ReadsBackEveryField) {
    const auto record = Parse(Sjis(u8"0~両面印刷~4~1~14~Template.pmt"));
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetStandard(), 0U);
    EXPECT_EQ(record->GetName(), Sjis(u8"両面印刷"));
    EXPECT_EQ(record->GetLevel(), 4);
    EXPECT_EQ(record->GetToolbar(), 1);
    EXPECT_EQ(record->GetIconIndex(), 14);
    EXPECT_EQ(record->GetFileName(), "Template.pmt");
    EXPECT_EQ(record->GetNewFlag(), 0);
    EXPECT_EQ(record->GetDeleteFlag(), 0);
    EXPECT_EQ(record->GetImportFlag(), 0);
    EXPECT_EQ(record->GetDocument(), nullptr);
}

TEST(ListValue, AnyNumberButZeroSetsAFlagAndBlanksAroundTextsAreDropped) {
    const auto record = Parse("5~ My fav ~1~-3~3~ x.pmt ");
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetStandard(), 1U);
    EXPECT_EQ(record->GetName(), "My fav");
    EXPECT_EQ(record->GetToolbar(), 1);
    EXPECT_EQ(record->GetFileName(), "x.pmt");
}

TEST(ListValue, TextThatIsNoNumberIsZero) {
    const auto record = Parse("x~A~y~z~w~f");
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetStandard(), 0U);
    EXPECT_EQ(record->GetLevel(), 0);
    EXPECT_EQ(record->GetToolbar(), 0);
    EXPECT_EQ(record->GetIconIndex(), 0);
}

TEST(ListValue, NumbersAreReadAsTheCLibraryReadsThem) {
    EXPECT_EQ(LeadingNumber(""), 0);
    EXPECT_EQ(LeadingNumber("12abc"), 12);
    EXPECT_EQ(LeadingNumber(" \t+7"), 7);
    EXPECT_EQ(LeadingNumber("-12"), -12);
    EXPECT_EQ(LeadingNumber("- 1"), 0);
    EXPECT_EQ(LeadingNumber("0x10"), 0);
    EXPECT_EQ(LeadingNumber("2147483647"), 2147483647);
    EXPECT_EQ(LeadingNumber("2147483648"), 2147483647);
    EXPECT_EQ(LeadingNumber("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(LeadingNumber("99999999999999999999999"), 2147483647);
    EXPECT_EQ(LeadingNumber("-99999999999999999999999"), -2147483647 - 1);
    EXPECT_EQ(LeadingNumber(Sjis(u8"１")), 0);
}

TEST(ListValue, IsDroppedWithoutExactlySixFields) {
    EXPECT_EQ(Parse("0~A~1~1~14~a.pmt~x"), nullptr) << "seven";
    EXPECT_EQ(Parse("0~A~~1~14~a.pmt"), nullptr) << "an empty field shifts the others";
    EXPECT_EQ(Parse("0~A~1~1~14~"), nullptr) << "five";
    EXPECT_EQ(Parse("~~~~~"), nullptr);
    EXPECT_EQ(Parse(""), nullptr);
}

TEST(ListValue, RunsOfSeparatorsCountAsOneAndThoseAtTheEndsAsNone) {
    const auto record = Parse("~~0~~A~1~~~1~14~a.pmt~~");
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetName(), "A");
    EXPECT_EQ(record->GetFileName(), "a.pmt");
}

TEST(ListValue, IsDroppedWhenNameOrFileIsBlank) {
    EXPECT_EQ(Parse("0~ \t~1~1~14~a.pmt"), nullptr);
    EXPECT_EQ(Parse("0~A~1~1~14~  "), nullptr);
}

TEST(ListValue, AStandardFavoriteNeedsAKnownNumber) {
    for (const char* const known : {"1", "5", " 5 ", "4x", "+1"}) {
        EXPECT_NE(Parse(std::string("1~Duplex~101~0~0~") + known), nullptr) << known;
    }
    for (const char* const unknown : {"0", "6", "-1", "Template.pmt", "x3", "4294967297"}) {
        EXPECT_EQ(Parse(std::string("1~Duplex~101~0~0~") + unknown), nullptr) << unknown;
    }
    EXPECT_NE(Parse("1~Duplex~100~0~0~Template.pmt"), nullptr) << "only levels above 100 are asked";
    EXPECT_EQ(Parse("0~Duplex~105~0~0~Template.pmt"), nullptr) << "whatever the kind";
}

TEST(ListValue, TheSeparatorAsASecondByteSplitsNothingAndAfterACharacterItDoes) {
    const std::string name = Sjis(u8"ミ×");
    ASSERT_EQ(name, "\x83~\x81~");
    const auto record = Parse("0~" + name + "~1~0~14~" + name);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetName(), name);
    EXPECT_EQ(record->GetFileName(), name);
    EXPECT_EQ(Parse("0~" + Sjis(u8"ミ~ミ") + "~1~0~14~a.pmt"), nullptr) << "seven fields";
}

TEST(ListValue, IsTakenApartUnderACodePageWithoutDoubleByteCharactersToo) {
    const std::u8string_view utf8 = u8"ミシン目ミ";
    for (const std::string& name : {Sjis(utf8), std::string(utf8.begin(), utf8.end())}) {
        const std::string value = Named(name);
        const auto record = ParseListValue(value, LeadBytesIn(value, LeadByteTable{}));
        ASSERT_NE(record, nullptr) << value;
        EXPECT_EQ(record->GetName(), name);
    }
}

// The content of the file

std::vector<std::string> ValuesIn(const std::string& content) {
    const ListValues values = ReadListValues(content);
    return {values.begin(), values.end()};
}

TEST(ListContent, FavoritesAreReadInTheOrderOfTheirNumbers) {
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateData2=C\r\nTemplateData0=A\r\nTemplateNum=12\r\n"
                         "TemplateData11=D\r\nTemplateData1=B\r\n"),
                ElementsAre("A", "B", "C", "D"));
}

TEST(ListContent, GapsAreSkipped) {
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=A\r\nTemplateData2=C\r\n"),
                ElementsAre("A", "C"));
}

TEST(ListContent, OnlyAsManyAsTheCountSaysAreRead) {
    const auto read = [](const std::string& count) { return ValuesIn(Section(count, {"A", "B", "C"})); };
    EXPECT_THAT(read("2"), ElementsAre("A", "B"));
    EXPECT_THAT(read("+2"), ElementsAre("A", "B"));
    EXPECT_THAT(read("2 favorites"), ElementsAre("A", "B"));
    EXPECT_THAT(read("4294967298"), ElementsAre("A", "B")) << "modulo 2 to the 32nd";
    EXPECT_THAT(read("-4294967294"), ElementsAre("A", "B"));
    for (const char* const none : {"0", "-1", "4294967295", "2147483648", "abc", "", "0x2"}) {
        EXPECT_THAT(read(none), IsEmpty()) << none;
    }
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateData0=A\r\n"), IsEmpty()) << "no count";
}

TEST(ListContent, AHugeCountCostsWhatTheKeysCost) {
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=2147483647\r\nTemplateData2147483646=Z\r\n"
                         "TemplateData2147483647=beyond\r\nTemplateData5=A\r\n"),
                ElementsAre("A", "Z"));
}

TEST(ListContent, TheFirstOfEqualKeysCountsWhateverTheCaseOfTheirNames) {
    EXPECT_THAT(ValuesIn("[pmxtemplatelist]\r\ntemplatedata0=A\r\nTEMPLATENUM=2\r\nTemplateNum=1\r\n"
                         "TemplateData0=X\r\nTEMPLATEDATA1=B\r\nTemplateData1=Y\r\n"),
                ElementsAre("A", "B"));
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=\r\nTemplateData0=A\r\n"),
                ElementsAre(""))
        << "even an empty one";
}

TEST(ListContent, OtherKeysAreNotRead) {
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=20\r\nTemplateData00=a\r\nTemplateData=b\r\n"
                         "TemplateData1x=c\r\nTemplateData-1=d\r\nTemplateData+2=e\r\n"
                         "TemplateData99999999999=f\r\nTemplateData4294967299=g\r\nTemplateDate3=h\r\n"
                         ";TemplateData4=i\r\n ; TemplateData5=j\r\nTemplateData6\r\nTemplateData12=G\r\n"),
                ElementsAre("G"));
}

TEST(ListContent, TheFirstSectionOfTheNameIsRead) {
    EXPECT_THAT(ValuesIn("TemplateNum=1\r\nTemplateData0=v\r\n[Other]\r\nTemplateNum=1\r\n"
                         "TemplateData0=w\r\n;[PMXTemplateList]\r\nTemplateData0=x\r\n" +
                         Section("2", {"A"}) + "[More]\r\nTemplateData1=y\r\n" + Section("2", {"B", "C"})),
                ElementsAre("A"));
}

TEST(ListContent, LinesEndWithAnyRunOfCrAndLf) {
    for (const char* const end : {"\n", "\r", "\r\n", "\n\r", "\r\r\n\n"}) {
        const std::string content = std::string(end) + "[PMXTemplateList]" + end + "TemplateNum=2" + end +
                                    "TemplateData0=A" + end + "TemplateData1=B";
        EXPECT_THAT(ValuesIn(content), ElementsAre("A", "B")) << testing::PrintToString(end);
    }
}

TEST(ListContent, BlanksAroundSectionsKeysAndValuesDoNotCount) {
    EXPECT_THAT(ValuesIn(" \t[ PMXTemplateList\t] ; mine\r\n TemplateNum\t= 3 \r\n"
                         "\tTemplateData0 =\v A b \f\r\nTemplateData1=B=c;d\r\nTemplateData2= \r\n"),
                ElementsAre("A b", "B=c;d", ""));
}

TEST(ListContent, OnePairOfQuotesAroundAValueIsRemoved) {
    const std::string content = Section("'6'", {"\" A \"", "'B'", "\"\"C\"\"", "\"D'", "\"", "\"E\";"});
    EXPECT_THAT(ValuesIn(content), ElementsAre(" A ", "B", "\"C\"", "\"D'", "\"", "\"E\";"));
}

TEST(ListContent, ASecondByteEndsNoSectionName) {
    const std::string notClosed = Sjis(u8"[ゾ");
    ASSERT_EQ(notClosed.back(), ']');
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=1\r\n" + notClosed + "\r\n[x\r\nTemplateData0=A"),
                ElementsAre("A"));
    EXPECT_THAT(ValuesIn("[PMXTemplateList]" + Sjis(u8"ゾ") + "\r\nTemplateNum=1\r\nTemplateData0=A"),
                ElementsAre("A"));
    EXPECT_THAT(ValuesIn("[PMXTemplateList]\r\nTemplateNum=1\r\n" + notClosed + "]\r\nTemplateData0=A"),
                IsEmpty());
}

TEST(ListContent, EveryByteOutsideTheSectionStaysAndTheSectionGoesToTheEnd) {
    const std::string section = Section("1", {"New"});
    const std::string old = "[pmxTEMPLATElist]\nTemplateNum=9\r\n; gone\r\n\r\nx=1\r\n";
    const std::string above = "\r\n\n; mine\r\n\r\nloose line\r\n  TemplateNum = 3\r\n";
    const std::string alpha = "  [ Alpha ]\n\nx = 1 \n; a comment\n" + Sjis(u8"[ゾ\nミ=ソ~×\n");
    const std::string beta = Sjis(u8"[表]\r\r\ny=\"2\"\t\r\n\r\n\r\n");
    EXPECT_EQ(WithSection("", section), section);
    EXPECT_EQ(WithSection(old, section), section);
    EXPECT_EQ(WithSection("\r\n\r\n" + old, section), "\r\n\r\n" + section);
    EXPECT_EQ(WithSection(above, section), above + section);
    EXPECT_EQ(WithSection(old + alpha + beta, section), alpha + beta + section);
    EXPECT_EQ(WithSection(above + alpha + old + beta, section), above + alpha + beta + section);
    EXPECT_EQ(WithSection(alpha + beta + old, section), alpha + beta + section);
    EXPECT_EQ(WithSection(old + alpha + old + beta + old, section), alpha + beta + section);
    EXPECT_EQ(WithSection(old + "[Alpha]\nx=1", section), "[Alpha]\nx=1\r\n" + section);
    EXPECT_EQ(WithSection("[Alpha]\n[PMXTemplateList]", section), "[Alpha]\n" + section);
    for (const char* const line :
         {"x[PMXTemplateList]\r\n", " x[PMXTemplateList]\r\n", ";[PMXTemplateList]\r\n"}) {
        EXPECT_EQ(WithSection(line, section), line + section) << "begins no section";
    }
}

TEST(ListContent, WhatIsNotListedIsToldToo) {
    const std::string second = "[pmxtemplatelist]\nTemplateNum=5\nTemplateData0=B\n";
    const std::string third = "[PMXTemplateList]";
    const std::string content = "[Alpha]\nx=1\n[PMXTemplateList]\nTemplateNum=1\nTemplateData3=C\n; mine\n"
                                "TemplateData0=A\nTemplateData3=D\n" +
                                second + "[Beta]\ny=2\n" + third;
    const ListSectionContent section = ReadListSection(content);
    EXPECT_EQ(section.Count, 1);
    ASSERT_EQ(section.Values.size(), 3U);
    EXPECT_EQ(section.Values[0].Number, 0);
    EXPECT_EQ(section.Values[0].Value, "A");
    EXPECT_EQ(section.Values[1].Value, "C");
    EXPECT_EQ(section.Values[2].Value, "D");
    EXPECT_THAT(section.OtherLines, ElementsAre("; mine"));
    EXPECT_THAT(section.FurtherSections, ElementsAre(second, third));
}

// The file

class ListFileTest : public testing::Test {
protected:
    ListFileTest() { EXPECT_TRUE(List.SetFolder(Folder.Path().c_str())); }

    /// Reads a list file with this content; the names of the favorites in it.
    std::vector<std::string> NamesIn(const std::string& content) {
        Folder.Write(ListFile, content);
        EXPECT_TRUE(List.LoadList());
        return Names();
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const CPMXTemplUIListData* const record : List.GetRecords()) {
            names.push_back(record->GetName());
        }
        return names;
    }

    void Add(const std::string& name) { List.Add(Record(0, name, 1, 0, 14, "f.pmt")); }

    /// Expects a save to fail, with the list file as it was and nothing beside it.
    void ExpectRefused() {
        const std::string before = Folder.Read(ListFile);
        EXPECT_FALSE(List.WriteListFile());
        EXPECT_EQ(Folder.Read(ListFile), before);
        EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
    }

    FakeServices Fakes;
    TempFolder Folder;
    CPMXTemplUIListDataArray List{nullptr, nullptr, Fakes.Services};
};

TEST_F(ListFileTest, AMissingOrEmptyFileIsAnEmptyList) {
    Add("before");
    EXPECT_TRUE(List.LoadList());
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_THAT(Folder.Names(), IsEmpty());
    EXPECT_THAT(NamesIn(""), IsEmpty());
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), SectionOf({}));
}

TEST_F(ListFileTest, AListWithoutAFolderCannotBeRead) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    list.Add(Record(0, "before", 1, 0, 14, "f"));
    EXPECT_FALSE(list.LoadList());
    EXPECT_EQ(list.GetSize(), 0);
    EXPECT_FALSE(list.WriteListFile());
}

TEST_F(ListFileTest, DamagedEntriesAreLeftOutAndDuplicateNamesAndUnknownLevelsAreNot) {
    EXPECT_THAT(NamesIn(Section("7", {"0~A~1~1~14~a.pmt~x", "0~B~~1~14~b.pmt", "", "1~D~101~0~0~d.pmt",
                                      "0~E~9~0~14~e.pmt", "0~E~-1~0~14~e.pmt", "0~e~1~0~14~e.pmt"})),
                ElementsAre("E", "E", "e"));
}

TEST_F(ListFileTest, AListIsWrittenAsItsCountAndItsFavorites) {
    List.Add(Record(0, Sjis(u8"両面印刷"), 1, 1, 14, "Template.pmt"));
    List.Add(Record(1, "Duplex", 101, 0, 3, "3"));
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile),
              Section("2", {Sjis(u8"0~両面印刷~1~1~14~Template.pmt"), "1~Duplex~101~0~3~3"}));
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty());
}

TEST_F(ListFileTest, DeletedFavoritesCountButAreNotWritten) {
    for (const char* const name : {"A", "B", "C"}) {
        Add(name);
    }
    List.At(1).SetDeleteFlag(1);
    List.At(2).SetDeleteFlag(2);
    Folder.Write("f.pmt", "");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), Section("3", {Named("A"), Named("C")}));
    EXPECT_TRUE(Folder.Exists("f.pmt")) << "writing alone deletes no favorite file";
}

TEST_F(ListFileTest, TheCountAndOrderCanBeGiven) {
    Add("A");
    Add("B");
    EXPECT_TRUE(List.WriteListFile({&List.At(1), &List.At(0)}, 7));
    EXPECT_EQ(Folder.Read(ListFile), Section("7", {Named("B"), Named("A")}));
}

TEST_F(ListFileTest, WhatOthersWriteOutsideTheSectionMeanwhileStays) {
    EXPECT_THAT(NamesIn(SectionOf({"A", "B"})), ElementsAre("A", "B"));
    List.At(0).SetDeleteFlag(1);
    Folder.Write(ListFile, SectionOf({"A", "B"}) + "[Beta]\nz=3\n");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[Beta]\nz=3\n" + Section("2", {Named("B")}));
}

TEST_F(ListFileTest, EveryDoubleByteNameKeepsItsBytes) {
    std::vector<std::string> values;
    for (int first = 0x81; first <= 0xFC; first = first == 0x9F ? 0xE0 : first + 1) {
        for (int second = 0x40; second <= 0xFC; second = second == 0x7E ? 0x80 : second + 1) {
            const std::string character = {static_cast<char>(first), static_cast<char>(second)};
            values.push_back(
                std::string("0~").append(character).append("~1~0~14~").append(character).append(".pmt"));
        }
    }
    const std::string content = Section(std::to_string(values.size()), values);
    EXPECT_EQ(NamesIn(content).size(), 60U * 188U);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_TRUE(Folder.Read(ListFile) == content);
}

TEST_F(ListFileTest, ListsOfAnySizeAreReadAndWrittenWhole) {
    std::vector<std::string> names(100'000, "A");
    names.back().append(10'000'000, 'n');
    const std::string content = SectionOf(names);
    EXPECT_TRUE(NamesIn(content) == names);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_TRUE(Folder.Read(ListFile) == content);
}

TEST_F(ListFileTest, ListsInFoldersWithDoubleByteNamesAreReadAndWritten) {
    for (const std::u8string_view name : {u8"表", u8"ミ", u8"ソ×能", u8"ｱｲｳ"}) {
        Folder.AddFolder(Sjis(name));
        ASSERT_TRUE(List.Open(Folder.Path(Sjis(name)).c_str()));
        Add(Sjis(name));
        EXPECT_TRUE(List.WriteListFile());
        EXPECT_TRUE(List.LoadList());
        EXPECT_THAT(Names(), ElementsAre(Sjis(name)));
        EXPECT_TRUE(Folder.Exists(Sjis(name) + "\\" + ListFile));
    }
}

// Files with a mark

std::string Bytes(std::u8string_view text) {
    return {text.begin(), text.end()};
}

std::string Utf16(std::u16string_view text, bool isBigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const std::string pair = {static_cast<char>(unit & 0xFFU), static_cast<char>(unit >> 8U)};
        bytes += isBigEndian ? std::string(pair.rbegin(), pair.rend()) : pair;
    }
    return bytes;
}

TEST_F(ListFileTest, AFileWithAMarkIsReadAndIsWrittenInTheCodePage) {
    const std::u16string content =
        u"\uFEFF[表]\r\n[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~ミ~1~0~14~f.pmt\r\n";
    for (const std::string& bytes : {Bytes(u8"\uFEFF[表]\r\n[PMXTemplateList]\r\nTemplateNum=1\r\n"
                                           u8"TemplateData0=0~ミ~1~0~14~f.pmt\r\n"),
                                     Utf16(content, false), Utf16(content, true)}) {
        EXPECT_THAT(NamesIn(bytes), ElementsAre(Sjis(u8"ミ"))) << testing::PrintToString(bytes);
        EXPECT_TRUE(List.WriteListFile());
        EXPECT_EQ(Folder.Read(ListFile), Sjis(u8"[表]\r\n") + SectionOf({Sjis(u8"ミ")}));
    }
}

TEST_F(ListFileTest, AFileWithAMarkThatLosesACharacterIsShownAndNotOverwritten) {
    const std::u16string content = u"\uFEFF[PMXTemplateList]\r\nTemplateNum=2\r\n"
                                   u"TemplateData0=0~A~1~0~14~f.pmt\r\nTemplateData1=0~é~1~0~14~f.pmt\r\n";
    const std::string utf16 = Utf16(content, false);
    const std::string utf8 = "\xEF\xBB\xBF" + SectionOf({"A", Bytes(u8"\U0001F600")});
    const std::string oddLength = Utf16(content.substr(0, content.find(u"TemplateData1")), false) + "x";
    for (const std::string& bytes : {utf8, utf16, oddLength}) {
        const std::vector<std::string> names = NamesIn(bytes);
        ASSERT_FALSE(names.empty());
        EXPECT_EQ(names.front(), "A");
        ExpectRefused();

        NamesIn(SectionOf({"B"}));
        Folder.Write(ListFile, bytes);
        ExpectRefused(); // somebody has put it there since the list was read
    }
}

// Files that are held, or cannot be read or written

TEST_F(ListFileTest, AReadOnlyListFileIsLeftAloneAtOnce) {
    Folder.Write(ListFile, SectionOf({"A"}) + "; no line end");
    Folder.SetReadOnly(ListFile, true);
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A"));
    ExpectRefused();
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty()) << "it does not become writable by waiting";
    Folder.SetReadOnly(ListFile, false);
    EXPECT_TRUE(List.WriteListFile());
}

TEST_F(ListFileTest, AFileThatCouldNotBeReadIsNotOverwrittenLater) {
    for (const FileError error : {FileError::Held, FileError::Other}) {
        Fakes.Disk.Plan.FailFrom(FileOperation::Read, 1, error);
        EXPECT_THAT(NamesIn(SectionOf({"A"})), IsEmpty());
        Fakes.Disk.Plan.Heal();
        ExpectRefused();
        EXPECT_TRUE(List.LoadList());
        EXPECT_THAT(Names(), ElementsAre("A"));
        EXPECT_TRUE(List.WriteListFile()) << "once read, it may be written";
    }
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty()) << "nobody waits for a list to be shown";
}

/// Files that lack memory for reading.
class PoorFiles : public FakeFiles {
public:
    FileError Read(const std::string& /*path*/, std::string& /*content*/) override { throw std::bad_alloc(); }
};

TEST_F(ListFileTest, LackOfMemoryWhileReadingIsAFailureAndNothingIsOverwrittenLater) {
    Folder.Write(ListFile, SectionOf({"A"}));
    PoorFiles files;
    CPMXTemplUIListDataArray list(nullptr, nullptr, {files, Fakes.Clock});
    EXPECT_FALSE(list.Open(Folder.Path().c_str()));
    EXPECT_FALSE(list.WriteListFile());
    CPMXTemplUIListDataArray unread(nullptr, nullptr, {files, Fakes.Clock});
    EXPECT_TRUE(unread.SetFolder(Folder.Path().c_str()));
    EXPECT_FALSE(unread.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), SectionOf({"A"}));
}

TEST_F(ListFileTest, AFolderInTheListFilesPlaceIsNeitherReadNorWritten) {
    Folder.AddFolder(ListFile);
    EXPECT_TRUE(List.LoadList());
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
}

TEST_F(ListFileTest, AFileThatIsHeldForAMomentIsReadAndReplacedLater) {
    Folder.Write(ListFile, SectionOf({"A"}) + "[Beta]\r\nz=3\r\n");
    Add("B");
    for (const std::size_t call : {1U, 2U}) {
        Fakes.Disk.Plan.FailAt(FileOperation::Read, call, FileError::Held);
        Fakes.Disk.Plan.FailAt(FileOperation::Replace, call, FileError::Held);
    }
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[Beta]\r\nz=3\r\n" + SectionOf({"B"}));
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::Overwrite), 0U);
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(50, 50, 50, 50));
}

TEST_F(ListFileTest, ASectionThatComesAfterASaveStaysWhenTheListHasBeenReadAgain) {
    Add("A");
    EXPECT_TRUE(List.WriteListFile());
    Folder.Write(ListFile, SectionOf({"A"}) + "[Beta]\r\nz=3\r\n");
    EXPECT_TRUE(List.LoadList());
    for (int save = 0; save < 2; ++save) {
        EXPECT_TRUE(List.WriteListFile());
        EXPECT_EQ(Folder.Read(ListFile), "[Beta]\r\nz=3\r\n" + SectionOf({"A"}));
    }
}

TEST_F(ListFileTest, AFileThatCannotBeReadForASecondIsNotReplaced) {
    Folder.Write(ListFile, SectionOf({"A"}));
    Fakes.Disk.Plan.FailFrom(FileOperation::Read, 1, FileError::Held);
    ExpectRefused();
    EXPECT_EQ(Fakes.Clock.Total(), 1000U);
}

TEST_F(ListFileTest, AFileThatIsHeldForLongerThanASecondIsOverwrittenWhereItLies) {
    EXPECT_THAT(NamesIn(SectionOf({"A", "a longer list"})), ElementsAre("A", "a longer list"));
    List.RemoveAll();
    Add("B");
    Fakes.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::Held);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), SectionOf({"B"}));
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
    EXPECT_EQ(Fakes.Clock.Total(), 1000U);
}

TEST_F(ListFileTest, AFileThatCannotBeOverwrittenEitherStaysAsItIs) {
    Folder.Write(ListFile, SectionOf({"A"}));
    Fakes.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::Held);
    Fakes.Disk.Plan.FailAt(FileOperation::Overwrite, 1, FileError::Held);
    ExpectRefused();
    EXPECT_EQ(Fakes.Clock.Total(), 1000U);
}

TEST_F(ListFileTest, WhenOverwritingBreaksOffTheNewListStaysBesideTheFile) {
    Folder.Write(ListFile, "[Beta]\r\n" + SectionOf({"A"}));
    Add("B");
    Fakes.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::Held);
    Fakes.Disk.Plan.FailAt(FileOperation::Overwrite, 1, FileError::Other);
    EXPECT_FALSE(List.WriteListFile());
    Folder.Remove(ListFile);
    ASSERT_THAT(Folder.Names(), ElementsAre(AllOf(StartsWith("Pmx"), EndsWith(".tmp"))));
    EXPECT_EQ(Folder.Read(Folder.Names().front()), "[Beta]\r\n" + SectionOf({"B"}));
}

TEST_F(ListFileTest, WhatCannotBeWrittenAsideLeavesTheFileAtOnce) {
    Folder.Write(ListFile, SectionOf({"A"}));
    for (const FileOperation operation :
         {FileOperation::Read, FileOperation::WriteNew, FileOperation::Replace}) {
        Fakes.Disk.Plan.FailAt(operation, Fakes.Disk.Plan.Calls(operation) + 1, FileError::Other);
        ExpectRefused();
    }
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty());
}

TEST_F(ListFileTest, AFileMadeAsideThatIsHeldForAMomentIsDeletedLater) {
    Folder.Write(ListFile, SectionOf({"A"}));
    Fakes.Disk.Plan.FailAt(FileOperation::Replace, 1, FileError::Other);
    Fakes.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::Held);
    ExpectRefused();
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1000));
}

} // namespace
} // namespace pmx::test
