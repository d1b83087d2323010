#pragma once

#include "platform/text.h"
#include "store/list_data_array.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// Moving favorites between a list and files that lie anywhere. Texts are in the system's code page. What the
// host's document model raises becomes a failure.

namespace pmx {

/// How the reading of a file to import ended.
enum class ImportResult {
    Success,
    NoFileName,  ///< no name for the file in the favorites folder could be made
    NotCopied,   ///< the file could not be copied into the folder
    OutOfMemory, ///< no document could be made
    NotRead,     ///< the file is no favorite, is damaged or is in use
};

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
    /// what it says of the favorite. To be called once.
    ImportResult Read(const std::string& path);

    /// The favorite as it was read. Only after Read succeeded and before Finish.
    const CPMXTemplUIListData& GetRecord() const { return *Record; }

    /// Names the favorite and its document, and appends it to the list. Gives its index there.
    std::int64_t Finish(const std::string& name);

    /// Gives the favorite up and deletes its file; nothing after Finish.
    void Discard();

private:
    bool Copy(const std::string& path);
    bool TakeOverDocument();

    CPMXTemplUIListDataArray& List;
    std::unique_ptr<CPMXTemplUIListData> Record; // null before Read and after Finish
    bool Copied = false;
};

/// How an export ended.
enum class ExportResult {
    Success,
    OwnFile,    ///< the target is the file of a user favorite of the list
    NotRead,    ///< the favorite's file could not be read
    NotWritten, ///< the target could not be written and is as it was
};

/// The name that a file dialog proposes for an exported favorite.
std::string ProposedExportName(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record);

/// Writes a favorite, as its file in the favorites folder has it, to `path` under the record's name and
/// level. The target is replaced by a whole file or stays as it was; the record is not changed.
ExportResult ExportFavorite(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record,
                            const std::string& path);

/// The file name in a path, without its folder and its extension.
std::string BaseNameOf(std::string_view path, const LeadByteTable& leadBytes);

/// The folder in a path, ending in a separator; empty for a path without one.
std::string FolderOf(std::string_view path, const LeadByteTable& leadBytes);

} // namespace pmx
