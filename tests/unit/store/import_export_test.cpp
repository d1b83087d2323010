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
        return List.At(List.Add(std::move(record)));
    }

    void GivenFile(const std::string& fileName, const std::string& name) {
        FakeHost::WriteFavorite(Outside, fileName, {.Table = TableOf(8), .Level = 4, .Name = name});
    }

    StoreResult Export(const CPMXTemplUIListData& record, const std::string& path) {
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
    ASSERT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::Success);
    EXPECT_EQ(import.GetRecord().GetName(), "Inside");
    EXPECT_EQ(import.GetRecord().GetLevel(), 4);
    EXPECT_EQ(List.GetSize(), 0);
    EXPECT_EQ(import.Finish("Given"), 0);
    const CPMXTemplUIListData& record = List.At(0);
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
        EXPECT_EQ(unfinished.Read(Outside.Path("X.pmt")), StoreResult::Success);
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
    EXPECT_EQ(import.Read(Outside.Path("X.backup")), StoreResult::Success);
    EXPECT_EQ(Folder.Names(), Names{"X.pmt"});
}

TEST_F(ImportTest, NameOfTheNewFileCanStandInTheListFile) {
    for (const auto& [given, made] : {std::pair{Sjis(u8"ミ~1~.pmt"), Sjis(u8"ミ=1=.pmt")},
                                      std::pair<std::string, std::string>{"  x .pmt", "x.pmt"},
                                      std::pair<std::string, std::string>{" .pmt", "Template.pmt"}}) {
        GivenFile(given, "N");
        FavoriteImport import(List);
        ASSERT_EQ(import.Read(Outside.Path(given)), StoreResult::Success);
        EXPECT_EQ(import.GetRecord().GetFileName(), made);
    }
}

TEST_F(ImportTest, FavoriteFromAnyFileIsInTheListThatIsReadAgain) {
    GivenFile(" a~b.pmt", "N");
    {
        FavoriteImport import(List);
        ASSERT_EQ(import.Read(Outside.Path(" a~b.pmt")), StoreResult::Success);
        import.Finish("N");
    }
    ASSERT_TRUE(List.WriteListFile());
    ASSERT_TRUE(List.LoadList());
    ASSERT_EQ(List.GetSize(), 1);
    EXPECT_TRUE(List.EnsureLoaded(List.At(0)));
}

TEST_F(ImportTest, EveryFailureLeavesNothingBehind) {
    GivenFile("X.pmt", "N");
    const struct {
        HostCall Call;
        StoreResult Result;
    } problems[] = {{HostCall::Create, StoreResult::OutOfMemory}, {HostCall::Load, StoreResult::NotRead}};
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
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::NoFileName);
    }
    EXPECT_EQ(Folder.Names(), Names{"X.pmt"});
    EXPECT_EQ(Folder.Read("X.pmt"), "somebody else's");
}

TEST_F(ImportTest, FileThatCannotBeCopiedIsRetriedAndLeavesNothingBehind) {
    GivenFile("X.pmt", "N");
    Store.Disk.Plan.FailFrom(FileOperation::Read, 1, FileError::Held);
    FavoriteImport import(List);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::NotCopied);
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ImportTest, FileThatAppearsUnderTheNewNameMeanwhileStaysAndTheNextNumberIsTaken) {
    GivenFile("X.pmt", "N");
    Store.Disk.AfterAbsence = [this](const std::string&) {
        Store.Disk.AfterAbsence = nullptr;
        Folder.Write("X.pmt", "somebody else's");
    };
    FavoriteImport import(List);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::Success);
    EXPECT_EQ(import.GetRecord().GetFileName(), "X-1.pmt");
    EXPECT_EQ(Folder.Read("X.pmt"), "somebody else's");
}

/// Files that lack memory when something of theirs is to be made.
class PoorFiles : public test::FakeFiles {
public:
    FileError WriteNew(const std::string& /*path*/, const std::string& /*content*/) override {
        throw std::bad_alloc();
    }
};

TEST_F(ImportTest, LackOfMemoryIsAResultAndLeavesNothingBehind) {
    GivenFile("X.pmt", "N");
    PoorFiles files;
    CPMXTemplUIListDataArray list(nullptr, nullptr, {files, Store.Clock});
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    FavoriteImport import(list);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::OutOfMemory);
    EXPECT_EQ(list.GetSize(), 0);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ImportTest, CopyThatCannotBeDeletedIsRetriedAndThenLeft) {
    Outside.Write("X.pmt", "no favorite");
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    {
        FavoriteImport import(List);
        EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::NotRead);
    }
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Exists("X.pmt"));
}

TEST_F(ImportTest, ListWithoutAFolderTakesNothingIn) {
    GivenFile("X.pmt", "N");
    CPMXTemplUIListDataArray homeless(nullptr, nullptr, Store.Services);
    homeless.SetFolder(Folder.Path("Missing").c_str());
    FavoriteImport import(homeless);
    EXPECT_EQ(import.Read(Outside.Path("X.pmt")), StoreResult::NotCopied);
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
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::Success);
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
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::Success);
    EXPECT_EQ(record.GetDocument()->GetName(), "edited, not saved");
    EXPECT_EQ(FakeHost::ReadFavorite(Outside, "X.pmt").Name, "A");
}

TEST_F(ExportTest, EveryFailureLeavesTheTargetAsItWas) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Outside.Write("X.pmt", "old");
    for (const FileOperation operation :
         {FileOperation::CreateNew, FileOperation::Flush, FileOperation::Replace}) {
        Store.Disk.Plan.Heal();
        Store.Disk.Plan.FailFrom(operation, 1, FileError::Other);
        EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::NotWritten);
        EXPECT_EQ(Outside.Read("X.pmt"), "old");
        EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
    }
    Store.Disk.Plan.Heal();
    for (const HostCall call : {HostCall::SetName, HostCall::SetLevel, HostCall::Save}) {
        Host.Plan.Heal();
        Host.Plan.FailFrom(call, 1, HostFailure::Raise);
        EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::NotWritten);
        EXPECT_EQ(Outside.Read("X.pmt"), "old");
        EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
    }
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ExportTest, FavoriteThatCannotBeReadIsNotWritten) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.Write("A.pmt", "damaged");
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::NotRead);
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_F(ExportTest, FileOutsideTheFolderCountsAsMissing) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.AddFolder("Sub");
    FakeHost::WriteFavorite(Folder, "Sub\\X.pmt", {.Level = 1, .Name = "A"});
    record.SetFileName("Sub\\X.pmt");
    EXPECT_EQ(Export(record, Outside.Path("Y.pmt")), StoreResult::NotRead);
}

TEST_F(ExportTest, FilesOfUserFavoritesAreNoTargetsInAnyCase) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Add("S", "S.pmt", 1);
    EXPECT_EQ(Export(record, Folder.Path("a.PMT")), StoreResult::OwnFile);
    EXPECT_EQ(Export(record, Folder.Path("S.pmt")), StoreResult::Success);
}

TEST_F(ExportTest, FilesOfUserFavoritesAreNoTargetsHoweverTheirFolderIsSpelt) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Add("B", "B.pmt");
    const std::string before = Folder.Read("B.pmt");
    const std::string folder = Folder.Path();
    const std::string bare = folder.substr(0, folder.size() - 1);
    for (const std::string& spelling : {bare + "\\\\", folder + ".\\", bare + "/"}) {
        EXPECT_EQ(Export(record, spelling + "B.pmt"), StoreResult::OwnFile) << spelling;
        EXPECT_EQ(Export(record, spelling + "PmxTempleList.ini"), StoreResult::NotWritten) << spelling;
        EXPECT_EQ(Export(record, spelling + "C.pmt"), StoreResult::Success) << spelling;
    }
    EXPECT_EQ(Folder.Read("B.pmt"), before);
    Folder.Remove("B.pmt");
    EXPECT_EQ(Export(record, folder + ".\\B.pmt"), StoreResult::OwnFile) << "a missing one, too";
    EXPECT_FALSE(Folder.Exists("B.pmt"));
}

TEST_F(ExportTest, ListFileIsNoTarget) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Folder.Write("PmxTempleList.ini", "the list");
    EXPECT_EQ(Export(record, Folder.Path("pmxtemplelist.INI")), StoreResult::NotWritten);
    EXPECT_EQ(Folder.Read("PmxTempleList.ini"), "the list");
}

TEST_F(ExportTest, ReadOnlyTargetStaysAndIsNotWaitedFor) {
    CPMXTemplUIListData& record = Add("A", "A.pmt");
    Outside.Write("X.pmt", "old");
    Outside.SetReadOnly("X.pmt", true);
    EXPECT_EQ(Export(record, Outside.Path("X.pmt")), StoreResult::NotWritten);
    EXPECT_TRUE(Store.Clock.Sleeps.empty());
    EXPECT_EQ(Outside.Read("X.pmt"), "old");
    Outside.SetReadOnly("X.pmt", false);
}

} // namespace
} // namespace pmx
