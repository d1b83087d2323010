#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"
#include "store/levels.h"

#include <cstddef>

namespace pmx {

/// Lets the user edit the part of the document's attribute table that belongs to `level`, or skips that, and
/// stamps name, level and table into the document. Has shown the message when it fails; a level without a
/// part fails silently.
CPMXTemplUIMainDlg::AttributeOutcome CPMXTemplUIMainDlg::RunAttributeDialog(const std::string& name,
                                                                            std::int32_t level,
                                                                            CPmxDocument& document,
                                                                            bool skipDialog) {
    const std::optional<std::size_t> start = PartStart(level);
    if (!start) {
        return AttributeOutcome::Failed;
    }
    _LM_DOCUMENTLAYOUTTABLE table{};
    if (!CallHost([&] { document.GetTable(table); })) {
        return FailAttributes(text::AttributeTableFailed);
    }
    const std::optional<std::int32_t> outcome =
        skipDialog ? PMX_PROPUI_OK : ShowAttributes(level, table.Bytes + *start);
    if (!outcome) {
        return FailAttributes(text::AttributeDialogMissing);
    }
    if (*outcome == PMX_PROPUI_CANCEL) {
        return AttributeOutcome::Cancelled;
    }
    if (*outcome != PMX_PROPUI_OK) {
        return FailAttributes(text::AttributeDialogFailed);
    }
    bool isStamped = false;
    const bool isCompleted = CallHost([&] { isStamped = StampDocument(document, name, level, &table); });
    return isCompleted && isStamped ? AttributeOutcome::Accepted : FailAttributes(text::AttributeTableFailed);
}

CPMXTemplUIMainDlg::AttributeOutcome CPMXTemplUIMainDlg::FailAttributes(ResourceId id) {
    Fail(id);
    return AttributeOutcome::Failed;
}

/// Runs the host's print-attribute dialog. Its result; none when there is no such dialog or it raised an
/// error, after which it is not called again until the editor is opened anew.
std::optional<std::int32_t> CPMXTemplUIMainDlg::ShowAttributes(std::int32_t level, void* tablePart) {
    if (ShowPropUI == nullptr) {
        return std::nullopt;
    }
    constexpr std::int32_t Mode = 1;
    constexpr std::int32_t Flag = 1;
    const std::int32_t kind = level - PMX_LEVEL_DOCUMENT;
    void* const owner = reinterpret_cast<void*>(Window().Handle());
    std::int32_t outcome = 0;
    const ModalScope scope(*this);
    if (!CallHost([&] { outcome = ShowPropUI(Mode, kind, tablePart, Flag, owner, 0, 0, 0); })) {
        ShowPropUI = nullptr;
        return std::nullopt;
    }
    return outcome;
}

} // namespace pmx
