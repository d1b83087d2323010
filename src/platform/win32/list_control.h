#pragma once

#include "platform/list_control.h"

#include <windows.h>

#include <commctrl.h>

namespace pmx::win32 {

/// A list view of a dialog, not owned.
class WindowsList final : public ListControl {
public:
    /// Without a window, every operation does nothing.
    explicit WindowsList(HWND window);
    WindowsList(const WindowsList&) = delete;
    WindowsList& operator=(const WindowsList&) = delete;
    ~WindowsList() override;

    /// Takes the image lists away from the control, which would destroy them with itself.
    void ReleaseImages() const;

    /// The scan code of the key that the list is handling, extended keys with 0xE0 before it.
    std::uint32_t ScanCode() const { return LastScanCode; }

    /// Whether the selection changes by an operation of this class, and not by the user.
    bool IsChanging() const { return Changing; }

    void SetFullRowSelection(bool on) override;
    void SetStateImages(const ImageList& images) override;
    void SetLargeImages(const ImageList& images) override;
    void InsertColumn(int column, const std::string& title, int width) override;
    void InsertRow(int position, int image) override;
    void DeleteRow(int row) override;
    void Reserve(int count) override;
    void SetCell(int row, int column, const std::string& text) override;
    void SetStateImage(int row, int image) override;
    int SelectedRow() const override;
    void Select(int row) override;
    void EnsureVisible(int row) override;
    ListHit HitOfMessage() const override;
    void SetRedraw(bool on) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    void Detach();
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    void Change(UINT message, WPARAM wParam, LPARAM lParam);
    bool Has(int row) const { return row >= 0 && row < static_cast<int>(Send(LVM_GETITEMCOUNT)); }

    HWND Window;
    WNDPROC Former = nullptr; ///< the control's own procedure
    std::uint32_t LastScanCode = 0;
    bool Changing = false;
};

} // namespace pmx::win32
