#pragma once

#include "platform/dialog_window.h"
#include "platform/message_box.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <windows.h>

namespace pmx::test {

class RealUser;

/// Drives modal dialogs of the thread that made this object, from a thread of its own, with the mouse and the
/// keyboard.
///
/// The dialogs run on the test's thread; while one is open, its script runs on the driver's thread. Every
/// action of a script waits until the dialogs' thread has taken up and handled it, however long that takes up
/// to a bound. A dialog or message box that opens meanwhile is dealt with before the action counts as done.
class DialogDriver {
public:
    using Script = std::function<void(RealUser&)>;

    /// How long anything may take.
    static constexpr std::chrono::seconds Patience{20};

    /// A dialog that is open, or was.
    struct OpenDialog {
        Script Work;
        HWND Window = nullptr; ///< null before it is open
        DialogWindow* Seam = nullptr;
        bool Closed = false;
        bool GivenUp = false; ///< its script has failed
    };

    DialogDriver();
    ~DialogDriver();
    DialogDriver(const DialogDriver&) = delete;
    DialogDriver& operator=(const DialogDriver&) = delete;

    // For the dialogs' thread

    /// Runs a dialog with its script.
    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events,
                           Script script);

    /// Shows a real message box and lets the driver look at it and give the answer.
    MessageAnswer Ask(const Message& message, MessageAnswer planned, const std::function<void()>& meanwhile);

    // For the driver's thread. What waits throws when it waited in vain, which gives the script up: the
    // failure is reported with what the windows are at, and the dialog is closed.

    /// Waits until what was posted or sent as input before has been handled. `dialog` is the one acted on.
    void Settle(const OpenDialog& dialog, bool afterInput);

    /// Runs something that opens no window on the dialogs' thread, between two messages, and waits for it.
    /// Does not when the dialog closes before.
    void OnDialogThread(const OpenDialog& dialog, const std::function<void()>& action);

    /// Waits until the condition holds. False when it never did.
    static bool WaitUntil(const std::function<bool()>& condition);

    /// Sees to it that a window (the dialog's or one over it) is in the foreground, active, and has the focus
    /// itself or in a control.
    void Activate(const OpenDialog& dialog, HWND top);

    struct MouseClick {
        int Times = 1;
        bool ByRightButton = false;
    };

    /// Places the mouse pointer, waits until it is there, and clicks.
    void ClickAt(const OpenDialog& dialog, HWND window, POINT screenPosition, const MouseClick& click);

    /// Sends the mouse there, with what happens to its buttons (MOUSEEVENTF_...).
    static void SendMouse(POINT screenPosition, DWORD buttons);
    static void SendKey(WORD virtualKey, bool down, std::uint64_t extra = 0);
    static void SendCharacter(wchar_t character);

    bool IsClosed(const OpenDialog& dialog) const;
    DWORD DialogThread() const { return Thread; }

private:
    struct OpenMessage {
        Message Asked;
        MessageAnswer Planned = MessageAnswer::Ok;
        std::function<void()> Meanwhile;
        bool Answered = false;
    };

    struct Call {
        const std::function<void()>* Action;
        std::atomic<bool> IsDone = false;
    };

    class Receiver;

    static LRESULT CALLBACK WatchMessages(int code, WPARAM wParam, LPARAM lParam);
    void OnMessageTaken(MSG& message);
    void RunCalls();
    void RunScript(const std::shared_ptr<OpenDialog>& dialog);
    bool DealWithNewWindows(const OpenDialog& dialog);
    bool WaitForMarker(const OpenDialog& dialog, bool asInput);
    void AnswerMessage(const OpenMessage& message);
    bool TryOnDialogThread(const OpenDialog& dialog, const std::function<void()>& action);
    void GiveUp(OpenDialog& dialog);
    void CloseMessageBoxes() const;
    void Require(bool condition, const std::string& failure) const;
    HWND FindMessageBox(const OpenMessage& message) const;
    bool IsDialogOfOurs(HWND window) const;

    const DWORD Thread;
    HHOOK Hook = nullptr;
    static DialogDriver* Current; ///< of the dialogs' thread; there is one at a time

    mutable std::mutex Lock;
    std::condition_variable Changed;
    std::vector<std::shared_ptr<OpenDialog>> Dialogs; ///< the topmost last
    std::shared_ptr<OpenDialog> Undriven;             ///< opened, and its script does not run yet
    std::shared_ptr<OpenMessage> Pending;             ///< a message that is to be answered
    static std::uint64_t MarkerSent; ///< number of the last marker of any driver, because some arrive late
    std::uint64_t MarkerSeen = 0;    ///< the highest number of those that came through
    std::mutex CallLock;
    std::vector<Call*> Calls; ///< to be run on the dialogs' thread
    std::thread Worker;
};

} // namespace pmx::test
