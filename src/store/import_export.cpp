#include "store/import_export.h"

#include "store/favorite_files.h"
#include "store/host_call.h"
#include "store/list_file.h"
#include "store/temporary_file.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace pmx {

namespace {

constexpr std::size_t LongestBaseName = 255; // bytes

/// Position behind the last separator or drive mark of a path.
std::size_t FileNameStart(std::string_view path, const LeadByteTable& leadBytes) {
    std::size_t start = 0;
    for (std::size_t position = 0; position < path.size();
         position += CharacterLength(path, position, leadBytes)) {
        if (path[position] == '\\' || path[position] == '/' || path[position] == ':') {
            start = position + 1;
        }
    }
    return start;
}

/// Position of the last dot; the text's end when there is none.
std::size_t ExtensionStart(std::string_view fileName, const LeadByteTable& leadBytes) {
    std::size_t start = fileName.size();
    for (std::size_t position = 0; position < fileName.size();
         position += CharacterLength(fileName, position, leadBytes)) {
        if (fileName[position] == '.') {
            start = position;
        }
    }
    return start;
}

/// The base name of a path as the list file can hold it, which parts its fields with a character and takes
/// the blanks from their ends. A favorite under another file name would not be found again.
std::string ListableBaseName(std::string_view path, const LeadByteTable& leadBytes) {
    const std::string base = BaseNameOf(path, leadBytes);
    std::string listable(Trimmed(base, leadBytes));
    for (std::size_t position = FindSingleByte(listable, FieldSeparator, leadBytes);
         position != std::string::npos;
         position = FindSingleByte(listable, FieldSeparator, leadBytes, position + 1)) {
        listable[position] = '=';
    }
    return listable;
}

bool IsFileOfUserFavorite(const CPMXTemplUIListDataArray& list, const std::string& path) {
    const std::vector<const CPMXTemplUIListData*> records = list.GetRecords();
    return std::any_of(records.begin(), records.end(), [&](const CPMXTemplUIListData* record) {
        return record != nullptr && !record->IsStandard() &&
               EqualIgnoringCase(path, record->GetFilePath(list.GetFolder()));
    });
}

/// Writes the document aside in the target's folder and renames the whole file over the target.
bool SaveWhole(const StoreServices& services, CPMXTemplUIListData& content, const std::string& path) {
    Files& files = services.FileSystem;
    TemporaryFile aside(files, services.Timer, FolderOf(path, SystemLeadBytes()));
    if (aside.GetPath().empty() || !content.SaveDocument(aside.GetPath().c_str()) ||
        files.Flush(aside.GetPath()) != FileError::None ||
        files.Replace(aside.GetPath(), path) != FileError::None) {
        return false;
    }
    aside.Release();
    return true;
}

/// Puts the record's name and level into its document.
bool StampDocument(CPMXTemplUIListData& record) {
    CPmxDocument& document = *record.GetDocument();
    bool named = false;
    const bool completed = CallHost([&] {
        named = document.SetName(record.GetName());
        document.SetTemplateLevel(record.GetLevel());
    });
    return completed && named;
}

} // namespace

void FavoriteImport::Discard() {
    if (Copied && Record) {
        List.DeleteFavorite(*Record);
    }
    Record.reset();
}

ImportResult FavoriteImport::Read(const std::string& path) {
    const std::optional<std::string> fileName = List.MakeFileName(ListableBaseName(path, SystemLeadBytes()));
    if (!fileName) {
        return ImportResult::NoFileName;
    }
    Record = std::make_unique<CPMXTemplUIListData>();
    Record->SetFileName(*fileName);
    Record->SetNewFlag(1);
    Record->SetImportFlag(1);
    List.MakeRoom();
    if (!Copy(path)) {
        return ImportResult::NotCopied;
    }
    if (!Record->EnsureDocument()) {
        return ImportResult::OutOfMemory;
    }
    return TakeOverDocument() ? ImportResult::Success : ImportResult::NotRead;
}

bool FavoriteImport::Copy(const std::string& path) {
    const StoreServices& services = List.GetServices();
    const std::optional<std::string> target = List.FavoritePath(*Record);
    Copied = target && RetryCopyFile(services.FileSystem, services.Timer, path, *target, true);
    return Copied;
}

/// Reads the copied file, and takes name and level from it.
bool FavoriteImport::TakeOverDocument() {
    if (!List.LoadFavorite(*Record)) {
        return false;
    }
    return CallHost([this] {
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
    return SanitizeFileName(record.GetName(), SystemLeadBytes()) + list.GetExtension();
}

ExportResult ExportFavorite(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record,
                            const std::string& path) {
    if (IsFileOfUserFavorite(list, path)) {
        return ExportResult::OwnFile;
    }
    CPMXTemplUIListData copy;
    copy = record;
    if (!copy.EnsureDocument() || !list.LoadFavorite(copy)) {
        return ExportResult::NotRead;
    }
    const StoreServices& services = list.GetServices();
    if (EqualIgnoringCase(path, list.GetListFilePath()) || !StampDocument(copy) ||
        !SaveWhole(services, copy, path)) {
        return ExportResult::NotWritten;
    }
    return ExportResult::Success;
}

std::string BaseNameOf(std::string_view path, const LeadByteTable& leadBytes) {
    const std::string_view fileName = path.substr(FileNameStart(path, leadBytes));
    const std::string_view base = fileName.substr(0, ExtensionStart(fileName, leadBytes));
    return std::string(base.substr(0, LengthWithin(base, LongestBaseName, leadBytes)));
}

std::string FolderOf(std::string_view path, const LeadByteTable& leadBytes) {
    return std::string(path.substr(0, FileNameStart(path, leadBytes)));
}

} // namespace pmx
