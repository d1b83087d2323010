#include "frame/list_exports.h"

#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <vector>

namespace pmx::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array<std::size_t, 5> PartStarts = {0, 82, 126, 150, 2221};

class ListExportsTest : public testing::Test {
protected:
    ListExportsTest() : List(OpenList(Folder.Path().c_str(), nullptr, nullptr, Fakes.Services)) {}
    ~ListExportsTest() override {
        List.reset();
        EXPECT_EQ(Host.LiveDocuments, 0U) << "a document was not destroyed";
    }

    CPMXTemplUIListData& Add(const std::string& name, std::int32_t level, const std::string& fileName,
                             std::uint32_t standard = 0) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetName(name);
        record->SetLevel(level);
        record->SetFileName(fileName);
        record->SetStandard(standard);
        return List->At(List->Add(std::move(record)));
    }

    /// The summaries that are copied out for a level, into a buffer of exactly their size.
    std::vector<TemplInfo> Summaries(std::int32_t level) {
        std::vector<TemplInfo> summaries(static_cast<std::size_t>(CountQualifying(*List, level)));
        EXPECT_EQ(CopySummaries(*List, level, summaries.data()), static_cast<std::int64_t>(summaries.size()));
        return summaries;
    }

    std::vector<std::string> NamesOf(std::int32_t level) {
        std::vector<std::string> names;
        for (const TemplInfo& info : Summaries(level)) {
            names.emplace_back(info.Name);
        }
        return names;
    }

    /// The part of the attribute table, empty when it is refused.
    std::vector<unsigned char> Part(std::int64_t position, std::int32_t part) {
        const std::size_t level = static_cast<std::size_t>(std::clamp(part, 1, 5) - 1);
        std::vector<unsigned char> buffer(PMX_TABLE_SIZE - PartStarts.at(level));
        const bool copied =
            CopyTablePart(*List, position, part, buffer.data(), static_cast<std::int64_t>(buffer.size()));
        return copied ? buffer : std::vector<unsigned char>();
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
    std::unique_ptr<CPMXTemplUIListDataArray> List;
};

std::vector<unsigned char> TailOf(const _LM_DOCUMENTLAYOUTTABLE& table, std::size_t start) {
    return {table.Bytes + start, table.Bytes + sizeof table.Bytes};
}

// Opening

TEST_F(ListExportsTest, AFolderIsOpenedWithTheListInIt) {
    Folder.Write(ListFile, "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~A~1~0~14~a.pmt\r\n");
    const auto list = OpenList(Folder.Path().c_str(), nullptr, nullptr, Fakes.Services);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetSize(), 1);
    EXPECT_EQ(list->GetListFilePath(), Folder.Path(ListFile));
    EXPECT_EQ(list->GetExtension(), ".pmt");
}

TEST_F(ListExportsTest, OtherNamesMayBeGiven) {
    Folder.Write("My.ini", "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~A~1~0~14~a.fav\r\n");
    const auto list = OpenList(Folder.Path().c_str(), "My.ini", ".fav", Fakes.Services);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->GetSize(), 1);
    EXPECT_EQ(list->GetExtension(), ".fav");
}

TEST_F(ListExportsTest, NoFolderIsNoList) {
    Folder.Write("file", "");
    EXPECT_EQ(OpenList(Folder.Path("missing").c_str(), nullptr, nullptr, Fakes.Services), nullptr);
    EXPECT_EQ(OpenList(Folder.Path("file").c_str(), nullptr, nullptr, Fakes.Services), nullptr);
    EXPECT_EQ(OpenList("", nullptr, nullptr, Fakes.Services), nullptr);
    EXPECT_EQ(OpenList(nullptr, nullptr, nullptr, Fakes.Services), nullptr);
}

/// Files for whose content there is no memory.
class PoorFiles : public FakeFiles {
public:
    FileError Read(const std::string& /*path*/, std::string& /*content*/) override { throw std::bad_alloc(); }
};

TEST_F(ListExportsTest, AListThatCannotBeReadIsNone) {
    PoorFiles files;
    const StoreServices services{files, Fakes.Clock};
    EXPECT_EQ(OpenList(Folder.Path().c_str(), nullptr, nullptr, services), nullptr);
}

// The level filter

TEST_F(ListExportsTest, ALevelUpTo100MeansTheFavoritesOfExactlyThatLevel) {
    Add("A", 1, "a");
    Add("S", 101, "3", 1);
    Add("B", 2, "b");
    Add("C", 1, "c", 1);
    EXPECT_THAT(NamesOf(1), ElementsAre("A", "C"));
    EXPECT_THAT(NamesOf(2), ElementsAre("B"));
    EXPECT_THAT(NamesOf(3), IsEmpty());
    EXPECT_THAT(NamesOf(0), IsEmpty());
    EXPECT_THAT(NamesOf(-99), IsEmpty());
    EXPECT_THAT(NamesOf(100), IsEmpty());
}

TEST_F(ListExportsTest, ALevelAbove100AddsTheStandardFavoritesWithAKnownNumberInListOrder) {
    Add("S5", 101, "5", 1);
    Add("A", 1, "a");
    Add("S7", 101, "7", 1);
    Add("S1", 101, "1", 1);
    Add("B", 2, "b");
    Add("S0", 101, "0", 1);
    Add("C", 1, "c");
    Add("Sx", 101, "x.pmt", 1);
    Add("S4x", 101, "4x", 1);
    Add("T", 102, "2", 1);
    EXPECT_THAT(NamesOf(101), ElementsAre("S5", "A", "S1", "C", "S4x"));
    EXPECT_THAT(NamesOf(102), ElementsAre("B", "T"));
    EXPECT_THAT(NamesOf(103), IsEmpty());
}

TEST_F(ListExportsTest, ALevelAbove200FiltersItsCandidatesByNumberToo) {
    Add("S3", 101, "3", 1);
    Add("S9", 101, "9", 1);
    EXPECT_THAT(NamesOf(201), ElementsAre("S3"));
}

TEST_F(ListExportsTest, ExtremeLevelsFindNothing) {
    Add("A", 1, "a");
    EXPECT_THAT(NamesOf(2147483647), IsEmpty());
    EXPECT_THAT(NamesOf(-2147483647 - 1), IsEmpty());
    Add("Odd", 2147483647, "3");
    EXPECT_THAT(NamesOf(2147483647), ElementsAre("Odd"));
}

// Summaries

TEST_F(ListExportsTest, ASummaryHasEveryFieldAtItsOffset) {
    Add("unused", 2, "x");
    CPMXTemplUIListData& record = Add(Sjis(u8"両面"), 1, "b.pmt");
    record.SetToolbar(1);
    record.SetIconIndex(0x0102030405060708);
    std::vector<unsigned char> bytes(548 + 4, 0xEE);
    EXPECT_EQ(CopySummaries(*List, 1, bytes.data()), 1);
    std::vector<unsigned char> expected(548 + 4, 0);
    expected[0] = 1; // position in the whole list
    expected[12] = 1;
    const std::string name = Sjis(u8"両面");
    std::memcpy(expected.data() + 16, name.data(), name.size());
    const std::string path = Folder.Path() + "\\b.pmt";
    std::memcpy(expected.data() + 276, path.data(), path.size());
    expected[536] = 1;
    const std::array<unsigned char, 8> icon = {8, 7, 6, 5, 4, 3, 2, 1};
    std::memcpy(expected.data() + 540, icon.data(), icon.size());
    std::fill(expected.end() - 4, expected.end(), 0xEE);
    EXPECT_EQ(bytes, expected);
}

TEST_F(ListExportsTest, AUserFavoritesPathHasTwoSeparatorsBeforeTheFileName) {
    Add("A", 100, "a.pmt");
    const auto summaries = Summaries(100);
    ASSERT_EQ(summaries.size(), 1U);
    EXPECT_EQ(summaries[0].FilePath, Folder.Path() + "\\a.pmt");
    EXPECT_TRUE(std::string(summaries[0].FilePath).ends_with("\\\\a.pmt"));
}

TEST_F(ListExportsTest, AStandardFavoritesPathIsItsNumber) {
    Add("S", 101, "3", 1);
    const auto summaries = Summaries(101);
    ASSERT_EQ(summaries.size(), 1U);
    EXPECT_STREQ(summaries[0].FilePath, "3");
    EXPECT_EQ(summaries[0].Standard, 1U);
    EXPECT_EQ(summaries[0].Level, 101);
}

TEST_F(ListExportsTest, PositionsCountOverTheWholeList) {
    Add("A", 1, "a");
    Add("B", 2, "b");
    Add("C", 1, "c");
    const auto summaries = Summaries(1);
    ASSERT_EQ(summaries.size(), 2U);
    EXPECT_EQ(std::int64_t{summaries[0].Position}, 0);
    EXPECT_EQ(std::int64_t{summaries[1].Position}, 2);
}

TEST_F(ListExportsTest, AnEmptyListCopiesNothing) {
    unsigned char untouched = 0xEE;
    EXPECT_EQ(CountQualifying(*List, 1), 0);
    EXPECT_EQ(CopySummaries(*List, 1, &untouched), 0);
    EXPECT_EQ(untouched, 0xEE);
}

TEST_F(ListExportsTest, LongTextsAreCutTo259BytesAndTerminated) {
    for (const std::size_t length : {258U, 259U, 260U, 261U, 5000U}) {
        List->RemoveAll();
        Add(std::string(length, 'n'), 1, "a");
        const auto summaries = Summaries(1);
        ASSERT_EQ(summaries.size(), 1U);
        EXPECT_EQ(std::string(summaries[0].Name), std::string(std::min<std::size_t>(length, 259), 'n'));
    }
    List->RemoveAll();
    Add("A", 101, std::string(300, '1'), 1);
    Add("A", 1, std::string(300, 'f'));
    EXPECT_EQ(std::strlen(Summaries(1)[0].FilePath), 259U);
}

TEST(SummaryText, IsNeverCutInsideACharacter) {
    char target[PMX_TEMPLINFO_TEXT_SIZE];
    std::string text = "x";
    while (text.size() < 400) {
        text += Sjis(u8"表");
    }
    std::memset(target, 0xEE, sizeof target);
    FillSummaryText(target, text);
    EXPECT_EQ(std::string(target), text.substr(0, 259)) << "the cut falls between characters";
    FillSummaryText(target, text.substr(1));
    EXPECT_EQ(std::string(target), text.substr(1, 258)) << "half of a character would be left";
    EXPECT_EQ(target[258], '\0');
    EXPECT_EQ(target[259], '\0');
    FillSummaryText(target, std::string(300, '\xB1'));
    EXPECT_EQ(std::string(target), std::string(259, '\xB1')) << "half-width letters are single bytes";
}

TEST(SummaryText, FillsTheRestWithZeros) {
    char target[PMX_TEMPLINFO_TEXT_SIZE];
    std::memset(target, 0xEE, sizeof target);
    FillSummaryText(target, "abc");
    EXPECT_STREQ(target, "abc");
    EXPECT_THAT(std::vector<char>(target + 3, target + sizeof target), Each('\0'));
}

// The attribute table

TEST_F(ListExportsTest, EachPartRunsFromItsStartToTheTablesEnd) {
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(42), 1, "A"});
    Add("A", 1, "a.pmt");
    for (std::int32_t part = 1; part <= 5; ++part) {
        EXPECT_EQ(Part(0, part), TailOf(TableOf(42), PartStarts.at(static_cast<std::size_t>(part - 1))));
    }
    EXPECT_THAT(Host.LoadedPaths, ElementsAre(Folder.Path("a.pmt"))) << "loaded once, used again";
}

TEST_F(ListExportsTest, OnlyThePartsExactLengthIsAccepted) {
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(42), 1, "A"});
    Add("A", 1, "a.pmt");
    std::vector<unsigned char> buffer(9000, 0xEE);
    for (std::int32_t part = 1; part <= 5; ++part) {
        const auto length =
            static_cast<std::int64_t>(PMX_TABLE_SIZE - PartStarts.at(static_cast<std::size_t>(part - 1)));
        for (const std::int64_t size : {length - 1, length + 1, std::int64_t{0}, std::int64_t{9000}}) {
            EXPECT_FALSE(CopyTablePart(*List, 0, part, buffer.data(), size)) << part;
            EXPECT_THAT(buffer, Each(0xEE));
        }
    }
    EXPECT_TRUE(CopyTablePart(*List, 0, 2, buffer.data(), 8575));
    EXPECT_EQ(buffer[8575], 0xEE);
}

TEST_F(ListExportsTest, UnknownPartsAreRefused) {
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(42), 1, "A"});
    Add("A", 1, "a.pmt");
    std::vector<unsigned char> buffer(PMX_TABLE_SIZE, 0xEE);
    for (const std::int32_t part : {0, 6, -1, 101}) {
        EXPECT_FALSE(CopyTablePart(*List, 0, part, buffer.data(), PMX_TABLE_SIZE));
    }
    EXPECT_THAT(buffer, Each(0xEE));
}

TEST_F(ListExportsTest, PositionsOutsideTheListAreRefused) {
    Add("A", 1, "missing.pmt");
    for (const std::int64_t position : {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1} << 40}) {
        EXPECT_THAT(Part(position, 1), IsEmpty());
    }
    EXPECT_EQ(Host.Plan.Calls(HostCall::Create), 0U);
}

TEST_F(ListExportsTest, AStandardFavoriteGetsTheSettingOfItsNumber) {
    const std::vector<std::pair<const char*, unsigned char>> settings = {
        {"1", FreshSeed},     {"2", FreshSeed},      {"3", TwoUpDuplexSeed}, {"4", BookletSeed},
        {"5", UpperLeftSeed}, {"5x", UpperLeftSeed}, {"6", FreshSeed}};
    for (const auto& [number, seed] : settings) {
        Add("S", 101, number, 1);
        EXPECT_EQ(Part(List->GetSize() - 1, 1), TailOf(TableOf(seed), 0)) << number;
    }
    EXPECT_THAT(Host.LoadedPaths, IsEmpty());
}

TEST_F(ListExportsTest, AFailedLoadLeavesAnEmptyDocumentAndIsTriedAgain) {
    CPMXTemplUIListData& record = Add("A", 1, "a.pmt");
    EXPECT_THAT(Part(0, 1), IsEmpty());
    ASSERT_NE(record.GetDocument(), nullptr);
    EXPECT_TRUE(SameTable(FakeHost::ContentOf(*record.GetDocument()).Table, TableOf(FreshSeed)));
    EXPECT_THAT(Part(0, 1), IsEmpty()) << "an empty document does not pass for the favorite";
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(42), 1, "A"});
    EXPECT_EQ(Part(0, 1), TailOf(TableOf(42), 0));
    EXPECT_EQ(Host.LiveDocuments, 1U);
}

TEST_F(ListExportsTest, ADocumentThatCannotBeMadeIsAFailure) {
    Add("S", 101, "3", 1);
    Host.Plan.FailAt(HostCall::Create, 1, HostFailure::Refuse);
    Host.Plan.FailAt(HostCall::Create, 2, HostFailure::Raise);
    EXPECT_THAT(Part(0, 1), IsEmpty());
    EXPECT_THAT(Part(0, 1), IsEmpty());
    EXPECT_EQ(Part(0, 1), TailOf(TableOf(TwoUpDuplexSeed), 0));
}

TEST_F(ListExportsTest, AHostThatRaisesWhileReadingIsAFailure) {
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(42), 1, "A"});
    Add("A", 1, "a.pmt");
    Host.Plan.FailAt(HostCall::Load, 1, HostFailure::Raise);
    EXPECT_THAT(Part(0, 1), IsEmpty());
    EXPECT_EQ(Part(0, 1), TailOf(TableOf(42), 0));
}

TEST_F(ListExportsTest, ErrorsOfTheHostInTheStandardCommandsAndTheTablePassOn) {
    Add("S", 101, "3", 1);
    Host.Plan.FailAt(HostCall::Command, 1, HostFailure::Raise);
    EXPECT_THROW(Part(0, 1), HostError);
    EXPECT_EQ(Part(0, 1), TailOf(TableOf(TwoUpDuplexSeed), 0)) << "the next call makes the setting";
    EXPECT_EQ(Host.Plan.Calls(HostCall::Create), 2U) << "in a new document";
    EXPECT_EQ(Host.LiveDocuments, 1U);
    Host.Plan.FailAt(HostCall::GetTable, 2, HostFailure::Raise);
    EXPECT_THROW(Part(0, 1), HostError);
}

TEST_F(ListExportsTest, AFileFieldThatLeadsOutOfTheFolderIsAMissingFile) {
    FakeHost::WriteFavorite(Folder, "outside.pmt", {TableOf(42), 1, "A"});
    Folder.AddFolder("Favorites");
    const auto list = OpenList(Folder.Path("Favorites").c_str(), nullptr, nullptr, Fakes.Services);
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetFileName("..\\outside.pmt");
    list->Add(std::move(record));
    std::vector<unsigned char> buffer(PMX_TABLE_SIZE);
    EXPECT_FALSE(CopyTablePart(*list, 0, 1, buffer.data(), PMX_TABLE_SIZE));
    EXPECT_THAT(Host.LoadedPaths, IsEmpty());
}

// Standard favorites

TEST_F(ListExportsTest, AStandardFavoriteIsAppendedAndWritten) {
    Add("A", 1, "a.pmt");
    AddStandardFavorite(*List, Sjis(u8"中とじ").c_str(), 4, 21, true);
    ASSERT_EQ(List->GetSize(), 2);
    const CPMXTemplUIListData& record = List->At(1);
    EXPECT_EQ(record.GetStandard(), 1U);
    EXPECT_EQ(record.GetName(), Sjis(u8"中とじ"));
    EXPECT_EQ(record.GetLevel(), 101);
    EXPECT_EQ(record.GetFileName(), "4");
    EXPECT_EQ(record.GetToolbar(), 1);
    EXPECT_EQ(record.GetIconIndex(), 21);
    EXPECT_EQ(record.GetNewFlag(), 0);
    EXPECT_EQ(record.GetDeleteFlag(), 0);
    EXPECT_EQ(record.GetImportFlag(), 0);
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_EQ(Folder.Read(ListFile), "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~A~1~0~0~a.pmt\r\n"
                                     "TemplateData1=" +
                                         Sjis(u8"1~中とじ~101~1~21~4") + "\r\n");
    EXPECT_THAT(NamesOf(101), ElementsAre("A", Sjis(u8"中とじ")));
}

TEST_F(ListExportsTest, AStandardFavoriteMayStayOffTheToolbar) {
    AddStandardFavorite(*List, "S", 1, 0, false);
    EXPECT_EQ(List->At(0).GetToolbar(), 0);
}

TEST_F(ListExportsTest, NamesAreNeitherCheckedForUniquenessNorForEmptiness) {
    AddStandardFavorite(*List, "Same", 1, 0, false);
    AddStandardFavorite(*List, "Same", 1, 0, false);
    AddStandardFavorite(*List, "", 1, 0, false);
    AddStandardFavorite(*List, nullptr, 1, 0, false);
    EXPECT_EQ(List->GetSize(), 4);
    EXPECT_EQ(List->At(3).GetName(), "");
}

TEST_F(ListExportsTest, AnUnknownNumberIsWrittenButNeverReturned) {
    AddStandardFavorite(*List, "S", 7, 14, false);
    EXPECT_EQ(Folder.Read(ListFile),
              "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=1~S~101~0~14~7\r\n");
    EXPECT_THAT(NamesOf(101), IsEmpty());
}

TEST_F(ListExportsTest, NumbersAreWrittenWith32Bits) {
    AddStandardFavorite(*List, "S", 0x1'0000'0003, 0x1'0000'0004, false);
    EXPECT_EQ(List->At(0).GetFileName(), "3");
    EXPECT_EQ(List->At(0).GetIconIndex(), 0x1'0000'0004) << "in memory the icon is as given";
    AddStandardFavorite(*List, "S", -1, -1, false);
    EXPECT_EQ(List->At(1).GetFileName(), "-1");
}

TEST_F(ListExportsTest, MakingAStandardFavoriteDeletesNoFile) {
    CPMXTemplUIListData& deleted = Add("A", 1, "a.pmt");
    deleted.SetDeleteFlag(1);
    Folder.Write("a.pmt", "");
    AddStandardFavorite(*List, "S", 1, 0, false);
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile, "a.pmt"));
    EXPECT_EQ(Folder.Read(ListFile), "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=1~S~101~0~0~1\r\n");
}

TEST_F(ListExportsTest, AListFileThatCannotBeWrittenDoesNotUndoTheFavorite) {
    Fakes.Disk.Plan.FailFrom(FileOperation::WriteNew, 1, FileError::Other);
    AddStandardFavorite(*List, "S", 1, 0, false);
    EXPECT_EQ(List->GetSize(), 1);
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

} // namespace
} // namespace pmx::test
