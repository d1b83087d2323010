#include "dialogs/editor/main_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "res/ids.h"

namespace pmx {

namespace {

constexpr FavoriteListColumn Columns[] = {
    {text::ColumnToolbar, 80},
    {text::ColumnName, 180, &FavoriteRow::Name},
    {text::ColumnCategory, 80, &FavoriteRow::Category},
    {text::ColumnKind, 80, &FavoriteRow::Kind},
};

constexpr ControlId ForUserFavorites[] = {control::EditorEdit, control::EditorDelete, control::EditorExport,
                                          control::EditorName, control::EditorCopy};

constexpr ControlId ForRows[] = {control::EditorEdit,   control::EditorCopy, control::EditorDelete,
                                 control::EditorExport, control::EditorUp,   control::EditorDown,
                                 control::EditorName,   control::ChangeIcon, control::EditorIcon};

constexpr ControlId FavoriteButtons[] = {control::EditorNew, control::EditorEdit, control::EditorCopy,
                                         control::EditorDelete};
constexpr ControlId MoveButtons[] = {control::EditorUp, control::EditorDown};
constexpr ControlId FileButtons[] = {control::EditorImport, control::EditorExport};
constexpr std::span<const ControlId> ButtonGroups[] = {FavoriteButtons, MoveButtons, FileButtons};

constexpr FavoriteListLayout EditorLayout{.List = control::EditorList,
                                          .Columns = Columns,
                                          .Name = control::EditorName,
                                          .Icon = control::EditorIcon,
                                          .ChangeIcon = control::ChangeIcon,
                                          .Up = control::EditorUp,
                                          .Down = control::EditorDown,
                                          .WithoutRows = control::EditorNew,
                                          .ForUserFavorites = ForUserFavorites,
                                          .ForRows = ForRows,
                                          .ButtonGroups = ButtonGroups};

} // namespace

CPMXTemplUIMainDlg::CPMXTemplUIMainDlg(const char* folder, const char* listFileName, const char* extension,
                                       WindowHandle parent, const DialogServices& services,
                                       const StoreServices& storeServices)
    : FavoriteListDlg(dialog::Editor, EditorLayout, parent, services),
      List(std::make_unique<CPMXTemplUIListDataArray>(listFileName, extension, storeServices)) {
    List->SetFolder(folder);
}

CPMXTemplUIMainDlg::~CPMXTemplUIMainDlg() {
    if (!IsSettled) {
        DeleteNewFavorites();
    }
}

bool CPMXTemplUIMainDlg::OnInitDialog() {
    IsSettled = false;
    Window().SetTitle(StringOf(text::EditorTitle));
    LimitName(control::EditorName);
    IconImages = LoadFavoriteIcons(ServicesInUse().Images, Window().Resolution());
    LoadAttributeDialog();
    List->LoadList(); // what could be read is shown
    FillListView();
    if (RowCount() > 0) {
        ShowRow(0);
    }
    return true;
}

/// A library or an entry that is missing is reported when it is needed.
void CPMXTemplUIMainDlg::LoadAttributeDialog() {
    ShowPropUI = nullptr;
    PropUILibrary.reset();
    PropUILibrary = ServicesInUse().Libraries.LoadHostLibrary(PMX_PROPUI_LIBRARY);
    if (PropUILibrary) {
        ShowPropUI = reinterpret_cast<PmxShowPropUI>(PropUILibrary->Find(PMX_PROPUI_ENTRY));
    }
}

void CPMXTemplUIMainDlg::OnControlEvent(const ControlEvent& event) {
    using Self = CPMXTemplUIMainDlg;
    static const EventHandler<Self> Table[] = {
        {control::EditorName, DialogEvent::FocusLost, &Self::OnNameBoxLeft},
        {control::EditorList, DialogEvent::ListSelectionChanged, &Self::OnSelectionChanged},
        {control::EditorList, DialogEvent::ListClicked, &Self::OnListClick},
        {control::EditorList, DialogEvent::ListDoubleClicked, &Self::OnListDoubleClick},
        {control::EditorList, DialogEvent::ListKeyDown, &Self::OnListKey},
        {control::EditorList, DialogEvent::ListTyped, &Self::OnTyped},
        {control::EditorList, DialogEvent::ListRowDragged, &Self::OnRowDragged},
        {control::EditorNew, DialogEvent::Pressed, &Self::OnNew},
        {control::EditorEdit, DialogEvent::Pressed, &Self::OnEdit},
        {control::EditorCopy, DialogEvent::Pressed, &Self::OnCopy},
        {control::EditorDelete, DialogEvent::Pressed, &Self::OnDelete},
        {control::EditorUp, DialogEvent::Pressed, &Self::OnUp},
        {control::EditorDown, DialogEvent::Pressed, &Self::OnDown},
        {control::ChangeIcon, DialogEvent::Pressed, &Self::OnChangeIcon},
        {control::EditorImport, DialogEvent::Pressed, &Self::OnImport},
        {control::EditorExport, DialogEvent::Pressed, &Self::OnExport},
    };
    Dispatch<Self>(*this, Table, event);
}

void CPMXTemplUIMainDlg::OnCancel() {
    DiscardChanges();
    EndDialog(CodeCancel);
}

} // namespace pmx
