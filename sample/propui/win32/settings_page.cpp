#include "propui/win32/settings_page.h"

#include "ui/text.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <commctrl.h>
#include <uxtheme.h>
#include <windowsx.h>

namespace pmx::sample {

namespace {

/// Texts of the table are always in this code page.
constexpr UINT TableCodePage = 932;

std::wstring FromTable(std::string_view words) {
    const int size = static_cast<int>(words.size());
    std::wstring wide(words.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(TableCodePage, 0, words.data(), size, wide.data(), size)));
    return wide;
}

std::string ForTable(std::wstring_view words) {
    const int size = static_cast<int>(words.size());
    std::string narrow(words.size() * 2, '\0');
    narrow.resize(
        static_cast<std::size_t>(WideCharToMultiByte(TableCodePage, 0, words.data(), size, narrow.data(),
                                                     static_cast<int>(narrow.size()), nullptr, nullptr)));
    return narrow;
}

/// Runs with a flag set.
class Raised {
public:
    explicit Raised(bool& flag) : Flag(flag) { Flag = true; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    ~Raised() { Flag = false; }

private:
    bool& Flag;
};

} // namespace

SettingsPage::SettingsPage(const SettingsTab& tab, AttributeTable& table, std::function<void()> changed)
    : Tab(tab), Table(table), Changed(std::move(changed)) {}

bool SettingsPage::Create(HWND parent) {
    CreateDialogParamW(ResourceModule(), MAKEINTRESOURCEW(Tab.Template), parent, &SettingsPage::Procedure,
                       reinterpret_cast<LPARAM>(this));
    return Window != nullptr;
}

INT_PTR CALLBACK SettingsPage::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<SettingsPage*>(lParam)->Window = window;
    }
    auto* self = reinterpret_cast<SettingsPage*>(GetWindowLongPtrW(window, DWLP_USER));
    return self == nullptr ? FALSE : self->Answer(message, wParam, lParam);
}

INT_PTR SettingsPage::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: {
        EnableThemeDialogTexture(Window, ETDT_ENABLETAB);
        const Raised filling(IsFilling);
        std::for_each(Tab.Settings.begin(), Tab.Settings.end(), [this](const auto& each) { Prepare(each); });
        return FALSE; // The focus stays where the dialog has it.
    }
    case WM_COMMAND:
        OnCommand(LOWORD(wParam), HIWORD(wParam));
        return TRUE;
    case WM_NOTIFY:
        OnSpin(*reinterpret_cast<NMHDR*>(lParam));
        return TRUE;
    default:
        return FALSE;
    }
}

void SettingsPage::OnCommand(int control, int notification) {
    const bool isChange =
        notification == CBN_SELCHANGE || notification == BN_CLICKED || notification == EN_CHANGE;
    const Setting* setting = FindSetting(control);
    if (IsFilling || !isChange || setting == nullptr || !TakeOver(*setting)) {
        return;
    }
    RefreshEnabling();
    Changed();
}

/// The arrows of a number's box: whole units, within the setting's range.
void SettingsPage::OnSpin(NMHDR& header) const {
    if (header.code != static_cast<UINT>(UDN_DELTAPOS)) {
        return;
    }
    const auto& step = reinterpret_cast<const NMUPDOWN&>(header);
    const auto box = reinterpret_cast<HWND>(SendMessageW(header.hwndFrom, UDM_GETBUDDY, 0, 0));
    const Setting* setting = FindSetting(GetDlgCtrlID(box));
    if (setting == nullptr) {
        return;
    }
    int value = setting->Get(Limited(Table));
    ReadNumber(*setting, value);
    constexpr int Ten = 10;
    const int unit = setting->Decimals == 0 ? 1 : Ten;
    value = std::clamp(value - step.iDelta * unit, setting->Lowest, setting->Highest);
    SetWindowTextW(box, FromTable(ShownNumber(*setting, value)).c_str());
}

void SettingsPage::Prepare(const Setting& setting) {
    const HWND control = GetDlgItem(Window, setting.Control);
    switch (setting.Type) {
    case SettingType::Choice:
        for (int value = 0; value <= setting.Highest; ++value) {
            ComboBox_AddString(control, ResourceText(static_cast<unsigned>(setting.Detail + value)).c_str());
        }
        ComboBox_SetMinVisible(control, setting.Highest + 1);
        return;
    case SettingType::Number: {
        constexpr int LongestNumber = 8;
        Edit_LimitText(control, LongestNumber);
        return AddSpin(control);
    }
    case SettingType::Words:
        Edit_LimitText(control, setting.Detail);
        return;
    case SettingType::Flag:
        return;
    }
}

/// Beside the box, and next to it in the order of windows, so that it goes with it.
void SettingsPage::AddSpin(HWND box) const {
    RECT place{};
    GetWindowRect(box, &place);
    MapWindowPoints(nullptr, Window, reinterpret_cast<POINT*>(&place), 2);
    const int width = GetSystemMetrics(SM_CXVSCROLL);
    const HWND spin =
        CreateWindowExW(0, UPDOWN_CLASSW, nullptr, WS_CHILD | WS_VISIBLE | UDS_ARROWKEYS, place.right,
                        place.top, width, place.bottom - place.top, Window, nullptr, OwnModule(), nullptr);
    SetWindowPos(spin, box, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SendMessageW(spin, UDM_SETBUDDY, reinterpret_cast<WPARAM>(box), 0);
    SendMessageW(spin, UDM_SETRANGE32, static_cast<WPARAM>(-UD_MAXVAL), UD_MAXVAL);
}

void SettingsPage::Fill() {
    const Raised filling(IsFilling);
    const AttributeTable limited = Limited(Table);
    std::for_each(Tab.Settings.begin(), Tab.Settings.end(), [&](const auto& each) { Show(each, limited); });
    RefreshEnabling();
}

void SettingsPage::Show(const Setting& setting, const AttributeTable& limited) {
    const HWND control = GetDlgItem(Window, setting.Control);
    switch (setting.Type) {
    case SettingType::Choice:
        ComboBox_SetCurSel(control, setting.Get(limited));
        return;
    case SettingType::Flag:
        Button_SetCheck(control, setting.Get(limited));
        return;
    case SettingType::Number:
        SetWindowTextW(control, FromTable(ShownNumber(setting, setting.Get(limited))).c_str());
        return;
    case SettingType::Words:
        SetWindowTextW(control, FromTable(setting.GetWords(limited)).c_str());
        return;
    }
}

void SettingsPage::RefreshEnabling() {
    for (const Setting& setting : Tab.Settings) {
        const bool isUsed = setting.IsUsed == nullptr || setting.IsUsed(Table);
        const HWND control = GetDlgItem(Window, setting.Control);
        EnableWindow(control, isUsed);
        if (setting.Type == SettingType::Number) {
            EnableWindow(GetWindow(control, GW_HWNDNEXT), isUsed); // Its arrows.
        }
    }
}

/// True when the table has changed. What is shown already leaves it alone, so that a value which this version
/// does not know survives.
bool SettingsPage::TakeOver(const Setting& setting) {
    if (setting.Type == SettingType::Words) {
        return TakeOverWords(setting);
    }
    const int former = setting.Get(Limited(Table));
    int value = Selected(setting, former);
    if (setting.Type == SettingType::Number && (!ReadNumber(setting, value) || !IsAcceptable(setting))) {
        return false;
    }
    if (value == former) {
        return false;
    }
    setting.Set(Table, value);
    return true;
}

bool SettingsPage::TakeOverWords(const Setting& setting) {
    const std::string words = ForTable(TextOf(setting.Control));
    return words != setting.GetWords(Table) && setting.SetWords(Table, words);
}

int SettingsPage::Selected(const Setting& setting, int otherwise) const {
    const HWND control = GetDlgItem(Window, setting.Control);
    if (setting.Type == SettingType::Flag) {
        return Button_GetCheck(control) == BST_CHECKED ? 1 : 0;
    }
    const int selected = setting.Type == SettingType::Choice ? ComboBox_GetCurSel(control) : CB_ERR;
    return selected == CB_ERR ? otherwise : selected;
}

bool SettingsPage::ReadNumber(const Setting& setting, int& value) const {
    return ParseNumber(setting, ForTable(TextOf(setting.Control)), value);
}

bool SettingsPage::IsAcceptable(const Setting& setting) const {
    if (setting.Type == SettingType::Words) {
        return ForTable(TextOf(setting.Control)).size() <= static_cast<std::size_t>(setting.Detail);
    }
    int value = setting.Lowest;
    return setting.Type != SettingType::Number ||
           (ReadNumber(setting, value) && value >= setting.Lowest && value <= setting.Highest);
}

/// A control that has no meaning keeps its user from nothing.
const Setting* SettingsPage::FindRefused() const {
    const auto found = std::find_if(Tab.Settings.begin(), Tab.Settings.end(), [this](const Setting& setting) {
        return IsWindowEnabled(GetDlgItem(Window, setting.Control)) != FALSE && !IsAcceptable(setting);
    });
    return found == Tab.Settings.end() ? nullptr : &*found;
}

void SettingsPage::FocusOn(const Setting& setting) const {
    const HWND control = GetDlgItem(Window, setting.Control);
    SetFocus(control);
    SendMessageW(control, EM_SETSEL, 0, -1);
}

std::wstring SettingsPage::LabelOf(const Setting& setting) const {
    const HWND label = GetWindow(GetDlgItem(Window, setting.Control), GW_HWNDPREV);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(label)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(label, text.data(), static_cast<int>(text.size()))));
    if (const auto key = text.find(L"(&"); key != std::wstring::npos) {
        text.resize(key);
    }
    std::erase_if(text, [](wchar_t character) { return character == L'&' || character == L':'; });
    return text;
}

std::wstring SettingsPage::TextOf(int control) const {
    const HWND box = GetDlgItem(Window, control);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(box)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(box, text.data(), static_cast<int>(text.size()))));
    return text;
}

const Setting* SettingsPage::FindSetting(int control) const {
    const auto found = std::find_if(Tab.Settings.begin(), Tab.Settings.end(),
                                    [control](const Setting& setting) { return setting.Control == control; });
    return found == Tab.Settings.end() ? nullptr : &*found;
}

} // namespace pmx::sample
