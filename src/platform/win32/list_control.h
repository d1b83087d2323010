#pragma once

#include "platform/dialog_window.h"
#include "platform/list_control.h"
#include "platform/win32/heading_tips.h"
#include "platform/win32/row_drag.h"

#include <functional>
#include <string>

#include <windows.h>

#include <commctrl.h>

namespace pmx::win32 {

/// A list view of a dialog, not owned.
class WindowsList final : public ListControl {
public:
    /// Gets the events of the list, without the number of the control.
    using Listener = std::function<void(ControlEvent)>;

    /// Without a window, every operation does nothing.
    explicit WindowsList(HWND window, Listener listener = {});
    WindowsList(const WindowsList&) = delete;
    WindowsList& operator=(const WindowsList&) = delete;
    ~WindowsList() override;

    /// Takes the image lists away from the control, which would destroy them with itself.
    void ReleaseImages() const;

    /// Turns a notification of the control into an event.
    void HandleNotification(const NMHDR& notification);

    /// True when a row is being dragged, which then ends: a key is to do no more than that.
    bool CancelDrag();

    void SetFullRowSelection(bool on) override;
    void AllowDragging() override { MayDrag = true; }
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
    bool HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void Type(wchar_t character);
    void HandleChange(const NMLISTVIEW& change);
    void HandleKey(const NMLVKEYDOWN& key);
    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    void Change(UINT message, WPARAM wParam, LPARAM lParam);
    bool Has(int row) const { return row >= 0 && row < static_cast<int>(Send(LVM_GETITEMCOUNT)); }

    HWND Window;
    WNDPROC Former = nullptr; ///< the control's own procedure
    Listener Tell;
    RowDrag Drag;
    bool MayDrag = false;
    bool Changing = false; ///< the selection changes by an operation of this class, not by the user
    std::uint32_t LastScanCode =
        0;              ///< of the key that the list is handling, extended keys with 0xE0 before it
    std::wstring Typed; ///< since the user last paused or did something else
    DWORD TypedAt = 0;
    HeadingTips Tips;
};

} // namespace pmx::win32
