#include "frame/save_as.h"

#include "dialogs/choice/sel_level_dlg.h"
#include "frame/list_exports.h"
#include "res/ids.h"
#include "store/levels.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace pmx {

namespace {

/// The text of a TemplInfo field, which a host may have left without its terminating zero.
std::string TextIn(const char (&field)[PMX_TEMPLINFO_TEXT_SIZE]) {
    return {field, std::find(std::begin(field), std::end(field), '\0')};
}

std::string ProposedName(const TemplInfo& info, const DialogServices& services) {
    std::string name = TextIn(info.Name);
    if (info.Standard != 1) {
        return name;
    }
    return FormatText(services.Strings.StringOf(text::CopyOf).value_or("%s"), {name});
}

/// Runs the create-favorite dialog. Its end code; the confirmed name goes to `name`.
int AskName(const CPMXTemplUIListDataArray& list, const TemplInfo& info, WindowHandle parent,
            const DialogServices& services, std::string& name) {
    CPMXTemplUISelLevelDlg dialog(&list, parent, services);
    dialog.Mode = CreateMode::SaveAs;
    dialog.SetSourceIsStandard(info.Standard);
    dialog.SetName(ProposedName(info, services));
    dialog.SetLevel(info.Level);
    const int code = dialog.DoModal();
    name = dialog.GetName();
    return code;
}

_LM_DOCUMENTLAYOUTTABLE TableFrom(const void* bytes) {
    _LM_DOCUMENTLAYOUTTABLE table{};
    std::memcpy(table.Bytes, bytes, TableSize);
    return table;
}

bool Overwrite(const CPMXTemplUIListDataArray& list, TemplInfo& info, const std::string& name,
               std::int32_t level, const _LM_DOCUMENTLAYOUTTABLE& table) {
    if (!list.Contains(info.Position)) {
        return false;
    }
    CPMXTemplUIListData& record = list.At(info.Position);
    record.SetStandard(0);
    record.SetName(name);
    record.SetLevel(level);
    if (record.GetDocument() == nullptr || !StampDocument(*record.GetDocument(), name, level, &table) ||
        !list.SaveFavorite(record)) {
        return false;
    }
    FillSummaryText(info.Name, name);
    return true;
}

bool AddNew(CPMXTemplUIListDataArray& list, TemplInfo& info, const std::string& name, std::int32_t level,
            const _LM_DOCUMENTLAYOUTTABLE& table) {
    std::unique_ptr<CPMXTemplUIListData> made = MakeFavorite();
    if (!made || !StampDocument(*made->GetDocument(), name, level, &table) ||
        list.AddFavorite(std::move(made), name, level) != StoreResult::Success) {
        return false;
    }
    info.Position = list.GetSize() - 1;
    const CPMXTemplUIListData& record = list.At(info.Position);
    info.Standard = record.GetStandard();
    info.Level = record.GetLevel();
    info.Toolbar = record.GetToolbar();
    info.IconIndex = record.GetIconIndex();
    FillSummaryText(info.Name, name);
    return true;
}

} // namespace

SaveAsResult SaveAsFavorite(CPMXTemplUIListDataArray& list, std::int32_t mode, TemplInfo& info,
                            const void* table, WindowHandle parent, const DialogServices& services) {
    const std::int32_t level = info.Level; // the host may use its record while the dialog is open
    std::string name;
    const int code = AskName(list, info, parent, services, name);
    if (code != CodeOk) {
        return code == CodeCancel ? SaveAsResult::Cancelled : SaveAsResult::Failed;
    }
    const bool saved = mode == SaveAsNew ? AddNew(list, info, name, level, TableFrom(table))
                                         : Overwrite(list, info, name, level, TableFrom(table));
    if (!saved) {
        return SaveAsResult::Failed;
    }
    list.WriteListFile();
    return SaveAsResult::Saved;
}

} // namespace pmx
