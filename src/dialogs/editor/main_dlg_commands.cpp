#include "dialogs/choice/sel_level_dlg.h"
#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"
#include "store/levels.h"

#include <utility>

namespace pmx {

void CPMXTemplUIMainDlg::OnNew() {
    CPMXTemplUISelLevelDlg dialog(List.get(), Window().Handle(), ServicesInUse());
    dialog.Mode = CreateMode::New;
    dialog.SetSourceIsStandard(0);
    dialog.SetName({});
    dialog.SetLevel(PMX_LEVEL_DOCUMENT);
    if (RunOver(dialog) != CodeOk) {
        return;
    }
    const auto level = static_cast<std::int32_t>(dialog.GetLevel());
    std::unique_ptr<CPMXTemplUIListData> record = MakeFavorite();
    if (!record) {
        Report(StoreResult::OutOfMemory);
        return;
    }
    AddEdited(std::move(record), dialog.GetName(), level, false);
}

void CPMXTemplUIMainDlg::OnEdit() {
    EditOrCopy(false);
}

void CPMXTemplUIMainDlg::OnCopy() {
    EditOrCopy(true);
}

/// Edits the current favorite, or copies it. A standard favorite can only be copied.
void CPMXTemplUIMainDlg::EditOrCopy(bool copy) {
    CPMXTemplUIListData* const record = LoadedFavorite();
    if (record == nullptr) {
        return;
    }
    if (copy || record->IsStandard()) {
        CopyFavorite(*record, copy);
    } else {
        EditFavorite(*record);
    }
}

CPMXTemplUIListData* CPMXTemplUIMainDlg::LoadedFavorite() {
    const int row = CurrentRow();
    if (row < 0) {
        return nullptr;
    }
    CPMXTemplUIListData& record = FavoriteOf(row);
    const bool isLoaded = List->EnsureLoaded(record);
    return Report(isLoaded ? StoreResult::Success : StoreResult::NotRead) ? &record : nullptr;
}

/// An edit is final: the favorite file is overwritten at once.
void CPMXTemplUIMainDlg::EditFavorite(CPMXTemplUIListData& record) {
    const std::unique_ptr<CPMXTemplUIListData> draft = DraftFrom(record);
    if (!draft) {
        return;
    }
    CPmxDocument& edited = *draft->GetDocument();
    if (RunAttributeDialog(record.GetName(), record.GetLevel(), edited, false) !=
        AttributeOutcome::Accepted) {
        return;
    }
    record.SetStandard(0);
    if (!CallHost([&] { *record.GetDocument() = std::as_const(edited); })) {
        record.ReleaseDocument(); // half-way content must not be used
        Report(StoreResult::NotWritten);
        return;
    }
    if (Report(List->SaveFavorite(record) ? StoreResult::Success : StoreResult::NotWritten)) {
        KeepInView();
    }
}

/// Makes a new favorite with the attributes of `source` under a name that the user gives.
void CPMXTemplUIMainDlg::CopyFavorite(const CPMXTemplUIListData& source, bool skipDialog) {
    CPMXTemplUISelLevelDlg dialog(List.get(), Window().Handle(), ServicesInUse());
    dialog.Mode = CreateMode::Copy;
    dialog.SetSourceIsStandard(source.GetStandard());
    dialog.SetName({}); // a copy proposes no name
    dialog.SetLevel(source.GetLevel());
    if (RunOver(dialog) != CodeOk) {
        return;
    }
    const auto level = static_cast<std::int32_t>(dialog.GetLevel());
    if (std::unique_ptr<CPMXTemplUIListData> copy = DraftFrom(source)) {
        AddEdited(std::move(copy), dialog.GetName(), level, skipDialog);
    }
}

/// A new record whose document has the content of the source's. Null after a message.
std::unique_ptr<CPMXTemplUIListData> CPMXTemplUIMainDlg::DraftFrom(const CPMXTemplUIListData& source) {
    std::unique_ptr<CPMXTemplUIListData> draft = MakeFavorite();
    if (!draft) {
        Report(StoreResult::OutOfMemory);
        return nullptr;
    }
    if (!CallHost([&] { *draft->GetDocument() = source.GetDocument(); })) {
        Fail(text::FavoriteInfoFailed);
        return nullptr;
    }
    return draft;
}

/// Lets the user edit the attributes of a new favorite, or skips that, and adds it to the list and to the
/// rows.
void CPMXTemplUIMainDlg::AddEdited(std::unique_ptr<CPMXTemplUIListData> record, const std::string& name,
                                   std::int32_t level, bool skipDialog) {
    if (RunAttributeDialog(name, level, *record->GetDocument(), skipDialog) != AttributeOutcome::Accepted) {
        return;
    }
    StoreResult result = StoreResult::Success;
    {
        const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
        result = List->AddFavorite(std::move(record), name, level);
    }
    if (Report(result)) {
        AppendRow(List->GetSize() - 1);
    }
}

/// False, after a message, for anything but success.
bool CPMXTemplUIMainDlg::Report(StoreResult result) {
    switch (result) {
    case StoreResult::NoFileName:
        Fail(text::NoFileName);
        return false;
    case StoreResult::OutOfMemory:
        Fail(text::OutOfMemory);
        return false;
    case StoreResult::NotWritten:
        Warn(text::FileNotCreated);
        return false;
    case StoreResult::NotRead:
        Warn(text::EditorFavoriteUnreadable);
        return false;
    case StoreResult::NotCopied:
        Warn(text::ImportFailed);
        return false;
    case StoreResult::OwnFile:
        Warn(text::ImportedNotOverwritable);
        return false;
    case StoreResult::Success:
        break;
    }
    return true;
}

} // namespace pmx
