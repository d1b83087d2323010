#pragma once

#include "dialogs/base/pmx_dlg.h"
#include "platform/dynamic_library.h"
#include "platform/file_dialogs.h"
#include "platform/image_list.h"
#include "store/host_call.h"
#include "store/import_export.h"
#include "store/list_data_array.h"

#include "host/PMXPropUI.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

namespace pmx {

class CPMXTemplUISelLevelDlg;

/// The favorites editor: shows every favorite of a folder and lets the user rename, reorder, delete, create,
/// edit, copy, import and export them, and choose those on the host's toolbar and their icons. Works on a
/// list of its own; the list file is written when the user accepts.
///
/// A row of the list view carries as its item data the index of its record in `List`, where records never
/// move while the editor is open: moving changes the order of the rows, deleting takes the row away and marks
/// the record.
class CPMXTemplUIMainDlg final : public CPmxDlg {
public:
    /// Most records that may be on the toolbar.
    static constexpr std::int64_t ToolbarLimit = 20;

    /// The favorites `folder`, the name of its list file and the extension of favorite files with its dot.
    /// `parent` may be none. The services must outlive the dialog.
    CPMXTemplUIMainDlg(std::string folder, const std::string& listFileName, std::string extension,
                       WindowHandle parent, const DialogServices& services = SystemDialogServices(),
                       const StoreServices& storeServices = SystemStoreServices());
    ~CPMXTemplUIMainDlg() override;

private:
    enum class AttributeOutcome : int { Failed = -1, Accepted = 0, Cancelled = 1 };

    // Opening and events

    bool OnInitDialog() override;
    void OnControlEvent(const ControlEvent& event) override;
    void OnOK() override;
    void OnCancel() override;
    void LoadAttributeDialog();
    void OpenList();

    // Rows

    ListControl& ListView() const;
    void FillListView();
    void InsertFavorite(int position, std::int64_t index);
    void AppendRow(std::int64_t index);
    void MoveRow(int from, int to);

    /// The row that commands act on: the selection mark when that row is selected, else -1.
    int CurrentRow() const;

    /// The record at that index of the list, owned by it; null for an index outside.
    CPMXTemplUIListData* GetRecord(std::int64_t index) const;
    CPMXTemplUIListData* RecordOfRow(int row) const;

    /// Sets `EditName`, the icon and the enabling of the controls from the row's record.
    void RefreshControls(int row);
    void EnableRowControl(ControlId id, bool enabled);
    void EnableMoving(int row);
    void DisableRowControls();

    /// Puts `EditName` into the name box.
    void TransferName() const;
    void ShowRow(int row);
    void ShowCurrentRow();
    void SelectRow(int row);
    void ReturnToList();

    // The name box

    void OnNameEntered();
    void OnNameLeft();
    bool Rename();
    void ApplyName(CPMXTemplUIListData& record, const std::string& name);
    std::string EnteredName(const CPMXTemplUIListData& record) const;
    void RefuseName(ResourceId id);

    // Mouse and keyboard

    void OnListClicked();
    void OnListDoubleClicked();
    void OnListKey(const ControlEvent& event);
    void OnUpKey();
    void OnDownKey();
    void OnToggleKey();

    // Commands

    void OnNew();
    void OnEdit();
    void OnCopy();
    void EditOrCopy(bool copy);
    void EditFavorite(CPMXTemplUIListData& record);
    void CopyFavorite(const CPMXTemplUIListData& source, bool skipDialog);
    bool DraftFrom(CPMXTemplUIListData& draft, const CPMXTemplUIListData& source);
    void AddCopy(const std::string& name, std::int32_t level, const CPmxDocument& source);
    void OnDelete();
    void OnUp();
    void OnDown();
    void OnChangeIcon();
    bool AddFavorite(const std::string& name, std::int32_t level, const CPmxDocument& source,
                     std::unique_ptr<CPMXTemplUIListData> record);
    bool WriteNewFavorite(const CPmxDocument& source, CPMXTemplUIListData& record);

    // The toolbar

    bool ToggleToolbar(int row);
    bool CheckToolbarLimit();
    void SetToolbar(int row);
    void ClearToolbar(int row);
    void MarkToolbar(int row, bool onToolbar);

    // The print-attribute dialog

    AttributeOutcome RunAttributeDialog(const std::string& name, std::int32_t level, CPmxDocument& document,
                                        bool skipDialog);
    AttributeOutcome FailAttributes(ResourceId id);
    std::optional<std::int32_t> ShowAttributes(std::int32_t level, void* tablePart);
    bool TakeTable(const std::string& name, std::int32_t level, CPmxDocument& document,
                   const _LM_DOCUMENTLAYOUTTABLE& table) const;

    // Documents

    bool EnsureLoaded(CPMXTemplUIListData& record) const;

    /// Calls the host's libraries; false when they raised anything.
    template <typename Work>
    bool Guarded(Work work) const {
        return CallHost(ServicesInUse().ForeignCalls, work);
    }

    // Import and export

    void OnImport();
    void ImportFile(const std::string& path);
    ImportResult ReadImport(FavoriteImport& import, const std::string& path) const;
    void DiscardImport(FavoriteImport& import) const;
    bool ConfirmImport(const CPMXTemplUIListData& imported, CPMXTemplUISelLevelDlg& dialog);
    void ReportImport(ImportResult result);
    void OnExport();
    std::optional<std::string> AskExportPath(const CPMXTemplUIListData& record);
    ExportResult WriteExport(const CPMXTemplUIListData& record, const std::string& path) const;
    void ReportExport(ExportResult result);
    FileRequest FavoriteFileRequest() const;

    // The end

    /// Writes the list file in the order of the rows, and then deletes the files of deleted favorites.
    /// Reports success in every case.
    bool CommitList();

    /// Deletes the favorite files that were made while the editor is open. Reports success in every case.
    bool DiscardChanges();

    // Messages

    void Warn(ResourceId id, std::initializer_list<TextArgument> arguments = {});
    void Fail(ResourceId id);

    std::string EditName;     ///< bound to the name box
    std::string Extension;    ///< of favorite files, with its dot
    std::string Folder;       ///< once opened, as the list has it
    std::string ListFilePath; ///< empty while the folder cannot be used
    std::unique_ptr<CPMXTemplUIListDataArray> List;
    std::unique_ptr<DynamicLibrary> PropUILibrary; ///< null when there is none
    PmxShowPropUI ShowPropUI = nullptr;            ///< null when it cannot be used
    std::unique_ptr<ImageList> StateImages;
    std::unique_ptr<ImageList> IconImages;
    std::string Message; ///< the text of the last message
    int EditRow = -1;    ///< the row whose name is in the name box
};

} // namespace pmx
