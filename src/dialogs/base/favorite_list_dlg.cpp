#include "dialogs/base/favorite_list_dlg.h"

#include "dialogs/base/favorite_icons.h"

#include <algorithm>
#include <numeric>

namespace pmx {

ListControl& FavoriteListDlg::ListView() const {
    return Window().ListOf(Layout.List);
}

void FavoriteListDlg::FillList() {
    ListControl& list = ListView();
    list.SetFullRowSelection(true);
    list.AllowDragging();
    int position = 0;
    for (const FavoriteListColumn& column : Layout.Columns) {
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
            DrawRow(row);
        }
    }
    if (RowCount() > 0) {
        list.Select(0);
    } else {
        DisableRowControls();
    }
}

void FavoriteListDlg::DrawRow(int row) {
    const FavoriteRow content = FormatRow(FavoriteOf(row), ServicesInUse().Strings);
    int position = 0;
    for (const FavoriteListColumn& column : Layout.Columns) {
        if (column.Text != nullptr) {
            ListView().SetCell(row, position, content.*column.Text);
        } else {
            ListView().SetStateImage(row, static_cast<int>(content.Mark));
        }
        ++position;
    }
}

void FavoriteListDlg::AppendRow(std::int64_t index) {
    const int row = RowCount();
    Rows.push_back(index);
    ListView().InsertRow(row);
    DrawRow(row);
    ListView().EnsureVisible(row);
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
        DrawRow(to);
    }
    SelectRow(to);
    ShowRow(to);
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

/// A button that is about to be disabled leaves the focus to one where the next key does no harm, instead of to
/// the next control in tab order.
void FavoriteListDlg::EnableRowControl(ControlId id, bool enabled) {
    if (!enabled && Window().FocusedControl() == id) {
        Window().Focus(NextOfGroup(id));
    }
    Window().Enable(id, enabled);
}

ControlId FavoriteListDlg::NextOfGroup(ControlId id) const {
    for (const std::span<const ControlId> group : Layout.ButtonGroups) {
        const auto place = std::find(group.begin(), group.end(), id) - group.begin();
        const auto size = static_cast<std::ptrdiff_t>(group.size());
        for (std::ptrdiff_t step = 1; place < size && step < size; ++step) {
            const ControlId next = group[static_cast<std::size_t>((place + step) % size)];
            if (Window().IsEnabled(next)) {
                return next;
            }
        }
    }
    return Layout.WithoutRows;
}

void FavoriteListDlg::EnableMoving(int row) {
    const bool mayGoUp = row != 0;
    const bool mayGoDown = row != RowCount() - 1;
    // First the one that may get the focus from the other.
    EnableRowControl(mayGoUp ? Layout.Up : Layout.Down, mayGoUp || mayGoDown);
    EnableRowControl(Layout.Up, mayGoUp);
    EnableRowControl(Layout.Down, mayGoDown);
}

void FavoriteListDlg::DisableRowControls() {
    for (const ControlId id : Layout.ForRows) {
        EnableRowControl(id, false);
    }
}

/// What is in the box already is not set anew, which would move the caret. The box may show a name in other
/// bytes, or its beginning only.
void FavoriteListDlg::ShowName(const std::string& name) {
    if (Window().TextOf(Layout.Name) != name) {
        Window().SetText(Layout.Name, name);
    }
    ShownName = Window().TextOf(Layout.Name);
}

void FavoriteListDlg::SelectRow(int row) {
    ListView().Select(row);
    ListView().EnsureVisible(row);
}

} // namespace pmx
