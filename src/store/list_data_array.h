#pragma once

#include "store/list_data.h"
#include "store/list_file.h"
#include "store/store_result.h"
#include "store/store_services.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pmx {

/// What CheckName finds under a name, without regard to case.
enum class NameUse : std::int32_t { Unused = 1, UserFavorite = 2, StandardFavorite = 4 };

/// The ordered list of favorites of one folder. Owns its records. Texts are in the system's code page. Not for
/// use by two threads at once.
class CPMXTemplUIListDataArray {
public:
    /// `listFileName` null means "PmxTempleList.ini", `extension` null ".pmt". `services` is copied; what it
    /// refers to must outlive the list.
    CPMXTemplUIListDataArray(const char* listFileName, const char* extension, const StoreServices& services);
    CPMXTemplUIListDataArray(const CPMXTemplUIListDataArray&) = delete;
    CPMXTemplUIListDataArray& operator=(const CPMXTemplUIListDataArray&) = delete;
    virtual ~CPMXTemplUIListDataArray();

    // Records

    std::int64_t GetSize() const { return static_cast<std::int64_t>(Records.size()); }
    bool Contains(std::int64_t index) const { return index >= 0 && index < GetSize(); }

    /// The record at `index`, owned by the list. Throws std::invalid_argument when the index is outside.
    CPMXTemplUIListData& At(std::int64_t index) const;

    /// All records in order; they stay the list's.
    std::vector<const CPMXTemplUIListData*> GetRecords() const;

    /// Appends a record, which is not null, and gives its index.
    std::int64_t Add(std::unique_ptr<CPMXTemplUIListData> record);

    /// Takes the memory that the next Add needs, which then cannot fail: to be called before a file is
    /// written for a record that is to be added.
    void MakeRoom();

    /// Destroys every record; the list is empty afterwards.
    void RemoveAll();

    /// Whether any record has this name, without regard to case; the first in list order decides.
    NameUse CheckName(const std::string& name) const;

    /// False when another record than the one at `index` has this name, without regard to case. True when the
    /// index is outside the list.
    bool IsNameUnique(std::int64_t index, const std::string& name) const;

    /// The first record with exactly this name, or null.
    CPMXTemplUIListData* FindByName(const std::string& name) const;

    // The folder and its list file

    /// Takes over the favorites folder, appending a separator when it ends in none. False when `path` is
    /// null or empty, which changes nothing, or no existing folder, after which the list has no list file.
    bool SetFolder(const char* path);

    /// Replaces the records by those of the list file. True also when the file is missing; false when the
    /// folder is not set or memory ran out, with the records read so far in the list. Damaged entries are
    /// left out.
    bool LoadList();

    /// Empties the list, sets its folder and reads its list file.
    bool Open(const char* folder);

    /// Replaces the list file by the given records in order; deleted ones are left out, but `count` is written
    /// as their number. When another program has changed the file since this list read it or wrote it last,
    /// what is written is both programs' changes merged (MergeValues), and their number; the records stay as
    /// they are. The former file stays, whole, when the new one cannot be made, when it is read-only or when
    /// it cannot be read, now or by the last LoadList. False then; no file of a favorite is touched.
    bool WriteListFile(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count);

    /// The same with all records of this list and their number.
    bool WriteListFile();

    // Favorite files

    /// Makes the name of a favorite file that the folder does not hold yet: the safe form of `name`, with -1,
    /// -2 … when taken, and the extension. None when all numbers are used up.
    std::optional<std::string> MakeFileName(const std::string& name) const;

    /// The name of a favorite file with this base name, and with that number behind it unless it is 0, whether there
    /// is such a file or not.
    std::string FileNameOf(const std::string& base, std::int64_t number) const;

    /// Gives a record a file name made from `name` and has `make` make that file. A name that somebody else
    /// has taken by then, so that `make` finds it in existence, is passed over. NoFileName, NotWritten.
    StoreResult MakeFavoriteFile(const std::string& name, CPMXTemplUIListData& record,
                                 const std::function<FileError(const std::string& path)>& make) const;

    /// Appends a new favorite of the user: writes the record's document, which has its content, to a new file
    /// made from the name. On failure nothing is added, no file stays and the record is destroyed.
    StoreResult AddFavorite(std::unique_ptr<CPMXTemplUIListData> record, const std::string& name,
                            std::int32_t level);

    /// The path of a record's favorite file; none when its file field leads out of the folder or names the
    /// list file, which counts as a missing file.
    std::optional<std::string> FavoritePath(const CPMXTemplUIListData& record) const;

    /// Reads a record's favorite file into its document unless that is ready. False when it cannot be read; an
    /// empty document, which is not ready, may then stay with the record.
    bool EnsureLoaded(CPMXTemplUIListData& record) const;

    /// Writes a record's document to its favorite file.
    bool SaveFavorite(CPMXTemplUIListData& record) const;

    /// Deletes a record's favorite file, with retries. False when that failed or memory ran out.
    bool DeleteFavorite(const CPMXTemplUIListData& record) const;

    /// Deletes the favorite files of those of the given records that are user favorites marked deleted,
    /// except files that another of them still uses, among them those of all standard favorites, or that the
    /// list file names, as another program may have left it. Failures, lack of memory among them, are ignored:
    /// such a file is no longer referred to by the list.
    void DeleteFilesOfDeleted(const std::vector<const CPMXTemplUIListData*>& records) const;

    const std::string& GetExtension() const { return Extension; }

    /// The favorites folder; ends in a separator once SetFolder succeeded.
    const std::string& GetFolder() const { return Folder; }
    const std::string& GetListFilePath() const { return ListFilePath; }
    const StoreServices& GetServices() const { return Services; }

private:
    FileError ReadListFile(DecodedText& content) const;
    bool IsChangedByAnother(const std::string& content) const;
    bool ReplaceSection(std::string section);
    std::optional<std::string> FreeFileName(const std::string& base, std::int64_t& number) const;
    FileError SaveNewFavorite(CPMXTemplUIListData& record, const std::string& path) const;
    bool IsListFileName(std::string_view fileName) const;
    void DeleteUnusedFiles(const std::vector<const CPMXTemplUIListData*>& records) const;

    std::string ListFileName;
    std::string Extension;
    std::string Folder;
    std::string ListFilePath;
    std::vector<std::unique_ptr<CPMXTemplUIListData>> Records;
    std::string Base; // the content of the list file as far as the records come from it or went there
    std::optional<std::size_t> OwnSection; // where Base ends in the section that this list has written
    bool ListFileUnreadable = false; // the list file was there and could not be read whole the last time
    StoreServices Services;
};

} // namespace pmx
