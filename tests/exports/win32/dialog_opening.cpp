#include "exports/win32/dialog_opening.h"

#include <stdexcept>

#include <commctrl.h>

namespace pmx::exports_test {

namespace {

using Clock = std::chrono::steady_clock;

/// A window that stands for the host's. A dialog over it tells it when there is nothing to do any more.
class IdleWatcher {
public:
    explicit IdleWatcher(int list) : List(list) {
        const HINSTANCE program = GetModuleHandleW(nullptr);
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &IdleWatcher::Procedure;
        windowClass.hInstance = program;
        windowClass.lpszClassName = L"PmxIdleWatcher";
        RegisterClassW(&windowClass); // does nothing from the second time on
        Window = CreateWindowExW(0, windowClass.lpszClassName, L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                 0, 240, 160, nullptr, nullptr, program, nullptr);
        SetWindowLongPtrW(Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~IdleWatcher() { DestroyWindow(Window); }
    IdleWatcher(const IdleWatcher&) = delete;
    IdleWatcher& operator=(const IdleWatcher&) = delete;

    DialogOpening Watch(const std::function<std::int64_t(HWND)>& open) {
        Begin = Clock::now();
        Seen.Result = open(Window);
        if (!IsSeen) {
            throw std::runtime_error("no dialog was opened");
        }
        return Seen;
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const self = reinterpret_cast<IdleWatcher*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_ENTERIDLE && wParam == MSGF_DIALOGBOX && self != nullptr) {
            self->OnIdle(reinterpret_cast<HWND>(lParam));
            return 0;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    void OnIdle(HWND dialog) {
        if (IsSeen || !IsWindowVisible(dialog)) {
            return;
        }
        IsSeen = true;
        Seen.Time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - Begin);
        Seen.Rows = static_cast<int>(SendDlgItemMessageW(dialog, List, LVM_GETITEMCOUNT, 0, 0));
        PostMessageW(dialog, WM_CLOSE, 0, 0);
    }

    const int List;
    HWND Window = nullptr;
    Clock::time_point Begin;
    DialogOpening Seen;
    bool IsSeen = false;
};

} // namespace

DialogOpening OpenOnce(int list, const std::function<std::int64_t(HWND owner)>& open) {
    return IdleWatcher(list).Watch(open);
}

} // namespace pmx::exports_test
