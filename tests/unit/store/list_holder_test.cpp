#include "store/list_holder.h"

#include "store/levels.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* TwoFavorites =
    "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~First~1~1~20~first.pmt\r\n"
    "TemplateData1=0~Second~3~0~14~second.pmt\r\n";

class ListHolderTest : public testing::Test {
protected:
    ListHolderTest() {
        Folder.Write(ListFile, TwoFavorites);
        FakeHost::WriteFavorite(Folder, "first.pmt", {TableOf(10), 1, "First"});
        FakeHost::WriteFavorite(Folder, "second.pmt", {TableOf(20), 3, "Second"});
        EXPECT_TRUE(Holder.Open(Folder.Path().c_str()));
    }
    ~ListHolderTest() override {
        Holder.GetList().RemoveAll();
        EXPECT_EQ(Host.LiveDocuments, 0U) << "a document was not destroyed";
    }

    /// All files of the folder with their bytes.
    std::vector<std::pair<std::string, std::string>> Snapshot() const {
        std::vector<std::pair<std::string, std::string>> files;
        for (const std::string& name : Folder.Names()) {
            files.emplace_back(name, Folder.Read(name));
        }
        return files;
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
    CPMXTemplUIListHolder Holder{nullptr, nullptr, Fakes.Services};
};

/// The bytes of a table from the start of a level's part on, and zeros behind.
_LM_DOCUMENTLAYOUTTABLE PartOf(const _LM_DOCUMENTLAYOUTTABLE& table, std::size_t start) {
    _LM_DOCUMENTLAYOUTTABLE part{};
    std::memcpy(part.Bytes, table.Bytes + start, TableSize - start);
    return part;
}

/// `table` with the part from `start` on taken from the beginning of `part`.
_LM_DOCUMENTLAYOUTTABLE WithPart(_LM_DOCUMENTLAYOUTTABLE table, const _LM_DOCUMENTLAYOUTTABLE& part,
                                 std::size_t start) {
    std::memcpy(table.Bytes + start, part.Bytes, TableSize - start);
    return table;
}

std::size_t StartOf(std::int32_t level) {
    constexpr std::array<std::size_t, 5> Starts = {0, 82, 126, 150, 2221};
    return Starts.at(static_cast<std::size_t>(level - 1));
}

// Opening and looking up

TEST_F(ListHolderTest, OpeningReadsTheListOfTheFolder) {
    EXPECT_EQ(Holder.GetList().GetSize(), 2);
    EXPECT_EQ(Holder.GetAt(0)->GetName(), "First");
    EXPECT_EQ(Holder.GetAt(1)->GetLevel(), 3);
    EXPECT_EQ(Holder.GetList().GetFolder(), Folder.Path());
}

TEST_F(ListHolderTest, OpeningNoFolderFailsAndEmptiesTheList) {
    for (const std::string& path : {Folder.Path("missing"), Folder.Path("first.pmt"), std::string()}) {
        CPMXTemplUIListHolder holder(nullptr, nullptr, Fakes.Services);
        EXPECT_FALSE(holder.Open(path.c_str()));
        EXPECT_EQ(holder.GetList().GetSize(), 0);
    }
    EXPECT_FALSE(Holder.Open(nullptr));
    EXPECT_EQ(Holder.GetList().GetSize(), 0);
}

TEST_F(ListHolderTest, OpeningTakesOtherListFilesAndExtensions) {
    Folder.Write("Other.ini", "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~X~1~0~14~x.fav\r\n");
    CPMXTemplUIListHolder holder("Other.ini", ".fav", Fakes.Services);
    EXPECT_TRUE(holder.Open(Folder.Path().c_str()));
    EXPECT_EQ(holder.GetAt(0)->GetName(), "X");
    EXPECT_EQ(holder.GetList().GetExtension(), ".fav");
}

TEST_F(ListHolderTest, AccessOutsideTheListIsNull) {
    EXPECT_EQ(Holder.GetAt(-1), nullptr);
    EXPECT_EQ(Holder.GetAt(2), nullptr);
}

TEST_F(ListHolderTest, FindingByNameIsExact) {
    EXPECT_EQ(Holder.FindByName("Second"), Holder.GetAt(1));
    EXPECT_EQ(Holder.FindByName("second"), nullptr);
}

TEST(StoreResult, HasTheCodesOfTheInterface) {
    EXPECT_EQ(static_cast<int>(StoreResult::Success), 0);
    EXPECT_EQ(static_cast<int>(StoreResult::NoFileName), 4096);
    EXPECT_EQ(static_cast<int>(StoreResult::NotWritten), 8192);
    EXPECT_EQ(static_cast<int>(StoreResult::NotRead), 16384);
}

TEST_F(ListHolderTest, WhateverFailsWhileLoadingGivesNoTable) {
    CPMXTemplUIListData& record = *Holder.GetAt(0);
    _LM_DOCUMENTLAYOUTTABLE table{};
    for (const HostCall call : {HostCall::Create, HostCall::Load, HostCall::Destroy}) {
        for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
            if (call == HostCall::Destroy && failure == HostFailure::Refuse) {
                continue;
            }
            Host.Plan.FailAt(call, Host.Plan.Calls(call) + 1, failure);
            EXPECT_FALSE(Holder.GetAttributeTable("First", 1, table));
            EXPECT_FALSE(record.IsDocumentReady()) << "an empty document does not pass for the file";
            ASSERT_TRUE(record.EnsureDocument());
        }
    }
    EXPECT_TRUE(Holder.GetAttributeTable("First", 1, table));
}

// Renaming

TEST_F(ListHolderTest, RenamingLoadsTheDocumentAndNamesItToo) {
    EXPECT_TRUE(Holder.RenameAt(0, "New"));
    EXPECT_EQ(Holder.GetAt(0)->GetName(), "New");
    ASSERT_NE(Holder.GetAt(0)->GetDocument(), nullptr);
    EXPECT_EQ(Holder.GetAt(0)->GetDocument()->GetName(), "New");
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "first.pmt").Name, "First") << "nothing is written";
}

TEST_F(ListHolderTest, RenamingLeavesADocumentThatIsLoadedAsItIs) {
    ASSERT_TRUE(Holder.GetList().EnsureLoaded(*Holder.GetAt(0)));
    EXPECT_TRUE(Holder.RenameAt(0, "New"));
    EXPECT_EQ(Holder.GetAt(0)->GetName(), "New");
    EXPECT_EQ(Holder.GetAt(0)->GetDocument()->GetName(), "First");
    EXPECT_EQ(Host.Plan.Calls(HostCall::Load), 1U);
}

TEST_F(ListHolderTest, RenamingOutsideTheListSucceedsAndChangesNothing) {
    EXPECT_TRUE(Holder.RenameAt(-1, "New"));
    EXPECT_TRUE(Holder.RenameAt(2, "New"));
    EXPECT_EQ(Holder.FindByName("New"), nullptr);
    EXPECT_EQ(Host.Plan.Calls(HostCall::Create), 0U);
}

TEST_F(ListHolderTest, RenamingFailsWhenTheFileCannotBeReadOrTheDocumentNotNamed) {
    Folder.Remove("first.pmt");
    EXPECT_FALSE(Holder.RenameAt(0, "New"));
    EXPECT_EQ(Holder.GetAt(0)->GetName(), "New") << "the record has its name all the same";
    Host.Plan.FailAt(HostCall::SetName, 1, HostFailure::Refuse);
    EXPECT_FALSE(Holder.RenameAt(1, "New"));
    Holder.GetAt(1)->ReleaseDocument();
    Host.Plan.FailAt(HostCall::SetName, 2, HostFailure::Raise);
    EXPECT_FALSE(Holder.RenameAt(1, "New"));
}

// The attribute table

TEST_F(ListHolderTest, TheTableBeginsWithTheLevelsPartAndEndsInZeros) {
    for (std::int32_t level = 1; level <= 5; ++level) {
        Holder.GetAt(0)->SetLevel(level);
        _LM_DOCUMENTLAYOUTTABLE table = TableOf(200);
        EXPECT_TRUE(Holder.GetAttributeTable("First", level, table));
        EXPECT_TRUE(SameTable(table, PartOf(TableOf(10), StartOf(level)))) << "level " << level;
    }
    EXPECT_EQ(Host.Plan.Calls(HostCall::Load), 1U) << "a loaded document is used again";
}

TEST_F(ListHolderTest, NoTableIsGivenForAnUnknownNameAnotherLevelOrAMissingFile) {
    const _LM_DOCUMENTLAYOUTTABLE before = TableOf(200);
    _LM_DOCUMENTLAYOUTTABLE table = before;
    EXPECT_FALSE(Holder.GetAttributeTable("first", 1, table)) << "case counts";
    EXPECT_FALSE(Holder.GetAttributeTable("First", 2, table));
    EXPECT_FALSE(Holder.GetAttributeTable("First", 101, table));
    EXPECT_FALSE(Holder.GetAttributeTable("First", 0, table));
    Holder.GetAt(0)->SetLevel(6);
    EXPECT_FALSE(Holder.GetAttributeTable("First", 6, table)) << "there is no such part";
    Folder.Remove("second.pmt");
    EXPECT_FALSE(Holder.GetAttributeTable("Second", 3, table));
    EXPECT_TRUE(SameTable(table, before));
}

TEST_F(ListHolderTest, AHostThatRaisesGivesNoTable) {
    const _LM_DOCUMENTLAYOUTTABLE before = TableOf(200);
    _LM_DOCUMENTLAYOUTTABLE table = before;
    Host.Plan.FailAt(HostCall::GetTable, 1, HostFailure::Raise);
    EXPECT_FALSE(Holder.GetAttributeTable("First", 1, table));
    EXPECT_TRUE(SameTable(table, before));
    EXPECT_TRUE(Holder.GetAttributeTable("First", 1, table));
}

TEST_F(ListHolderTest, TheFirstFavoriteOfANameIsUsed) {
    Holder.GetAt(1)->SetName("First");
    _LM_DOCUMENTLAYOUTTABLE table{};
    EXPECT_FALSE(Holder.GetAttributeTable("First", 3, table)) << "the first has level 1";
    EXPECT_TRUE(Holder.GetAttributeTable("First", 1, table));
}

// Storing

TEST_F(ListHolderTest, StoringUnderANewNameMakesAFavoriteAtTheEnd) {
    const _LM_DOCUMENTLAYOUTTABLE part = TableOf(50);
    EXPECT_TRUE(Holder.StoreFavorite("New", 4, part.Bytes));
    ASSERT_EQ(Holder.GetList().GetSize(), 3);
    const CPMXTemplUIListData& record = *Holder.GetAt(2);
    EXPECT_EQ(record.GetStandard(), 0U);
    EXPECT_EQ(record.GetName(), "New");
    EXPECT_EQ(record.GetLevel(), 4);
    EXPECT_EQ(record.GetToolbar(), 0);
    EXPECT_EQ(record.GetIconIndex(), 14);
    EXPECT_EQ(record.GetFileName(), "New.pmt");
    EXPECT_EQ(record.GetNewFlag(), 1);
    EXPECT_EQ(record.GetDeleteFlag(), 0);
    EXPECT_EQ(record.GetImportFlag(), 0);
    const HostContent file = FakeHost::ReadFavorite(Folder, "New.pmt");
    EXPECT_EQ(file.Level, 4);
    EXPECT_EQ(file.Name, "New");
    EXPECT_TRUE(SameTable(file.Table, WithPart(TableOf(FreshSeed), part, 150)));
    EXPECT_EQ(Host.SetTableFlag, 0);
    EXPECT_EQ(Folder.Read(ListFile), TwoFavorites) << "the list file is written by SaveList alone";
}

TEST_F(ListHolderTest, StoringPutsEachLevelsPartInItsPlace) {
    const _LM_DOCUMENTLAYOUTTABLE part = TableOf(60);
    for (std::int32_t level = 1; level <= 5; ++level) {
        const std::string name = "Level " + std::to_string(level);
        EXPECT_TRUE(Holder.StoreFavorite(name, level, part.Bytes));
        EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, name + ".pmt").Table,
                              WithPart(TableOf(FreshSeed), part, StartOf(level))))
            << name;
    }
}

TEST_F(ListHolderTest, StoringReadsOnlyThePartsTrueLength) {
    const _LM_DOCUMENTLAYOUTTABLE table = TableOf(70);
    const std::vector<unsigned char> part(table.Bytes,
                                          table.Bytes + TableSize - 2221); // checked by the sanitizer
    EXPECT_TRUE(Holder.StoreFavorite("Page", 5, part.data()));
}

TEST_F(ListHolderTest, StoringOverAFavoriteKeepsItsFileAndTakesItOffTheToolbar) {
    const _LM_DOCUMENTLAYOUTTABLE part = TableOf(50);
    EXPECT_TRUE(Holder.StoreFavorite("First", 2, part.Bytes));
    ASSERT_EQ(Holder.GetList().GetSize(), 2);
    const CPMXTemplUIListData& record = *Holder.GetAt(0);
    EXPECT_EQ(record.GetFileName(), "first.pmt");
    EXPECT_EQ(record.GetLevel(), 2);
    EXPECT_EQ(record.GetToolbar(), 0);
    EXPECT_EQ(record.GetIconIndex(), 14);
    EXPECT_EQ(record.GetNewFlag(), 1);
    const HostContent file = FakeHost::ReadFavorite(Folder, "first.pmt");
    EXPECT_EQ(file.Level, 2);
    EXPECT_TRUE(SameTable(file.Table, WithPart(TableOf(10), part, 82))) << "the rest stays the favorite's";
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile, "first.pmt", "second.pmt"));
}

TEST_F(ListHolderTest, StoringUnderANameThatDiffersInCaseAloneFails) {
    const auto before = Snapshot();
    const _LM_DOCUMENTLAYOUTTABLE part{};
    EXPECT_FALSE(Holder.StoreFavorite("FIRST", 1, part.Bytes));
    EXPECT_EQ(Holder.GetList().GetSize(), 2);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ListHolderTest, StoringNeedsAKnownLevelAndAPart) {
    const auto before = Snapshot();
    const _LM_DOCUMENTLAYOUTTABLE part{};
    EXPECT_FALSE(Holder.StoreFavorite("New", 0, part.Bytes));
    EXPECT_FALSE(Holder.StoreFavorite("New", 6, part.Bytes));
    EXPECT_FALSE(Holder.StoreFavorite("New", 101, part.Bytes));
    EXPECT_FALSE(Holder.StoreFavorite("New", 1, nullptr));
    EXPECT_EQ(Holder.GetList().GetSize(), 2);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ListHolderTest, WhateverFailsWhileStoringANewFavoriteLeavesNoRecordAndNoFile) {
    const auto before = Snapshot();
    const _LM_DOCUMENTLAYOUTTABLE part{};
    for (const HostCall call : {HostCall::Create, HostCall::SetLevel, HostCall::GetTable, HostCall::SetTable,
                                HostCall::SetName, HostCall::Save}) {
        for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
            const bool onlyRaises = call == HostCall::SetLevel || call == HostCall::GetTable;
            if (onlyRaises && failure == HostFailure::Refuse) {
                continue;
            }
            Host.Plan.FailAt(call, Host.Plan.Calls(call) + 1, failure);
            EXPECT_FALSE(Holder.StoreFavorite("New", 1, part.Bytes)) << static_cast<int>(call);
            EXPECT_EQ(Holder.GetList().GetSize(), 2);
            EXPECT_EQ(Snapshot(), before);
            EXPECT_EQ(Host.LiveDocuments, 0U);
        }
    }
}

TEST_F(ListHolderTest, ANewFavoriteForWhichThereIsNoFileNameIsNotStored) {
    Folder.Write("New.pmt", "somebody else's");
    Fakes.Services.LastFileNumber = 0;
    CPMXTemplUIListHolder holder(nullptr, nullptr, Fakes.Services);
    ASSERT_TRUE(holder.Open(Folder.Path().c_str()));
    const auto before = Snapshot();
    const _LM_DOCUMENTLAYOUTTABLE part{};
    EXPECT_FALSE(holder.StoreFavorite("New", 1, part.Bytes));
    EXPECT_EQ(holder.GetList().GetSize(), 2);
    EXPECT_TRUE(Snapshot() == before);
}

TEST_F(ListHolderTest, WhateverFailsWhileStoringOverAFavoriteLeavesItsFile) {
    const auto before = Snapshot();
    const _LM_DOCUMENTLAYOUTTABLE part{};
    for (const HostCall call : {HostCall::Create, HostCall::Load, HostCall::GetTable, HostCall::SetTable,
                                HostCall::SetName, HostCall::Save}) {
        Holder.GetAt(0)->ReleaseDocument();
        Host.Plan.FailAt(call, Host.Plan.Calls(call) + 1, HostFailure::Raise);
        EXPECT_FALSE(Holder.StoreFavorite("First", 1, part.Bytes)) << static_cast<int>(call);
        EXPECT_EQ(Snapshot(), before);
    }
    EXPECT_EQ(Holder.GetList().GetSize(), 2);
}

TEST_F(ListHolderTest, StoringOverAStandardFavoriteFailsForWantOfAFile) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetStandard(1);
    record->SetName("Standard");
    record->SetLevel(101);
    record->SetFileName("3");
    Holder.GetList().Add(std::move(record));
    const _LM_DOCUMENTLAYOUTTABLE part{};
    EXPECT_FALSE(Holder.StoreFavorite("Standard", 1, part.Bytes));
    EXPECT_FALSE(Folder.Exists("3"));
}

// Writing the list

TEST_F(ListHolderTest, SavingTheListDeletesTheFilesOfDeletedUserFavorites) {
    Holder.GetAt(0)->SetDeleteFlag(1);
    EXPECT_TRUE(Holder.SaveList());
    EXPECT_EQ(Folder.Read(ListFile),
              "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~Second~3~0~14~second.pmt\r\n");
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile, "second.pmt"));
}

TEST_F(ListHolderTest, AListThatCannotBeWrittenIsNotReportedAndNothingIsDeleted) {
    Holder.GetAt(0)->SetDeleteFlag(1);
    const auto before = Snapshot();
    Fakes.Disk.Plan.FailAt(FileOperation::Replace, 1, FileError::Other);
    EXPECT_TRUE(Holder.SaveList());
    EXPECT_EQ(Snapshot(), before);
    Folder.SetReadOnly(ListFile, true);
    EXPECT_TRUE(Holder.SaveList());
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ListHolderTest, AFileThatCannotBeDeletedIsIgnored) {
    Holder.GetAt(0)->SetDeleteFlag(1);
    Fakes.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    EXPECT_TRUE(Holder.SaveList());
    EXPECT_EQ(Fakes.Clock.Total(), 28'000U);
    EXPECT_TRUE(Folder.Exists("first.pmt"));
    EXPECT_EQ(Folder.Read(ListFile),
              "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~Second~3~0~14~second.pmt\r\n");
}

} // namespace
} // namespace pmx::test
