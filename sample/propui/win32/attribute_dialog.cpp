#include "propui/win32/attribute_dialog.h"

#include "propui/resource.h"
#include "ui/text.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include <commctrl.h>

namespace pmx::sample {

namespace {

constexpr INT_PTR Failed = -1;

struct HookRemover {
    void operator()(HHOOK hook) const { UnhookWindowsHookEx(hook); }
};
using Hook = std::unique_ptr<std::remove_pointer_t<HHOOK>, HookRemover>;

std::wstring NumberText(const Setting& setting, int value) {
    const std::string text = ShownNumber(setting, value);
    return {text.begin(), text.end()};
}

} // namespace

AttributeDialog* AttributeDialog::Current = nullptr;

AttributeDialog::AttributeDialog(Level level, const unsigned char* part) : Part(level) {
    std::memcpy(PartBytes(), part, TableSize - PartStart(Part));
}

void AttributeDialog::CopyPart(unsigned char* part) const {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&Table);
    std::memcpy(part, bytes + PartStart(Part), TableSize - PartStart(Part));
}

INT_PTR AttributeDialog::Run(HWND owner) {
    Owner = owner;
    AttributeDialog* const outer = Current;
    Current = this;
    const Hook keys(
        SetWindowsHookExW(WH_MSGFILTER, &AttributeDialog::WatchKeys, nullptr, GetCurrentThreadId()));
    const INT_PTR end = DialogBoxParamW(ResourceModule(), MAKEINTRESOURCEW(IDD_FRAME), owner,
                                        &AttributeDialog::Procedure, reinterpret_cast<LPARAM>(this));
    Current = outer;
    if (Error) {
        std::rethrow_exception(Error);
    }
    return end;
}

/// Ctrl+Tab and Ctrl+Page keys change the tab, wherever the focus is.
LRESULT CALLBACK AttributeDialog::WatchKeys(int code, WPARAM wParam, LPARAM lParam) {
    const auto& message = *reinterpret_cast<const MSG*>(lParam);
    const bool isOurs = code == MSGF_DIALOGBOX && message.message == WM_KEYDOWN && Current != nullptr &&
                        IsChild(Current->Window, message.hwnd) != FALSE && GetKeyState(VK_CONTROL) < 0;
    if (isOurs && (message.wParam == VK_TAB || message.wParam == VK_NEXT || message.wParam == VK_PRIOR)) {
        const bool isBackwards =
            message.wParam == VK_PRIOR || (message.wParam == VK_TAB && GetKeyState(VK_SHIFT) < 0);
        Current->StepPages(isBackwards ? -1 : 1);
        return TRUE;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

/// No error may pass through the system's own frames: it is kept until the dialog has ended.
INT_PTR CALLBACK AttributeDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<AttributeDialog*>(lParam)->Window = window;
    }
    auto* self = reinterpret_cast<AttributeDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (self == nullptr) {
        return FALSE;
    }
    try {
        return self->Answer(message, wParam, lParam);
    } catch (...) {
        self->Error = std::current_exception();
        EndDialog(window, Failed);
        return FALSE;
    }
}

INT_PTR AttributeDialog::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        if (!OnOpened()) {
            EndDialog(Window, Failed);
        }
        return TRUE;
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return TRUE;
    case WM_NOTIFY:
        if (reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(TCN_SELCHANGE)) {
            ShowPage(SelectedTab());
        }
        return TRUE;
    case WM_DRAWITEM: {
        const auto& request = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        Preview.Paint(request.hDC, request.rcItem);
        return TRUE;
    }
    default:
        return FALSE;
    }
}

bool AttributeDialog::OnOpened() {
    const unsigned kind = static_cast<unsigned>(Part) - static_cast<unsigned>(Level::Document);
    SetWindowTextW(Window, FormatText(IDS_DIALOG_TITLE, ResourceText(IDS_KIND + kind).c_str()).c_str());
    for (const SettingsTab& tab : SettingsTabs()) {
        if (tab.Part >= Part) {
            AddTab(tab);
        }
    }
    const bool isComplete =
        std::all_of(Pages.begin(), Pages.end(), [this](const auto& page) { return page->Create(Window); });
    if (!isComplete) {
        return false;
    }
    PlacePages();
    for (const auto& page : Pages) {
        page->Fill();
    }
    ShowPage(0);
    RefreshPreview();
    CenterOnOwner();
    return true;
}

void AttributeDialog::AddTab(const SettingsTab& tab) {
    std::wstring title = ResourceText(static_cast<unsigned>(tab.Title));
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = title.data();
    SendDlgItemMessageW(Window, IDC_TABS, TCM_INSERTITEMW, Pages.size(), reinterpret_cast<LPARAM>(&item));
    Pages.push_back(std::make_unique<SettingsPage>(tab, Table, [this] { OnSettingChanged(); }));
}

/// The pages fill the inside of the tab control, and follow it in the tab order.
void AttributeDialog::PlacePages() {
    const HWND tabs = GetDlgItem(Window, IDC_TABS);
    RECT inside{};
    GetWindowRect(tabs, &inside);
    MapWindowPoints(nullptr, Window, reinterpret_cast<POINT*>(&inside), 2);
    SendMessageW(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&inside));
    for (const auto& page : Pages) {
        SetWindowPos(page->Get(), tabs, inside.left, inside.top, inside.right - inside.left,
                     inside.bottom - inside.top, SWP_NOACTIVATE);
    }
}

void AttributeDialog::CenterOnOwner() {
    RECT frame{};
    GetWindowRect(Window, &frame);
    RECT desktop{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &desktop, 0);
    RECT around = desktop;
    if (Owner != nullptr) {
        GetWindowRect(Owner, &around);
    }
    const LONG width = frame.right - frame.left;
    const LONG height = frame.bottom - frame.top;
    const LONG left = (around.left + around.right - width) / 2;
    const LONG top = (around.top + around.bottom - height) / 2;
    SetWindowPos(Window, nullptr, std::max(desktop.left, std::min(left, desktop.right - width)),
                 std::max(desktop.top, std::min(top, desktop.bottom - height)), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void AttributeDialog::OnCommand(int control) {
    switch (control) {
    case IDOK:
        return OnOK();
    case IDCANCEL:
        EndDialog(Window, IDCANCEL);
        return;
    case IDC_RESET:
        return OnReset();
    case IDC_PREVIOUS:
        return GoToSheet(Preview.Current() - 1);
    case IDC_NEXT:
        return GoToSheet(Preview.Current() + 1);
    default:
        return;
    }
}

void AttributeDialog::OnOK() {
    for (std::size_t index = 0; index < Pages.size(); ++index) {
        if (!Accepts(index)) {
            return;
        }
    }
    EndDialog(Window, IDOK);
}

/// Otherwise says what is wrong and puts the focus there.
bool AttributeDialog::Accepts(std::size_t index) {
    const SettingsPage& page = *Pages[index];
    const Setting* refused = page.FindRefused();
    if (refused == nullptr) {
        return true;
    }
    SendDlgItemMessageW(Window, IDC_TABS, TCM_SETCURSEL, index, 0);
    ShowPage(index);
    const std::wstring label = page.LabelOf(*refused);
    const std::wstring text =
        refused->Type == SettingType::Words
            ? FormatText(IDS_WORDS_REFUSED, label.c_str())
            : FormatText(IDS_NUMBER_REFUSED, label.c_str(), NumberText(*refused, refused->Lowest).c_str(),
                         NumberText(*refused, refused->Highest).c_str());
    std::wstring title(static_cast<std::size_t>(GetWindowTextLengthW(Window)) + 1, L'\0');
    GetWindowTextW(Window, title.data(), static_cast<int>(title.size()));
    MessageBoxW(Window, text.c_str(), title.c_str(), MB_ICONEXCLAMATION);
    page.FocusOn(*refused);
    return false;
}

/// What a fresh document has, in this level's part.
void AttributeDialog::OnReset() {
    const AttributeTable fresh = FreshTable();
    const auto* bytes = reinterpret_cast<const unsigned char*>(&fresh);
    std::memcpy(PartBytes(), bytes + PartStart(Part), TableSize - PartStart(Part));
    for (const auto& page : Pages) {
        page->Fill();
    }
    RefreshPreview();
}

/// A setting of one page can give those of another a meaning.
void AttributeDialog::OnSettingChanged() {
    for (const auto& page : Pages) {
        page->RefreshEnabling();
    }
    RefreshPreview();
}

void AttributeDialog::ShowPage(std::size_t index) {
    for (std::size_t each = 0; each < Pages.size(); ++each) {
        ShowWindow(Pages[each]->Get(), each == index ? SW_SHOW : SW_HIDE);
    }
}

void AttributeDialog::StepPages(int step) {
    const auto count = static_cast<int>(Pages.size());
    const auto next = static_cast<std::size_t>((static_cast<int>(SelectedTab()) + step + count) % count);
    SendDlgItemMessageW(Window, IDC_TABS, TCM_SETCURSEL, next, 0);
    ShowPage(next);
    SetFocus(GetDlgItem(Window, IDC_TABS));
}

std::size_t AttributeDialog::SelectedTab() const {
    return static_cast<std::size_t>(SendDlgItemMessageW(Window, IDC_TABS, TCM_GETCURSEL, 0, 0));
}

void AttributeDialog::GoToSheet(int index) {
    Preview.Go(index);
    RefreshPreview();
}

void AttributeDialog::RefreshPreview() {
    Preview.Show(Table);
    SetDlgItemTextW(Window, IDC_SHEET,
                    FormatText(IDS_SHEET_OF, Preview.Current() + 1, Preview.Count()).c_str());
    const bool isFirst = Preview.Current() == 0;
    const bool isLast = Preview.Current() + 1 >= Preview.Count();
    const HWND focus = GetFocus();
    const HWND previous = GetDlgItem(Window, IDC_PREVIOUS);
    const HWND next = GetDlgItem(Window, IDC_NEXT);
    if ((isFirst && focus == previous) || (isLast && focus == next)) {
        SetFocus(isFirst ? next : previous); // A disabled button must not keep the focus.
    }
    EnableWindow(previous, !isFirst);
    EnableWindow(next, !isLast);
    InvalidateRect(GetDlgItem(Window, IDC_PREVIEW), nullptr, FALSE);
}

} // namespace pmx::sample
