#pragma once

/// Dialogs, as the library sees them.
///
/// A dialog is a template in the resources plus a class derived from `CPmxDlg` ("dialogs/base/pmx_dlg.h").
/// The class holds every value and every rule; the window only shows. They talk through two interfaces:
///
///  - `DialogWindow`: what the class asks of its window. Controls are named by their ids. An id that the
///    template lacks is a programming error: the tests' window fails the test, the real one ignores the call.
///  - `DialogEvents`: what the window tells the class. `CPmxDlg` receives it, drops what must not be acted on
///    (see below) and passes the rest to the handlers that the class names in a table of (control, event,
///    member function).
///
/// A dialog's life: `DialogRunner::Run` makes the window from the template, calls OnOpened, and delivers
/// events until the class calls `DialogWindow::End(code)`; then the window is destroyed and Run returns the
/// code. The window is valid from OnOpened until Run returns.
///
/// Rules that the two implementations (real windows, and the memory window of the tests) share:
///
///  - FocusLost comes from edit boxes only, when the focus moves on inside the window. When the user turns to another
///    window and comes back, nothing is told.
///  - Pressed comes from push buttons and radio buttons, except the buttons OK (1) and Cancel (2), which give
///    OnOk and OnCancel, as do Enter (when no other push button has the focus) and Escape or closing the
///    window.
///  - A click on a control first moves the focus there. When a FocusLost handler moves the focus back (it
///    refused the input), the click is not carried out: no Pressed, OnOk or ListClicked follows and a list's
///    selection stays.
///  - ListSelectionChanged comes after the user has selected another row of a list or none, by whatever means,
///    and before the ListClicked of the same click. One change may be told more than once.
///  - ListKeyDown comes before the list acts on the key, which it then does.
///  - ListTyped replaces what the list itself would do with characters that are typed. Spaces are left out.
///  - ListRowDragged comes when the user drops a row of a list that lets rows be dragged; the list moves nothing.
///  - What the class does to its controls causes no Pressed or list events, but Focus (and disabling or
///    hiding the focused control) causes FocusLost, inside the call.
///  - While the user deals with a message box, a file dialog or another dialog that belongs to the window, `CPmxDlg`
///    drops events for as long as the class says so with a ModalScope.
///
/// Texts are in the system's code page. A character that has no code in it cannot be typed or pasted: it is
/// left out and the system beeps.

#include "platform/image_list.h"
#include "platform/list_control.h"
#include "platform/window_types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pmx {

/// End codes of a dialog, which are also the ids of its two closing buttons.
enum DialogCode : int { CodeOk = 1, CodeCancel = 2 };

/// Shows the wait cursor as long as it lives.
class WaitCursor {
public:
    virtual ~WaitCursor() = default;
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

protected:
    WaitCursor() = default;
};

/// The window of an open dialog.
class DialogWindow {
public:
    virtual ~DialogWindow() = default;
    DialogWindow(const DialogWindow&) = delete;
    DialogWindow& operator=(const DialogWindow&) = delete;

    /// For parents of further windows and for foreign libraries.
    virtual WindowHandle Handle() const = 0;

    /// Ends the dialog with that code after the current event. Only the first call counts.
    virtual void End(int code) = 0;

    virtual std::string Title() const = 0;
    virtual void SetTitle(const std::string& title) = 0;

    /// The text of a label, button or edit box.
    virtual std::string TextOf(ControlId control) const = 0;

    /// Sets the text. An edit box with a limit cuts it to the limit.
    virtual void SetText(ControlId control, const std::string& text) = 0;

    /// From now on an edit box holds at most `bytes` bytes, however the text gets there: typed, pasted, from
    /// an input method, or by SetText. No double-byte character is split.
    virtual void LimitText(ControlId control, std::size_t bytes) = 0;

    /// Enables or disables a control. When the focused control is disabled, the focus moves on to the next
    /// control that can have it, so that the keyboard keeps working.
    virtual void Enable(ControlId control, bool enabled) = 0;

    virtual bool IsEnabled(ControlId control) const = 0;

    /// Checks one radio button of the group that runs from `first` to `last` and clears the others; an index
    /// outside the group clears all.
    virtual void SetRadio(ControlId first, ControlId last, int index) = 0;

    /// Index in the group of the radio button that is checked; -1 when none is.
    virtual int RadioOf(ControlId first, ControlId last) const = 0;

    /// The control that has the keyboard focus; 0 when none of this dialog has it.
    virtual ControlId FocusedControl() const = 0;

    /// Moves the focus to a control as the Tab key does: the text of an edit box is selected, and the default
    /// button follows. Does nothing to a disabled control.
    virtual void Focus(ControlId control) = 0;

    /// Shows the icon in an icon box and keeps it until the next one replaces it or the window is destroyed.
    /// Null changes nothing.
    virtual void SetIcon(ControlId control, std::unique_ptr<Icon> icon) = 0;

    /// The list view of that id. Valid as long as the window. An id that is no list view gives a list without
    /// rows on which nothing has an effect.
    virtual ListControl& ListOf(ControlId control) = 0;

    /// Shows the wait cursor until the result is destroyed. Never null.
    virtual std::unique_ptr<WaitCursor> ShowWaitCursor() = 0;

    /// The virtual key that a hardware scan code stands for, left and right keys told apart; 0 when unknown.
    virtual std::uint32_t VirtualKeyOfScanCode(std::uint32_t scanCode) const = 0;

    /// Dots per inch of the dialog's screen, as the dialog is laid out for: 96 where nothing is enlarged.
    virtual int Resolution() const = 0;

    /// A number that changes whenever the window takes up a new input of the user (mouse, key, timer). Events
    /// with the same number come from one input.
    virtual std::uint64_t InputNumber() const = 0;

protected:
    DialogWindow() = default;
};

/// What can happen to a control.
enum class DialogEvent {
    Pressed,
    FocusLost,
    ListSelectionChanged,
    ListClicked,
    ListDoubleClicked,
    ListKeyDown,
    ListTyped,
    ListRowDragged
};

/// A key that goes down in a list.
struct ListKey {
    static constexpr std::uint32_t Space = 32;
    static constexpr std::uint32_t Up = 38;
    static constexpr std::uint32_t Down = 40;
    static constexpr std::uint32_t Delete = 46;
    static constexpr std::uint32_t F2 = 113;
    static constexpr std::uint32_t Process = 229; ///< the input method has taken the key

    std::uint32_t VirtualKey = 0;
    std::uint32_t Flags = 0; ///< the scan code of the key
    bool WithAlt = false;    ///< only told of Up and Down
};

/// Where the user drags a row of a list: it is to have the number `To` afterwards.
struct ListMove {
    int From = 0;
    int To = 0;
};

/// Something that happened to a control.
struct ControlEvent {
    ControlId Control = 0;
    DialogEvent Event = DialogEvent::Pressed;
    ListKey Key{};      ///< of ListKeyDown
    std::string Text{}; ///< of ListTyped: all characters since the user last paused or did something else
    ListMove Move{};    ///< of ListRowDragged
};

/// A request for help on a control (F1, or a click with the question-mark cursor).
struct HelpRequest {
    WindowHandle Control = WindowHandle::None; ///< may be none
    ControlId Id = 0;
    ScreenPoint Position{}; ///< of the mouse
};

/// What a window tells its dialog. All calls come on the thread that runs the dialog. An exception that
/// leaves a handler ends the dialog and leaves DialogRunner::Run.
class DialogEvents {
public:
    virtual ~DialogEvents() = default;

    /// The window exists and is not yet visible. True lets the window place the focus (on the first control
    /// that can have it), false says that the class has placed it.
    virtual bool OnOpened(DialogWindow& window) = 0;

    virtual void OnEvent(const ControlEvent& event) = 0;
    virtual void OnHelpAsked(const HelpRequest& request) = 0;
    virtual void OnOkAsked() = 0;
    virtual void OnCancelAsked() = 0;

    /// The window is about to be destroyed; must not be used any more.
    virtual void OnClosed() = 0;

protected:
    DialogEvents() = default;
    DialogEvents(const DialogEvents&) = default;
    DialogEvents& operator=(const DialogEvents&) = default;
};

/// Running of dialogs.
class DialogRunner {
public:
    virtual ~DialogRunner() = default;

    /// Runs the dialog of that template of the current resource module until it ends. `parent` is disabled
    /// meanwhile; none takes the thread's active window. Returns the code given to DialogWindow::End, or none
    /// when there is no such template or the window could not be made. Exceptions of the receiver are passed
    /// on.
    virtual std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) = 0;

protected:
    DialogRunner() = default;
    DialogRunner(const DialogRunner&) = default;
    DialogRunner& operator=(const DialogRunner&) = default;
};

/// The system's dialogs; the native build has none, so that none can be shown. Lives as long as the process.
DialogRunner& SystemDialogRunner();

} // namespace pmx
