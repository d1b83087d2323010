#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

namespace pmx {

void CPMXTemplUIMainDlg::OnListClick() {
    const ListHit hit = ListView().HitOfMessage();
    const bool isOnBox = hit.Row >= 0 && hit.OnStateImage;
    // A box that stays as it is shows nothing, but the click has moved the selection there too.
    if (!isOnBox || !ToggleToolbar(hit.Row)) {
        ShowCurrentRow();
    }
}

void CPMXTemplUIMainDlg::OnListDoubleClick() {
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

void CPMXTemplUIMainDlg::OnListKey(const ControlEvent& event) {
    const bool isTakenByInputMethod = event.Key.VirtualKey == ListKey::Process;
    const std::uint32_t key =
        isTakenByInputMethod ? Window().VirtualKeyOfScanCode(event.Key.Flags) : event.Key.VirtualKey;
    if (key == ListKey::Space) {
        ToggleToolbar(ListView().SelectionMark());
    } else {
        HandleListKey(key);
    }
}

} // namespace pmx
