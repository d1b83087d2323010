#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

#include <windows.h>

namespace pmx::exports_test {

/// A dialog of the library that an export has opened, seen from another thread. Texts are in code page 932.
class OpenDialog {
public:
    explicit OpenDialog(HWND window) : Window(window) {}

    HWND Handle() const { return Window; }
    std::string Title() const { return TextOf(Window); }
    std::string Text(int control) const { return TextOf(GetDlgItem(Window, control)); }
    bool Has(int control) const { return GetDlgItem(Window, control) != nullptr; }
    bool IsEnabled(int control) const { return IsWindowEnabled(GetDlgItem(Window, control)) != FALSE; }
    bool IsChecked(int radioButton) const;
    int RowCount(int list) const;
    void SetText(int control, const std::string& text) const;
    void Press(int button) const;

    /// Presses a button, or a key in a control, and returns when all that follows from it is over. Dialogs
    /// and messages that open meanwhile are accepted, or cancelled when that leaves them open; `fill` may
    /// fill them in before. What is still not over in the end fails the test.
    void KeyAndAccept(int control, int virtualKey) const;
    void PressAndAccept(int button, const std::function<void(const OpenDialog&)>& fill) const;

private:
    static std::string TextOf(HWND window);
    void SendAndAccept(int control, UINT message, WPARAM wParam,
                       const std::function<void(const OpenDialog&)>& fill) const;
    void End(int attempt) const;

    HWND Window;
};

/// Calls an export that opens a dialog and lets `use`, on another thread, use the dialog and end it. A dialog
/// that does not appear, or that is still open when `use` returns, fails the test. The result of the export.
std::int64_t CallWithDialog(const std::function<std::int64_t()>& callExport,
                            const std::function<void(const OpenDialog&)>& use);

} // namespace pmx::exports_test
