#include "dialogs/editor/favorite_row.h"
#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

namespace pmx {

void CPMXTemplUIMainDlg::OnNameEntered() {
    EditRow = ListView().SelectionMark();
}

void CPMXTemplUIMainDlg::OnNameLeft() {
    Rename();
}

/// Gives the favorite of `EditRow` the name in the name box. Left empty, the box shows again what the
/// favorite is called. False when the name is refused; the focus is then back in the name box.
bool CPMXTemplUIMainDlg::Rename() {
    EditName = NameIn(control::EditorName);
    CPMXTemplUIListData* const record = RecordOfRow(EditRow);
    if (record == nullptr) {
        return true;
    }
    if (EditName.empty()) {
        EditName = record->GetName();
        TransferName();
        return true;
    }
    const std::string name = EnteredName(*record);
    if (HasSeparator(name)) {
        RefuseName(text::NameHasSeparator);
        return false;
    }
    if (!List->IsNameUnique(ListView().RowData(EditRow), name)) {
        RefuseName(text::RenameNameExists);
        return false;
    }
    EditName = name;
    TransferName();
    if (record->GetStandard() == 0) {
        ApplyName(*record, name);
    }
    return true;
}

/// The name that the box stands for. A name from the list file may be too long for the box; its beginning,
/// left as it was, stands for the whole.
std::string CPMXTemplUIMainDlg::EnteredName(const CPMXTemplUIListData& record) const {
    const std::string& name = record.GetName();
    const std::string shown =
        name.substr(0, LengthWithin(name, NameLimit, ServicesInUse().CodePage.LeadBytes()));
    return shown.size() < name.size() && EditName == TrimmedName(shown) ? name : EditName;
}

/// The list file carries the new name in any case. The name inside the favorite file follows when that file
/// is next saved, so a host that refuses it here loses nothing.
void CPMXTemplUIMainDlg::ApplyName(CPMXTemplUIListData& record, const std::string& name) {
    record.SetName(name);
    if (!EnsureLoaded(record)) {
        Warn(text::EditorFavoriteUnreadable);
        return;
    }
    Guarded([&] { record.GetDocument()->SetName(name); });
    ListView().SetCell(EditRow, NameColumn, name);
}

void CPMXTemplUIMainDlg::RefuseName(ResourceId id) {
    Warn(id);
    ListView().DeselectAll();
    ListView().SetSelectionMark(EditRow);
    SelectRow(EditRow);
    Window().Focus(control::EditorName);
}

} // namespace pmx
