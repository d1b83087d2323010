#pragma once

/// Dialogs that are only memory, made from the same compiled templates as the real ones.
///
///     MemoryDesktop desktop;
///     ExampleDlg dialog(..., desktop.Services);
///     desktop.Dialogs.OnOpened(dialog::Example, [](MemoryUser& user) {
///         user.Fill(control::Name, "ABC");
///         user.Press(control::Ok);
///     });
///     EXPECT_EQ(dialog.DoModal(), CodeOk);
///
/// A dialog that opens further dialogs needs one script for each, in the order in which they open. A script
/// that returns with its dialog still open, a dialog without a script, and a control id that the template
/// lacks fail the test.

#include "dialogs/base/dialog_services.h"
#include "platform/text.h"
#include "support/dialog_template.h"
#include "support/dialog_user.h"
#include "support/memory_list.h"
#include "support/memory_services.h"
#include "support/test_desktop.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pmx::test {

class MemoryDialogs;

/// The window of one dialog, seen from the dialog class and, through MemoryUser, from the user.
class MemoryWindow final : public DialogWindow {
public:
    MemoryWindow(const DialogTemplate& source, WindowHandle handle, DialogEvents& events,
                 MemoryDialogs& owner);
    ~MemoryWindow() override;

    /// Places the focus on the first control that can have it, as a dialog does when it opens.
    void PlaceFocus();

    bool HasEnded() const { return EndCode.has_value(); }
    int Code() const { return EndCode.value_or(0); }

    /// The focus goes to a window elsewhere while `open` runs, and then comes back.
    void WhileElsewhere(const std::function<void()>& open);

    // DialogWindow

    WindowHandle Handle() const override { return Identity; }
    void End(int code) override;
    std::string Title() const override { return Caption; }
    void SetTitle(const std::string& title) override { Caption = title; }
    std::string TextOf(ControlId control) const override;
    void SetText(ControlId control, const std::string& text) override;
    void LimitText(ControlId control, std::size_t bytes) override;
    void Enable(ControlId control, bool enabled) override;
    bool IsEnabled(ControlId control) const override;
    void SetRadio(ControlId first, ControlId last, int index) override;
    int RadioOf(ControlId first, ControlId last) const override;
    ControlId FocusedControl() const override;
    void Focus(ControlId control) override;
    void SetIcon(ControlId control, std::unique_ptr<Icon> icon) override;
    ListControl& ListOf(ControlId control) override { return MemoryListOf(control); }
    std::unique_ptr<WaitCursor> ShowWaitCursor() override;
    std::uint32_t VirtualKeyOfScanCode(std::uint32_t scanCode) const override;
    int Resolution() const override;
    std::uint64_t InputNumber() const override { return Input; }

private:
    friend class MemoryUser;

    struct Control {
        TemplateControl Source;
        std::string Text;
        bool Enabled = true;
        bool Checked = false;
        std::optional<std::size_t> Limit; ///< of an edit box, in bytes
        std::size_t SelectionBegin = 0;   ///< of an edit box; with SelectionEnd the caret when they are equal
        std::size_t SelectionEnd = 0;
        std::unique_ptr<Icon> ShownIcon;
    };

    Control* Find(ControlId id) const;
    Control& Get(ControlId id, const char* purpose) const;
    Control& GetKind(ControlId id, ControlKind kind, const char* purpose) const;
    MemoryList& MemoryListOf(ControlId id) const;
    bool CanHaveFocus(const Control& control) const;
    Control* NextTabStop(const Control* after) const;
    bool MoveFocus(Control* target);
    void Check(Control& radioButton);
    bool InsertText(Control& edit, const std::string& text);
    void EraseSelection(Control& edit);
    void SelectAll(ControlId control);

    WindowHandle Identity;
    DialogEvents& Events;
    MemoryDialogs& Owner;
    std::string Caption;
    std::vector<std::unique_ptr<Control>> Controls; ///< in tab order
    mutable Control Missing;                        ///< stands in for a control that the template lacks
    mutable MemoryList MissingList;
    std::map<ControlId, std::unique_ptr<MemoryList>> Lists;
    Control* Focused = nullptr;
    std::optional<int> EndCode;
    std::uint64_t Input = 0;
    int TimesElsewhere = 0; ///< how often the focus went to a window elsewhere
};

/// The user before a memory window.
class MemoryUser final : public DialogUser {
public:
    MemoryUser(MemoryWindow& window, WindowHandle parent) : Window(window), ParentWindow(parent) {}

    /// The parent that the dialog was opened with.
    WindowHandle Parent() const { return ParentWindow; }
    WindowHandle Handle() const { return Window.Handle(); }

    /// What the icon box shows.
    std::optional<MemoryImage> IconIn(ControlId iconBox) const;

    /// All of a list.
    MemoryList& List(ControlId list) const { return Window.MemoryListOf(list); }

    /// Sends an event that no user causes in this order, to see that it is ignored.
    DialogEvents& Events() const { return Window.Events; }

    bool IsOpen() const override { return !Window.HasEnded(); }
    std::string Title() const override { return Window.Title(); }
    std::string Text(ControlId control) const override { return Window.TextOf(control); }
    bool IsEnabled(ControlId control) const override { return Window.IsEnabled(control); }
    bool IsChecked(ControlId radioButton) const override;
    ControlId Focused() const override { return Window.FocusedControl(); }
    bool HasIcon(ControlId iconBox) const override { return IconIn(iconBox).has_value(); }
    int RowCount(ControlId list) const override { return List(list).RowCount(); }
    std::string Cell(ControlId list, int row, int column) const override {
        return List(list).Cell(row, column);
    }
    int StateImage(ControlId list, int row) const override { return List(list).StateImage(row); }
    int SelectedRow(ControlId list) const override { return List(list).SelectedRow(); }

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
    void AltKey(std::uint32_t virtualKey) override;
    void ProcessKey(std::uint32_t scanCode) override;
    void Enter() override;
    void Escape() override;
    void PressByKey(ControlId button) override;
    void AskHelp() override;
    void AskHelpOn(ControlId control) override;
    void VisitAnotherWindow() override;
    void Close() override;

    /// Where the mouse is when help is asked.
    ScreenPoint MousePosition{.X = 320, .Y = 240};

private:
    using Control = MemoryWindow::Control;

    bool BeginInput() const;
    void Activate(Control& button) const;
    void KeyInEdit(Control& edit, std::uint32_t virtualKey) const;
    void KeyInList(Control& list, std::uint32_t virtualKey) const;
    void SelectInList(ControlId list, int row) const;
    bool Point(ControlId list, ListHit hit) const;
    void Click(ControlId list, ListHit hit) const;
    void DoubleClick(ControlId list, ListHit hit) const;

    MemoryWindow& Window;
    WindowHandle ParentWindow;
};

/// Runs dialogs in memory, each with the script that the test has for it.
class MemoryDialogs final : public DialogRunner {
public:
    using Script = std::function<void(MemoryUser&)>;

    /// `resources` must outlive this object.
    explicit MemoryDialogs(const Resources& resources) : Templates(resources) {}
    ~MemoryDialogs() override;

    /// The next dialog that opens must be of that template, and is driven by `script`.
    void OnOpened(ResourceId dialogTemplate, Script script) {
        Scripts.emplace_back(dialogTemplate, std::move(script));
    }

    /// The next dialog that opens must be of that template, and cannot be shown.
    void OnOpenedFail(ResourceId dialogTemplate) { OnOpened(dialogTemplate, Script()); }

    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override;

    /// The topmost open dialog loses the focus while `open` runs, and then gets it back.
    void WhileElsewhere(const std::function<void()>& open);

    int Resolution = 96;      ///< of the screen, dots per inch
    int WaitCursorsShown = 0; ///< how often a wait cursor was shown
    int WaitCursors = 0;      ///< how many are shown at present

    /// Virtual keys by scan code; none is 0.
    std::map<std::uint32_t, std::uint32_t> KeysOfScanCodes{{0x39, ListKey::Space}};

private:
    std::optional<int> RunScript(const DialogTemplate& source, WindowHandle parent, DialogEvents& events,
                                 const Script& script);

    const Resources& Templates;
    std::deque<std::pair<ResourceId, Script>> Scripts;
    std::vector<MemoryWindow*> Open; ///< the topmost last
    std::uintptr_t LastHandle = 0;
};

/// Everything that a dialog needs, in memory, with the resources of the library.
class MemoryDesktop final : public TestDesktop {
public:
    explicit MemoryDesktop(Resources& resources = SystemResources());

    void OnOpened(ResourceId dialogTemplate, Script script) override {
        Dialogs.OnOpened(dialogTemplate, std::move(script));
    }

    MemoryImageLists Images;
    MemoryDialogs Dialogs;
};

} // namespace pmx::test
