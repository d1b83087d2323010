#include "dialogs/choice/choice_entry_dlg.h"

#include "dialogs/base/icon_dlg.h"
#include "res/ids.h"

#include <optional>

namespace pmx {

CPMXTemplUIChoiceEntryDlg::CPMXTemplUIChoiceEntryDlg(const char* folder, const char* listFileName,
                                                     const char* extension, const void* table,
                                                     std::int32_t level, WindowHandle parent,
                                                     const DialogServices& services,
                                                     const StoreServices& storeServices)
    : CPmxDlg(dialog::RegisterFavorite, parent, services),
      Favorites(listFileName, extension, storeServices),
      Level(level),
      Table(table) {
    Favorites.GetList().SetFolder(folder);
}

bool CPMXTemplUIChoiceEntryDlg::OnInitDialog() {
    LimitName(control::RegisterName);
    Window().SetText(control::RegisterName, Name);
    // A list that cannot be read is an empty one; storing a favorite shows whether the folder can be used.
    Favorites.GetList().LoadList();
    Window().SetTitle(StringOf(text::RegisterTitle));
    Icons = LoadFavoriteIcons(ServicesInUse().Images, Window().Resolution());
    ShowFavoriteIcon(Window(), control::RegisterIcon, Icons.get(), IconValue);
    return true;
}

void CPMXTemplUIChoiceEntryDlg::OnControlEvent(const ControlEvent& event) {
    using Self = CPMXTemplUIChoiceEntryDlg;
    static constexpr EventHandler<Self> Handlers[] = {
        {control::RegisterChangeIcon, DialogEvent::Pressed, &Self::OnChangeIcon},
    };
    Dispatch<Self>(*this, Handlers, event);
}

void CPMXTemplUIChoiceEntryDlg::OnChangeIcon() {
    CPMXTemplUIIconDlg picker(IconValue, 0, std::nullopt, Window().Handle(), ServicesInUse());
    if (RunOver(picker) != CodeOk) {
        return;
    }
    IconValue = picker.IconValue();
    ShowFavoriteIcon(Window(), control::RegisterIcon, Icons.get(), IconValue);
}

void CPMXTemplUIChoiceEntryDlg::OnOK() {
    Name = NameIn(control::RegisterName);
    if (!IsAcceptable()) {
        Window().Focus(control::RegisterName);
        return;
    }
    Store();
    EndDialog(CodeOk);
}

bool CPMXTemplUIChoiceEntryDlg::IsAcceptable() {
    if (Name.empty()) {
        Warn(text::RegisterNameMissing);
        return false;
    }
    if (HasSeparator(Name)) {
        Warn(text::NameHasSeparator);
        return false;
    }
    switch (Favorites.GetList().CheckName(Name)) {
    case NameUse::StandardFavorite:
        Warn(text::RegisterStandardNotOverwritable);
        return false;
    case NameUse::UserFavorite:
        return AskYesNo(text::RegisterAskOverwrite);
    case NameUse::Unused:
        break;
    }
    return true;
}

/// Stores the favorite and puts it on the toolbar. A favorite that cannot be stored is not reported: the
/// dialog ends as accepted all the same, and the list file stays as it was.
void CPMXTemplUIChoiceEntryDlg::Store() {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    if (!Favorites.StoreFavorite(Name, Level, Table)) {
        return;
    }
    // Storing takes a favorite off the toolbar and resets its icon.
    if (CPMXTemplUIListData* const record = Favorites.FindByName(Name)) {
        record->SetToolbar(1);
        record->SetIconIndex(IconValue);
    }
    Favorites.SaveList();
}

} // namespace pmx
