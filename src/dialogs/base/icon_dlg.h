#pragma once

#include "dialogs/base/pmx_dlg.h"
#include "platform/image_list.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pmx {

/// The icon picker: lets the user choose one of the icons 14 to 59 for a favorite. Also the smallest complete
/// example of a dialog class.
class CPMXTemplUIIconDlg final : public CPmxDlg {
public:
    /// `iconValue`: the favorite's icon at present. `toolbar`: the favorite's toolbar flag; kept, not used.
    /// `title`: none for the standard title.
    CPMXTemplUIIconDlg(std::int64_t iconValue, std::uint32_t toolbar, std::optional<std::string> title,
                       WindowHandle parent, const DialogServices& services);

    /// The icon that was chosen when DoModal returned CodeOk; otherwise the one given to the constructor.
    std::int64_t IconValue() const noexcept { return Value; }

    std::uint32_t Toolbar() const noexcept { return ToolbarFlag; }

private:
    bool OnInitDialog() override;
    void OnOK() override;
    void OnControlEvent(const ControlEvent& event) override;
    void OnSelectionChanged();
    void OnDoubleClick();

    void FillList(ListControl& list) const;

    std::string Title;
    std::unique_ptr<ImageList> Icons;
    std::int64_t Value;
    int Chosen = 0; ///< the row that was selected last
    std::uint32_t ToolbarFlag;
};

} // namespace pmx
