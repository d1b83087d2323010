#pragma once

#include "host/favorites.h"
#include "host/favorites_toolbar.h"
#include "host/image_list.h"
#include "host/list_view.h"
#include "host/page_view.h"
#include "host/window.h"

#include <memory>
#include <optional>
#include <string>
#include <type_traits>

namespace pmx::host {

/// The host's window: menu, favorites toolbar, the document's sheets, the list of favorites and the settings.
class MainWindow : public Window {
public:
    /// Opens the favorites of the folder, which is made when it is missing. Throws std::runtime_error with a
    /// message for the user, in UTF-16 as ErrorText, when that fails.
    explicit MainWindow(const std::wstring& favoritesFolder);

protected:
    std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    /// What is remembered of the favorite that was applied last. A standard one is known by its number, which
    /// stands for the path, and a user's by its file, which it keeps when it is renamed.
    struct Applied {
        std::string FilePath;
        std::int32_t Level = 0;
        std::int64_t Position = -1;
    };
    struct FontDeleter {
        void operator()(HFONT font) const { DeleteObject(font); }
    };
    using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;
    struct Command {
        int Id;
        void (MainWindow::*Run)();
    };

    void OnCreated();
    void CreateFavoritesPane();
    void CreateHeading(int textId, HWND& heading);
    void AdaptToScreen();
    void OnScreenChanged(const RECT& place);
    void ArrangeChildren();
    void OnCommand(int id);
    bool RunDocumentCommand(int id);
    std::optional<LRESULT> OnNotify(NMHDR& header);
    void OnMenuOpened(HMENU menu);

    void ApplyFavorite(const TemplInfo& favorite);
    void ApplyByName(const TemplInfo& favorite);
    void ShowApplied(const TemplInfo& favorite, bool succeeded);
    void ApplySelected();
    void Reapply();
    void SaveAsNew();
    void SaveOver();
    void Register();
    void ShowEditor();
    void ShowBasicList();
    void AddStandards();
    void ShowAttributes();
    void ShowAbout();
    void Exit();

    void ShowFavorites();
    void ShowDocument();
    void ShowChange();
    void ShowStatus(std::size_t sheets);
    void SetStatus(WPARAM part, const std::wstring& text);
    void SetApplied(const TemplInfo& favorite);
    const TemplInfo* FindApplied() const;
    void Report(Outcome outcome);
    void Complain(const std::wstring& text);

    Favorites Store;
    sample::AttributeTable Table = sample::FreshTable(); ///< the document's settings
    std::optional<Applied> LastApplied;
    bool IsChanged = false; ///< whether the settings were changed by hand since then
    std::optional<FavoritesToolbar> Toolbar;
    std::optional<PageView> Pages;
    std::optional<ListView> List;
    std::optional<ListView> Summary;
    ImageList Icons;
    Font MessageFont;
    int Resolution = USER_DEFAULT_SCREEN_DPI;
    HWND ListHeading = nullptr;
    HWND SummaryHeading = nullptr;
    HWND Status = nullptr;
};

} // namespace pmx::host
