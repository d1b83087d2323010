#include "dialogs/base/favorite_row.h"
#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"
#include "store/levels.h"
#include "store/rules.h"

#include <algorithm>
#include <vector>

namespace pmx {

/// Only favorites of document level can be on the toolbar.
void CPMXTemplUIMainDlg::ToggleToolbar(int row) {
    const CPMXTemplUIListData& record = FavoriteOf(row);
    if (!IsDocumentLevel(record.GetLevel())) {
        return;
    }
    if (record.GetToolbar() == 1) {
        ClearToolbar(row);
    } else if (CheckToolbarLimit()) {
        SetToolbar(row);
    }
}

/// False, after a message, when the toolbar is full. Records that are marked deleted count too.
bool CPMXTemplUIMainDlg::CheckToolbarLimit() {
    const std::vector<const CPMXTemplUIListData*> records = List->GetRecords();
    const std::int64_t count =
        std::count_if(records.begin(), records.end(),
                      [](const CPMXTemplUIListData* record) { return record->GetToolbar() != 0; });
    if (count < ToolbarLimit) {
        return true;
    }
    Warn(text::ToolbarFull, {ToolbarLimit});
    return false;
}

void CPMXTemplUIMainDlg::SetToolbar(int row) {
    FavoriteOf(row).SetToolbar(1);
    ListView().SetStateImage(row, static_cast<int>(ToolbarMark::Ticked));
}

void CPMXTemplUIMainDlg::ClearToolbar(int row) {
    FavoriteOf(row).SetToolbar(0);
    ListView().SetStateImage(row, static_cast<int>(ToolbarMark::Empty));
}

} // namespace pmx
