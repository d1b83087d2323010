#pragma once

#include "drawing/gdi_plus.h"
#include "propui/win32/settings_page.h"
#include "propui/win32/sheet_preview.h"

#include <exception>
#include <memory>
#include <vector>

#include <windows.h>

namespace pmx::sample {

/// The print-attribute dialog for one level: tabs of settings, and a picture of the sheets that they make.
class AttributeDialog {
public:
    /// Works on a copy of `part`, the level's part of a table.
    AttributeDialog(Level level, const unsigned char* part);
    ~AttributeDialog() = default;
    AttributeDialog(const AttributeDialog&) = delete;
    AttributeDialog& operator=(const AttributeDialog&) = delete;

    /// Runs the dialog: IDOK, IDCANCEL, or anything else when it could not be shown.
    INT_PTR Run(HWND owner);

    /// Copies the level's part out.
    void CopyPart(unsigned char* part) const;

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static LRESULT CALLBACK WatchKeys(int code, WPARAM wParam, LPARAM lParam);

    INT_PTR Answer(UINT message, WPARAM wParam, LPARAM lParam);
    bool OnOpened();
    void AddTab(const SettingsTab& tab);
    void PlacePages();
    void CenterOnOwner();
    void OnCommand(int control);
    void OnOK();
    void OnReset();
    void OnSettingChanged();
    void ShowPage(std::size_t index);
    void StepPages(int step);
    void GoToSheet(int index);
    void RefreshPreview();
    bool Accepts(std::size_t index);
    std::size_t SelectedTab() const;

    unsigned char* PartBytes() { return reinterpret_cast<unsigned char*>(&Table) + PartStart(Part); }

    static AttributeDialog* Current; ///< the one that runs; keys of its message loop are its

    const Level Part;
    AttributeTable Table = FreshTable();
    DrawingService Drawing;
    SheetPreview Preview;
    std::vector<std::unique_ptr<SettingsPage>> Pages;
    std::exception_ptr Error;
    HWND Owner = nullptr;
    HWND Window = nullptr;
};

} // namespace pmx::sample
