#pragma once

#include "propui/settings.h"

#include <functional>
#include <string>

#include <windows.h>

namespace pmx::sample {

/// One tab of the dialog: the controls of its settings, as a window inside the dialog's. The table is the
/// dialog's; it follows every change that the user makes, and nothing else is written to it.
class SettingsPage {
public:
    /// `tab` and `table` outlive the page. `changed` is called after each change of the table.
    SettingsPage(const SettingsTab& tab, AttributeTable& table, std::function<void()> changed);
    ~SettingsPage() = default;
    SettingsPage(const SettingsPage&) = delete;
    SettingsPage& operator=(const SettingsPage&) = delete;

    /// Makes the window, hidden. It goes with its parent.
    bool Create(HWND parent);
    HWND Get() const { return Window; }

    /// Shows what the table holds.
    void Fill();
    /// Enables the controls that have a meaning.
    void RefreshEnabling();

    /// The first setting whose control holds something that cannot be taken over; null when there is none.
    const Setting* FindRefused() const;
    /// Puts the focus on the setting's control, its content selected.
    void FocusOn(const Setting& setting) const;
    /// The setting's label, without the access key and the colon.
    std::wstring LabelOf(const Setting& setting) const;

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    INT_PTR Answer(UINT message, WPARAM wParam, LPARAM lParam);
    void OnCommand(int control, int notification);
    void OnSpin(NMHDR& header) const;
    void Prepare(const Setting& setting);
    void AddSpin(HWND box) const;
    void Show(const Setting& setting, const AttributeTable& limited);
    bool TakeOver(const Setting& setting);
    bool TakeOverWords(const Setting& setting);
    bool IsAcceptable(const Setting& setting) const;
    int Selected(const Setting& setting, int otherwise) const;
    bool ReadNumber(const Setting& setting, int& value) const;
    std::wstring TextOf(int control) const;
    const Setting* FindSetting(int control) const;

    const SettingsTab& Tab;
    AttributeTable& Table;
    std::function<void()> Changed;
    HWND Window = nullptr;
    bool IsFilling = false;
};

} // namespace pmx::sample
