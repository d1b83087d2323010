#include "platform/dialog_window.h"

#include "platform/win32/handles.h"
#include "res/ids.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <commctrl.h>

// What a real dialog window does when its class, its owner or the system does something unusual.

namespace pmx {
namespace {

using Log = std::vector<std::string>;

/// A dialog class that keeps what it is told, and does what a test wants.
class Receiver final : public DialogEvents {
public:
    Log Seen;
    DialogWindow* Open = nullptr; ///< while the window exists
    std::function<bool(DialogWindow&)> WhenOpened = [](DialogWindow&) { return true; };
    std::function<void()> WhenClosed = [] {};

    HWND Window() const { return win32::ToSystem(Open->Handle()); }

    bool OnOpened(DialogWindow& window) override {
        Open = &window;
        return WhenOpened(window);
    }
    void OnEvent(const ControlEvent& event) override {
        if (event.Event == DialogEvent::Pressed) {
            Seen.push_back("pressed " + std::to_string(event.Control));
        }
    }
    void OnHelpAsked(const HelpRequest&) override { Seen.emplace_back("help"); }
    void OnOkAsked() override { Seen.emplace_back("ok"); }
    void OnCancelAsked() override {
        Seen.emplace_back("cancel");
        Open->End(CodeCancel);
    }
    void OnClosed() override {
        Seen.emplace_back("closed");
        WhenClosed();
        Open = nullptr;
    }
};

/// A window that stands for the host's.
class OwnerWindow {
public:
    OwnerWindow()
        : Handle(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 160,
                                 nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {
        SetWindowSubclass(Handle, &OwnerWindow::Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    ~OwnerWindow() { DestroyWindow(Handle); }
    OwnerWindow(const OwnerWindow&) = delete;
    OwnerWindow& operator=(const OwnerWindow&) = delete;

    HWND Get() const { return Handle; }

    /// Called when a dialog of the window's has nothing to do.
    std::function<void(HWND)> WhenDialogIdle = [](HWND) {};

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR /*id*/, DWORD_PTR self) {
        if (message == WM_ENTERIDLE) {
            reinterpret_cast<OwnerWindow*>(self)->WhenDialogIdle(reinterpret_cast<HWND>(lParam));
        }
        return DefSubclassProc(window, message, wParam, lParam);
    }

    HWND Handle;
};

class DialogWindowTest : public testing::Test {
protected:
    /// Runs the dialog of that template over the owner.
    std::optional<int> Run(ResourceId dialogTemplate = dialog::BasicList) {
        return SystemDialogRunner().Run(dialogTemplate, win32::FromSystem(Owner.Get()), Events);
    }

    /// Runs the dialog, lets `use` do something with its window once it is shown, and ends it.
    void UseWindow(const std::function<void(DialogWindow&)>& use) {
        Owner.WhenDialogIdle = [&, isUsed = false](HWND) mutable {
            if (!isUsed) {
                isUsed = true;
                use(*Events.Open);
                Events.Open->End(CodeOk);
            }
        };
        EXPECT_EQ(Run(), CodeOk);
    }

    OwnerWindow Owner;
    Receiver Events;
};

TEST_F(DialogWindowTest, WithoutATemplateThereIsNoDialog) {
    EXPECT_EQ(Run(9999), std::nullopt);
    EXPECT_TRUE(Events.Seen.empty());
    EXPECT_TRUE(IsWindowEnabled(Owner.Get()));
}

TEST_F(DialogWindowTest, OneThatEndsWhileItOpensIsNeverShown) {
    bool wasVisible = true;
    Events.WhenOpened = [](DialogWindow& window) {
        window.End(7);
        window.End(8); // only the first counts
        return true;
    };
    Events.WhenClosed = [&] { wasVisible = IsWindowVisible(Events.Window()) != FALSE; };
    EXPECT_EQ(Run(), 7);
    EXPECT_FALSE(wasVisible);
    EXPECT_EQ(Events.Seen, Log{"closed"});
}

TEST_F(DialogWindowTest, FirstFailureOfItsClassIsPassedOn) {
    Events.WhenOpened = [](DialogWindow&) -> bool { throw std::runtime_error("first"); };
    Events.WhenClosed = [] { throw std::runtime_error("second"); };
    try {
        Run();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "first");
    }
    EXPECT_TRUE(IsWindowEnabled(Owner.Get()));
}

TEST_F(DialogWindowTest, IsCancelledWhenTheProgramIsToEndAndTheHostHearsOfThatToo) {
    Events.WhenOpened = [](DialogWindow&) {
        PostQuitMessage(5);
        return true;
    };
    EXPECT_EQ(Run(), CodeCancel);
    EXPECT_EQ(Events.Seen, (Log{"cancel", "closed"}));
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.wParam, 5U);
}

TEST_F(DialogWindowTest, HasNoResultWhenSomebodyElseDestroysItsWindow) {
    Owner.WhenDialogIdle = [](HWND window) { DestroyWindow(window); };
    EXPECT_EQ(Run(), std::nullopt);
    EXPECT_EQ(Events.Seen, Log{"closed"});
    EXPECT_TRUE(IsWindowEnabled(Owner.Get()));
}

TEST_F(DialogWindowTest, OwnerThatIsDisabledStaysSo) {
    EnableWindow(Owner.Get(), FALSE);
    UseWindow([](DialogWindow&) {});
    EXPECT_FALSE(IsWindowEnabled(Owner.Get()));
}

TEST_F(DialogWindowTest, FocusIsWhereItsClassPlacedIt) {
    Events.WhenOpened = [](DialogWindow& window) {
        window.Focus(control::BasicName);
        return false;
    };
    UseWindow([](DialogWindow& window) { EXPECT_EQ(window.FocusedControl(), control::BasicName); });
}

TEST_F(DialogWindowTest, OnlyClicksOnButtonsPressThem) {
    UseWindow([this](DialogWindow&) {
        const HWND window = Events.Window();
        const auto notify = [window](ControlId control, WORD code) {
            SendMessageW(window, WM_COMMAND, MAKEWPARAM(control, code),
                         reinterpret_cast<LPARAM>(GetDlgItem(window, control)));
        };
        for (const ControlId control : {control::Ok, control::Cancel, control::BasicUp}) {
            notify(control, BN_DOUBLECLICKED);
            notify(control, BN_SETFOCUS);
        }
        notify(control::BasicIcon, STN_CLICKED);
        SendMessageW(window, WM_COMMAND, control::BasicUp, 0);
        EXPECT_TRUE(Events.Seen.empty());
        notify(control::BasicUp, BN_CLICKED);
        EXPECT_EQ(Events.Seen, Log{"pressed " + std::to_string(control::BasicUp)});
    });
}

TEST_F(DialogWindowTest, HelpOnAMenuIsNoneOfItsClass) {
    UseWindow([this](DialogWindow&) {
        HELPINFO help{};
        help.cbSize = sizeof help;
        help.iContextType = HELPINFO_MENUITEM;
        EXPECT_TRUE(SendMessageW(Events.Window(), WM_HELP, 0, reinterpret_cast<LPARAM>(&help)));
        EXPECT_TRUE(Events.Seen.empty());
    });
}

TEST_F(DialogWindowTest, ControlsThatCannotDoItAreLeftAlone) {
    UseWindow([this](DialogWindow& window) {
        window.Focus(control::BasicList);
        window.Focus(control::CreateName); // of another dialog
        window.Enable(control::BasicUp, false);
        window.Focus(control::BasicUp);
        EXPECT_EQ(window.FocusedControl(), control::BasicList);
        window.LimitText(control::BasicUp, 1);
        window.Enable(control::CreateName, false);
        window.SetIcon(control::BasicIcon, nullptr);
        EXPECT_EQ(window.RadioOf(control::BasicUp, control::BasicDown), -1);
        EXPECT_EQ(SendMessageW(GetDlgItem(Events.Window(), control::BasicIcon), STM_GETICON, 0, 0), 0);
    });
}

TEST_F(DialogWindowTest, NothingHasAnEffectOnAListThatIsNone) {
    UseWindow([](DialogWindow& window) {
        ListControl& none = window.ListOf(control::BasicUp);
        none.InsertColumn(0, "title", 10);
        none.InsertRow(0);
        none.Reserve(3);
        none.SetCell(0, 0, "text");
        none.Select(0);
        none.DeleteRow(0);
        EXPECT_EQ(none.SelectedRow(), -1);
    });
}

TEST_F(DialogWindowTest, RowsOutsideTheListAreNone) {
    UseWindow([this](DialogWindow& window) {
        ListControl& list = window.ListOf(control::BasicList);
        list.InsertColumn(0, "title", 100);
        list.InsertRow(0);
        list.Select(0);
        for (const int row : {-1, 1, 1000}) {
            list.SetCell(row, 0, "other");
            list.SetStateImage(row, 1);
            list.Select(row);
            list.EnsureVisible(row);
            list.DeleteRow(row);
        }
        EXPECT_EQ(list.SelectedRow(), 0);
        EXPECT_EQ(SendMessageW(GetDlgItem(Events.Window(), control::BasicList), LVM_GETITEMCOUNT, 0, 0), 1);
    });
}

} // namespace
} // namespace pmx
