#include "exports/win32/open_dialog.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <map>

#include <commctrl.h>

namespace pmx::exports_test {

namespace {

constexpr std::chrono::seconds Patience{20};
constexpr std::chrono::seconds PatienceWithOne{2}; // for one of several answers
constexpr UINT AnswerTime = 20000;                 // milliseconds
constexpr UINT Japanese = 932;

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    EXPECT_NE(SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, AnswerTime, &result), 0)
        << "the window does not answer message " << message;
    return static_cast<LRESULT>(result);
}

bool WaitUntil(const std::function<bool()>& condition, std::chrono::seconds patience = Patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT); // lets others run between two looks
    }
    return true;
}

/// The dialog that a thread shows and that takes input.
HWND DialogOf(DWORD thread) {
    HWND found = nullptr;
    EnumThreadWindows(
        thread,
        [](HWND window, LPARAM result) -> BOOL {
            std::array<wchar_t, 32> name{};
            GetClassNameW(window, name.data(), static_cast<int>(name.size()));
            const bool isDialog =
                lstrcmpW(name.data(), L"#32770") == 0 && IsWindowVisible(window) && IsWindowEnabled(window);
            if (isDialog) {
                *reinterpret_cast<HWND*>(result) = window;
            }
            return !isDialog;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

/// A message to a control, without waiting. It is told when all that follows from it is over.
class WatchedMessage {
public:
    WatchedMessage(HWND control, UINT message, WPARAM wParam) : Number(++LastSent) {
        SendMessageCallbackW(control, message, wParam, 0, &WatchedMessage::OnDone, Number);
    }

    /// True when it is over. The news arrives as a message.
    bool IsOver() const {
        MSG message{};
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
        return LastDone >= Number;
    }

private:
    static void CALLBACK OnDone(HWND /*window*/, UINT /*message*/, ULONG_PTR number, LRESULT /*result*/) {
        LastDone = number;
    }

    static thread_local ULONG_PTR LastSent;
    static thread_local ULONG_PTR LastDone;
    const ULONG_PTR Number;
};

thread_local ULONG_PTR WatchedMessage::LastSent = 0;
thread_local ULONG_PTR WatchedMessage::LastDone = 0;

void UseDialogOf(DWORD thread, const std::atomic<bool>& isOver,
                 const std::function<void(const OpenDialog&)>& use) {
    HWND window = nullptr;
    WaitUntil([&] { return (window = DialogOf(thread)) != nullptr || isOver; });
    if (!window) {
        ADD_FAILURE() << "no dialog appears";
        return;
    }
    use(OpenDialog(window));
    if (!WaitUntil([&] { return isOver || DialogOf(thread) != window; })) {
        ADD_FAILURE() << "the dialog stays open";
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
}

} // namespace

std::string OpenDialog::TextOf(HWND window) {
    std::array<wchar_t, 512> wide{};
    const LRESULT length = Ask(window, WM_GETTEXT, wide.size(), reinterpret_cast<LPARAM>(wide.data()));
    std::array<char, 2 * wide.size()> narrow{};
    const int size = WideCharToMultiByte(Japanese, 0, wide.data(), static_cast<int>(length), narrow.data(),
                                         static_cast<int>(narrow.size()), nullptr, nullptr);
    return {narrow.data(), static_cast<std::size_t>(size)};
}

bool OpenDialog::IsChecked(int radioButton) const {
    return Ask(GetDlgItem(Window, radioButton), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void OpenDialog::SetText(int control, const std::string& text) const {
    std::array<wchar_t, 512> wide{};
    MultiByteToWideChar(Japanese, 0, text.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
    Ask(GetDlgItem(Window, control), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide.data()));
}

void OpenDialog::Press(int button) const {
    const HWND control = GetDlgItem(Window, button);
    EXPECT_NE(control, nullptr) << "the dialog has no button " << button;
    PostMessageW(control, BM_CLICK, 0, 0);
}

int OpenDialog::RowCount(int list) const {
    return static_cast<int>(Ask(GetDlgItem(Window, list), LVM_GETITEMCOUNT, 0, 0));
}

void OpenDialog::KeyAndAccept(int control, int virtualKey) const {
    SendAndAccept(control, WM_KEYDOWN, static_cast<WPARAM>(virtualKey), [](const OpenDialog&) {});
}

void OpenDialog::PressAndAccept(int button, const std::function<void(const OpenDialog&)>& fill) const {
    SendAndAccept(button, BM_CLICK, 0, fill);
}

void OpenDialog::SendAndAccept(int control, UINT message, WPARAM wParam,
                               const std::function<void(const OpenDialog&)>& fill) const {
    const DWORD thread = GetWindowThreadProcessId(Window, nullptr);
    const WatchedMessage sent(GetDlgItem(Window, control), message, wParam);
    std::map<HWND, int> attempts;
    const auto isOver = [&] {
        const HWND present = DialogOf(thread);
        if (present != nullptr && present != Window) {
            const OpenDialog other(present);
            if (attempts[present] == 0) {
                fill(other);
            }
            other.End(attempts[present]++);
            const auto isGone = [&] { return DialogOf(thread) != present || sent.IsOver(); };
            WaitUntil(isGone, PatienceWithOne);
        }
        return sent.IsOver();
    };
    EXPECT_TRUE(WaitUntil(isOver)) << "control " << control << " leads to no end";
}

/// Presses Yes or OK, and what leads out of a dialog that stays open then.
void OpenDialog::End(int attempt) const {
    for (const int button : {IDYES, IDOK, IDCANCEL}) {
        if (Has(button) && (attempt == 0 || button == IDCANCEL)) {
            Press(button);
            return;
        }
    }
    PostMessageW(Window, WM_CLOSE, 0, 0);
}

std::int64_t CallWithDialog(const std::function<std::int64_t()>& callExport,
                            const std::function<void(const OpenDialog&)>& use) {
    std::atomic<bool> isOver = false;
    std::thread user([&, thread = GetCurrentThreadId()] { UseDialogOf(thread, isOver, use); });
    const std::int64_t result = callExport();
    isOver = true;
    user.join();
    return result;
}

} // namespace pmx::exports_test
