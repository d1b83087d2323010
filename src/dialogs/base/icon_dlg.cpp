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
    Icons = LoadFavoriteIcons(ServicesInUse().Images, Window().Resolution());
    if (Icons) {
        list.SetLargeImages(*Icons);
    }
    FillList(list);
    const bool isOffered = Value >= FirstOfferedIcon && Value <= LastOfferedIcon;
    Chosen = isOffered ? static_cast<int>(Value - FirstOfferedIcon) : 0;
    list.Select(Chosen);
    list.EnsureVisible(Chosen);
    return true;
}

void CPMXTemplUIIconDlg::FillList(ListControl& list) const {
    const ListRedrawPause pause(list);
    for (std::int64_t icon = FirstOfferedIcon; icon <= LastOfferedIcon; ++icon) {
        list.InsertRow(static_cast<int>(icon - FirstOfferedIcon), static_cast<int>(icon));
    }
}

void CPMXTemplUIIconDlg::OnControlEvent(const ControlEvent& event) {
    using Self = CPMXTemplUIIconDlg;
    static constexpr EventHandler<Self> Table[] = {
        {control::PickerIcons, DialogEvent::ListSelectionChanged, &Self::OnSelectionChanged},
        {control::PickerIcons, DialogEvent::ListDoubleClicked, &Self::OnDoubleClick},
    };
    Dispatch<Self>(*this, Table, event);
}

/// A click beside the icons changes nothing.
void CPMXTemplUIIconDlg::OnSelectionChanged() {
    const int row = Window().ListOf(control::PickerIcons).SelectedRow();
    Chosen = row >= 0 ? row : Chosen;
}

void CPMXTemplUIIconDlg::OnDoubleClick() {
    if (Window().ListOf(control::PickerIcons).HitOfMessage().Row >= 0) {
        OnOK();
    }
}

void CPMXTemplUIIconDlg::OnOK() {
    Value = FirstOfferedIcon + Chosen;
    EndDialog(CodeOk);
}

} // namespace pmx
