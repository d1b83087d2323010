#include "store/list_holder.h"

#include "store/host_call.h"
#include "store/levels.h"

#include <cstring>
#include <memory>
#include <optional>
#include <utility>

namespace pmx {

namespace {

/// Puts the part of `level` into the document's attribute table, and name and level into the document. Only
/// the bytes that belong to the part are read.
bool PutPart(CPmxDocument& document, const std::string& name, std::int32_t level, const void* part) {
    const std::optional<std::size_t> start = PartStart(level);
    if (!start || part == nullptr) {
        return false;
    }
    bool accepted = false;
    const bool completed = CallHost([&] {
        _LM_DOCUMENTLAYOUTTABLE table{};
        document.GetTable(table);
        std::memcpy(table.Bytes + *start, part, TableSize - *start);
        accepted = StampDocument(document, name, level, &table);
    });
    return completed && accepted;
}

} // namespace

bool CPMXTemplUIListHolder::RenameAt(std::int64_t index, const std::string& name) {
    CPMXTemplUIListData* const record = GetAt(index);
    if (record == nullptr) {
        return true;
    }
    record->SetName(name);
    if (record->IsDocumentReady()) {
        return true;
    }
    bool named = false;
    return List.EnsureLoaded(*record) && CallHost([&] { named = record->GetDocument()->SetName(name); }) &&
           named;
}

bool CPMXTemplUIListHolder::GetAttributeTable(const std::string& name, std::int32_t level,
                                              _LM_DOCUMENTLAYOUTTABLE& table) {
    CPMXTemplUIListData* const record = FindByName(name);
    const std::optional<std::size_t> start = PartStart(level);
    if (record == nullptr || !List.EnsureLoaded(*record) || !start || record->GetLevel() != level) {
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
        std::unique_ptr<CPMXTemplUIListData> record = MakeFavorite();
        return record && PutPart(*record->GetDocument(), name, level, part) &&
               List.AddFavorite(std::move(record), name, level) == StoreResult::Success;
    }
    CPMXTemplUIListData* const record = FindByName(name);
    if (record == nullptr || !List.EnsureLoaded(*record) ||
        !PutPart(*record->GetDocument(), name, level, part)) {
        return false;
    }
    record->BecomeNewFavorite(name, level);
    return List.SaveFavorite(*record);
}

bool CPMXTemplUIListHolder::SaveList() {
    if (List.WriteListFile()) {
        List.DeleteFilesOfDeleted(List.GetRecords());
    }
    return true;
}

} // namespace pmx
