#include "platform/win32/dialog_window.h"

#include "platform/resources.h"
#include "platform/win32/handles.h"
#include "platform/win32/image_list.h"
#include "platform/win32/screen.h"
#include "platform/win32/wide_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <commctrl.h>

namespace pmx {

namespace win32 {

namespace {

bool IsOfClass(HWND window, std::wstring_view name) {
    std::array<wchar_t, 32> buffer{};
    const int length = GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()));
    return CompareStringOrdinal(buffer.data(), length, name.data(), static_cast<int>(name.size()), TRUE) ==
           CSTR_EQUAL;
}

std::string TextOfWindow(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return ToNarrow(text);
}

/// The window that a dialog is modal to: the top-level one above `parent`, or the thread's active window.
HWND OwnerFor(HWND parent) {
    const HWND owner = parent ? GetAncestor(parent, GA_ROOT) : GetActiveWindow();
    return IsWindow(owner) ? owner : nullptr;
}

/// Keeps the owner of a modal dialog disabled.
class DisabledOwner {
public:
    explicit DisabledOwner(HWND owner) : Owner(owner && IsWindowEnabled(owner) ? owner : nullptr) {
        if (Owner) {
            EnableWindow(Owner, FALSE);
        }
    }
    ~DisabledOwner() {
        if (Owner) {
            EnableWindow(Owner, TRUE);
        }
    }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;

private:
    HWND Owner;
};

/// Destroys a dialog window. Its owner must be enabled before, so that the system activates it and no other.
class DestroyedWindow {
public:
    explicit DestroyedWindow(const HWND& window) : Window(window) {}
    ~DestroyedWindow() {
        if (Window) {
            DestroyWindow(Window);
        }
    }
    DestroyedWindow(const DestroyedWindow&) = delete;
    DestroyedWindow& operator=(const DestroyedWindow&) = delete;

private:
    const HWND& Window;
};

class WindowsWaitCursor final : public WaitCursor {
public:
    WindowsWaitCursor() : Previous(SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)))) {} // IDC_WAIT
    ~WindowsWaitCursor() override { SetCursor(Previous); }
    WindowsWaitCursor(const WindowsWaitCursor&) = delete;
    WindowsWaitCursor& operator=(const WindowsWaitCursor&) = delete;

private:
    HCURSOR Previous;
};

} // namespace

/// Lets the receiver handle an event. Exceptions must not cross the system's frames, so they wait until the
/// loop has ended.
template <class Action>
void WindowsDialog::Tell(Action action) {
    try {
        action();
    } catch (...) {
        KeepFailure();
    }
}

/// To be called inside the handler of an exception: it is raised again when the dialog has ended.
void WindowsDialog::KeepFailure() {
    if (!Failure) {
        Failure = std::current_exception();
    }
    End(0);
}

std::optional<int> WindowsDialog::Run(const DLGTEMPLATE* source, HWND owner) {
    const DestroyedWindow destroyed(Window);
    {
        const DisabledOwner disabled(owner);
        CreateDialogIndirectParamW(ResourceModuleInUse(), source, owner, &WindowsDialog::Procedure,
                                   reinterpret_cast<LPARAM>(this));
        if (!Window) {
            return std::nullopt;
        }
        if (!EndCode) {
            ShowWindow(Window, SW_SHOWNORMAL);
            RunLoop();
        }
    }
    if (Failure) {
        std::rethrow_exception(Failure);
    }
    return EndCode;
}

void WindowsDialog::RunLoop() {
    MSG message{};
    while (!EndCode && Window) {
        ++Input; // whatever reaches the window while the loop waits is new
        if (!PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
            SendMessageW(GetWindow(Window, GW_OWNER), WM_ENTERIDLE, MSGF_DIALOGBOX,
                         reinterpret_cast<LPARAM>(Window));
        }
        if (EndCode || !Window) {
            break;
        }
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            Tell([this] { Events.OnCancelAsked(); }); // the program is to end
            End(0);
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        ++Input;
        Dispatch(message);
    }
}

void WindowsDialog::Dispatch(MSG& message) {
    if ((message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) && CancelDrag()) {
        return;
    }
    if (CallMsgFilterW(&message, MSGF_DIALOGBOX) || IsDialogMessageW(Window, &message)) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

bool WindowsDialog::CancelDrag() {
    return std::any_of(Lists.begin(), Lists.end(),
                       [](const auto& list) { return list.second->CancelDrag(); });
}

INT_PTR CALLBACK WindowsDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<WindowsDialog*>(lParam)->Window = window;
    }
    auto* self = reinterpret_cast<WindowsDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    return self ? self->Handle(message, wParam, lParam) : FALSE;
}

INT_PTR WindowsDialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        return Open();
    case WM_COMMAND:
        return Command(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
    case WM_NOTIFY:
        return Notified(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_HELP:
        return HelpAsked(*reinterpret_cast<const HELPINFO*>(lParam));
    case WM_DESTROY:
        for (const auto& list : Lists) {
            list.second->ReleaseImages();
        }
        Tell([this] { Events.OnClosed(); });
        return FALSE;
    case WM_NCDESTROY:
        SetWindowLongPtrW(Window, DWLP_USER, 0);
        Window = nullptr;
        return FALSE;
    default:
        return FALSE;
    }
}

INT_PTR WindowsDialog::Open() {
    bool placeFocus = true;
    Tell([&] {
        WatchControls();
        placeFocus = Events.OnOpened(*this);
    });
    return placeFocus ? TRUE : FALSE;
}

void WindowsDialog::WatchControls() {
    for (HWND child = GetWindow(Window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const ControlId id = GetDlgCtrlID(child);
        if (IsOfClass(child, WC_LISTVIEWW)) {
            Lists[id] = std::make_unique<WindowsList>(child, [this, id](ControlEvent event) {
                event.Control = id;
                Notify(event);
            });
        } else if (IsOfClass(child, WC_EDITW)) {
            Edits[id] = std::make_unique<NameEdit>(child, [this] { KeepFailure(); });
        }
    }
}

INT_PTR WindowsDialog::Command(ControlId control, UINT code, HWND sender) {
    if (control == IDOK || control == IDCANCEL) {
        return code == BN_CLICKED ? ButtonClicked(control) : FALSE;
    }
    if (IsOfClass(sender, WC_EDITW)) {
        return EditNotified(control, code);
    }
    return code == BN_CLICKED && IsOfClass(sender, WC_BUTTONW) ? ButtonClicked(control) : FALSE;
}

INT_PTR WindowsDialog::ButtonClicked(ControlId control) {
    Tell([&] {
        if (control == IDOK) {
            Events.OnOkAsked();
        } else if (control == IDCANCEL) {
            Events.OnCancelAsked();
        } else {
            Events.OnEvent({.Control = control, .Event = DialogEvent::Pressed});
        }
    });
    return TRUE;
}

/// The focus that goes to another window has not moved on for the dialog.
INT_PTR WindowsDialog::EditNotified(ControlId control, UINT code) {
    if (code == EN_KILLFOCUS && FocusedChild()) {
        Notify({.Control = control, .Event = DialogEvent::FocusLost});
    }
    return FALSE;
}

INT_PTR WindowsDialog::Notified(const NMHDR& notification) {
    const auto list = Lists.find(static_cast<ControlId>(notification.idFrom));
    if (list != Lists.end()) {
        list->second->HandleNotification(notification);
    }
    return FALSE;
}

void WindowsDialog::Notify(const ControlEvent& event) {
    Tell([&] { Events.OnEvent(event); });
}

INT_PTR WindowsDialog::HelpAsked(const HELPINFO& help) {
    if (help.iContextType == HELPINFO_WINDOW) {
        Tell([&] {
            Events.OnHelpAsked({.Control = FromSystem(static_cast<HWND>(help.hItemHandle)),
                                .Id = help.iCtrlId,
                                .Position = {.X = help.MousePos.x, .Y = help.MousePos.y}});
        });
    }
    SetWindowLongPtrW(Window, DWLP_MSGRESULT, TRUE);
    return TRUE;
}

WindowHandle WindowsDialog::Handle() const {
    return FromSystem(Window);
}

void WindowsDialog::End(int code) {
    if (!EndCode) {
        EndCode = code;
        PostMessageW(Window, WM_NULL, 0, 0); // wakes the loop when the event did not come through it
    }
}

std::string WindowsDialog::Title() const {
    return TextOfWindow(Window);
}

void WindowsDialog::SetTitle(const std::string& title) {
    SetWindowTextW(Window, ToWide(title).c_str());
}

std::string WindowsDialog::TextOf(ControlId control) const {
    return TextOfWindow(Item(control));
}

void WindowsDialog::SetText(ControlId control, const std::string& text) {
    SetWindowTextW(Item(control), ToWide(text).c_str());
}

void WindowsDialog::LimitText(ControlId control, std::size_t bytes) {
    const auto edit = Edits.find(control);
    if (edit != Edits.end()) {
        edit->second->SetLimit(bytes);
    }
}

void WindowsDialog::Enable(ControlId control, bool enabled) {
    const HWND item = Item(control);
    if (!enabled && item && FocusedChild() == item) {
        SendMessageW(Window, WM_NEXTDLGCTL, 0, FALSE);
    }
    EnableWindow(item, enabled ? TRUE : FALSE);
}

void WindowsDialog::SetRadio(ControlId first, ControlId last, int index) {
    for (ControlId id = first; id <= last; ++id) {
        CheckDlgButton(Window, id, id - first == index ? BST_CHECKED : BST_UNCHECKED);
    }
}

int WindowsDialog::RadioOf(ControlId first, ControlId last) const {
    for (ControlId id = first; id <= last; ++id) {
        if (IsDlgButtonChecked(Window, id) == BST_CHECKED) {
            return id - first;
        }
    }
    return -1;
}

/// The control that has the focus, itself or in a part of it.
HWND WindowsDialog::FocusedChild() const {
    HWND focused = GetFocus();
    if (!focused || !IsChild(Window, focused)) {
        return nullptr;
    }
    while (GetParent(focused) != Window) {
        focused = GetParent(focused);
    }
    return focused;
}

ControlId WindowsDialog::FocusedControl() const {
    const HWND focused = FocusedChild();
    return focused ? GetDlgCtrlID(focused) : 0;
}

void WindowsDialog::Focus(ControlId control) {
    const HWND item = Item(control);
    if (item && IsWindowEnabled(item)) {
        SendMessageW(Window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item), TRUE);
    }
}

void WindowsDialog::SetIcon(ControlId control, std::unique_ptr<Icon> icon) {
    if (!icon || !Item(control)) {
        return;
    }
    const HICON handle = dynamic_cast<const WindowsIcon&>(*icon).Get();
    SendMessageW(Item(control), STM_SETICON, reinterpret_cast<WPARAM>(handle), 0);
    Icons[control] = std::move(icon); // releases the one that was shown before
}

ListControl& WindowsDialog::ListOf(ControlId control) {
    const auto list = Lists.find(control);
    return list == Lists.end() ? NoList : *list->second;
}

std::unique_ptr<WaitCursor> WindowsDialog::ShowWaitCursor() {
    return std::make_unique<WindowsWaitCursor>();
}

std::uint32_t WindowsDialog::VirtualKeyOfScanCode(std::uint32_t scanCode) const {
    return MapVirtualKeyW(scanCode, MAPVK_VSC_TO_VK_EX);
}

int WindowsDialog::Resolution() const {
    return ResolutionOf(Window);
}

} // namespace win32

namespace {

class WindowsDialogRunner final : public DialogRunner {
public:
    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override {
        const std::span<const std::byte> source = SystemResources().DialogTemplateOf(dialogTemplate);
        if (source.empty()) {
            return std::nullopt;
        }
        INITCOMMONCONTROLSEX controls{};
        controls.dwSize = sizeof(controls);
        controls.dwICC = ICC_LISTVIEW_CLASSES | ICC_STANDARD_CLASSES;
        InitCommonControlsEx(&controls);
        win32::WindowsDialog dialog(events);
        return dialog.Run(reinterpret_cast<const DLGTEMPLATE*>(source.data()),
                          win32::OwnerFor(win32::ToSystem(parent)));
    }
};

} // namespace

DialogRunner& SystemDialogRunner() {
    static WindowsDialogRunner dialogs;
    return dialogs;
}

} // namespace pmx
