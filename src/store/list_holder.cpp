#include "store/list_holder.h"

#include "store/host_call.h"
#include "store/levels.h"

#include <cstring>
#include <optional>

namespace pmx {

namespace {

void ResetToNewFavorite(CPMXTemplUIListData& record, const std::string& name, std::int32_t level,
                        const std::string& fileName) {
    record.SetStandard(0);
    record.SetName(name);
    record.SetLevel(level);
    record.SetToolbar(0);
    record.SetIconIndex(NewFavoriteIcon);
    record.SetFileName(fileName);
    record.SetNewFlag(1);
    record.SetDeleteFlag(0);
    record.SetImportFlag(0);
}

/// Puts the part of `level` into the document's attribute table, and name and level into the document. Only
/// the bytes that belong to the part are read.
bool PutPart(CPmxDocument& document, const std::string& name, std::int32_t level, const void* part) {
    const std::optional<std::size_t> start = PartStart(level);
    if (!start || part == nullptr) {
        return false;
    }
    bool accepted = false;
    const bool completed = CallHost([&] {
        document.SetTemplateLevel(level);
        _LM_DOCUMENTLAYOUTTABLE table{};
        document.GetTable(table);
        std::memcpy(table.Bytes + *start, part, TableSize - *start);
        accepted = document.SetTable(table, false) && document.SetName(name);
    });
    return completed && accepted;
}

} // namespace

CPMXTemplUIListHolder::CPMXTemplUIListHolder(const char* listFileName, const char* extension,
                                             const StoreServices& services)
    : List(listFileName, extension, services) {}

bool CPMXTemplUIListHolder::Open(const char* folder) {
    List.RemoveAll();
    return List.SetFolder(folder) && List.LoadList();
}

CPMXTemplUIListData* CPMXTemplUIListHolder::GetAt(std::int64_t index) const {
    return List.Contains(index) ? List.GetAt(index) : nullptr;
}

StoreResult CPMXTemplUIListHolder::LoadRecordDocument(CPMXTemplUIListData& record) const {
    if (record.ReleaseDocument() && record.EnsureDocument() && List.LoadFavorite(record)) {
        return StoreResult::Success;
    }
    // An empty document must not pass for the file's content.
    record.ReleaseDocument();
    return StoreResult::NotRead;
}

bool CPMXTemplUIListHolder::RenameAt(std::int64_t index, const std::string& name) {
    if (!List.Contains(index)) {
        return true;
    }
    CPMXTemplUIListData* const record = List.GetAt(index);
    if (record == nullptr) {
        return false;
    }
    record->SetName(name);
    if (record->GetDocument() != nullptr) {
        return true;
    }
    if (LoadRecordDocument(*record) != StoreResult::Success) {
        return false;
    }
    bool named = false;
    return CallHost([&] { named = record->GetDocument()->SetName(name); }) && named;
}

bool CPMXTemplUIListHolder::IsNewNameUnique(std::int64_t index, const std::string& name) const {
    return List.Contains(index) && List.IsNameUnique(index, name);
}

bool CPMXTemplUIListHolder::GetAttributeTable(const std::string& name, std::int32_t level,
                                              _LM_DOCUMENTLAYOUTTABLE& table) {
    CPMXTemplUIListData* const record = FindByName(name);
    if (record == nullptr) {
        return false;
    }
    if (record->GetDocument() == nullptr && LoadRecordDocument(*record) != StoreResult::Success) {
        return false;
    }
    const std::optional<std::size_t> start = PartStart(level);
    if (!start || record->GetLevel() != level) {
        return false;
    }
    _LM_DOCUMENTLAYOUTTABLE whole{};
    if (!CallHost([&] { record->GetDocument()->GetTable(whole); })) {
        return false;
    }
    table = {};
    std::memcpy(table.Bytes, whole.Bytes + *start, TableSize - *start);
    return true;
}

bool CPMXTemplUIListHolder::StoreFavorite(const std::string& name, std::int32_t level, const void* part) {
    if (List.CheckName(name) == NameUse::Unused) {
        return StoreNew(name, level, part);
    }
    CPMXTemplUIListData* const record = FindByName(name);
    return record != nullptr && StoreOver(*record, name, level, part);
}

bool CPMXTemplUIListHolder::StoreNew(const std::string& name, std::int32_t level, const void* part) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    if (!record->EnsureDocument() || !PutPart(*record->GetDocument(), name, level, part)) {
        return false;
    }
    const CPmxDocument& document = *record->GetDocument();
    return SaveNewRecord(name, level, document, std::move(record)) == StoreResult::Success;
}

bool CPMXTemplUIListHolder::StoreOver(CPMXTemplUIListData& record, const std::string& name,
                                      std::int32_t level, const void* part) const {
    if (record.GetDocument() == nullptr && LoadRecordDocument(record) != StoreResult::Success) {
        return false;
    }
    return PutPart(*record.GetDocument(), name, level, part) &&
           SaveExistingRecord(name, level, *record.GetDocument(), record) == StoreResult::Success;
}

StoreResult CPMXTemplUIListHolder::SaveExistingRecord(const std::string& name, std::int32_t level,
                                                      const CPmxDocument& source,
                                                      CPMXTemplUIListData& record) const {
    ResetToNewFavorite(record, name, level, std::string(record.GetFileName()));
    if (!List.SaveFavorite(record)) {
        return StoreResult::NotWritten;
    }
    TakeOver(source, record);
    return StoreResult::Success;
}

StoreResult CPMXTemplUIListHolder::SaveNewRecord(const std::string& name, std::int32_t level,
                                                 const CPmxDocument& source,
                                                 std::unique_ptr<CPMXTemplUIListData> record) {
    const std::optional<std::string> fileName = List.MakeFileName(name);
    if (!fileName) {
        return StoreResult::NoFileName;
    }
    ResetToNewFavorite(*record, name, level, *fileName);
    List.MakeRoom();
    if (!record->EnsureDocument()) {
        return StoreResult::NotWritten;
    }
    if (!List.SaveNewFavorite(*record)) {
        return StoreResult::NotWritten;
    }
    TakeOver(source, *record);
    List.Add(std::move(record));
    return StoreResult::Success;
}

void CPMXTemplUIListHolder::TakeOver(const CPmxDocument& source, CPMXTemplUIListData& record) {
    CPmxDocument* const document = record.GetDocument();
    if (document != &source && !CallHost([&] { *document = source; })) {
        // The file holds the favorite; the document is read from it again when it is needed.
        record.ReleaseDocument();
    }
}

bool CPMXTemplUIListHolder::SaveList(const CPMXTemplUIListDataArray* list) const {
    const CPMXTemplUIListDataArray& content = list != nullptr ? *list : List;
    const std::vector<const CPMXTemplUIListData*> records = content.GetRecords();
    if (List.WriteListFile(records, content.GetSize())) {
        List.DeleteFilesOfDeleted(records);
    }
    return true;
}

} // namespace pmx
