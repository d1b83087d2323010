#pragma once

#include "platform/dialog_window.h"
#include "platform/message_box.h"

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

    // For the driver's thread

    /// Waits until what was posted or sent as input before has been handled. `dialog` is the one acted on.
    void Settle(const OpenDialog& dialog, bool afterInput);

    /// Runs something on the dialogs' thread, between two messages, and waits for it.
    void OnDialogThread(const std::function<void()>& action);

    /// Waits until the condition holds. False when it never did.
    static bool WaitUntil(const std::function<bool()>& condition);

    /// Brings a window to the foreground, so that input goes to it.
    static void Activate(HWND window);

    /// Places the mouse pointer, waits until it is there, and clicks.
    static void ClickAt(HWND window, POINT screenPosition, int times = 1);
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

    class Receiver;

    static LRESULT CALLBACK WatchMessages(int code, WPARAM wParam, LPARAM lParam);
    void OnMessageTaken(MSG& message);
    void RunScript(const std::shared_ptr<OpenDialog>& dialog);
    bool DealWithNewWindows(const OpenDialog& dialog);
    bool WaitForMarker(const OpenDialog& dialog, bool asInput);
    void AnswerMessage(const OpenMessage& message) const;
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
    std::uint64_t MarkerSent = 0;                     ///< number of the last marker that was sent
    std::uint64_t MarkerSeen = 0;                     ///< the highest number of those that came through
    std::thread Worker;
};

} // namespace pmx::test
