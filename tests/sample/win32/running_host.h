#pragma once

#include <memory>
#include <string>
#include <type_traits>

#include <windows.h>

namespace pmx::sample {

struct HandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, HandleCloser>;

/// Starts a program on a favorites folder. `currentFolder` null for the present one. Throws when that fails.
PROCESS_INFORMATION Start(const std::string& program, const std::string& folder, const char* currentFolder);

/// The sample host as a process of its own on a folder, with the keyboard. Closed at the end.
class RunningHost {
public:
    /// `program` and `currentFolder` as for Start.
    RunningHost(const std::string& program, const std::string& folder, const char* currentFolder);
    ~RunningHost();
    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;

    HWND Control(int id) const { return GetDlgItem(Window, id); }

    /// The control with the focus, 0 for none.
    int Focus() const;

    static void Press(WORD key, bool withShift = false);

    /// Presses Tab, and waits until that has led somewhere.
    int Tab(bool isBackwards = false) const;

    /// Chooses a command that opens a dialog or a message, and cancels that.
    void OpenAndCancel(WORD command) const;

private:
    bool FindWindowOfThread();
    HWND OpenDialog() const;

    Handle Process;
    DWORD Thread = 0;
    HWND Window = nullptr;
};

} // namespace pmx::sample
