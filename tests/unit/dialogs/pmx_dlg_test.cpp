#include "dialogs/base/pmx_dlg.h"

#include "res/ids.h"
#include "support/memory_window.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace pmx {
namespace {

using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;

using Events = std::vector<std::string>;

/// The template of the basic list, which has a list, an edit box and buttons, with handlers that write down
/// what reaches them.
class ProbeDlg : public CPmxDlg {
public:
    explicit ProbeDlg(const DialogServices& services)
        : CPmxDlg(dialog::BasicList, WindowHandle{9}, services) {}

    Events Seen;
    std::function<void()> WhenFilled;
    std::function<void()> WhenNameLeft;
    std::function<void()> WhenDeletePressed;

    using CPmxDlg::AskYesNo;
    using CPmxDlg::EndDialog;
    using CPmxDlg::Fail;
    using CPmxDlg::HasSeparator;
    using CPmxDlg::LimitName;
    using CPmxDlg::NameIn;
    using CPmxDlg::RunOver;
    using CPmxDlg::StringOf;
    using CPmxDlg::TrimmedName;
    using CPmxDlg::Warn;
    using CPmxDlg::Window;

private:
    bool OnInitDialog() override {
        Run(WhenFilled);
        return true;
    }

    void OnOK() override {
        Seen.emplace_back("ok");
        CPmxDlg::OnOK();
    }

    void OnControlEvent(const ControlEvent& event) override {
        using Self = ProbeDlg;
        static constexpr EventHandler<Self> Table[] = {
            {control::BasicName, DialogEvent::FocusLost, &Self::OnNameLeft},
            {control::BasicDelete, DialogEvent::Pressed, &Self::OnDelete},
            {control::BasicList, DialogEvent::ListClicked, &Self::OnListClick},
            {control::BasicList, DialogEvent::ListDoubleClicked, &Self::OnListDoubleClick},
            {control::BasicList, DialogEvent::ListKeyDown, &Self::OnListKey},
        };
        Dispatch<Self>(*this, Table, event);
    }

    void OnNameLeft() {
        Seen.emplace_back("name left");
        Run(WhenNameLeft);
    }

    void OnDelete() {
        Seen.emplace_back("delete");
        Run(WhenDeletePressed);
    }

    void OnListClick() { Seen.emplace_back("list clicked"); }
    void OnListDoubleClick() { Seen.emplace_back("list double-clicked"); }
    void OnListKey(const ControlEvent& event) {
        Seen.push_back("key " + std::to_string(event.Key.VirtualKey));
    }

    static void Run(const std::function<void()>& action) {
        if (action) {
            action();
        }
    }
};

class PmxDlgTest : public testing::Test {
protected:
    int RunWith(const test::MemoryDialogs::Script& script) {
        Desktop.Dialogs.OnOpened(dialog::BasicList, script);
        return Dialog.DoModal();
    }

    /// What reached the dialog during the script, not counting what came with its opening.
    Events EventsOf(const test::MemoryDialogs::Script& script) {
        RunWith([&](MemoryUser& user) {
            Dialog.Seen.clear();
            script(user);
            if (user.IsOpen()) {
                const Events seen = Dialog.Seen;
                Dialog.EndDialog(CodeCancel);
                Dialog.Seen = seen;
            }
        });
        return Dialog.Seen;
    }

    /// Lets the name box refuse what is in it, as dialogs do.
    void RefuseNames() {
        Dialog.WhenNameLeft = [this] {
            Dialog.Warn(text::NameHasSeparator);
            Dialog.Window().Focus(control::BasicName);
        };
    }

    void ExpectRefusal() { Desktop.Messages.Expect(text::NameHasSeparator, MessageIcon::Exclamation); }

    MemoryDesktop Desktop;
    ProbeDlg Dialog{Desktop.Services};
};

TEST_F(PmxDlgTest, DialogThatCannotBeShownFails) {
    Desktop.Dialogs.OnOpenedFail(dialog::BasicList);
    EXPECT_EQ(Dialog.DoModal(), CPmxDlg::Failed);
}

TEST_F(PmxDlgTest, EventsReachTheHandlersOfTheTable) {
    Dialog.WhenFilled = [this] { Dialog.Window().ListOf(control::BasicList).InsertRow(0); };
    const Events seen = EventsOf([](MemoryUser& user) {
        user.ClickRow(control::BasicList, 0);
        user.DoubleClickRow(control::BasicList, 0);
        user.Key(ListKey::Delete);
        user.TabTo(control::BasicName);
        user.Press(control::BasicDelete);
        user.Press(control::BasicUp); // has no handler
    });
    EXPECT_EQ(seen, (Events{"list clicked", "list clicked", "list double-clicked", "key 46", "name left",
                            "delete"}));
}

TEST_F(PmxDlgTest, EventsBeforeTheDialogIsFilledAreIgnored) {
    Dialog.WhenFilled = [this] {
        Dialog.Window().Focus(control::BasicName);
        Dialog.Window().Focus(control::BasicList);
    };
    RunWith([this](MemoryUser& user) {
        EXPECT_EQ(Dialog.Seen, Events());
        user.Escape();
    });
}

TEST_F(PmxDlgTest, EventsAfterTheEndAreIgnored) {
    const Events seen = EventsOf([this](MemoryUser& user) {
        Dialog.EndDialog(CodeOk);
        user.Events().OnEvent({.Control = control::BasicDelete, .Event = DialogEvent::Pressed});
        user.Events().OnOkAsked();
        user.Events().OnCancelAsked();
        user.Events().OnEvent({.Control = control::BasicName, .Event = DialogEvent::FocusLost});
    });
    EXPECT_EQ(seen, Events());
}

TEST_F(PmxDlgTest, MessageTakesTheFocusWithoutTellingTheHandlers) {
    Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    const Events seen = EventsOf([this](MemoryUser& user) {
        user.TabTo(control::BasicName);
        Dialog.Fail(text::OutOfMemory);
        EXPECT_EQ(user.Focused(), control::BasicName);
    });
    EXPECT_EQ(seen, Events());
}

TEST_F(PmxDlgTest, LosingTheFocusAgainDuringTheMessageStartsNoSecondRound) {
    RefuseNames();
    ExpectRefusal();
    const Events seen = EventsOf([this](MemoryUser& user) {
        user.TabTo(control::BasicName);
        Desktop.Messages.Meanwhile([&user] {
            user.Events().OnEvent({.Control = control::BasicName, .Event = DialogEvent::FocusLost});
            user.Events().OnOkAsked();
            user.Events().OnCancelAsked();
            user.Events().OnEvent({.Control = control::BasicDelete, .Event = DialogEvent::Pressed});
            user.Events().OnEvent({.Control = control::BasicList,
                                   .Event = DialogEvent::ListKeyDown,
                                   .Key = {.VirtualKey = ListKey::Delete}});
            user.Events().OnHelpAsked({.Id = control::BasicDelete});
        });
        user.TabTo(control::BasicList);
        EXPECT_EQ(user.Focused(), control::BasicName);
    });
    EXPECT_TRUE(Desktop.Help.Requests.empty());
    EXPECT_EQ(seen, (Events{"name left"}));
}

TEST_F(PmxDlgTest, WhatFollowsFromTheRefusedInputIsIgnored) {
    RefuseNames();
    ExpectRefusal();
    ExpectRefusal();
    const Events seen = EventsOf([this](MemoryUser& user) {
        user.TabTo(control::BasicName);
        user.PressByKey(control::BasicDelete);
        user.Events().OnEvent({.Control = control::BasicName, .Event = DialogEvent::FocusLost});
        user.Events().OnEvent({.Control = control::BasicDelete, .Event = DialogEvent::Pressed});
        user.Events().OnEvent({.Control = control::BasicList, .Event = DialogEvent::ListClicked});
        user.Events().OnOkAsked();
        user.Events().OnCancelAsked();
        EXPECT_EQ(Desktop.Messages.Shown.size(), 1U);
        user.PressByKey(control::BasicDelete); // a new input
    });
    EXPECT_EQ(seen, (Events{"name left", "name left"}));
}

TEST_F(PmxDlgTest, EventsResumeAfterAMessage) {
    Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    Dialog.WhenDeletePressed = [this] { Dialog.Fail(text::OutOfMemory); };
    const Events seen = EventsOf([](MemoryUser& user) {
        user.PressByKey(control::BasicDelete);
        user.TabTo(control::BasicName);
        user.TabTo(control::BasicList);
    });
    EXPECT_EQ(seen, (Events{"delete", "name left"}));
}

TEST_F(PmxDlgTest, MessagesHaveTheDialogsTitleAsCaptionAndBelongToIt) {
    Desktop.Messages.Expect(text::CreateNameMissing, MessageIcon::Exclamation);
    Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    RunWith([this](MemoryUser& user) {
        Dialog.Window().SetTitle(Sjis(u8"お気に入りの編集"));
        Dialog.Warn(text::CreateNameMissing);
        Dialog.Fail(text::OutOfMemory);
        for (const Message& message : Desktop.Messages.Shown) {
            EXPECT_EQ(message.Caption, Sjis(u8"お気に入りの編集"));
            EXPECT_EQ(message.Owner, user.Handle());
        }
        user.Escape();
    });
    EXPECT_EQ(Desktop.Messages.Shown[0].Text,
              Sjis(u8"お気に入り名を入力してください。\n(前後の空白は取り除かれます)"));
}

TEST_F(PmxDlgTest, MessageFillsInPlaceholders) {
    Desktop.Messages.ExpectText(Sjis(u8"ツールバーの登録は最大20個までです。\n登録を行う場合は、"
                                     u8"他のお気に入りのツールバー登録を解除してください。"),
                                MessageIcon::Exclamation);
    RunWith([this](MemoryUser& user) {
        Dialog.Warn(text::ToolbarFull, {std::int64_t{20}});
        user.Escape();
    });
}

TEST_F(PmxDlgTest, OnlyYesAnswersAQuestionWithYes) {
    Desktop.Messages.ExpectQuestion(text::CreateAskOverwrite, MessageAnswer::Yes);
    Desktop.Messages.ExpectQuestion(text::CreateAskOverwrite, MessageAnswer::No);
    Desktop.Messages.ExpectQuestion(text::CreateAskOverwrite, MessageAnswer::None);
    RunWith([this](MemoryUser& user) {
        EXPECT_TRUE(Dialog.AskYesNo(text::CreateAskOverwrite));
        EXPECT_FALSE(Dialog.AskYesNo(text::CreateAskOverwrite));
        EXPECT_FALSE(Dialog.AskYesNo(text::CreateAskOverwrite));
        user.Escape();
    });
}

TEST_F(PmxDlgTest, StringThatIsMissingIsEmpty) {
    EXPECT_EQ(Dialog.StringOf(9999), "");
}

TEST_F(PmxDlgTest, DialogOverTheDialogKeepsEventsAway) {
    ProbeDlg inner(Desktop.Services);
    const Events seen = EventsOf([&](MemoryUser& user) {
        user.TabTo(control::BasicName);
        Desktop.Dialogs.OnOpened(dialog::BasicList, [&user](MemoryUser& innerUser) {
            user.Events().OnEvent({.Control = control::BasicDelete, .Event = DialogEvent::Pressed});
            innerUser.Press(control::Ok);
        });
        EXPECT_EQ(Dialog.RunOver(inner), CodeOk);
        EXPECT_EQ(user.Focused(), control::BasicName);
    });
    EXPECT_EQ(seen, Events());
    EXPECT_EQ(inner.Seen, Events{"ok"});
}

TEST_F(PmxDlgTest, NameIsTakenWithoutBlanksAtItsEnds) {
    RunWith([this](MemoryUser& user) {
        user.Fill(control::BasicName, " \t" + Sjis(u8"ミ 表") + "  ");
        EXPECT_EQ(Dialog.NameIn(control::BasicName), Sjis(u8"ミ 表"));
        user.Escape();
    });
    EXPECT_EQ(Dialog.TrimmedName("   "), "");
    EXPECT_EQ(Dialog.TrimmedName(Sjis(u8"　 ミ　表 　")), Sjis(u8"ミ　表"));
    EXPECT_EQ(Dialog.TrimmedName("\x83\x81\x40"), "\x83\x81\x40") << "whose bytes are no blank";
}

TEST_F(PmxDlgTest, SeparatorIsFoundAsACharacterOnly) {
    EXPECT_TRUE(Dialog.HasSeparator("a~b"));
    EXPECT_TRUE(Dialog.HasSeparator(Sjis(u8"ミ~")));
    EXPECT_FALSE(Dialog.HasSeparator(Sjis(u8"ミ"))); // ends in the byte of the separator
    EXPECT_FALSE(Dialog.HasSeparator(Sjis(u8"～")));
}

// Context help

class ContextHelpTest : public PmxDlgTest {
protected:
    std::vector<test::MemoryHelp::Request>& Requests() { return Desktop.Help.Requests; }
};

TEST_F(ContextHelpTest, ShowsTheStringWithTheControlsIdAtTheMouse) {
    RunWith([](MemoryUser& user) {
        user.MousePosition = {.X = 12, .Y = 34};
        user.AskHelpOn(control::Ok);
        user.Escape();
    });
    ASSERT_EQ(Requests().size(), 1U);
    const auto& request = Requests()[0];
    EXPECT_EQ(request.Text, Sjis(u8"【機能】\n・設定内容を保存し画面を閉じます。\n\n【操作】\n"
                                 u8"・設定した項目に誤りがある場合、エラーメッセージを表示します。"));
    EXPECT_NE(request.Control, WindowHandle::None);
    EXPECT_EQ(request.Position, (ScreenPoint{.X = 12, .Y = 34}));
}

TEST_F(ContextHelpTest, ControlWithoutAStringShowsNothing) {
    RunWith([](MemoryUser& user) {
        user.AskHelpOn(control::Separator);
        user.Escape();
    });
    EXPECT_TRUE(Requests().empty());
}

TEST_F(ContextHelpTest, MissingControlWindowIsPassedOnAsNone) {
    RunWith([](MemoryUser& user) {
        user.Events().OnHelpAsked({.Control = WindowHandle::None, .Id = control::Cancel});
        user.Escape();
    });
    ASSERT_EQ(Requests().size(), 1U);
    EXPECT_EQ(Requests()[0].Control, WindowHandle::None);
}

class OwnHelpDlg final : public ProbeDlg {
public:
    using ProbeDlg::ProbeDlg;
    ControlId Asked = 0;

    void ShowHelpPopup(WindowHandle /*control*/, ScreenPoint /*position*/, ControlId id) override {
        Asked = id;
    }
};

TEST_F(ContextHelpTest, DerivedDialogMayShowHelpItsOwnWay) {
    OwnHelpDlg own(Desktop.Services);
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](MemoryUser& user) {
        user.AskHelpOn(control::BasicName);
        user.Escape();
    });
    own.DoModal();
    EXPECT_EQ(own.Asked, control::BasicName);
    EXPECT_TRUE(Requests().empty());
}

class OwnHandlerDlg final : public ProbeDlg {
public:
    using ProbeDlg::ProbeDlg;
    ControlId Asked = 0;

    bool OnHelpInfo(const HelpRequest& request) override {
        Asked = request.Id;
        return true;
    }
};

TEST_F(ContextHelpTest, DerivedDialogMayHandleTheRequestItself) {
    OwnHandlerDlg own(Desktop.Services);
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](MemoryUser& user) {
        user.AskHelpOn(control::BasicName);
        user.Escape();
    });
    own.DoModal();
    EXPECT_EQ(own.Asked, control::BasicName);
    EXPECT_TRUE(Requests().empty());
}

/// A dialog of that template without handlers.
class PlainDlg final : public CPmxDlg {
public:
    PlainDlg(ResourceId dialogTemplate, const DialogServices& services)
        : CPmxDlg(dialogTemplate, WindowHandle::None, services) {}
};

TEST_F(ContextHelpTest, ControlOfOneIdHasOneTextInEveryDialog) {
    for (const ResourceId id : {dialog::Editor, dialog::RegisterFavorite, dialog::BasicList}) {
        Desktop.Dialogs.OnOpened(id, [](MemoryUser& user) {
            user.AskHelpOn(control::CurrentIconLabel);
            user.AskHelpOn(control::Ok);
            user.AskHelpOn(control::Cancel);
            user.Escape();
        });
        PlainDlg(id, Desktop.Services).DoModal();
    }
    ASSERT_EQ(Requests().size(), 9U);
    for (std::size_t index = 3; index < Requests().size(); ++index) {
        EXPECT_EQ(Requests()[index].Text, Requests()[index % 3].Text) << index;
    }
    EXPECT_EQ(Requests()[0].Text, Sjis(u8"【機能】\n・現在使用しているアイコンを表示します。"));
}

TEST_F(ContextHelpTest, ControlsWithoutNotesShowNothing) {
    Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](MemoryUser& user) {
        user.AskHelpOn(control::CreateLevelLine);
        user.AskHelpOn(control::CreatePrompt);
        user.Escape();
    });
    PlainDlg(dialog::CreateFavorite, Desktop.Services).DoModal();
    EXPECT_TRUE(Requests().empty());
}

TEST_F(ContextHelpTest, RequestIsAlwaysConsumed) {
    EXPECT_TRUE(Dialog.OnHelpInfo({.Id = control::Ok}));
    EXPECT_TRUE(Dialog.OnHelpInfo({.Id = control::Separator}));
}

} // namespace
} // namespace pmx
