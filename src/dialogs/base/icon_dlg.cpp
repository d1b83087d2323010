#include "dialogs/base/icon_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "res/ids.h"

#include <utility>

namespace pmx {

CPMXTemplUIIconDlg::CPMXTemplUIIconDlg(std::int64_t iconValue, std::uint32_t toolbar,
                                       std::optional<std::string> title, WindowHandle parent,
                                       const DialogServices& services)
    : CPmxDlg(dialog::IconPicker, parent, services),
      Title(title ? *std::move(title) : StringOf(text::PickerTitle)),
      Value(iconValue),
      ToolbarFlag(toolbar) {}

bool CPMXTemplUIIconDlg::OnInitDialog() {
    Window().SetTitle(Title);
    ListControl& list = Window().ListOf(control::PickerIcons);
    list.SetFullRowSelection(false);
    Icons = LoadFavoriteIcons(ServicesInUse().Images);
    if (Icons) {
        list.SetLargeImages(*Icons);
    }
    FillList(list);
    const bool isOffered = Value >= FirstOfferedIcon && Value <= LastOfferedIcon;
    const int row = isOffered ? static_cast<int>(Value - FirstOfferedIcon) : 0;
    list.Select(row);
    list.EnsureVisible(row);
    return true;
}

void CPMXTemplUIIconDlg::FillList(ListControl& list) const {
    const ListRedrawPause pause(list);
    for (std::int64_t icon = FirstOfferedIcon; icon <= LastOfferedIcon; ++icon) {
        const int position = static_cast<int>(icon - FirstOfferedIcon);
        list.InsertRow(position, icon, static_cast<int>(icon)); // a row's item data is its icon value
    }
}

void CPMXTemplUIIconDlg::OnOK() {
    const ListControl& list = Window().ListOf(control::PickerIcons);
    const int row = list.SelectionMark();
    if (row >= 0) {
        Value = list.RowData(row);
    }
    EndDialog(CodeOk);
}

} // namespace pmx
