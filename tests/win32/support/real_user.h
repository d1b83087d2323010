#pragma once

#include "support/dialog_user.h"
#include "win32/support/dialog_driver.h"

#include <functional>

#include <windows.h>

namespace pmx::test {

/// The user before a real window: acts with SendInput, sees what the controls tell.
class RealUser final : public DialogUser {
public:
    RealUser(DialogDriver& driver, const DialogDriver::OpenDialog& dialog) : Driver(driver), Dialog(dialog) {}

    HWND Window() const { return Dialog.Window; }

    /// The control's window; fails the test when the dialog has none of that id.
    HWND Item(ControlId control) const;

    /// Runs something on the dialogs' thread and waits for what follows from it.
    void OnDialogThread(const std::function<void()>& action);

    /// True when the focused edit box can be given to an input method.
    bool HasInputMethod();

    /// Waits until everything that was posted or sent before has been handled, and deals with what opens.
    void Settle() { Finish(false); }

    /// Lets an input method put a text into the focused edit box (UTF-16).
    void Compose(const std::wstring& text);

    /// The same, but the composition stays open.
    void BeginComposing(const std::wstring& text);

    // Parts of dragging. Positions are within the list.

    RECT AreaOfRow(ControlId list, int row) const;
    void HoldAt(ControlId list, POINT position);
    void MoveTo(ControlId list, POINT position);
    void Release(ControlId list, POINT position);
    void PressRightButton(ControlId list, POINT position);

    /// Types characters that may have no code in the code page (UTF-16).
    void TypeWide(const std::wstring& text);
    void PasteWide(const std::wstring& text);

    bool IsOpen() const override { return !Driver.IsClosed(Dialog); }
    std::string Title() const override;
    std::string Text(ControlId control) const override;
    bool IsEnabled(ControlId control) const override;
    bool IsChecked(ControlId radioButton) const override;
    ControlId Focused() const override;
    bool HasIcon(ControlId iconBox) const override;
    int RowCount(ControlId list) const override;
    std::string Cell(ControlId list, int row, int column) const override;
    int StateImage(ControlId list, int row) const override;
    int SelectedRow(ControlId list) const override;

    void Press(ControlId control) override;
    void ClickRow(ControlId list, int row) override;
    void RightClickRow(ControlId list, int row) override;
    void ClickStateImage(ControlId list, int row) override;
    void ClickBesideRows(ControlId list) override;
    void DragRow(ControlId list, int from, int to) override;
    void DoubleClickRow(ControlId list, int row) override;
    void DoubleClickStateImage(ControlId list, int row) override;
    void TabTo(ControlId control) override;
    void Tab() override;
    void Type(const std::string& text) override;
    void Paste(const std::string& text) override;
    void Key(std::uint32_t virtualKey) override;
    void AltKey(std::uint32_t virtualKey) override { PressKey(static_cast<WORD>(virtualKey), true); }
    void Enter() override;
    void Escape() override;
    void PressByKey(ControlId button) override;
    void AskHelp() override;
    void AskHelpOn(ControlId control) override;
    void ProcessKey(std::uint32_t scanCode) override;
    void VisitAnotherWindow() override;
    void Close() override;

private:
    enum class RowPart { Content, StateImage };

    void UseInputMethod(const std::wstring& text, bool complete);
    bool BeginAction() const;
    void Finish(bool afterInput);
    LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    std::string TextOf(HWND window) const;
    void UseMouse(ControlId list, POINT position, DWORD button);
    void Click(HWND window, POINT client, const DialogDriver::MouseClick& click = {});
    void ClickOnRow(ControlId list, int row, RowPart part, const DialogDriver::MouseClick& click = {});
    void PressKey(WORD virtualKey, bool withAlt = false, bool withControl = false);

    DialogDriver& Driver;
    const DialogDriver::OpenDialog& Dialog;
};

} // namespace pmx::test
