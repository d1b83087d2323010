#pragma once

#include "dialogs/base/favorite_icons.h"
#include "dialogs/base/pmx_dlg.h"
#include "platform/image_list.h"
#include "store/levels.h"
#include "store/list_holder.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pmx {

/// The register dialog: stores the host's attribute table as a favorite under a name that the user gives,
/// with an icon, and puts it on the toolbar.
class CPMXTemplUIChoiceEntryDlg final : public CPmxDlg {
public:
    /// `folder`, `listFileName`, `extension`: the favorites to work on; copied. `table`: begins with the part
    /// of `level` (1 to 5) of an attribute table and runs to the table's end; borrowed for the dialog's
    /// lifetime.
    CPMXTemplUIChoiceEntryDlg(const char* folder, const char* listFileName, const char* extension,
                              const void* table, std::int32_t level, WindowHandle parent,
                              const DialogServices& services, const StoreServices& storeServices);

private:
    bool OnInitDialog() override;
    void OnOK() override;
    void OnControlEvent(const ControlEvent& event) override;

    void OnChangeIcon();
    bool IsAcceptable();
    void Store();

    std::string Name;
    std::unique_ptr<ImageList> Icons;
    CPMXTemplUIListHolder Favorites;
    std::int32_t Level;
    const void* Table;
    std::int64_t IconValue = NewFavoriteIcon;
};

} // namespace pmx
