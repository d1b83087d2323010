#include "sample/win32/running_host.h"

#include "host/resource.h"
#include "win32/support/dialog_driver.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

namespace pmx::sample {

using test::DialogDriver;

PROCESS_INFORMATION Start(const std::string& program, const std::string& folder, const char* currentFolder) {
    std::string command = '"' + program + "\" \"" + folder.substr(0, folder.size() - 1) + '"';
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, currentFolder, &startup,
                        &information)) {
        throw std::runtime_error(program + " cannot be started");
    }
    return information;
}

RunningHost::RunningHost(const std::string& program, const std::string& folder, const char* currentFolder) {
    const PROCESS_INFORMATION information = Start(program, folder, currentFolder);
    CloseHandle(information.hThread);
    Process.reset(information.hProcess);
    Thread = information.dwThreadId;
    EXPECT_TRUE(DialogDriver::WaitUntil([this] { return FindWindowOfThread() && Control(IDC_STATUS); }));
    SetForegroundWindow(Window);
    EXPECT_TRUE(
        DialogDriver::WaitUntil([this] { return GetForegroundWindow() == Window && Focus() == IDC_LIST; }));
}

RunningHost::~RunningHost() {
    PostMessageW(Window, WM_CLOSE, 0, 0);
    constexpr DWORD TimeToEnd = 20'000;
    if (WaitForSingleObject(Process.get(), TimeToEnd) != WAIT_OBJECT_0) {
        ADD_FAILURE() << "the sample host does not end";
        TerminateProcess(Process.get(), 1);
    }
}

int RunningHost::Focus() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(Thread, &info);
    return info.hwndFocus != nullptr && info.hwndFocus != Window ? GetDlgCtrlID(info.hwndFocus) : 0;
}

void RunningHost::Press(WORD key, bool withShift) {
    if (withShift) {
        DialogDriver::SendKey(VK_SHIFT, true);
    }
    DialogDriver::SendKey(key, true);
    DialogDriver::SendKey(key, false);
    if (withShift) {
        DialogDriver::SendKey(VK_SHIFT, false);
    }
}

int RunningHost::Tab(bool isBackwards) const {
    const int before = Focus();
    Press(VK_TAB, isBackwards);
    EXPECT_TRUE(DialogDriver::WaitUntil([&] { return Focus() != before; })) << "the focus stays";
    return Focus();
}

void RunningHost::OpenAndCancel(WORD command) const {
    PostMessageW(Window, WM_COMMAND, command, 0);
    EXPECT_TRUE(DialogDriver::WaitUntil([this] { return OpenDialog() != nullptr; })) << "nothing opens";
    PostMessageW(OpenDialog(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(DialogDriver::WaitUntil([this] { return OpenDialog() == nullptr; })) << "it stays open";
}

HWND RunningHost::OpenDialog() const {
    HWND found = nullptr;
    EnumThreadWindows(
        Thread,
        [](HWND window, LPARAM result) -> BOOL {
            std::array<wchar_t, 32> name{};
            GetClassNameW(window, name.data(), static_cast<int>(name.size()));
            const bool isDialog = lstrcmpW(name.data(), L"#32770") == 0 && IsWindowVisible(window) != FALSE;
            if (isDialog) {
                *reinterpret_cast<HWND*>(result) = window;
            }
            return !isDialog;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

bool RunningHost::FindWindowOfThread() {
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

} // namespace pmx::sample
