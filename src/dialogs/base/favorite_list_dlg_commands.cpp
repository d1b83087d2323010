#include "dialogs/base/favorite_list_dlg.h"
#include "dialogs/base/icon_dlg.h"
#include "platform/text.h"
#include "res/ids.h"

#include <algorithm>

namespace pmx {

void FavoriteListDlg::OnOK() {
    // Enter leaves the name box without its losing the focus.
    if (Window().FocusedControl() == Layout.Name && !Rename()) {
        return;
    }
    Commit();
    EndDialog(CodeOk);
}

void FavoriteListDlg::OnNameEntered() {
    EditRow = ListView().SelectionMark();
}

void FavoriteListDlg::OnNameLeft() {
    Rename();
}

/// Gives the favorite of `EditRow` the name in the name box. False when the name is refused; the focus is
/// then back in the name box.
bool FavoriteListDlg::Rename() {
    EditName = NameIn(Layout.Name);
    CPMXTemplUIListData* const record = RecordOfRow(EditRow);
    if (record == nullptr) {
        return true;
    }
    if (EditName.empty()) {
        KeepName(*record);
        return true;
    }
    const std::string name = EnteredName(*record);
    if (HasSeparator(name)) {
        RefuseName(text::NameHasSeparator);
        return false;
    }
    if (!IsNameFree(ListView().RowData(EditRow), name)) {
        RefuseName(text::RenameNameExists);
        return false;
    }
    EditName = name;
    TransferName();
    if (record->GetStandard() == 0) {
        TakeName(EditRow, *record, name);
    }
    return true;
}

/// The box shows again what the favorite is called.
void FavoriteListDlg::KeepName(const CPMXTemplUIListData& record) {
    EditName = record.GetName();
    TransferName();
}

/// The name that the box stands for. A name from the list file may be too long for the box; its beginning,
/// left as it was, stands for the whole.
std::string FavoriteListDlg::EnteredName(const CPMXTemplUIListData& record) const {
    const std::string& name = record.GetName();
    const std::string shown = name.substr(0, LengthWithin(name, NameLimit, SystemLeadBytes()));
    return shown.size() < name.size() && EditName == TrimmedName(shown) ? name : EditName;
}

void FavoriteListDlg::RefuseName(ResourceId id) {
    Warn(id);
    ListView().DeselectAll();
    ListView().SetSelectionMark(EditRow);
    SelectRow(EditRow);
    Window().Focus(Layout.Name);
}

void FavoriteListDlg::HandleListKey(std::uint32_t virtualKey) {
    const int mark = ListView().SelectionMark();
    switch (virtualKey) {
    case ListKey::Up:
        ShowRow(mark >= 1 ? mark - 1 : mark);
        break;
    case ListKey::Down:
        ShowRow(mark < ListView().RowCount() - 1 ? mark + 1 : mark);
        break;
    case ListKey::Delete:
        OnDelete();
        break;
    default:
        break;
    }
}

/// Marks the current favorite deleted and takes its row away.
void FavoriteListDlg::OnDelete() {
    const int row = CurrentRow();
    CPMXTemplUIListData* const record = RecordOfRow(row);
    if (row < 0 || record == nullptr || record->IsStandard()) {
        return;
    }
    record->SetDeleteFlag(1);
    ListView().DeleteRow(row);
    EditName.clear();
    const int next = std::max(row - 1, 0);
    SelectRow(next);
    ShowRow(next);
    if (ListView().RowCount() == 0) {
        DisableRowControls();
        Window().Focus(Layout.WithoutRows);
    } else {
        ReturnToList();
    }
}

void FavoriteListDlg::OnUp() {
    const int row = CurrentRow();
    if (row > 0) {
        MoveOver(row, row - 1);
    }
}

void FavoriteListDlg::OnDown() {
    const int row = CurrentRow();
    if (row >= 0 && row < ListView().RowCount() - 1) {
        MoveOver(row, row + 1);
    }
}

/// Exchanges the current row with its neighbour, by moving the neighbour.
void FavoriteListDlg::MoveOver(int row, int neighbour) {
    if (RecordOfRow(neighbour) == nullptr) {
        return;
    }
    MoveRow(neighbour, row);
    ListView().SetSelectionMark(neighbour);
    ListView().EnsureVisible(neighbour);
    EnableMoving(neighbour);
}

void FavoriteListDlg::OnChangeIcon() {
    const int row = CurrentRow();
    if (row < 0) {
        return;
    }
    CPMXTemplUIListData* const record = RecordOfRow(row);
    if (record == nullptr) {
        OnRecordMissing();
        return;
    }
    CPMXTemplUIIconDlg picker(record->GetIconIndex(), static_cast<std::uint32_t>(record->GetToolbar()),
                              FormatString(text::PickerTitleFor, {record->GetName()}), Window().Handle(),
                              ServicesInUse());
    if (RunOver(picker) != CodeOk) {
        return;
    }
    record->SetIconIndex(picker.IconValue());
    ShowRow(row);
    ReturnToList();
}

} // namespace pmx
