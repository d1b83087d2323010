#include "dialogs/choice/choice_basic_dlg.h"

#include "res/ids.h"
#include "support/desktops.h"
#include "support/favorite_folder.h"

#include <gtest/gtest.h>

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

constexpr ControlId List = control::BasicList;
constexpr ControlId Name = control::BasicName;

using Names = std::vector<std::string>;

/// Runs the basic list on a desktop and a real folder.
template <class AnyDesktop>
class BasicListTest : public testing::Test, public test::FavoriteFolder {
protected:
    using Script = typename decltype(AnyDesktop::Dialogs)::Script;

    int Run(const Script& script) {
        CPMXTemplUIChoiceBasicDlg dialog(Folder.Path(), test::ListFile, ".pmt", Parent, Desktop.Services,
                                         Store.Services);
        Desktop.Dialogs.OnOpened(dialog::BasicList, script);
        return dialog.DoModal();
    }

    void RunAndAccept(const Script& script) {
        EXPECT_EQ(Run([&script](auto& user) {
                      script(user);
                      user.Press(control::Ok);
                  }),
                  CodeOk);
    }

    void RunAndCancel(const Script& script) {
        EXPECT_EQ(Run([&script](auto& user) {
                      script(user);
                      user.Escape();
                  }),
                  CodeCancel);
    }

    void GivenThree() { Given({{.Name = "A"}, {.Name = "Beta"}, {.Name = "C"}}); }

    void ExpectWarning(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Exclamation); }

    static Names NamesInRows(const DialogUser& user) {
        Names names;
        for (int row = 0; row < user.RowCount(List); ++row) {
            names.push_back(user.Cell(List, row, 0));
        }
        return names;
    }

    /// Selects a row, types a name in the name box and leaves it for the list.
    static void Rename(DialogUser& user, int row, const std::string& name) {
        user.ClickRow(List, row);
        user.Fill(Name, name);
        user.TabTo(List);
    }

    /// Opens the icon picker, which `script` then drives.
    void ChangeIcon(DialogUser& user, const std::function<void(DialogUser&)>& script) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, script);
        user.Press(control::ChangeIcon);
    }

    static void Pick(DialogUser& picker, int row) {
        picker.ClickRow(control::PickerIcons, row);
        picker.Press(control::Ok);
    }

    AnyDesktop Desktop;
    WindowHandle Parent = WindowHandle::None;
};

TYPED_TEST_SUITE(BasicListTest, test::AllDesktops);

using BasicListInMemoryTest = BasicListTest<MemoryDesktop>;

// Opening

TYPED_TEST(BasicListTest, ShowsTheFavoritesWithNameAndKindInTheOrderOfTheListFile) {
    this->Given({{.Name = Sjis(u8"表紙")}, Standard("S"), {.Name = "B", .Level = 4}});
    this->RunAndCancel([](DialogUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの編集"));
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{Sjis(u8"表紙"), "S", "B"}));
        EXPECT_EQ(user.Cell(List, 0, 1), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.Cell(List, 1, 1), Sjis(u8"標準"));
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

TYPED_TEST(BasicListTest, EmptyListLeavesNothingToDoToIt) {
    this->RunAndCancel([](DialogUser& user) {
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

TYPED_TEST(BasicListTest, FolderThatDoesNotExistGivesAnEmptyListAndNoMessage) {
    this->GivenThree();
    CPMXTemplUIChoiceBasicDlg dialog(this->Folder.Path("None"), test::ListFile, ".pmt", WindowHandle::None,
                                     this->Desktop.Services, this->Store.Services);
    this->Desktop.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        EXPECT_EQ(user.RowCount(List), 0);
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_FALSE(this->Folder.Exists("None"));
}

TEST_F(BasicListInMemoryTest, DialogThatCannotBeShownEndsWithNeitherCode) {
    CPMXTemplUIChoiceBasicDlg dialog(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None,
                                     Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpenedFail(dialog::BasicList);
    EXPECT_EQ(dialog.DoModal(), CPmxDlg::Failed);
}

TEST_F(BasicListInMemoryTest, EveryControlButTheLineAndTheTwoButtonsHasAHelpNote) {
    GivenThree();
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

TYPED_TEST(BasicListTest, UserFavoriteCanBeDeletedAndRenamed) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        for (const ControlId id : {control::BasicDelete, control::BasicUp, control::BasicDown,
                                   control::ChangeIcon, control::BasicName}) {
            EXPECT_TRUE(user.IsEnabled(id)) << id;
        }
    });
}

TYPED_TEST(BasicListTest, StandardFavoriteCanOnlyBeMovedAndGivenAnotherIcon) {
    this->Given({{.Name = "A"}, Standard("S", 3), {.Name = "C"}});
    this->RunAndCancel([](DialogUser& user) {
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
    GivenThree();
    RunAndAccept([](MemoryUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(ListedNames(), (Names{"Beta", "C"}));
}

// Mouse and keyboard

TYPED_TEST(BasicListTest, DoubleClickIsNoCommand) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.DoubleClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "Beta");
        EXPECT_TRUE(user.IsOpen());
    });
}

TYPED_TEST(BasicListTest, DeleteKeyDeletes) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Key(test::key::Delete);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "C"}));
}

TYPED_TEST(BasicListTest, SpaceIsNoCommand) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
    });
    EXPECT_EQ(this->ListedValues()[0], "0~A~1~0~14~F0.pmt");
}

TEST_F(BasicListInMemoryTest, KeyTakenByTheInputMethodIsNoneOfTheList) {
    constexpr std::uint32_t ScanCode = 0x53;
    Desktop.Dialogs.KeysOfScanCodes[ScanCode] = ListKey::Delete;
    GivenThree();
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.ProcessKey(ScanCode);
        EXPECT_EQ(user.RowCount(List), 3);
    });
}

// Deleting

TYPED_TEST(BasicListTest, DeletingTheOnlyRowLeavesAnEmptyListWithNothingToDoToIt) {
    this->Given({{.Name = "A"}});
    this->RunAndAccept([](DialogUser& user) {
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
    EXPECT_EQ(this->Folder.Read(test::ListFile), "[PMXTemplateList]\r\nTemplateNum=0\r\n");
}

TYPED_TEST(BasicListTest, FavoriteFileOfADeletedFavoriteStays) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(this->ListedCount(), "2");
    EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

// Moving

TYPED_TEST(BasicListTest, RowMovedUpChangesPlacesWithItsNeighbour) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::BasicUp);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "C", "Beta"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_TRUE(user.IsEnabled(control::BasicUp));
        EXPECT_TRUE(user.IsEnabled(control::BasicDown));
        EXPECT_EQ(user.Focused(), control::BasicUp);
        user.Press(control::BasicUp);
        EXPECT_FALSE(user.IsEnabled(control::BasicUp));
        EXPECT_EQ(user.Focused(), control::BasicDown) << "from the button that can no longer be pressed";
    });
    EXPECT_EQ(this->ListedNames(), (Names{"C", "A", "Beta"}));
}

TYPED_TEST(BasicListTest, RowMovedDownChangesPlacesWithItsNeighbour) {
    this->Given({Standard("S"), {.Name = "B"}, {.Name = "C"}});
    this->RunAndAccept([](DialogUser& user) {
        user.Press(control::BasicDown);
        EXPECT_TRUE(user.IsEnabled(control::BasicUp));
        EXPECT_TRUE(user.IsEnabled(control::BasicDown));
        user.Press(control::BasicDown);
        EXPECT_FALSE(user.IsEnabled(control::BasicDown));
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_EQ(user.Cell(List, 0, 1), Sjis(u8"ユーザー設定")) << "the kind goes with the row";
        EXPECT_EQ(user.Cell(List, 2, 1), Sjis(u8"標準"));
    });
    EXPECT_EQ(this->ListedNames(), (Names{"B", "C", "S"}));
}

// The icon

TYPED_TEST(BasicListTest, ChosenIconIsWritten) {
    this->Given({{.Name = Sjis(u8"表紙"), .Level = 3, .OnToolbar = true, .Icon = 20}, {.Name = "B"}});
    this->RunAndAccept([this](DialogUser& user) {
        this->ChangeIcon(user, [](DialogUser& picker) {
            EXPECT_EQ(picker.Title(), Sjis(u8"\"表紙\"のアイコンの変更"));
            EXPECT_EQ(picker.SelectedRow(control::PickerIcons), 6);
            TestFixture::Pick(picker, 1);
        });
        EXPECT_EQ(user.Focused(), control::ChangeIcon);
    });
    EXPECT_EQ(this->ListedValues()[0], "0~" + Sjis(u8"表紙") + "~3~1~15~F0.pmt");
}

TEST_F(BasicListInMemoryTest, ChosenIconIsShown) {
    GivenThree();
    RunAndCancel([this](MemoryUser& user) {
        ChangeIcon(user, [](DialogUser& picker) { Pick(picker, 1); });
        EXPECT_EQ(user.IconIn(control::BasicIcon)->Index, 15);
    });
}

TYPED_TEST(BasicListTest, StandardFavoriteMayHaveAnotherIcon) {
    this->Given({Standard("S")});
    this->RunAndAccept([this](DialogUser& user) {
        this->ChangeIcon(user, [](DialogUser& picker) { TestFixture::Pick(picker, 2); });
    });
    EXPECT_EQ(this->ListedValues()[0], "1~S~101~0~16~3");
}

// Renaming

TYPED_TEST(BasicListTest, LeavingTheNameBoxRenamesTheRowAndTheListFileAtTheEnd) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, "  " + Sjis(u8"ミ両面") + " ");
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", Sjis(u8"ミ両面"), "C"}));
        EXPECT_EQ(user.Text(Name), Sjis(u8"ミ両面"));
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", Sjis(u8"ミ両面"), "C"}));
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Name, "Beta") << "the favorite file stays";
}

TYPED_TEST(BasicListTest, NameHasAtMost32Bytes) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        TestFixture::Rename(user, 1, std::string(31, 'x') + Sjis(u8"表") + "yz");
        EXPECT_EQ(user.Cell(List, 1, 0), std::string(31, 'x') + "y");
    });
}

TYPED_TEST(BasicListTest, NameOfAStandardOrADeletedFavoriteIsRefused) {
    this->Given({{.Name = "A"}, {.Name = "B"}, Standard("S")});
    this->ExpectWarning(1016);
    this->ExpectWarning(1016);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::BasicDelete);
        TestFixture::Rename(user, 0, "b");
        user.Fill(Name, "s");
        user.TabTo(List);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TYPED_TEST(BasicListTest, ClickElsewhereWithARefusedNameIsNotCarriedOut) {
    this->GivenThree();
    for (int times = 0; times < 3; ++times) {
        this->ExpectWarning(1057);
    }
    this->RunAndCancel([](DialogUser& user) {
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

TYPED_TEST(BasicListTest, EnterInTheNameBoxRenamesAndAccepts) {
    this->GivenThree();
    EXPECT_EQ(this->Run([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.Enter();
    }),
              CodeOk);
    EXPECT_EQ(this->ListedNames(), (Names{"A", "New", "C"}));
}

TYPED_TEST(BasicListTest, UnreadableFavoriteFileIsReportedAndTheFavoriteKeepsItsName) {
    this->Given({{.Name = "A", .HasFile = false}, {.Name = "B"}});
    this->ExpectWarning(1020);
    this->ExpectWarning(1020);
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 0, "New");
        EXPECT_EQ(user.Cell(List, 0, 0), "A");
        EXPECT_EQ(user.Text(Name), "A");
        EXPECT_EQ(user.Focused(), List);
        TestFixture::Rename(user, 0, "New"); // neither the document nor the name was taken up
        EXPECT_EQ(user.Cell(List, 0, 0), "A");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B"}));
}

TYPED_TEST(BasicListTest, EnterWithAFavoriteFileThatCannotBeReadKeepsTheDialogAndTheNameThatWasTyped) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->ExpectWarning(1020);
    this->ExpectWarning(1020);
    this->RunAndCancel([](DialogUser& user) {
        user.Fill(Name, "New");
        for (int times = 0; times < 2; ++times) {
            user.Enter();
            ASSERT_TRUE(user.IsOpen());
            EXPECT_EQ(user.Text(Name), "New");
            EXPECT_EQ(user.Focused(), Name);
        }
    });
}

TYPED_TEST(BasicListTest, FocusGoesOnToTheIconButtonWhereNothingCanBeDeleted) {
    this->Given({Standard("S"), {.Name = "A"}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.Focused(), control::ChangeIcon);
    });
}

TYPED_TEST(BasicListTest, ListIsUsedByKeyboardAndMouseAsInTheEditor) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Type("b");
        EXPECT_EQ(user.Text(Name), "Beta");
        user.AltKey(test::key::Up);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"Beta", "A", "C"}));
        user.DragRow(List, 0, 2);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "C", "Beta"}));
        user.Key(test::key::F2);
        EXPECT_EQ(user.Focused(), Name);
        user.Type("New");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "C", "New"}));
}

TYPED_TEST(BasicListTest, HostThatRaisesAtTheFavoriteFileIsReported) {
    this->GivenThree();
    this->Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    this->ExpectWarning(1020);
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, "New"); });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "Beta", "C"}));
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TYPED_TEST(BasicListTest, FavoriteFileIsReadForTheFirstRenamingOnly) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, "New");
        TestFixture::Rename(user, 1, "Newer");
    });
    EXPECT_EQ(this->Host.LoadedPaths.size(), 1U);
    EXPECT_EQ(this->ListedNames()[1], "Newer");
}

// The end

TYPED_TEST(BasicListTest, AcceptingWritesEveryFieldInItsPlaceAndKeepsTheRestOfTheFile) {
    this->Given(
        {{.Name = "A", .Level = 2, .Icon = 33}, Standard("S", 101), {.Name = "B", .OnToolbar = true}});
    this->Folder.Write(test::ListFile, "[Other]\r\nkey=1\r\n" + this->Folder.Read(test::ListFile));
    this->RunAndAccept([](DialogUser& user) { user.Press(control::BasicDown); });
    EXPECT_EQ(this->Folder.Read(test::ListFile),
              "[Other]\r\nkey=1\r\n[PMXTemplateList]\r\nTemplateNum=3\r\nTemplateData0=1~S~101~0~14~3\r\n"
              "TemplateData1=0~A~2~0~33~F0.pmt\r\nTemplateData2=0~B~1~1~14~F2.pmt\r\n");
}

TYPED_TEST(BasicListTest, ListFileIsTheOneThatTheCallerNames) {
    this->GivenThree();
    this->Folder.Write("Other.ini", "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~X~1~0~14~X.fav\r\n"
                                    "TemplateData1=0~Y~1~0~14~Y.fav\r\n");
    CPMXTemplUIChoiceBasicDlg dialog(this->Folder.Path(), "Other.ini", ".fav", WindowHandle::None,
                                     this->Desktop.Services, this->Store.Services);
    this->Desktop.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"X", "Y"}));
        user.Press(control::BasicDown);
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_EQ(this->Folder.Read("Other.ini"),
              "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~Y~1~0~14~Y.fav\r\n"
              "TemplateData1=0~X~1~0~14~X.fav\r\n");
    EXPECT_EQ(this->ListedNames(), (Names{"A", "Beta", "C"}));
}

TYPED_TEST(BasicListTest, CancellingWritesNothing) {
    this->GivenThree();
    const std::string before = this->Folder.Read(test::ListFile);
    this->RunAndCancel([](DialogUser& user) {
        TestFixture::Rename(user, 1, "New");
        user.Press(control::BasicUp);
        user.Press(control::BasicDelete);
    });
    EXPECT_EQ(this->Folder.Read(test::ListFile), before);
}

TYPED_TEST(BasicListTest, CloseBoxCancels) {
    this->GivenThree();
    EXPECT_EQ(this->Run([](DialogUser& user) { user.Close(); }), CodeCancel);
}

TEST_F(BasicListInMemoryTest, WaitCursorIsShownWhileTheListFileIsWritten) {
    GivenThree();
    RunAndAccept([](MemoryUser&) {});
    EXPECT_EQ(Desktop.Dialogs.WaitCursorsShown, 1);
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
}

TYPED_TEST(BasicListTest, ListThatCannotBeWrittenIsNotReportedAndStays) {
    this->GivenThree();
    this->Folder.SetReadOnly(test::ListFile, true);
    this->RunAndAccept([](DialogUser& user) { user.Press(control::BasicDelete); });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "Beta", "C"}));
    this->Folder.SetReadOnly(test::ListFile, false);
}

TYPED_TEST(BasicListTest, DocumentsThatWereReadAreDestroyedAtTheEnd) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, "New"); });
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

} // namespace
} // namespace pmx
