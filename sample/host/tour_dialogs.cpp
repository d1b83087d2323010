#include "host/tour_dialogs.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <commctrl.h>
#include <windowsx.h>

namespace pmx::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto LongestWait = std::chrono::seconds(30);

struct ControlSearch {
    int Id;
    HWND Found;
};

BOOL CALLBACK LookAtControl(HWND child, LPARAM parameter) {
    auto& search = *reinterpret_cast<ControlSearch*>(parameter);
    search.Found = GetDlgCtrlID(child) == search.Id ? child : nullptr;
    return search.Found == nullptr;
}

BOOL CALLBACK LookAtEditBox(HWND child, LPARAM parameter) {
    std::array<wchar_t, 8> name{};
    GetClassNameW(child, name.data(), static_cast<int>(name.size()));
    const bool isEditBox = std::wstring_view(name.data()) == L"Edit" && IsWindowVisible(child) != FALSE;
    *reinterpret_cast<HWND*>(parameter) = isEditBox ? child : nullptr;
    return isEditBox ? FALSE : TRUE;
}

BOOL CALLBACK LookAtWindow(HWND window, LPARAM parameter) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    const bool isDialog = std::wstring_view(name.data()) == L"#32770";
    if (isDialog && IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE) {
        *reinterpret_cast<HWND*>(parameter) = window;
        return FALSE;
    }
    return TRUE;
}

BOOL CALLBACK AddVisible(HWND window, LPARAM parameter) {
    if (IsWindowVisible(window) != FALSE) {
        reinterpret_cast<std::vector<HWND>*>(parameter)->push_back(window);
    }
    return TRUE;
}

void Notify(HWND control, int notification) {
    const HWND parent = GetParent(control);
    SendMessageW(parent, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), notification),
                 reinterpret_cast<LPARAM>(control));
}

/// Places the pointer, waits until it is there and nothing else is under it, and clicks.
void ClickAt(HWND window, POINT position) {
    const bool isThere = TourDialogs::WaitFor([&] {
        POINT pointer{};
        SetCursorPos(position.x, position.y);
        GetCursorPos(&pointer);
        return pointer.x == position.x && pointer.y == position.y && WindowFromPoint(position) == window;
    });
    if (!isThere) {
        throw std::runtime_error("the pointer does not reach a window that is to be clicked");
    }
    std::array<INPUT, 2> input{};
    input[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    input[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT));
}

} // namespace

HWND TourDialogs::Active() const {
    if (IsWindowEnabled(Window) != FALSE) {
        return Window;
    }
    HWND active = nullptr;
    EnumThreadWindows(GetWindowThreadProcessId(Window, nullptr), &LookAtWindow,
                      reinterpret_cast<LPARAM>(&active));
    return active;
}

HWND TourDialogs::Open(const std::string& name, const std::function<void()>& action) const {
    std::vector<HWND> before;
    EnumThreadWindows(GetWindowThreadProcessId(Window, nullptr), &AddVisible,
                      reinterpret_cast<LPARAM>(&before));
    action();
    const bool came = WaitFor([&] {
        const HWND active = Active();
        return active != nullptr && std::find(before.begin(), before.end(), active) == before.end();
    });
    if (!came) {
        throw std::runtime_error("the dialog did not open: " + name);
    }
    const HWND dialog = Active();
    SendMessageW(dialog, WM_NULL, 0, 0); // Answered once it has been set up.
    return dialog;
}

void TourDialogs::Close(HWND dialog, const std::function<void()>& action) const {
    action();
    const auto isGone = [&] {
        return Active() != nullptr && Active() != dialog && IsWindowVisible(dialog) == FALSE;
    };
    if (!WaitFor(isGone)) {
        std::array<char, 128> title{};
        GetWindowTextA(Active(), title.data(), static_cast<int>(title.size()));
        throw std::runtime_error(std::string("a dialog did not close; in front is ") + title.data());
    }
}

void TourDialogs::Press(HWND dialog, int id) {
    const HWND button = Control(dialog, id);
    if (!WaitFor([button] { return IsWindowEnabled(button) != FALSE; })) {
        throw std::runtime_error("a button stays disabled: " + std::to_string(id));
    }
    PostMessageW(button, BM_CLICK, 0, 0);
}

HWND TourDialogs::OpenWith(const std::string& name, HWND dialog, int button) const {
    return Open(name, [&] { Press(dialog, button); });
}

void TourDialogs::CloseWith(HWND dialog, int button) const {
    Close(dialog, [&] { Press(dialog, button); });
}

void TourDialogs::Type(HWND dialog, int id, const std::wstring& text) {
    const HWND box = Control(dialog, id);
    SendMessageW(box, EM_SETSEL, 0, -1);
    SendMessageW(box, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

void TourDialogs::TypeFileName(HWND dialog, const std::wstring& path) {
    HWND box = nullptr;
    const bool isThere = WaitFor([&] {
        EnumChildWindows(dialog, &LookAtEditBox, reinterpret_cast<LPARAM>(&box));
        return box != nullptr;
    });
    if (!isThere) {
        throw std::runtime_error("a file dialog has no box for the file name");
    }
    SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
}

void TourDialogs::Focus(HWND dialog, int id) {
    SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Control(dialog, id)), TRUE);
}

void TourDialogs::Choose(HWND dialog, int id, int index) {
    const HWND box = Control(dialog, id);
    SendMessageW(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    Notify(box, CBN_SELCHANGE);
}

void TourDialogs::Check(HWND dialog, int id) {
    SendMessageW(Control(dialog, id), BM_CLICK, 0, 0);
}

void TourDialogs::Click(HWND dialog, int list, int row) {
    const HWND control = Control(dialog, list);
    const auto index = static_cast<WPARAM>(row);
    SendMessageW(control, LVM_ENSUREVISIBLE, index, FALSE);
    const bool isReport = (GetWindowLongPtrW(control, GWL_STYLE) & LVS_TYPEMASK) == LVS_REPORT;
    RECT place{isReport ? LVIR_LABEL : LVIR_ICON, 0, 0, 0};
    SendMessageW(control, LVM_GETITEMRECT, index, reinterpret_cast<LPARAM>(&place));
    POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    ClientToScreen(control, &middle);
    ClickAt(control, middle);
    const auto isSelected = [&] {
        return SendMessageW(control, LVM_GETITEMSTATE, index, LVIS_SELECTED) == LVIS_SELECTED;
    };
    if (!WaitFor(isSelected)) {
        throw std::runtime_error("row " + std::to_string(row) + " was clicked and not selected");
    }
}

void TourDialogs::ClickFavorite(HWND dialog, int list, int row, int column, int nameBox) {
    Click(dialog, list, row);
    const std::wstring name = CellText(Control(dialog, list), row, column);
    const HWND box = Control(dialog, nameBox);
    const auto isShown = [&] {
        std::array<wchar_t, 300> shown{};
        SendMessageW(box, WM_GETTEXT, shown.size(), reinterpret_cast<LPARAM>(shown.data()));
        return shown.data() == name;
    };
    if (!WaitFor(isShown)) {
        throw std::runtime_error("the name of row " + std::to_string(row) +
                                 " is not shown after a click on it");
    }
}

void TourDialogs::ShowTab(HWND dialog, int tabs, int index) {
    SendMessageW(Control(dialog, tabs), TCM_SETCURFOCUS, static_cast<WPARAM>(index), 0);
}

void TourDialogs::AskHelp(HWND dialog, int id) {
    const HWND control = Control(dialog, id);
    HELPINFO help{};
    help.cbSize = sizeof help;
    help.iContextType = HELPINFO_WINDOW;
    help.iCtrlId = id;
    help.hItemHandle = control;
    RECT place{};
    GetWindowRect(control, &place);
    help.MousePos = {(place.left + place.right) / 2, place.bottom};
    SendMessageW(dialog, WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
}

std::wstring TourDialogs::CellText(HWND list, int row, int column) {
    std::array<wchar_t, 300> text{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return text.data();
}

HWND TourDialogs::Control(HWND dialog, int id) {
    ControlSearch search{id, GetDlgItem(dialog, id)};
    if (search.Found == nullptr) {
        EnumChildWindows(dialog, &LookAtControl, reinterpret_cast<LPARAM>(&search));
    }
    if (search.Found == nullptr) {
        throw std::runtime_error("a dialog has no control " + std::to_string(id));
    }
    return search.Found;
}

bool TourDialogs::WaitFor(const std::function<bool()>& condition) {
    const auto end = Clock::now() + LongestWait;
    while (!condition()) {
        if (Clock::now() > end) {
            return false;
        }
        constexpr DWORD Pause = 20;
        WaitForSingleObject(GetCurrentThread(), Pause); // Looks again in a moment.
    }
    return true;
}

} // namespace pmx::host
