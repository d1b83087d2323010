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
    // The files go only when the list no longer refers to them.
    if (List->WriteListFile(rows, list.RowCount())) {
        List->DeleteFilesOfDeleted(List->GetRecords());
    }
    List->RemoveAll();
    return true;
}

bool CPMXTemplUIMainDlg::DiscardChanges() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    for (const CPMXTemplUIListData* const record : List->GetRecords()) {
        if (record != nullptr && !record->IsStandard() &&
            (record->GetImportFlag() == 1 || record->GetNewFlag() == 1)) {
            List->DeleteFavorite(*record);
        }
    }
    List->RemoveAll();
    return true;
}

} // namespace pmx
