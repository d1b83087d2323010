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

/// Selects the next row whose name begins with what was typed. One letter again and again leads from one such
/// row to the next.
void FavoriteListDlg::OnTyped(const ControlEvent& event) {
    const int row = FindTyped(event.Text);
    if (row >= 0) {
        SelectRow(row);
        ShowRow(row);
    }
}

int FavoriteListDlg::FindTyped(const std::string& typed) const {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    const std::size_t letterSize = CharacterLength(typed, 0, leadBytes);
    const auto find = [&](std::string_view beginning, int from) {
        for (int step = 0; step < RowCount(); ++step) {
            const int row = (from + step) % RowCount();
            const std::string_view name = FavoriteOf(row).GetName();
            if (EqualIgnoringCase(name.substr(0, beginning.size()), beginning, leadBytes)) {
                return row;
            }
        }
        return -1;
    };
    const std::string_view text = typed;
    const bool isFirst = text.size() == letterSize;
    const bool isRepeated = text.substr(letterSize) == text.substr(0, text.size() - letterSize);
    const int row = find(text, isFirst ? Shown + 1 : std::max(Shown, 0));
    return row < 0 && isRepeated ? find(text.substr(0, letterSize), Shown + 1) : row;
}

void FavoriteListDlg::OnRowDragged(const ControlEvent& event) {
    MoveRow(event.Move.From, event.Move.To);
}

void FavoriteListDlg::HandleListKey(const ListKey& key) {
    if (key.WithAlt) {
        if (key.VirtualKey == ListKey::Up) {
            OnUp();
        } else if (key.VirtualKey == ListKey::Down) {
            OnDown();
        }
    } else if (key.VirtualKey == ListKey::Delete) {
        OnDelete();
    } else if (key.VirtualKey == ListKey::F2) {
        Window().Focus(Layout.Name);
    }
}

/// A name that was not refused and could not be taken all the same gives way to the one that the favorite has.
void FavoriteListDlg::OnNameBoxLeft() {
    if (!Rename() && Window().FocusedControl() != Layout.Name) {
        ShowName(FavoriteOf(Shown).GetName());
    }
}

/// Gives the favorite that is shown the name in the name box. False when it does not get that name; when it was
/// refused, the focus is back in the name box.
bool FavoriteListDlg::Rename() {
    if (Shown < 0 || Window().TextOf(Layout.Name) == ShownName) {
        return true;
    }
    const std::string name = NameIn(Layout.Name);
    if (name.empty()) {
        ShowName(FavoriteOf(Shown).GetName());
        return true;
    }
    if (HasSeparator(name)) {
        RefuseName(text::NameHasSeparator);
        return false;
    }
    if (!GetFavorites().IsNameUnique(IndexOf(Shown), name)) {
        RefuseName(text::RenameNameExists);
        return false;
    }
    if (!TakeName(Shown, name)) {
        return false;
    }
    ShowName(name);
    return true;
}

void FavoriteListDlg::RefuseName(ResourceId id) {
    Warn(id);
    SelectRow(Shown);
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
        Window().Focus(Layout.WithoutRows);
        DisableRowControls();
        return;
    }
    const int next = std::max(row - 1, 0);
    SelectRow(next);
    ShowRow(next);
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
    KeepInView();
}

} // namespace pmx
