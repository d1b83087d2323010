#include "host/favorites_toolbar.h"

#include "host/resource.h"
#include "host/text.h"

namespace pmx::host {

FavoritesToolbar::FavoritesToolbar(HWND parent)
    : Bar(CreateWindowExW(0, TOOLBARCLASSNAMEW, nullptr,
                          WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_TOP, 0, 0, 0, 0,
                          parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_TOOLBAR)),
                          GetModuleHandleW(nullptr), nullptr)) {
    SendMessageW(Bar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
}

void FavoritesToolbar::SetIcons(HIMAGELIST icons) {
    SendMessageW(Bar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(icons));
}

void FavoritesToolbar::Clear() {
    while (SendMessageW(Bar, TB_DELETEBUTTON, 0, 0) != FALSE) {
    }
    Shown.clear();
}

void FavoritesToolbar::Fill(const std::vector<TemplInfo>& favorites) {
    Clear();
    constexpr std::size_t Most = IDM_TOOLBAR_LAST - IDM_TOOLBAR_FIRST + 1;
    for (const auto& favorite : favorites) {
        if (favorite.Toolbar != 0 && Shown.size() < Most) {
            AddButton(favorite);
        }
    }
    SendMessageW(Bar, TB_AUTOSIZE, 0, 0);
}

void FavoritesToolbar::AddButton(const TemplInfo& favorite) {
    TBBUTTON button{};
    button.iBitmap = static_cast<int>(favorite.IconIndex);
    button.idCommand = IDM_TOOLBAR_FIRST + static_cast<int>(Shown.size());
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = BTNS_CHECK;
    SendMessageW(Bar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
    Shown.push_back(favorite);
}

void FavoritesToolbar::MarkApplied(std::int64_t position) {
    for (std::size_t index = 0; index < Shown.size(); ++index) {
        const bool applied = Shown[index].Position == position;
        SendMessageW(Bar, TB_CHECKBUTTON, IDM_TOOLBAR_FIRST + index, MAKELPARAM(applied, 0));
    }
}

const TemplInfo* FavoritesToolbar::FavoriteOf(int command) const {
    const auto index = static_cast<std::size_t>(command - IDM_TOOLBAR_FIRST);
    return index < Shown.size() ? &Shown[index] : nullptr;
}

void FavoritesToolbar::AnswerTooltip(NMTTDISPINFOW& request) {
    if (const TemplInfo* favorite = FavoriteOf(static_cast<int>(request.hdr.idFrom))) {
        Tooltip = ToWide(favorite->Name);
        request.lpszText = Tooltip.data();
    }
}

} // namespace pmx::host
