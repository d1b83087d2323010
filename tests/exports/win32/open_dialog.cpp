#include "exports/win32/open_dialog.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>

namespace pmx::exports_test {

namespace {

constexpr std::chrono::seconds Patience{20};
constexpr UINT AnswerTime = 20000; // milliseconds
constexpr UINT Japanese = 932;

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DWORD_PTR result = 0;
    EXPECT_NE(SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, AnswerTime, &result), 0)
        << "the window does not answer message " << message;
    return static_cast<LRESULT>(result);
}

bool WaitUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, 0); // lets others run between two looks
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
    std::array<char, 2 * 512> narrow{};
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
