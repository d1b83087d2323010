#include "frame/list_exports.h"

#include "store/levels.h"
#include "store/list_file.h"

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

namespace pmx {

static_assert(sizeof(TemplInfo) == 548);
static_assert(offsetof(TemplInfo, Position) == 0);
static_assert(offsetof(TemplInfo, Standard) == 8);
static_assert(offsetof(TemplInfo, Level) == 12);
static_assert(offsetof(TemplInfo, Name) == 16);
static_assert(offsetof(TemplInfo, FilePath) == 276);
static_assert(offsetof(TemplInfo, Toolbar) == 536);
static_assert(offsetof(TemplInfo, IconIndex) == 540);

static_assert(PMX_TABLE_SIZE == 8657);
static_assert(*PartStart(PMX_LEVEL_DOCUMENT) == 0);
static_assert(*PartStart(PMX_LEVEL_SECTION) == 82);
static_assert(*PartStart(PMX_LEVEL_SHEET) == 126);
static_assert(*PartStart(PMX_LEVEL_FACE) == 150);
static_assert(*PartStart(PMX_LEVEL_PAGE) == 2221);

namespace {

/// A document that could not be filled, also because the host raised an error, stays with the record, empty,
/// and is made anew at the next call.
bool LoadForHost(const CPMXTemplUIListDataArray& list, CPMXTemplUIListData& record) {
    if (!record.IsStandard() || record.IsDocumentReady()) {
        return list.EnsureLoaded(record);
    }
    record.ReleaseDocument();
    if (!record.EnsureDocument()) {
        return false;
    }
    ApplyStandardSetting(*record.GetDocument(), LeadingNumber(record.GetFileName()));
    record.SetDocumentReady();
    return true;
}

/// The summary of the favorite at `position`.
TemplInfo MakeSummary(const CPMXTemplUIListDataArray& list, std::int64_t position) {
    const CPMXTemplUIListData& record = list.At(position);
    TemplInfo info{};
    info.Position = position;
    info.Standard = record.GetStandard();
    info.Level = record.GetLevel();
    FillSummaryText(info.Name, record.GetName());
    if (IsStandardLevel(record.GetLevel())) {
        FillSummaryText(info.FilePath, record.GetFileName());
    } else {
        // The folder ends in a separator already; hosts rely on the second one.
        FillSummaryText(info.FilePath, list.GetFolder() + "\\" + record.GetFileName());
    }
    info.Toolbar = record.GetToolbar();
    info.IconIndex = record.GetIconIndex();
    return info;
}

/// Calls `visit` with the position of each favorite that qualifies, in list order.
template <typename Visit>
void ForEachQualifying(const CPMXTemplUIListDataArray& list, std::int32_t level, Visit visit) {
    for (std::int64_t position = 0; position < list.GetSize(); ++position) {
        if (Qualifies(list.At(position), level)) {
            visit(position);
        }
    }
}

} // namespace

std::unique_ptr<CPMXTemplUIListDataArray> OpenList(const char* folder, const char* listFileName,
                                                   const char* extension, const StoreServices& services) {
    auto list = std::make_unique<CPMXTemplUIListDataArray>(listFileName, extension, services);
    return list->Open(folder) ? std::move(list) : nullptr;
}

bool Qualifies(const CPMXTemplUIListData& record, std::int32_t level) {
    if (!IsStandardLevel(level)) {
        return record.GetLevel() == level;
    }
    if (record.GetLevel() != level && record.GetLevel() != level - PMX_LEVEL_STANDARD) {
        return false;
    }
    return !IsStandardLevel(record.GetLevel()) || IsKnownStandardNumber(LeadingNumber(record.GetFileName()));
}

std::int64_t CountQualifying(const CPMXTemplUIListDataArray& list, std::int32_t level) {
    std::int64_t count = 0;
    ForEachQualifying(list, level, [&count](std::int64_t) { ++count; });
    return count;
}

std::int64_t CopySummaries(const CPMXTemplUIListDataArray& list, std::int32_t level, void* buffer) {
    auto* const begin = static_cast<std::byte*>(buffer);
    std::int64_t count = 0;
    ForEachQualifying(list, level, [&](std::int64_t position) {
        const TemplInfo info = MakeSummary(list, position);
        std::memcpy(begin + count * static_cast<std::int64_t>(sizeof info), &info, sizeof info);
        ++count;
    });
    return count;
}

bool CopyTablePart(CPMXTemplUIListDataArray& list, std::int64_t position, std::int32_t part, void* buffer,
                   std::int64_t bufferSize) {
    if (!list.Contains(position) || !LoadForHost(list, list.At(position))) {
        return false;
    }
    _LM_DOCUMENTLAYOUTTABLE table{};
    list.At(position).GetDocument()->GetTable(table);
    const std::optional<std::size_t> start = PartStart(part);
    if (!start || bufferSize != static_cast<std::int64_t>(TableSize - *start)) {
        return false;
    }
    std::memcpy(buffer, table.Bytes + *start, TableSize - *start);
    return true;
}

void AddStandardFavorite(CPMXTemplUIListDataArray& list, const char* name, std::int64_t number,
                         std::int64_t icon, bool toolbar) {
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetStandard(1);
    record->SetName(name != nullptr ? name : "");
    record->SetLevel(PMX_LEVEL_STANDARD + PMX_LEVEL_DOCUMENT);
    // Written as a 32-bit number, as the list file's numbers are.
    record->SetFileName(std::to_string(static_cast<std::int32_t>(number)));
    record->SetToolbar(toolbar ? 1 : 0);
    record->SetIconIndex(icon);
    list.Add(std::move(record));
    list.WriteListFile();
}

void FillSummaryText(char (&target)[PMX_TEMPLINFO_TEXT_SIZE], std::string_view text) {
    std::memset(target, 0, sizeof target);
    std::memcpy(target, text.data(), LengthWithin(text, sizeof target - 1, LeadBytesIn(text)));
}

} // namespace pmx
