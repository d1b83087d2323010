#include "dialogs/choice/choice_entry_dlg.h"

#include "res/ids.h"
#include "support/desktops.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

namespace pmx {
namespace {

using test::DialogUser;
using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::SameTable;
using test::Sjis;
using test::TableOf;

constexpr const char* ListFile = "PmxTempleList.ini";

template <class AnyScreen>
class ChoiceEntryDlgTestOn : public testing::Test {
protected:
    void SetUp() override {
        FakeHost::WriteFavorite(Folder, "Mine.pmt", {TableOf(20), 1, "Mine"});
        Folder.Write(ListFile,
                     "[Other]\r\nkey=1\r\n[PMXTemplateList]\r\nTemplateNum=2\r\n"
                     "TemplateData0=1~Booklet~101~1~4~4\r\nTemplateData1=0~Mine~1~0~20~Mine.pmt\r\n");
        ListBefore = Folder.Read(ListFile);
    }

    int Run(const std::function<void(DialogUser&)>& script, std::int32_t level = 1) {
        CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", Table.Bytes, level,
                                         WindowHandle{7}, Desktop.Services, Store.Services);
        Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, script);
        return dialog.DoModal();
    }

    int Register(const std::string& name, std::int32_t level = 1) {
        return Run(
            [name](DialogUser& user) {
                user.Fill(control::RegisterName, name);
                user.Press(control::Ok);
            },
            level);
    }

    /// Enters a name that must be refused: the dialog stays open with the name in place and the focus on it.
    void ExpectRefused(const std::string& name) {
        EXPECT_EQ(Run([name](DialogUser& user) {
                      user.Fill(control::RegisterName, name);
                      user.TabTo(control::RegisterChangeIcon);
                      user.Press(control::Ok);
                      EXPECT_TRUE(user.IsOpen());
                      EXPECT_EQ(user.Text(control::RegisterName), name);
                      EXPECT_EQ(user.Focused(), control::RegisterName);
                      user.Escape();
                  }),
                  CodeCancel);
        ExpectNothingStored();
    }

    void ExpectNothingStored() {
        EXPECT_EQ(Folder.Read(ListFile), ListBefore);
        EXPECT_EQ(Folder.Names(), (std::vector<std::string>{"Mine.pmt", ListFile}));
        EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "Mine.pmt").Table, TableOf(20)));
    }

    FakeHost Host;
    test::TempFolder Folder;
    test::FakeServices Store;
    AnyScreen Desktop;
    _LM_DOCUMENTLAYOUTTABLE Table = TableOf(90);
    std::string ListBefore;
};

using ChoiceEntryDlgTest = test::OnEachDesktop<ChoiceEntryDlgTestOn>;
INSTANTIATE_TEST_SUITE_P(On, ChoiceEntryDlgTest, test::AllDesktops, test::NameOfDesktop);

using MemoryChoiceEntryDlgTest = ChoiceEntryDlgTestOn<test::MemoryDesktop>;

TEST_P(ChoiceEntryDlgTest, OpensWithTitleEmptyNameAndTheNewFavoritesIcon) {
    Run([](DialogUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの登録"));
        EXPECT_EQ(user.Text(control::RegisterName), "");
        EXPECT_EQ(user.Focused(), control::RegisterName);
        EXPECT_TRUE(user.HasIcon(control::RegisterIcon));
        user.Escape();
    });
}

TEST_P(ChoiceEntryDlgTest, TakesAtMost32Bytes) {
    Run([](DialogUser& user) {
        user.Fill(control::RegisterName, std::string(31, 'x') + Sjis(u8"表") + "yz");
        EXPECT_EQ(user.Text(control::RegisterName), std::string(31, 'x') + "y");
        user.Escape();
    });
}

TEST_P(ChoiceEntryDlgTest, StoresANewFavoriteOnTheToolbarWithIcon14) {
    EXPECT_EQ(Register("  " + Sjis(u8"表紙") + " "), CodeOk);
    const test::HostContent stored = FakeHost::ReadFavorite(Folder, Sjis(u8"表紙") + ".pmt");
    EXPECT_TRUE(SameTable(stored.Table, Table));
    EXPECT_EQ(stored.Level, 1);
    EXPECT_EQ(stored.Name, Sjis(u8"表紙"));
    EXPECT_EQ(
        Folder.Read(ListFile),
        "[Other]\r\nkey=1\r\n[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=1~Booklet~101~1~4~4\r\n"
        "TemplateData1=0~Mine~1~0~20~Mine.pmt\r\nTemplateData2=0~" +
            Sjis(u8"表紙") + "~1~1~14~" + Sjis(u8"表紙") + ".pmt\r\n");
}

TEST_P(ChoiceEntryDlgTest, StoresThePartOfTheLevelThatTheTableBeginsWith) {
    for (const auto& [level, start] : {std::pair{2, 82}, {3, 126}, {4, 150}, {5, 2221}}) {
        const std::string name = "Level" + std::to_string(level);
        EXPECT_EQ(Register(name, level), CodeOk);
        const test::HostContent stored = FakeHost::ReadFavorite(Folder, name + ".pmt");
        EXPECT_EQ(stored.Level, level);
        const _LM_DOCUMENTLAYOUTTABLE fresh = TableOf(test::FreshSeed);
        const auto length = static_cast<std::size_t>(PMX_TABLE_SIZE - start);
        EXPECT_EQ(std::memcmp(stored.Table.Bytes, fresh.Bytes, static_cast<std::size_t>(start)), 0);
        EXPECT_EQ(std::memcmp(stored.Table.Bytes + start, Table.Bytes, length), 0);
    }
}

TEST_P(ChoiceEntryDlgTest, RefusesAnEmptyNameAndOneOfBlanksOnly) {
    for (const std::string& name : {std::string(), std::string("   "), Sjis(u8"　 　")}) {
        Desktop.Messages.Expect(1019, MessageIcon::Exclamation);
        ExpectRefused(name);
    }
}

TEST_P(ChoiceEntryDlgTest, RefusesATildeButNotASecondByteOfThatValue) {
    Desktop.Messages.Expect(1057, MessageIcon::Exclamation);
    ExpectRefused("a~b");
    EXPECT_EQ(Register(Sjis(u8"ミ")), CodeOk);
    EXPECT_TRUE(Folder.Exists(Sjis(u8"ミ") + ".pmt"));
}

TEST_P(ChoiceEntryDlgTest, RefusesTheNameOfAStandardFavoriteWithoutRegardToCase) {
    Desktop.Messages.Expect(1012, MessageIcon::Exclamation);
    ExpectRefused("bookLET");
}

TEST_P(ChoiceEntryDlgTest, NoToTheQuestionKeepsTheFavorite) {
    Desktop.Messages.ExpectQuestion(1013, MessageAnswer::No);
    ExpectRefused("Mine");
}

TEST_P(ChoiceEntryDlgTest, YesToTheQuestionRewritesTheFavoriteAndPutsItOnTheToolbar) {
    Desktop.Messages.ExpectQuestion(1013, MessageAnswer::Yes);
    EXPECT_EQ(Register("Mine"), CodeOk);
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "Mine.pmt").Table, Table));
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData1=0~Mine~1~1~14~Mine.pmt\r\n"), std::string::npos);
    EXPECT_EQ(Folder.Names().size(), 2U);
}

TEST_P(ChoiceEntryDlgTest, ANameThatDiffersInCaseAloneIsAskedForAndThenNotStored) {
    Desktop.Messages.ExpectQuestion(1013, MessageAnswer::Yes);
    EXPECT_EQ(Register("MINE"), CodeOk);
    ExpectNothingStored();
}

TEST_P(ChoiceEntryDlgTest, StoresTheIconThatWasPicked) {
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](DialogUser& user) {
        user.Fill(control::RegisterName, "New");
        user.Press(control::RegisterChangeIcon);
        EXPECT_TRUE(user.HasIcon(control::RegisterIcon));
        EXPECT_EQ(user.Text(control::RegisterName), "New");
        user.Press(control::Ok);
    });
    Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"アイコンの変更"));
        EXPECT_EQ(user.SelectedRow(control::PickerIcons), 0);
        user.ClickRow(control::PickerIcons, 45);
        user.Press(control::Ok);
    });
    CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", Table.Bytes, 1,
                                     WindowHandle::None, Desktop.Services, Store.Services);
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData2=0~New~1~1~59~New.pmt\r\n"), std::string::npos);
}

TEST_P(ChoiceEntryDlgTest, GivesTheIconThatWasPickedToAFavoriteThatItRewrites) {
    Desktop.Messages.ExpectQuestion(1013, MessageAnswer::Yes);
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](DialogUser& user) {
        user.Fill(control::RegisterName, "Mine");
        user.Press(control::RegisterChangeIcon);
        user.Press(control::Ok);
    });
    Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
        user.ClickRow(control::PickerIcons, 1);
        user.Press(control::Ok);
    });
    CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", Table.Bytes, 1,
                                     WindowHandle::None, Desktop.Services, Store.Services);
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData1=0~Mine~1~1~15~Mine.pmt\r\n"), std::string::npos);
}

TEST_P(ChoiceEntryDlgTest, CancellingThePickerKeepsTheIcon) {
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](DialogUser& user) {
        user.Press(control::RegisterChangeIcon);
        user.Fill(control::RegisterName, "New");
        user.Press(control::Ok);
    });
    Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
        user.ClickRow(control::PickerIcons, 45);
        user.Press(control::Cancel);
    });
    CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", Table.Bytes, 1,
                                     WindowHandle::None, Desktop.Services, Store.Services);
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData2=0~New~1~1~14~New.pmt\r\n"), std::string::npos);
}

TEST_P(ChoiceEntryDlgTest, HasNoLimitOfToolbarFavorites) {
    std::string list = "[PMXTemplateList]\r\nTemplateNum=25\r\n";
    for (int number = 0; number < 25; ++number) {
        list += "TemplateData" + std::to_string(number) + "=0~Other~1~1~14~Other.pmt\r\n";
    }
    Folder.Write(ListFile, list);
    EXPECT_EQ(Register("New"), CodeOk);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData25=0~New~1~1~14~New.pmt\r\n"), std::string::npos);
}

TEST_P(ChoiceEntryDlgTest, CancelDoesNotEvenWriteTheListFileAnew) {
    const std::string before = Folder.Read(ListFile) + "Other=gone when the section is written\r\n";
    Folder.Write(ListFile, before);
    EXPECT_EQ(Run([](DialogUser& user) {
                  user.Fill(control::RegisterName, "New");
                  user.Press(control::Cancel);
              }),
              CodeCancel);
    EXPECT_EQ(Folder.Read(ListFile), before);
}

TEST_P(ChoiceEntryDlgTest, AFavoriteThatCannotBeStoredEndsWithOkAndLeavesTheListFile) {
    for (const HostCall call : {HostCall::Create, HostCall::SetTable, HostCall::Save}) {
        Host.Plan.FailAt(call, Host.Plan.Calls(call) + 1, HostFailure::Raise);
        EXPECT_EQ(Register("New"), CodeOk);
        ExpectNothingStored();
        Host.Plan.Heal();
    }
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(ChoiceEntryDlgTest, ATableThatIsMissingStoresNothing) {
    CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", nullptr, 1, WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](DialogUser& user) {
        user.Fill(control::RegisterName, "New");
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    ExpectNothingStored();
}

TEST_P(ChoiceEntryDlgTest, AMissingListFileIsAnEmptyList) {
    Folder.Remove(ListFile);
    EXPECT_EQ(Register("Booklet"), CodeOk);
    EXPECT_EQ(Folder.Read(ListFile), "[PMXTemplateList]\r\nTemplateNum=1\r\n"
                                     "TemplateData0=0~Booklet~1~1~14~Booklet.pmt\r\n");
}

TEST_P(ChoiceEntryDlgTest, AFolderThatIsMissingEndsWithOkAndStoresNothing) {
    const std::string missing = Folder.Path("missing");
    CPMXTemplUIChoiceEntryDlg dialog(missing.c_str(), ListFile, ".pmt", Table.Bytes, 1, WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](DialogUser& user) {
        user.Fill(control::RegisterName, "New");
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    ExpectNothingStored();
    EXPECT_FALSE(Folder.Exists("missing"));
}

TEST_F(MemoryChoiceEntryDlgTest, ShowsTheWaitCursorWhileItStores) {
    Register("New");
    EXPECT_EQ(Desktop.Dialogs.WaitCursorsShown, 1);
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
}

TEST_F(MemoryChoiceEntryDlgTest, IsModalToTheGivenWindowAndShowsTheIconThatItWillStore) {
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](test::MemoryUser& user) {
        EXPECT_EQ(user.Parent(), WindowHandle{7});
        EXPECT_EQ(user.IconIn(control::RegisterIcon)->Index, 14);
        user.Press(control::RegisterChangeIcon);
        EXPECT_EQ(user.IconIn(control::RegisterIcon)->Index, 14);
        user.Press(control::RegisterChangeIcon);
        EXPECT_EQ(user.IconIn(control::RegisterIcon)->Index, 59);
        user.Escape();
    });
    for (const ControlId closing : {control::Cancel, control::Ok}) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [closing](test::MemoryUser& user) {
            user.ClickRow(control::PickerIcons, 45);
            user.Press(closing);
        });
    }
    CPMXTemplUIChoiceEntryDlg dialog(Folder.Path().c_str(), ListFile, ".pmt", Table.Bytes, 1, WindowHandle{7},
                                     Desktop.Services, Store.Services);
    EXPECT_EQ(dialog.DoModal(), CodeCancel);
}

} // namespace
} // namespace pmx
