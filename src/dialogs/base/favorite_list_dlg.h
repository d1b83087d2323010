#pragma once

#include "dialogs/base/pmx_dlg.h"
#include "platform/image_list.h"
#include "store/list_data.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>

namespace pmx {

/// The parts of a dialog's template that FavoriteListDlg works with. The spans must outlive the dialog.
struct FavoriteListLayout {
    ControlId List = 0;
    ControlId Name = 0; ///< the name box
    ControlId Icon = 0; ///< the current icon
    ControlId ChangeIcon = 0;
    ControlId Up = 0;
    ControlId Down = 0;
    ControlId WithoutRows = 0;                   ///< gets the focus when the last row is gone
    std::span<const ControlId> ForUserFavorites; ///< enabled for user favorites only
    std::span<const ControlId> ForRows;          ///< disabled in an empty list
};

/// A column of a list of favorites.
struct FavoriteListColumn {
    ResourceId Title = 0;
    int Width = 0; ///< pixels
};

/// A dialog around a list of favorites, in which the user renames favorites in place, reorders and deletes
/// them and changes their icons. All of that stays in memory until the user accepts.
///
/// A row of the list carries as its item data the index of its record in the dialog's list of favorites,
/// where records never move while the dialog is open: moving changes the order of the rows, deleting takes
/// the row away and marks the record.
///
/// A name is taken up when the name box loses the focus, and when Enter in it accepts the dialog. A name that
/// is refused keeps the dialog open, the row selected and the focus in the name box.
class FavoriteListDlg : public CPmxDlg {
protected:
    FavoriteListDlg(ResourceId dialogTemplate, const FavoriteListLayout& layout, WindowHandle parent,
                    const DialogServices& services) noexcept
        : CPmxDlg(dialogTemplate, parent, services), Layout(layout) {}

    // What each such dialog has of its own

    /// The record at that index, owned by the dialog's list; null for none and for an index outside.
    virtual CPMXTemplUIListData* GetRecord(std::int64_t index) const = 0;

    /// Puts the record into the cells of a row that has just been inserted.
    virtual void FillRow(int row, const CPMXTemplUIListData& record) = 0;

    /// Whether the user may change the record's icon. Otherwise the first icon is shown.
    virtual bool MayHaveIcon(const CPMXTemplUIListData& record) const = 0;

    /// Whether the record at that index may have this name.
    virtual bool IsNameFree(std::int64_t index, const std::string& name) const = 0;

    /// Gives a user favorite a name that has been checked.
    virtual void TakeName(int row, CPMXTemplUIListData& record, const std::string& name) = 0;

    /// A command found no record behind its row.
    virtual void OnRecordMissing() {}

    /// Stores what the user has accepted.
    virtual void Commit() = 0;

    // Rows

    ListControl& ListView() const;

    /// Makes the columns and the rows of the indices below `count`, and selects the first row. Shows nothing
    /// in the controls but that there is no row.
    void FillList(std::span<const FavoriteListColumn> columns, std::int64_t count);
    void InsertFavorite(int position, std::int64_t index);
    void AppendRow(std::int64_t index);

    /// The row that commands act on: the selection mark when that row is selected, else -1.
    int CurrentRow() const;

    /// As GetRecord; null also for a row outside the list.
    CPMXTemplUIListData* RecordOfRow(int row) const;

    /// Sets `EditName`, the icon and the enabling of the controls from the row's record.
    void RefreshControls(int row);

    /// Puts `EditName` into the name box.
    void TransferName() const;

    /// RefreshControls and TransferName.
    void ShowRow(int row);
    void ShowCurrentRow();

    /// After a command: the next key is one for the list, and the row that it starts from can be seen.
    void ReturnToList();

    // Handlers, for the tables of the dialogs

    void OnOK() override;
    void OnNameEntered();
    void OnNameLeft();
    void OnDelete();
    void OnUp();
    void OnDown();
    void OnChangeIcon();

    /// Handles a key that comes before the list acts on it, so the row that is shown is the one that an arrow
    /// key leads to.
    void HandleListKey(std::uint32_t virtualKey);

    // Messages; `Message` keeps the text

    void Warn(ResourceId id, std::initializer_list<TextArgument> arguments = {});
    void Fail(ResourceId id);

    std::string EditName; ///< bound to the name box
    std::unique_ptr<ImageList> IconImages;
    std::string Message; ///< the text of the last message
    int EditRow = -1;    ///< the row whose name is in the name box

private:
    bool Rename();
    void KeepName(const CPMXTemplUIListData& record);
    std::string EnteredName(const CPMXTemplUIListData& record) const;
    void RefuseName(ResourceId id);
    void MoveOver(int row, int neighbour);
    void MoveRow(int from, int to);
    void SelectRow(int row);
    void EnableRowControl(ControlId id, bool enabled);
    void EnableMoving(int row);
    void DisableRowControls();

    const FavoriteListLayout& Layout;
};

} // namespace pmx
