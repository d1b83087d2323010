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

constexpr const wchar_t* MenuClass = L"#32768";
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
        ShowMenu(L'a', "menu-favorites");
        ShowMenu(L'd', "menu-settings");
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

/// Opens a menu by its access key, as the keyboard does, and closes it again.
void Tour::ShowMenu(wchar_t accessKey, const std::string& name) {
    const auto isOpen = [] { return IsWindowVisible(FindWindowW(MenuClass, nullptr)) != FALSE; };
    PostMessageW(Window, WM_SYSCOMMAND, SC_KEYMENU, accessKey);
    if (!WaitFor(isOpen)) {
        throw std::runtime_error("the menu of step " + name + " did not open");
    }
    Step(name);
    SendMessageW(Window, WM_CANCELMODE, 0, 0);
    if (!WaitFor([&] { return !isOpen(); })) {
        throw std::runtime_error("the menu of step " + name + " did not close");
    }
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

/// Looks at the condition again whenever a file changes in the tour's folder, and every now and then.
bool Tour::WaitFor(const std::function<bool()>& condition) const {
    const Notification changes(
        FindFirstChangeNotificationW(Folder.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME));
    const auto end = Clock::now() + LongestWait;
    while (!condition()) {
        if (Clock::now() > end) {
            return false;
        }
        constexpr DWORD Pause = 50;
        if (WaitForSingleObject(changes.get(), Pause) == WAIT_OBJECT_0) {
            FindNextChangeNotification(changes.get());
        }
    }
    return true;
}

bool Tour::WaitUntilGone(const std::filesystem::path& file) {
    return WaitFor([&file] { return !std::filesystem::exists(file); });
}

} // namespace pmx::host
