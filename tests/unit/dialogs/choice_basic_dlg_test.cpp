#include "dialogs/choice/choice_basic_dlg.h"

#include "res/ids.h"
#include "support/list_dialog_test.h"

namespace pmx {
namespace {

using test::DialogUser;
using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::MemoryDesktop;
using test::MemoryList;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

using Names = std::vector<std::string>;

constexpr int NameInRow = 0;
constexpr int KindInRow = 1;

template <class AnyScreen>
using BasicListFixture = test::ListDialogTestOn<AnyScreen, CPMXTemplUIChoiceBasicDlg, dialog::BasicList,
                                                control::BasicList, control::BasicName, NameInRow>;

/// Runs the basic list.
template <class AnyScreen>
class BasicListTestOn : public BasicListFixture<AnyScreen> {
protected:
    /// Opens the icon picker, which `script` then drives.
    void ChangeIcon(DialogUser& user, const std::function<void(DialogUser&)>& script) {
        this->Desktop.Dialogs.OnOpened(dialog::IconPicker, script);
        user.Press(control::ChangeIcon);
    }

    static void Pick(DialogUser& picker, int row) {
        picker.ClickRow(control::PickerIcons, row);
        picker.Press(control::Ok);
    }
};

using BasicListTest = test::OnEachDesktop<BasicListTestOn>;
INSTANTIATE_TEST_SUITE_P(On, BasicListTest, test::AllDesktops, test::NameOfDesktop);

using BasicListInMemoryTest = BasicListTestOn<MemoryDesktop>;

// Opening

TEST_P(BasicListTest, ShowsTheFavoritesWithNameAndKindInTheOrderOfTheListFile) {
    Given({{.Name = Sjis(u8"表紙")}, Standard("S"), {.Name = "B", .Level = 4}});
    RunAndCancel([](DialogUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの編集"));
        EXPECT_EQ(NamesInRows(user), (Names{Sjis(u8"表紙"), "S", "B"}));
        EXPECT_EQ(user.Cell(List, 0, KindInRow), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.Cell(List, 1, KindInRow), Sjis(u8"標準"));
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(Name), Sjis(u8"表紙"));
        EXPECT_TRUE(user.HasIcon(control::BasicIcon));
        EXPECT_EQ(user.Focused(), List);
    });
}

TEST_F(BasicListInMemoryTest, ListHasTwoColumnsAndSelectsWholeRows) {
    Parent = WindowHandle{7};
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.Parent(), WindowHandle{7});
        const MemoryList& list = user.List(List);
        EXPECT_EQ(list.Columns,
                  (std::vector<MemoryList::Column>{{Sjis(u8"お気に入り名"), 250}, {Sjis(u8"種類"), 100}}));
        EXPECT_TRUE(list.FullRowSelection);
    });
    EXPECT_EQ(Desktop.Images.Requests,
              (std::vector<test::MemoryImageLists::Request>{{bitmap::LargeIcons, 32, Color::LightGrey}}));
}

TEST_P(BasicListTest, EmptyListLeavesNothingToDoToIt) {
    RunAndCancel([](DialogUser& user) {
        EXPECT_EQ(user.RowCount(List), 0);
        for (const ControlId id :
             {control::BasicDelete, control::BasicUp, control::BasicDown, control::BasicName}) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        EXPECT_TRUE(user.IsEnabled(control::ChangeIcon));
        user.Press(control::ChangeIcon); // would open a dialog that the test does not foresee
        EXPECT_TRUE(user.IsEnabled(control::Ok));
        EXPECT_TRUE(user.IsEnabled(control::Cancel));
    });
}

TEST_P(BasicListTest, FolderThatDoesNotExistGivesAnEmptyListAndNoMessage) {
    GivenThree("Beta");
    CPMXTemplUIChoiceBasicDlg dialog(Folder.Path("None").c_str(), test::ListFile, ".pmt", WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        EXPECT_EQ(user.RowCount(List), 0);
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_FALSE(Folder.Exists("None"));
}

TEST_F(BasicListInMemoryTest, DialogThatCannotBeShownEndsWithNeitherCode) {
    CPMXTemplUIChoiceBasicDlg dialog(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpenedFail(dialog::BasicList);
    EXPECT_EQ(dialog.DoModal(), CPmxDlg::Failed);
}

TEST_F(BasicListInMemoryTest, EveryControlButTheLineAndTheTwoButtonsHasAHelpNote) {
    GivenThree("Beta");
    RunAndCancel([this](MemoryUser& user) {
        for (const ControlId id : {3003, 3004, 3006, 3025, 3027, 3037, 3039, 3041, 3047, 3048}) {
            Desktop.Help.Requests.clear();
            user.AskHelpOn(id);
            ASSERT_EQ(Desktop.Help.Requests.size(), 1U) << id;
            EXPECT_FALSE(Desktop.Help.Requests[0].Text.empty()) << id;
        }
    });
}

// What a selected row allows

TEST_P(BasicListTest, UserFavoriteCanBeDeletedAndRenamed) {
    GivenThree("Beta");
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        for (const ControlId id : {control::BasicDelete, control::BasicUp, control::BasicDown,
                                   control::ChangeIcon, control::BasicName}) {
            EXPECT_TRUE(user.IsEnabled(id)) << id;
        }
    });
}

TEST_P(BasicListTest, StandardFavoriteCanOnlyBeMovedAndGivenAnotherIcon) {
    Given({{.Name = "A"}, Standard("S", 3), {.Name = "C"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "S");
        EXPECT_FALSE(user.IsEnabled(control::BasicDelete));
        EXPECT_FALSE(user.IsEnabled(Name));
        for (const ControlId id : {control::BasicUp, control::BasicDown, control::ChangeIcon}) {
            EXPECT_TRUE(user.IsEnabled(id)) << id;
        }
        user.ClickRow(List, 2);
        EXPECT_TRUE(user.IsEnabled(Name)) << "of a user favorite again";
    });
}

TEST_F(BasicListInMemoryTest, IconOfTheFavoriteIsShownOnEveryLevel) {
    Given({{.Name = "A", .Level = 5, .Icon = 30}, {.Name = "B", .Icon = 22}, Standard("S", 103)});
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.IconIn(control::BasicIcon)->Index, 30);
        user.ClickRow(List, 1);
        EXPECT_EQ(user.IconIn(control::BasicIcon)->Index, 22);
        user.ClickRow(List, 2);
        EXPECT_EQ(user.IconIn(control::BasicIcon)->Index, 14);
    });
}

TEST_F(BasicListInMemoryTest, WithoutPicturesTheListStillWorks) {
    Desktop.Images.Failing = true;
    GivenThree("Beta");
    RunAndAccept([](MemoryUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(ListedNames(), (Names{"Beta", "C"}));
}

// Mouse and keyboard

TEST_P(BasicListTest, DoubleClickIsNoCommand) {
    GivenThree("Beta");
    RunAndCancel([](DialogUser& user) {
        user.DoubleClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "Beta");
        EXPECT_TRUE(user.IsOpen());
    });
}

TEST_P(BasicListTest, DeleteKeyDeletes) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Key(test::key::Delete);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
}

TEST_P(BasicListTest, SpaceIsNoCommand) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
    });
    EXPECT_EQ(ListedValues()[0], "0~A~1~0~14~F0.pmt");
}

TEST_F(BasicListInMemoryTest, KeyTakenByTheInputMethodIsNoneOfTheList) {
    constexpr std::uint32_t ScanCode = 0x53;
    Desktop.Dialogs.KeysOfScanCodes[ScanCode] = ListKey::Delete;
    GivenThree("Beta");
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.ProcessKey(ScanCode);
        EXPECT_EQ(user.RowCount(List), 3);
    });
}

// Deleting

TEST_P(BasicListTest, DeletingTheOnlyRowLeavesAnEmptyListWithNothingToDoToIt) {
    Given({{.Name = "A"}});
    RunAndAccept([](DialogUser& user) {
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_EQ(user.Text(Name), "");
        for (const ControlId id :
             {control::BasicDelete, control::BasicUp, control::BasicDown, control::BasicName}) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        EXPECT_EQ(user.Focused(), List);
        EXPECT_TRUE(user.IsEnabled(control::ChangeIcon));
        user.Press(control::ChangeIcon);
    });
    EXPECT_EQ(Folder.Read(test::ListFile), "[PMXTemplateList]\r\nTemplateNum=0\r\n");
}

TEST_P(BasicListTest, FavoriteFileOfADeletedFavoriteStays) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(ListedCount(), "2");
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

// Moving

TEST_P(BasicListTest, RowMovedUpChangesPlacesWithItsNeighbour) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::BasicUp);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "C", "Beta"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_TRUE(user.IsEnabled(control::BasicUp));
        EXPECT_TRUE(user.IsEnabled(control::BasicDown));
        EXPECT_EQ(user.Focused(), control::BasicUp);
        user.Press(control::BasicUp);
        EXPECT_FALSE(user.IsEnabled(control::BasicUp));
        EXPECT_EQ(user.Focused(), control::BasicDown) << "from the button that can no longer be pressed";
    });
    EXPECT_EQ(ListedNames(), (Names{"C", "A", "Beta"}));
}

TEST_P(BasicListTest, RowMovedDownChangesPlacesWithItsNeighbour) {
    Given({Standard("S"), {.Name = "B"}, {.Name = "C"}});
    RunAndAccept([](DialogUser& user) {
        user.Press(control::BasicDown);
        EXPECT_TRUE(user.IsEnabled(control::BasicUp));
        EXPECT_TRUE(user.IsEnabled(control::BasicDown));
        user.Press(control::BasicDown);
        EXPECT_FALSE(user.IsEnabled(control::BasicDown));
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_EQ(user.Cell(List, 0, KindInRow), Sjis(u8"ユーザー設定")) << "the kind goes with the row";
        EXPECT_EQ(user.Cell(List, 2, KindInRow), Sjis(u8"標準"));
    });
    EXPECT_EQ(ListedNames(), (Names{"B", "C", "S"}));
}

// The icon

TEST_P(BasicListTest, ChosenIconIsWritten) {
    Given({{.Name = Sjis(u8"表紙"), .Level = 3, .OnToolbar = true, .Icon = 20}, {.Name = "B"}});
    RunAndAccept([this](DialogUser& user) {
        ChangeIcon(user, [](DialogUser& picker) {
            EXPECT_EQ(picker.Title(), Sjis(u8"\"表紙\"のアイコンの変更"));
            EXPECT_EQ(picker.SelectedRow(control::PickerIcons), 6);
            Pick(picker, 1);
        });
        EXPECT_EQ(user.Focused(), control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues()[0], "0~" + Sjis(u8"表紙") + "~3~1~15~F0.pmt");
}

TEST_F(BasicListInMemoryTest, ChosenIconIsShown) {
    GivenThree("Beta");
    RunAndCancel([this](MemoryUser& user) {
        ChangeIcon(user, [](DialogUser& picker) { Pick(picker, 1); });
        EXPECT_EQ(user.IconIn(control::BasicIcon)->Index, 15);
    });
}

TEST_P(BasicListTest, StandardFavoriteMayHaveAnotherIcon) {
    Given({Standard("S")});
    RunAndAccept([this](DialogUser& user) { ChangeIcon(user, [](DialogUser& picker) { Pick(picker, 2); }); });
    EXPECT_EQ(ListedValues()[0], "1~S~101~0~16~3");
}

// Renaming

TEST_P(BasicListTest, LeavingTheNameBoxRenamesTheRowAndTheListFileAtTheEnd) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, "  " + Sjis(u8"ミ両面") + " ");
        EXPECT_EQ(NamesInRows(user), (Names{"A", Sjis(u8"ミ両面"), "C"}));
        EXPECT_EQ(user.Text(Name), Sjis(u8"ミ両面"));
    });
    EXPECT_EQ(ListedNames(), (Names{"A", Sjis(u8"ミ両面"), "C"}));
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "Beta") << "the favorite file stays";
}

TEST_P(BasicListTest, NameHasAtMost32Bytes) {
    GivenThree("Beta");
    RunAndCancel([](DialogUser& user) {
        Rename(user, 1, std::string(31, 'x') + Sjis(u8"表") + "yz");
        EXPECT_EQ(user.Cell(List, 1, NameInRow), std::string(31, 'x') + "y");
    });
}

TEST_P(BasicListTest, NameOfAStandardOrADeletedFavoriteIsRefused) {
    Given({{.Name = "A"}, {.Name = "B"}, Standard("S")});
    ExpectWarning(1016);
    ExpectWarning(1016);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::BasicDelete);
        Rename(user, 0, "b");
        user.Fill(Name, "s");
        user.TabTo(List);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_P(BasicListTest, ClickElsewhereWithARefusedNameIsNotCarriedOut) {
    GivenThree("Beta");
    for (int times = 0; times < 3; ++times) {
        ExpectWarning(1057);
    }
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.ClickRow(List, 2);
        EXPECT_EQ(user.SelectedRow(List), 1);
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.RowCount(List), 3);
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "~");
    });
}

TEST_P(BasicListTest, EnterInTheNameBoxRenamesAndAccepts) {
    GivenThree("Beta");
    EXPECT_EQ(Run([](DialogUser& user) {
                  user.ClickRow(List, 1);
                  user.Fill(Name, "New");
                  user.Enter();
              }),
              CodeOk);
    EXPECT_EQ(ListedNames(), (Names{"A", "New", "C"}));
}

TEST_P(BasicListTest, UnreadableFavoriteFileIsReportedAndTheFavoriteKeepsItsName) {
    Given({{.Name = "A", .HasFile = false}, {.Name = "B"}});
    ExpectWarning(1020);
    ExpectWarning(1020);
    RunAndAccept([](DialogUser& user) {
        Rename(user, 0, "New");
        EXPECT_EQ(user.Cell(List, 0, NameInRow), "A");
        EXPECT_EQ(user.Text(Name), "A");
        EXPECT_EQ(user.Focused(), List);
        Rename(user, 0, "New"); // neither the document nor the name was taken up
        EXPECT_EQ(user.Cell(List, 0, NameInRow), "A");
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B"}));
}

TEST_P(BasicListTest, EnterWithAFavoriteFileThatCannotBeReadKeepsTheDialogAndTheNameThatWasTyped) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(1020);
    ExpectWarning(1020);
    RunAndCancel([](DialogUser& user) {
        user.Fill(Name, "New");
        for (int times = 0; times < 2; ++times) {
            user.Enter();
            ASSERT_TRUE(user.IsOpen());
            EXPECT_EQ(user.Text(Name), "New");
            EXPECT_EQ(user.Focused(), Name);
        }
    });
}

TEST_P(BasicListTest, FocusGoesOnToTheIconButtonWhereNothingCanBeDeleted) {
    Given({Standard("S"), {.Name = "A"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.Focused(), control::ChangeIcon);
    });
}

TEST_P(BasicListTest, ListIsUsedByKeyboardAndMouseAsInTheEditor) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Type("b");
        EXPECT_EQ(user.Text(Name), "Beta");
        user.AltKey(test::key::Up);
        EXPECT_EQ(NamesInRows(user), (Names{"Beta", "A", "C"}));
        user.DragRow(List, 0, 2);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "C", "Beta"}));
        user.Key(test::key::F2);
        EXPECT_EQ(user.Focused(), Name);
        user.Type("New");
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "C", "New"}));
}

TEST_P(BasicListTest, HostThatRaisesAtTheFavoriteFileIsReported) {
    GivenThree("Beta");
    Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    ExpectWarning(1020);
    RunAndAccept([](DialogUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(ListedNames(), (Names{"A", "Beta", "C"}));
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(BasicListTest, FavoriteFileIsReadForTheFirstRenamingOnly) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, "New");
        Rename(user, 1, "Newer");
    });
    EXPECT_EQ(Host.LoadedPaths.size(), 1U);
    EXPECT_EQ(ListedNames()[1], "Newer");
}

// The end

TEST_P(BasicListTest, AcceptingWritesEveryFieldInItsPlaceAndKeepsTheRestOfTheFile) {
    Given({{.Name = "A", .Level = 2, .Icon = 33}, Standard("S", 101), {.Name = "B", .OnToolbar = true}});
    Folder.Write(test::ListFile, "[Other]\r\nkey=1\r\n" + Folder.Read(test::ListFile));
    RunAndAccept([](DialogUser& user) { user.Press(control::BasicDown); });
    EXPECT_EQ(Folder.Read(test::ListFile),
              "[Other]\r\nkey=1\r\n[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=1~S~101~0~14~3\r\n"
              "TemplateData1=0~A~2~0~33~F0.pmt\r\nTemplateData2=0~B~1~1~14~F2.pmt\r\n");
}

TEST_P(BasicListTest, ListFileIsTheOneThatTheCallerNames) {
    GivenThree("Beta");
    Folder.Write("Other.ini", "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~X~1~0~14~X.fav\r\n"
                              "TemplateData1=0~Y~1~0~14~Y.fav\r\n");
    CPMXTemplUIChoiceBasicDlg dialog(Folder.Path().c_str(), "Other.ini", ".fav", WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        EXPECT_EQ(NamesInRows(user), (Names{"X", "Y"}));
        user.Press(control::BasicDown);
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_EQ(Folder.Read("Other.ini"),
              "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~Y~1~0~14~Y.fav\r\n"
              "TemplateData1=0~X~1~0~14~X.fav\r\n");
    EXPECT_EQ(ListedNames(), (Names{"A", "Beta", "C"}));
}

TEST_P(BasicListTest, CancellingWritesNothing) {
    GivenThree("Beta");
    const std::string before = Folder.Read(test::ListFile);
    RunAndCancel([](DialogUser& user) {
        Rename(user, 1, "New");
        user.Press(control::BasicUp);
        user.Press(control::BasicDelete);
    });
    EXPECT_EQ(Folder.Read(test::ListFile), before);
}

TEST_P(BasicListTest, CloseBoxCancels) {
    GivenThree("Beta");
    EXPECT_EQ(Run([](DialogUser& user) { user.Close(); }), CodeCancel);
}

TEST_F(BasicListInMemoryTest, WaitCursorIsShownWhileTheListFileIsWritten) {
    GivenThree("Beta");
    RunAndAccept([](MemoryUser&) {});
    EXPECT_EQ(Desktop.Dialogs.WaitCursorsShown, 1);
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
}

TEST_P(BasicListTest, ListThatCannotBeWrittenIsNotReportedAndStays) {
    GivenThree("Beta");
    Folder.SetReadOnly(test::ListFile, true);
    RunAndAccept([](DialogUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(ListedNames(), (Names{"A", "Beta", "C"}));
    Folder.SetReadOnly(test::ListFile, false);
}

TEST_P(BasicListTest, DocumentsThatWereReadAreDestroyedAtTheEnd) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

} // namespace
} // namespace pmx
