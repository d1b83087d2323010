#include "platform/win32/list_control.h"

#include "platform/win32/image_list.h"
#include "platform/win32/screen.h"
#include "platform/win32/wide_text.h"

#include <utility>

#include <windowsx.h>

namespace pmx::win32 {

namespace {

/// True when the user has dragged the width of a column. Some versions of the control change other things of the
/// heading with every state image.
bool IsWidthChange(const NMHDR& notification) {
    return notification.code == HDN_ENDTRACKW &&
           (reinterpret_cast<const NMHEADERW&>(notification).pitem->mask & HDI_WIDTH) != 0;
}

bool IsMouseDown(UINT message) {
    return message == WM_LBUTTONDOWN || message == WM_RBUTTONDOWN || message == WM_LBUTTONDBLCLK ||
           message == WM_RBUTTONDBLCLK;
}

/// The scan code that a key message carries.
std::uint32_t ScanCodeOf(LPARAM keyData) {
    constexpr std::uint32_t ExtendedKey = 0xE000;
    const auto flags = static_cast<std::uint32_t>(HIWORD(keyData));
    return (flags & 0xFFU) | ((flags & KF_EXTENDED) != 0 ? ExtendedKey : 0);
}

LPARAM Pointer(const void* structure) {
    return reinterpret_cast<LPARAM>(structure);
}

HIMAGELIST HandleOf(const ImageList& images) {
    return dynamic_cast<const WindowsImageList&>(images).Get();
}

} // namespace

// The window finds its object by the place that the control leaves to the application, which takes no
// look-up: a list of thousands of rows is filled with tens of thousands of messages, and some systems pay
// dearly for a subclass of the common controls' own kind in each of them.
WindowsList::WindowsList(HWND window, Listener listener)
    : Window(window), Tell(std::move(listener)), Drag(window) {
    if (Window) {
        SetWindowLongPtrW(Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        Former = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowsList::Procedure)));
    }
}

WindowsList::~WindowsList() {
    Detach();
}

void WindowsList::Detach() {
    if (Window) {
        SetWindowLongPtrW(Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Former));
        Window = nullptr;
    }
}

LRESULT CALLBACK WindowsList::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto& self = *reinterpret_cast<WindowsList*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self.HandleMessage(message, wParam, lParam)) {
        return 0;
    }
    const WNDPROC former = self.Former;
    if (message == WM_NCDESTROY) {
        self.Detach();
    }
    const LRESULT result = CallWindowProcW(former, window, message, wParam, lParam);
    if (message == WM_PAINT) {
        self.Drag.DrawLine();
    } else if (message == WM_NOTIFY && IsWidthChange(*reinterpret_cast<const NMHDR*>(lParam))) {
        self.Tips.Update(window);
    }
    return result;
}

/// True when the control is not to see the message.
bool WindowsList::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (Drag.Handle(message, wParam, lParam)) {
        if (const std::optional<ListMove> move = Drag.TakeMove()) {
            Tell({.Event = DialogEvent::ListRowDragged, .Move = *move});
        }
        return true;
    }
    if (IsMouseDown(message) && GetFocus() != Window) {
        SetFocus(Window);
        return GetFocus() != Window; // who refuses to give it away keeps the click from the list as well
    }
    if (message == WM_KEYDOWN) {
        LastScanCode = ScanCodeOf(lParam);
        if (wParam >= VK_PRIOR && wParam <= VK_DELETE) {
            Typed.clear(); // the search begins anew where the key leads to
        }
    } else if (message == WM_SYSKEYDOWN && (wParam == VK_UP || wParam == VK_DOWN)) {
        Tell({.Event = DialogEvent::ListKeyDown,
              .Key = {.VirtualKey = static_cast<std::uint32_t>(wParam), .WithAlt = true}});
    } else if (message == WM_CHAR) {
        Type(static_cast<wchar_t>(wParam));
        return true;
    }
    return false;
}

void WindowsList::Type(wchar_t character) {
    constexpr DWORD Pause = 1000; // milliseconds
    constexpr wchar_t Delete = 0x7F;
    if (character <= L' ' || character == Delete) {
        return;
    }
    const auto now = static_cast<DWORD>(GetMessageTime());
    if (now - TypedAt > Pause) {
        Typed.clear();
    }
    TypedAt = now;
    Typed += character;
    Tell({.Event = DialogEvent::ListTyped, .Text = ToNarrow(Typed)});
}

bool WindowsList::CancelDrag() {
    const bool isOn = Drag.IsOn();
    if (isOn) {
        Drag.Cancel();
    }
    return isOn;
}

void WindowsList::HandleNotification(const NMHDR& notification) {
    switch (notification.code) {
    case LVN_ITEMCHANGED:
        HandleChange(reinterpret_cast<const NMLISTVIEW&>(notification));
        break;
    case LVN_BEGINDRAG:
        if (MayDrag) {
            Drag.Begin(reinterpret_cast<const NMLISTVIEW&>(notification).iItem);
        }
        break;
    case NM_CLICK:
        Tell({.Event = DialogEvent::ListClicked});
        break;
    case NM_DBLCLK:
        Tell({.Event = DialogEvent::ListDoubleClicked});
        break;
    case LVN_KEYDOWN:
        HandleKey(reinterpret_cast<const NMLVKEYDOWN&>(notification));
        break;
    default:
        break;
    }
}

void WindowsList::HandleChange(const NMLISTVIEW& change) {
    const bool isSelection =
        (change.uChanged & LVIF_STATE) != 0 && ((change.uOldState ^ change.uNewState) & LVIS_SELECTED) != 0;
    if (isSelection && !Changing) {
        Tell({.Event = DialogEvent::ListSelectionChanged});
    }
}

void WindowsList::HandleKey(const NMLVKEYDOWN& key) {
    // Most versions of the control leave the flags empty.
    const std::uint32_t scanCode = key.flags != 0 ? key.flags : LastScanCode;
    Tell({.Event = DialogEvent::ListKeyDown, .Key = {.VirtualKey = key.wVKey, .Flags = scanCode}});
}

LRESULT WindowsList::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageW(Window, message, wParam, lParam);
}

void WindowsList::ReleaseImages() const {
    Send(LVM_SETIMAGELIST, LVSIL_NORMAL);
    Send(LVM_SETIMAGELIST, LVSIL_STATE);
}

void WindowsList::SetFullRowSelection(bool on) {
    Send(LVM_SETEXTENDEDLISTVIEWSTYLE, 0, on ? LVS_EX_FULLROWSELECT : 0);
}

void WindowsList::SetStateImages(const ImageList& images) {
    Send(LVM_SETIMAGELIST, LVSIL_STATE, Pointer(HandleOf(images)));
}

void WindowsList::SetLargeImages(const ImageList& images) {
    Send(LVM_SETIMAGELIST, LVSIL_NORMAL, Pointer(HandleOf(images)));
}

void WindowsList::InsertColumn(int column, const std::string& title, int width) {
    std::wstring text = ToWide(title);
    LVCOLUMNW inserted{};
    inserted.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    inserted.fmt = LVCFMT_LEFT;
    inserted.cx = ScaledFor(Window, width);
    inserted.pszText = text.data();
    inserted.iSubItem = column;
    if (Window) {
        Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), Pointer(&inserted));
    }
}

/// Sends a message that may change the selection.
void WindowsList::Change(UINT message, WPARAM wParam, LPARAM lParam) {
    Changing = true;
    Send(message, wParam, lParam);
    Changing = false;
}

void WindowsList::InsertRow(int position, int image) {
    LVITEMW item{};
    item.mask = image == NoImage ? 0U : LVIF_IMAGE;
    item.iItem = position;
    item.iImage = image;
    Change(LVM_INSERTITEMW, 0, Pointer(&item));
}

void WindowsList::DeleteRow(int row) {
    Change(LVM_DELETEITEM, static_cast<WPARAM>(row), 0);
}

void WindowsList::Reserve(int count) {
    Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(count));
}

void WindowsList::SetCell(int row, int column, const std::string& text) {
    std::wstring wide = ToWide(text);
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = wide.data();
    if (row >= 0) {
        Send(LVM_SETITEMTEXTW, static_cast<WPARAM>(row), Pointer(&item));
    }
}

void WindowsList::SetStateImage(int row, int image) {
    LVITEMW item{};
    item.stateMask = LVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(static_cast<UINT>(image));
    if (row >= 0) {
        Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), Pointer(&item));
    }
}

int WindowsList::SelectedRow() const {
    constexpr auto FromStart = static_cast<WPARAM>(-1);
    return Window ? static_cast<int>(Send(LVM_GETNEXTITEM, FromStart, LVNI_SELECTED)) : -1;
}

void WindowsList::Select(int row) {
    if (!Has(row)) {
        return;
    }
    LVITEMW item{};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = LVIS_SELECTED | LVIS_FOCUSED;
    Change(LVM_SETITEMSTATE, static_cast<WPARAM>(row), Pointer(&item));
    Send(LVM_SETSELECTIONMARK, 0, row);
}

void WindowsList::EnsureVisible(int row) {
    if (Has(row)) {
        Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    }
}

ListHit WindowsList::HitOfMessage() const {
    const DWORD position = GetMessagePos();
    LVHITTESTINFO hit{};
    hit.pt = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ScreenToClient(Window, &hit.pt);
    Send(LVM_SUBITEMHITTEST, 0, Pointer(&hit));
    const bool isOnStateImage = hit.iItem >= 0 && (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON;
    return {.Row = hit.iItem, .OnStateImage = isOnStateImage};
}

void WindowsList::SetRedraw(bool on) {
    Send(WM_SETREDRAW, on ? TRUE : FALSE);
    if (on && Window) {
        InvalidateRect(Window, nullptr, TRUE);
        Tips.Update(Window); // not before the rows are there: tips slow their making down
    }
}

} // namespace pmx::win32
