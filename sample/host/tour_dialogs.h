#pragma once

#include <functional>
#include <string>

#include <windows.h>

namespace pmx::host {

/// The modal dialogs of a program's window, as somebody sees them who works it from another thread. Every
/// wait is for a condition and bounded; a dialog that does not come or go is a std::runtime_error that names
/// it.
class TourDialogs {
public:
    /// `window` is the program's main window.
    explicit TourDialogs(HWND window) : Window(window) {}

    /// The dialog, message box or main window that takes input now; null while none does.
    HWND Active() const;

    /// Does something that opens a dialog, and waits until it is there and drawn.
    HWND Open(const std::string& name, const std::function<void()>& action) const;
    /// Does something that ends the dialog, and waits until its owner takes input again.
    void Close(HWND dialog, const std::function<void()>& action) const;

    /// A menu command of the main window; a button of a dialog, once it is enabled. Both return at once.
    void Command(int id) const { PostMessageW(Window, WM_COMMAND, static_cast<WPARAM>(id), 0); }
    static void Press(HWND dialog, int id);

    /// The same with a dialog that it opens or ends.
    HWND OpenWith(const std::string& name, HWND dialog, int button) const;
    void CloseWith(HWND dialog, int button) const;

    /// Replaces the text of an edit box, in the box as typing would.
    static void Type(HWND dialog, int id, const std::wstring& text);
    /// The same in a file dialog of the system, once its box is there.
    static void TypeFileName(HWND dialog, const std::wstring& path);
    /// Puts the focus on a control.
    static void Focus(HWND dialog, int id);
    /// Chooses a line of a combo box and tells the dialog.
    static void Choose(HWND dialog, int id, int index);
    /// Turns a check box over and tells the dialog.
    static void Check(HWND dialog, int id);
    /// Clicks on a row of a list with the mouse, and waits until it is selected.
    static void Click(HWND dialog, int list, int row);
    /// The same in a list of favorites, whose name stands in that column; waits also until the dialog shows
    /// the name in its box.
    static void ClickFavorite(HWND dialog, int list, int row, int column, int nameBox);
    static void ShowTab(HWND dialog, int tabs, int index);
    /// Asks for the note of a control, as F1 on it does.
    static void AskHelp(HWND dialog, int id);

    /// The text of a cell of a list; empty where there is none.
    static std::wstring CellText(HWND list, int row, int column);

    /// A control of a dialog, also inside a window of it; throws when there is none.
    static HWND Control(HWND dialog, int id);

    /// True when the condition held in time.
    static bool WaitFor(const std::function<bool()>& condition);

private:
    HWND Window;
};

} // namespace pmx::host
