#pragma once

#include "store/list_data_array.h"

#include <cstdint>
#include <memory>
#include <string>

// Moving favorites between a list and files that lie anywhere. Texts are in the system's code page. What the
// host's document model raises becomes a failure.

namespace pmx {

/// A favorite on its way into a list. From Read on its file lies in the favorites folder, where it stays only
/// when Finish puts the favorite into the list; otherwise it is deleted, with retries, at the end.
class FavoriteImport {
public:
    /// `list` must outlive this object.
    explicit FavoriteImport(CPMXTemplUIListDataArray& list) : List(list) {}
    FavoriteImport(const FavoriteImport&) = delete;
    FavoriteImport& operator=(const FavoriteImport&) = delete;
    ~FavoriteImport() { Discard(); }

    /// Copies the file at `path` into the favorites folder, under a new name made from its own, and reads
    /// what it says of the favorite. NoFileName, NotCopied, OutOfMemory, or NotRead for a file that is no
    /// favorite, damaged or in use. To be called once.
    StoreResult Read(const std::string& path);

    /// The favorite as it was read. Only after Read succeeded and before Finish.
    const CPMXTemplUIListData& GetRecord() const { return *Record; }

    /// Names the favorite and its document, and appends it to the list. Gives its index there.
    std::int64_t Finish(const std::string& name);

    /// Gives the favorite up and deletes its file; nothing after Finish.
    void Discard();

private:
    StoreResult CopyAndRead(const std::string& path);
    bool TakeOverDocument();

    CPMXTemplUIListDataArray& List;
    std::unique_ptr<CPMXTemplUIListData> Record; // null before Read and after Finish
    bool Copied = false;
};

/// The file name to propose for an export: the favorite's name made safe, and the list's extension.
std::string ProposedExportName(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record);

/// Writes a copy of a record's favorite file, with the record's name and level in it, to `path`, in the place
/// of what is there. OwnFile for the file of any user favorite of the list, however its path is spelt; NotRead;
/// NotWritten, also for the list file.
StoreResult ExportFavorite(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record,
                           const std::string& path);

} // namespace pmx
