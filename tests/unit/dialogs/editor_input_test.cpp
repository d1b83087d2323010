#include "support/list_dialog_test.h"

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::ListedFavorite;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

enum StateImage : int { Empty = 1, Ticked = 2, Unavailable = 3 };

using EditorMouse = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorMouse, test::AllDesktops, test::NameOfDesktop);
using EditorKeyboard = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorKeyboard, test::AllDesktops, test::NameOfDesktop);
using EditorToolbar = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorToolbar, test::AllDesktops, test::NameOfDesktop);

using EditorMouseInMemory = EditorTestOn<MemoryDesktop>;
using EditorKeyboardInMemory = EditorTestOn<MemoryDesktop>;

/// That many favorites on the toolbar, and one that is not, the last.
std::vector<ListedFavorite> OnToolbar(int count) {
    std::vector<ListedFavorite> favorites;
    favorites.reserve(static_cast<std::size_t>(count) + 1);
    for (int number = 0; number < count; ++number) {
        favorites.push_back({.Name = "T" + std::to_string(number), .OnToolbar = true});
    }
    favorites.push_back({.Name = "Last"});
    return favorites;
}

TEST_P(EditorMouse, ClickOnARowShowsItsFavorite) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
}

TEST_F(EditorMouseInMemory, ClickOnARowShowsItsIcon) {
    Given({{.Name = "A"}, {.Name = "B", .Icon = 22}});
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        EXPECT_EQ(user.IconIn(control::EditorIcon)->Index, 22);
    });
}

TEST_P(EditorMouse, ClickBesideTheRowsKeepsWhatIsShown) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_EQ(user.SelectedRow(List), -1);
    });
}

TEST_P(EditorMouse, CommandsDoNothingWhenTheMarkedRowIsNotSelected) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    RunAndAccept([](DialogUser& user) {
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

TEST_P(EditorMouse, ClickOnTheEmptyBoxPutsTheFavoriteOnTheToolbar) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Ticked);
        EXPECT_EQ(user.Text(Name), "B") << "the click has selected the row";
    });
    EXPECT_EQ(ListedValues(), (std::vector<std::string>{"0~A~1~0~14~F0.pmt", "0~B~1~1~14~F1.pmt"}));
}

TEST_P(EditorMouse, ClickOnTheTickedBoxTakesTheFavoriteOffTheToolbar) {
    Given({{.Name = "A", .OnToolbar = true}});
    RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"0~A~1~0~14~F0.pmt"});
}

TEST_P(EditorMouse, ClickOnTheUnavailableBoxOnlySelects) {
    Given({{.Name = "A"}, {.Name = "B", .Level = 2}});
    RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Unavailable);
        EXPECT_EQ(user.Text(Name), "B");
    });
}

TEST_P(EditorMouse, StandardFavoriteMayBePutOnTheToolbar) {
    Given({Standard("S")});
    RunAndAccept([](DialogUser& user) { user.ClickStateImage(List, 0); });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"1~S~101~1~14~3"});
}

TEST_P(EditorMouse, DoubleClickEdits) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) { user.DoubleClickRow(List, 1); });
    EXPECT_EQ(Attributes.Calls.size(), 1U);
}

TEST_P(EditorMouse, DoubleClickOnTheToolbarBoxTogglesTwiceAndDoesNotEdit) {
    Given({{.Name = "A"}});
    RunAndCancel([](DialogUser& user) {
        user.DoubleClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
    });
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_F(EditorMouseInMemory, DoubleClickBesideTheRowsDoesNothing) {
    Given({{.Name = "A"}});
    Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) {
        user.ClickBesideRows(List);
        user.Events().OnEvent({.Control = List, .Event = DialogEvent::ListDoubleClicked});
        user.Escape();
    });
    CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_P(EditorMouse, DoubleClickOnAStandardFavoriteIsRefused) {
    Given({Standard("S")});
    ExpectWarning(text::StandardNotEditable);
    RunAndCancel([](DialogUser& user) { user.DoubleClickRow(List, 0); });
}

TEST_P(EditorKeyboard, ControlsShowTheRowThatAKeyLeadsTo) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}, {.Name = "D"}});
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        constexpr std::pair<std::uint32_t, int> Steps[] = {
            {test::key::Down, 1},     {test::key::Down, 2},   {test::key::Up, 1},
            {test::key::End, 3},      {test::key::Down, 3},   {test::key::Home, 0},
            {test::key::PageDown, 3}, {test::key::PageUp, 0}, {test::key::Up, 0}};
        for (const auto& [key, row] : Steps) {
            user.Key(key);
            EXPECT_EQ(user.SelectedRow(List), row) << key;
            EXPECT_EQ(user.Text(Name), std::string(1, static_cast<char>('A' + row))) << key;
            EXPECT_EQ(user.IsEnabled(control::EditorUp), row != 0) << key;
            EXPECT_EQ(user.IsEnabled(control::EditorDown), row != 3) << key;
        }
    });
}

TEST_P(EditorKeyboard, NameTypedAfterAKeyIsThatOfTheSelectedRow) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::End);
        user.Fill(Name, "New");
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", "B", "New"}));
}

TEST_P(EditorMouse, RightClickShowsItsRow) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) {
        user.RightClickRow(List, 1);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "B");
    });
}

TEST_P(EditorKeyboard, SpaceTogglesTheShownRowAlsoWhenItIsNotSelected) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 1), Ticked);
    });
}

TEST_P(EditorKeyboard, KeysInAnEmptyListDoNothing) {
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        for (const std::uint32_t key :
             {test::key::Down, test::key::Up, test::key::Space, test::key::Delete}) {
            user.Key(key);
        }
        EXPECT_EQ(user.RowCount(List), 0);
    });
}

TEST_P(EditorKeyboard, SpaceTurnsTheToolbarMarkOnAndOff) {
    Given({{.Name = "A"}});
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
}

TEST_P(EditorKeyboard, SpaceOnAnUnavailableBoxDoesNothing) {
    Given({{.Name = "A", .Level = 5}});
    RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Unavailable);
    });
    EXPECT_EQ(ListedValues(), std::vector<std::string>{"0~A~5~0~14~F0.pmt"});
}

TEST_P(EditorKeyboard, SpaceHasTheLimitOfTheToolbar) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 20);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
    });
}

TEST_P(EditorKeyboard, DeleteKeyDeletes) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Delete);
        EXPECT_EQ(NamesInRows(user), std::vector<std::string>{"B"});
        EXPECT_EQ(user.Focused(), List);
    });
}

TEST_P(EditorKeyboard, KeyTakenByTheInputMethodCountsByItsScanCode) {
    constexpr std::uint32_t SpaceScanCode = 0x39;
    constexpr std::uint32_t LetterScanCode = 0x10;
    Given({{.Name = "A"}});
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.ProcessKey(SpaceScanCode);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.ProcessKey(LetterScanCode);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
    });
}

TEST_P(EditorKeyboard, EnterInTheListAccepts) {
    Given({{.Name = "A"}});
    EXPECT_EQ(Run([](DialogUser& user) {
                  user.TabTo(List);
                  user.Enter();
              }),
              CodeOk);
}

TEST_P(EditorToolbar, TwentyMarksAreAllowed) {
    Given(OnToolbar(19));
    RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Ticked);
    });
    EXPECT_EQ(ListedValues().back(), "0~Last~1~1~14~F19.pmt");
}

TEST_P(EditorToolbar, TwentyFirstMarkIsRefusedWithTheLimit) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
        EXPECT_EQ(user.Text(Name), "Last");
    });
    EXPECT_EQ(ListedValues().back(), "0~Last~1~0~14~F20.pmt");
}

TEST_P(EditorToolbar, FavoriteDeletedMeanwhileStillCounts) {
    Given(OnToolbar(20));
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 0);
        user.Press(control::EditorDelete);
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Empty);
    });
}

TEST_P(EditorToolbar, MarkTakenOffMakesRoom) {
    Given(OnToolbar(20));
    RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Ticked);
    });
}

TEST_P(EditorToolbar, MarkOnALevelThatCannotShowItCountsToo) {
    std::vector<ListedFavorite> favorites = OnToolbar(19);
    favorites[0].Level = 4;
    favorites.push_back({.Name = "One more", .OnToolbar = true});
    Given(favorites);
    Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    RunAndCancel([](DialogUser& user) { user.ClickStateImage(List, 19); });
}

} // namespace
} // namespace pmx
