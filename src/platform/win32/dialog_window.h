#pragma once

#include "platform/dialog_window.h"
#include "platform/win32/list_control.h"
#include "platform/win32/name_edit.h"

#include <exception>
#include <map>
#include <memory>
#include <optional>

#include <windows.h>

namespace pmx::win32 {

/// A real dialog window. It is made without the system's modal loop and runs its own, as the loop has to tell
/// the user's inputs apart.
class WindowsDialog final : public DialogWindow {
public:
    explicit WindowsDialog(DialogEvents& events) : Events(events) {}

    /// Makes the window from a compiled template, runs it until it ends, and destroys it. None when it could
    /// not be made. Throws what a receiver of events threw.
    std::optional<int> Run(const DLGTEMPLATE* source, HWND owner);

    WindowHandle Handle() const override;
    void End(int code) override;
    std::string Title() const override;
    void SetTitle(const std::string& title) override;
    std::string TextOf(ControlId control) const override;
    void SetText(ControlId control, const std::string& text) override;
    void LimitText(ControlId control, std::size_t bytes) override;
    void Enable(ControlId control, bool enabled) override;
    bool IsEnabled(ControlId control) const override { return IsWindowEnabled(Item(control)) != FALSE; }
    void SetRadio(ControlId first, ControlId last, int index) override;
    int RadioOf(ControlId first, ControlId last) const override;
    ControlId FocusedControl() const override;
    void Focus(ControlId control) override;
    void SetIcon(ControlId control, std::unique_ptr<Icon> icon) override;
    ListControl& ListOf(ControlId control) override;
    std::unique_ptr<WaitCursor> ShowWaitCursor() override;
    std::uint32_t VirtualKeyOfScanCode(std::uint32_t scanCode) const override;
    int Resolution() const override;
    std::uint64_t InputNumber() const override { return Input; }

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR Open();
    INT_PTR Command(ControlId control, UINT code, HWND sender);
    INT_PTR ButtonClicked(ControlId control);
    INT_PTR EditNotified(ControlId control, UINT code);
    INT_PTR Notified(const NMHDR& notification);
    void Notify(const ControlEvent& event);
    bool CancelDrag();
    INT_PTR HelpAsked(const HELPINFO& help);
    void WatchControls();
    void RunLoop();
    void KeepFailure();
    void Dispatch(MSG& message);

    template <class Action>
    void Tell(Action action);

    HWND Item(ControlId control) const { return GetDlgItem(Window, control); }
    HWND FocusedChild() const;

    DialogEvents& Events;
    HWND Window = nullptr;
    std::optional<int> EndCode;
    std::exception_ptr Failure;
    std::uint64_t Input = 0;
    std::map<ControlId, std::unique_ptr<Icon>> Icons;
    std::map<ControlId, std::unique_ptr<WindowsList>> Lists;
    std::map<ControlId, std::unique_ptr<NameEdit>> Edits;
    WindowsList NoList{nullptr};
};

} // namespace pmx::win32
