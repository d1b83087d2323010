#include "store/list_data_array.h"

#include "store/favorite_files.h"
#include "store/list_merge.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace pmx {

namespace {

constexpr const char* DefaultBaseName = "Template";

/// How many names that look free may turn out to be taken before it is not worth going on.
constexpr int MostCollisions = 100;

/// A file name as the platform takes it, which drops dots and blanks at the end.
std::string_view WithoutEnd(std::string_view fileName) {
    return fileName.substr(0, fileName.find_last_not_of(". ") + 1);
}

/// True when the last character of a path is a separator.
bool EndsInSeparator(std::string_view path) {
    return path.ends_with('\\') && !IsTrailByte(path, path.size() - 1, SystemLeadBytes());
}

} // namespace

CPMXTemplUIListDataArray::CPMXTemplUIListDataArray(const char* listFileName, const char* extension,
                                                   const StoreServices& services)
    : ListFileName(listFileName != nullptr ? listFileName : DefaultListFileName),
      Extension(extension != nullptr ? extension : DefaultExtension),
      Services(services) {}

CPMXTemplUIListDataArray::~CPMXTemplUIListDataArray() = default;

CPMXTemplUIListData& CPMXTemplUIListDataArray::At(std::int64_t index) const {
    if (!Contains(index)) {
        throw std::invalid_argument("index outside the list of favorites");
    }
    return *Records[static_cast<std::size_t>(index)];
}

std::vector<const CPMXTemplUIListData*> CPMXTemplUIListDataArray::GetRecords() const {
    std::vector<const CPMXTemplUIListData*> records;
    records.reserve(Records.size());
    for (const std::unique_ptr<CPMXTemplUIListData>& record : Records) {
        records.push_back(record.get());
    }
    return records;
}

std::int64_t CPMXTemplUIListDataArray::Add(std::unique_ptr<CPMXTemplUIListData> record) {
    Records.push_back(std::move(record));
    return GetSize() - 1;
}

void CPMXTemplUIListDataArray::MakeRoom() {
    if (Records.size() == Records.capacity()) {
        Records.reserve(2 * Records.size() + 1);
    }
}

void CPMXTemplUIListDataArray::RemoveAll() {
    Records.clear();
}

NameUse CPMXTemplUIListDataArray::CheckName(const std::string& name) const {
    for (const std::unique_ptr<CPMXTemplUIListData>& record : Records) {
        if (EqualIgnoringCase(record->GetName(), name)) {
            return record->IsStandard() ? NameUse::StandardFavorite : NameUse::UserFavorite;
        }
    }
    return NameUse::Unused;
}

bool CPMXTemplUIListDataArray::IsNameUnique(std::int64_t index, const std::string& name) const {
    if (!Contains(index)) {
        return true;
    }
    const CPMXTemplUIListData* const self = &At(index);
    return std::none_of(Records.begin(), Records.end(),
                        [&](const std::unique_ptr<CPMXTemplUIListData>& other) {
                            return other.get() != self && EqualIgnoringCase(other->GetName(), name);
                        });
}

CPMXTemplUIListData* CPMXTemplUIListDataArray::FindByName(const std::string& name) const {
    const auto found =
        std::find_if(Records.begin(), Records.end(), [&](const std::unique_ptr<CPMXTemplUIListData>& record) {
            return record->GetName() == name;
        });
    return found != Records.end() ? found->get() : nullptr;
}

bool CPMXTemplUIListDataArray::SetFolder(const char* path) {
    if (path == nullptr || *path == '\0') {
        return false;
    }
    Folder = path;
    ListFilePath.clear();
    if (!Services.FileSystem.IsFolder(Folder)) {
        return false;
    }
    if (!EndsInSeparator(Folder)) {
        Folder.push_back('\\');
    }
    ListFilePath = Folder + ListFileName;
    return true;
}

/// A missing file is an empty one. What is read of a file that loses characters is marked so.
FileError CPMXTemplUIListDataArray::ReadListFile(DecodedText& content) const {
    std::string bytes;
    const FileError error = Services.FileSystem.Read(ListFilePath, bytes);
    if (error == FileError::None) {
        content = DecodeContent(std::move(bytes));
    }
    return error == FileError::NotFound ? FileError::None : error;
}

bool CPMXTemplUIListDataArray::LoadList() {
    RemoveAll();
    if (Folder.empty() || ListFilePath.empty()) {
        return false;
    }
    ListFileUnreadable = true; // until it has been read
    try {
        DecodedText content;
        const FileError error = ReadListFile(content);
        Base = std::move(content.Text);
        OwnSection.reset();
        const ListValues values = ReadListValues(Base);
        Records.reserve(values.size());
        for (const std::string_view value : values) {
            if (std::unique_ptr<CPMXTemplUIListData> record = ParseListValue(value, LeadBytesIn(value))) {
                Records.push_back(std::move(record));
            }
        }
        ListFileUnreadable = error != FileError::None || !content.IsWhole;
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

bool CPMXTemplUIListDataArray::Open(const char* folder) {
    RemoveAll();
    return SetFolder(folder) && LoadList();
}

bool CPMXTemplUIListDataArray::WriteListFile(const std::vector<const CPMXTemplUIListData*>& records,
                                             std::int64_t count) {
    if (ListFilePath.empty() || ListFileUnreadable) {
        return false;
    }
    try {
        return ReplaceSection(FormatSection(records, count));
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool CPMXTemplUIListDataArray::ReplaceSection(std::string section) {
    const std::size_t size = section.size();
    bool isMerged = false;
    const auto change = [&](std::string bytes) -> std::optional<std::string> {
        const DecodedText content = DecodeContent(std::move(bytes));
        if (!content.IsWhole) {
            return std::nullopt;
        }
        if (OwnSection && content.Text == Base) {
            return std::move(section.insert(0, Base, 0, *OwnSection));
        }
        isMerged = IsChangedByAnother(content.Text);
        if (!isMerged) {
            return WithSection(content.Text, std::move(section));
        }
        // Of one's own values what a reader would find of them: a host may have put a line end into a name.
        const ListValues merged =
            MergeValues(ReadListValues(Base), ReadListValues(section), ReadListValues(content.Text));
        return WithSection(content.Text, FormatSection(merged, static_cast<std::int64_t>(merged.size())));
    };
    std::string written;
    if (!ChangeListFile(Services, ListFilePath, change, &written)) {
        return false;
    }
    Base = std::move(isMerged ? section : written);
    OwnSection = Base.size() - size;
    return true;
}

/// A file without the section says nothing: no program leaves one behind, however many favorites it deletes.
bool CPMXTemplUIListDataArray::IsChangedByAnother(const std::string& content) const {
    return content != Base && ReadListValues(content) != ReadListValues(Base) && HasListSection(content);
}

bool CPMXTemplUIListDataArray::WriteListFile() {
    try {
        return WriteListFile(GetRecords(), GetSize());
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::optional<std::string> CPMXTemplUIListDataArray::MakeFileName(const std::string& name) const {
    std::int64_t number = 0;
    return FreeFileName(SanitizeFileName(name), number);
}

/// The first free name with this or a higher number, 0 standing for none; `number` is then the next one.
std::optional<std::string> CPMXTemplUIListDataArray::FreeFileName(const std::string& base,
                                                                  std::int64_t& number) const {
    if (number == 0) {
        std::string plain = FileNameOf(base, number++);
        // A device's name (NUL.pmt) is taken in every folder, the list file's even before there is one.
        if (IsPlainFileName(plain) && !IsListFileName(plain) && !Services.FileSystem.Exists(Folder + plain)) {
            return plain;
        }
    }
    while (number <= Services.LastFileNumber) {
        std::string candidate = FileNameOf(base, number++);
        // A folder would be refused as a file that is held is, and waited for.
        if (IsListFileName(candidate) || Services.FileSystem.IsFolder(Folder + candidate)) {
            continue;
        }
        if (RetryCreateFile(Services, Folder + candidate) != FileError::None) {
            return candidate;
        }
        Services.Timer.Sleep(1);
    }
    return std::nullopt;
}

std::string CPMXTemplUIListDataArray::FileNameOf(const std::string& base, std::int64_t number) const {
    const std::string stem = base.empty() ? DefaultBaseName : base;
    return stem + (number == 0 ? std::string() : "-" + std::to_string(number)) + Extension;
}

StoreResult CPMXTemplUIListDataArray::MakeFavoriteFile(
    const std::string& name, CPMXTemplUIListData& record,
    const std::function<FileError(const std::string& path)>& make) const {
    const std::string base = SanitizeFileName(name);
    std::int64_t number = 0;
    for (int collisions = 0; collisions < MostCollisions; ++collisions) {
        const std::optional<std::string> fileName = FreeFileName(base, number);
        if (!fileName) {
            return StoreResult::NoFileName;
        }
        record.SetFileName(*fileName);
        const std::optional<std::string> path = FavoritePath(record);
        const FileError error = path ? make(*path) : FileError::Other;
        if (error != FileError::Exists) {
            return error == FileError::None ? StoreResult::Success : StoreResult::NotWritten;
        }
    }
    return StoreResult::NotWritten;
}

StoreResult CPMXTemplUIListDataArray::AddFavorite(std::unique_ptr<CPMXTemplUIListData> record,
                                                  const std::string& name, std::int32_t level) {
    record->BecomeNewFavorite(name, level);
    MakeRoom();
    const StoreResult result = MakeFavoriteFile(
        name, *record, [&](const std::string& path) { return SaveNewFavorite(*record, path); });
    if (result == StoreResult::Success) {
        Add(std::move(record));
    }
    return result;
}

/// Writes a document to a file that is made for it and must not exist yet.
FileError CPMXTemplUIListDataArray::SaveNewFavorite(CPMXTemplUIListData& record,
                                                    const std::string& path) const {
    const FileError error = Services.FileSystem.CreateNew(path);
    if (error != FileError::None) {
        return error;
    }
    if (record.SaveDocument(path.c_str())) {
        return FileError::None;
    }
    RetryDeleteFile(Services, path);
    return FileError::Other;
}

std::optional<std::string> CPMXTemplUIListDataArray::FavoritePath(const CPMXTemplUIListData& record) const {
    const std::string& fileName = record.GetFileName();
    const bool isFolderSet = !ListFilePath.empty();
    if (!isFolderSet || !IsPlainFileName(fileName) || IsListFileName(fileName)) {
        return std::nullopt;
    }
    return record.GetFilePath(Folder);
}

bool CPMXTemplUIListDataArray::IsListFileName(std::string_view fileName) const {
    return EqualIgnoringCase(WithoutEnd(fileName), WithoutEnd(ListFileName));
}

bool CPMXTemplUIListDataArray::EnsureLoaded(CPMXTemplUIListData& record) const {
    if (record.IsDocumentReady()) {
        return true;
    }
    if (!record.ReleaseDocument() || !record.EnsureDocument()) {
        return false;
    }
    const std::optional<std::string> path = FavoritePath(record);
    return path && record.LoadDocument(path->c_str());
}

bool CPMXTemplUIListDataArray::SaveFavorite(CPMXTemplUIListData& record) const {
    const std::optional<std::string> path = FavoritePath(record);
    return path && record.SaveDocument(path->c_str());
}

bool CPMXTemplUIListDataArray::DeleteFavorite(const CPMXTemplUIListData& record) const {
    try {
        const std::optional<std::string> path = FavoritePath(record);
        // A folder would be refused as a file that is held is, and waited for.
        return path && !Services.FileSystem.IsFolder(*path) && RetryDeleteFile(Services, *path);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void CPMXTemplUIListDataArray::DeleteFilesOfDeleted(
    const std::vector<const CPMXTemplUIListData*>& records) const {
    try {
        DeleteUnusedFiles(records);
    } catch (const std::bad_alloc&) {
        return; // the files that are left stay
    }
}

void CPMXTemplUIListDataArray::DeleteUnusedFiles(
    const std::vector<const CPMXTemplUIListData*>& records) const {
    std::vector<const CPMXTemplUIListData*> deleted;
    std::unordered_set<std::string> stillUsed;
    for (const CPMXTemplUIListData* const record : records) {
        if (record->GetDeleteFlag() == 1 && !record->IsStandard()) {
            deleted.push_back(record);
        } else {
            stillUsed.insert(FoldedFileName(record->GetFileName()));
        }
    }
    DecodedText content;
    if (deleted.empty() || RetryBriefly(Services, [&] { return ReadListFile(content); }) != FileError::None) {
        return;
    }
    for (const std::string_view value : ReadListValues(content.Text)) {
        if (const auto record = ParseListValue(value, LeadBytesIn(value))) {
            stillUsed.insert(FoldedFileName(record->GetFileName()));
        }
    }
    for (const CPMXTemplUIListData* const record : deleted) {
        if (!stillUsed.contains(FoldedFileName(record->GetFileName()))) {
            DeleteFavorite(*record);
        }
    }
}

} // namespace pmx
