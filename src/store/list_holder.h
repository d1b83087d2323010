#pragma once

#include "store/list_data_array.h"

#include <cstdint>
#include <string>

namespace pmx {

/// One list of favorites with its folder, for one call or one run of a dialog: stores, renames and finds
/// favorites by name. Owns the list. Texts are in the system's code page.
class CPMXTemplUIListHolder {
public:
    /// As for the list.
    CPMXTemplUIListHolder(const char* listFileName, const char* extension, const StoreServices& services)
        : List(listFileName, extension, services) {}

    /// Empties the list, sets its folder and reads its list file; false when the folder is none or memory ran
    /// out.
    bool Open(const char* folder) { return List.Open(folder); }

    CPMXTemplUIListDataArray& GetList() { return List; }
    const CPMXTemplUIListDataArray& GetList() const { return List; }

    /// The record, owned by the list, or null for an index outside.
    CPMXTemplUIListData* GetAt(std::int64_t index) const {
        return List.Contains(index) ? &List.At(index) : nullptr;
    }

    /// The first record with exactly this name, or null.
    CPMXTemplUIListData* FindByName(const std::string& name) const { return List.FindByName(name); }

    /// Renames the record at `index`. True also when the index is outside the list, which changes nothing.
    /// The name inside the document is set only when the document is loaded here; one that is loaded already
    /// keeps its own. False when the favorite file cannot be read; the record then has the new name all the
    /// same.
    bool RenameAt(std::int64_t index, const std::string& name);

    /// Copies the attribute table of the favorite with exactly this name, beginning with the part of `level`,
    /// which must be the favorite's; bytes beyond the table's end are zero. False, with `table` as it was,
    /// when there is no such favorite, its file cannot be read, or its level is another.
    bool GetAttributeTable(const std::string& name, std::int32_t level, _LM_DOCUMENTLAYOUTTABLE& table);

    /// Stores the part of `level` (1 to 5), which `part` begins with and which runs to the table's end, as
    /// the favorite of that name: a new one, or over the existing one with exactly this name, which goes off
    /// the toolbar and gets the icon of new ones. False when that fails; a name that differs from an existing
    /// one in case alone fails.
    bool StoreFavorite(const std::string& name, std::int32_t level, const void* part);

    /// Writes the list to its list file, and deletes the favorite files of its deleted user favorites once
    /// the new list file is in place. True; a file that could not be written is not reported.
    bool SaveList();

private:
    CPMXTemplUIListDataArray List;
};

} // namespace pmx
