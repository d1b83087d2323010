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
#include <stdexcept>
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

/// What has the focus and so on in the thread of a window.
GUITHREADINFO StateOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info;
}

/// True when the keyboard's input goes to the window or one of its controls.
bool HasKeyboard(HWND top) {
    const GUITHREADINFO info = StateOf(top);
    return IsWindowVisible(top) && GetForegroundWindow() == top && info.hwndActive == top &&
           (info.hwndFocus == top || IsChild(top, info.hwndFocus));
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
    EXPECT_EQ(GetDlgCtrlID(StateOf(box).hwndFocus), ButtonOf(message.Default))
        << "Enter presses the button with the focus";
}

std::string Describe(HWND window) {
    std::array<wchar_t, 32> buffer{};
    GetClassNameW(window, buffer.data(), static_cast<int>(buffer.size()));
    return !window ? "none"
                   : win32::ToNarrow(buffer.data()) + " \"" + Utf8(WindowText(window)) + "\"" +
                         (IsWindowVisible(window) ? "" : ", hidden") +
                         (IsWindowEnabled(window) ? "" : ", disabled");
}

/// What a thread's windows and the input are at, for messages about failures.
std::string StateOfDesktop(DWORD thread) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(thread, &info);
    std::string text = "\n  foreground: " + Describe(GetForegroundWindow()) +
                       "\n  active: " + Describe(info.hwndActive) + "\n  focus: " + Describe(info.hwndFocus) +
                       "\n  mouse: " + Describe(info.hwndCapture);
    EnumThreadWindows(
        thread,
        [](HWND window, LPARAM context) -> BOOL {
            if (IsWindowVisible(window)) {
                *reinterpret_cast<std::string*>(context) += "\n  window: " + Describe(window);
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&text));
    return text;
}

/// A coordinate as SendInput takes it: the screen is 65536 units wide.
LONG InScreenUnits(LONG position, int extentMetric) {
    const LONG extent = GetSystemMetrics(extentMetric);
    return (position * 65536 + extent - 1) / extent;
}

/// Every event says where it is, because the pointer may be moved by somebody else.
INPUT MouseInput(POINT position, DWORD buttons) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = InScreenUnits(position.x, SM_CXSCREEN);
    input.mi.dy = InScreenUnits(position.y, SM_CYSCREEN);
    input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE | buttons;
    return input;
}

POINT CenterOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return {(area.left + area.right) / 2, (area.top + area.bottom) / 2};
}

} // namespace

DialogDriver* DialogDriver::Current = nullptr;
std::uint64_t DialogDriver::MarkerSent = 0;

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
        const bool placeFocus = Events.OnOpened(window);
        const std::lock_guard guard(Driver.Lock);
        if (Dialog->GivenUp) {
            window.End(0);
        }
        return placeFocus;
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

    void OnEvent(const ControlEvent& event) override { Events.OnEvent(event); }
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
    const bool isInputMarker =
        (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) && message.wParam == MarkerKey;
    if (message.message == CallMessage()) {
        message.message = WM_NULL;
        RunCalls();
        return;
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
    try {
        Require(WaitUntil([&] { return IsWindowVisible(dialog->Window) || IsClosed(*dialog); }),
                "the dialog does not become visible");
        Settle(*dialog, false);
        RealUser user(*this, *dialog);
        dialog->Work(user);
        Settle(*dialog, false);
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the script was given up: " << error.what();
    } catch (...) {
        ADD_FAILURE() << "the script was given up";
    }
    if (!IsClosed(*dialog)) {
        ADD_FAILURE() << "the script left this dialog open: " << Describe(dialog->Window);
        GiveUp(*dialog);
    }
}

/// Ends a dialog and what is open over it, so that the tests that follow find everything as usual.
void DialogDriver::GiveUp(OpenDialog& dialog) {
    {
        const std::lock_guard guard(Lock);
        dialog.GivenUp = true;
    }
    const auto isClosedSoon = [&] {
        TryOnDialogThread(dialog, [&] {
            CloseMessageBoxes();
            if (dialog.Seam) {
                dialog.Seam->End(0);
            }
        });
        return IsClosed(dialog);
    };
    if (!WaitUntil(isClosedSoon)) {
        ADD_FAILURE() << "the dialog cannot be closed" << StateOfDesktop(Thread);
    }
}

/// Closes every dialog of the thread that is none of a script's. Runs on the dialogs' thread.
void DialogDriver::CloseMessageBoxes() const {
    EnumThreadWindows(
        Thread,
        [](HWND window, LPARAM driver) -> BOOL {
            if (HasClass(window, L"#32770") &&
                !reinterpret_cast<const DialogDriver*>(driver)->IsDialogOfOurs(window)) {
                EndDialog(window, IDCANCEL);
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(this));
}

void DialogDriver::Require(bool condition, const std::string& failure) const {
    if (!condition) {
        throw std::runtime_error(failure + StateOfDesktop(Thread));
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

void DialogDriver::AnswerMessage(const OpenMessage& message) {
    HWND box = nullptr;
    const auto isAnswered = [&] {
        const std::lock_guard guard(Lock);
        return message.Answered;
    };
    Require(WaitUntil([&] { return (box = FindMessageBox(message)) != nullptr || isAnswered(); }) && box,
            "the message box did not appear: " + Utf8(message.Asked.Text));
    // Stands in for the dialog that the box belongs to, which is not always the one acted on: that may be
    // closed.
    OpenDialog open;
    open.Window = box;
    Activate(open, box);
    CheckMessageBox(box, message.Asked);
    EXPECT_FALSE(IsWindowEnabled(win32::ToSystem(message.Asked.Owner)))
        << "the owner of a message must be disabled";
    message.Meanwhile();
    const HWND button = GetDlgItem(box, ButtonOf(message.Planned));
    EXPECT_NE(button, nullptr);
    ClickAt(open, button, CenterOf(button), {});
    Require(WaitUntil(isAnswered), "the message box did not close: " + Utf8(message.Asked.Text));
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
    const bool isThrough = MarkerSeen >= awaited || dialog.Closed;
    guard.unlock();
    Require(isDone, asInput ? "the dialog does not react to input" : "the dialog does not react");
    return isThrough;
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

void DialogDriver::RunCalls() {
    {
        const std::lock_guard guard(CallLock);
        for (Call* call : std::exchange(Calls, {})) {
            (*call->Action)();
            call->IsDone = true;
        }
    }
    const std::lock_guard guard(Lock); // nobody is between looking and waiting
    Changed.notify_all();
}

void DialogDriver::OnDialogThread(const OpenDialog& dialog, const std::function<void()>& action) {
    Require(TryOnDialogThread(dialog, action) || IsClosed(dialog), "the dialog does not react");
}

bool DialogDriver::TryOnDialogThread(const OpenDialog& dialog, const std::function<void()>& action) {
    Call call{&action};
    {
        const std::lock_guard guard(CallLock);
        Calls.push_back(&call);
    }
    PostThreadMessageW(Thread, CallMessage(), 0, 0);
    {
        std::unique_lock guard(Lock);
        Changed.wait_for(guard, Patience, [&] { return call.IsDone || dialog.Closed; });
    }
    const std::lock_guard guard(CallLock); // waits for a call that runs at present
    std::erase(Calls, &call);
    return call.IsDone;
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

void DialogDriver::Activate(const OpenDialog& dialog, HWND top) {
    if (HasKeyboard(top)) {
        return;
    }
    // By the thread that owns it: a request from another one may arrive late and undo a later one.
    OnDialogThread(dialog, [top] { SetForegroundWindow(top); });
    Require(WaitUntil([&] { return HasKeyboard(top) || IsClosed(dialog); }),
            "the window does not get the keyboard");
}

void DialogDriver::ClickAt(const OpenDialog& dialog, HWND window, POINT position, const MouseClick& click) {
    const auto isThere = [position] {
        POINT present{};
        GetCursorPos(&present);
        return present.x == position.x && present.y == position.y;
    };
    OnDialogThread(dialog, [position] { SetCursorPos(position.x, position.y); });
    Require(WaitUntil(isThere), "the pointer does not go where it is put");
    const HWND hit = WindowFromPoint(position);
    EXPECT_TRUE(hit == window || IsChild(window, hit) || !IsWindowEnabled(window))
        << "something covers the window at " << position.x << ", " << position.y;
    const DWORD down = click.ByRightButton ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN;
    const DWORD up = click.ByRightButton ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP;
    std::vector<INPUT> inputs; // sent at once, so that the clicks of a double click are close together
    for (int count = 0; count < click.Times; ++count) {
        inputs.push_back(MouseInput(position, down));
        inputs.push_back(MouseInput(position, up));
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void DialogDriver::SendMouse(POINT position, DWORD buttons) {
    INPUT input = MouseInput(position, buttons);
    SendInput(1, &input, sizeof(INPUT));
}

void DialogDriver::SendKey(WORD virtualKey, bool down, std::uint64_t extra) {
    static constexpr std::array<WORD, 8> Extended{VK_UP,  VK_DOWN,   VK_DELETE, VK_HOME,
                                                  VK_END, VK_INSERT, VK_PRIOR,  VK_NEXT};
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
