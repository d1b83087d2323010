#include "dialogs/editor/main_dlg.h"

#include <vector>

namespace pmx {

void CPMXTemplUIMainDlg::CommitList() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    const std::vector<const CPMXTemplUIListData*> rows = FavoritesInRows();
    const std::vector<const CPMXTemplUIListData*> records = List->GetRecords();
    // The files go only when the list no longer refers to them. Nothing may fail between the two.
    const bool isWritten = List->WriteListFile(rows, RowCount());
    IsSettled = true;
    if (isWritten) {
        List->DeleteFilesOfDeleted(records);
    }
    List->RemoveAll();
}

void CPMXTemplUIMainDlg::DiscardChanges() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    DeleteNewFavorites();
}

/// Needs no memory of its own, which may be what has ended the editor.
void CPMXTemplUIMainDlg::DeleteNewFavorites() {
    IsSettled = true;
    for (std::int64_t index = 0; index < List->GetSize(); ++index) {
        const CPMXTemplUIListData& record = List->At(index);
        if (record.GetImportFlag() == 1 || record.GetNewFlag() == 1) {
            List->DeleteFavorite(record);
        }
    }
    List->RemoveAll();
}

} // namespace pmx
