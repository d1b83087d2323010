// The print-attribute dialog as a real window, through the entry that the favorites editor looks up.
#include "host/PMXPropUI.h"
#include "propui/resource.h"
#include "propui/settings.h"
#include "win32/support/dialog_driver.h"
#include "win32/support/module.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

namespace pmx::sample {
namespace {

constexpr int LastKind = 4;

using pmx::test::Module;

Level LevelOf(int kind) {
    return static_cast<Level>(kind + 1);
}

/// True when the condition held within a bounded time.
bool WaitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        constexpr DWORD Pause = 5;
        WaitForSingleObject(GetCurrentThread(), Pause); // Looks again in a moment.
    }
    return true;
}

struct WindowSearch {
    HWND Except = nullptr;
    HWND Found = nullptr;
};

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<WindowSearch*>(parameter);
    wchar_t name[16]{};
    GetClassNameW(window, name, 16);
    const bool isDialog = std::wstring_view(name) == L"#32770" && IsWindowVisible(window) != FALSE;
    search.Found = isDialog && window != search.Except ? window : nullptr;
    return search.Found == nullptr ? TRUE : FALSE;
}

struct ChildSearch {
    int Id;
    HWND Found;
};

BOOL CALLBACK LookAtChild(HWND child, LPARAM parameter) {
    auto& search = *reinterpret_cast<ChildSearch*>(parameter);
    search.Found = GetDlgCtrlID(child) == search.Id ? child : nullptr;
    return search.Found == nullptr ? TRUE : FALSE;
}

/// An open dialog, worked from another thread.
class OpenDialog {
public:
    OpenDialog(DWORD thread, HWND window) : Thread(thread), Window(window) {}

    HWND Get() const { return Window; }

    HWND Control(int id) const {
        ChildSearch search{id, nullptr};
        EnumChildWindows(Window, &LookAtChild, reinterpret_cast<LPARAM>(&search));
        return search.Found;
    }

    /// The dialog or message that is open beside this one; null when none comes.
    HWND WaitForAnother() const {
        WindowSearch search{Window, nullptr};
        WaitFor([&] {
            EnumThreadWindows(Thread, &LookAtWindow, reinterpret_cast<LPARAM>(&search));
            return search.Found != nullptr;
        });
        return search.Found;
    }

    void Press(int id) const { PostMessageW(Control(id), BM_CLICK, 0, 0); }
    void Choose(int id, int index) const {
        ComboBox_SetCurSel(Control(id), index);
        Notify(id, CBN_SELCHANGE);
    }
    void Check(int id) const { SendMessageW(Control(id), BM_CLICK, 0, 0); }
    void Type(int id, const std::wstring& text) const {
        SetWindowTextW(Control(id), text.c_str()); // The box itself tells the dialog.
    }
    std::wstring TextOf(int id) const {
        wchar_t text[300]{};
        GetWindowTextW(Control(id), text, 300);
        return text;
    }
    int TabCount() const { return static_cast<int>(SendMessageW(Control(IDC_TABS), TCM_GETITEMCOUNT, 0, 0)); }

private:
    void Notify(int id, int code) const {
        const HWND control = Control(id);
        SendMessageW(GetParent(control), WM_COMMAND, MAKEWPARAM(id, code), reinterpret_cast<LPARAM>(control));
    }

    DWORD Thread;
    HWND Window;
};

/// A part of a table among other bytes, given to the dialog.
class PropUiTest : public testing::TestWithParam<int> {
protected:
    static constexpr std::size_t GuardSize = 64;
    static constexpr unsigned char GuardByte = 0xA5;

    PropUiTest() : Library(LoadLibraryA(PMX_PROPUI_LIBRARY)) {}

    PmxShowPropUI Entry() const {
        const FARPROC found = GetProcAddress(Library.get(), PMX_PROPUI_ENTRY);
        return reinterpret_cast<PmxShowPropUI>(reinterpret_cast<void (*)()>(found));
    }

    static std::vector<unsigned char> PartOf(const AttributeTable& table, int kind) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&table);
        return {bytes + PartStart(LevelOf(kind)), bytes + TableSize};
    }

    static AttributeTable WithPart(int kind, const std::vector<unsigned char>& part) {
        AttributeTable table = FreshTable();
        std::memcpy(reinterpret_cast<unsigned char*>(&table) + PartStart(LevelOf(kind)), part.data(),
                    part.size());
        return table;
    }

    /// Runs the dialog on this thread and the script on another. The part may be changed, nothing around it.
    std::int32_t Run(int kind, std::vector<unsigned char>& part,
                     const std::function<void(OpenDialog&)>& script) {
        std::vector<unsigned char> bytes(GuardSize, GuardByte);
        bytes.insert(bytes.end(), part.begin(), part.end());
        bytes.insert(bytes.end(), GuardSize, GuardByte);
        const DWORD thread = GetCurrentThreadId();
        auto worker = std::async(std::launch::async, [&script, thread] { Drive(thread, script); });
        const std::int32_t result = Entry()(1, kind, bytes.data() + GuardSize, 1, nullptr, 0, 0, 0);
        worker.get();
        const auto isGuard = [](unsigned char byte) { return byte == GuardByte; };
        EXPECT_TRUE(std::all_of(bytes.begin(), bytes.begin() + GuardSize, isGuard));
        EXPECT_TRUE(std::all_of(bytes.end() - GuardSize, bytes.end(), isGuard));
        part.assign(bytes.begin() + GuardSize, bytes.end() - GuardSize);
        return result;
    }

    /// True when the dialog has been opened to its end, of which the focus is the last.
    static bool HasFocus(DWORD thread, HWND window) {
        GUITHREADINFO info{};
        info.cbSize = sizeof(info);
        return GetGUIThreadInfo(thread, &info) != FALSE && IsChild(window, info.hwndFocus) != FALSE;
    }

    static void Drive(DWORD thread, const std::function<void(OpenDialog&)>& script) {
        const HWND window = OpenDialog(thread, nullptr).WaitForAnother();
        ASSERT_NE(window, nullptr) << "the dialog did not open";
        ASSERT_TRUE(WaitFor([=] { return HasFocus(thread, window); })) << "the dialog did not get the focus";
        OpenDialog dialog(thread, window);
        script(dialog);
        if (!WaitFor([window] { return IsWindow(window) == FALSE; })) {
            ADD_FAILURE() << "the dialog was not closed by the script";
            EndDialog(window, IDCANCEL);
        }
    }

    Module Library;
};

/// Every byte different from what a fresh table has, and many out of range.
std::vector<unsigned char> StrangePart(int kind) {
    std::vector<unsigned char> part(TableSize - PartStart(LevelOf(kind)));
    for (std::size_t place = 0; place < part.size(); ++place) {
        part[place] = static_cast<unsigned char>(0xF1 - place % 13);
    }
    return part;
}

TEST_P(PropUiTest, CancelChangesNothing) {
    const auto before = StrangePart(GetParam());
    auto part = before;
    EXPECT_EQ(Run(GetParam(), part,
                  [](OpenDialog& dialog) {
                      dialog.Press(IDC_RESET);
                      dialog.Press(IDCANCEL);
                  }),
              PMX_PROPUI_CANCEL);
    EXPECT_EQ(part, before);
}

TEST_P(PropUiTest, OkWithoutAChangeKeepsEveryByteAlsoThoseThatItDoesNotKnow) {
    const auto before = StrangePart(GetParam());
    auto part = before;
    EXPECT_EQ(Run(GetParam(), part, [](OpenDialog& dialog) { dialog.Press(IDOK); }), PMX_PROPUI_OK);
    EXPECT_EQ(part, before);
}

TEST_P(PropUiTest, HasTheTabsOfItsPartAndOfThoseBehindIt) {
    const auto tabs = SettingsTabs();
    const auto expected = std::count_if(
        tabs.begin(), tabs.end(), [](const SettingsTab& tab) { return tab.Part >= LevelOf(GetParam()); });
    auto part = PartOf(FreshTable(), GetParam());
    int count = 0;
    Run(GetParam(), part, [&count](OpenDialog& dialog) {
        count = dialog.TabCount();
        dialog.Press(IDCANCEL);
    });
    EXPECT_EQ(count, expected);
}

TEST_P(PropUiTest, ShowsAndStoresEverySettingThatItHas) {
    auto part = PartOf(FreshTable(), GetParam());
    std::vector<const Setting*> settings;
    for (const SettingsTab& tab : SettingsTabs()) {
        for (const Setting& setting : tab.Settings) {
            if (tab.Part >= LevelOf(GetParam())) {
                settings.push_back(&setting);
            }
        }
    }
    std::string missing;
    const auto result = Run(GetParam(), part, [&](OpenDialog& dialog) {
        for (const Setting* setting : settings) {
            missing +=
                dialog.Control(setting->Control) == nullptr ? std::to_string(setting->Control) + " " : "";
            switch (setting->Type) {
            case SettingType::Choice:
                dialog.Choose(setting->Control, setting->Highest);
                break;
            case SettingType::Flag:
                if (setting->Get(FreshTable()) == 0) {
                    dialog.Check(setting->Control);
                }
                break;
            case SettingType::Number: {
                const std::string text = ShownNumber(*setting, setting->Highest);
                dialog.Type(setting->Control, {text.begin(), text.end()});
                break;
            }
            case SettingType::Words:
                dialog.Type(setting->Control, L"表ソア");
                break;
            }
        }
        dialog.Press(IDOK);
    });
    EXPECT_EQ(missing, "");
    ASSERT_EQ(result, PMX_PROPUI_OK);
    const AttributeTable table = WithPart(GetParam(), part);
    for (const Setting* setting : settings) {
        SCOPED_TRACE(setting->Control);
        if (setting->Type == SettingType::Words) {
            EXPECT_EQ(setting->GetWords(table), "\x95\x5C\x83\x5C\x83\x41");
        } else {
            EXPECT_EQ(setting->Get(table), setting->Highest);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, PropUiTest, testing::Range(0, LastKind + 1));

TEST_F(PropUiTest, RefusesAnUnknownKindAndAMissingPart) {
    unsigned char byte = 7;
    EXPECT_EQ(Entry()(1, -1, &byte, 1, nullptr, 0, 0, 0), -1);
    EXPECT_EQ(Entry()(1, LastKind + 1, &byte, 1, nullptr, 0, 0, 0), -1);
    EXPECT_EQ(Entry()(1, 0, nullptr, 1, nullptr, 0, 0, 0), -1);
    EXPECT_EQ(byte, 7);
}

TEST_F(PropUiTest, NumberOutOfRangeIsRefusedAndTheDialogStaysOpen) {
    auto part = PartOf(FreshTable(), 3);
    const auto before = part;
    bool wasRefused = false;
    const auto result = Run(3, part, [&](OpenDialog& dialog) {
        dialog.Type(IDC_GAP_X, L"30.1");
        dialog.Press(IDOK);
        const HWND message = dialog.WaitForAnother();
        wasRefused = message != nullptr;
        PostMessageW(message, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(
            WaitFor([&] { return IsWindow(message) == FALSE && IsWindowEnabled(dialog.Get()) != FALSE; }));
        EXPECT_EQ(dialog.TextOf(IDC_GAP_X), L"30.1");
        dialog.Type(IDC_GAP_X, L"0.0");
        dialog.Press(IDOK);
    });
    EXPECT_TRUE(wasRefused);
    EXPECT_EQ(result, PMX_PROPUI_OK);
    EXPECT_EQ(part, before);
}

TEST_F(PropUiTest, SettingsWithoutAMeaningAreDisabled) {
    auto part = PartOf(FreshTable(), 0);
    Run(0, part, [](OpenDialog& dialog) {
        EXPECT_FALSE(IsWindowEnabled(dialog.Control(IDC_CUSTOM_WIDTH)));
        dialog.Choose(IDC_PAPER, static_cast<int>(PaperSize::Custom));
        EXPECT_TRUE(IsWindowEnabled(dialog.Control(IDC_CUSTOM_WIDTH)));
        dialog.Press(IDCANCEL);
    });
}

TEST_F(PropUiTest, ResetGivesTheSettingsOfAFreshDocument) {
    auto part = StrangePart(0);
    Run(0, part, [](OpenDialog& dialog) {
        dialog.Check(IDC_RESET);
        dialog.Press(IDOK);
    });
    EXPECT_EQ(part, PartOf(FreshTable(), 0));
}

TEST_F(PropUiTest, PictureFollowsTheSettings) {
    auto part = PartOf(FreshTable(), 0);
    Run(0, part, [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.TextOf(IDC_SHEET), L"1 / 12 枚目");
        dialog.Choose(IDC_SIDES, static_cast<int>(PrintSides::Both));
        EXPECT_EQ(dialog.TextOf(IDC_SHEET), L"1 / 6 枚目");
        dialog.Check(IDC_NEXT);
        EXPECT_EQ(dialog.TextOf(IDC_SHEET), L"2 / 6 枚目");
        dialog.Press(IDCANCEL);
    });
}

using test::DialogDriver;

/// The dialog with the keyboard, whose keys are really pressed.
class Keyboard {
public:
    explicit Keyboard(const OpenDialog& dialog)
        : Dialog(dialog.Get()), Thread(GetWindowThreadProcessId(Dialog, nullptr)) {
        SetForegroundWindow(Dialog);
        EXPECT_TRUE(WaitFor([this] { return GetForegroundWindow() == Dialog && Focus() != nullptr; }));
    }

    HWND Focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof(info);
        GetGUIThreadInfo(Thread, &info);
        return info.hwndFocus;
    }

    static void Press(WORD key, const std::vector<WORD>& held = {}) {
        for (const WORD each : held) {
            DialogDriver::SendKey(each, true);
        }
        DialogDriver::SendKey(key, true);
        DialogDriver::SendKey(key, false);
        for (const WORD each : held) {
            DialogDriver::SendKey(each, false);
        }
    }

    /// Presses Tab and gives the control that it leads to; the same one when the focus stays.
    HWND Tab(bool isBackwards) const {
        const HWND before = Focus();
        Press(VK_TAB, isBackwards ? std::vector<WORD>{VK_SHIFT} : std::vector<WORD>{});
        EXPECT_TRUE(WaitFor([&] { return Focus() != before; })) << "the focus stays";
        return Focus();
    }

private:
    const HWND Dialog;
    const DWORD Thread;
};

int SelectedPage(const OpenDialog& dialog) {
    return static_cast<int>(SendMessageW(dialog.Control(IDC_TABS), TCM_GETCURSEL, 0, 0));
}

TEST_F(PropUiTest, ControlAndTabGoThroughThePagesInBothDirectionsFromAnywhere) {
    auto part = PartOf(FreshTable(), 0);
    Run(0, part, [](OpenDialog& dialog) {
        const Keyboard keyboard(dialog);
        const int count = dialog.TabCount();
        for (int step = 1; step <= count; ++step) {
            keyboard.Tab(false); // away from the row of tabs, into the page
            Keyboard::Press(VK_TAB, {VK_CONTROL});
            EXPECT_TRUE(WaitFor([&] { return SelectedPage(dialog) == step % count; })) << step;
            EXPECT_TRUE(WaitFor([&] { return keyboard.Focus() == dialog.Control(IDC_TABS); }));
        }
        for (int step = count - 1; step >= 0; --step) {
            Keyboard::Press(VK_TAB, {VK_CONTROL, VK_SHIFT});
            EXPECT_TRUE(WaitFor([&] { return SelectedPage(dialog) == step; })) << step;
        }
        EXPECT_FALSE(IsWindowVisible(dialog.Control(IDC_GAP_X))) << "on another page";
        dialog.Press(IDCANCEL);
    });
}

BOOL CALLBACK AddTabStop(HWND window, LPARAM parameter) {
    const bool isStop = (GetWindowLongW(window, GWL_STYLE) & WS_TABSTOP) != 0 &&
                        IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE;
    if (isStop) {
        reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
    }
    return TRUE;
}

TEST_F(PropUiTest, TabLeadsToEveryControlOfThePageInTheirOrderAndBack) {
    auto part = PartOf(FreshTable(), 0);
    Run(0, part, [](OpenDialog& dialog) {
        const Keyboard keyboard(dialog);
        std::vector<HWND> expected; // in the order of the windows, from the row of tabs on
        EnumChildWindows(dialog.Get(), &AddTabStop, reinterpret_cast<LPARAM>(&expected));
        ASSERT_GT(expected.size(), 10U);
        ASSERT_EQ(expected.front(), dialog.Control(IDC_TABS));
        std::vector<HWND> seen = {keyboard.Focus()};
        while (seen.size() < expected.size() && !HasFailure()) {
            seen.push_back(keyboard.Tab(false));
        }
        EXPECT_EQ(seen, expected);
        EXPECT_EQ(keyboard.Tab(false), expected.front());
        for (auto control = expected.rbegin(); control != expected.rend() && !HasFailure(); ++control) {
            EXPECT_EQ(keyboard.Tab(true), *control);
        }
        dialog.Press(IDCANCEL);
    });
}

} // namespace
} // namespace pmx::sample
