#include "dialogs/base/favorite_list_dlg.h"

#include "dialogs/base/favorite_icons.h"

#include <algorithm>
#include <numeric>

namespace pmx {

ListControl& FavoriteListDlg::ListView() const {
    return Window().ListOf(Layout.List);
}

void FavoriteListDlg::FillList(std::span<const FavoriteListColumn> columns) {
    ListControl& list = ListView();
    list.SetFullRowSelection(true);
    int position = 0;
    for (const FavoriteListColumn& column : columns) {
        list.InsertColumn(position++, StringOf(column.Title), column.Width);
    }
    Rows.resize(static_cast<std::size_t>(GetFavorites().GetSize()));
    std::iota(Rows.begin(), Rows.end(), 0);
    Shown = -1;
    {
        const ListRedrawPause pause(list);
        list.Reserve(RowCount());
        for (int row = 0; row < RowCount(); ++row) {
            list.InsertRow(row);
            DrawRow(row, FavoriteOf(row));
        }
    }
    if (RowCount() > 0) {
        list.Select(0);
    } else {
        DisableRowControls();
    }
}

void FavoriteListDlg::AppendRow(std::int64_t index) {
    const int row = RowCount();
    Rows.push_back(index);
    ListView().InsertRow(row);
    DrawRow(row, FavoriteOf(row));
    if (Shown >= 0) {
        EnableMoving(Shown);
    }
}

/// Moves a row to another place and selects it.
void FavoriteListDlg::MoveRow(int from, int to) {
    const auto moved = Rows.begin() + from;
    const auto target = Rows.begin() + to;
    if (from < to) {
        std::rotate(moved, moved + 1, target + 1);
    } else {
        std::rotate(target, moved, moved + 1);
    }
    {
        const ListRedrawPause pause(ListView());
        ListView().DeleteRow(from);
        ListView().InsertRow(to);
        DrawRow(to, FavoriteOf(to));
    }
    SelectRow(to);
    Shown = to;
    EnableMoving(to);
}

std::vector<const CPMXTemplUIListData*> FavoriteListDlg::FavoritesInRows() const {
    std::vector<const CPMXTemplUIListData*> favorites;
    favorites.reserve(Rows.size());
    for (int row = 0; row < RowCount(); ++row) {
        favorites.push_back(&FavoriteOf(row));
    }
    return favorites;
}

void FavoriteListDlg::ShowRow(int row) {
    const CPMXTemplUIListData& record = FavoriteOf(row);
    Shown = row;
    ShowName(record.GetName());
    for (const ControlId id : Layout.ForUserFavorites) {
        EnableRowControl(id, record.GetStandard() == 0);
    }
    EnableMoving(row);
    const bool mayHaveIcon = MayHaveIcon(record);
    EnableRowControl(Layout.ChangeIcon, mayHaveIcon);
    EnableRowControl(Layout.Icon, true);
    constexpr std::int64_t FirstIcon = 0;
    ShowFavoriteIcon(Window(), Layout.Icon, IconImages.get(),
                     mayHaveIcon ? record.GetIconIndex() : FirstIcon);
}

/// A control that is about to be disabled leaves the focus to the list, where every key means something,
/// instead of to the next control in tab order.
void FavoriteListDlg::EnableRowControl(ControlId id, bool enabled) {
    if (!enabled && Window().FocusedControl() == id) {
        Window().Focus(Layout.List);
    }
    Window().Enable(id, enabled);
}

void FavoriteListDlg::EnableMoving(int row) {
    EnableRowControl(Layout.Up, row != 0);
    EnableRowControl(Layout.Down, row != RowCount() - 1);
}

void FavoriteListDlg::DisableRowControls() {
    for (const ControlId id : Layout.ForRows) {
        EnableRowControl(id, false);
    }
}

void FavoriteListDlg::ShowName(const std::string& name) const {
    Window().SetText(Layout.Name, name);
}

void FavoriteListDlg::SelectRow(int row) {
    ListView().Select(row);
    ListView().EnsureVisible(row);
}

void FavoriteListDlg::ReturnToList() {
    ListView().EnsureVisible(Shown);
    Window().Focus(Layout.List);
}

} // namespace pmx
