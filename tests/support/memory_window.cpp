#include "support/memory_window.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pmx::test {

namespace {

class MemoryWaitCursor final : public WaitCursor {
public:
    explicit MemoryWaitCursor(MemoryDialogs& dialogs) : Dialogs(dialogs) {
        ++Dialogs.WaitCursorsShown;
        ++Dialogs.WaitCursors;
    }
    ~MemoryWaitCursor() override { --Dialogs.WaitCursors; }

private:
    MemoryDialogs& Dialogs;
};

WindowHandle ControlHandle(WindowHandle dialog, ControlId control) {
    return static_cast<WindowHandle>(static_cast<std::uintptr_t>(dialog) +
                                     static_cast<std::uintptr_t>(control));
}

} // namespace

// The dialog's side

MemoryWindow::MemoryWindow(const DialogTemplate& source, WindowHandle handle, DialogEvents& events,
                           MemoryDialogs& owner)
    : Identity(handle), Events(events), Owner(owner), Caption(source.Title) {
    for (const TemplateControl& line : source.Controls) {
        auto control = std::make_unique<Control>();
        control->Source = line;
        control->Text = line.Text;
        control->Enabled = line.IsEnabled();
        if (line.Kind == ControlKind::List) {
            Lists[line.Id] = std::make_unique<MemoryList>();
        }
        Controls.push_back(std::move(control));
    }
}

MemoryWindow::~MemoryWindow() = default;

MemoryWindow::Control* MemoryWindow::Find(ControlId id) const {
    const auto found = std::find_if(Controls.begin(), Controls.end(),
                                    [id](const auto& control) { return control->Source.Id == id; });
    return found == Controls.end() || id == TemplateControl::NoId ? nullptr : found->get();
}

MemoryWindow::Control& MemoryWindow::Get(ControlId id, const char* purpose) const {
    Control* control = Find(id);
    if (!control) {
        ADD_FAILURE() << "the template has no control " << id << " to " << purpose;
        return Missing;
    }
    return *control;
}

MemoryWindow::Control& MemoryWindow::GetKind(ControlId id, ControlKind kind, const char* purpose) const {
    Control& control = Get(id, purpose);
    EXPECT_EQ(static_cast<int>(control.Source.Kind), static_cast<int>(kind))
        << "control " << id << " is of the wrong kind to " << purpose;
    return control;
}

MemoryList& MemoryWindow::MemoryListOf(ControlId id) const {
    const auto found = Lists.find(id);
    if (found == Lists.end()) {
        ADD_FAILURE() << "the template has no list " << id;
        return MissingList;
    }
    return *found->second;
}

void MemoryWindow::End(int code) {
    if (!EndCode) {
        EndCode = code;
    }
}

std::string MemoryWindow::TextOf(ControlId control) const {
    return Get(control, "read its text").Text;
}

void MemoryWindow::SetText(ControlId control, const std::string& text) {
    Control& target = Get(control, "set its text");
    target.Text = text.substr(0, LengthWithin(text, target.Limit.value_or(text.size()), SystemLeadBytes()));
    target.SelectionBegin = 0;
    target.SelectionEnd = 0;
}

void MemoryWindow::LimitText(ControlId control, std::size_t bytes) {
    GetKind(control, ControlKind::Edit, "limit its text").Limit = bytes;
}

void MemoryWindow::SelectAll(ControlId control) {
    Control& edit = GetKind(control, ControlKind::Edit, "select its text");
    edit.SelectionBegin = 0;
    edit.SelectionEnd = edit.Text.size();
}

bool MemoryWindow::IsEnabled(ControlId control) const {
    return Get(control, "see whether it is enabled").Enabled;
}

void MemoryWindow::Enable(ControlId control, bool enabled) {
    Control& target = Get(control, "enable it");
    target.Enabled = enabled;
    if (!enabled && Focused == &target) {
        MoveFocus(NextTabStop(&target));
    }
}

void MemoryWindow::SetRadio(ControlId first, ControlId last, int index) {
    for (ControlId id = first; id <= last; ++id) {
        GetKind(id, ControlKind::RadioButton, "check it").Checked = id - first == index;
    }
}

int MemoryWindow::RadioOf(ControlId first, ControlId last) const {
    int checked = -1;
    for (ControlId id = first; id <= last; ++id) {
        if (GetKind(id, ControlKind::RadioButton, "see whether it is checked").Checked && checked < 0) {
            checked = id - first;
        }
    }
    return checked;
}

ControlId MemoryWindow::FocusedControl() const {
    return Focused ? Focused->Source.Id : 0;
}

void MemoryWindow::Focus(ControlId control) {
    Control& target = Get(control, "focus it");
    if (target.Enabled && MoveFocus(&target) && target.Source.Kind == ControlKind::Edit) {
        SelectAll(control);
    }
}

void MemoryWindow::SetIcon(ControlId control, std::unique_ptr<Icon> icon) {
    Control& box = GetKind(control, ControlKind::IconBox, "show an icon");
    if (icon) {
        box.ShownIcon = std::move(icon);
    }
}

std::unique_ptr<WaitCursor> MemoryWindow::ShowWaitCursor() {
    return std::make_unique<MemoryWaitCursor>(Owner);
}

int MemoryWindow::Resolution() const {
    return Owner.Resolution;
}

std::uint32_t MemoryWindow::VirtualKeyOfScanCode(std::uint32_t scanCode) const {
    const auto found = Owner.KeysOfScanCodes.find(scanCode);
    return found == Owner.KeysOfScanCodes.end() ? 0 : found->second;
}

bool MemoryWindow::CanHaveFocus(const Control& control) const {
    return control.Enabled && control.Source.IsVisible() && control.Source.IsTabStop();
}

MemoryWindow::Control* MemoryWindow::NextTabStop(const Control* after) const {
    const auto start = std::find_if(Controls.begin(), Controls.end(),
                                    [after](const auto& control) { return control.get() == after; });
    const std::size_t first =
        start == Controls.end() ? 0 : static_cast<std::size_t>(start - Controls.begin()) + 1;
    for (std::size_t step = 0; step < Controls.size(); ++step) {
        Control* candidate = Controls[(first + step) % Controls.size()].get();
        if (candidate != after && CanHaveFocus(*candidate)) {
            return candidate;
        }
    }
    return nullptr;
}

void MemoryWindow::PlaceFocus() {
    if (Control* first = NextTabStop(nullptr)) {
        Focus(first->Source.Id);
    }
}

/// True when the target has the focus afterwards. As in the real window, the focus has already moved when its
/// loss is told, and whoever is told may move it elsewhere.
bool MemoryWindow::MoveFocus(Control* target) {
    Control* previous = Focused;
    if (target == previous) {
        return target != nullptr;
    }
    Focused = target;
    if (previous && previous->Source.Kind == ControlKind::Edit && !HasEnded()) {
        Events.OnEvent({.Control = previous->Source.Id, .Event = DialogEvent::FocusLost});
    }
    return target && Focused == target;
}

void MemoryWindow::WhileElsewhere(const std::function<void()>& open) {
    ++TimesElsewhere;
    Control* previous = Focused;
    Focused = nullptr;
    open();
    Focused = previous;
}

void MemoryWindow::Check(Control& radioButton) {
    const auto self = std::find_if(Controls.begin(), Controls.end(),
                                   [&](const auto& control) { return control.get() == &radioButton; });
    auto first = self;
    while (first != Controls.begin() && !(*first)->Source.BeginsGroup()) {
        --first;
    }
    for (auto control = first; control != Controls.end(); ++control) {
        if (control != first && (*control)->Source.BeginsGroup()) {
            break;
        }
        (*control)->Checked = control == self;
    }
}

void MemoryWindow::EraseSelection(Control& edit) {
    edit.Text.erase(edit.SelectionBegin, edit.SelectionEnd - edit.SelectionBegin);
    edit.SelectionEnd = edit.SelectionBegin;
}

/// Puts as much of the text in the place of the selection as the limit allows. False when something was left
/// out.
bool MemoryWindow::InsertText(Control& edit, const std::string& text) {
    const std::size_t kept = edit.Text.size() - (edit.SelectionEnd - edit.SelectionBegin);
    const std::size_t limit = edit.Limit.value_or(kept + text.size());
    const std::size_t length = LengthWithin(text, limit > kept ? limit - kept : 0, SystemLeadBytes());
    if (length > 0) {
        EraseSelection(edit);
        edit.Text.insert(edit.SelectionBegin, text, 0, length);
        edit.SelectionBegin += length;
        edit.SelectionEnd = edit.SelectionBegin;
    }
    return length == text.size();
}

// The user's side

bool MemoryUser::BeginInput() const {
    if (Window.HasEnded()) {
        ADD_FAILURE() << "the user acts on a dialog that has ended: " << Utf8(Window.Title());
        return false;
    }
    ++Window.Input;
    return true;
}

std::optional<MemoryImage> MemoryUser::IconIn(ControlId iconBox) const {
    const auto& icon = Window.GetKind(iconBox, ControlKind::IconBox, "look at its icon").ShownIcon;
    return icon ? std::optional(dynamic_cast<const MemoryIcon&>(*icon).Image()) : std::nullopt;
}

bool MemoryUser::IsChecked(ControlId radioButton) const {
    return Window.GetKind(radioButton, ControlKind::RadioButton, "see whether it is checked").Checked;
}

/// What a button does once it is pressed.
void MemoryUser::Activate(Control& button) const {
    const ControlId id = button.Source.Id;
    if (Window.HasEnded()) {
        return;
    }
    if (id == CodeOk) {
        Window.Events.OnOkAsked();
    } else if (id == CodeCancel) {
        Window.Events.OnCancelAsked();
    } else if (button.Source.Kind == ControlKind::RadioButton) {
        Window.Check(button);
        Window.Events.OnEvent({.Control = id, .Event = DialogEvent::Pressed});
    } else if (button.Source.Kind == ControlKind::PushButton) {
        Window.Events.OnEvent({.Control = id, .Event = DialogEvent::Pressed});
    }
}

void MemoryUser::Press(ControlId control) {
    Control& target = Window.Get(control, "press it");
    if (!BeginInput() || !target.Enabled) {
        return;
    }
    const int before = Window.TimesElsewhere;
    // A window that opens while the mouse button is down takes the click away.
    if (Window.MoveFocus(&target) && Window.TimesElsewhere == before) {
        Activate(target);
    }
}

void MemoryUser::PressByKey(ControlId button) {
    Control& target = Window.Get(button, "press it");
    if (BeginInput() && target.Enabled && Window.MoveFocus(&target)) {
        Activate(target);
    }
}

void MemoryUser::TabTo(ControlId control) {
    Window.Get(control, "move the focus there");
    if (BeginInput()) {
        Window.Focus(control);
    }
}

void MemoryUser::Tab() {
    if (!BeginInput()) {
        return;
    }
    if (const Control* next = Window.NextTabStop(Window.Focused)) {
        Window.Focus(next->Source.Id);
    }
}

void MemoryUser::Type(const std::string& text) {
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t length = CharacterLength(text, position, SystemLeadBytes());
        position += length;
        if (!BeginInput() || !Window.Focused) {
            continue;
        }
        if (Window.Focused->Source.Kind == ControlKind::Edit) {
            Window.InsertText(*Window.Focused, text.substr(position - length, length));
        } else if (Window.Focused->Source.Kind == ControlKind::List) {
            Window.Events.OnEvent({.Control = Window.FocusedControl(),
                                   .Event = DialogEvent::ListTyped,
                                   .Text = text.substr(0, position)});
        }
    }
}

void MemoryUser::Paste(const std::string& text) {
    if (BeginInput() && Window.Focused && Window.Focused->Source.Kind == ControlKind::Edit) {
        Window.InsertText(*Window.Focused, text.substr(0, text.find_first_of("\r\n")));
    }
}

void MemoryUser::KeyInEdit(Control& edit, std::uint32_t virtualKey) const {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    const bool isSelection = edit.SelectionBegin != edit.SelectionEnd;
    if (virtualKey == key::Delete && !isSelection && edit.SelectionEnd < edit.Text.size()) {
        edit.SelectionEnd += CharacterLength(edit.Text, edit.SelectionEnd, leadBytes);
    }
    if (virtualKey == key::Backspace && !isSelection && edit.SelectionBegin > 0) {
        edit.SelectionBegin = LengthWithin(edit.Text, edit.SelectionBegin - 1, leadBytes);
    }
    if (virtualKey == key::Delete || virtualKey == key::Backspace) {
        Window.EraseSelection(edit);
    }
    if (virtualKey == key::Home || virtualKey == key::End) {
        edit.SelectionBegin = edit.SelectionEnd = virtualKey == key::Home ? 0 : edit.Text.size();
    }
}

/// Selects a row as a click or a key does; -1 for none.
void MemoryUser::SelectInList(ControlId list, int row) const {
    MemoryList& rows = List(list);
    if (row == rows.SelectedRow()) {
        return;
    }
    rows.DeselectAll();
    rows.Select(row);
    Window.Events.OnEvent({.Control = list, .Event = DialogEvent::ListSelectionChanged});
}

void MemoryUser::KeyInList(Control& list, std::uint32_t virtualKey) const {
    Window.Events.OnEvent(
        {.Control = list.Source.Id, .Event = DialogEvent::ListKeyDown, .Key = {.VirtualKey = virtualKey}});
    MemoryList& rows = List(list.Source.Id);
    if (Window.HasEnded() || rows.RowCount() == 0) {
        return;
    }
    const int last = rows.RowCount() - 1;
    switch (virtualKey) {
    case key::Up:
        SelectInList(list.Source.Id, std::max(rows.FocusedRow - 1, 0));
        break;
    case key::Down:
        SelectInList(list.Source.Id, std::min(rows.FocusedRow + 1, last));
        break;
    case key::Home:
    case key::PageUp: // every row fits
        SelectInList(list.Source.Id, 0);
        break;
    case key::End:
    case key::PageDown:
        SelectInList(list.Source.Id, last);
        break;
    default:
        break;
    }
}

void MemoryUser::Key(std::uint32_t virtualKey) {
    if (!BeginInput() || !Window.Focused) {
        return;
    }
    Control& control = *Window.Focused;
    if (control.Source.Kind == ControlKind::Edit) {
        KeyInEdit(control, virtualKey);
    } else if (control.Source.Kind == ControlKind::List) {
        KeyInList(control, virtualKey);
    } else if (virtualKey == key::Space) {
        Activate(control);
    }
}

void MemoryUser::AltKey(std::uint32_t virtualKey) {
    if (BeginInput() && Window.Focused && Window.Focused->Source.Kind == ControlKind::List) {
        Window.Events.OnEvent({.Control = Window.FocusedControl(),
                               .Event = DialogEvent::ListKeyDown,
                               .Key = {.VirtualKey = virtualKey, .WithAlt = true}});
    }
}

void MemoryUser::VisitAnotherWindow() {
    if (BeginInput()) {
        Window.WhileElsewhere([] {});
    }
}

void MemoryUser::ProcessKey(std::uint32_t scanCode) {
    if (BeginInput() && Window.Focused && Window.Focused->Source.Kind == ControlKind::List) {
        Window.Events.OnEvent({.Control = Window.FocusedControl(),
                               .Event = DialogEvent::ListKeyDown,
                               .Key = {.VirtualKey = ListKey::Process, .Flags = scanCode}});
    }
}

void MemoryUser::Enter() {
    if (!BeginInput()) {
        return;
    }
    const bool isOnButton = Window.Focused && Window.Focused->Source.Kind == ControlKind::PushButton;
    Control& button = isOnButton ? *Window.Focused : Window.Get(CodeOk, "press it");
    if (button.Enabled) {
        Activate(button);
    }
}

void MemoryUser::Escape() {
    if (BeginInput()) {
        Window.Events.OnCancelAsked();
    }
}

void MemoryUser::Close() {
    Escape();
}

void MemoryUser::AskHelp() {
    AskHelpOn(Window.FocusedControl());
}

void MemoryUser::AskHelpOn(ControlId control) {
    Window.Get(control, "ask for help on it");
    if (BeginInput()) {
        Window.Events.OnHelpAsked(
            {.Control = ControlHandle(Window.Handle(), control), .Id = control, .Position = MousePosition});
    }
}

/// Presses the mouse button on a list; false when that had no effect.
bool MemoryUser::Point(ControlId list, ListHit hit) const {
    Control& control = Window.GetKind(list, ControlKind::List, "click on it");
    if (!BeginInput() || !control.Enabled || !Window.MoveFocus(&control) || Window.HasEnded()) {
        return false;
    }
    MemoryList& rows = List(list);
    rows.Hit = hit;
    EXPECT_LT(hit.Row, rows.RowCount()) << "the list " << list << " has no such row";
    SelectInList(list, hit.Row);
    return !Window.HasEnded();
}

void MemoryUser::Click(ControlId list, ListHit hit) const {
    if (Point(list, hit)) {
        Window.Events.OnEvent({.Control = list, .Event = DialogEvent::ListClicked});
    }
}

void MemoryUser::DoubleClick(ControlId list, ListHit hit) const {
    if (!Point(list, hit)) {
        return;
    }
    const int before = Window.TimesElsewhere;
    Window.Events.OnEvent({.Control = list, .Event = DialogEvent::ListClicked});
    // A window that opens at the first click gets the second one.
    if (!Window.HasEnded() && Window.TimesElsewhere == before) {
        ++Window.Input;
        Window.Events.OnEvent({.Control = list, .Event = DialogEvent::ListDoubleClicked});
    }
}

void MemoryUser::ClickRow(ControlId list, int row) {
    Click(list, {.Row = row});
}

void MemoryUser::RightClickRow(ControlId list, int row) {
    Point(list, {.Row = row});
}

void MemoryUser::ClickStateImage(ControlId list, int row) {
    Click(list, {.Row = row, .OnStateImage = true});
}

void MemoryUser::ClickBesideRows(ControlId list) {
    Click(list, {});
}

void MemoryUser::DragRow(ControlId list, int from, int to) {
    const int before = Window.TimesElsewhere;
    // A window that opens while the mouse button is down takes it away.
    if (Point(list, {.Row = from}) && Window.TimesElsewhere == before && List(list).MayDrag && from != to) {
        Window.Events.OnEvent(
            {.Control = list, .Event = DialogEvent::ListRowDragged, .Move = {.From = from, .To = to}});
    }
}

void MemoryUser::DoubleClickRow(ControlId list, int row) {
    DoubleClick(list, {.Row = row});
}

void MemoryUser::DoubleClickStateImage(ControlId list, int row) {
    DoubleClick(list, {.Row = row, .OnStateImage = true});
}

// Running

MemoryDialogs::~MemoryDialogs() {
    for (const auto& script : Scripts) {
        ADD_FAILURE() << "this dialog did not open: " << script.first;
    }
}

std::optional<int> MemoryDialogs::Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) {
    if (Scripts.empty() || Scripts.front().first != dialogTemplate) {
        ADD_FAILURE() << "dialog " << dialogTemplate << " was opened, which the test did not foresee";
        return std::nullopt;
    }
    const Script script = std::move(Scripts.front().second);
    Scripts.pop_front();
    const std::span<const std::byte> bytes = Templates.DialogTemplateOf(dialogTemplate);
    if (bytes.empty() || !script) {
        EXPECT_FALSE(bytes.empty()) << "the resources have no dialog " << dialogTemplate;
        return std::nullopt;
    }
    std::optional<int> code;
    WhileElsewhere([&] { code = RunScript(ParseDialogTemplate(bytes), parent, events, script); });
    return code;
}

std::optional<int> MemoryDialogs::RunScript(const DialogTemplate& source, WindowHandle parent,
                                            DialogEvents& events, const Script& script) {
    constexpr std::uintptr_t HandleStep = 0x10000; // leaves room for the handles of the controls
    MemoryWindow window(source, static_cast<WindowHandle>(LastHandle += HandleStep), events, *this);
    struct Closing {
        std::vector<MemoryWindow*>& Open;
        DialogEvents& Events;
        ~Closing() {
            Open.pop_back();
            Events.OnClosed();
        }
    };
    Open.push_back(&window);
    const Closing closing{Open, events};
    if (events.OnOpened(window)) {
        window.PlaceFocus();
    }
    if (!window.HasEnded()) {
        MemoryUser user(window, parent);
        script(user);
    }
    EXPECT_TRUE(window.HasEnded()) << "the script left this dialog open: " << Utf8(window.Title());
    return window.HasEnded() ? std::optional(window.Code()) : std::nullopt;
}

void MemoryDialogs::WhileElsewhere(const std::function<void()>& open) {
    if (Open.empty()) {
        open();
    } else {
        Open.back()->WhileElsewhere(open);
    }
}

MemoryDesktop::MemoryDesktop(Resources& resources)
    : TestDesktop(resources, Dialogs, Images), Images(resources), Dialogs(resources) {
    Messages.Show = [this](const Message& /*message*/, MessageAnswer planned,
                           const std::function<void()>& meanwhile) {
        Dialogs.WhileElsewhere(meanwhile);
        return planned;
    };
}

} // namespace pmx::test
