#include "win32/support/real_user.h"

#include "platform/win32/wide_text.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include <commctrl.h>
#include <imm.h>

namespace pmx::test {

namespace {

constexpr UINT AnswerTime = 20000; // milliseconds

/// The letter behind the `&` of a text; 0 when there is none.
wchar_t AccessKeyOf(std::wstring_view text) {
    const std::size_t mark = text.find(L'&');
    return mark == std::wstring_view::npos || mark + 1 == text.size() ? L'\0' : text[mark + 1];
}

void PutOnClipboard(const std::wstring& text) {
    if (!DialogDriver::WaitUntil([] { return OpenClipboard(nullptr) != FALSE; })) {
        ADD_FAILURE() << "the clipboard cannot be opened";
        return;
    }
    const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
    EmptyClipboard();
    if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size)) {
        std::memcpy(GlobalLock(memory), text.c_str(), size);
        GlobalUnlock(memory);
        SetClipboardData(CF_UNICODETEXT, memory); // owns it from now on
    }
    CloseClipboard();
}

} // namespace

HWND RealUser::Item(ControlId control) const {
    const HWND item = GetDlgItem(Dialog.Window, control);
    if (!item) {
        ADD_FAILURE() << "the dialog has no control " << control;
    }
    return item;
}

bool RealUser::BeginAction() const {
    if (!IsOpen()) {
        ADD_FAILURE() << "the user acts on a dialog that has ended";
        return false;
    }
    Driver.Activate(Dialog, Dialog.Window);
    return true;
}

void RealUser::Finish(bool afterInput) {
    Driver.Settle(Dialog, afterInput);
}

LRESULT RealUser::Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const {
    DWORD_PTR result = 0;
    if (!SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, AnswerTime, &result) && IsOpen()) {
        ADD_FAILURE() << "a control does not answer message " << message;
    }
    return static_cast<LRESULT>(result);
}

std::string RealUser::TextOf(HWND window) const {
    std::array<wchar_t, 2048> buffer{};
    const auto length = static_cast<std::size_t>(
        Ask(window, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data())));
    return win32::ToNarrow(std::wstring_view(buffer.data(), length));
}

std::string RealUser::Title() const {
    return TextOf(Dialog.Window);
}

std::string RealUser::Text(ControlId control) const {
    return TextOf(Item(control));
}

bool RealUser::IsEnabled(ControlId control) const {
    return IsWindowEnabled(Item(control)) != FALSE;
}

bool RealUser::IsChecked(ControlId radioButton) const {
    return Ask(Item(radioButton), BM_GETCHECK) == BST_CHECKED;
}

ControlId RealUser::Focused() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(Driver.DialogThread(), &info);
    HWND focused = info.hwndFocus;
    while (focused && GetParent(focused) != Dialog.Window) {
        focused = (GetWindowLongPtrW(focused, GWL_STYLE) & WS_CHILD) != 0 ? GetParent(focused) : nullptr;
    }
    return focused ? GetDlgCtrlID(focused) : 0;
}

bool RealUser::HasIcon(ControlId iconBox) const {
    return Ask(Item(iconBox), STM_GETICON) != 0;
}

int RealUser::RowCount(ControlId list) const {
    return static_cast<int>(Ask(Item(list), LVM_GETITEMCOUNT));
}

std::string RealUser::Cell(ControlId list, int row, int column) const {
    std::array<wchar_t, 1024> buffer{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = buffer.data();
    item.cchTextMax = static_cast<int>(buffer.size());
    Ask(Item(list), LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return win32::ToNarrow(item.pszText);
}

int RealUser::StateImage(ControlId list, int row) const {
    const LRESULT state = Ask(Item(list), LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK);
    return static_cast<int>(state >> 12);
}

int RealUser::SelectedRow(ControlId list) const {
    return static_cast<int>(Ask(Item(list), LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void RealUser::Click(HWND window, POINT client, const DialogDriver::MouseClick& click) {
    ClientToScreen(window, &client);
    Driver.ClickAt(Dialog, window, client, click);
    Finish(true);
}

void RealUser::Press(ControlId control) {
    const HWND item = Item(control);
    RECT area{};
    if (item && BeginAction() && GetClientRect(item, &area)) {
        Click(item, {area.right / 2, area.bottom / 2});
    }
}

void RealUser::ClickOnRow(ControlId list, int row, RowPart part, const DialogDriver::MouseClick& click) {
    constexpr LONG HalfStateImage = 8;
    const HWND item = Item(list);
    if (!item || !BeginAction()) {
        return;
    }
    Ask(item, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    RECT area{};
    area.left =
        part == RowPart::StateImage || Ask(item, LVM_GETVIEW) == LV_VIEW_DETAILS ? LVIR_LABEL : LVIR_ICON;
    if (!Ask(item, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area))) {
        ADD_FAILURE() << "the list " << list << " has no row " << row;
        return;
    }
    const LONG inside = std::min(area.left + HalfStateImage, (area.left + area.right) / 2);
    const LONG x = part == RowPart::StateImage ? area.left - HalfStateImage : inside;
    Click(item, {x, (area.top + area.bottom) / 2}, click);
}

void RealUser::ClickRow(ControlId list, int row) {
    ClickOnRow(list, row, RowPart::Content);
}

void RealUser::RightClickRow(ControlId list, int row) {
    ClickOnRow(list, row, RowPart::Content, {.ByRightButton = true});
}

void RealUser::ClickStateImage(ControlId list, int row) {
    ClickOnRow(list, row, RowPart::StateImage);
}

void RealUser::ClickBesideRows(ControlId list) {
    constexpr LONG FromEdge = 4;
    const HWND item = Item(list);
    RECT area{};
    if (item && BeginAction() && GetClientRect(item, &area)) {
        Click(item, {area.right - FromEdge, area.bottom - FromEdge});
    }
}

RECT RealUser::AreaOfRow(ControlId list, int row) const {
    RECT area{};
    area.left = LVIR_BOUNDS;
    Ask(Item(list), LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    return area;
}

void RealUser::UseMouse(ControlId list, POINT position, DWORD button) {
    if (BeginAction()) {
        ClientToScreen(Item(list), &position);
        DialogDriver::SendMouse(position, button);
        Finish(true);
    }
}

void RealUser::HoldAt(ControlId list, POINT position) {
    UseMouse(list, position, MOUSEEVENTF_LEFTDOWN);
}

void RealUser::MoveTo(ControlId list, POINT position) {
    UseMouse(list, position, 0);
}

void RealUser::Release(ControlId list, POINT position) {
    UseMouse(list, position, MOUSEEVENTF_LEFTUP);
}

void RealUser::PressRightButton(ControlId list, POINT position) {
    UseMouse(list, position, MOUSEEVENTF_RIGHTDOWN);
    UseMouse(list, position, MOUSEEVENTF_RIGHTUP);
}

void RealUser::DragRow(ControlId list, int from, int to) {
    constexpr LONG InName = 100;
    const RECT start = AreaOfRow(list, from);
    const RECT end = AreaOfRow(list, to);
    const LONG target = to > from ? end.bottom - 2 : end.top + 2;
    HoldAt(list, {InName, (start.top + start.bottom) / 2});
    MoveTo(list, {InName, (start.top + end.bottom) / 2});
    MoveTo(list, {InName, target});
    Release(list, {InName, target});
}

void RealUser::VisitAnotherWindow() {
    if (!BeginAction()) {
        return;
    }
    // On this thread, which is not the dialog's.
    const HWND other = CreateWindowExW(0, L"Static", L"Other", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 120,
                                       80, nullptr, nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    EXPECT_TRUE(DialogDriver::WaitUntil([other] { return GetForegroundWindow() == other; }));
    Driver.Settle(Dialog, false);
    EXPECT_EQ(Focused(), 0);
    DestroyWindow(other);
    BeginAction();
    Finish(false);
}

void RealUser::DoubleClickRow(ControlId list, int row) {
    ClickOnRow(list, row, RowPart::Content, {.Times = 2});
}

void RealUser::DoubleClickStateImage(ControlId list, int row) {
    ClickOnRow(list, row, RowPart::StateImage, {.Times = 2});
}

void RealUser::TabTo(ControlId control) {
    const HWND item = Item(control);
    if (item && BeginAction()) {
        PostMessageW(Dialog.Window, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(item), TRUE);
        Finish(false);
    }
}

void RealUser::PressKey(WORD virtualKey, bool withAlt, bool withControl) {
    if (!BeginAction()) {
        return;
    }
    const auto hold = [](WORD key, bool wanted, bool down) {
        if (wanted) {
            DialogDriver::SendKey(key, down);
        }
    };
    hold(VK_MENU, withAlt, true);
    hold(VK_CONTROL, withControl, true);
    DialogDriver::SendKey(virtualKey, true);
    DialogDriver::SendKey(virtualKey, false);
    hold(VK_CONTROL, withControl, false);
    hold(VK_MENU, withAlt, false);
    Finish(true);
}

void RealUser::Tab() {
    PressKey(VK_TAB);
}

void RealUser::TypeWide(const std::wstring& text) {
    if (!BeginAction()) {
        return;
    }
    for (const wchar_t character : text) {
        DialogDriver::SendCharacter(character);
    }
    Finish(true);
}

void RealUser::Type(const std::string& text) {
    TypeWide(win32::ToWide(text));
}

void RealUser::PasteWide(const std::wstring& text) {
    PutOnClipboard(text);
    PressKey('V', false, true);
}

void RealUser::Paste(const std::string& text) {
    PasteWide(win32::ToWide(text));
}

void RealUser::Key(std::uint32_t virtualKey) {
    PressKey(static_cast<WORD>(virtualKey));
}

void RealUser::Enter() {
    PressKey(VK_RETURN);
}

void RealUser::Escape() {
    PressKey(VK_ESCAPE);
}

void RealUser::PressByKey(ControlId button) {
    const wchar_t letter = AccessKeyOf(win32::ToWide(Text(button)));
    if (!letter) {
        ADD_FAILURE() << "the control " << button << " has no access key";
        return;
    }
    PressKey(LOBYTE(VkKeyScanW(letter)), true);
}

void RealUser::AskHelp() {
    PressKey(VK_F1);
}

void RealUser::AskHelpOn(ControlId control) {
    const HWND item = Item(control);
    if (!item || !BeginAction()) {
        return;
    }
    HELPINFO help{};
    help.cbSize = sizeof(help);
    help.iContextType = HELPINFO_WINDOW;
    help.iCtrlId = control;
    help.hItemHandle = item;
    GetCursorPos(&help.MousePos);
    Ask(item, WM_HELP, 0, reinterpret_cast<LPARAM>(&help));
    Finish(false);
}

void RealUser::Close() {
    if (BeginAction()) {
        PostMessageW(Dialog.Window, WM_SYSCOMMAND, SC_CLOSE, 0);
        Finish(false);
    }
}

void RealUser::ProcessKey(std::uint32_t scanCode) {
    if (BeginAction()) {
        PostMessageW(Item(Focused()), WM_KEYDOWN, VK_PROCESSKEY, static_cast<LPARAM>(1 | (scanCode << 16)));
        Finish(false);
    }
}

void RealUser::OnDialogThread(const std::function<void()>& action) {
    if (BeginAction()) {
        Driver.OnDialogThread(Dialog, action);
        Finish(false);
    }
}

bool RealUser::HasInputMethod() {
    bool hasContext = false;
    OnDialogThread([&hasContext] {
        const HWND focused = GetFocus();
        const HIMC context = ImmGetContext(focused);
        hasContext = context != nullptr;
        ImmReleaseContext(focused, context);
    });
    return hasContext;
}

void RealUser::Compose(const std::wstring& text) {
    UseInputMethod(text, true);
}

void RealUser::BeginComposing(const std::wstring& text) {
    UseInputMethod(text, false);
}

void RealUser::UseInputMethod(const std::wstring& text, bool complete) {
    OnDialogThread([&] {
        const HWND focused = GetFocus();
        const HIMC context = ImmGetContext(focused);
        ASSERT_NE(context, nullptr);
        std::wstring composition = text;
        const auto size = static_cast<DWORD>(composition.size() * sizeof(wchar_t));
        EXPECT_TRUE(ImmSetCompositionStringW(context, SCS_SETSTR, composition.data(), size, nullptr, 0));
        EXPECT_TRUE(!complete || ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0));
        ImmReleaseContext(focused, context);
    });
}

} // namespace pmx::test
