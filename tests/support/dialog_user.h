#pragma once

#include "platform/dialog_window.h"

#include <string>

namespace pmx::test {

/// Keys that are no text.
namespace key {
inline constexpr std::uint32_t Backspace = 8;
inline constexpr std::uint32_t Space = ListKey::Space;
inline constexpr std::uint32_t PageUp = 33;
inline constexpr std::uint32_t PageDown = 34;
inline constexpr std::uint32_t End = 35;
inline constexpr std::uint32_t Home = 36;
inline constexpr std::uint32_t Up = ListKey::Up;
inline constexpr std::uint32_t Down = ListKey::Down;
inline constexpr std::uint32_t Delete = ListKey::Delete;
inline constexpr std::uint32_t F2 = ListKey::F2;
} // namespace key

/// Someone who sits before an open dialog: sees its controls and uses mouse and keyboard. A script written
/// for this class drives the memory window and the real one alike. Controls are named by their ids; an id
/// that the dialog lacks fails the test. What a user cannot do (press a disabled button) has no effect. Texts
/// are in code page 932.
class DialogUser {
public:
    virtual ~DialogUser() = default;
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;

    // Seeing

    /// True until the dialog has ended.
    virtual bool IsOpen() const = 0;
    virtual std::string Title() const = 0;
    virtual std::string Text(ControlId control) const = 0;
    virtual bool IsEnabled(ControlId control) const = 0;
    virtual bool IsChecked(ControlId radioButton) const = 0;

    /// The control with the keyboard focus, 0 for none.
    virtual ControlId Focused() const = 0;

    /// True when the icon box shows an icon.
    virtual bool HasIcon(ControlId iconBox) const = 0;
    virtual int RowCount(ControlId list) const = 0;
    virtual std::string Cell(ControlId list, int row, int column) const = 0;
    virtual int StateImage(ControlId list, int row) const = 0;

    /// The selected row, -1 for none.
    virtual int SelectedRow(ControlId list) const = 0;

    // Acting with the mouse

    /// Clicks a button, an edit box or the like.
    virtual void Press(ControlId control) = 0;
    virtual void ClickRow(ControlId list, int row) = 0;
    virtual void RightClickRow(ControlId list, int row) = 0;
    virtual void ClickStateImage(ControlId list, int row) = 0;
    virtual void ClickBesideRows(ControlId list) = 0;
    virtual void DoubleClickRow(ControlId list, int row) = 0;
    virtual void DoubleClickStateImage(ControlId list, int row) = 0;

    /// Drags a row with the left button to where it is to stand afterwards, and lets go.
    virtual void DragRow(ControlId list, int from, int to) = 0;

    // Acting with the keyboard, on the control that has the focus

    /// Moves the focus to a control as the Tab key would; the text of an edit box is then selected.
    virtual void TabTo(ControlId control) = 0;
    virtual void Tab() = 0;

    /// Types characters, one after the other, without a pause.
    virtual void Type(const std::string& text) = 0;

    /// Pastes the text from the clipboard.
    virtual void Paste(const std::string& text) = 0;

    /// Presses and releases a key.
    virtual void Key(std::uint32_t virtualKey) = 0;
    virtual void AltKey(std::uint32_t virtualKey) = 0;

    /// A key that an input method has taken, on the focused list.
    virtual void ProcessKey(std::uint32_t scanCode) = 0;
    virtual void Enter() = 0;
    virtual void Escape() = 0;

    /// Presses Alt and the access key of a button.
    virtual void PressByKey(ControlId button) = 0;

    /// Presses F1.
    virtual void AskHelp() = 0;

    /// Asks for help on a control with the question-mark cursor.
    virtual void AskHelpOn(ControlId control) = 0;

    /// Turns to a window of another program, and comes back.
    virtual void VisitAnotherWindow() = 0;

    /// Closes the window by its close box.
    virtual void Close() = 0;

    // Put together

    /// Replaces the text of an edit box by typing, and stays there.
    void Fill(ControlId edit, const std::string& text) {
        TabTo(edit);
        Key(key::Delete);
        Type(text);
    }

protected:
    DialogUser() = default;
};

} // namespace pmx::test
