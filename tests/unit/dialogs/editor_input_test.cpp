#include "support/editor_test.h"

#include <type_traits>

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::ListedFavorite;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

enum StateImage : int { Empty = 1, Ticked = 2, Unavailable = 3 };

template <class AnyDesktop>
using EditorMouse = EditorTestOn<AnyDesktop>;
template <class AnyDesktop>
using EditorKeyboard = EditorTestOn<AnyDesktop>;
template <class AnyDesktop>
using EditorToolbar = EditorTestOn<AnyDesktop>;

TYPED_TEST_SUITE(EditorMouse, test::AllDesktops);
TYPED_TEST_SUITE(EditorKeyboard, test::AllDesktops);
TYPED_TEST_SUITE(EditorToolbar, test::AllDesktops);

using EditorMouseInMemory = EditorMouse<MemoryDesktop>;
using EditorKeyboardInMemory = EditorKeyboard<MemoryDesktop>;

/// That many favorites on the toolbar, and one that is not, the last.
std::vector<ListedFavorite> OnToolbar(int count) {
    std::vector<ListedFavorite> favorites;
    for (int number = 0; number < count; ++number) {
        favorites.push_back({.Name = "T" + std::to_string(number), .OnToolbar = true});
    }
    favorites.push_back({.Name = "Last"});
    return favorites;
}

TYPED_TEST(EditorMouse, ClickOnARowShowsItsFavorite) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) {
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

TYPED_TEST(EditorMouse, ClickBesideTheRowsKeepsWhatIsShown) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_EQ(user.SelectedRow(List), -1);
    });
}

TYPED_TEST(EditorMouse, CommandsDoNothingWhenTheMarkedRowIsNotSelected) {
    this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        for (const ControlId id :
             {control::EditorEdit, control::EditorCopy, control::EditorDelete, control::EditorUp,
              control::EditorDown, control::ChangeIcon, control::EditorExport}) {
            user.Press(id); // would open a dialog that the test does not foresee
        }
        user.DoubleClickRow(List, 1);
        EXPECT_EQ(TestFixture::NamesInRows(user), (std::vector<std::string>{"A", "B", "C"}));
    });
    EXPECT_EQ(this->Attributes.Calls.size(), 1U) << "the double click selects the row again";
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"A", "B", "C"}));
}

TYPED_TEST(EditorMouse, ClickOnTheEmptyBoxPutsTheFavoriteOnTheToolbar) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Ticked);
        EXPECT_EQ(user.Text(Name), "B") << "the click has selected the row";
    });
    EXPECT_EQ(this->ListedValues(), (std::vector<std::string>{"0~A~1~0~14~F0.pmt", "0~B~1~1~14~F1.pmt"}));
}

TYPED_TEST(EditorMouse, ClickOnTheTickedBoxTakesTheFavoriteOffTheToolbar) {
    this->Given({{.Name = "A", .OnToolbar = true}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
    EXPECT_EQ(this->ListedValues(), std::vector<std::string>{"0~A~1~0~14~F0.pmt"});
}

TYPED_TEST(EditorMouse, ClickOnTheUnavailableBoxOnlySelects) {
    this->Given({{.Name = "A"}, {.Name = "B", .Level = 2}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 1);
        EXPECT_EQ(user.StateImage(List, 1), Unavailable);
        EXPECT_EQ(user.Text(Name), "B");
    });
}

TYPED_TEST(EditorMouse, StandardFavoriteMayBePutOnTheToolbar) {
    this->Given({Standard("S")});
    this->RunAndAccept([](DialogUser& user) { user.ClickStateImage(List, 0); });
    EXPECT_EQ(this->ListedValues(), std::vector<std::string>{"1~S~101~1~14~3"});
}

TYPED_TEST(EditorMouse, DoubleClickEdits) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) { user.DoubleClickRow(List, 1); });
    EXPECT_EQ(this->Attributes.Calls.size(), 1U);
}

TYPED_TEST(EditorMouse, DoubleClickOnTheToolbarBoxTogglesTwiceAndDoesNotEdit) {
    this->Given({{.Name = "A"}});
    this->RunAndCancel([](DialogUser& user) {
        user.DoubleClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
    });
    EXPECT_TRUE(this->Attributes.Calls.empty());
}

TEST_F(EditorMouseInMemory, DoubleClickBesideTheRowsDoesNothing) {
    Given({{.Name = "A"}});
    Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) {
        user.ClickBesideRows(List);
        user.Events().OnEvent({.Control = List, .Event = DialogEvent::ListDoubleClicked});
        user.Escape();
    });
    CPMXTemplUIMainDlg editor(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                              Store.Services);
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    EXPECT_TRUE(Attributes.Calls.empty());
}

TYPED_TEST(EditorMouse, DoubleClickOnAStandardFavoriteIsRefused) {
    this->Given({Standard("S")});
    this->Desktop.Messages.Expect(text::StandardNotEditable, MessageIcon::Exclamation);
    this->RunAndCancel([](DialogUser& user) { user.DoubleClickRow(List, 0); });
}

TYPED_TEST(EditorKeyboard, ControlsShowTheRowThatAKeyLeadsTo) {
    this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}, {.Name = "D"}});
    this->RunAndCancel([](DialogUser& user) {
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

TYPED_TEST(EditorKeyboard, NameTypedAfterAKeyIsThatOfTheSelectedRow) {
    this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}});
    this->RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::End);
        user.Fill(Name, "New");
    });
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"A", "B", "New"}));
}

TYPED_TEST(EditorMouse, RightClickShowsItsRow) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) {
        user.RightClickRow(List, 1);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "B");
    });
}

TYPED_TEST(EditorKeyboard, SpaceTogglesTheShownRowAlsoWhenItIsNotSelected) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 1), Ticked);
    });
}

TYPED_TEST(EditorKeyboard, KeysInAnEmptyListDoNothing) {
    this->RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        for (const std::uint32_t key :
             {test::key::Down, test::key::Up, test::key::Space, test::key::Delete}) {
            user.Key(key);
        }
        EXPECT_EQ(user.RowCount(List), 0);
    });
}

TYPED_TEST(EditorKeyboard, SpaceTurnsTheToolbarMarkOnAndOff) {
    this->Given({{.Name = "A"}});
    this->RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Empty);
    });
}

TYPED_TEST(EditorKeyboard, SpaceOnAnUnavailableBoxDoesNothing) {
    this->Given({{.Name = "A", .Level = 5}});
    this->RunAndAccept([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 0), Unavailable);
    });
    EXPECT_EQ(this->ListedValues(), std::vector<std::string>{"0~A~5~0~14~F0.pmt"});
}

TYPED_TEST(EditorKeyboard, SpaceHasTheLimitOfTheToolbar) {
    this->Given(OnToolbar(20));
    this->Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 20);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
    });
}

TYPED_TEST(EditorKeyboard, DeleteKeyDeletes) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Delete);
        EXPECT_EQ(TestFixture::NamesInRows(user), std::vector<std::string>{"B"});
        EXPECT_EQ(user.Focused(), List);
    });
}

TYPED_TEST(EditorKeyboard, KeyTakenByTheInputMethodCountsByItsScanCode) {
    constexpr std::uint32_t SpaceScanCode = 0x39;
    constexpr std::uint32_t LetterScanCode = 0x10;
    if constexpr (std::is_same_v<TypeParam, MemoryDesktop>) {
        this->Desktop.Dialogs.KeysOfScanCodes[SpaceScanCode] = ListKey::Space;
    }
    this->Given({{.Name = "A"}});
    this->RunAndCancel([](auto& user) {
        user.TabTo(List);
        user.ProcessKey(SpaceScanCode);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
        user.ProcessKey(LetterScanCode);
        EXPECT_EQ(user.StateImage(List, 0), Ticked);
    });
}

TYPED_TEST(EditorKeyboard, EnterInTheListAccepts) {
    this->Given({{.Name = "A"}});
    EXPECT_EQ(this->Run([](DialogUser& user) {
        user.TabTo(List);
        user.Enter();
    }),
              CodeOk);
}

TYPED_TEST(EditorToolbar, TwentyMarksAreAllowed) {
    this->Given(OnToolbar(19));
    this->RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Ticked);
    });
    EXPECT_EQ(this->ListedValues().back(), "0~Last~1~1~14~F19.pmt");
}

TYPED_TEST(EditorToolbar, TwentyFirstMarkIsRefusedWithTheLimit) {
    this->Given(OnToolbar(20));
    this->Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    this->RunAndAccept([](DialogUser& user) {
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Empty);
        EXPECT_EQ(user.Text(Name), "Last");
    });
    EXPECT_EQ(this->ListedValues().back(), "0~Last~1~0~14~F20.pmt");
}

TYPED_TEST(EditorToolbar, FavoriteDeletedMeanwhileStillCounts) {
    this->Given(OnToolbar(20));
    this->Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 0);
        user.Press(control::EditorDelete);
        user.ClickStateImage(List, 19);
        EXPECT_EQ(user.StateImage(List, 19), Empty);
    });
}

TYPED_TEST(EditorToolbar, MarkTakenOffMakesRoom) {
    this->Given(OnToolbar(20));
    this->RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        user.ClickStateImage(List, 20);
        EXPECT_EQ(user.StateImage(List, 20), Ticked);
    });
}

TYPED_TEST(EditorToolbar, MarkOnALevelThatCannotShowItCountsToo) {
    std::vector<ListedFavorite> favorites = OnToolbar(19);
    favorites[0].Level = 4;
    favorites.push_back({.Name = "One more", .OnToolbar = true});
    this->Given(favorites);
    this->Desktop.Messages.ExpectText(
        Sjis(u8"ツールバーの登録は最大20個までです。\n"
             u8"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"),
        MessageIcon::Exclamation);
    this->RunAndCancel([](DialogUser& user) { user.ClickStateImage(List, 19); });
}

} // namespace
} // namespace pmx
