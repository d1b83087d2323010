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
    bool IsChecked(int radioButton) const;
    void SetText(int control, const std::string& text) const;
    void Press(int button) const;

private:
    static std::string TextOf(HWND window);

    HWND Window;
};

/// Calls an export that opens a dialog and lets `use`, on another thread, use the dialog and end it. A dialog
/// that does not appear, or that is still open when `use` returns, fails the test. The result of the export.
std::int64_t CallWithDialog(const std::function<std::int64_t()>& callExport,
                            const std::function<void(const OpenDialog&)>& use);

} // namespace pmx::exports_test
