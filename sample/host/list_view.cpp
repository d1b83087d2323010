#include "host/list_view.h"

#include "host/screen.h"
#include "host/text.h"

#include <windowsx.h>

namespace pmx::host {

ListView::ListView(HWND parent, int controlId, const std::vector<Column>& columns)
    : List(CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, nullptr,
                           WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL |
                               LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS | LVS_NOSORTHEADER,
                           0, 0, 0, 0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(controlId)),
                           GetModuleHandleW(nullptr), nullptr)),
      Columns(columns) {
    SendMessageW(List, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    int index = 0;
    for (const auto& [titleId, width] : columns) {
        std::wstring title = ResourceText(titleId);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.pszText = title.data();
        column.cx = width;
        SendMessageW(List, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++),
                     reinterpret_cast<LPARAM>(&column));
    }
}

void ListView::SetIcons(HIMAGELIST icons) {
    SendMessageW(List, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(icons));
}

void ListView::Fit(HFONT font, int resolution) {
    SetWindowFont(List, font, TRUE);
    WPARAM index = 0;
    for (const Column& column : Columns) {
        SendMessageW(List, LVM_SETCOLUMNWIDTH, index++, Scaled(column.Width, resolution));
    }
}

void ListView::FitLastColumn() {
    RECT client{};
    GetClientRect(List, &client);
    const HWND header = reinterpret_cast<HWND>(SendMessageW(List, LVM_GETHEADER, 0, 0));
    const auto last = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) - 1;
    int width = client.right;
    for (int column = 0; column < last; ++column) {
        width -= static_cast<int>(SendMessageW(List, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    }
    SendMessageW(List, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(last), width > 0 ? width : 0);
}

void ListView::Clear() {
    SendMessageW(List, LVM_DELETEALLITEMS, 0, 0);
}

void ListView::AddRow(const std::vector<std::wstring>& texts, int icon) {
    LVITEMW item{};
    item.iItem = static_cast<int>(SendMessageW(List, LVM_GETITEMCOUNT, 0, 0));
    for (const auto& text : texts) {
        item.mask = LVIF_TEXT;
        item.pszText = const_cast<wchar_t*>(text.c_str()); // Only read; the structure serves both directions.
        if (item.iSubItem == 0) {
            item.mask |= icon >= 0 ? LVIF_IMAGE : 0;
            item.iImage = icon;
            SendMessageW(List, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        } else {
            SendMessageW(List, LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        }
        ++item.iSubItem;
    }
}

int ListView::Selected() const {
    return static_cast<int>(SendMessageW(List, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void ListView::Select(int row) {
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    SendMessageW(List, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    if (row >= 0) {
        item.state = item.stateMask;
        SendMessageW(List, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        SendMessageW(List, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    }
}

} // namespace pmx::host
