#include "dialogs/base/pmx_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "dialogs/base/icon_dlg.h"
#include "res/ids.h"
#include "support/desktops.h"
#include "support/sjis.h"

#include <functional>
#include <string>
#include <vector>

// How the inputs of a user reach a dialog: the same in real windows as in memory.

namespace pmx {
namespace {

using test::DialogUser;
using test::Sjis;

using Events = std::vector<std::string>;

/// The template of the basic list with handlers that write down what reaches them.
class InputProbeDlg final : public CPmxDlg {
public:
    explicit InputProbeDlg(const DialogServices& services)
        : CPmxDlg(dialog::BasicList, WindowHandle::None, services),
          Icons(LoadFavoriteIcons(services.Images, 96)) {}

    Events Seen;
    std::function<void(InputProbeDlg&)> WhenDeletePressed;
    std::function<void(InputProbeDlg&)> WhenOk;
    bool RefusesNames = false;

    using CPmxDlg::AskYesNo;
    using CPmxDlg::EndDialog;
    using CPmxDlg::Fail;
    using CPmxDlg::NameIn;
    using CPmxDlg::RunOver;
    using CPmxDlg::Warn;
    using CPmxDlg::Window;

    void ShowIcon(std::int64_t icon) { ShowFavoriteIcon(Window(), control::BasicIcon, Icons.get(), icon); }

private:
    bool OnInitDialog() override {
        ListControl& list = Window().ListOf(control::BasicList);
        LimitName(control::BasicName);
        list.SetFullRowSelection(true);
        list.InsertColumn(0, StringOf(text::BasicColumnName), 250);
        list.InsertColumn(1, StringOf(text::ColumnKind), 100);
        for (int row = 0; row < 3; ++row) {
            list.InsertRow(row);
            list.SetCell(row, 0, Sjis(u8"表") + std::to_string(row));
        }
        list.Select(0);
        return true;
    }

    void OnOK() override {
        Seen.emplace_back("ok");
        if (WhenOk) {
            WhenOk(*this);
        } else {
            CPmxDlg::OnOK();
        }
    }

    void OnControlEvent(const ControlEvent& event) override {
        using Self = InputProbeDlg;
        static constexpr EventHandler<Self> Table[] = {
            {control::BasicName, DialogEvent::FocusLost, &Self::OnNameLeft},
            {control::BasicDelete, DialogEvent::Pressed, &Self::OnDelete},
            {control::BasicList, DialogEvent::ListSelectionChanged, &Self::OnSelectionChanged},
            {control::BasicList, DialogEvent::ListClicked, &Self::OnListClick},
            {control::BasicList, DialogEvent::ListDoubleClicked, &Self::OnListDoubleClick},
            {control::BasicList, DialogEvent::ListKeyDown, &Self::OnListKey},
        };
        Dispatch<Self>(*this, Table, event);
    }

    void OnNameLeft() {
        Seen.emplace_back("name left");
        if (RefusesNames) {
            Warn(text::NameHasSeparator);
            Window().Focus(control::BasicName);
        }
    }

    void OnDelete() {
        Seen.emplace_back("delete");
        if (WhenDeletePressed) {
            WhenDeletePressed(*this);
        }
    }

    /// A change may be told more than once.
    void OnSelectionChanged() {
        const std::string event = "row " + std::to_string(SelectedRow());
        if (SelectedRow() >= 0 && (Seen.empty() || Seen.back() != event)) {
            Seen.push_back(event);
        }
    }

    void OnListClick() { Seen.push_back("list clicked on " + std::to_string(HitRow())); }
    void OnListDoubleClick() { Seen.push_back("list double-clicked on " + std::to_string(HitRow())); }

    void OnListKey(const ControlEvent& event) {
        Seen.push_back("key " + std::to_string(event.Key.VirtualKey) + " at " +
                       std::to_string(SelectedRow()));
    }

    int SelectedRow() const { return Window().ListOf(control::BasicList).SelectedRow(); }
    int HitRow() const { return Window().ListOf(control::BasicList).HitOfMessage().Row; }

    std::unique_ptr<ImageList> Icons;
};

class BaseDialogTest : public testing::TestWithParam<test::DesktopKind> {
protected:
    int RunWith(const std::function<void(DialogUser&)>& script) {
        Screen.Dialogs.OnOpened(dialog::BasicList, [this, script](DialogUser& user) {
            Dialog.Seen.clear();
            script(user);
        });
        return Dialog.DoModal();
    }

    void ExpectRefusal() { Screen.Messages.Expect(text::NameHasSeparator, MessageIcon::Exclamation); }

    test::AnyDesktop Screen;
    InputProbeDlg Dialog{Screen.Services};
};

INSTANTIATE_TEST_SUITE_P(On, BaseDialogTest, test::AllDesktops, test::NameOfDesktop);

TEST_P(BaseDialogTest, EndsWithTheCodeOfWhatTheUserDoes) {
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Press(control::Ok); }), CodeOk);
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Press(control::Cancel); }), CodeCancel);
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Enter(); }), CodeOk);
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Escape(); }), CodeCancel);
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Close(); }), CodeCancel);
}

TEST_P(BaseDialogTest, ListTellsKeysBeforeItActsOnThemAndWhatTheySelectAfterwards) {
    RunWith([](DialogUser& user) {
        user.ClickRow(control::BasicList, 1);
        EXPECT_EQ(user.SelectedRow(control::BasicList), 1);
        user.Key(test::key::Down);
        EXPECT_EQ(user.SelectedRow(control::BasicList), 2);
        user.Key(test::key::Down);
        user.Key(test::key::Up);
        EXPECT_EQ(user.SelectedRow(control::BasicList), 1);
        user.ClickBesideRows(control::BasicList);
        EXPECT_EQ(user.SelectedRow(control::BasicList), -1);
        user.Key(test::key::Delete);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"row 1", "list clicked on 1", "key 40 at 1", "row 2", "key 40 at 2",
                                   "key 38 at 2", "row 1", "list clicked on -1", "key 46 at -1"}));
}

TEST_P(BaseDialogTest, ListTellsDoubleClicks) {
    RunWith([](DialogUser& user) {
        user.DoubleClickRow(control::BasicList, 2);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"row 2", "list clicked on 2", "list double-clicked on 2"}));
}

TEST_P(BaseDialogTest, NameBoxTellsWhenItGetsAndLosesTheFocus) {
    RunWith([](DialogUser& user) {
        user.Press(control::BasicName);
        EXPECT_EQ(user.Focused(), control::BasicName);
        user.Press(control::BasicDelete);
        user.TabTo(control::BasicName);
        user.ClickRow(control::BasicList, 1);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"name left", "delete", "name left", "row 1", "list clicked on 1"}));
}

TEST_P(BaseDialogTest, ClickThatLeavesARefusedNameIsNotCarriedOut) {
    Dialog.RefusesNames = true;
    ExpectRefusal();
    RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.Focused(), control::BasicName);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"name left"}));
}

TEST_P(BaseDialogTest, ClickOnOkThatLeavesARefusedNameDoesNotEndTheDialog) {
    Dialog.RefusesNames = true;
    ExpectRefusal();
    const int code = RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), control::BasicName);
        user.Escape();
    });
    EXPECT_EQ(code, CodeCancel);
}

TEST_P(BaseDialogTest, AccessKeyThatLeavesARefusedNameIsRefusedOnce) {
    Dialog.RefusesNames = true;
    ExpectRefusal();
    RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.PressByKey(control::BasicDelete);
        EXPECT_EQ(user.Focused(), control::BasicName);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"name left"}));
}

TEST_P(BaseDialogTest, ClickIntoTheListThatLeavesARefusedNameKeepsTheSelection) {
    Dialog.RefusesNames = true;
    ExpectRefusal();
    RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.ClickRow(control::BasicList, 2);
        EXPECT_EQ(user.Focused(), control::BasicName);
        EXPECT_EQ(user.SelectedRow(control::BasicList), 0);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"name left"}));
}

TEST_P(BaseDialogTest, EscapeDoesNotLeaveTheNameBox) {
    Dialog.RefusesNames = true;
    const int code = RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.Escape();
    });
    EXPECT_EQ(code, CodeCancel);
    EXPECT_EQ(Dialog.Seen, Events());
}

TEST_P(BaseDialogTest, MessageGivesTheFocusBackWithoutTelling) {
    Dialog.WhenOk = [](InputProbeDlg& dialog) { dialog.Fail(text::OutOfMemory); };
    Screen.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.Enter();
        EXPECT_EQ(user.Focused(), control::BasicName);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, (Events{"ok"}));
}

TEST_P(BaseDialogTest, QuestionIsAnsweredByTheUser) {
    Events answers;
    Dialog.WhenDeletePressed = [&answers](InputProbeDlg& dialog) {
        answers.emplace_back(dialog.AskYesNo(text::CreateAskOverwrite) ? "yes" : "no");
    };
    Screen.Messages.ExpectQuestion(text::CreateAskOverwrite, MessageAnswer::No);
    Screen.Messages.ExpectQuestion(text::CreateAskOverwrite, MessageAnswer::Yes);
    RunWith([](DialogUser& user) {
        user.Press(control::BasicDelete);
        user.PressByKey(control::BasicDelete);
        user.Escape();
    });
    EXPECT_EQ(answers, (Events{"no", "yes"}));
}

TEST_P(BaseDialogTest, DialogOverTheDialogIsModalToIt) {
    int innerCode = 0;
    Dialog.WhenDeletePressed = [&](InputProbeDlg& dialog) {
        CPMXTemplUIIconDlg picker(14, 0, std::nullopt, dialog.Window().Handle(), Screen.Services);
        innerCode = dialog.RunOver(picker);
    };
    Screen.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.PressByKey(control::BasicDelete);
        EXPECT_EQ(user.Focused(), control::BasicDelete);
        user.Escape();
    });
    Screen.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) { user.Press(control::Ok); });
    EXPECT_EQ(Dialog.DoModal(), CodeCancel);
    EXPECT_EQ(innerCode, CodeOk);
}

TEST_P(BaseDialogTest, ExceptionOfAHandlerLeavesTheDialog) {
    Dialog.WhenDeletePressed = [](InputProbeDlg& /*dialog*/) { throw std::runtime_error("from a handler"); };
    EXPECT_THROW(RunWith([](DialogUser& user) { user.Press(control::BasicDelete); }), std::runtime_error);
    EXPECT_EQ(RunWith([](DialogUser& user) { user.Press(control::Ok); }), CodeOk);
}

TEST_P(BaseDialogTest, DisablingTheFocusedControlMovesTheFocusOn) {
    Dialog.WhenDeletePressed = [](InputProbeDlg& dialog) {
        dialog.Window().Enable(control::BasicDelete, false);
    };
    RunWith([](DialogUser& user) {
        user.Press(control::BasicDelete);
        EXPECT_FALSE(user.IsEnabled(control::BasicDelete));
        EXPECT_EQ(user.Focused(), control::BasicUp);
        user.Press(control::BasicDelete);
        user.Escape();
    });
    EXPECT_EQ(Dialog.Seen, Events{"delete"});
}

TEST_P(BaseDialogTest, IconBoxKeepsItsIconWhenThereIsNone) {
    Dialog.WhenDeletePressed = [](InputProbeDlg& dialog) { dialog.ShowIcon(14); };
    Dialog.WhenOk = [](InputProbeDlg& dialog) { dialog.ShowIcon(60); };
    RunWith([](DialogUser& user) {
        EXPECT_FALSE(user.HasIcon(control::BasicIcon));
        user.Press(control::BasicDelete);
        EXPECT_TRUE(user.HasIcon(control::BasicIcon));
        user.Press(control::Ok);
        EXPECT_TRUE(user.HasIcon(control::BasicIcon));
        user.Escape();
    });
}

TEST_P(BaseDialogTest, HelpIsThatOfTheControl) {
    RunWith([](DialogUser& user) {
        user.TabTo(control::Cancel);
        user.AskHelp();
        user.AskHelpOn(control::CurrentIconLabel);
        user.AskHelpOn(control::Separator);
        user.Escape();
    });
    auto& requests = Screen.Help.Requests;
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(requests[0].Text, Sjis(u8"【機能】\n・処理を中断し画面を閉じます。"));
    EXPECT_NE(requests[0].Control, WindowHandle::None);
    EXPECT_EQ(requests[1].Text, Sjis(u8"【機能】\n・現在使用しているアイコンを表示します。"));
}

TEST_P(BaseDialogTest, NameBoxTakes32BytesHoweverTheyCome) {
    const std::string name31(31, 'a');
    RunWith([&](DialogUser& user) {
        user.Fill(control::BasicName, name31 + Sjis(u8"表"));
        EXPECT_EQ(user.Text(control::BasicName), name31);
        user.Type("bc");
        EXPECT_EQ(user.Text(control::BasicName), name31 + "b");
        user.TabTo(control::BasicName);
        user.Paste("x" + Sjis(u8"ミミミミミミミミミミミミミミミミ"));
        EXPECT_EQ(user.Text(control::BasicName), "x" + Sjis(u8"ミミミミミミミミミミミミミミミ"));
        user.Escape();
    });
}

TEST_P(BaseDialogTest, NameBoxTakesOneLineOfWhatIsPasted) {
    RunWith([](DialogUser& user) {
        user.TabTo(control::BasicName);
        user.Paste("one\r\ntwo");
        EXPECT_EQ(user.Text(control::BasicName), "one");
        user.Escape();
    });
}

TEST_P(BaseDialogTest, NameBoxCutsWhatTheDialogPutsIn) {
    Dialog.WhenDeletePressed = [](InputProbeDlg& dialog) {
        dialog.Window().SetText(control::BasicName, "a" + Sjis(u8"ソソソソソソソソソソソソソソソソ"));
    };
    RunWith([](DialogUser& user) {
        user.Press(control::BasicDelete);
        EXPECT_EQ(user.Text(control::BasicName), "a" + Sjis(u8"ソソソソソソソソソソソソソソソ"));
        user.Escape();
    });
}

} // namespace
} // namespace pmx
