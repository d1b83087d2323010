#include "dialogs/base/favorite_list_dlg.h"

#include "support/list_dialog_test.h"

// What hands do in a list of favorites. The editor stands for both dialogs.

namespace pmx {
namespace {

using test::DialogUser;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

using Names = std::vector<std::string>;

template <class AnyScreen>
class ListByHandOn : public test::EditorTestOn<AnyScreen> {
protected:
    using Favorites = std::vector<test::ListedFavorite>;

    /// Lets the user do something in the list of these favorites; the names in the list file afterwards.
    Names Use(const Favorites& favorites, const std::function<void(DialogUser&)>& script) {
        this->Given(favorites);
        this->RunAndAccept([&script](DialogUser& user) {
            user.TabTo(control::EditorList);
            script(user);
        });
        return this->ListedNames();
    }

    /// Names without regard to anything else.
    Names Use(const Names& names, const std::function<void(DialogUser&)>& script) {
        Favorites favorites;
        for (const std::string& name : names) {
            favorites.push_back({.Name = name});
        }
        return Use(favorites, script);
    }
};

using ListByHand = test::OnEachDesktop<ListByHandOn>;
INSTANTIATE_TEST_SUITE_P(On, ListByHand, test::AllDesktops, test::NameOfDesktop);

// Commands leave the focus where it is

TEST_P(ListByHand, EnterOnDeleteDeletesEachTime) {
    const Names left = Use(Names{"A", "B", "C"}, [](DialogUser& user) {
        user.TabTo(control::EditorDelete);
        user.Enter();
        user.Enter();
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), control::EditorDelete);
    });
    EXPECT_EQ(left, Names{"C"});
}

TEST_P(ListByHand, SpaceOnDeleteTouchesNoToolbarBox) {
    Use(Names{"A", "B"}, [](DialogUser& user) {
        user.TabTo(control::EditorDelete);
        user.Key(test::key::Space);
        user.Key(test::key::Space);
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_EQ(user.Focused(), control::EditorNew);
        user.TabTo(List);
    });
    EXPECT_TRUE(ListedValues().empty());
}

TEST_P(ListByHand, FocusIsOnTheButtonThatOpenedADialogAlsoWhenThatIsCancelled) {
    Attributes.User = [](unsigned char*) { return PMX_PROPUI_CANCEL; };
    Use(Names{"A"}, [this](DialogUser& user) {
        for (const ControlId button : {control::EditorNew, control::EditorCopy}) {
            Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& name) { name.Escape(); });
            user.Press(button);
            EXPECT_EQ(user.Focused(), button);
        }
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& picker) { picker.Escape(); });
        user.PressByKey(control::ChangeIcon);
        EXPECT_EQ(user.Focused(), control::ChangeIcon);
        user.Press(control::EditorEdit);
        EXPECT_EQ(user.Focused(), control::EditorEdit);
    });
}

TEST_P(ListByHand, DoubleClickLeavesTheFocusInTheList) {
    Use(Names{"A"}, [](DialogUser& user) {
        user.DoubleClickRow(List, 0);
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(Attributes.Calls.size(), 1U);
}

TEST_P(ListByHand, RowsThatComeLetTheShownOneMoveDown) {
    Use(Names{"A"}, [this](DialogUser& user) {
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
        AnswerName("N");
        user.Press(control::EditorNew);
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
    });
}

// Typing a name's beginning

TEST_P(ListByHand, LetterSelectsTheNextRowWhoseNameBeginsSo) {
    Use(Names{"Alpha", "Beta", "gamma", "beta 2"}, [](DialogUser& user) {
        user.Type("G");
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_EQ(user.Text(Name), "gamma");
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        user.Key(test::key::Home);
        user.Type("bb");
        EXPECT_EQ(user.SelectedRow(List), 3) << "one letter again and again";
        user.Key(test::key::Home);
        user.Type("x");
        EXPECT_EQ(user.SelectedRow(List), 0) << "no name begins so";
    });
}

TEST_P(ListByHand, LettersTogetherAreABeginning) {
    Use(Names{"Z", "ba", "bb", "bc1", "bc2"}, [](DialogUser& user) {
        user.Type("bc");
        EXPECT_EQ(user.SelectedRow(List), 3);
        user.Key(test::key::End);
        user.Type("b");
        EXPECT_EQ(user.SelectedRow(List), 1) << "after the last comes the first";
        user.Key(test::key::Home);
        user.Type("bb");
        EXPECT_EQ(user.SelectedRow(List), 2);
    });
}

TEST_P(ListByHand, KanaSelectARow) {
    Use(Names{"A", Sjis(u8"ミシン目"), Sjis(u8"ア"), Sjis(u8"ヂ"), Sjis(u8"ミラー")}, [](DialogUser& user) {
        user.Type(Sjis(u8"ミラ"));
        EXPECT_EQ(user.SelectedRow(List), 4);
        user.Key(test::key::Home);
        user.Type(Sjis(u8"ヂ"));
        EXPECT_EQ(user.SelectedRow(List), 3) << "no small letter of another";
    });
}

TEST_P(ListByHand, LettersInAnEmptyListDoNothing) {
    Use(Names{}, [](DialogUser& user) { user.Type("a"); });
}

// F2

TEST_P(ListByHand, F2LeadsToTheWholeName) {
    const Names names = Use(Names{"A", "B"}, [](DialogUser& user) {
        user.Key(test::key::Down);
        user.Key(test::key::F2);
        EXPECT_EQ(user.Focused(), Name);
        user.Type("New");
    });
    EXPECT_EQ(names, (Names{"A", "New"}));
}

TEST_P(ListByHand, F2OnAStandardFavoriteDoesNothing) {
    Use({Standard("S")}, [](DialogUser& user) {
        user.Key(test::key::F2);
        EXPECT_EQ(user.Focused(), List);
    });
}

TEST_P(ListByHand, NameThatTheBoxShowsInOtherBytesStaysWhenItIsNotChanged) {
    const Names names = Use(Names{"\x87\x90", "B"}, [](DialogUser& user) {
        user.Key(test::key::F2);
        user.TabTo(List);
    });
    EXPECT_EQ(names, (Names{"\x87\x90", "B"}));
}

// Moving

TEST_P(ListByHand, AltAndAnArrowMoveTheRow) {
    const Names names = Use({{.Name = "A"}, Standard("S"), {.Name = "C"}}, [](DialogUser& user) {
        user.ClickRow(List, 1);
        user.AltKey(test::key::Up);
        user.AltKey(test::key::Up);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(Name), "S");
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        user.AltKey(test::key::Down);
        user.AltKey(test::key::Down);
        user.AltKey(test::key::Down);
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(names, (Names{"A", "C", "S"}));
}

TEST_P(ListByHand, DraggedRowStandsWhereItWasDropped) {
    const Names names = Use(Names{"A", "B", "C", "D"}, [](DialogUser& user) {
        user.DragRow(List, 0, 2);
        EXPECT_EQ(user.Cell(List, 2, test::NameColumn), "A");
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_EQ(user.Text(Name), "A");
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        user.DragRow(List, 3, 0);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        user.DragRow(List, 1, 3);
    });
    EXPECT_EQ(names, (Names{"D", "C", "A", "B"}));
}

TEST_P(ListByHand, RowDroppedOnItsOwnPlaceStays) {
    const Names names = Use(Names{"A", "B"}, [](DialogUser& user) {
        user.DragRow(List, 1, 1);
        EXPECT_EQ(user.Text(Name), "B");
    });
    EXPECT_EQ(names, (Names{"A", "B"}));
}

using ListByHandInMemory = ListByHandOn<MemoryDesktop>;

TEST_F(ListByHandInMemory, RowsThatComeAreScrolledIntoView) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([this](MemoryUser& user) {
        AnswerName("N");
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.List(List).LastMadeVisible, 2);
    });
}

} // namespace
} // namespace pmx
