#pragma once

#include "platform/list_control.h"

#include <windows.h>

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

    void SetFullRowSelection(bool on) override;
    void SetStateImages(const ImageList& images) override;
    void SetLargeImages(const ImageList& images) override;
    void InsertColumn(int column, const std::string& title, int width) override;
    int InsertRow(int position, std::int64_t data, int image) override;
    void DeleteRow(int row) override;
    void Reserve(int count) override;
    int RowCount() const override;
    std::int64_t RowData(int row) const override;
    std::string Cell(int row, int column) const override;
    void SetCell(int row, int column, const std::string& text) override;
    int StateImage(int row) const override;
    void SetStateImage(int row, int image) override;
    int SelectionMark() const override;
    void SetSelectionMark(int row) override;
    bool IsSelected(int row) const override;
    void Select(int row) override;
    void DeselectAll() override;
    void EnsureVisible(int row) override;
    ListHit HitOfMessage() const override;
    void SetRedraw(bool on) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    void Detach();
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    bool Has(int row) const { return row >= 0 && row < RowCount(); }

    HWND Window;
    WNDPROC Former = nullptr; ///< the control's own procedure
    std::uint32_t LastScanCode = 0;
};

} // namespace pmx::win32
