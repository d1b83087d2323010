#include "dialogs/editor/main_dlg.h"

#include <vector>

namespace pmx {

bool CPMXTemplUIMainDlg::CommitList() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    const ListControl& list = ListView();
    std::vector<const CPMXTemplUIListData*> rows;
    rows.reserve(static_cast<std::size_t>(list.RowCount()));
    for (int row = 0; row < list.RowCount(); ++row) {
        rows.push_back(RecordOfRow(row));
    }
    const std::vector<const CPMXTemplUIListData*> records = List->GetRecords();
    // The files go only when the list no longer refers to them. Nothing may fail between the two.
    const bool isWritten = List->WriteListFile(rows, list.RowCount());
    IsSettled = true;
    if (isWritten) {
        List->DeleteFilesOfDeleted(records);
    }
    List->RemoveAll();
    return true;
}

bool CPMXTemplUIMainDlg::DiscardChanges() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    DeleteNewFavorites();
    return true;
}

/// Needs no memory of its own, which may be what has ended the editor.
void CPMXTemplUIMainDlg::DeleteNewFavorites() {
    IsSettled = true;
    for (std::int64_t index = 0; index < List->GetSize(); ++index) {
        const CPMXTemplUIListData* const record = List->GetAt(index);
        if (record != nullptr && !record->IsStandard() &&
            (record->GetImportFlag() == 1 || record->GetNewFlag() == 1)) {
            List->DeleteFavorite(*record);
        }
    }
    List->RemoveAll();
}

} // namespace pmx
