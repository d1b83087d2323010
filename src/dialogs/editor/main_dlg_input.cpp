#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"

namespace pmx {

void CPMXTemplUIMainDlg::OnListClick() {
    const ListHit hit = ListView().HitOfMessage();
    if (hit.OnStateImage) {
        ToggleToolbar(hit.Row);
    }
}

void CPMXTemplUIMainDlg::OnListDoubleClick() {
    const int row = CurrentRow();
    if (row < 0 || ListView().HitOfMessage().OnStateImage) {
        return;
    }
    if (FavoriteOf(row).IsStandard()) {
        Warn(text::StandardNotEditable);
        return;
    }
    OnEdit();
}

void CPMXTemplUIMainDlg::OnListKey(const ControlEvent& event) {
    const bool isTakenByInputMethod = event.Key.VirtualKey == ListKey::Process;
    const std::uint32_t key =
        isTakenByInputMethod ? Window().VirtualKeyOfScanCode(event.Key.Flags) : event.Key.VirtualKey;
    if (key == ListKey::Space && ShownRow() >= 0) {
        ToggleToolbar(ShownRow());
    } else if (key == ListKey::Delete) {
        OnDelete();
    }
}

} // namespace pmx
