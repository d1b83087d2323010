#include "store/list_data_array.h"

#include "store/list_file.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ListDataArrayTest : public testing::Test {
protected:
    ~ListDataArrayTest() override { EXPECT_EQ(Host.LiveDocuments, 0U) << "a document was not destroyed"; }

    /// A list on the test's folder.
    std::unique_ptr<CPMXTemplUIListDataArray> MakeList(const char* listFileName = nullptr,
                                                       const char* extension = nullptr) {
        auto list = std::make_unique<CPMXTemplUIListDataArray>(listFileName, extension, Fakes.Services);
        EXPECT_TRUE(list->SetFolder(Folder.Path().c_str()));
        return list;
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
};

std::unique_ptr<CPMXTemplUIListData> Favorite(const std::string& name, std::uint32_t standard = 0) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetName(name);
    record->SetStandard(standard);
    return record;
}

std::unique_ptr<CPMXTemplUIListData> FavoriteIn(const std::string& fileName, std::uint32_t standard = 0,
                                                std::int32_t deleted = 0) {
    auto record = Favorite(fileName, standard);
    record->SetFileName(fileName);
    record->SetDeleteFlag(deleted);
    return record;
}

TEST_F(ListDataArrayTest, ANewListHasTheDefaultNamesAndNoFolder) {
    const CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_EQ(list.GetExtension(), ".pmt");
    EXPECT_EQ(list.GetFolder(), "");
    EXPECT_EQ(list.GetListFilePath(), "");
    EXPECT_EQ(list.GetSize(), 0);
}

TEST_F(ListDataArrayTest, GivenNamesReplaceTheDefaultsOneByOne) {
    const auto first = MakeList("My.ini", nullptr);
    EXPECT_EQ(first->GetListFilePath(), Folder.Path("My.ini"));
    EXPECT_EQ(first->GetExtension(), ".pmt");
    const auto second = MakeList(nullptr, ".fav");
    EXPECT_EQ(second->GetListFilePath(), Folder.Path("PmxTempleList.ini"));
    EXPECT_EQ(second->GetExtension(), ".fav");
}

TEST_F(ListDataArrayTest, AFolderGetsASeparatorWhenItHasNone) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    const std::string withSeparator = Folder.Path();
    const std::string without = withSeparator.substr(0, withSeparator.size() - 1);
    for (const std::string& path : {without, withSeparator}) {
        EXPECT_TRUE(list.SetFolder(path.c_str()));
        EXPECT_EQ(list.GetFolder(), withSeparator);
        EXPECT_EQ(list.GetListFilePath(), withSeparator + "PmxTempleList.ini");
    }
}

TEST_F(ListDataArrayTest, ASecondByteIsNoSeparatorAtTheEndOfAFolder) {
    for (const std::u8string_view name : {u8"表", u8"予定表", u8"ソ"}) {
        const std::string sjis = Sjis(name);
        ASSERT_EQ(sjis.back(), '\\');
        Folder.AddFolder(sjis);
        CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
        EXPECT_TRUE(list.SetFolder(Folder.Path(sjis).c_str()));
        EXPECT_EQ(list.GetFolder(), Folder.Path(sjis) + "\\");
        EXPECT_EQ(list.GetListFilePath(), Folder.Path(sjis) + "\\PmxTempleList.ini");
    }
}

TEST_F(ListDataArrayTest, AMissingPathChangesNothing) {
    const auto list = MakeList();
    EXPECT_FALSE(list->SetFolder(nullptr));
    EXPECT_FALSE(list->SetFolder(""));
    EXPECT_EQ(list->GetFolder(), Folder.Path());
    EXPECT_EQ(list->GetListFilePath(), Folder.Path("PmxTempleList.ini"));
}

TEST_F(ListDataArrayTest, AFileOrNothingIsNoFolder) {
    Folder.Write("file", "");
    for (const char* const name : {"file", "missing", "missing\\deeper"}) {
        CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
        EXPECT_FALSE(list.SetFolder(Folder.Path(name).c_str())) << name;
        EXPECT_EQ(list.GetListFilePath(), "");
        EXPECT_FALSE(list.LoadList());
    }
}

TEST_F(ListDataArrayTest, AListThatLosesItsFolderLosesItsListFile) {
    const auto list = MakeList();
    EXPECT_FALSE(list->SetFolder(Folder.Path("missing").c_str()));
    EXPECT_EQ(list->GetListFilePath(), "");
    EXPECT_FALSE(list->WriteListFile());
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

TEST_F(ListDataArrayTest, RecordsKeepTheOrderInWhichTheyAreAppended) {
    const auto list = MakeList();
    EXPECT_EQ(list->Add(Favorite("first")), 0);
    EXPECT_EQ(list->Add(Favorite("second")), 1);
    EXPECT_EQ(list->GetSize(), 2);
    EXPECT_EQ(list->At(0).GetName(), "first");
    EXPECT_EQ(list->At(1).GetName(), "second");
    EXPECT_THAT(list->GetRecords(), ElementsAre(&list->At(0), &list->At(1)));
}

TEST_F(ListDataArrayTest, AccessOutsideTheListIsAnInvalidArgument) {
    const auto list = MakeList();
    list->Add(Favorite("only"));
    for (const std::int64_t index : {std::int64_t{-1}, std::int64_t{1}, std::int64_t{1} << 40}) {
        EXPECT_FALSE(list->Contains(index));
        EXPECT_THROW(list->At(index), std::invalid_argument);
    }
    EXPECT_TRUE(list->Contains(0));
}

TEST_F(ListDataArrayTest, RemovingAllDestroysEveryRecordAndItsDocument) {
    const auto list = MakeList();
    for (int count = 0; count < 3; ++count) {
        auto record = Favorite("name");
        ASSERT_TRUE(record->EnsureDocument());
        list->Add(std::move(record));
    }
    Host.Plan.FailAt(HostCall::Destroy, 2, HostFailure::Raise);
    EXPECT_NO_THROW(list->RemoveAll());
    EXPECT_EQ(list->GetSize(), 0);
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ListDataArrayTest, DestroyingAListDestroysItsRecords) {
    auto list = MakeList();
    auto record = Favorite("name");
    ASSERT_TRUE(record->EnsureDocument());
    list->Add(std::move(record));
    list.reset();
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ListDataArrayTest, TheFirstRecordOfANameDecidesItsUseWhateverTheCase) {
    const auto list = MakeList();
    list->Add(Favorite("ABC", 1));
    list->Add(Favorite("abc", 0));
    list->Add(Favorite("user", 0));
    EXPECT_EQ(list->CheckName("Abc"), NameUse::StandardFavorite);
    EXPECT_EQ(list->CheckName("USER"), NameUse::UserFavorite);
    EXPECT_EQ(list->CheckName("abcd"), NameUse::Unused);
    EXPECT_EQ(static_cast<int>(NameUse::Unused), 1);
    EXPECT_EQ(static_cast<int>(NameUse::UserFavorite), 2);
    EXPECT_EQ(static_cast<int>(NameUse::StandardFavorite), 4);
}

TEST_F(ListDataArrayTest, DoubleByteNamesCompareExactly) {
    const auto list = MakeList();
    list->Add(Favorite(Sjis(u8"ア"))); // 83 41: the second byte is a letter
    list->Add(Favorite(Sjis(u8"Ａ")));
    list->Add(Favorite(Sjis(u8"ｱｲｳ")));
    EXPECT_EQ(list->CheckName(Sjis(u8"ア")), NameUse::UserFavorite);
    EXPECT_EQ(list->CheckName(Sjis(u8"ヂ")), NameUse::Unused) << "83 61";
    EXPECT_EQ(list->CheckName(Sjis(u8"ａ")), NameUse::Unused) << "full-width letters differ";
    EXPECT_EQ(list->CheckName(Sjis(u8"ｱｲｳ")), NameUse::UserFavorite);
    EXPECT_EQ(list->CheckName(Sjis(u8"アイウ")), NameUse::Unused);
    EXPECT_TRUE(list->IsNameUnique(1, Sjis(u8"ヂ")));
    EXPECT_FALSE(list->IsNameUnique(1, Sjis(u8"ア")));
}

TEST_F(ListDataArrayTest, ANameIsUniqueWhenNoOtherRecordHasItWhateverTheCase) {
    const auto list = MakeList();
    list->Add(Favorite("first"));
    list->Add(Favorite("Second"));
    EXPECT_TRUE(list->IsNameUnique(0, "FIRST")) << "the record itself does not count";
    EXPECT_FALSE(list->IsNameUnique(0, "SECOND"));
    EXPECT_TRUE(list->IsNameUnique(1, "second"));
    EXPECT_TRUE(list->IsNameUnique(1, "third"));
}

TEST_F(ListDataArrayTest, ANameIsUniqueForAPositionOutsideTheList) {
    const auto list = MakeList();
    list->Add(Favorite("first"));
    EXPECT_TRUE(list->IsNameUnique(-1, "first"));
    EXPECT_TRUE(list->IsNameUnique(1, "first"));
}

TEST_F(ListDataArrayTest, FindingByNameIsExactAndGivesTheFirst) {
    const auto list = MakeList();
    list->Add(Favorite("Name"));
    list->Add(Favorite("name"));
    list->Add(Favorite("name"));
    EXPECT_EQ(list->FindByName("name"), &list->At(1));
    EXPECT_EQ(list->FindByName("NAME"), nullptr);
    EXPECT_EQ(list->FindByName(""), nullptr);
}

TEST_F(ListDataArrayTest, AFavoriteNameThatIsAFileNameBecomesItsFileName) {
    const auto list = MakeList();
    EXPECT_EQ(list->MakeFileName("Name"), "Name.pmt");
    EXPECT_EQ(list->MakeFileName(Sjis(u8"ミ表ソ能×ｱ")), Sjis(u8"ミ表ソ能×ｱ.pmt"));
    EXPECT_THAT(Folder.Names(), IsEmpty()) << "asking makes no file";
}

TEST_F(ListDataArrayTest, ForbiddenCharactersAreReplacedInAFileName) {
    EXPECT_EQ(MakeList()->MakeFileName("a/b:c"), "a=b=c.pmt");
}

TEST_F(ListDataArrayTest, ANameThatIsEmptyGetsTheDefaultBaseName) {
    const auto list = MakeList();
    EXPECT_EQ(list->MakeFileName(""), "Template.pmt");
    Folder.Write("Template.pmt", "");
    EXPECT_EQ(list->MakeFileName(""), "Template-1.pmt");
    Folder.Write("Template-1.pmt", "");
    EXPECT_EQ(list->MakeFileName(""), "Template-2.pmt");
}

TEST_F(ListDataArrayTest, TakenFileNamesAreNumberedFromOneWithAPauseBetween) {
    Folder.Write("Name.pmt", "");
    Folder.Write("Name-1.pmt", "");
    Folder.Write("Name-2.pmt", "");
    Folder.Write("Name-0.pmt", "");
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-3.pmt");
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1, 1));
    EXPECT_EQ(Folder.Read("Name.pmt"), "");
}

TEST_F(ListDataArrayTest, AfterTheLastNumberThereIsNoFileName) {
    EXPECT_EQ(SystemStoreServices().LastFileNumber, 2147483647);
    Fakes.Services.LastFileNumber = 2;
    for (const char* const name : {"Name.pmt", "Name-1.pmt"}) {
        Folder.Write(name, "");
    }
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-2.pmt");
    Folder.Write("Name-2.pmt", "");
    EXPECT_EQ(MakeList()->MakeFileName("Name"), std::nullopt);
}

TEST_F(ListDataArrayTest, ATakenFileIsClosedAgainBeforeThePause) {
    Folder.Write("Name.pmt", "");
    Folder.Write("Name-1.pmt", "");
    Fakes.Clock.OnSleep = [this] {
        EXPECT_EQ(SystemFiles().Remove(Folder.Path("Name-1.pmt")), FileError::None);
    };
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-2.pmt");
    EXPECT_EQ(Fakes.Clock.Sleeps.size(), 1U);
}

TEST_F(ListDataArrayTest, TheFirstProbeOnlyAsksWhetherTheFileExists) {
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name.pmt");
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::Exists), 1U);
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::TryOpen), 0U);
}

TEST_F(ListDataArrayTest, ANameThatCannotBeLookedAtIsTaken) {
    Fakes.Disk.Plan.FailAt(FileOperation::Exists, 1, FileError::Held);
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-1.pmt");
}

TEST_F(ListDataArrayTest, AFolderTakesANumberWithoutAWait) {
    Folder.AddFolder("Name.pmt");
    Folder.AddFolder("Name-1.pmt");
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-2.pmt");
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty());
}

std::unique_ptr<CPMXTemplUIListData> WithDocument(const std::string& nameInside) {
    auto record = MakeFavorite();
    EXPECT_NE(record, nullptr);
    record->GetDocument()->SetName(nameInside);
    return record;
}

TEST_F(ListDataArrayTest, ANewFavoriteIsAppendedWithAFileOfItsOwn) {
    const auto list = MakeList();
    auto record = WithDocument("inside");
    record->SetStandard(1);
    record->SetToolbar(1);
    record->SetDeleteFlag(1);
    record->SetImportFlag(1);
    EXPECT_EQ(list->AddFavorite(std::move(record), "Name", 3), StoreResult::Success);
    ASSERT_EQ(list->GetSize(), 1);
    const CPMXTemplUIListData& added = list->At(0);
    EXPECT_EQ(added.GetStandard(), 0U);
    EXPECT_EQ(added.GetName(), "Name");
    EXPECT_EQ(added.GetLevel(), 3);
    EXPECT_EQ(added.GetToolbar(), 0);
    EXPECT_EQ(added.GetIconIndex(), 14);
    EXPECT_EQ(added.GetFileName(), "Name.pmt");
    EXPECT_EQ(added.GetNewFlag(), 1);
    EXPECT_EQ(added.GetDeleteFlag(), 0);
    EXPECT_EQ(added.GetImportFlag(), 0);
    EXPECT_TRUE(added.IsDocumentReady());
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "Name.pmt").Name, "inside");
}

TEST_F(ListDataArrayTest, AFileThatAppearsUnderANewFavoritesNameStaysAndTheNextNumberIsTaken) {
    Fakes.Disk.AfterAbsence = [this](const std::string& path) {
        Folder.Write("Name.pmt", "somebody else's");
        Folder.Write("Name-1.pmt", "and held");
        Fakes.Disk.AfterAbsence = nullptr;
        EXPECT_EQ(path, Folder.Path("Name.pmt"));
    };
    Fakes.Disk.Plan.FailFrom(FileOperation::TryOpen, 1, FileError::Held);
    const auto list = MakeList();
    EXPECT_EQ(list->AddFavorite(WithDocument("inside"), "Name", 1), StoreResult::Success);
    EXPECT_EQ(list->At(0).GetFileName(), "Name-2.pmt");
    EXPECT_EQ(Folder.Read("Name.pmt"), "somebody else's");
    EXPECT_EQ(Folder.Read("Name-1.pmt"), "and held");
}

TEST_F(ListDataArrayTest, ANewFavoriteThatCannotBeWrittenIsNotAddedAndLeavesNoFile) {
    const auto list = MakeList();
    Host.Plan.FailAt(HostCall::Save, 1, HostFailure::Refuse);
    EXPECT_EQ(list->AddFavorite(WithDocument("inside"), "Name", 1), StoreResult::NotWritten);
    Fakes.Disk.Plan.FailFrom(FileOperation::CreateNew, 1, FileError::Held);
    EXPECT_EQ(list->AddFavorite(WithDocument("inside"), "Name", 1), StoreResult::NotWritten);
    Fakes.Disk.Plan.Heal();
    Fakes.Disk.Plan.FailFrom(FileOperation::CreateNew, 1, FileError::Exists);
    Fakes.Services.LastFileNumber = 2;
    EXPECT_EQ(MakeList()->AddFavorite(WithDocument("inside"), "Name", 1), StoreResult::NoFileName);
    EXPECT_EQ(list->GetSize(), 0);
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

TEST_F(ListDataArrayTest, ANumberedFileThatStaysLockedCountsAsFreeAfterAllRetries) {
    Folder.Write("Name.pmt", "");
    Folder.Write("Name-1.pmt", "");
    Fakes.Disk.Plan.FailFrom(FileOperation::TryOpen, 1, FileError::Held);
    EXPECT_EQ(MakeList()->MakeFileName("Name"), "Name-1.pmt");
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::TryOpen), 13U);
    EXPECT_EQ(Fakes.Clock.Total(), 28'000U);
}

TEST_F(ListDataArrayTest, ADevicesNameIsTakenInEveryFolder) {
    const auto list = MakeList();
    EXPECT_EQ(list->MakeFileName("NUL"), "NUL-1.pmt");
    EXPECT_EQ(list->MakeFileName("com1"), "com1-1.pmt");
}

TEST_F(ListDataArrayTest, TheListFilesNameIsTakenEvenBeforeThereIsOne) {
    const auto list = MakeList("List.ini", ".ini");
    EXPECT_EQ(list->MakeFileName("List"), "List-1.ini");
    EXPECT_EQ(list->MakeFileName("LIST"), "LIST-1.ini");
    const auto numbered = MakeList("List-1.pmt", ".pmt");
    Folder.Write("List.pmt", "");
    EXPECT_EQ(numbered->MakeFileName("List"), "List-2.pmt");
}

TEST_F(ListDataArrayTest, FavoritesAreReadFromAndWrittenToTheFolder) {
    const auto list = MakeList();
    CPMXTemplUIListData record;
    record.SetFileName(Sjis(u8"表.pmt"));
    EXPECT_FALSE(list->SaveFavorite(record)) << "without a document";
    ASSERT_TRUE(record.EnsureDocument());
    record.GetDocument()->SetName("inside");
    EXPECT_TRUE(list->SaveFavorite(record));
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, Sjis(u8"表.pmt")).Name, "inside");
    record.GetDocument()->SetName("changed");
    EXPECT_TRUE(list->EnsureLoaded(record));
    EXPECT_EQ(record.GetDocument()->GetName(), "changed") << "what is loaded stays";
    record.ReleaseDocument();
    EXPECT_TRUE(list->EnsureLoaded(record));
    EXPECT_EQ(record.GetDocument()->GetName(), "inside");
    EXPECT_TRUE(list->DeleteFavorite(record));
    EXPECT_THAT(Folder.Names(), IsEmpty());
    EXPECT_FALSE(list->DeleteFavorite(record));
}

TEST_F(ListDataArrayTest, ADocumentThatCouldNotBeLoadedIsLoadedAtTheNextNeed) {
    const auto list = MakeList();
    CPMXTemplUIListData record;
    record.SetFileName("a.pmt");
    EXPECT_FALSE(list->EnsureLoaded(record));
    EXPECT_NE(record.GetDocument(), nullptr) << "empty";
    EXPECT_FALSE(record.IsDocumentReady());
    FakeHost::WriteFavorite(Folder, "a.pmt", {.Level = 1, .Name = "inside"});
    Host.Plan.FailAt(HostCall::Create, 2, HostFailure::Refuse);
    EXPECT_FALSE(list->EnsureLoaded(record));
    EXPECT_TRUE(list->EnsureLoaded(record));
    EXPECT_EQ(record.GetDocument()->GetName(), "inside");
}

TEST_F(ListDataArrayTest, FileFieldsThatLeadOutOfTheFolderAreMissingFiles) {
    Folder.AddFolder("sub");
    Folder.AddFolder("Favorites");
    const std::string inside = Folder.Path("Favorites");
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    ASSERT_TRUE(list.SetFolder(inside.c_str()));
    FakeHost::WriteFavorite(Folder, "outside.pmt", {});
    FakeHost::WriteFavorite(Folder, "sub\\below.pmt", {});
    FakeHost::WriteFavorite(Folder, "Favorites\\PmxTempleList.ini", {});
    const std::string before = Folder.Read("outside.pmt");
    const std::vector<std::string> fields = {"..\\outside.pmt",
                                             "../outside.pmt",
                                             Folder.Path("outside.pmt"),
                                             "\\outside.pmt",
                                             "/outside.pmt",
                                             "C:outside.pmt",
                                             "a.pmt:stream",
                                             "..\\sub\\below.pmt",
                                             "sub/below.pmt",
                                             ".",
                                             "..",
                                             "...",
                                             " ",
                                             "",
                                             "NUL",
                                             "nul.pmt",
                                             "Con.x.y",
                                             "AUX ",
                                             "prn",
                                             "COM1",
                                             "lpt9.pmt",
                                             "CONIN$",
                                             "conout$.pmt",
                                             "PmxTempleList.ini",
                                             "PMXTEMPLELIST.INI",
                                             "PmxTempleList.ini.",
                                             "PmxTempleList.ini  ",
                                             std::string("a\0b.pmt", 7),
                                             "\x81/outside.pmt",
                                             "\x81:x"};
    for (const std::string& field : fields) {
        CPMXTemplUIListData record;
        record.SetFileName(field);
        ASSERT_TRUE(record.EnsureDocument());
        EXPECT_EQ(list.FavoritePath(record), std::nullopt) << field;
        EXPECT_FALSE(list.EnsureLoaded(record)) << field;
        EXPECT_FALSE(list.SaveFavorite(record)) << field;
        EXPECT_FALSE(list.DeleteFavorite(record)) << field;
    }
    EXPECT_THAT(Host.LoadedPaths, IsEmpty());
    EXPECT_THAT(Host.SavedPaths, IsEmpty());
    EXPECT_EQ(Fakes.Disk.Plan.Calls(FileOperation::Remove), 0U);
    EXPECT_EQ(Folder.Read("outside.pmt"), before);
    EXPECT_TRUE(Folder.Exists("sub\\below.pmt"));
    EXPECT_TRUE(Folder.Exists("Favorites\\PmxTempleList.ini"));
}

TEST_F(ListDataArrayTest, FileFieldsInTheFolderKeepTheirName) {
    const auto list = MakeList();
    const std::vector<std::string> fields = {Sjis(u8"表.pmt"),
                                             Sjis(u8"ソフト×能.pmt"),
                                             ".pmt",
                                             "a..pmt",
                                             "NULL.pmt",
                                             "xCON",
                                             "COM10.pmt",
                                             "COM.pmt",
                                             "PmxTempleList.ini.pmt",
                                             Sjis(u8"ｱ.pmt"),
                                             "a b.pmt",
                                             "\x81\\.pmt"};
    for (const std::string& field : fields) {
        CPMXTemplUIListData record;
        record.SetFileName(field);
        EXPECT_EQ(list->FavoritePath(record), Folder.Path(field)) << field;
    }
}

TEST_F(ListDataArrayTest, DeletingWaitsForAFileThatIsHeld) {
    FakeHost::WriteFavorite(Folder, "a.pmt", {});
    const auto list = MakeList();
    Fakes.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::Held);
    EXPECT_TRUE(list->DeleteFavorite(*FavoriteIn("a.pmt")));
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1000));
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

TEST_F(ListDataArrayTest, OnlyFilesOfDeletedUserFavoritesAreDeleted) {
    for (const char* const name : {"user.pmt", "kept.pmt", "standard.pmt", "other.pmt"}) {
        Folder.Write(name, "");
    }
    const auto list = MakeList();
    list->Add(FavoriteIn("user.pmt", 0, 1));
    list->Add(FavoriteIn("kept.pmt", 0, 0));
    list->Add(FavoriteIn("standard.pmt", 1, 1));
    list->Add(FavoriteIn("missing.pmt", 0, 1));
    list->Add(FavoriteIn("..\\escape.pmt", 0, 1));
    list->DeleteFilesOfDeleted(list->GetRecords());
    EXPECT_THAT(Folder.Names(), ElementsAre("kept.pmt", "other.pmt", "standard.pmt"));
}

TEST_F(ListDataArrayTest, AFileThatAnotherFavoriteUsesIsKept) {
    Folder.Write("shared.pmt", "");
    Folder.Write("standard.pmt", "");
    Folder.Write("gone.pmt", "");
    const auto list = MakeList();
    list->Add(FavoriteIn("shared.pmt", 0, 1));
    list->Add(FavoriteIn("Shared.PMT.", 0, 0));
    list->Add(FavoriteIn("standard.pmt", 0, 1));
    list->Add(FavoriteIn("standard.pmt", 1, 0));
    list->Add(FavoriteIn("gone.pmt", 0, 1));
    list->Add(FavoriteIn("gone.pmt", 0, 1));
    list->DeleteFilesOfDeleted(list->GetRecords());
    EXPECT_THAT(Folder.Names(), ElementsAre("shared.pmt", "standard.pmt"));
}

TEST_F(ListDataArrayTest, AFailedDeleteDoesNotKeepTheOthersFromBeingDeleted) {
    Folder.Write("first.pmt", "");
    Folder.Write("second.pmt", "");
    const auto list = MakeList();
    list->Add(FavoriteIn("first.pmt", 0, 1));
    list->Add(FavoriteIn("second.pmt", 0, 1));
    Fakes.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::Other);
    list->DeleteFilesOfDeleted(list->GetRecords());
    EXPECT_THAT(Folder.Names(), ElementsAre("first.pmt"));
}

} // namespace
} // namespace pmx::test
