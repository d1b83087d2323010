#pragma once

#include "dialogs/base/favorite_list_dlg.h"
#include "store/list_holder.h"

#include <cstdint>
#include <string>

namespace pmx {

/// The basic list: lets the user rename, reorder and delete the favorites of a folder and change their icons.
/// The list file is written in the order of the rows when the user accepts; favorite files stay as they are,
/// those of deleted favorites too.
class CPMXTemplUIChoiceBasicDlg final : public FavoriteListDlg {
public:
    /// `folder`, `listFileName`, `extension`: the favorites to work on; copied. `parent` may be none. The
    /// services must outlive the dialog.
    CPMXTemplUIChoiceBasicDlg(const char* folder, const char* listFileName, const char* extension,
                              WindowHandle parent, const DialogServices& services,
                              const StoreServices& storeServices);

private:
    bool OnInitDialog() override;
    void OnControlEvent(const ControlEvent& event) override;
    void Commit() override;

    void OnListKey(const ControlEvent& event);

    const CPMXTemplUIListDataArray& GetFavorites() const override { return Favorites.GetList(); }
    bool MayHaveIcon(const CPMXTemplUIListData& record) const override;
    bool TakeName(int row, const std::string& name) override;

    CPMXTemplUIListHolder Favorites;
};

} // namespace pmx
