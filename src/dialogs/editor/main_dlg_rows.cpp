#include "dialogs/editor/main_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "dialogs/editor/favorite_row.h"
#include "res/ids.h"
#include "store/levels.h"

namespace pmx {

namespace {

constexpr int StateImageWidth = 16; // pixels

struct ColumnTitle {
    FavoriteColumn Position;
    ResourceId Title;
    int Width; // pixels
};

constexpr ColumnTitle ColumnTitles[] = {
    {ToolbarColumn, text::ColumnToolbar, 80},
    {NameColumn, text::ColumnName, 180},
    {CategoryColumn, text::ColumnCategory, 80},
    {KindColumn, text::ColumnKind, 80},
};

/// Controls of which the user must keep off for standard favorites.
constexpr ControlId UserFavoriteControls[] = {control::EditorEdit, control::EditorDelete,
                                              control::EditorExport, control::EditorName,
                                              control::EditorCopy};

/// Controls that need a row.
constexpr ControlId RowControls[] = {control::EditorEdit,   control::EditorCopy, control::EditorDelete,
                                     control::EditorExport, control::EditorUp,   control::EditorDown,
                                     control::EditorName,   control::ChangeIcon, control::EditorIcon};

constexpr std::int64_t IconOfOtherLevels = 0;

} // namespace

ListControl& CPMXTemplUIMainDlg::ListView() const {
    return Window().ListOf(control::EditorList);
}

void CPMXTemplUIMainDlg::FillListView() {
    ListControl& list = ListView();
    list.SetFullRowSelection(true);
    StateImages = ServicesInUse().Images.FromBitmap(bitmap::StateImages, StateImageWidth, Color::White);
    if (StateImages) {
        list.SetStateImages(*StateImages);
    }
    for (const ColumnTitle& column : ColumnTitles) {
        list.InsertColumn(column.Position, StringOf(column.Title), column.Width);
    }
    {
        const ListRedrawPause pause(list);
        list.Reserve(static_cast<int>(List->GetSize()));
        for (std::int64_t index = 0; index < List->GetSize(); ++index) {
            AppendRow(index);
        }
    }
    if (list.RowCount() > 0) {
        list.Select(0);
    } else {
        DisableRowControls();
    }
}

void CPMXTemplUIMainDlg::InsertFavorite(int position, std::int64_t index) {
    const CPMXTemplUIListData* const record = GetRecord(index);
    if (record == nullptr) {
        return;
    }
    const FavoriteRow content = FormatRow(*record, ServicesInUse().Strings);
    ListControl& list = ListView();
    const int row = list.InsertRow(position, index);
    list.SetStateImage(row, static_cast<int>(content.Mark));
    list.SetCell(row, NameColumn, content.Name);
    list.SetCell(row, CategoryColumn, content.Category);
    list.SetCell(row, KindColumn, content.Kind);
}

void CPMXTemplUIMainDlg::AppendRow(std::int64_t index) {
    InsertFavorite(ListView().RowCount(), index);
}

void CPMXTemplUIMainDlg::MoveRow(int from, int to) {
    ListControl& list = ListView();
    const std::int64_t index = list.RowData(from);
    const ListRedrawPause pause(list);
    list.DeleteRow(from);
    InsertFavorite(to, index);
}

int CPMXTemplUIMainDlg::CurrentRow() const {
    const ListControl& list = ListView();
    const int mark = list.SelectionMark();
    return list.IsSelected(mark) ? mark : -1;
}

CPMXTemplUIListData* CPMXTemplUIMainDlg::GetRecord(std::int64_t index) const {
    return List->Contains(index) ? List->GetAt(index) : nullptr;
}

CPMXTemplUIListData* CPMXTemplUIMainDlg::RecordOfRow(int row) const {
    return GetRecord(ListView().RowData(row));
}

void CPMXTemplUIMainDlg::RefreshControls(int row) {
    const CPMXTemplUIListData* const record = RecordOfRow(row);
    if (record == nullptr) {
        return;
    }
    EditName = record->GetName();
    const bool isUserFavorite = record->GetStandard() == 0;
    for (const ControlId id : UserFavoriteControls) {
        EnableRowControl(id, isUserFavorite);
    }
    EnableMoving(row);
    const bool mayHaveIcon = IsDocumentLevel(record->GetLevel());
    EnableRowControl(control::ChangeIcon, mayHaveIcon);
    EnableRowControl(control::EditorIcon, true);
    ShowFavoriteIcon(Window(), control::EditorIcon, IconImages.get(),
                     mayHaveIcon ? record->GetIconIndex() : IconOfOtherLevels);
}

/// A control that is about to be disabled leaves the focus to the list, where every key means something,
/// instead of to the next control in tab order.
void CPMXTemplUIMainDlg::EnableRowControl(ControlId id, bool enabled) {
    if (!enabled && Window().FocusedControl() == id) {
        Window().Focus(control::EditorList);
    }
    Window().Enable(id, enabled);
}

void CPMXTemplUIMainDlg::EnableMoving(int row) {
    EnableRowControl(control::EditorUp, row != 0);
    EnableRowControl(control::EditorDown, row != ListView().RowCount() - 1);
}

void CPMXTemplUIMainDlg::DisableRowControls() {
    for (const ControlId id : RowControls) {
        EnableRowControl(id, false);
    }
}

void CPMXTemplUIMainDlg::TransferName() const {
    Window().SetText(control::EditorName, EditName);
}

void CPMXTemplUIMainDlg::ShowRow(int row) {
    RefreshControls(row);
    TransferName();
}

void CPMXTemplUIMainDlg::ShowCurrentRow() {
    const int row = CurrentRow();
    if (row >= 0) {
        ShowRow(row);
    }
}

void CPMXTemplUIMainDlg::SelectRow(int row) {
    ListView().Select(row);
    ListView().EnsureVisible(row);
}

/// After a command: the next key is one for the list, and the row that it starts from can be seen.
void CPMXTemplUIMainDlg::ReturnToList() {
    ListView().EnsureVisible(ListView().SelectionMark());
    Window().Focus(control::EditorList);
}

} // namespace pmx
