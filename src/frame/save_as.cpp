#include "frame/save_as.h"

#include "dialogs/choice/sel_level_dlg.h"
#include "frame/list_exports.h"
#include "platform/text.h"
#include "res/ids.h"
#include "store/levels.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

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

bool FillDocument(CPmxDocument& document, const std::string& name, std::int32_t level, const void* table) {
    _LM_DOCUMENTLAYOUTTABLE content{};
    std::memcpy(content.Bytes, table, TableSize);
    if (!document.SetName(name)) {
        return false;
    }
    document.SetTemplateLevel(level);
    return document.SetTable(content, false);
}

bool Overwrite(const CPMXTemplUIListDataArray& list, TemplInfo& info, const std::string& name,
               std::int32_t level, const void* table) {
    CPMXTemplUIListData* const record = list.Contains(info.Position) ? list.GetAt(info.Position) : nullptr;
    if (record == nullptr) {
        return false;
    }
    record->SetStandard(0);
    record->SetName(name);
    record->SetLevel(level);
    if (record->GetDocument() == nullptr || !FillDocument(*record->GetDocument(), name, level, table) ||
        !list.SaveFavorite(*record)) {
        return false;
    }
    FillSummaryText(info.Name, name, SystemLeadBytes());
    return true;
}

std::unique_ptr<CPMXTemplUIListData> MakeRecord(const std::string& name, std::int32_t level,
                                                const std::string& fileName) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetName(name);
    record->SetLevel(level);
    record->SetIconIndex(NewFavoriteIcon);
    record->SetFileName(fileName);
    record->SetNewFlag(1);
    return record;
}

bool AddNew(CPMXTemplUIListDataArray& list, TemplInfo& info, const std::string& name, std::int32_t level,
            const void* table) {
    const std::optional<std::string> fileName = list.MakeFileName(name);
    if (!fileName) {
        return false;
    }
    std::unique_ptr<CPMXTemplUIListData> record = MakeRecord(name, level, *fileName);
    // Saved before it gets a place in the list, so that no failure leaves an empty place behind.
    list.MakeRoom();
    if (!record->EnsureDocument() || !FillDocument(*record->GetDocument(), name, level, table) ||
        !list.SaveNewFavorite(*record)) {
        return false;
    }
    info.Standard = record->GetStandard();
    info.Level = record->GetLevel();
    info.Toolbar = record->GetToolbar();
    info.IconIndex = record->GetIconIndex();
    FillSummaryText(info.Name, name, SystemLeadBytes());
    info.Position = list.Add(std::move(record));
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
    const bool saved = mode == SaveAsNew ? AddNew(list, info, name, level, table)
                                         : Overwrite(list, info, name, level, table);
    if (!saved) {
        return SaveAsResult::Failed;
    }
    list.WriteListFile();
    return SaveAsResult::Saved;
}

} // namespace pmx
