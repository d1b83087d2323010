#include "dialogs/choice/sel_level_dlg.h"
#include "dialogs/editor/main_dlg.h"
#include "platform/text.h"
#include "res/ids.h"

#include <vector>

namespace pmx {

FileRequest CPMXTemplUIMainDlg::FavoriteFileRequest() const {
    FileRequest request;
    request.Owner = Window().Handle();
    request.Filters = {{StringOf(text::FileFilter), StringOf(text::FilePattern)},
                       {StringOf(text::AllFilesFilter), "*.*"}};
    request.DefaultExtension = List->GetExtension();
    return request;
}

void CPMXTemplUIMainDlg::OnImport() {
    FileRequest request = FavoriteFileRequest();
    request.FileMustExist = true;
    request.PathMustExist = true;
    std::optional<std::string> path;
    {
        const ModalScope scope(*this);
        path = ServicesInUse().FileChoice.AskOpen(request);
    }
    if (path) {
        ImportFile(*path);
    }
}

void CPMXTemplUIMainDlg::ImportFile(const std::string& path) {
    CPMXTemplUISelLevelDlg dialog(List.get(), Window().Handle(), ServicesInUse());
    FavoriteImport import(*List);
    if (!Report(ReadImport(import, path)) || !ConfirmImport(import.GetRecord(), dialog)) {
        DiscardImport(import);
        return;
    }
    // Without a favorite of the same name nobody was asked, and the name is empty: it is for the user to
    // give.
    AppendRow(import.Finish(dialog.GetName()));
}

StoreResult CPMXTemplUIMainDlg::ReadImport(FavoriteImport& import, const std::string& path) const {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    return import.Read(path);
}

void CPMXTemplUIMainDlg::DiscardImport(FavoriteImport& import) const {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    import.Discard();
}

/// Asks for a name once for each favorite of the list that has the name of the imported one. False when the
/// user cancels.
bool CPMXTemplUIMainDlg::ConfirmImport(const CPMXTemplUIListData& imported, CPMXTemplUISelLevelDlg& dialog) {
    for (const CPMXTemplUIListData* const record : List->GetRecords()) {
        if (!EqualIgnoringCase(record->GetName(), imported.GetName())) {
            continue;
        }
        dialog.Mode = CreateMode::Copy;
        dialog.SetSourceIsStandard(imported.GetStandard());
        dialog.SetName(imported.GetName());
        dialog.SetLevel(imported.GetLevel());
        if (RunOver(dialog) != CodeOk) {
            return false;
        }
    }
    return true;
}

void CPMXTemplUIMainDlg::OnExport() {
    const CPMXTemplUIListData* const record = LoadedFavorite();
    if (record == nullptr) {
        return;
    }
    const std::optional<std::string> path = AskExportPath(*record);
    if (path && Report(WriteExport(*record, *path))) {
        KeepInView();
    }
}

std::optional<std::string> CPMXTemplUIMainDlg::AskExportPath(const CPMXTemplUIListData& record) {
    FileRequest request = FavoriteFileRequest();
    request.ProposedName = ProposedExportName(*List, record);
    request.AskBeforeOverwriting = true;
    const ModalScope scope(*this);
    return ServicesInUse().FileChoice.AskSave(request);
}

StoreResult CPMXTemplUIMainDlg::WriteExport(const CPMXTemplUIListData& record,
                                            const std::string& path) const {
    const std::unique_ptr<WaitCursor> waiting = Window().ShowWaitCursor();
    return ExportFavorite(*List, record, path);
}

} // namespace pmx
