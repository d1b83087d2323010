#include "support/editor_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::ListedFavorite;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

enum StateImage : int { Empty = 1, Ticked = 2, Unavailable = 3 };

using EditorMouse = EditorTest;
using EditorKeyboard = EditorTest;
using EditorToolbar = EditorTest;

/// That many favorites on the toolbar, and one that is not, the last.
std::vector<ListedFavorite> OnToolbar(int count) {
    std::vector<ListedFavorite> favorites;
    for (int number = 0; number < count; ++number) {
        favorites.push_back({.Name = "T" + std::to_string(number), .OnToolbar = true});
    }
    favorites.push_back({.Name = "Last"});
    return favorites;
}

TEST_F(EditorMouse, ClickOnARowShowsItsFavorite) {
    Given({{.Name = "A"}, {.Name = "B", .Icon = 22}});
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_EQ(user.IconIn(control::EditorIcon)->Index, 22);
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
}

TEST_F(EditorMouse, ClickBesideTheRowsKeepsWhatIsShown) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_EQ(user.SelectedRow(List), -1);
    });
}

TEST_F(EditorMouse, CommandsDoNothingWhenTheMarkedRowIsNotSelected) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    RunAndAccept([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        for (const ControlId id :
             {control::EditorEdit, control::EditorCopy, control::EditorDelete, control::EditorUp,
              control::EditorDown, control::ChangeIcon, control::EditorExport}) {
            user.Press(id); // would open a dialog that the test does not foresee
        }
        user.DoubleClickRow(List, 1);
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", "B", "C"}));
    });
    EXPECT_EQ(Attributes.Calls.size(), 1U) << "the double click selects the row again";
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", "B", "C"}));
}

TEST_F(EditorMouse, ClickOnTheEmptyBoxPutsTheFavoriteOnTheToolbar) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndAccept([](MemoryUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Ticked);
        EXPECT_EQ(user.Text(Name), "B") << "the click has selected the row";
    });
    EXPECT_EQ(ListedValues(), (std::vector<std::string>{"0~A~1~0~14~F0.pmt", "0~B~1~1~14~F1.pmt"}));
}

TEST_F(EditorMouse, ClickOnTheTickedBoxTakesTheFavoriteOffTheToolbar) {
    Given({{.Name = "A", .OnToolbar = true}});
    RunAndAccept([](MemoryUser& user) {
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"0~A~1~0~14~F0.pmt"});
}

TEST_F(EditorMouse, ClickOnTheUnavailableBoxOnlySelects) {
    Given({{.Name = "A"}, {.Name = "B", .Level = 2}});
    RunAndCancel([](MemoryUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Unavailable);
        EXPECT_EQ(user.Text(Name), "B");
    });
}

TEST_F(EditorMouse, StandardFavoriteMayBePutOnTheToolbar) {
    Given({Standard("S")});
    RunAndAccept([](MemoryUser& user) { user.ClickStateImage(List, 0); });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"1~S~101~1~14~3"});
}

TEST_F(EditorMouse, DoubleClickEdits) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](MemoryUser& user) { user.DoubleClickRow(List, 1); });
    EXPECT_EQ(Attributes.Calls.size(), 1U);
}

TEST_F(EditorMouse, DoubleClickOnTheToolbarBoxDoesNotEdit) {
    Given({{.Name = "A"}});
    RunAndCancel([](MemoryUser& user) { user.DoubleClickStateImage(List, 0); });
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_F(EditorMouse, DoubleClickBesideTheRowsDoesNothing) {
    Given({{.Name = "A"}});
    Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) {
        user.ClickBesideRows(List);
        user.Events().OnListDoubleClicked(List);
        user.Escape();
    });
    CPMXTemplUIMainDlg editor(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                              Store.Services);
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_F(EditorMouse, DoubleClickOnAStandardFavoriteIsRefused) {
    Given({Standard("S")});
    Desktop.Messages.Expect(text::StandardNotEditable, MessageIcon::Exclamation);
    RunAndCancel([](MemoryUser& user) { user.DoubleClickRow(List, 0); });
}

TEST_F(EditorKeyboard, ArrowKeysShowTheRowThatTheyLeadTo) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.Key(test::key::Down);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_EQ(user.SelectedRow(List), 1);
        user.Key(test::key::Down);
        user.Key(test::key::Down);
        EXPECT_EQ(user.Text(Name), "C");
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
        user.Key(test::key::Up);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        user.Key(test::key::Up);
        user.Key(test::key::Up);
        EXPECT_EQ(user.Text(Name), "A");
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
    });
}

TEST_F(EditorKeyboard, KeysInAnEmptyListDoNothing) {
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        for (const std::uint32_t key :
             {test::key::Down, test::key::Up, test::key::Space, test::key::Delete}) {
            user.Key(key);
        }
        EXPECT_EQ(user.RowCount(List), 0);
    });
}

TEST_F(EditorKeyboard, SpaceTurnsTheToolbarMarkOnAndOff) {
    Given({{.Name = "A"}});
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
}

TEST_F(EditorKeyboard, SpaceOnAnUnavailableBoxDoesNothing) {
    Given({{.Name = "A", .Level = 5}});
    RunAndAccept([](MemoryUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Unavailable);
    });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"0~A~5~0~14~F0.pmt"});
}

TEST_F(EditorKeyboard, SpaceHasTheLimitOfTheToolbar) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 20);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
    });
}

TEST_F(EditorKeyboard, DeleteKeyDeletes) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.Key(test::key::Delete);
        EXPECT_EQ(NamesInRows(user), std::vector<std::string>{"B"});
        EXPECT_EQ(user.Focused(), List);
    });
}

TEST_F(EditorKeyboard, KeyTakenByTheInputMethodCountsByItsScanCode) {
    constexpr std::uint32_t ScanCode = 0x39;
    Given({{.Name = "A"}});
    Desktop.Dialogs.KeysOfScanCodes[ScanCode] = ListKey::Space;
    RunAndCancel([](MemoryUser& user) {
        user.TabTo(List);
        user.ProcessKey(ScanCode);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.ProcessKey(0x10); // no key of the list
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
    });
}

TEST_F(EditorKeyboard, EnterInTheListAccepts) {
    Given({{.Name = "A"}});
    EXPECT_EQ(Run([](MemoryUser& user) {
                  user.TabTo(List);
                  user.Enter();
              }),
              CodeOk);
}

TEST_F(EditorToolbar, TwentyMarksAreAllowed) {
    Given(OnToolbar(19));
    RunAndAccept([](MemoryUser& user) {
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Ticked);
    });
    EXPECT_EQ(ListedValues().back(), "0~Last~1~1~14~F19.pmt");
}

TEST_F(EditorToolbar, TwentyFirstMarkIsRefusedWithTheLimit) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndAccept([](MemoryUser& user) {
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
        EXPECT_EQ(user.Text(Name), "Last");
    });
    EXPECT_EQ(ListedValues().back(), "0~Last~1~0~14~F20.pmt");
}

TEST_F(EditorToolbar, FavoriteDeletedMeanwhileStillCounts) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 0);
        user.Press(control::EditorDelete);
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Empty);
    });
}

TEST_F(EditorToolbar, MarkTakenOffMakesRoom) {
    Given(OnToolbar(20));
    RunAndCancel([](MemoryUser& user) {
        user.ClickStateImage(List, 0);
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Ticked);
    });
}

TEST_F(EditorToolbar, MarkOnALevelThatCannotShowItCountsToo) {
    std::vector<ListedFavorite> favorites = OnToolbar(19);
    favorites[0].Level = 4;
    favorites.push_back({.Name = "One more", .OnToolbar = true});
    Given(favorites);
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](MemoryUser& user) { user.ClickStateImage(List, 19); });
}

} // namespace
} // namespace pmx
