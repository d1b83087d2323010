#include "drawing/gdi_plus.h"
#include "host/main_window.h"
#include "host/options.h"
#include "host/resource.h"
#include "host/text.h"
#include "host/tour.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include <commctrl.h>

namespace {

using namespace pmx::host;

constexpr int Failure = 1;

int Complain(unsigned textId, const std::wstring& detail) {
    MessageBoxW(nullptr, FormatText(textId, detail.c_str()).c_str(), ResourceText(IDS_TITLE).c_str(),
                MB_ICONERROR);
    return Failure;
}

int RunMessageLoop(HWND window) {
    const HACCEL keys = LoadAcceleratorsW(ResourceModule(), MAKEINTRESOURCEW(IDR_KEYS));
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        // Of a dialog's keys only Tab, which goes from part to part; Enter stays the list's own.
        const bool isTab = message.message == WM_KEYDOWN && message.wParam == VK_TAB;
        const bool isHandled = isTab && IsDialogMessageW(window, &message) != FALSE;
        if (!isHandled && TranslateAcceleratorW(window, keys, &message) == 0) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}

int Run() {
    const Options options = ReadOptions();
    std::error_code error;
    std::filesystem::create_directories(options.FavoritesFolder, error);
    if (error) {
        return Complain(IDS_ERROR_FOLDER, options.FavoritesFolder);
    }
    const pmx::sample::DrawingService drawing;
    const MainWindow window(options.FavoritesFolder);
    if (window.Get() == nullptr) {
        return Complain(IDS_ERROR_OPEN, options.FavoritesFolder);
    }
    ShowWindow(window.Get(), SW_SHOW);
    std::optional<Tour> tour;
    if (!options.TourFolder.empty()) {
        tour.emplace(window.Get(), options.TourFolder);
    }
    const int result = RunMessageLoop(window.Get());
    return tour && !tour->Succeeded() ? Failure : result;
}

} // namespace

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*former*/, wchar_t* /*commandLine*/, int /*show*/) {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    try {
        return Run();
    } catch (const std::exception&) {
        return Complain(IDS_ERROR_START, {});
    }
}
