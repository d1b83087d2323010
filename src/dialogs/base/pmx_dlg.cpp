#include "dialogs/base/pmx_dlg.h"
#include "platform/text.h"

namespace pmx {

namespace {

constexpr char NameSeparator = '~';

/// Sets a flag for as long as it lives.
class FlagScope {
public:
    explicit FlagScope(bool& flag) noexcept : Flag(flag) { Flag = true; }
    ~FlagScope() { Flag = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& Flag;
};

} // namespace

int CPmxDlg::DoModal() {
    return Services.Dialogs.Run(Template, Parent, *this).value_or(Failed);
}

void CPmxDlg::ShowHelpPopup(WindowHandle control, ScreenPoint position, ControlId id) {
    const std::optional<std::string> text = Services.Strings.StringOf(id);
    if (!text) {
        return;
    }
    HelpNote note;
    note.Text = text->c_str();
    note.Position = position;
    Services.Help.Call(control, nullptr, HelpEngine::DisplayTextPopup, note);
}

bool CPmxDlg::OnHelpInfo(const HelpRequest& request) {
    ShowHelpPopup(request.Control, request.Position, request.Id);
    return true;
}

void CPmxDlg::OnControlEvent(const ControlEvent& /*event*/) {}

void CPmxDlg::EndDialog(int code) {
    Listening = false;
    Window().End(code);
}

std::string CPmxDlg::StringOf(ResourceId id) const {
    return Services.Strings.StringOf(id).value_or(std::string());
}

std::string CPmxDlg::FormatString(ResourceId id, std::initializer_list<TextArgument> arguments) const {
    return FormatText(StringOf(id), arguments);
}

MessageAnswer CPmxDlg::Ask(const std::string& text, MessageIcon icon, MessageButtons buttons,
                           MessageAnswer standard) {
    const ModalScope scope(*this);
    return Services.Messages.Ask({.Owner = Window().Handle(),
                                  .Caption = Window().Title(),
                                  .Text = text,
                                  .Icon = icon,
                                  .Buttons = buttons,
                                  .Default = standard});
}

void CPmxDlg::Warn(ResourceId id, std::initializer_list<TextArgument> arguments) {
    Ask(FormatString(id, arguments), MessageIcon::Exclamation, MessageButtons::Ok, MessageAnswer::Ok);
}

void CPmxDlg::Fail(ResourceId id) {
    Ask(StringOf(id), MessageIcon::Stop, MessageButtons::Ok, MessageAnswer::Ok);
}

bool CPmxDlg::AskYesNo(ResourceId id) {
    return Ask(StringOf(id), MessageIcon::Question, MessageButtons::YesNo, MessageAnswer::No) ==
           MessageAnswer::Yes;
}

int CPmxDlg::RunOver(CPmxDlg& dialog) {
    const ModalScope scope(*this);
    return dialog.DoModal();
}

void CPmxDlg::LimitName(ControlId nameBox) const {
    Window().LimitText(nameBox, NameLimit);
}

std::string CPmxDlg::NameIn(ControlId nameBox) const {
    return TrimmedName(Window().TextOf(nameBox));
}

std::string CPmxDlg::TrimmedName(std::string_view name) const {
    return std::string(Trimmed(name, SystemLeadBytes()));
}

bool CPmxDlg::HasSeparator(std::string_view name) const {
    return FindSingleByte(name, NameSeparator, SystemLeadBytes()) != std::string_view::npos;
}

bool CPmxDlg::OnOpened(DialogWindow& window) {
    OpenWindow = &window;
    RefusedInput.reset();
    Listening = true;
    const ModalScope notFilledYet(*this);
    return OnInitDialog();
}

void CPmxDlg::OnClosed() {
    Listening = false;
    OpenWindow = nullptr;
}

bool CPmxDlg::IsRefused() const {
    return RefusedInput && *RefusedInput == Window().InputNumber();
}

void CPmxDlg::HandleInput(const ControlEvent& event) {
    if (IsListening() && !IsRefused()) {
        OnControlEvent(event);
    }
}

void CPmxDlg::OnPressed(ControlId control) {
    HandleInput({.Control = control, .Event = DialogEvent::Pressed});
}

void CPmxDlg::OnFocusGained(ControlId control) {
    if (IsListening()) {
        OnControlEvent({.Control = control, .Event = DialogEvent::FocusGained});
    }
}

void CPmxDlg::OnFocusLost(ControlId control) {
    if (HandlingFocusLoss || !IsListening() || IsRefused()) {
        return;
    }
    const FlagScope scope(HandlingFocusLoss);
    const std::uint64_t input = Window().InputNumber();
    OnControlEvent({.Control = control, .Event = DialogEvent::FocusLost});
    if (Listening && Window().FocusedControl() == control) {
        RefusedInput = input;
    }
}

void CPmxDlg::OnListSelectionChanged(ControlId control) {
    HandleInput({.Control = control, .Event = DialogEvent::ListSelectionChanged});
}

void CPmxDlg::OnListClicked(ControlId control) {
    HandleInput({.Control = control, .Event = DialogEvent::ListClicked});
}

void CPmxDlg::OnListDoubleClicked(ControlId control) {
    HandleInput({.Control = control, .Event = DialogEvent::ListDoubleClicked});
}

void CPmxDlg::OnListKeyDown(ControlId control, const ListKey& key) {
    HandleInput({.Control = control, .Event = DialogEvent::ListKeyDown, .Key = key});
}

void CPmxDlg::OnHelpAsked(const HelpRequest& request) {
    if (IsListening()) {
        OnHelpInfo(request);
    }
}

void CPmxDlg::OnOkAsked() {
    if (IsListening() && !IsRefused()) {
        OnOK();
    }
}

void CPmxDlg::OnCancelAsked() {
    if (IsListening() && !IsRefused()) {
        OnCancel();
    }
}

} // namespace pmx
