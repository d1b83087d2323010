#include "dialogs/choice/choice_basic_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "res/ids.h"

#include <memory>

namespace pmx {

namespace {

constexpr FavoriteListColumn Columns[] = {
    {text::BasicColumnName, 250, &FavoriteRow::Name},
    {text::ColumnKind, 100, &FavoriteRow::Kind},
};

constexpr ControlId ForUserFavorites[] = {control::BasicDelete, control::BasicName};

constexpr ControlId ForRows[] = {control::BasicDelete, control::BasicUp, control::BasicDown,
                                 control::BasicIcon, control::BasicName};

constexpr ControlId MoveButtons[] = {control::BasicUp, control::BasicDown};

/// Where the button for deleting is alone, the one that opens a dialog of its own does the least harm.
constexpr ControlId DeleteButtons[] = {control::BasicDelete, control::ChangeIcon};

constexpr std::span<const ControlId> ButtonGroups[] = {MoveButtons, DeleteButtons};

constexpr FavoriteListLayout BasicLayout{.List = control::BasicList,
                                         .Columns = Columns,
                                         .Name = control::BasicName,
                                         .Icon = control::BasicIcon,
                                         .ChangeIcon = control::ChangeIcon,
                                         .Up = control::BasicUp,
                                         .Down = control::BasicDown,
                                         .WithoutRows = control::BasicList,
                                         .ForUserFavorites = ForUserFavorites,
                                         .ForRows = ForRows,
                                         .ButtonGroups = ButtonGroups};

} // namespace

CPMXTemplUIChoiceBasicDlg::CPMXTemplUIChoiceBasicDlg(const char* folder, const char* listFileName,
                                                     const char* extension, WindowHandle parent,
                                                     const DialogServices& services,
                                                     const StoreServices& storeServices)
    : FavoriteListDlg(dialog::BasicList, BasicLayout, parent, services),
      Favorites(listFileName, extension, storeServices) {
    Favorites.GetList().SetFolder(folder);
}

bool CPMXTemplUIChoiceBasicDlg::OnInitDialog() {
    LimitName(control::BasicName);
    IconImages = LoadFavoriteIcons(ServicesInUse().Images, Window().Resolution());
    Favorites.GetList().LoadList(); // a list that cannot be read is an empty one
    Window().SetTitle(StringOf(text::BasicTitle));
    FillList();
    if (RowCount() > 0) {
        ShowRow(0);
    }
    return true;
}

void CPMXTemplUIChoiceBasicDlg::OnControlEvent(const ControlEvent& event) {
    using Self = CPMXTemplUIChoiceBasicDlg;
    static const EventHandler<Self> Table[] = {
        {control::BasicName, DialogEvent::FocusLost, &Self::OnNameBoxLeft},
        {control::BasicList, DialogEvent::ListSelectionChanged, &Self::OnSelectionChanged},
        {control::BasicList, DialogEvent::ListKeyDown, &Self::OnListKey},
        {control::BasicList, DialogEvent::ListTyped, &Self::OnTyped},
        {control::BasicList, DialogEvent::ListRowDragged, &Self::OnRowDragged},
        {control::BasicDelete, DialogEvent::Pressed, &Self::OnDelete},
        {control::BasicUp, DialogEvent::Pressed, &Self::OnUp},
        {control::BasicDown, DialogEvent::Pressed, &Self::OnDown},
        {control::ChangeIcon, DialogEvent::Pressed, &Self::OnChangeIcon},
    };
    Dispatch<Self>(*this, Table, event);
}

/// Unlike in the editor, a key that an input method has taken is none of the list.
void CPMXTemplUIChoiceBasicDlg::OnListKey(const ControlEvent& event) {
    HandleListKey(event.Key);
}

/// The files of deleted favorites stay.
void CPMXTemplUIChoiceBasicDlg::Commit() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    Favorites.GetList().WriteListFile(FavoritesInRows(), RowCount());
}

bool CPMXTemplUIChoiceBasicDlg::MayHaveIcon(const CPMXTemplUIListData& /*record*/) const {
    return true;
}

/// Unlike in the editor, a favorite whose file cannot be read keeps its name.
bool CPMXTemplUIChoiceBasicDlg::TakeName(int row, const std::string& name) {
    CPMXTemplUIListData& record = FavoriteOf(row);
    const std::string before = record.GetName();
    if (Favorites.RenameAt(IndexOf(row), name)) {
        DrawRow(row);
        return true;
    }
    record.SetName(before);
    Warn(text::BasicFavoriteUnreadable);
    return false;
}

} // namespace pmx
