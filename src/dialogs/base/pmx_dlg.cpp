#include "dialogs/base/pmx_dlg.h"

namespace pmx {

namespace {

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
    if (const std::optional<std::string> text = Services.Strings.StringOf(id)) {
        Services.Help.ShowNote(control, *text, position);
    }
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
    return pmx::TrimmedName(name);
}

bool CPmxDlg::HasSeparator(std::string_view name) const {
    return pmx::HasSeparator(name);
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

void CPmxDlg::OnEvent(const ControlEvent& event) {
    if (!IsListening()) {
        return;
    }
    if (event.Event == DialogEvent::FocusLost) {
        HandleFocusLoss(event);
    } else if (!IsRefused()) {
        OnControlEvent(event);
    }
}

void CPmxDlg::HandleFocusLoss(const ControlEvent& event) {
    if (HandlingFocusLoss || IsRefused()) {
        return;
    }
    const FlagScope scope(HandlingFocusLoss);
    const std::uint64_t input = Window().InputNumber();
    OnControlEvent(event);
    if (Listening && Window().FocusedControl() == event.Control) {
        RefusedInput = input;
    }
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
