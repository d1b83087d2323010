#include "platform/win32/heading_tips.h"

#include <array>

#include <commctrl.h>

namespace pmx::win32 {

namespace {

constexpr int LongestTitle = 256;
using Title = std::array<wchar_t, LongestTitle>;

Title TitleOf(HWND header, int column) {
    Title title{};
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = title.data();
    item.cchTextMax = LongestTitle;
    SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    return title;
}

int WidthOf(HWND header, const Title& title) {
    const HDC device = GetDC(header);
    const HGDIOBJ former =
        SelectObject(device, reinterpret_cast<HGDIOBJ>(SendMessageW(header, WM_GETFONT, 0, 0)));
    SIZE size{};
    GetTextExtentPoint32W(device, title.data(), lstrlenW(title.data()), &size);
    SelectObject(device, former);
    ReleaseDC(header, device);
    return size.cx;
}

bool IsCut(HWND header, const Title& title, const RECT& place) {
    const int margins = 2 * 3 * GetSystemMetrics(SM_CXEDGE); // what a header leaves on both sides of a title
    return WidthOf(header, title) + margins > place.right - place.left;
}

} // namespace

void HeadingTips::Update(HWND list) {
    const HWND header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    if (Tips == nullptr) {
        Tips =
            CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                            0, 0, 0, 0, GetParent(list), nullptr, nullptr, nullptr);
    }
    const auto count = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    for (int column = 0; column < count; ++column) {
        Title title = TitleOf(header, column);
        TTTOOLINFOW tool{};
        tool.cbSize = sizeof tool;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = header;
        tool.uId = static_cast<UINT_PTR>(column);
        tool.lpszText = title.data();
        SendMessageW(header, HDM_GETITEMRECT, static_cast<WPARAM>(column),
                     reinterpret_cast<LPARAM>(&tool.rect));
        SendMessageW(Tips, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        if (IsCut(header, title, tool.rect)) {
            SendMessageW(Tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        }
    }
}

} // namespace pmx::win32
