#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

namespace pmx {

void CPMXTemplUIMainDlg::OnListClick() {
    const ListHit hit = ListView().HitOfMessage();
    if (hit.OnStateImage) {
        ToggleToolbar(hit.Row);
    }
}

/// The second click on a toolbar box is one more click on it.
void CPMXTemplUIMainDlg::OnListDoubleClick() {
    if (ListView().HitOfMessage().OnStateImage) {
        OnListClick();
        return;
    }
    const int row = CurrentRow();
    if (row >= 0 && FavoriteOf(row).IsStandard()) {
        Warn(text::StandardNotEditable);
    } else {
        OnEdit();
    }
}

void CPMXTemplUIMainDlg::OnListKey(const ControlEvent& event) {
    ListKey key = event.Key;
    if (key.VirtualKey == ListKey::Process) {
        key.VirtualKey = Window().VirtualKeyOfScanCode(key.Flags);
    }
    if (key.VirtualKey != ListKey::Space) {
        HandleListKey(key);
    } else if (ShownRow() >= 0) {
        ToggleToolbar(ShownRow());
    }
}

} // namespace pmx
