#include "dialogs/choice/choice_basic_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "dialogs/base/favorite_row.h"
#include "res/ids.h"

#include <memory>
#include <utility>

namespace pmx {

namespace {

enum BasicColumn : int { NameColumn, KindColumn };

constexpr FavoriteListColumn Columns[] = {
    {text::BasicColumnName, 250},
    {text::ColumnKind, 100},
};

constexpr ControlId ForUserFavorites[] = {control::BasicDelete, control::BasicName};

constexpr ControlId ForRows[] = {control::BasicDelete, control::BasicUp,   control::BasicDown,
                                 control::ChangeIcon,  control::BasicIcon, control::BasicName};

constexpr FavoriteListLayout BasicLayout{.List = control::BasicList,
                                         .Name = control::BasicName,
                                         .Icon = control::BasicIcon,
                                         .ChangeIcon = control::ChangeIcon,
                                         .Up = control::BasicUp,
                                         .Down = control::BasicDown,
                                         .WithoutRows = control::Ok,
                                         .ForUserFavorites = ForUserFavorites,
                                         .ForRows = ForRows};

} // namespace

CPMXTemplUIChoiceBasicDlg::CPMXTemplUIChoiceBasicDlg(std::string folder, std::string listFileName,
                                                     std::string extension, WindowHandle parent,
                                                     const DialogServices& services,
                                                     const StoreServices& storeServices)
    : FavoriteListDlg(dialog::BasicList, BasicLayout, parent, services),
      Folder(std::move(folder)),
      ListFileName(std::move(listFileName)),
      Extension(std::move(extension)),
      Favorites(ListFileName.c_str(), Extension.c_str(), storeServices) {}

bool CPMXTemplUIChoiceBasicDlg::OnInitDialog() {
    LimitName(control::BasicName);
    IconImages = LoadFavoriteIcons(ServicesInUse().Images);
    Favorites.Open(Folder.c_str()); // a list that cannot be read is an empty one
    Window().SetTitle(StringOf(text::BasicTitle));
    FillList(Columns, Favorites.GetCount());
    EditName.clear();
    ShowRow(0);
    return true;
}

void CPMXTemplUIChoiceBasicDlg::OnControlEvent(const ControlEvent& event) {
    using Self = CPMXTemplUIChoiceBasicDlg;
    static const EventHandler<Self> Table[] = {
        {control::BasicName, DialogEvent::FocusGained, &Self::OnNameEntered},
        {control::BasicName, DialogEvent::FocusLost, &Self::OnNameLeft},
        {control::BasicList, DialogEvent::ListClicked, &Self::ShowCurrentRow},
        {control::BasicList, DialogEvent::ListKeyDown, &Self::OnListKey},
        {control::BasicDelete, DialogEvent::Pressed, &Self::OnDelete},
        {control::BasicUp, DialogEvent::Pressed, &Self::OnUp},
        {control::BasicDown, DialogEvent::Pressed, &Self::OnDown},
        {control::ChangeIcon, DialogEvent::Pressed, &Self::OnChangeIcon},
    };
    Dispatch<Self>(*this, Table, event);
}

/// Unlike in the editor, a key that an input method has taken is none of the list.
void CPMXTemplUIChoiceBasicDlg::OnListKey(const ControlEvent& event) {
    HandleListKey(event.Key.VirtualKey);
}

/// Writes copies of the favorites that have a row. The deleted ones are not among them, so their files stay.
void CPMXTemplUIChoiceBasicDlg::Commit() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    CPMXTemplUIListDataArray shown(ListFileName.c_str(), Extension.c_str(),
                                   Favorites.GetList().GetServices());
    for (int row = 0; row < ListView().RowCount(); ++row) {
        if (const CPMXTemplUIListData* const record = RecordOfRow(row)) {
            auto copy = std::make_unique<CPMXTemplUIListData>();
            *copy = *record;
            shown.Add(std::move(copy));
        }
    }
    Favorites.SaveList(&shown);
}

CPMXTemplUIListData* CPMXTemplUIChoiceBasicDlg::GetRecord(std::int64_t index) const {
    return Favorites.GetAt(index);
}

void CPMXTemplUIChoiceBasicDlg::FillRow(int row, const CPMXTemplUIListData& record) {
    const FavoriteRow content = FormatRow(record, ServicesInUse().Strings);
    ListView().SetCell(row, NameColumn, content.Name);
    ListView().SetCell(row, KindColumn, content.Kind);
}

bool CPMXTemplUIChoiceBasicDlg::MayHaveIcon(const CPMXTemplUIListData& /*record*/) const {
    return true;
}

bool CPMXTemplUIChoiceBasicDlg::IsNameFree(std::int64_t index, const std::string& name) const {
    return Favorites.IsNewNameUnique(index, name);
}

/// Unlike in the editor, a favorite whose file cannot be read keeps its name.
void CPMXTemplUIChoiceBasicDlg::TakeName(int row, CPMXTemplUIListData& record, const std::string& name) {
    const std::string before = record.GetName();
    if (Favorites.RenameAt(ListView().RowData(row), name)) {
        ListView().SetCell(row, NameColumn, name);
        return;
    }
    record.SetName(before);
    EditName = before;
    TransferName();
    Warn(text::BasicFavoriteUnreadable);
}

} // namespace pmx
