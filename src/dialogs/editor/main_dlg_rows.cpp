#include "dialogs/editor/main_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "res/ids.h"
#include "store/levels.h"

namespace pmx {

void CPMXTemplUIMainDlg::FillListView() {
    StateImages = LoadToolbarMarks(ServicesInUse().Images, Window().Resolution());
    if (StateImages) {
        ListView().SetStateImages(*StateImages);
    }
    FillList();
}

bool CPMXTemplUIMainDlg::MayHaveIcon(const CPMXTemplUIListData& record) const {
    return IsDocumentLevel(record.GetLevel());
}

/// The list file carries the new name in any case. The name inside the favorite file follows when that file
/// is next saved, so a host that refuses it here loses nothing.
bool CPMXTemplUIMainDlg::TakeName(int row, const std::string& name) {
    CPMXTemplUIListData& record = FavoriteOf(row);
    record.SetName(name);
    if (!List->EnsureLoaded(record)) {
        Warn(text::EditorFavoriteUnreadable);
        return true;
    }
    CallHost([&] { record.GetDocument()->SetName(name); });
    DrawRow(row);
    return true;
}

} // namespace pmx
