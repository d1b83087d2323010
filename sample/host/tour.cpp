#include "host/tour.h"

#include "host/resource.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include <commctrl.h>

namespace pmx::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto LongestWait = std::chrono::seconds(60);

struct NotificationCloser {
    void operator()(HANDLE notification) const { FindCloseChangeNotification(notification); }
};
using Notification = std::unique_ptr<std::remove_pointer_t<HANDLE>, NotificationCloser>;

} // namespace

Tour::Tour(HWND window, std::filesystem::path folder)
    : Window(window), Folder(std::move(folder)), Worker([this](const std::stop_token& stop) { Run(stop); }) {}

bool Tour::Succeeded() {
    Worker.join();
    return Complete;
}

void Tour::Run(const std::stop_token& stop) {
    try {
        Step("window");
        ShowToolbarFavorites();
        ShowSettings();
        Complete = !stop.stop_requested();
        std::ofstream(Folder / "complete").close();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tour: %s\n", error.what());
    }
    PostMessageW(Window, WM_CLOSE, 0, 0);
}

void Tour::ShowToolbarFavorites() {
    const HWND toolbar = GetDlgItem(Window, IDC_TOOLBAR);
    const auto count = static_cast<int>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
    for (int index = 0; index < count; ++index) {
        Choose(IDM_TOOLBAR_FIRST + index);
        Step("toolbar-" + std::to_string(index + 1));
    }
}

void Tour::ShowSettings() {
    Choose(IDM_FRESH);
    for (const int command : {IDM_BOTH_SIDES, IDM_STAPLE_TWO_LEFT, IDM_PUNCH_2, IDM_NUMBERS, IDM_COVER}) {
        Choose(command);
    }
    Step("bound-report");
    Choose(IDM_FRESH);
    for (const int command : {IDM_LANDSCAPE, IDM_PAGES_6, IDM_WATERMARK, IDM_GRAY, IDM_TABS}) {
        Choose(command);
    }
    Step("six-on-a-sheet");
}

/// Returns when the command has been carried out.
void Tour::Choose(int command) {
    SendMessageW(Window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void Tour::Step(const std::string& name) {
    SendMessageW(Window, WM_NULL, 0, 0);
    RedrawWindow(Window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%02d-", ++Count);
    const auto file = Folder / (number.data() + name + ".ready");
    std::ofstream(file).close();
    if (!WaitUntilGone(file)) {
        throw std::runtime_error("nobody took the picture of step " + name);
    }
}

bool Tour::WaitUntilGone(const std::filesystem::path& file) {
    const Notification changes(
        FindFirstChangeNotificationW(Folder.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME));
    const auto end = Clock::now() + LongestWait;
    while (std::filesystem::exists(file)) {
        if (Clock::now() > end) {
            return false;
        }
        // A removal from outside Wine may go unnoticed, so look again from time to time.
        constexpr DWORD Pause = 50;
        if (WaitForSingleObject(changes.get(), Pause) == WAIT_OBJECT_0) {
            FindNextChangeNotification(changes.get());
        }
    }
    return true;
}

} // namespace pmx::host
