#pragma once

#include "dialogs/base/control_event.h"
#include "dialogs/base/dialog_services.h"
#include "dialogs/base/format_text.h"
#include "store/rules.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace pmx {

/// Base of every dialog of the library: a modal dialog with context help.
///
/// A derived class fills its controls in OnInitDialog, answers OnOK and OnCancel, and names its other
/// handlers in a table:
///
///     void ExampleDlg::OnControlEvent(const ControlEvent& event) {
///         using Self = ExampleDlg;
///         static constexpr EventHandler<Self> Table[] = {
///             {control::EditorNew, DialogEvent::Pressed, &Self::OnNew},
///             {control::EditorList, DialogEvent::ListKeyDown, &Self::OnListKey}, // takes the event
///         };
///         Dispatch<Self>(*this, Table, event);
///     }
///
/// Events do not reach the handlers
///  - before OnInitDialog has returned and after End,
///  - while a message box, another dialog or a foreign window is open over the dialog (the functions below
///    that open one see to it; around anything else that runs windows stands a ModalScope),
///  - when they are the loss of the focus while such a loss is being handled, or follow from an input whose
///    loss of the focus was refused, that is, whose handler moved the focus back.
class CPmxDlg : protected DialogEvents {
public:
    /// What DoModal returns when the dialog could not be shown.
    static constexpr int Failed = -1;

    /// `dialogTemplate`: the number of the dialog's template. `parent`: the window to be modal to, may be
    /// none. `services` must outlive the dialog.
    explicit CPmxDlg(ResourceId dialogTemplate, WindowHandle parent, const DialogServices& services) noexcept
        : Template(dialogTemplate), Parent(parent), Services(services) {}
    ~CPmxDlg() override = default;
    CPmxDlg(const CPmxDlg&) = delete;
    CPmxDlg& operator=(const CPmxDlg&) = delete;

    /// Shows the help note of a control: the string whose number is the control's id. Does nothing when there
    /// is none. `control` may be none.
    virtual void ShowHelpPopup(WindowHandle control, ScreenPoint position, ControlId id);

    /// Handles a request for help. Always true: the request goes nowhere else, whether a note was shown or
    /// not.
    virtual bool OnHelpInfo(const HelpRequest& request);

    /// Runs the dialog. CodeOk, CodeCancel or another code given to EndDialog; Failed when it could not be
    /// shown.
    int DoModal();

protected:
    /// While one of these lives, the dialog's events are dropped, because the user deals with another window.
    class ModalScope {
    public:
        explicit ModalScope(CPmxDlg& dialog) noexcept : Dialog(dialog) { ++Dialog.ModalDepth; }
        ~ModalScope() { --Dialog.ModalDepth; }
        ModalScope(const ModalScope&) = delete;
        ModalScope& operator=(const ModalScope&) = delete;

    private:
        CPmxDlg& Dialog;
    };

    /// Fills the dialog. True lets the window place the focus.
    virtual bool OnInitDialog() { return true; }

    /// The user accepts: Enter or the OK button. Ends the dialog with CodeOk unless overridden.
    virtual void OnOK() { EndDialog(CodeOk); }

    /// The user cancels: Escape, the Cancel button or closing the window. Ends the dialog with CodeCancel
    /// unless overridden.
    virtual void OnCancel() { EndDialog(CodeCancel); }

    /// An event of a control; see the class's example.
    virtual void OnControlEvent(const ControlEvent& event);

    /// Ends the dialog after the current handler; no handler is called any more.
    void EndDialog(int code);

    /// The window. Only while the dialog is open.
    DialogWindow& Window() const { return *OpenWindow; }

    const DialogServices& ServicesInUse() const noexcept { return Services; }

    /// The string of that number; empty when there is none.
    std::string StringOf(ResourceId id) const;

    /// The string of that number with its placeholders filled in.
    std::string FormatString(ResourceId id, std::initializer_list<TextArgument> arguments) const;

    /// Shows a string as an error of the user (exclamation icon).
    void Warn(ResourceId id, std::initializer_list<TextArgument> arguments = {});

    /// Shows a string as a failure (stop icon).
    void Fail(ResourceId id);

    /// Asks a string with Yes and No, where No is the default. True only for Yes.
    bool AskYesNo(ResourceId id);

    /// Runs another dialog over this one. Its end code, or Failed.
    int RunOver(CPmxDlg& dialog);

    /// Lets an edit box take names of favorites: at most NameLimit bytes.
    void LimitName(ControlId nameBox) const;

    /// The text of a name box without the blanks at both ends.
    std::string NameIn(ControlId nameBox) const;

    /// `name` without the blanks at both ends, full-width ones included.
    std::string TrimmedName(std::string_view name) const;

    /// True when the name contains the character that separates the fields of the list file.
    bool HasSeparator(std::string_view name) const;

private:
    bool OnOpened(DialogWindow& window) final;
    void OnEvent(const ControlEvent& event) final;
    void OnHelpAsked(const HelpRequest& request) final;
    void OnOkAsked() final;
    void OnCancelAsked() final;
    void OnClosed() final;

    bool IsListening() const noexcept { return Listening && ModalDepth == 0; }
    bool IsRefused() const;
    void HandleFocusLoss(const ControlEvent& event);
    MessageAnswer Ask(const std::string& text, MessageIcon icon, MessageButtons buttons,
                      MessageAnswer standard);

    ResourceId Template;
    WindowHandle Parent;
    const DialogServices& Services;
    DialogWindow* OpenWindow = nullptr;
    bool Listening = false; ///< between the filling of the dialog and its end
    bool HandlingFocusLoss = false;
    int ModalDepth = 0;
    std::optional<std::uint64_t> RefusedInput; ///< the input whose loss of the focus was refused
};

} // namespace pmx
