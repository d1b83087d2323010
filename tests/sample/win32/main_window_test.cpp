// The sample host's main window with the keyboard, as a process of its own.
#include "host/resource.h"
#include "support/temp_folder.h"
#include "win32/support/dialog_driver.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace pmx::sample {
namespace {

using test::DialogDriver;

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

/// The sample host on a folder, with the keyboard. Closed at the end.
class RunningHost {
public:
    explicit RunningHost(const std::string& folder) {
        std::string command = "PmxSampleHost.exe \"" + folder.substr(0, folder.size() - 1) + '"';
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION information{};
        if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &information)) {
            throw std::runtime_error("the sample host cannot be started");
        }
        CloseHandle(information.hThread);
        Process.reset(information.hProcess);
        Thread = information.dwThreadId;
        EXPECT_TRUE(DialogDriver::WaitUntil([this] { return FindWindowOfThread() && Control(IDC_STATUS); }));
        SetForegroundWindow(Window);
        EXPECT_TRUE(DialogDriver::WaitUntil(
            [this] { return GetForegroundWindow() == Window && Focus() == IDC_LIST; }));
    }
    ~RunningHost() {
        PostMessageW(Window, WM_CLOSE, 0, 0);
        constexpr DWORD Patience = 20'000;
        if (WaitForSingleObject(Process.get(), Patience) != WAIT_OBJECT_0) {
            ADD_FAILURE() << "the sample host does not end";
            TerminateProcess(Process.get(), 1);
        }
    }
    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;

    HWND Control(int id) const { return GetDlgItem(Window, id); }

    /// The control with the focus, 0 for none.
    int Focus() const {
        GUITHREADINFO info{};
        info.cbSize = sizeof(info);
        GetGUIThreadInfo(Thread, &info);
        return info.hwndFocus != nullptr && info.hwndFocus != Window ? GetDlgCtrlID(info.hwndFocus) : 0;
    }

    static void Press(WORD key, bool withShift = false) {
        if (withShift) {
            DialogDriver::SendKey(VK_SHIFT, true);
        }
        DialogDriver::SendKey(key, true);
        DialogDriver::SendKey(key, false);
        if (withShift) {
            DialogDriver::SendKey(VK_SHIFT, false);
        }
    }

    /// Presses Tab, and waits until that has led somewhere.
    int Tab(bool isBackwards = false) const {
        const int before = Focus();
        Press(VK_TAB, isBackwards);
        EXPECT_TRUE(DialogDriver::WaitUntil([&] { return Focus() != before; })) << "the focus stays";
        return Focus();
    }

private:
    bool FindWindowOfThread() {
        EnumThreadWindows(
            Thread,
            [](HWND window, LPARAM found) -> BOOL {
                const bool isMain = IsWindowVisible(window) != FALSE && GetMenu(window) != nullptr;
                if (isMain) {
                    *reinterpret_cast<HWND*>(found) = window;
                }
                return !isMain;
            },
            reinterpret_cast<LPARAM>(&Window));
        return Window != nullptr;
    }

    Handle Process;
    DWORD Thread = 0;
    HWND Window = nullptr;
};

TEST(MainWindow, TabLeadsFromPartToPartInBothDirections) {
    const test::TempFolder folder("host");
    const RunningHost host(folder.Path());
    EXPECT_EQ(host.Tab(), IDC_SUMMARY);
    EXPECT_EQ(host.Tab(), IDC_SHEETS);
    EXPECT_EQ(host.Tab(), IDC_LIST);
    EXPECT_EQ(host.Tab(true), IDC_SHEETS);
    EXPECT_EQ(host.Tab(true), IDC_SUMMARY);
    EXPECT_EQ(host.Tab(true), IDC_LIST);
}

} // namespace
} // namespace pmx::sample
