#include "frame/save_as.h"

#include "dialogs/base/pmx_dlg.h"
#include "frame/dialog_exports.h"
#include "frame/list_exports.h"
#include "res/ids.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/memory_window.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>

namespace pmx {
namespace {

using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::ListFile;
using test::MemoryUser;
using test::SameTable;
using test::Sjis;
using test::TableOf;
using test::TempFolder;

constexpr std::int32_t OverwriteMode = 0;

std::string TextOf(const char (&field)[PMX_TEMPLINFO_TEXT_SIZE]) {
    return field;
}

TemplInfo InfoOf(const std::string& name, std::int32_t level, std::uint32_t standard = 0,
                 std::int64_t position = 0) {
    TemplInfo info{};
    info.Position = position;
    info.Standard = standard;
    info.Level = level;
    std::memcpy(info.Name, name.data(), name.size());
    return info;
}

class SaveAsTest : public testing::Test {
protected:
    SaveAsTest() { FakeHost::WriteFavorite(Folder, "Old.pmt", {TableOf(20), 1, "Old"}); }

    void SetUp() override {
        Folder.Write(ListFile, "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~Old~1~1~33~Old.pmt\r\n"
                               "TemplateData1=1~" +
                                   Sjis(u8"製本") + "~101~1~4~4\r\n");
        ASSERT_TRUE(List.SetFolder(Folder.Path().c_str()));
        ASSERT_TRUE(List.LoadList());
        ListBefore = Folder.Read(ListFile);
    }

    /// Confirms the dialog with that name.
    SaveAsResult Save(std::int32_t mode, TemplInfo& info, const std::string& name) {
        return SaveIn(List, mode, info, name);
    }

    SaveAsResult SaveIn(CPMXTemplUIListDataArray& list, std::int32_t mode, TemplInfo& info,
                        const std::string& name) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [name](MemoryUser& user) {
            user.Fill(control::CreateName, name);
            user.Press(control::Ok);
        });
        return SaveAsFavorite(list, mode, info, Table.Bytes, WindowHandle{7}, Desktop.Services);
    }

    /// Lets `script` use the dialog, which it must cancel.
    void Look(const TemplInfo& info, const test::MemoryDialogs::Script& script) {
        TemplInfo copy = info;
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, script);
        EXPECT_EQ(SaveAsFavorite(List, SaveAsNew, copy, Table.Bytes, WindowHandle{7}, Desktop.Services),
                  SaveAsResult::Cancelled);
    }

    FakeHost Host;
    TempFolder Folder;
    test::MemoryDesktop Desktop;
    test::FakeServices Store; // no failing file is waited for
    CPMXTemplUIListDataArray List{ListFile, ".pmt", Store.Services};
    _LM_DOCUMENTLAYOUTTABLE Table = TableOf(90);
    std::string ListBefore;
};

TEST_F(SaveAsTest, OpensTheDialogInSaveAsModeOverTheGivenWindow) {
    Look(InfoOf("A", 3), [](MemoryUser& user) {
        EXPECT_EQ(user.Parent(), WindowHandle{7});
        EXPECT_EQ(user.Text(control::CreatePrompt), Sjis(u8"追加するお気に入り名を設定してください。"));
        EXPECT_EQ(user.Text(control::CreateName), "A");
        EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
        EXPECT_FALSE(user.IsEnabled(control::CreateLevelSheet));
        user.Escape();
    });
}

TEST_F(SaveAsTest, ProposesACopyOfAStandardFavorite) {
    Look(InfoOf(Sjis(u8"製本"), 101, 1, 1), [](MemoryUser& user) {
        EXPECT_EQ(user.Text(control::CreateName), Sjis(u8"コピー ～ 製本"));
        EXPECT_TRUE(user.IsChecked(control::CreateLevelDocument));
        user.Escape();
    });
}

TEST_F(SaveAsTest, ReadsANameThatLacksItsTerminatingZero) {
    TemplInfo info = InfoOf("", 1);
    std::memset(info.Name, 'x', sizeof info.Name);
    Look(info, [](MemoryUser& user) {
        EXPECT_EQ(user.Text(control::CreateName), std::string(32, 'x'));
        user.Escape();
    });
}

TEST_F(SaveAsTest, RefusesANameInUseAlsoWhenMadeFromAStandardFavorite) {
    Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
    Look(InfoOf(Sjis(u8"製本"), 101, 1, 1), [](MemoryUser& user) {
        user.Fill(control::CreateName, "OLD");
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
        user.Escape();
    });
}

TEST_F(SaveAsTest, CancelChangesNothing) {
    const std::vector<std::string> names = Folder.Names();
    TemplInfo info = InfoOf("A", 1);
    const TemplInfo before = info;
    Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](MemoryUser& user) { user.Press(control::Cancel); });
    EXPECT_EQ(SaveAsFavorite(List, SaveAsNew, info, Table.Bytes, WindowHandle::None, Desktop.Services),
              SaveAsResult::Cancelled);
    EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
    EXPECT_EQ(Folder.Names(), names);
    EXPECT_EQ(Folder.Read(ListFile), ListBefore);
    EXPECT_EQ(List.GetSize(), 2);
}

TEST_F(SaveAsTest, ADialogThatCannotBeShownIsAFailure) {
    TemplInfo info = InfoOf("A", 1);
    Desktop.Dialogs.OnOpenedFail(dialog::CreateFavorite);
    EXPECT_EQ(SaveAsFavorite(List, SaveAsNew, info, Table.Bytes, WindowHandle::None, Desktop.Services),
              SaveAsResult::Failed);
    EXPECT_EQ(Folder.Read(ListFile), ListBefore);
}

TEST_F(SaveAsTest, StoresANewFavoriteAtTheEndOfTheList) {
    TemplInfo info = InfoOf("Proposal", 2);
    std::memcpy(info.FilePath, "stays", 6);
    info.Toolbar = 1;
    info.IconIndex = 40;
    ASSERT_EQ(Save(SaveAsNew, info, Sjis(u8"新規ミ")), SaveAsResult::Saved);

    const CPMXTemplUIListData& record = List.At(2);
    EXPECT_EQ(record.GetStandard(), 0U);
    EXPECT_EQ(record.GetName(), Sjis(u8"新規ミ"));
    EXPECT_EQ(record.GetLevel(), 2);
    EXPECT_EQ(record.GetToolbar(), 0);
    EXPECT_EQ(record.GetIconIndex(), 14);
    EXPECT_EQ(record.GetFileName(), Sjis(u8"新規ミ") + ".pmt");
    EXPECT_EQ(record.GetNewFlag(), 1);
    EXPECT_EQ(record.GetDeleteFlag(), 0);
    EXPECT_EQ(record.GetImportFlag(), 0);

    EXPECT_EQ(std::int64_t{info.Position}, 2);
    EXPECT_EQ(info.Standard, 0U);
    EXPECT_EQ(info.Level, 2);
    EXPECT_EQ(info.Toolbar, 0);
    EXPECT_EQ(std::int64_t{info.IconIndex}, 14);
    EXPECT_EQ(TextOf(info.Name), Sjis(u8"新規ミ"));
    EXPECT_EQ(TextOf(info.FilePath), "stays");

    const test::HostContent stored = FakeHost::ReadFavorite(Folder, Sjis(u8"新規ミ") + ".pmt");
    EXPECT_TRUE(SameTable(stored.Table, Table));
    EXPECT_EQ(stored.Level, 2);
    EXPECT_EQ(stored.Name, Sjis(u8"新規ミ"));
    EXPECT_EQ(Host.SetTableFlag, 0);
    EXPECT_EQ(Folder.Read(ListFile),
              "[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=0~Old~1~1~33~Old.pmt\r\nTemplateData1=1~" +
                  Sjis(u8"製本") + "~101~1~4~4\r\nTemplateData2=0~" + Sjis(u8"新規ミ") + "~2~0~14~" +
                  Sjis(u8"新規ミ") + ".pmt\r\n");
}

TEST_F(SaveAsTest, KeepsTheGivenLevelAlsoWhereTheDialogHasNone) {
    TemplInfo info = InfoOf(Sjis(u8"製本"), 101, 1, 1);
    ASSERT_EQ(Save(SaveAsNew, info, "Copy"), SaveAsResult::Saved);
    EXPECT_EQ(List.At(2).GetLevel(), 101);
    EXPECT_EQ(List.At(2).GetStandard(), 0U);
    EXPECT_EQ(info.Level, 101);
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "Copy.pmt").Level, 101);
}

TEST_F(SaveAsTest, TakesTheLevelThatWasGivenBeforeTheDialogOpened) {
    for (const std::int32_t mode : {SaveAsNew, OverwriteMode}) {
        std::vector<char> part(PMX_TABLE_SIZE);
        ASSERT_TRUE(CopyTablePart(List, 0, 1, part.data(), PMX_TABLE_SIZE));
        TemplInfo info = InfoOf("x", 2);
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [&info](MemoryUser& user) {
            info.Level = 5;
            user.Fill(control::CreateName, "New");
            user.Press(control::Ok);
        });
        ASSERT_EQ(SaveAsFavorite(List, mode, info, Table.Bytes, WindowHandle::None, Desktop.Services),
                  SaveAsResult::Saved);
        EXPECT_EQ(List.At(info.Position).GetLevel(), 2);
        SetUp();
    }
}

TEST_F(SaveAsTest, IsSavedAlsoWhenTheListFileCannotBeWritten) {
    Folder.Remove(ListFile);
    Folder.AddFolder(ListFile);
    TemplInfo info = InfoOf("", 1);
    EXPECT_EQ(Save(SaveAsNew, info, "New"), SaveAsResult::Saved);
    EXPECT_TRUE(Folder.Exists("New.pmt"));
}

TEST_F(SaveAsTest, EveryOtherModeOverwrites) {
    for (const std::int32_t mode : {2, -1}) {
        std::vector<char> part(PMX_TABLE_SIZE);
        ASSERT_TRUE(CopyTablePart(List, 0, 1, part.data(), PMX_TABLE_SIZE));
        TemplInfo info = InfoOf("Old", 1);
        EXPECT_EQ(Save(mode, info, "Renamed" + std::to_string(mode)), SaveAsResult::Saved);
        EXPECT_EQ(List.GetSize(), 2);
    }
}

TEST_F(SaveAsTest, GivesANewFavoriteAFileNameOfItsOwn) {
    Folder.Write("New.pmt", "somebody else's");
    TemplInfo info = InfoOf("", 1);
    ASSERT_EQ(Save(SaveAsNew, info, "New"), SaveAsResult::Saved);
    EXPECT_EQ(List.At(2).GetFileName(), "New-1.pmt");
    EXPECT_EQ(Folder.Read("New.pmt"), "somebody else's");
}

TEST_F(SaveAsTest, FailsWhenThereIsNoFileNameForANewFavorite) {
    Folder.Write("New.pmt", "somebody else's");
    Store.Services.LastFileNumber = 0;
    CPMXTemplUIListDataArray list(ListFile, ".pmt", Store.Services);
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    ASSERT_TRUE(list.LoadList());
    TemplInfo info = InfoOf("", 1);
    EXPECT_EQ(SaveIn(list, SaveAsNew, info, "New"), SaveAsResult::Failed);
    EXPECT_EQ(Folder.Read("New.pmt"), "somebody else's");
    EXPECT_EQ(list.GetSize(), 2);
    EXPECT_EQ(Folder.Read(ListFile), ListBefore);
}

struct FailureCase {
    HostCall Call;
    HostFailure Failure;
};

TEST_F(SaveAsTest, ANewFavoriteThatCannotBeStoredLeavesNoPlaceInTheList) {
    for (const FailureCase& failing : {FailureCase{HostCall::Create, HostFailure::Refuse},
                                       FailureCase{HostCall::Create, HostFailure::Raise},
                                       FailureCase{HostCall::SetTable, HostFailure::Refuse},
                                       FailureCase{HostCall::Save, HostFailure::Refuse},
                                       FailureCase{HostCall::Save, HostFailure::Raise}}) {
        Host.Plan.FailAt(failing.Call, Host.Plan.Calls(failing.Call) + 1, failing.Failure);
        TemplInfo info = InfoOf("A", 1);
        const TemplInfo before = info;
        EXPECT_EQ(Save(SaveAsNew, info, "New"), SaveAsResult::Failed);
        EXPECT_EQ(std::memcmp(&info, &before, sizeof info), 0);
        EXPECT_EQ(List.GetSize(), 2);
        EXPECT_EQ(Host.LiveDocuments, 0U);
        EXPECT_FALSE(Folder.Exists("New.pmt"));
        EXPECT_EQ(Folder.Read(ListFile), ListBefore);
        Host.Plan.Heal();
    }
}

TEST_F(SaveAsTest, StoresOverALoadedFavorite) {
    std::vector<char> part(PMX_TABLE_SIZE);
    ASSERT_TRUE(CopyTablePart(List, 0, 1, part.data(), PMX_TABLE_SIZE));
    TemplInfo info = InfoOf("Old", 1);
    info.IconIndex = 33;
    ASSERT_EQ(Save(OverwriteMode, info, "Renamed"), SaveAsResult::Saved);

    const test::HostContent stored = FakeHost::ReadFavorite(Folder, "Old.pmt");
    EXPECT_TRUE(SameTable(stored.Table, Table));
    EXPECT_EQ(stored.Name, "Renamed");
    EXPECT_EQ(TextOf(info.Name), "Renamed");
    EXPECT_EQ(std::int64_t{info.IconIndex}, 33);
    EXPECT_EQ(List.GetSize(), 2);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData0=0~Renamed~1~1~33~Old.pmt\r\n"), std::string::npos);
}

TEST_F(SaveAsTest, AnOverwrittenFavoriteBecomesAUserFavoriteOfTheGivenLevel) {
    std::vector<char> part(PMX_TABLE_SIZE);
    ASSERT_TRUE(CopyTablePart(List, 1, 1, part.data(), PMX_TABLE_SIZE));
    TemplInfo info = InfoOf("x", 4, 1, 1);
    ASSERT_EQ(Save(OverwriteMode, info, "Mine"), SaveAsResult::Saved);
    EXPECT_EQ(List.At(1).GetStandard(), 0U);
    EXPECT_EQ(List.At(1).GetLevel(), 4);
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "4").Level, 4);
}

TEST_F(SaveAsTest, OverwritingNeedsARecordAtThePosition) {
    for (const std::int64_t position : {-1, 2, 3, 1000}) {
        TemplInfo info = InfoOf("A", 1, 0, position);
        EXPECT_EQ(Save(OverwriteMode, info, "New"), SaveAsResult::Failed) << position;
    }
    EXPECT_EQ(Folder.Read(ListFile), ListBefore);
}

TEST_F(SaveAsTest, OverwritingDoesNotLoadTheFavoriteItself) {
    TemplInfo info = InfoOf("Old", 1);
    EXPECT_EQ(Save(OverwriteMode, info, "Renamed"), SaveAsResult::Failed);
    EXPECT_TRUE(Host.LoadedPaths.empty());
    EXPECT_EQ(TextOf(info.Name), "Old");
    EXPECT_EQ(List.At(0).GetName(), "Renamed"); // stays in memory, unsaved
    EXPECT_EQ(Folder.Read(ListFile), ListBefore);
}

TEST_F(SaveAsTest, OverwritingFailsWhenTableOrFileAreRefused) {
    std::vector<char> part(PMX_TABLE_SIZE);
    ASSERT_TRUE(CopyTablePart(List, 0, 1, part.data(), PMX_TABLE_SIZE));
    for (const HostCall call : {HostCall::SetTable, HostCall::Save}) {
        Host.Plan.FailAt(call, Host.Plan.Calls(call) + 1, HostFailure::Refuse);
        TemplInfo info = InfoOf("Old", 1);
        const std::string name = call == HostCall::Save ? "Unsaved" : "Refused";
        EXPECT_EQ(Save(OverwriteMode, info, name), SaveAsResult::Failed);
        EXPECT_EQ(Folder.Read(ListFile), ListBefore);
        EXPECT_EQ(FakeHost::ReadFavorite(Folder, "Old.pmt").Name, "Old");
        Host.Plan.Heal();
    }
}

TEST_F(SaveAsTest, CutsALongNameOfTheListInsideNoCharacter) {
    TemplInfo info{};
    const std::string name = std::string(258, 'x') + Sjis(u8"表");
    FillSummaryText(info.Name, name);
    EXPECT_EQ(TextOf(info.Name), std::string(258, 'x'));
}

TEST(DialogResults, AreZeroForOkOneForCancelAndFailureForAnythingElse) {
    EXPECT_EQ(ResultOfDialog(1), 0);
    EXPECT_EQ(ResultOfDialog(2), 1);
    for (const int code : {0, -1, 3, CPmxDlg::Failed}) {
        EXPECT_EQ(ResultOfDialog(code), -1);
    }
}

} // namespace
} // namespace pmx
