#pragma once

#include "dialogs/base/pmx_dlg.h"
#include "store/list_data_array.h"

#include <cstdint>
#include <string>

namespace pmx {

/// What the create-favorite dialog is opened for. Callers may hand in other values, which show neither title
/// nor prompt and refuse a name in use without a message.
enum class CreateMode : std::uint32_t {
    New = 0,       ///< the editor's new favorite; the only mode in which the level can be chosen
    SaveAs = 1,    ///< the save-as export
    Copy = 2,      ///< the editor's copy and import
    Overwrite = 3, ///< as Copy, but a name in use may be taken after a question
};

/// The create-favorite dialog: asks for the name of a favorite that is about to be made and, where the caller
/// allows it, for its attribute level. Makes nothing itself: the caller reads name and level after CodeOk.
class CPMXTemplUISelLevelDlg final : public CPmxDlg {
public:
    /// `list`: the favorites whose names are in use; borrowed for the dialog's lifetime, may be null for
    /// none.
    explicit CPMXTemplUISelLevelDlg(const CPMXTemplUIListDataArray* list, WindowHandle parent,
                                    const DialogServices& services);

    /// 1 when the favorite is made from a standard favorite: a name in use is then refused in every mode.
    void SetSourceIsStandard(std::uint32_t isStandard) { SourceIsStandard = isStandard; }

    /// The proposed name.
    void SetName(std::string name) { Name = std::move(name); }

    /// The proposed level, 1 to 5; any other value leaves the present one.
    void SetLevel(std::int32_t level);

    /// After CodeOk: the name without blanks at its ends. After CodeCancel: empty.
    const std::string& GetName() const { return Name; }

    /// After CodeOk: the chosen level, 1 to 5. 0 before.
    std::uint32_t GetLevel() const { return ResultLevel; }

    CreateMode Mode = CreateMode::New;

private:
    bool OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;

    void ShowMode() const;
    bool IsAcceptable();
    bool MayTakeName();
    bool MayUseTakenName();

    const CPMXTemplUIListDataArray* List;
    std::uint32_t SourceIsStandard = 0;
    std::uint32_t ResultLevel = 0;
    std::string Name;
    int LevelIndex = 0; // the checked level button, 0 to 4
};

} // namespace pmx
