#include "dialogs/editor/main_dlg.h"

#include "dialogs/base/favorite_row.h"
#include "res/ids.h"
#include "store/levels.h"

namespace pmx {

namespace {

constexpr int StateImageWidth = 16; // pixels

enum EditorColumn : int {
    ToolbarColumn,
    NameColumn,
    CategoryColumn,
    KindColumn
}; // the first has a picture only

constexpr FavoriteListColumn Columns[] = {
    {text::ColumnToolbar, 80},
    {text::ColumnName, 180},
    {text::ColumnCategory, 80},
    {text::ColumnKind, 80},
};

} // namespace

void CPMXTemplUIMainDlg::FillListView() {
    StateImages = ServicesInUse().Images.FromBitmap(bitmap::StateImages, StateImageWidth, Color::White);
    if (StateImages) {
        ListView().SetStateImages(*StateImages);
    }
    FillList(Columns, List->GetSize());
}

void CPMXTemplUIMainDlg::FillRow(int row, const CPMXTemplUIListData& record) {
    const FavoriteRow content = FormatRow(record, ServicesInUse().Strings);
    ListControl& list = ListView();
    list.SetStateImage(row, static_cast<int>(content.Mark));
    list.SetCell(row, NameColumn, content.Name);
    list.SetCell(row, CategoryColumn, content.Category);
    list.SetCell(row, KindColumn, content.Kind);
}

CPMXTemplUIListData* CPMXTemplUIMainDlg::GetRecord(std::int64_t index) const {
    return List->Contains(index) ? List->GetAt(index) : nullptr;
}

bool CPMXTemplUIMainDlg::MayHaveIcon(const CPMXTemplUIListData& record) const {
    return IsDocumentLevel(record.GetLevel());
}

void CPMXTemplUIMainDlg::OnRecordMissing() {
    Fail(text::FavoriteInfoFailed);
}

/// Favorites deleted since the editor was opened count too.
bool CPMXTemplUIMainDlg::IsNameFree(std::int64_t index, const std::string& name) const {
    return List->IsNameUnique(index, name);
}

/// The list file carries the new name in any case. The name inside the favorite file follows when that file
/// is next saved, so a host that refuses it here loses nothing.
void CPMXTemplUIMainDlg::TakeName(int row, CPMXTemplUIListData& record, const std::string& name) {
    record.SetName(name);
    if (!EnsureLoaded(record)) {
        Warn(text::EditorFavoriteUnreadable);
        return;
    }
    Guarded([&] { record.GetDocument()->SetName(name); });
    ListView().SetCell(row, NameColumn, name);
}

} // namespace pmx
