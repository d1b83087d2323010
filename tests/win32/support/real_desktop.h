#pragma once

/// Dialogs as real windows, with the same way of writing tests as the memory desktop:
///
///     RealDesktop desktop;
///     ExampleDlg dialog(..., desktop.Services);
///     desktop.Dialogs.OnOpened(dialog::Example, [](DialogUser& user) { user.Press(control::Ok); });
///     EXPECT_EQ(dialog.DoModal(), CodeOk);
///
/// Message boxes are real too; those that the test foresees are looked at and answered by mouse. File
/// dialogs, the help engine and libraries are those of the memory desktop.

#include "dialogs/base/dialog_services.h"
#include "support/memory_services.h"
#include "support/test_desktop.h"
#include "win32/support/dialog_driver.h"
#include "win32/support/real_user.h"

#include <deque>
#include <utility>

#include <windows.h>

namespace pmx::test {

/// Runs real dialogs, each with the script that the test has for it.
class RealDialogs final : public DialogRunner {
public:
    using Script = DialogDriver::Script;

    explicit RealDialogs(DialogDriver& driver) : Driver(driver) {}
    ~RealDialogs() override;

    /// The next dialog that opens must be of that template, and is driven by `script`.
    void OnOpened(ResourceId dialogTemplate, Script script) {
        Scripts.emplace_back(dialogTemplate, std::move(script));
    }

    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override;

private:
    DialogDriver& Driver;
    std::deque<std::pair<ResourceId, Script>> Scripts;
};

class RealDesktop final : public TestDesktop {
public:
    RealDesktop();
    ~RealDesktop() override;

    void OnOpened(ResourceId dialogTemplate, Script script) override {
        Dialogs.OnOpened(dialogTemplate, std::move(script));
    }

    /// A visible window that stands for the host's.
    HWND Host() const { return HostWindow; }

    DialogDriver Driver;
    RealDialogs Dialogs{Driver};

private:
    HWND HostWindow;
};

} // namespace pmx::test
