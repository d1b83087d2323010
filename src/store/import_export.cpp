#include "store/import_export.h"

#include "store/aside_file.h"
#include "store/favorite_files.h"
#include "store/host_call.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace pmx {

namespace {

/// The base name of a path as the list file can hold it, which parts its fields with a character and takes
/// the blanks from their ends. A favorite under another file name would not be found again.
std::string ListableBaseName(std::string_view path) {
    const std::string base = BaseNameOf(path);
    std::string listable(Trimmed(base, SystemLeadBytes()));
    for (std::size_t position = FindSingleByte(listable, FieldSeparator, SystemLeadBytes());
         position != std::string::npos;
         position = FindSingleByte(listable, FieldSeparator, SystemLeadBytes(), position + 1)) {
        listable[position] = '=';
    }
    return listable;
}

/// Whether a path leads to a file of the favorites folder, whether that exists or not, and however the path
/// and its folder are spelt.
class ExportTarget {
public:
    ExportTarget(const CPMXTemplUIListDataArray& list, const std::string& path)
        : System(list.GetServices().FileSystem),
          Folder(list.GetFolder()),
          Path(path),
          FileName(FoldedFileName(std::string_view(path).substr(FileNameStart(path)))),
          IsInFolder(IsFolderOf(path)),
          IsThere(System.Exists(path)) {}

    bool Is(const std::string& fileName) const {
        const std::string path = Folder + fileName;
        return EqualIgnoringCase(Path, path) || (IsInFolder && FoldedFileName(fileName) == FileName) ||
               (IsThere && System.IsSame(Path, path));
    }

private:
    bool IsFolderOf(const std::string& path) const {
        const std::string folder = FolderOf(path);
        return System.IsSame(folder.empty() ? "." : folder, Folder);
    }

    Files& System;
    const std::string& Folder;
    const std::string& Path;
    const std::string FileName;
    const bool IsInFolder;
    const bool IsThere;
};

bool IsFileOfUserFavorite(const CPMXTemplUIListDataArray& list, const ExportTarget& target) {
    const std::vector<const CPMXTemplUIListData*> records = list.GetRecords();
    return std::any_of(records.begin(), records.end(), [&](const CPMXTemplUIListData* record) {
        return !record->IsStandard() && target.Is(record->GetFileName());
    });
}

/// Writes the document aside in the target's folder and puts the whole file in the target's place.
bool SaveWhole(const StoreServices& services, CPMXTemplUIListData& content, const std::string& path) {
    AsideFile aside(services, FolderOf(path));
    return aside.Error() == FileError::None && content.SaveDocument(aside.Path().c_str()) &&
           aside.Flush() == FileError::None && aside.PutOver(path) == FileError::None;
}

} // namespace

void FavoriteImport::Discard() {
    if (Copied && Record) {
        List.DeleteFavorite(*Record);
    }
    Record.reset();
}

StoreResult FavoriteImport::Read(const std::string& path) {
    try {
        return CopyAndRead(path);
    } catch (const std::bad_alloc&) {
        Discard();
        return StoreResult::OutOfMemory;
    }
}

StoreResult FavoriteImport::CopyAndRead(const std::string& path) {
    Record = std::make_unique<CPMXTemplUIListData>();
    Record->SetNewFlag(1);
    Record->SetImportFlag(1);
    List.MakeRoom();
    const StoreResult made =
        List.MakeFavoriteFile(ListableBaseName(path), *Record, [&](const std::string& target) {
            return RetryCopyFile(List.GetServices(), path, target);
        });
    if (made != StoreResult::Success) {
        return made == StoreResult::NotWritten ? StoreResult::NotCopied : made;
    }
    Copied = true;
    if (!Record->EnsureDocument()) {
        return StoreResult::OutOfMemory;
    }
    return TakeOverDocument() ? StoreResult::Success : StoreResult::NotRead;
}

/// Reads the copied file, and takes name and level from it.
bool FavoriteImport::TakeOverDocument() {
    return List.EnsureLoaded(*Record) && CallHost([this] {
               Record->SetName(Record->GetDocument()->GetName());
               Record->SetLevel(Record->GetDocument()->GetTemplateLevel());
           });
}

std::int64_t FavoriteImport::Finish(const std::string& name) {
    Record->SetName(name);
    // A host that refuses gets the name again when the favorite is next saved; the list file has it anyway.
    CallHost([&] { Record->GetDocument()->SetName(name); });
    return List.Add(std::move(Record));
}

std::string ProposedExportName(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record) {
    return SanitizeFileName(record.GetName()) + list.GetExtension();
}

StoreResult ExportFavorite(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record,
                           const std::string& path) {
    const ExportTarget target(list, path);
    if (IsFileOfUserFavorite(list, target)) {
        return StoreResult::OwnFile;
    }
    CPMXTemplUIListData copy;
    copy = record;
    if (!list.EnsureLoaded(copy)) {
        return StoreResult::NotRead;
    }
    bool isStamped = false;
    const bool isCompleted = CallHost(
        [&] { isStamped = StampDocument(*copy.GetDocument(), copy.GetName(), copy.GetLevel(), nullptr); });
    const std::string listFile = list.GetListFilePath().substr(list.GetFolder().size());
    if (target.Is(listFile) || !isCompleted || !isStamped || !SaveWhole(list.GetServices(), copy, path)) {
        return StoreResult::NotWritten;
    }
    return StoreResult::Success;
}

} // namespace pmx
