#include "dialogs/base/favorite_list_dlg.h"

#include "dialogs/base/favorite_icons.h"

namespace pmx {

ListControl& FavoriteListDlg::ListView() const {
    return Window().ListOf(Layout.List);
}

void FavoriteListDlg::FillList(std::span<const FavoriteListColumn> columns, std::int64_t count) {
    ListControl& list = ListView();
    list.SetFullRowSelection(true);
    int position = 0;
    for (const FavoriteListColumn& column : columns) {
        list.InsertColumn(position++, StringOf(column.Title), column.Width);
    }
    {
        const ListRedrawPause pause(list);
        list.Reserve(static_cast<int>(count));
        for (std::int64_t index = 0; index < count; ++index) {
            AppendRow(index);
        }
    }
    if (list.RowCount() > 0) {
        list.Select(0);
    } else {
        DisableRowControls();
    }
}

void FavoriteListDlg::InsertFavorite(int position, std::int64_t index) {
    if (const CPMXTemplUIListData* const record = GetRecord(index)) {
        FillRow(ListView().InsertRow(position, index), *record);
    }
}

void FavoriteListDlg::AppendRow(std::int64_t index) {
    InsertFavorite(ListView().RowCount(), index);
}

void FavoriteListDlg::MoveRow(int from, int to) {
    ListControl& list = ListView();
    const std::int64_t index = list.RowData(from);
    const ListRedrawPause pause(list);
    list.DeleteRow(from);
    InsertFavorite(to, index);
}

int FavoriteListDlg::CurrentRow() const {
    const ListControl& list = ListView();
    const int mark = list.SelectionMark();
    return list.IsSelected(mark) ? mark : -1;
}

CPMXTemplUIListData* FavoriteListDlg::RecordOfRow(int row) const {
    return GetRecord(ListView().RowData(row));
}

void FavoriteListDlg::RefreshControls(int row) {
    const CPMXTemplUIListData* const record = RecordOfRow(row);
    if (record == nullptr) {
        return;
    }
    EditName = record->GetName();
    for (const ControlId id : Layout.ForUserFavorites) {
        EnableRowControl(id, record->GetStandard() == 0);
    }
    EnableMoving(row);
    const bool mayHaveIcon = MayHaveIcon(*record);
    EnableRowControl(Layout.ChangeIcon, mayHaveIcon);
    EnableRowControl(Layout.Icon, true);
    constexpr std::int64_t FirstIcon = 0;
    ShowFavoriteIcon(Window(), Layout.Icon, IconImages.get(),
                     mayHaveIcon ? record->GetIconIndex() : FirstIcon);
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
    EnableRowControl(Layout.Down, row != ListView().RowCount() - 1);
}

void FavoriteListDlg::DisableRowControls() {
    for (const ControlId id : Layout.ForRows) {
        EnableRowControl(id, false);
    }
}

void FavoriteListDlg::TransferName() const {
    Window().SetText(Layout.Name, EditName);
}

void FavoriteListDlg::ShowRow(int row) {
    RefreshControls(row);
    TransferName();
}

void FavoriteListDlg::ShowCurrentRow() {
    const int row = CurrentRow();
    if (row >= 0) {
        ShowRow(row);
    }
}

void FavoriteListDlg::SelectRow(int row) {
    ListView().Select(row);
    ListView().EnsureVisible(row);
}

void FavoriteListDlg::ReturnToList() {
    ListView().EnsureVisible(ListView().SelectionMark());
    Window().Focus(Layout.List);
}

void FavoriteListDlg::Warn(ResourceId id, std::initializer_list<TextArgument> arguments) {
    Message = FormatString(id, arguments);
    ShowText(Message, MessageIcon::Exclamation);
}

void FavoriteListDlg::Fail(ResourceId id) {
    Message = StringOf(id);
    ShowText(Message, MessageIcon::Stop);
}

} // namespace pmx
