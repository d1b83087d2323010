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

/// A click beside the rows leaves the controls as they are.
void FavoriteListDlg::OnSelectionChanged() {
    const int row = CurrentRow();
    if (row >= 0) {
        ShowRow(row);
    }
}

void FavoriteListDlg::OnNameEntered() {
    EditRow = Shown;
}

void FavoriteListDlg::OnNameLeft() {
    Rename();
}

/// Gives the favorite of `EditRow` the name in the name box. False when the name is refused; the focus is
/// then back in the name box.
bool FavoriteListDlg::Rename() {
    const CPMXTemplUIListData& record = FavoriteOf(EditRow);
    const std::string name = EnteredName(record);
    if (name.empty()) {
        ShowName(record.GetName());
        return true;
    }
    if (HasSeparator(name)) {
        RefuseName(text::NameHasSeparator);
        return false;
    }
    if (!GetFavorites().IsNameUnique(IndexOf(EditRow), name)) {
        RefuseName(text::RenameNameExists);
        return false;
    }
    ShowName(name);
    TakeName(EditRow, name);
    return true;
}

/// The name that the box stands for. A name from the list file may be too long for the box; its beginning,
/// left as it was, stands for the whole.
std::string FavoriteListDlg::EnteredName(const CPMXTemplUIListData& record) const {
    const std::string entered = NameIn(Layout.Name);
    const std::string& name = record.GetName();
    const std::string shown = name.substr(0, LengthWithin(name, NameLimit, SystemLeadBytes()));
    return shown.size() < name.size() && entered == TrimmedName(shown) ? name : entered;
}

void FavoriteListDlg::RefuseName(ResourceId id) {
    Warn(id);
    SelectRow(EditRow);
    Window().Focus(Layout.Name);
}

/// Marks the current favorite deleted and takes its row away.
void FavoriteListDlg::OnDelete() {
    const int row = CurrentRow();
    if (row < 0 || FavoriteOf(row).IsStandard()) {
        return;
    }
    FavoriteOf(row).SetDeleteFlag(1);
    Rows.erase(Rows.begin() + row);
    ListView().DeleteRow(row);
    if (RowCount() == 0) {
        Shown = -1;
        ShowName({});
        DisableRowControls();
        Window().Focus(Layout.WithoutRows);
        return;
    }
    const int next = std::max(row - 1, 0);
    SelectRow(next);
    ShowRow(next);
    ReturnToList();
}

void FavoriteListDlg::OnUp() {
    const int row = CurrentRow();
    if (row > 0) {
        MoveRow(row, row - 1);
    }
}

void FavoriteListDlg::OnDown() {
    const int row = CurrentRow();
    if (row >= 0 && row < RowCount() - 1) {
        MoveRow(row, row + 1);
    }
}

void FavoriteListDlg::OnChangeIcon() {
    const int row = CurrentRow();
    if (row < 0) {
        return;
    }
    CPMXTemplUIListData& record = FavoriteOf(row);
    CPMXTemplUIIconDlg picker(record.GetIconIndex(), static_cast<std::uint32_t>(record.GetToolbar()),
                              FormatString(text::PickerTitleFor, {record.GetName()}), Window().Handle(),
                              ServicesInUse());
    if (RunOver(picker) != CodeOk) {
        return;
    }
    record.SetIconIndex(picker.IconValue());
    ShowRow(row);
    ReturnToList();
}

} // namespace pmx
