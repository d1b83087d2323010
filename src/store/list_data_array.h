#pragma once

#include "store/list_data.h"
#include "store/store_services.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pmx {

/// What CheckName finds under a name, without regard to case.
enum class NameUse : std::int32_t { Unused = 1, UserFavorite = 2, StandardFavorite = 4 };

/// The ordered list of favorites of one folder. Owns its records; a slot may be empty (null). Texts are in
/// the system's code page. Not for use by two threads at once.
class CPMXTemplUIListDataArray {
public:
    /// `listFileName` null means "PmxTempleList.ini", `extension` null ".pmt". `services` must outlive the
    /// list.
    explicit CPMXTemplUIListDataArray(const char* listFileName = nullptr, const char* extension = nullptr,
                                      const StoreServices& services = SystemStoreServices());
    CPMXTemplUIListDataArray(const CPMXTemplUIListDataArray&) = delete;
    CPMXTemplUIListDataArray& operator=(const CPMXTemplUIListDataArray&) = delete;
    virtual ~CPMXTemplUIListDataArray();

    std::int64_t GetSize() const { return static_cast<std::int64_t>(Records.size()); }
    bool Contains(std::int64_t index) const { return index >= 0 && index < GetSize(); }

    /// The record at `index`, owned by the list, or null for an empty slot. Throws std::invalid_argument when
    /// the index is outside the list.
    CPMXTemplUIListData* GetAt(std::int64_t index) const;

    /// Appends a record, or an empty slot for null, and gives its index.
    std::int64_t Add(std::unique_ptr<CPMXTemplUIListData> record);

    /// Takes the memory that the next Add needs, which then cannot fail: to be called before a file is
    /// written for a record that is to be added.
    void MakeRoom();

    /// Destroys the last record and its slot; nothing for an empty list.
    void RemoveLast();

    /// Destroys every record; the list is empty afterwards.
    void RemoveAll();

    /// Takes over the favorites folder, appending a separator when it ends in none. False when `path` is
    /// null or empty, which changes nothing, or no existing folder, after which the list has no list file.
    bool SetFolder(const char* path);

    /// Replaces the records by those of the list file. True also when the file is missing; false when the
    /// folder is not set or memory ran out, with the records read so far in the list. Damaged entries are
    /// left out.
    bool LoadList();

    /// Replaces the list file by the given records in order; null and deleted ones are left out, but `count`
    /// is written as their number. The former file stays, whole, when the new one cannot be made, when it is
    /// read-only or when LoadList has not read it to its end. False then; no file of a favorite is touched.
    bool WriteListFile(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count) const;

    /// The same with all records of this list and their number.
    bool WriteListFile() const;

    /// All slots in order, null for an empty one; the records stay the list's.
    std::vector<const CPMXTemplUIListData*> GetRecords() const;

    /// Whether any record has this name, without regard to case; the first in list order decides.
    NameUse CheckName(const std::string& name) const;

    /// False when another record than the one at `index` has this name, without regard to case. True when the
    /// index is outside the list.
    bool IsNameUnique(std::int64_t index, const std::string& name) const;

    /// The first record with exactly this name, or null.
    CPMXTemplUIListData* FindByName(const std::string& name) const;

    /// Makes the name of a favorite file that the folder does not hold yet: the safe form of `name`, with -1,
    /// -2 … when taken, and the extension. None when all numbers are used up.
    std::optional<std::string> MakeFileName(const std::string& name) const;

    /// The path of a record's favorite file; none when its file field leads out of the folder or names the
    /// list file, which counts as a missing file.
    std::optional<std::string> FavoritePath(const CPMXTemplUIListData& record) const;

    /// Reads a record's favorite file into the document that it holds. False also when it holds none.
    bool LoadFavorite(CPMXTemplUIListData& record) const;

    /// Writes a record's document to its favorite file.
    bool SaveFavorite(CPMXTemplUIListData& record) const;

    /// The same for a file that must not exist yet: one that has appeared since its name was made stays as it
    /// is, and this is false. A failure leaves no file behind.
    bool SaveNewFavorite(CPMXTemplUIListData& record) const;

    /// Deletes a record's favorite file, with retries. False when that failed or memory ran out.
    bool DeleteFavorite(const CPMXTemplUIListData& record) const;

    /// Deletes the favorite files of those of the given records that are user favorites marked deleted,
    /// except files that another of them still uses, among them those of all standard favorites. Failures,
    /// lack of memory among them, are ignored: such a file is no longer referred to by the list.
    void DeleteFilesOfDeleted(const std::vector<const CPMXTemplUIListData*>& records) const;

    const std::string& GetListFileName() const { return ListFileName; }
    const std::string& GetExtension() const { return Extension; }

    /// The favorites folder; ends in a separator once SetFolder succeeded.
    const std::string& GetFolder() const { return Folder; }
    const std::string& GetListFilePath() const { return ListFilePath; }
    const StoreServices& GetServices() const { return Services; }

private:
    bool IsSameName(const CPMXTemplUIListData& record, const std::string& name) const;
    OpenResult HoldListFile() const;
    bool IsListFileName(std::string_view fileName) const;
    void DeleteUnusedFiles(const std::vector<const CPMXTemplUIListData*>& records) const;

    std::string ListFileName;
    std::string Extension;
    std::string Folder;
    std::string ListFilePath;
    std::vector<std::unique_ptr<CPMXTemplUIListData>> Records;
    bool ListFileUnreadable = false; // the list file was there and could not be read whole the last time
    StoreServices Services;
};

} // namespace pmx
