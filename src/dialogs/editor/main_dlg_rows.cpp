#include "dialogs/editor/main_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "dialogs/base/favorite_row.h"
#include "res/ids.h"
#include "store/levels.h"

namespace pmx {

namespace {

/// The first column has a picture only.
enum EditorColumn : int { ToolbarColumn, NameColumn, CategoryColumn, KindColumn };

constexpr FavoriteListColumn Columns[] = {
    {text::ColumnToolbar, 80},
    {text::ColumnName, 180},
    {text::ColumnCategory, 80},
    {text::ColumnKind, 80},
};

} // namespace

void CPMXTemplUIMainDlg::FillListView() {
    StateImages = LoadToolbarMarks(ServicesInUse().Images, Window().Resolution());
    if (StateImages) {
        ListView().SetStateImages(*StateImages);
    }
    FillList(Columns);
}

void CPMXTemplUIMainDlg::DrawRow(int row, const CPMXTemplUIListData& record) {
    const FavoriteRow content = FormatRow(record, ServicesInUse().Strings);
    ListControl& list = ListView();
    list.SetStateImage(row, static_cast<int>(content.Mark));
    list.SetCell(row, NameColumn, content.Name);
    list.SetCell(row, CategoryColumn, content.Category);
    list.SetCell(row, KindColumn, content.Kind);
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
    ListView().SetCell(row, NameColumn, name);
    return true;
}

} // namespace pmx
