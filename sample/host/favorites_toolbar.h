#pragma once

#include <PMXTemplUI.h>

#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace pmx::host {

/// The toolbar with one button for each favorite that is marked for it. A press comes as WM_COMMAND with the
/// button's number: IDM_TOOLBAR_FIRST plus the favorite's place among those shown.
class FavoritesToolbar {
public:
    explicit FavoritesToolbar(HWND parent);

    HWND Get() const { return Bar; }

    /// The pictures of the buttons, not owned; to be followed by Fill.
    void SetIcons(HIMAGELIST icons);

    /// Shows the buttons of the favorites.
    void Fill(const std::vector<TemplInfo>& favorites);

    /// Shows the favorite at that position of the list as the applied one; -1 is none.
    void MarkApplied(std::int64_t position);

    /// The favorite of a button; null when there is none of that number.
    const TemplInfo* FavoriteOf(int command) const;

    /// Gives the name of the button's favorite to a tooltip that asks for it.
    void AnswerTooltip(NMTTDISPINFOW& request);

private:
    void Clear();
    void AddButton(const TemplInfo& favorite);

    HWND Bar;
    std::vector<TemplInfo> Shown;
    std::wstring Tooltip;
};

} // namespace pmx::host
