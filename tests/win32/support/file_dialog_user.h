#pragma once

#include "win32/support/real_user.h"

#include <string>

#include <windows.h>

namespace pmx::test {

/// The user before the system's open or save dialog, which an action on a dialog has just opened over it.
/// Types and presses keys as RealUser does; waits are bounded and throw when they were in vain, which gives
/// the script up.
class FileDialogUser {
public:
    /// Waits for the file dialog. `user` must outlive this object.
    explicit FileDialogUser(RealUser& user);

    /// True when the dialog below is disabled meanwhile.
    bool IsOverDialog() const;

    /// The proposed or entered file name, and the chosen line of the list of types.
    std::string FileName() const;
    std::string Filter() const;
    bool ShowsReadOnlyBox() const;

    /// Enters a path and presses Enter.
    void Enter(const std::string& path);

    /// Presses a button of the message box that the file dialog shows.
    void AnswerQuestion(int button);

    void Cancel();

    /// Waits until the dialog is closed, and until what follows from that is dealt with.
    void WaitUntilClosed();

    /// Enters a path that the dialog takes at once.
    void Choose(const std::string& path) {
        Enter(path);
        WaitUntilClosed();
    }

private:
    HWND FindOwned(HWND owner) const;
    void WaitForKeyboard(HWND window) const;

    RealUser& User;
    HWND Window = nullptr;
};

} // namespace pmx::test
