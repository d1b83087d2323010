#pragma once

#include "dialogs/base/favorite_list_dlg.h"
#include "platform/dynamic_library.h"
#include "platform/file_dialogs.h"
#include "platform/image_list.h"
#include "store/host_call.h"
#include "store/import_export.h"
#include "store/list_data_array.h"

#include "host/PMXPropUI.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace pmx {

class CPMXTemplUISelLevelDlg;

/// The favorites editor: shows every favorite of a folder and lets the user rename, reorder, delete, create,
/// edit, copy, import and export them, and choose those on the host's toolbar and their icons. Works on a
/// list of its own; the list file is written when the user accepts.
class CPMXTemplUIMainDlg final : public FavoriteListDlg {
public:
    /// `folder`, `listFileName`, `extension`: the favorites to work on; copied. `parent` may be none. The
    /// services must outlive the dialog.
    CPMXTemplUIMainDlg(const char* folder, const char* listFileName, const char* extension,
                       WindowHandle parent, const DialogServices& services,
                       const StoreServices& storeServices);

    /// An editor that has ended in another way than by OK leaves what Cancel leaves.
    ~CPMXTemplUIMainDlg() override;
    CPMXTemplUIMainDlg(const CPMXTemplUIMainDlg&) = delete;
    CPMXTemplUIMainDlg& operator=(const CPMXTemplUIMainDlg&) = delete;

private:
    enum class AttributeOutcome : int { Failed = -1, Accepted = 0, Cancelled = 1 };

    // Opening and events

    bool OnInitDialog() override;
    void OnControlEvent(const ControlEvent& event) override;
    void OnCancel() override;
    void LoadAttributeDialog();
    void FillListView();

    // Rows

    const CPMXTemplUIListDataArray& GetFavorites() const override { return *List; }
    bool MayHaveIcon(const CPMXTemplUIListData& record) const override;
    bool TakeName(int row, const std::string& name) override;

    // Mouse and keyboard

    void OnListClick();
    void OnListDoubleClick();
    void OnListKey(const ControlEvent& event);

    // Commands

    void OnNew();
    void OnEdit();
    void OnCopy();
    void EditOrCopy(bool copy);

    /// The favorite of the current row, its file read; null when there is none, or it cannot be read, as the user is told.
    CPMXTemplUIListData* LoadedFavorite();
    void EditFavorite(CPMXTemplUIListData& record);
    void CopyFavorite(const CPMXTemplUIListData& source, bool skipDialog);
    std::unique_ptr<CPMXTemplUIListData> DraftFrom(const CPMXTemplUIListData& source);
    void AddEdited(std::unique_ptr<CPMXTemplUIListData> record, const std::string& name, std::int32_t level,
                   bool skipDialog);
    bool Report(StoreResult result);

    // The toolbar

    void ToggleToolbar(int row);
    bool CheckToolbarLimit();
    void SetToolbar(int row);
    void ClearToolbar(int row);

    // The print-attribute dialog

    AttributeOutcome RunAttributeDialog(const std::string& name, std::int32_t level, CPmxDocument& document,
                                        bool skipDialog);
    AttributeOutcome FailAttributes(ResourceId id);
    std::optional<std::int32_t> ShowAttributes(std::int32_t level, void* tablePart);

    // Import and export

    void OnImport();
    void ImportFile(const std::string& path);
    StoreResult ReadImport(FavoriteImport& import, const std::string& path) const;
    void DiscardImport(FavoriteImport& import) const;
    bool ConfirmImport(const CPMXTemplUIListData& imported, CPMXTemplUISelLevelDlg& dialog);
    void OnExport();
    std::optional<std::string> AskExportPath(const CPMXTemplUIListData& record);
    StoreResult WriteExport(const CPMXTemplUIListData& record, const std::string& path) const;
    FileRequest FavoriteFileRequest() const;

    // The end

    void Commit() override { CommitList(); }

    /// Writes the list file in the order of the rows, and then deletes the files of deleted favorites.
    void CommitList();

    /// Deletes the favorite files that were made while the editor is open.
    void DiscardChanges();
    void DeleteNewFavorites();

    std::unique_ptr<CPMXTemplUIListDataArray> List;
    std::unique_ptr<DynamicLibrary> PropUILibrary; ///< null when there is none
    PmxShowPropUI ShowPropUI = nullptr;            ///< null when it cannot be used
    std::unique_ptr<ImageList> StateImages;
    bool IsSettled = false; ///< the files that were made meanwhile are the list's, or are gone
};

} // namespace pmx
