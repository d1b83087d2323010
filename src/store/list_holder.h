#pragma once

#include "store/list_data_array.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pmx {

/// Results of the operations that work on favorite files.
enum class StoreResult : std::int32_t {
    Success = 0,
    NoFileName = 4096, ///< no file name could be made
    NotWritten = 8192, ///< the favorite file could not be written
    NotRead = 16384,   ///< the favorite file could not be read
};

/// One list of favorites with its folder, for one call or one run of a dialog: loads, stores, renames and
/// finds favorites by name. Owns the list. Texts are in the system's code page.
class CPMXTemplUIListHolder {
public:
    /// `listFileName` and `extension` as for the list; `services` must outlive the holder.
    CPMXTemplUIListHolder(const char* listFileName, const char* extension,
                          const StoreServices& services = SystemStoreServices());

    /// Empties the list, sets its folder and reads its list file; false when the folder is none or memory ran
    /// out.
    bool Open(const char* folder);

    CPMXTemplUIListDataArray& GetList() { return List; }
    const CPMXTemplUIListDataArray& GetList() const { return List; }

    std::int64_t GetCount() const { return List.GetSize(); }

    /// The record, owned by the list, or null for an empty slot or an index outside the list.
    CPMXTemplUIListData* GetAt(std::int64_t index) const;

    /// The first record with exactly this name, or null.
    CPMXTemplUIListData* FindByName(const std::string& name) const { return List.FindByName(name); }

    /// Reads the record's favorite file afresh, whatever the record held. NotRead on failure.
    StoreResult LoadRecordDocument(CPMXTemplUIListData& record) const;

    /// Renames the record at `index`. True also when the index is outside the list, which changes nothing.
    /// The name inside the document is set only when the document is loaded here; one that is loaded already
    /// keeps its own. False for an empty slot and when the favorite file cannot be read; the record then has
    /// the new name all the same.
    bool RenameAt(std::int64_t index, const std::string& name);

    /// False when the index is outside the list or another record has the name, without regard to case.
    bool IsNewNameUnique(std::int64_t index, const std::string& name) const;

    /// Copies the attribute table of the favorite with exactly this name, beginning with the part of `level`,
    /// which must be the favorite's; bytes beyond the table's end are zero. False, with `table` as it was,
    /// when there is no such favorite, its file cannot be read, or its level is another.
    bool GetAttributeTable(const std::string& name, std::int32_t level, _LM_DOCUMENTLAYOUTTABLE& table);

    /// Stores the part of `level` (1 to 5), which `part` begins with and which runs to the table's end, as
    /// the favorite of that name: a new one, or over the existing one with exactly this name. False when that
    /// fails; a name that differs from an existing one in case alone fails.
    bool StoreFavorite(const std::string& name, std::int32_t level, const void* part);

    /// Resets a record of the list to a user favorite off the toolbar with the new favorite's icon, writes
    /// its document to the file that it has, and then gives the document the content of `source`, which may
    /// be the document itself.
    StoreResult SaveExistingRecord(const std::string& name, std::int32_t level, const CPmxDocument& source,
                                   CPMXTemplUIListData& record) const;

    /// The same for a new record, which gets a new file name and, on success, the list's last place. On
    /// failure it is destroyed. `source` may be the record's own document.
    StoreResult SaveNewRecord(const std::string& name, std::int32_t level, const CPmxDocument& source,
                              std::unique_ptr<CPMXTemplUIListData> record);

    /// Writes the list, or this holder's own when `list` is null, to the holder's list file, and deletes the
    /// favorite files of its deleted user favorites once the new list file is in place. True; a file that
    /// could not be written is not reported.
    bool SaveList(const CPMXTemplUIListDataArray* list = nullptr) const;

private:
    bool StoreNew(const std::string& name, std::int32_t level, const void* part);
    bool StoreOver(CPMXTemplUIListData& record, const std::string& name, std::int32_t level,
                   const void* part) const;
    static void TakeOver(const CPmxDocument& source, CPMXTemplUIListData& record);

    CPMXTemplUIListDataArray List;
};

} // namespace pmx
