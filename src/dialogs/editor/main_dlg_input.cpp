#include "dialogs/editor/favorite_row.h"
#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

namespace pmx {

void CPMXTemplUIMainDlg::OnListClicked() {
    const ListHit hit = ListView().HitOfMessage();
    const bool isOnBox = hit.Row >= 0 && hit.OnStateImage;
    // A box that stays as it is shows nothing, but the click has moved the selection there too.
    if (!isOnBox || !ToggleToolbar(hit.Row)) {
        ShowCurrentRow();
    }
}

void CPMXTemplUIMainDlg::OnListDoubleClicked() {
    const ListHit hit = ListView().HitOfMessage();
    const int row = CurrentRow();
    if (row < 0 || (hit.Row >= 0 && hit.OnStateImage)) {
        return;
    }
    const CPMXTemplUIListData* const record = RecordOfRow(row);
    if (record != nullptr && record->IsStandard()) {
        Warn(text::StandardNotEditable);
        return;
    }
    OnEdit();
}

/// Comes before the list moves its selection, so the row that is shown is the one that the key leads to.
void CPMXTemplUIMainDlg::OnListKey(const ControlEvent& event) {
    const bool isTakenByInputMethod = event.Key.VirtualKey == ListKey::Process;
    switch (isTakenByInputMethod ? Window().VirtualKeyOfScanCode(event.Key.Flags) : event.Key.VirtualKey) {
    case ListKey::Space:
        ToggleToolbar(ListView().SelectionMark());
        break;
    case ListKey::Up:
        OnUpKey();
        break;
    case ListKey::Down:
        OnDownKey();
        break;
    case ListKey::Delete:
        OnDelete();
        break;
    default:
        break;
    }
}

void CPMXTemplUIMainDlg::OnUpKey() {
    const int mark = ListView().SelectionMark();
    ShowRow(mark >= 1 ? mark - 1 : mark);
}

void CPMXTemplUIMainDlg::OnDownKey() {
    const int mark = ListView().SelectionMark();
    ShowRow(mark < ListView().RowCount() - 1 ? mark + 1 : mark);
}

} // namespace pmx
