#include "store/list_data_array.h"

#include "platform/text.h"
#include "store/favorite_files.h"
#include "store/levels.h"
#include "store/list_file.h"

#include "host/CComFile.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <unordered_set>

namespace pmx {

namespace {

constexpr const char* DefaultListFileName = "PmxTempleList.ini";
constexpr const char* DefaultExtension = ".pmt";
constexpr const char* DefaultBaseName = "Template";
constexpr std::size_t SmallestReadBuffer = 4096;

std::size_t ReadBufferSize(const std::string& path) {
    CComFile file;
    if (file.Open(path.c_str(), 0) != 1) {
        return SmallestReadBuffer;
    }
    const std::int64_t size = file.GetFileSize();
    return size >= 0 ? static_cast<std::size_t>(size) : SmallestReadBuffer;
}

/// A file that nobody else has, made to be written by the host. Deleted at the end unless it is kept.
class NewFile {
public:
    /// The arguments must outlive this object.
    NewFile(Files& files, Clock& clock, const std::string& path)
        : FileSystem(files), Timer(clock), Path(path), IsOurs(Make(files, path)) {}
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (IsOurs && !IsKept) {
            RetryDeleteFile(FileSystem, Timer, Path);
        }
    }

    /// False when the name is taken, or no file can be made.
    bool IsMade() const { return IsOurs; }
    void Keep() { IsKept = true; }

private:
    static bool Make(Files& files, const std::string& path) {
        const OpenResult made = files.Open(
            {.Path = path, .Access = FileAccess::Write, .Disposition = FileDisposition::CreateNew});
        return made.Error == FileError::None;
    }

    Files& FileSystem;
    Clock& Timer;
    const std::string& Path;
    const bool IsOurs;
    bool IsKept = false;
};

/// A file name as the platform takes it, which drops dots and blanks at the end.
std::string_view WithoutEnd(std::string_view fileName) {
    return fileName.substr(0, fileName.find_last_not_of(". ") + 1);
}

} // namespace

CPMXTemplUIListDataArray::CPMXTemplUIListDataArray(const char* listFileName, const char* extension,
                                                   const StoreServices& services)
    : ListFileName(listFileName != nullptr ? listFileName : DefaultListFileName),
      Extension(extension != nullptr ? extension : DefaultExtension),
      Services(services) {}

CPMXTemplUIListDataArray::~CPMXTemplUIListDataArray() = default;

CPMXTemplUIListData* CPMXTemplUIListDataArray::GetAt(std::int64_t index) const {
    if (!Contains(index)) {
        throw std::invalid_argument("index outside the list of favorites");
    }
    return Records[static_cast<std::size_t>(index)].get();
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

void CPMXTemplUIListDataArray::RemoveLast() {
    if (!Records.empty()) {
        Records.pop_back();
    }
}

void CPMXTemplUIListDataArray::RemoveAll() {
    Records.clear();
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
    std::size_t last = 0;
    for (std::size_t position = 0; position < Folder.size();
         position += CharacterLength(Folder, position, SystemLeadBytes())) {
        last = position;
    }
    if (Folder.compare(last, std::string::npos, "\\") != 0) {
        Folder.push_back('\\');
    }
    ListFilePath = Folder + ListFileName;
    return true;
}

OpenResult CPMXTemplUIListDataArray::HoldListFile() const {
    return Services.FileSystem.Open(
        {.Path = ListFilePath, .Access = FileAccess::Read, .Share = FileShare::ReadWrite});
}

bool CPMXTemplUIListDataArray::LoadList() {
    RemoveAll();
    if (Folder.empty() || ListFilePath.empty()) {
        return false;
    }
    ListFileUnreadable = true; // until it has been read
    try {
        const std::size_t bufferSize = ReadBufferSize(ListFilePath);
        // A file that another program shuts off reads as if it were not there. Held open here, it cannot be
        // shut off between this question and the reading.
        const OpenResult held = HoldListFile();
        const bool isShutOff = held.Error != FileError::None && held.Error != FileError::NotFound;
        // The platform's string read gives one byte less than its buffer holds.
        const std::size_t valueLimit = bufferSize > 0 ? bufferSize - 1 : 0;
        const bool isRead =
            ReadListFile(ListFilePath, valueLimit, Services,
                         [this](std::unique_ptr<CPMXTemplUIListData> record) { Add(std::move(record)); });
        ListFileUnreadable = isShutOff || !isRead;
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

bool CPMXTemplUIListDataArray::WriteListFile(const std::vector<const CPMXTemplUIListData*>& records,
                                             std::int64_t count) const {
    if (ListFilePath.empty() || ListFileUnreadable) {
        return false;
    }
    try {
        return ReplaceListFile(Folder, ListFilePath, MakeListEntries(records, count), Services);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool CPMXTemplUIListDataArray::WriteListFile() const {
    try {
        return WriteListFile(GetRecords(), GetSize());
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::vector<const CPMXTemplUIListData*> CPMXTemplUIListDataArray::GetRecords() const {
    std::vector<const CPMXTemplUIListData*> records;
    records.reserve(Records.size());
    for (const std::unique_ptr<CPMXTemplUIListData>& record : Records) {
        records.push_back(record.get());
    }
    return records;
}

bool CPMXTemplUIListDataArray::IsSameName(const CPMXTemplUIListData& record, const std::string& name) const {
    return EqualIgnoringCase(record.GetName(), name);
}

NameUse CPMXTemplUIListDataArray::CheckName(const std::string& name) const {
    for (const std::unique_ptr<CPMXTemplUIListData>& record : Records) {
        if (record && IsSameName(*record, name)) {
            return record->IsStandard() ? NameUse::StandardFavorite : NameUse::UserFavorite;
        }
    }
    return NameUse::Unused;
}

bool CPMXTemplUIListDataArray::IsNameUnique(std::int64_t index, const std::string& name) const {
    if (!Contains(index)) {
        return true;
    }
    for (std::int64_t other = 0; other < GetSize(); ++other) {
        const CPMXTemplUIListData* const record = GetAt(other);
        if (other != index && record != nullptr && IsSameName(*record, name)) {
            return false;
        }
    }
    return true;
}

CPMXTemplUIListData* CPMXTemplUIListDataArray::FindByName(const std::string& name) const {
    const auto found = std::find_if(Records.begin(), Records.end(),
                                    [&name](const std::unique_ptr<CPMXTemplUIListData>& record) {
                                        return record && record->GetName() == name;
                                    });
    return found != Records.end() ? found->get() : nullptr;
}

std::optional<std::string> CPMXTemplUIListDataArray::MakeFileName(const std::string& name) const {
    std::string base = SanitizeFileName(name, SystemLeadBytes());
    if (base.empty()) {
        base = DefaultBaseName;
    }
    const std::string plain = base + Extension;
    // A device's name (NUL.pmt) is taken in every folder, the list file's even before there is one.
    if (IsPlainFileName(plain, SystemLeadBytes()) && !IsListFileName(plain) &&
        !Services.FileSystem.Exists(Folder + plain)) {
        return plain;
    }
    for (std::int64_t number = 1; number <= Services.LastFileNumber; ++number) {
        std::string candidate = base + "-" + std::to_string(number) + Extension;
        // A folder would be refused as a file that is held is, and waited for.
        if (IsListFileName(candidate) || Services.FileSystem.IsFolder(Folder + candidate)) {
            continue;
        }
        const OpenRequest request{.Path = Folder + candidate,
                                  .Access = FileAccess::ReadWrite,
                                  .Share = FileShare::ReadWrite,
                                  .Disposition = FileDisposition::OpenExisting,
                                  .Attributes = FileAttributes::Normal};
        OpenResult opened = RetryCreateFile(Services.FileSystem, Services.Timer, request);
        if (opened.Error != FileError::None) {
            return candidate;
        }
        opened.File.reset();
        Services.Timer.Sleep(1);
    }
    return std::nullopt;
}

std::optional<std::string> CPMXTemplUIListDataArray::FavoritePath(const CPMXTemplUIListData& record) const {
    const std::string& fileName = record.GetFileName();
    const bool isFolderSet = !ListFilePath.empty();
    if (!isFolderSet || !IsPlainFileName(fileName, SystemLeadBytes()) || IsListFileName(fileName)) {
        return std::nullopt;
    }
    return record.GetFilePath(Folder);
}

bool CPMXTemplUIListDataArray::IsListFileName(std::string_view fileName) const {
    return EqualIgnoringCase(WithoutEnd(fileName), WithoutEnd(ListFileName));
}

bool CPMXTemplUIListDataArray::LoadFavorite(CPMXTemplUIListData& record) const {
    const std::optional<std::string> path = FavoritePath(record);
    return path && record.LoadDocument(path->c_str());
}

bool CPMXTemplUIListDataArray::SaveFavorite(CPMXTemplUIListData& record) const {
    const std::optional<std::string> path = FavoritePath(record);
    return path && record.SaveDocument(path->c_str());
}

bool CPMXTemplUIListDataArray::SaveNewFavorite(CPMXTemplUIListData& record) const {
    const std::optional<std::string> path = FavoritePath(record);
    if (!path) {
        return false;
    }
    NewFile file(Services.FileSystem, Services.Timer, *path);
    if (!file.IsMade() || !record.SaveDocument(path->c_str())) {
        return false;
    }
    file.Keep();
    return true;
}

bool CPMXTemplUIListDataArray::DeleteFavorite(const CPMXTemplUIListData& record) const {
    try {
        const std::optional<std::string> path = FavoritePath(record);
        // A folder would be refused as a file that is held is, and waited for.
        return path && !Services.FileSystem.IsFolder(*path) &&
               RetryDeleteFile(Services.FileSystem, Services.Timer, *path);
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
        if (record == nullptr) {
            continue;
        }
        if (record->GetDeleteFlag() == 1 && !record->IsStandard()) {
            deleted.push_back(record);
        } else {
            stillUsed.insert(FoldedFileName(record->GetFileName(), SystemLeadBytes()));
        }
    }
    for (const CPMXTemplUIListData* const record : deleted) {
        if (!stillUsed.contains(FoldedFileName(record->GetFileName(), SystemLeadBytes()))) {
            DeleteFavorite(*record);
        }
    }
}

} // namespace pmx
