#include "win32/support/dialog_driver.h"

#include "platform/module_state.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"
#include "support/sjis.h"
#include "win32/support/real_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>

namespace pmx::test {

namespace {

/// Sent as the last of a series of inputs; nothing in a dialog reacts to it.
constexpr WORD MarkerKey = VK_F24;

UINT MarkerMessage() {
    static const UINT Message = RegisterWindowMessageW(L"PmxTestMarker");
    return Message;
}

UINT CallMessage() {
    static const UINT Message = RegisterWindowMessageW(L"PmxTestCall");
    return Message;
}

std::string WindowText(HWND window) {
    std::array<wchar_t, 2048> buffer{};
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data()),
                        SMTO_NORMAL, 5000, &length);
    return win32::ToNarrow(std::wstring_view(buffer.data(), length));
}

bool HasClass(HWND window, const wchar_t* name) {
    std::array<wchar_t, 32> buffer{};
    GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()));
    return lstrcmpiW(buffer.data(), name) == 0;
}

std::vector<HWND> ChildrenOf(HWND window) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

int ButtonOf(MessageAnswer answer) {
    switch (answer) {
    case MessageAnswer::Yes:
        return IDYES;
    case MessageAnswer::No:
        return IDNO;
    default:
        return IDOK;
    }
}

HICON SystemIcon(MessageIcon icon) {
    constexpr WORD Hand = 32513;
    constexpr WORD Question = 32514;
    constexpr WORD Exclamation = 32515;
    WORD id = Exclamation;
    if (icon != MessageIcon::Exclamation) {
        id = icon == MessageIcon::Stop ? Hand : Question;
    }
    return LoadIconW(nullptr, MAKEINTRESOURCEW(id));
}

void CheckMessageBox(HWND box, const Message& message) {
    EXPECT_EQ(Utf8(WindowText(box)), Utf8(message.Caption));
    bool textSeen = false;
    bool iconSeen = false;
    std::vector<int> buttons;
    for (const HWND child : ChildrenOf(box)) {
        if (HasClass(child, L"Button") && IsWindowVisible(child)) {
            buttons.push_back(GetDlgCtrlID(child));
        } else if ((GetWindowLongPtrW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
            const LRESULT icon = SendMessageW(child, STM_GETICON, 0, 0);
            iconSeen = iconSeen || reinterpret_cast<HICON>(icon) == SystemIcon(message.Icon);
        } else {
            textSeen = textSeen || WindowText(child) == message.Text;
        }
    }
    EXPECT_TRUE(textSeen) << "the message box does not show its text: " << Utf8(message.Text);
    EXPECT_TRUE(iconSeen) << "the message box shows another icon";
    const bool isYesNo = message.Buttons == MessageButtons::YesNo;
    EXPECT_EQ(buttons, isYesNo ? (std::vector<int>{IDYES, IDNO}) : std::vector<int>{IDOK});
    EXPECT_EQ(LOWORD(SendMessageW(box, DM_GETDEFID, 0, 0)), ButtonOf(message.Default));
}

POINT CenterOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

} // namespace

DialogDriver* DialogDriver::Current = nullptr;

/// Passes events on, and tells the driver when the dialog opens and closes.
class DialogDriver::Receiver final : public DialogEvents {
public:
    Receiver(DialogEvents& events, DialogDriver& driver, std::shared_ptr<OpenDialog> dialog)
        : Events(events), Driver(driver), Dialog(std::move(dialog)) {}

    bool OnOpened(DialogWindow& window) override {
        {
            const std::lock_guard guard(Driver.Lock);
            Dialog->Window = win32::ToSystem(window.Handle());
            Dialog->Seam = &window;
            Driver.Dialogs.push_back(Dialog);
            Driver.Undriven = Dialog;
        }
        Driver.Changed.notify_all();
        return Events.OnOpened(window);
    }

    void OnClosed() override {
        Events.OnClosed();
        {
            const std::lock_guard guard(Driver.Lock);
            std::erase(Driver.Dialogs, Dialog);
        }
        Close();
    }

    /// The dialog is closed, or has never opened.
    void Close() {
        {
            const std::lock_guard guard(Driver.Lock);
            Dialog->Closed = true;
            Dialog->Seam = nullptr;
        }
        Driver.Changed.notify_all();
    }

    void OnPressed(ControlId control) override { Events.OnPressed(control); }
    void OnFocusGained(ControlId control) override { Events.OnFocusGained(control); }
    void OnFocusLost(ControlId control, ControlId next) override { Events.OnFocusLost(control, next); }
    void OnListClicked(ControlId control) override { Events.OnListClicked(control); }
    void OnListDoubleClicked(ControlId control) override { Events.OnListDoubleClicked(control); }
    void OnListKeyDown(ControlId control, const ListKey& key) override { Events.OnListKeyDown(control, key); }
    void OnHelpAsked(const HelpRequest& request) override { Events.OnHelpAsked(request); }
    void OnOkAsked() override { Events.OnOkAsked(); }
    void OnCancelAsked() override { Events.OnCancelAsked(); }

private:
    DialogEvents& Events;
    DialogDriver& Driver;
    std::shared_ptr<OpenDialog> Dialog;
};

DialogDriver::DialogDriver()
    : Thread(GetCurrentThreadId()),
      Hook(SetWindowsHookExW(WH_GETMESSAGE, &DialogDriver::WatchMessages, nullptr, Thread)) {
    Current = this;
}

DialogDriver::~DialogDriver() {
    UnhookWindowsHookEx(Hook);
    Current = nullptr;
}

LRESULT CALLBACK DialogDriver::WatchMessages(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HC_ACTION && wParam == PM_REMOVE && Current) {
        Current->OnMessageTaken(*reinterpret_cast<MSG*>(lParam));
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void DialogDriver::OnMessageTaken(MSG& message) {
    if (message.message == CallMessage()) {
        (*reinterpret_cast<const std::function<void()>*>(message.lParam))();
    }
    const bool isInputMarker =
        (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) && message.wParam == MarkerKey;
    if (message.message == CallMessage()) {
        Changed.notify_all();
        message.message = WM_NULL;
    }
    if (!isInputMarker && message.message != MarkerMessage()) {
        return;
    }
    // Markers that were sent when no dialog was there any more may be lost, so each carries its number.
    const auto number = isInputMarker ? static_cast<std::uint64_t>(GetMessageExtraInfo()) : message.wParam;
    message.message = WM_NULL; // the dialogs see nothing of it
    {
        const std::lock_guard guard(Lock);
        MarkerSeen = std::max(MarkerSeen, number);
    }
    Changed.notify_all();
}

std::optional<int> DialogDriver::Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events,
                                     Script script) {
    auto dialog = std::make_shared<OpenDialog>();
    dialog->Work = std::move(script);
    Receiver receiver(events, *this, dialog);
    const bool isOutermost = !Worker.joinable();
    if (isOutermost) {
        Worker = std::thread([this, dialog] {
            std::unique_lock guard(Lock);
            Changed.wait_for(guard, Patience, [&] { return Undriven == dialog || dialog->Closed; });
            Undriven.reset();
            guard.unlock();
            RunScript(dialog);
        });
    }
    std::optional<int> code;
    std::exception_ptr failure;
    try {
        SystemModuleStates().RunInside(
            [&] { code = SystemDialogRunner().Run(dialogTemplate, parent, receiver); });
    } catch (...) {
        failure = std::current_exception();
    }
    receiver.Close();
    if (isOutermost) {
        Worker.join();
        Worker = std::thread();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
    return code;
}

void DialogDriver::RunScript(const std::shared_ptr<OpenDialog>& dialog) {
    if (IsClosed(*dialog)) {
        return;
    }
    WaitUntil([&] { return IsWindowVisible(dialog->Window) || IsClosed(*dialog); });
    Settle(*dialog, false);
    try {
        RealUser user(*this, *dialog);
        dialog->Work(user);
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the script threw: " << error.what();
    }
    Settle(*dialog, false);
    if (!IsClosed(*dialog)) {
        ADD_FAILURE() << "the script left this dialog open: " << Utf8(WindowText(dialog->Window));
        OnDialogThread([&] {
            if (dialog->Seam) {
                dialog->Seam->End(0);
            }
        });
        WaitUntil([&] { return IsClosed(*dialog); });
    }
}

MessageAnswer DialogDriver::Ask(const Message& message, MessageAnswer planned,
                                const std::function<void()>& meanwhile) {
    auto open = std::make_shared<OpenMessage>();
    open->Asked = message;
    open->Planned = planned;
    open->Meanwhile = meanwhile;
    {
        const std::lock_guard guard(Lock);
        Pending = open;
    }
    Changed.notify_all();
    const MessageAnswer answer = SystemMessageBoxes().Ask(message);
    {
        const std::lock_guard guard(Lock);
        open->Answered = true;
    }
    Changed.notify_all();
    return answer;
}

bool DialogDriver::IsDialogOfOurs(HWND window) const {
    const std::lock_guard guard(Lock);
    return std::any_of(Dialogs.begin(), Dialogs.end(),
                       [window](const auto& dialog) { return dialog->Window == window; });
}

HWND DialogDriver::FindMessageBox(const OpenMessage& message) const {
    struct Search {
        const DialogDriver& Driver;
        HWND Owner;
        HWND Found = nullptr;
    };
    Search search{*this, win32::ToSystem(message.Asked.Owner)};
    EnumThreadWindows(
        Thread,
        [](HWND window, LPARAM context) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(context);
            const bool isBox = HasClass(window, L"#32770") && IsWindowVisible(window) &&
                               GetWindow(window, GW_OWNER) == wanted.Owner &&
                               !wanted.Driver.IsDialogOfOurs(window);
            wanted.Found = isBox ? window : wanted.Found;
            return !isBox;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

void DialogDriver::AnswerMessage(const OpenMessage& message) const {
    HWND box = nullptr;
    const auto isAnswered = [&] {
        const std::lock_guard guard(Lock);
        return message.Answered;
    };
    if (!WaitUntil([&] { return (box = FindMessageBox(message)) != nullptr || isAnswered(); }) || !box) {
        ADD_FAILURE() << "the message box did not appear: " << Utf8(message.Asked.Text);
        return;
    }
    CheckMessageBox(box, message.Asked);
    EXPECT_FALSE(IsWindowEnabled(win32::ToSystem(message.Asked.Owner)))
        << "the owner of a message must be disabled";
    message.Meanwhile();
    const HWND button = GetDlgItem(box, ButtonOf(message.Planned));
    EXPECT_NE(button, nullptr);
    Activate(box);
    ClickAt(button, CenterOf(button));
    EXPECT_TRUE(WaitUntil(isAnswered)) << "the message box did not close: " << Utf8(message.Asked.Text);
}

/// True when there was something to deal with.
bool DialogDriver::DealWithNewWindows(const OpenDialog& dialog) {
    std::shared_ptr<OpenDialog> opened;
    std::shared_ptr<OpenMessage> message;
    {
        const std::lock_guard guard(Lock);
        if (Undriven && Undriven.get() != &dialog) {
            opened = std::exchange(Undriven, nullptr);
        }
        message = std::exchange(Pending, nullptr);
    }
    if (opened) {
        RunScript(opened);
    }
    if (message) {
        AnswerMessage(*message);
    }
    return opened || message;
}

/// Sends a marker behind everything that was sent before and waits until it is taken. True when nothing came
/// between.
bool DialogDriver::WaitForMarker(const OpenDialog& dialog, bool asInput) {
    std::uint64_t awaited = 0;
    {
        const std::lock_guard guard(Lock);
        awaited = ++MarkerSent;
    }
    if (asInput) {
        SendKey(MarkerKey, false, awaited);
    } else {
        PostThreadMessageW(Thread, MarkerMessage(), awaited, 0);
    }
    std::unique_lock guard(Lock);
    const bool isDone = Changed.wait_for(guard, Patience, [&] {
        return MarkerSeen >= awaited || dialog.Closed || (Undriven && Undriven.get() != &dialog) || Pending;
    });
    if (!isDone) {
        guard.unlock();
        ADD_FAILURE() << "the dialog does not react" << (asInput ? " to input" : "");
        return true;
    }
    if (MarkerSeen < awaited) {
        return dialog.Closed;
    }
    return true;
}

void DialogDriver::Settle(const OpenDialog& dialog, bool afterInput) {
    if (afterInput) {
        WaitForMarker(dialog, true);
    }
    do {
        while (DealWithNewWindows(dialog)) {
        }
        if (IsClosed(dialog)) {
            return;
        }
    } while (!WaitForMarker(dialog, false) || DealWithNewWindows(dialog));
}

void DialogDriver::OnDialogThread(const std::function<void()>& action) {
    bool isDone = false;
    const std::function<void()> call = [&] {
        action();
        const std::lock_guard guard(Lock);
        isDone = true;
    };
    PostThreadMessageW(Thread, CallMessage(), 0, reinterpret_cast<LPARAM>(&call));
    std::unique_lock guard(Lock);
    if (!Changed.wait_for(guard, Patience, [&] { return isDone; })) {
        std::abort(); // the call would run later on a stack that is gone
    }
}

bool DialogDriver::WaitUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, 0); // lets others run between two looks
    }
    return true;
}

void DialogDriver::Activate(HWND window) {
    const HWND top = GetAncestor(window, GA_ROOT);
    EXPECT_TRUE(WaitUntil([top] {
        if (GetForegroundWindow() != top) {
            SetForegroundWindow(top);
        }
        return GetForegroundWindow() == top;
    })) << "the window does not come to the foreground";
}

void DialogDriver::ClickAt(HWND window, POINT position, int times) {
    EXPECT_TRUE(WaitUntil([position] {
        POINT present{};
        SetCursorPos(position.x, position.y);
        GetCursorPos(&present);
        return present.x == position.x && present.y == position.y;
    })) << "the pointer does not go where it is put";
    const HWND hit = WindowFromPoint(position);
    EXPECT_TRUE(hit == window || IsChild(window, hit) || !IsWindowEnabled(window))
        << "something covers the window at " << position.x << ", " << position.y;
    std::vector<INPUT> inputs;
    for (int click = 0; click < times; ++click) {
        for (const DWORD flag : {DWORD{MOUSEEVENTF_LEFTDOWN}, DWORD{MOUSEEVENTF_LEFTUP}}) {
            INPUT input{};
            input.type = INPUT_MOUSE;
            input.mi.dwFlags = flag;
            inputs.push_back(input);
        }
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void DialogDriver::SendKey(WORD virtualKey, bool down, std::uint64_t extra) {
    static constexpr std::array<WORD, 6> Extended{VK_UP, VK_DOWN, VK_DELETE, VK_HOME, VK_END, VK_INSERT};
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
    input.ki.dwExtraInfo = extra;
    if (std::find(Extended.begin(), Extended.end(), virtualKey) != Extended.end()) {
        input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
    }
    SendInput(1, &input, sizeof(input));
}

void DialogDriver::SendCharacter(wchar_t character) {
    for (const DWORD flag : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wScan = character;
        input.ki.dwFlags = KEYEVENTF_UNICODE | flag;
        SendInput(1, &input, sizeof(input));
    }
}

bool DialogDriver::IsClosed(const OpenDialog& dialog) const {
    const std::lock_guard guard(Lock);
    return dialog.Closed;
}

} // namespace pmx::test
