#include "store/list_file.h"

#include "store/list_data_array.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* ListFile = "PmxTempleList.ini";

std::unique_ptr<CPMXTemplUIListData> Record(std::uint32_t standard, const std::string& name,
                                            std::int32_t level, std::int32_t toolbar, std::int64_t icon,
                                            const std::string& fileName) {
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

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
    CPMXTemplUIListDataArray List{nullptr, nullptr, Fakes.Services};
};

// The value of one favorite

TEST(ListValue, IsSixFieldsInTheirOrder) {
    EXPECT_EQ(FormatListValue(*Record(0, Sjis(u8"両面印刷"), 1, 1, 14, "Template.pmt")),
              Sjis(u8"0~両面印刷~1~1~14~Template.pmt"));
    EXPECT_EQ(FormatListValue(*Record(1, "Duplex", 101, 0, 3, "3")), "1~Duplex~101~0~3~3");
}

TEST(ListValue, FlagsAreOneOnlyForOne) {
    EXPECT_EQ(FormatListValue(*Record(7, "A", 1, 2, 0, "f")), "0~A~1~0~0~f");
    EXPECT_EQ(FormatListValue(*Record(0, "A", 1, -1, 0, "f")), "0~A~1~0~0~f");
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
    EXPECT_EQ(Parse("0~~1~1~14~a.pmt"), nullptr);
    EXPECT_EQ(Parse(""), nullptr);
    EXPECT_EQ(Parse("~~~~~"), nullptr);
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
    for (const char* const known : {"1", "2", "3", "4", "5", " 5 ", "4x", "+1"}) {
        EXPECT_NE(Parse(std::string("1~Duplex~101~0~0~") + known), nullptr) << known;
    }
    for (const char* const unknown : {"0", "6", "7", "-1", "Template.pmt", "x3", "4294967297"}) {
        EXPECT_EQ(Parse(std::string("1~Duplex~101~0~0~") + unknown), nullptr) << unknown;
    }
    EXPECT_NE(Parse("1~Duplex~100~0~0~Template.pmt"), nullptr) << "only levels above 100 are asked";
    EXPECT_EQ(Parse("0~Duplex~105~0~0~Template.pmt"), nullptr) << "whatever the kind";
}

TEST(ListValue, TheSeparatorAsASecondByteSplitsNothing) {
    for (const std::u8string_view name : {u8"ミ", u8"×", u8"ミ×ミ"}) {
        const std::string text = Sjis(name);
        ASSERT_EQ(text.back(), '~');
        const auto record = Parse("0~" + text + "~1~0~14~" + text + ".pmt");
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->GetName(), text);
        EXPECT_EQ(record->GetFileName(), text + ".pmt");
    }
}

TEST(ListValue, TheSeparatorAfterADoubleByteCharacterSplits) {
    EXPECT_EQ(Parse("0~" + Sjis(u8"ミ~ミ") + "~1~0~14~a.pmt"), nullptr) << "seven fields";
}

TEST(ListValue, DoubleByteAndHalfWidthTextsKeepTheirBytes) {
    for (const std::u8string_view name : {u8"表ソ能", u8"ア", u8"ヂ", u8"ｱｲｳﾞ", u8"　全角　", u8"×"}) {
        const std::string text = Sjis(name);
        const auto record = Record(0, text, 1, 0, 14, text + ".pmt");
        const auto again = Parse(FormatListValue(*record));
        ASSERT_NE(again, nullptr) << Utf8(text);
        EXPECT_EQ(again->GetName(), text);
        EXPECT_EQ(again->GetFileName(), text + ".pmt");
    }
}

// Reading

TEST_F(ListFileTest, AMissingFileIsAnEmptyList) {
    List.Add(Record(0, "before", 1, 0, 14, "f"));
    EXPECT_TRUE(List.LoadList());
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

TEST_F(ListFileTest, AListWithoutAFolderCannotBeRead) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    list.Add(Record(0, "before", 1, 0, 14, "f"));
    EXPECT_FALSE(list.LoadList());
    EXPECT_EQ(list.GetSize(), 0);
    EXPECT_FALSE(list.WriteListFile());
}

TEST_F(ListFileTest, FavoritesAreReadInTheOrderOfTheirNumbers) {
    EXPECT_THAT(NamesIn(Section("3", {"0~A~1~0~14~a", "1~B~101~1~0~3", "0~C~5~0~14~c"})),
                ElementsAre("A", "B", "C"));
    EXPECT_EQ(List.GetAt(1)->GetStandard(), 1U);
    EXPECT_EQ(List.GetAt(2)->GetLevel(), 5);
    EXPECT_EQ(List.GetAt(0)->GetNewFlag(), 0);
}

TEST_F(ListFileTest, TheOrderOfTheLinesDoesNotMatter) {
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateData2=0~C~1~0~14~c\r\nTemplateData0=0~A~1~0~14~a\r\n"
                        "TemplateNum=4\r\nTemplateData3=0~D~1~0~14~d\r\nTemplateData1=0~B~1~0~14~b\r\n"),
                ElementsAre("A", "B", "C", "D"));
}

TEST_F(ListFileTest, TheFirstValueOfANumberCountsEvenBeforeTheCount) {
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateData0=0~A~1~0~14~a\r\nTemplateNum=3\r\n"
                        "TemplateData0=0~X~1~0~14~x\r\nTemplateData1=0~B~1~0~14~b\r\n"
                        "TemplateData2=0~C~1~0~14~c\r\nTemplateData1=0~Y~1~0~14~y\r\n"),
                ElementsAre("A", "B", "C"));
}

TEST_F(ListFileTest, GapsAreSkipped) {
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=0~A~1~0~14~a\r\n"
                        "TemplateData2=0~C~1~0~14~c\r\n"),
                ElementsAre("A", "C"));
}

TEST_F(ListFileTest, DamagedEntriesAreLeftOut) {
    EXPECT_THAT(NamesIn(Section("5", {"0~A~1~1~14~a.pmt~x", "0~B~~1~14~b.pmt", "", "1~D~101~0~0~d.pmt",
                                      "0~E~1~0~14~e.pmt"})),
                ElementsAre("E"));
}

TEST_F(ListFileTest, OnlyAsManyAsTheCountSaysAreRead) {
    const std::vector<std::string> values = {"0~A~1~0~14~a", "0~B~1~0~14~b", "0~C~1~0~14~c"};
    EXPECT_THAT(NamesIn(Section("2", values)), ElementsAre("A", "B"));
    EXPECT_THAT(NamesIn(Section("0", values)), IsEmpty());
    EXPECT_THAT(NamesIn(Section("-1", values)), IsEmpty());
    EXPECT_THAT(NamesIn(Section("4294967295", values)), IsEmpty());
    EXPECT_THAT(NamesIn(Section("abc", values)), IsEmpty());
    EXPECT_THAT(NamesIn(Section("", values)), IsEmpty());
    EXPECT_THAT(NamesIn(Section("0x2", values)), ElementsAre("A", "B"));
    EXPECT_THAT(NamesIn(Section("2 favorites", values)), ElementsAre("A", "B"));
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateData0=0~A~1~0~14~a\r\n"), IsEmpty()) << "no count";
}

TEST_F(ListFileTest, KeysAreFoundWhateverTheirCaseAndTheFirstOfAKindCounts) {
    EXPECT_THAT(NamesIn("[pmxtemplatelist]\r\nTEMPLATENUM=2\r\ntemplatenum=1\r\n"
                        "templatedata0=0~A~1~0~14~a\r\nTemplateData0=0~X~1~0~14~x\r\n"
                        "TEMPLATEDATA1=0~B~1~0~14~b\r\n[PMXTemplateList]\r\nTemplateData0=0~Y~1~0~14~y\r\n"),
                ElementsAre("A", "B"));
}

TEST_F(ListFileTest, AnEmptyFirstValueHidesASecondOfThatNumber) {
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=\r\n"
                        "TemplateData0=0~A~1~0~14~a\r\nTemplateData1=0~B~1~0~14~b\r\n"),
                ElementsAre("B"));
}

TEST_F(ListFileTest, KeysWithOtherNumberFormatsAreNotAskedFor) {
    EXPECT_THAT(NamesIn("[PMXTemplateList]\r\nTemplateNum=20\r\nTemplateData00=0~A~1~0~14~a\r\n"
                        "TemplateData=0~B~1~0~14~b\r\nTemplateData1x=0~C~1~0~14~c\r\n"
                        "TemplateData-1=0~D~1~0~14~d\r\nTemplateData+2=0~E~1~0~14~e\r\n"
                        "TemplateData99999999999=0~F~1~0~14~f\r\nTemplateData12=0~G~1~0~14~g\r\n"),
                ElementsAre("G"));
}

TEST_F(ListFileTest, OtherSectionsAreNotRead) {
    EXPECT_THAT(NamesIn("[Other]\r\nTemplateNum=1\r\nTemplateData0=0~X~1~0~14~x\r\n" +
                        Section("1", {"0~A~1~0~14~a"}) + "[More]\r\nTemplateData0=0~Y~1~0~14~y\r\n"),
                ElementsAre("A"));
}

TEST_F(ListFileTest, DuplicateNamesAndUnknownLevelsAreKept) {
    EXPECT_THAT(NamesIn(Section("3", {"0~A~9~0~14~a", "0~A~-1~0~14~a", "0~a~1~0~14~missing"})),
                ElementsAre("A", "A", "a"));
}

TEST_F(ListFileTest, AHugeCountCostsWhatTheKeysCost) {
    const std::vector<std::string> values = {"0~A~1~0~14~a", "0~B~1~0~14~b", "0~C~1~0~14~c"};
    EXPECT_EQ(NamesIn(Section("3", values)).size(), 3U);
    const std::size_t profileCalls = Fakes.Profiles.Plan.Calls();
    const std::size_t fileCalls = Fakes.Disk.Plan.Calls();
    for (const char* const count : {"2147483647", "-1", "garbage", "4294967295", "2147483648"}) {
        const std::size_t profileBefore = Fakes.Profiles.Plan.Calls();
        const std::size_t filesBefore = Fakes.Disk.Plan.Calls();
        const std::size_t found = NamesIn(Section(count, values)).size();
        EXPECT_EQ(found, std::string(count) == "2147483647" ? 3U : 0U) << count;
        EXPECT_EQ(Fakes.Profiles.Plan.Calls() - profileBefore, profileCalls) << count;
        EXPECT_LE(Fakes.Disk.Plan.Calls() - filesBefore, fileCalls) << count;
    }
    EXPECT_EQ(Fakes.Profiles.Plan.Calls(ProfileOperation::VisitSection), 6U);
    EXPECT_EQ(profileCalls, 1U) << "one pass over the section";
}

TEST_F(ListFileTest, AKeyWithAHugeNumberIsReadInItsPlace) {
    EXPECT_THAT(
        NamesIn("[PMXTemplateList]\r\nTemplateNum=2147483647\r\nTemplateData2147483646=0~Z~1~0~14~z\r\n"
                "TemplateData5=0~A~1~0~14~a\r\n"),
        ElementsAre("A", "Z"));
}

TEST_F(ListFileTest, TheReadBufferHasTheFilesSizeAndCutsLongerValuesBetweenCharacters) {
    Folder.Write(ListFile, Section("1", {"0~A~1~0~14~" + Sjis(u8"表表") + ".pmt"}));
    Host.ReportedFileSize = 15; // room for 14 bytes: the first character and half of the second
    EXPECT_TRUE(List.LoadList());
    ASSERT_EQ(List.GetSize(), 1);
    EXPECT_EQ(List.GetAt(0)->GetFileName(), Sjis(u8"表"));
}

TEST_F(ListFileTest, AFileThatCannotBeMeasuredIsReadWithTheSmallestBuffer) {
    const std::string longName(5000, 'n');
    Folder.Write(ListFile, Section("2", {"0~A~1~0~14~a", "0~" + longName + "~1~0~14~b"}));
    Host.Plan.FailAt(HostCall::OpenFile, 1, HostFailure::Refuse);
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A")) << "the second is longer than 4096 bytes";
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A", longName));
}

TEST_F(ListFileTest, AnEmptyFileIsAnEmptyListAndOneOfUnknownSizeIsRead) {
    EXPECT_THAT(NamesIn(""), IsEmpty());
    Folder.Write(ListFile, Section("1", {"0~A~1~0~14~a"}));
    Host.Plan.FailAt(HostCall::FileSize, 2, HostFailure::Refuse);
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A"));
    EXPECT_EQ(Host.LiveFiles, 0U);
}

/// Profiles that lack memory after some entries.
class PoorProfile : public FakeProfile {
public:
    std::size_t Entries = 0;

    bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        std::size_t count = 0;
        return FakeProfile::VisitSection(path, section, [&](std::string_view key, std::string_view value) {
            if (count++ == Entries) {
                throw std::bad_alloc();
            }
            visit(key, value);
        });
    }
};

TEST_F(ListFileTest, LackOfMemoryIsAFalseResultWithWhatWasReadSoFar) {
    Folder.Write(ListFile, Section("3", {"0~A~1~0~14~a", "0~B~1~0~14~b", "0~C~1~0~14~c"}));
    PoorProfile profiles;
    profiles.Entries = 3;
    CPMXTemplUIListDataArray list(nullptr, nullptr, {Fakes.Disk, profiles, Fakes.Clock});
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    EXPECT_FALSE(list.LoadList());
    ASSERT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list.GetAt(1)->GetName(), "B");
    EXPECT_FALSE(list.WriteListFile()) << "a part must not take the place of the whole";
    EXPECT_EQ(Folder.Read(ListFile), Section("3", {"0~A~1~0~14~a", "0~B~1~0~14~b", "0~C~1~0~14~c"}));
}

/// Profiles during whose reading somebody tries to shut the file off.
class WatchingProfile : public FakeProfile {
public:
    FileError ShutOff = FileError::None;

    bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        ShutOff = SystemFiles().Open({.Path = path, .Access = FileAccess::ReadWrite}).Error;
        return FakeProfile::VisitSection(path, section, visit);
    }
};

TEST_F(ListFileTest, NobodyCanShutTheFileOffWhileItIsRead) {
    Folder.Write(ListFile, Section("1", {"0~A~1~0~14~a"}));
    WatchingProfile profiles;
    CPMXTemplUIListDataArray list(nullptr, nullptr, {Fakes.Disk, profiles, Fakes.Clock});
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    EXPECT_TRUE(list.LoadList());
    EXPECT_EQ(profiles.ShutOff, FileError::SharingViolation);
    EXPECT_EQ(list.GetSize(), 1);
    EXPECT_EQ(SystemFiles().Open({.Path = Folder.Path(ListFile), .Access = FileAccess::ReadWrite}).Error,
              FileError::None)
        << "and it is free again afterwards";
}

// Writing

TEST_F(ListFileTest, AListIsWrittenAsItsCountAndItsFavorites) {
    List.Add(Record(0, Sjis(u8"両面印刷"), 1, 1, 14, "Template.pmt"));
    List.Add(Record(1, "Duplex", 101, 0, 3, "3"));
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=" +
                                         Sjis(u8"0~両面印刷~1~1~14~Template.pmt") +
                                         "\r\nTemplateData1=1~Duplex~101~0~3~3\r\n");
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
}

TEST_F(ListFileTest, AnEmptyListIsItsCountAlone) {
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[PMXTemplateList]\r\nTemplateNum=0\r\n");
}

TEST_F(ListFileTest, DeletedFavoritesCountButAreNotWritten) {
    List.Add(Record(0, "A", 1, 0, 14, "a"));
    List.Add(Record(0, "B", 1, 0, 14, "b"));
    List.Add(nullptr);
    List.Add(Record(0, "C", 1, 0, 14, "c"));
    List.GetAt(1)->SetDeleteFlag(1);
    List.GetAt(3)->SetDeleteFlag(2);
    Folder.Write("b", "");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), Section("4", {"0~A~1~0~14~a", "0~C~1~0~14~c"}));
    EXPECT_TRUE(Folder.Exists("b")) << "writing alone deletes no favorite file";
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A", "C"));
}

TEST_F(ListFileTest, TheCountAndOrderCanBeGiven) {
    List.Add(Record(0, "A", 1, 0, 14, "a"));
    List.Add(Record(0, "B", 1, 0, 14, "b"));
    EXPECT_TRUE(List.WriteListFile({List.GetAt(1), List.GetAt(0)}, 7));
    EXPECT_EQ(Folder.Read(ListFile), Section("7", {"0~B~1~0~14~b", "0~A~1~0~14~a"}));
}

TEST_F(ListFileTest, StaleEntriesOfALongerListVanish) {
    Folder.Write(ListFile, Section("3", {"0~A~1~0~14~a", "0~B~1~0~14~b", "0~C~1~0~14~c"}));
    List.Add(Record(0, "D", 1, 0, 14, "d"));
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), Section("1", {"0~D~1~0~14~d"}));
}

/// Writes the list as the plain sequence of profile writes.
void WritePlainly(const std::string& path, const ProfileEntries& entries) {
    Profile& profile = SystemProfile();
    EXPECT_TRUE(profile.WriteString(path, "PMXTemplateList", std::nullopt, std::nullopt));
    for (const ProfileEntry& entry : entries) {
        EXPECT_TRUE(profile.WriteString(path, "PMXTemplateList", entry.Key, entry.Value));
    }
}

TEST_F(ListFileTest, TheBytesAreThoseOfThePlainSequenceOfProfileWrites) {
    const std::string old = Section("2", {"0~Old~1~0~14~old", "0~Older~1~0~14~older"});
    const std::string alpha = "[Alpha]\r\nx=1\r\n; a comment\r\ny = 2\r\n";
    const std::string beta = "[Beta]\r\nz=3\r\n";
    const std::vector<std::string> files = {
        "",
        old,
        old + "\r\n\r\n",
        alpha,
        old + alpha + beta,
        alpha + old + beta,
        alpha + beta + old,
        alpha + beta,
        "; above everything\r\nloose line\r\n" + alpha + old + "; below\r\n" + beta,
        "[Alpha]\nx=1\n[PMXTemplateList]\nTemplateNum=1\nTemplateData0=0~O~1~0~14~o\n[Beta]\nz=3",
        "[Alpha]\r\nx=1\r\n[PMXTemplateList]\r\nTemplateNum=1",
        "[ALPHA]\r\n[pmxTEMPLATElist]\r\ntemplatenum=1\r\n",
        Sjis(u8"[表]\r\nミ=ソ~×\r\n") + old,
        "[Alpha]\r\n\r\n\r\nx=1\r\n\r\n",
    };
    List.Add(Record(0, Sjis(u8"ミ表ソ能×ｱ"), 1, 1, 14, Sjis(u8"ミ.pmt")));
    List.Add(Record(1, "", 101, 0, 3, "3"));
    List.Add(Record(0, " blanks ", 5, 0, 59, " x.pmt "));
    List.Add(Record(0, "\"quoted\"", 2, 0, -1, "'q'"));
    List.Add(Record(0, "a=b;c#d[e]", 3, 0, 0, "x"));
    const ProfileEntries entries = MakeListEntries(List.GetRecords(), List.GetSize());
    for (const std::string& content : files) {
        if (content.empty()) {
            std::filesystem::remove(DiskPath(Folder.Path(ListFile)));
            std::filesystem::remove(DiskPath(Folder.Path("plain.ini")));
        } else {
            Folder.Write(ListFile, content);
            Folder.Write("plain.ini", content);
        }
        WritePlainly(Folder.Path("plain.ini"), entries);
        EXPECT_TRUE(List.WriteListFile());
        EXPECT_EQ(Folder.Read(ListFile), Folder.Read("plain.ini")) << content;
    }
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile, "plain.ini"));
}

TEST_F(ListFileTest, OtherSectionsAndCommentsSurvive) {
    Folder.Write(ListFile,
                 "; mine\r\n[Alpha]\r\nx=1\r\n" + Section("1", {"0~A~1~0~14~a"}) + "[Beta]\r\nz=3\r\n");
    EXPECT_TRUE(List.LoadList());
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile),
              "; mine\r\n[Alpha]\r\nx=1\r\n[Beta]\r\nz=3\r\n" + Section("1", {"0~A~1~0~14~a"}));
}

TEST_F(ListFileTest, ASecondSectionOfTheNameIsReplacedToo) {
    Folder.Write(ListFile, Section("1", {"0~A~1~0~14~a"}) + "[Alpha]\r\nx=1\r\n" +
                               Section("1", {"0~B~1~0~14~b", "0~stale~1~0~14~s"}));
    EXPECT_TRUE(List.LoadList());
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[Alpha]\r\nx=1\r\n" + Section("1", {"0~A~1~0~14~a"}));
}

TEST_F(ListFileTest, AReadOnlyListFileIsLeftAlone) {
    const std::string before = Section("1", {"0~A~1~0~14~a"}) + "; no line end";
    Folder.Write(ListFile, before);
    Folder.SetReadOnly(ListFile, true);
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A"));
    List.Add(Record(0, "B", 1, 0, 14, "b"));
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), before);
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty()) << "it does not become writable by waiting";
    Folder.SetReadOnly(ListFile, false);
    EXPECT_TRUE(List.WriteListFile());
}

TEST_F(ListFileTest, AFileThatCouldNotBeReadIsNotOverwrittenLater) {
    const std::string before = Section("1", {"0~A~1~0~14~a"});
    Folder.Write(ListFile, before);
    {
        const OpenResult held =
            SystemFiles().Open({.Path = Folder.Path(ListFile), .Access = FileAccess::ReadWrite});
        ASSERT_EQ(held.Error, FileError::None);
        EXPECT_TRUE(List.LoadList());
    }
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), before);
    EXPECT_TRUE(List.LoadList());
    EXPECT_THAT(Names(), ElementsAre("A"));
    EXPECT_TRUE(List.WriteListFile()) << "once read, it may be written";
}

TEST_F(ListFileTest, AFileWhoseReadingFailedIsNotOverwrittenLater) {
    const std::string before = Section("1", {"0~A~1~0~14~a"});
    Folder.Write(ListFile, before);
    Fakes.Profiles.Plan.FailAt(ProfileOperation::VisitSection, 1, {});
    EXPECT_TRUE(List.LoadList());
    EXPECT_FALSE(List.WriteListFile());
    Host.Plan.FailAt(HostCall::OpenFile, 2, HostFailure::Raise);
    EXPECT_THROW(List.LoadList(), HostError);
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), before);
    EXPECT_TRUE(List.LoadList());
    EXPECT_TRUE(List.WriteListFile());
}

TEST_F(ListFileTest, AFolderInTheListFilesPlaceIsNeitherReadNorWritten) {
    Folder.AddFolder(ListFile);
    EXPECT_TRUE(List.LoadList());
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile));
}

TEST_F(ListFileTest, AFileThatIsHeldForAMomentIsReadAndReplacedLater) {
    Folder.Write(ListFile, Section("1", {"0~A~1~0~14~a"}) + "[Beta]\r\nz=3\r\n");
    EXPECT_TRUE(List.LoadList());
    Fakes.Profiles.Plan.FailAt(ProfileOperation::ReplaceSection, 1, {FileError::SharingViolation});
    Fakes.Disk.Plan.FailAt(FileOperation::Replace, 1, FileError::AccessDenied);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Folder.Read(ListFile), "[Beta]\r\nz=3\r\n" + Section("1", {"0~A~1~0~14~a"}));
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1000, 1000));
}

TEST_F(ListFileTest, AFileMadeAsideThatIsHeldForAMomentIsDeletedLater) {
    Fakes.Profiles.Plan.FailAt(ProfileOperation::ReplaceSection, 1, {});
    Fakes.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::SharingViolation);
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_THAT(Folder.Names(), IsEmpty());
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1000));
}

/// Saves a list of one new favorite over an old file while the services fail as planned.
class FailingSave {
public:
    FailingSave() {
        Folder.Write(ListFile, Old);
        Folder.Write("a", "favorite");
        EXPECT_TRUE(List.SetFolder(Folder.Path().c_str()));
        List.Add(Record(0, "New", 1, 0, 14, "a"));
        Before = Fakes.Disk.Plan.Calls();
    }

    /// Saves; the file must then be the old one or, on success, the new one, whole, with nothing beside it.
    bool Save() {
        const bool saved = List.WriteListFile();
        EXPECT_EQ(Folder.Read(ListFile), saved ? New : Old);
        EXPECT_THAT(Folder.Names(), ElementsAre(ListFile, "a"));
        EXPECT_EQ(Folder.Read("a"), "favorite");
        return saved;
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
    CPMXTemplUIListDataArray List{nullptr, nullptr, Fakes.Services};
    const std::string Old = Section("1", {"0~Old~1~0~14~o"}) + "[Beta]\r\nz=3\r\n";
    const std::string New = "[Beta]\r\nz=3\r\n" + Section("1", {"0~New~1~0~14~a"});
    std::size_t Before = 0; ///< calls of the file service before the list is saved
};

const std::vector<FileError> Errors = {FileError::AccessDenied, FileError::SharingViolation,
                                       FileError::DiskFull, FileError::Other};

TEST(FailingListFile, EveryFileCallThatFailsOnceLeavesTheOldListOrTheNewOne) {
    for (const FileError error : Errors) {
        bool reachedTheEnd = false;
        for (std::size_t call = 1; !reachedTheEnd; ++call) {
            SCOPED_TRACE(testing::Message() << "error " << static_cast<int>(error) << " at call " << call);
            FailingSave save;
            save.Fakes.Disk.Plan.FailAtAny(save.Before + call, error);
            const bool saved = save.Save();
            reachedTheEnd = save.Fakes.Disk.Plan.Calls() < save.Before + call;
            EXPECT_TRUE(saved || !reachedTheEnd);
            ASSERT_LT(call, 20U);
        }
    }
}

TEST(FailingListFile, EveryFileOperationThatFailsForGoodLeavesTheOldListOrTheNewOne) {
    for (const FileOperation operation :
         {FileOperation::Exists, FileOperation::IsFolder, FileOperation::IsReadOnly, FileOperation::Open,
          FileOperation::Remove, FileOperation::Flush, FileOperation::Replace,
          FileOperation::CreateTemporary}) {
        for (const FileError error : Errors) {
            SCOPED_TRACE(testing::Message() << "operation " << static_cast<int>(operation) << " with error "
                                            << static_cast<int>(error));
            FailingSave save;
            const std::size_t before = save.Fakes.Disk.Plan.Calls(operation);
            save.Fakes.Disk.Plan.FailFrom(operation, before + 1, error);
            const bool saved = save.Save();
            EXPECT_EQ(saved, save.Fakes.Disk.Plan.Calls(operation) == before);
        }
    }
}

TEST(FailingListFile, WhenAllFileOperationsFailForGoodTheOldListStays) {
    for (std::size_t call = 1; call <= 4; ++call) {
        FailingSave save;
        save.Fakes.Disk.Plan.FailFromAny(save.Before + call, FileError::Other);
        EXPECT_FALSE(save.List.WriteListFile());
        EXPECT_EQ(save.Folder.Read(ListFile), save.Old);
    }
}

TEST(FailingListFile, AProfileThatCannotBeWrittenOnceLeavesTheOldListUntilTheNextAttempt) {
    FailingSave save;
    save.Fakes.Profiles.Plan.FailAt(ProfileOperation::ReplaceSection, 1, {});
    EXPECT_FALSE(save.Save());
    EXPECT_TRUE(save.Save());
}

TEST(FailingListFile, AProfileThatCannotBeWrittenAtAllLeavesTheOldList) {
    FailingSave save;
    save.Fakes.Profiles.Plan.FailFromAny(1, {});
    EXPECT_FALSE(save.Save());
    EXPECT_FALSE(save.Save());
}

TEST(FailingListFile, AProfileThatIsHeldForGoodIsTriedForHalfAMinuteAndLeavesTheOldList) {
    FailingSave save;
    save.Fakes.Profiles.Plan.FailFromAny(1, {FileError::AccessDenied});
    EXPECT_FALSE(save.Save());
    EXPECT_EQ(save.Fakes.Profiles.Plan.Calls(ProfileOperation::ReplaceSection), 13U);
}

/// Profiles that lack memory for writing.
class PoorWriter : public FakeProfile {
public:
    FileError ReplaceSection(const std::string& /*source*/, const std::string& /*target*/,
                             std::string_view /*section*/, const ProfileEntries& /*entries*/) override {
        throw std::bad_alloc();
    }
};

TEST_F(ListFileTest, LackOfMemoryWhileWritingIsAFalseResultWithNothingLeftBehind) {
    PoorWriter profiles;
    CPMXTemplUIListDataArray list(nullptr, nullptr, {Fakes.Disk, profiles, Fakes.Clock});
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    EXPECT_FALSE(list.WriteListFile());
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

TEST_F(ListFileTest, TheNewListIsFlushedBeforeItTakesThePlaceOfTheOld) {
    Folder.Write(ListFile, Section("0", {}));
    Fakes.Disk.Plan.FailAt(FileOperation::Flush, 1, FileError::DiskFull);
    EXPECT_FALSE(List.WriteListFile());
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::Replace), 0U);
}

TEST_F(ListFileTest, ListsInFoldersWithDoubleByteNamesAreReadAndWritten) {
    for (const std::u8string_view name : {u8"表", u8"ミ", u8"ソ×能", u8"ｱｲｳ"}) {
        Folder.AddFolder(Sjis(name));
        CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
        ASSERT_TRUE(list.SetFolder(Folder.Path(Sjis(name)).c_str()));
        list.Add(Record(0, Sjis(name), 1, 0, 14, Sjis(name) + ".pmt"));
        EXPECT_TRUE(list.WriteListFile());
        EXPECT_TRUE(list.LoadList());
        ASSERT_EQ(list.GetSize(), 1);
        EXPECT_EQ(list.GetAt(0)->GetName(), Sjis(name));
        EXPECT_EQ(list.GetAt(0)->GetFileName(), Sjis(name) + ".pmt");
        EXPECT_TRUE(Folder.Exists(Sjis(name) + "\\" + ListFile));
    }
}

} // namespace
} // namespace pmx::test
