#pragma once

#include "dialogs/base/favorite_row.h"
#include "dialogs/base/pmx_dlg.h"
#include "platform/image_list.h"
#include "store/list_data_array.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace pmx {

/// A column of a list of favorites.
struct FavoriteListColumn {
    ResourceId Title = 0;
    int Width = 0;                            ///< pixels
    std::string FavoriteRow::*Text = nullptr; ///< what it shows; null for the picture in front of the row
};

/// The parts of a dialog's template that FavoriteListDlg works with. The spans must outlive the dialog.
struct FavoriteListLayout {
    ControlId List = 0;
    std::span<const FavoriteListColumn> Columns;
    ControlId Name = 0; ///< the name box
    ControlId Icon = 0; ///< the current icon
    ControlId ChangeIcon = 0;
    ControlId Up = 0;
    ControlId Down = 0;
    ControlId WithoutRows = 0;                   ///< gets the focus when the last row is gone
    std::span<const ControlId> ForUserFavorites; ///< enabled for user favorites only
    std::span<const ControlId> ForRows;          ///< disabled in an empty list

    /// Where the focus goes on from a button that gets disabled: to the next of its group that is enabled.
    std::span<const std::span<const ControlId>> ButtonGroups;
};

/// A dialog around a list of favorites, in which the user renames favorites in place, reorders and deletes
/// them and changes their icons. All of that stays in memory until the user accepts.
///
/// The dialog knows which favorite stands in which row; the list view only shows it. Records never move in the
/// dialog's list of favorites while the dialog is open: moving changes the order of the rows, deleting takes the
/// row away and marks the record.
///
/// A name is taken up when the focus moves on from the name box, and when Enter in it accepts the dialog, unless
/// the box is as the dialog filled it. A name that is refused keeps the dialog open, the row selected and the
/// focus in the name box.
///
/// Commands leave the focus on the button that was pressed, so that pressing it again does the same again.
class FavoriteListDlg : public CPmxDlg {
protected:
    FavoriteListDlg(ResourceId dialogTemplate, const FavoriteListLayout& layout, WindowHandle parent,
                    const DialogServices& services) noexcept
        : CPmxDlg(dialogTemplate, parent, services), Layout(layout) {}

    // What each such dialog has of its own

    /// The dialog's list.
    virtual const CPMXTemplUIListDataArray& GetFavorites() const = 0;

    /// Whether the user may change the record's icon. Otherwise the first icon is shown.
    virtual bool MayHaveIcon(const CPMXTemplUIListData& record) const = 0;

    /// Gives the user favorite of a row a name that has been checked. False, after a message, when it keeps the
    /// one that it had.
    virtual bool TakeName(int row, const std::string& name) = 0;

    /// Stores what the user has accepted.
    virtual void Commit() = 0;

    // Rows

    ListControl& ListView() const;

    /// Makes the columns and a row for each record, and selects the first row. Shows nothing in the controls but
    /// that there is no row.
    void FillList();

    /// Shows in a row what there is to say of its favorite.
    void DrawRow(int row);

    /// Adds a row for the record at that index, and scrolls it into view.
    void AppendRow(std::int64_t index);

    int RowCount() const { return static_cast<int>(Rows.size()); }

    /// Where the favorite of a row stands in the dialog's list.
    std::int64_t IndexOf(int row) const { return Rows[static_cast<std::size_t>(row)]; }
    CPMXTemplUIListData& FavoriteOf(int row) const { return GetFavorites().At(IndexOf(row)); }

    /// The favorites in the order of their rows.
    std::vector<const CPMXTemplUIListData*> FavoritesInRows() const;

    /// The row that commands act on; -1 when none is selected.
    int CurrentRow() const { return ListView().SelectedRow(); }

    /// The row that the controls show, the name box among them: the one that was selected last. -1 for none.
    int ShownRow() const { return Shown; }

    /// Shows the row's favorite in the name box, the icon and the enabling of the controls.
    void ShowRow(int row);

    /// After a command: the row that it acted on can be seen.
    void KeepInView() const { ListView().EnsureVisible(Shown); }

    /// Handles a key that both dialogs know.
    void HandleListKey(const ListKey& key);

    // Handlers, for the tables of the dialogs

    void OnOK() override;
    void OnSelectionChanged();
    void OnTyped(const ControlEvent& event);
    void OnRowDragged(const ControlEvent& event);
    void OnNameBoxLeft();
    void OnDelete();
    void OnUp();
    void OnDown();
    void OnChangeIcon();

    std::unique_ptr<ImageList> IconImages;

private:
    bool Rename();
    void ShowName(const std::string& name);
    void RefuseName(ResourceId id);
    void MoveRow(int from, int to);
    void SelectRow(int row);
    int FindTyped(const std::string& typed) const;
    void EnableRowControl(ControlId id, bool enabled);
    ControlId NextOfGroup(ControlId id) const;
    void EnableMoving(int row);
    void DisableRowControls();

    const FavoriteListLayout& Layout;
    std::vector<std::int64_t> Rows; ///< the index of each row's record
    int Shown = -1;
    std::string ShownName; ///< what the name box holds as long as the user does not change it
};

} // namespace pmx
