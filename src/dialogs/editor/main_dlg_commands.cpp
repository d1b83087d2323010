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
    auto record = std::make_unique<CPMXTemplUIListData>();
    if (!record->EnsureDocument()) {
        Fail(text::OutOfMemory);
        return;
    }
    CPmxDocument& document = *record->GetDocument();
    if (RunAttributeDialog(dialog.GetName(), level, document, false) == AttributeOutcome::Accepted &&
        AddFavorite(dialog.GetName(), level, document, std::move(record))) {
        ReturnToList();
    }
}

void CPMXTemplUIMainDlg::OnEdit() {
    EditOrCopy(false);
}

void CPMXTemplUIMainDlg::OnCopy() {
    EditOrCopy(true);
}

/// Edits the current favorite, or copies it. A standard favorite can only be copied.
void CPMXTemplUIMainDlg::EditOrCopy(bool copy) {
    const int row = CurrentRow();
    if (row < 0) {
        return;
    }
    CPMXTemplUIListData& record = FavoriteOf(row);
    if (!EnsureLoaded(record)) {
        Warn(text::EditorFavoriteUnreadable);
        return;
    }
    if (copy || record.IsStandard()) {
        CopyFavorite(record, copy);
    } else {
        EditFavorite(record);
    }
}

/// An edit is final: the favorite file is overwritten at once.
void CPMXTemplUIMainDlg::EditFavorite(CPMXTemplUIListData& record) {
    CPMXTemplUIListData draft;
    if (!DraftFrom(draft, record)) {
        return;
    }
    CPmxDocument& edited = *draft.GetDocument();
    if (RunAttributeDialog(record.GetName(), record.GetLevel(), edited, false) !=
        AttributeOutcome::Accepted) {
        return;
    }
    record.SetStandard(0);
    if (!Guarded([&] { *record.GetDocument() = std::as_const(edited); })) {
        record.ReleaseDocument(); // half-way content must not be used
        Warn(text::FileNotCreated);
        return;
    }
    if (!List->SaveFavorite(record)) {
        Warn(text::FileNotCreated);
        return;
    }
    ReturnToList();
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
    CPMXTemplUIListData draft;
    if (!DraftFrom(draft, source)) {
        return;
    }
    CPmxDocument& content = *draft.GetDocument();
    if (RunAttributeDialog(dialog.GetName(), level, content, skipDialog) == AttributeOutcome::Accepted) {
        AddCopy(dialog.GetName(), level, content);
    }
}

/// Gives `draft` a document with the content of the source's. False after a message.
bool CPMXTemplUIMainDlg::DraftFrom(CPMXTemplUIListData& draft, const CPMXTemplUIListData& source) {
    if (!draft.EnsureDocument()) {
        Fail(text::OutOfMemory);
        return false;
    }
    if (!Guarded([&] { *draft.GetDocument() = source.GetDocument(); })) {
        Fail(text::FavoriteInfoFailed);
        return false;
    }
    return true;
}

void CPMXTemplUIMainDlg::AddCopy(const std::string& name, std::int32_t level, const CPmxDocument& source) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    if (!record->EnsureDocument()) {
        Fail(text::OutOfMemory);
        return;
    }
    if (!Guarded([&] { *record->GetDocument() = source; })) {
        Fail(text::FavoriteInfoFailed);
        return;
    }
    if (AddFavorite(name, level, source, std::move(record))) {
        ReturnToList();
    }
}

/// Writes the record's document to a new favorite file and appends the record to the list and to the rows.
/// False after a message; nothing is added then, and the record is destroyed. The record's document already
/// has its content; `source` may be the document itself.
bool CPMXTemplUIMainDlg::AddFavorite(const std::string& name, std::int32_t level, const CPmxDocument& source,
                                     std::unique_ptr<CPMXTemplUIListData> record) {
    record->SetStandard(0);
    record->SetName(name);
    record->SetLevel(level);
    record->SetToolbar(0);
    record->SetIconIndex(NewFavoriteIcon);
    record->SetNewFlag(1);
    record->SetDeleteFlag(0);
    record->SetImportFlag(0);
    List->MakeRoom();
    if (!WriteNewFavorite(source, *record)) {
        return false;
    }
    AppendRow(List->Add(std::move(record)));
    return true;
}

bool CPMXTemplUIMainDlg::WriteNewFavorite(const CPmxDocument& source, CPMXTemplUIListData& record) {
    std::optional<std::string> fileName;
    {
        const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
        fileName = List->MakeFileName(record.GetName());
    }
    if (!fileName) {
        Fail(text::NoFileName);
        return false;
    }
    record.SetFileName(*fileName);
    if (!List->SaveNewFavorite(record)) {
        Warn(text::FileNotCreated);
        return false;
    }
    if (record.GetDocument() != &source && !Guarded([&] { *record.GetDocument() = source; })) {
        // The file holds the favorite; the document is read from it again when it is needed.
        record.ReleaseDocument();
    }
    return true;
}

} // namespace pmx
