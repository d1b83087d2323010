#include "store/import_export.h"

#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace pmx {
namespace {

using test::FakeHost;
using test::FakeServices;
using test::FileOperation;
using test::HostCall;
using test::HostFailure;
using test::SameTable;
using test::Sjis;
using test::TableOf;
using test::TempFolder;

using Names = std::vector<std::string>;

TEST(BaseName, IsTheFileNameWithoutFolderAndExtension) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    EXPECT_EQ(BaseNameOf("C:\\a.b\\Name.pmt", leadBytes), "Name");
    EXPECT_EQ(BaseNameOf("C:/x/a.b.pmt", leadBytes), "a.b");
    EXPECT_EQ(BaseNameOf("C:Name", leadBytes), "Name");
    EXPECT_EQ(BaseNameOf("C:\\x.y\\Name", leadBytes), "Name");
    EXPECT_EQ(BaseNameOf("C:\\x\\.pmt", leadBytes), "");
    EXPECT_EQ(BaseNameOf("", leadBytes), "");
}

TEST(BaseName, TakesNoSecondByteForASeparator) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    EXPECT_EQ(BaseNameOf(Sjis(u8"C:\\表\\ソ表.pmt"), leadBytes), Sjis(u8"ソ表"));
    EXPECT_EQ(FolderOf(Sjis(u8"C:\\表\\ソ表.pmt"), leadBytes), Sjis(u8"C:\\表\\"));
}

TEST(BaseName, HasAtMost255BytesAndNoHalfCharacter) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    EXPECT_EQ(BaseNameOf(std::string(300, 'x'), leadBytes), std::string(255, 'x'));
    std::string doubleByte;
    for (int count = 0; count < 130; ++count) {
        doubleByte += Sjis(u8"表");
    }
    EXPECT_EQ(BaseNameOf(doubleByte, leadBytes).size(), 254U);
}

class ImportExport : public testing::Test {
protected:
    ImportExport() { List.SetFolder(Folder.Path().c_str()); }

    /// Adds a favorite with a file of its own.
    CPMXTemplUIListData& Add(const std::string& name, const std::string& fileName,
                             std::uint32_t standard = 0) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetName(name);
        record->SetFileName(fileName);
        record->SetStandard(standard);
        FakeHost::WriteFavorite(Folder, fileName, {.Table = TableOf(9), .Level = 1, .Name = name});
        return *List.GetAt(List.Add(std::move(record)));
    }

    void GivenFile(const std::string& fileName, const std::string& name) {
        FakeHost::WriteFavorite(Outside, fileName, {.Table = TableOf(8), .Level = 4, .Name = name});
    }

    ExportResult Export(const CPMXTemplUIListData& record, const std::string& path) {
        return ExportFavorite(List, record, path);
    }

    TempFolder Folder{"favorites"};
    TempFolder Outside{"outside"};
    FakeHost Host;
    FakeServices Store;
    CPMXTemplUIListDataArray List{nullptr, nullptr, Store.Services};
};

using ImportTest = ImportExport;
using ExportTest = ImportExport;

TEST_F(ImportTest, TakesNameLevelAndDocumentFromTheFile) {
    GivenFile("X.pmt", "Inside");
    FavoriteImport import(List);
    ASSERT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::Success);
    EXPECT_EQ(import.GetRecord().GetName(), "Inside");
    EXPECT_EQ(import.GetRecord().GetLevel(), 4);
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_EQ(import.Finish("Given"), 0);
    const CPMXTemplUIListData& record = *List.GetAt(0);
    EXPECT_EQ(record.GetStandard(), 0U);
    EXPECT_EQ(record.GetName(), "Given");
    EXPECT_EQ(record.GetFileName(), "X.pmt");
    EXPECT_EQ(record.GetNewFlag(), 1);
    EXPECT_EQ(record.GetImportFlag(), 1);
    EXPECT_EQ(record.GetDeleteFlag(), 0);
    EXPECT_EQ(record.GetToolbar(), 0);
    EXPECT_EQ(record.GetIconIndex(), 0);
    const test::HostContent content = FakeHost::ContentOf(*record.GetDocument());
    EXPECT_EQ(content.Name, "Given");
    EXPECT_TRUE(SameTable(content.Table, TableOf(8)));
}

TEST_F(ImportTest, FinishedFileStaysAndAnUnfinishedOneGoes) {
    GivenFile("X.pmt", "N");
    {
        FavoriteImport finished(List);
        finished.Read(Outside.Path("X.pmt"));
        finished.Finish("N");
        FavoriteImport unfinished(List);
        EXPECT_EQ(unfinished.Read(Outside.Path("X.pmt")), ImportResult::Success);
        EXPECT_EQ(Folder.Names(), (Names{"X-1.pmt", "X.pmt"}));
    }
    EXPECT_EQ(Folder.Names(), Names{"X.pmt"});
}

TEST_F(ImportTest, FileWithoutABaseNameGetsTheDefaultOne) {
    GivenFile(".pmt", "N");
    FavoriteImport import(List);
    import.Read(Outside.Path(".pmt"));
    EXPECT_EQ(Folder.Names(), Names{"Template.pmt"});
}

TEST_F(ImportTest, FileWithAnotherExtensionGetsTheListsOne) {
    GivenFile("X.backup", "N");
    FavoriteImport import(List);
    EXPECT_EQ(import.Read(Outside.Path("X.backup")), ImportResult::Success);
    EXPECT_EQ(Folder.Names(), Names{"X.pmt"});
}

TEST_F(ImportTest, NameOfTheNewFileCanStandInTheListFile) {
    for (const auto& [given, made] : {std::pair{Sjis(u8"ミ~1~.pmt"), Sjis(u8"ミ=1=.pmt")},
                                      std::pair<std::string, std::string>{"  x .pmt", "x.pmt"},
                                      std::pair<std::string, std::string>{" .pmt", "Template.pmt"}}) {
        GivenFile(given, "N");
        FavoriteImport import(List);
        ASSERT_EQ(import.Read(Outside.Path(given)), ImportResult::Success);
        EXPECT_EQ(import.GetRecord().GetFileName(), made);
    }
}

TEST_F(ImportTest, FavoriteFromAnyFileIsInTheListThatIsReadAgain) {
    GivenFile(" a~b.pmt", "N");
    {
        FavoriteImport import(List);
        ASSERT_EQ(import.Read(Outside.Path(" a~b.pmt")), ImportResult::Success);
        import.Finish("N");
    }
    ASSERT_TRUE(List.WriteListFile());
    ASSERT_TRUE(List.LoadList());
    ASSERT_EQ(List.GetSize(), 1);
    EXPECT_TRUE(List.GetAt(0)->EnsureDocument());
    EXPECT_TRUE(List.LoadFavorite(*List.GetAt(0)));
}

TEST_F(ImportTest, EveryFailureLeavesNothingBehind) {
    GivenFile("X.pmt", "N");
    const struct {
        HostCall Call;
        ImportResult Result;
    } problems[] = {{HostCall::Create, ImportResult::OutOfMemory}, {HostCall::Load, ImportResult::NotRead}};
    for (const auto& problem : problems) {
        Host.Plan.Heal();
        Host.Plan.FailFrom(problem.Call, 1, HostFailure::Raise);
        FavoriteImport import(List);
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), problem.Result);
        import.Discard();
        EXPECT_TRUE(Folder.Names().empty());
    }
    EXPECT_EQ(Host.LiveDocuments, 0U);
    EXPECT_EQ(List.GetSize(), 0);
}

TEST_F(ImportTest, FileForWhichThereIsNoNameIsNotCopied) {
    GivenFile("X.pmt", "N");
    Folder.Write("X.pmt", "somebody else's");
    Store.Services.LastFileNumber = 0;
    CPMXTemplUIListDataArray list(nullptr, nullptr, Store.Services);
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    {
        FavoriteImport import(list);
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::NoFileName);
    }
    EXPECT_EQ(Folder.Names(), Names{"X.pmt"});
    EXPECT_EQ(Folder.Read("X.pmt"), "somebody else's");
}

TEST_F(ImportTest, FileThatCannotBeCopiedIsRetriedAndLeavesNothingBehind) {
    GivenFile("X.pmt", "N");
    Store.Disk.Plan.FailFrom(FileOperation::Copy, 1, FileError::SharingViolation);
    FavoriteImport import(List);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::NotCopied);
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ImportTest, FileThatAppearsUnderTheNewNameMeanwhileIsNeitherOverwrittenNorDeleted) {
    GivenFile("X.pmt", "N");
    Store.Disk.AfterAbsence = [this](const std::string&) { Folder.Write("X.pmt", "somebody else's"); };
    {
        FavoriteImport import(List);
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::NotCopied);
    }
    EXPECT_EQ(Folder.Read("X.pmt"), "somebody else's");
}

TEST_F(ImportTest, CopyThatCannotBeDeletedIsRetriedAndThenLeft) {
    Outside.Write("X.pmt", "no favorite");
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::AccessDenied);
    {
        FavoriteImport import(List);
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::NotRead);
    }
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Exists("X.pmt"));
}

TEST_F(ImportTest, ListWithoutAFolderTakesNothingIn) {
    GivenFile("X.pmt", "N");
    CPMXTemplUIListDataArray homeless(nullptr, nullptr, Store.Services);
    homeless.SetFolder(Folder.Path("Missing").c_str());
    FavoriteImport import(homeless);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), ImportResult::NotCopied);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ExportTest, NameOfTheFileIsSafe) {
    EXPECT_EQ(ProposedExportName(List, Add(Sjis(u8"表/裏"), "A.pmt")), Sjis(u8"表=裏.pmt"));
}

TEST_F(ExportTest, TargetIsReplacedByAWholeFile) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    record.SetName("New name");
    record.SetLevel(3);
    Outside.Write("X.pmt", "old");
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::Success);
    const test::HostContent content = FakeHost::ReadFavorite(Outside, "X.pmt");
    EXPECT_EQ(content.Name, "New name");
    EXPECT_EQ(content.Level, 3);
    EXPECT_TRUE(SameTable(content.Table, TableOf(9)));
    EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ExportTest, DocumentThatIsLoadedStaysAsItIs) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    record.EnsureDocument();
    record.GetDocument()->SetName("edited, not saved");
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::Success);
    EXPECT_EQ(record.GetDocument()->GetName(), "edited, not saved");
    EXPECT_EQ(FakeHost::ReadFavorite(Outside, "X.pmt").Name, "A");
}

TEST_F(ExportTest, EveryFailureLeavesTheTargetAsItWas) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Outside.Write("X.pmt", "old");
    for (const FileOperation operation :
         {FileOperation::CreateTemporary, FileOperation::Flush, FileOperation::Replace}) {
        Store.Disk.Plan.Heal();
        Store.Disk.Plan.FailFrom(operation, 1, FileError::DiskFull);
        EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::NotWritten);
        EXPECT_EQ(Outside.Read("X.pmt"), "old");
        EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
    }
    Store.Disk.Plan.Heal();
    for (const HostCall call : {HostCall::SetName, HostCall::SetLevel, HostCall::Save}) {
        Host.Plan.Heal();
        Host.Plan.FailFrom(call, 1, HostFailure::Raise);
        EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::NotWritten);
        EXPECT_EQ(Outside.Read("X.pmt"), "old");
        EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
    }
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ExportTest, FavoriteThatCannotBeReadIsNotWritten) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.Write("A.pmt", "damaged");
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::NotRead);
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_F(ExportTest, FileOutsideTheFolderCountsAsMissing) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.AddFolder("Sub");
    FakeHost::WriteFavorite(Folder, "Sub\\X.pmt", {.Level = 1, .Name = "A"});
    record.SetFileName("Sub\\X.pmt");
    EXPECT_EQ(Export(record, Outside.Path("Y.pmt")), ExportResult::NotRead);
}

TEST_F(ExportTest, FilesOfUserFavoritesAreNoTargetsInAnyCase) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Add("S", "S.pmt", 1);
    List.Add(nullptr);
    EXPECT_EQ(Export(record, Folder.Path("a.PMT")), ExportResult::OwnFile);
    EXPECT_EQ(Export(record, Folder.Path("S.pmt")), ExportResult::Success);
}

TEST_F(ExportTest, ListFileIsNoTarget) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.Write("PmxTempleList.ini", "the list");
    EXPECT_EQ(Export(record, Folder.Path("pmxtemplelist.INI")), ExportResult::NotWritten);
    EXPECT_EQ(Folder.Read("PmxTempleList.ini"), "the list");
}

TEST_F(ExportTest, ReadOnlyTargetStaysAndIsNotWaitedFor) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Outside.Write("X.pmt", "old");
    Outside.SetReadOnly("X.pmt", true);
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), ExportResult::NotWritten);
    EXPECT_TRUE(Store.Clock.Sleeps.empty());
    EXPECT_EQ(Outside.Read("X.pmt"), "old");
    Outside.SetReadOnly("X.pmt", false);
}

} // namespace
} // namespace pmx
