#include "dialogs/base/favorite_row.h"
#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

#include <algorithm>
#include <vector>

namespace pmx {

/// False when the mark stays as it is.
bool CPMXTemplUIMainDlg::ToggleToolbar(int row) {
    switch (static_cast<ToolbarMark>(ListView().StateImage(row))) {
    case ToolbarMark::Empty:
        if (!CheckToolbarLimit()) {
            return false;
        }
        SetToolbar(row);
        return true;
    case ToolbarMark::Ticked:
        ClearToolbar(row);
        return true;
    case ToolbarMark::Unavailable:
        break;
    }
    return false;
}

/// False, after a message, when the toolbar is full. Records that are marked deleted count too.
bool CPMXTemplUIMainDlg::CheckToolbarLimit() {
    const std::vector<const CPMXTemplUIListData*> records = List->GetRecords();
    const std::int64_t count =
        std::count_if(records.begin(), records.end(), [](const CPMXTemplUIListData* record) {
            return record != nullptr && record->GetToolbar() != 0;
        });
    if (count < ToolbarLimit) {
        return true;
    }
    Warn(text::ToolbarFull, {ToolbarLimit});
    return false;
}

void CPMXTemplUIMainDlg::SetToolbar(int row) {
    MarkToolbar(row, true);
}

void CPMXTemplUIMainDlg::ClearToolbar(int row) {
    MarkToolbar(row, false);
}

void CPMXTemplUIMainDlg::MarkToolbar(int row, bool onToolbar) {
    if (row < 0) {
        return;
    }
    CPMXTemplUIListData* const record = RecordOfRow(row);
    if (record == nullptr) {
        Fail(text::FavoriteInfoFailed);
        return;
    }
    record->SetToolbar(onToolbar ? 1 : 0);
    ListView().SetStateImage(row, static_cast<int>(onToolbar ? ToolbarMark::Ticked : ToolbarMark::Empty));
    if (row == ListView().SelectionMark()) {
        ShowRow(row);
    }
}

} // namespace pmx
