#include "folder.h"

#include "host_library.h"
#include "terminal.h"

#include "store/host_call.h"

#include <array>
#include <utility>

namespace pmx::tool {

std::string_view NameOf(FileState state) {
    constexpr std::array<std::string_view, 8> Names = {"-",       "whole",      "present", "missing",
                                                       "outside", "unreadable", "empty",   "damaged"};
    return Names[static_cast<std::size_t>(state)];
}

namespace {

/// The favorite that a value with separators in its name describes when they are replaced by `-`; null for any other.
std::unique_ptr<CPMXTemplUIListData> ParseMended(std::string_view value) {
    const LeadByteTable& leadBytes = LeadBytesIn(value);
    const std::optional<std::string_view> name = NameWithSeparators(value);
    if (!name || FaultOf(value, leadBytes) != ValueFault::TooManyFields) {
        return nullptr;
    }
    const auto begin = static_cast<std::size_t>(name->data() - value.data());
    const std::size_t end = begin + name->size();
    std::string mended(value);
    for (std::size_t position = FindSingleByte(mended, FieldSeparator, leadBytes, begin); position < end;
         position = FindSingleByte(mended, FieldSeparator, leadBytes, position)) {
        mended[position] = '-';
    }
    return ParseListValue(mended, leadBytes);
}

} // namespace

FavoritesFolder::FavoritesFolder(const FolderChoice& choice, const StoreServices& services)
    : List(choice.ListFile.c_str(), choice.Extension.c_str(), services), Folder(choice.Folder) {}

bool FavoritesFolder::Read() {
    std::optional<std::vector<FolderFile>> files;
    if (!List.SetFolder(Folder.c_str()) || !(files = FilesIn(Folder))) {
        return false;
    }
    Files = *std::move(files);
    for (std::size_t index = 0; index < Files.size(); ++index) {
        FilesByName.emplace(FileKey(Files[index].Name), index);
    }
    ReadError = List.GetServices().FileSystem.Read(List.GetListFilePath(), Bytes);
    Content = DecodeContent(Bytes);
    SectionContent = ReadListSection(Content.Text);
    std::optional<std::int32_t> before;
    for (const NumberedValue& value : SectionContent.Values) {
        ListLine line;
        line.Number = value.Number;
        line.Value = value.Value;
        line.Record = ParseListValue(value.Value, LeadBytesIn(value.Value));
        line.Mended = line.Record == nullptr ? ParseMended(value.Value) : nullptr;
        line.IsSecond = before == value.Number;
        line.IsBeyondCount = value.Number >= SectionContent.Count;
        before = value.Number;
        ListLines.push_back(std::move(line));
    }
    return true;
}

const FolderFile* FavoritesFolder::FindFile(const std::string& fileName) const {
    const auto found = FilesByName.find(FileKey(fileName));
    return found == FilesByName.end() ? nullptr : &Files[found->second];
}

FileContent FavoritesFolder::ContentOf(const CPMXTemplUIListData& record) const {
    if (record.IsStandard()) {
        return {FileState::None, {}, 0};
    }
    const std::optional<std::string> path = List.FavoritePath(record);
    if (!path) {
        return {FileState::Outside, {}, 0};
    }
    const FolderFile* const file = FindFile(record.GetFileName());
    return file != nullptr ? ContentOf(*file) : FileContent{FileState::Missing, {}, 0};
}

FileContent FavoritesFolder::ContentOf(const FolderFile& file) const {
    const auto known = KnownContents.find(file.Name);
    return known != KnownContents.end() ? known->second
                                        : KnownContents.emplace(file.Name, ReadFavorite(file)).first->second;
}

FileContent FavoritesFolder::ReadFavorite(const FolderFile& file) const {
    if (file.Size == 0) {
        return {FileState::Empty, {}, 0};
    }
    const std::string path = PathOf(file);
    std::string bytes;
    if (!HasHostLibrary()) {
        const FileError error = List.GetServices().FileSystem.TryOpen(path);
        const bool isReadOnly = error == FileError::Held && List.GetServices().FileSystem.IsReadOnly(path);
        return {error == FileError::None || isReadOnly ? FileState::Unknown : FileState::Unreadable, {}, 0};
    }
    CPMXTemplUIListData record;
    FileContent content;
    const bool isRead = record.EnsureDocument() && record.LoadDocument(path.c_str()) && CallHost([&] {
                            content.Name = record.GetDocument()->GetName();
                            content.Level = record.GetDocument()->GetTemplateLevel();
                        });
    if (isRead) {
        content.State = FileState::Whole;
    } else {
        const bool isHeld = List.GetServices().FileSystem.Read(path, bytes) != FileError::None;
        content = {isHeld ? FileState::Unreadable : FileState::Damaged, {}, 0};
    }
    return content;
}

bool FavoritesFolder::IsFavoriteFile(const FolderFile& file) const {
    const std::string& extension = List.GetExtension();
    const bool isLonger = file.Name.size() > extension.size();
    const std::string listFile = List.GetListFilePath().substr(List.GetFolder().size());
    return isLonger && FileKey(file.Name) != FileKey(listFile) &&
           EqualIgnoringCase(std::string_view(file.Name).substr(file.Name.size() - extension.size()),
                             extension);
}

std::optional<std::string_view> NameWithSeparators(std::string_view value) {
    const LeadByteTable& leadBytes = LeadBytesIn(value);
    std::vector<std::string_view> fields;
    for (std::size_t begin = 0; begin <= value.size();) {
        const std::size_t end =
            std::min(FindSingleByte(value, FieldSeparator, leadBytes, begin), value.size());
        fields.push_back(value.substr(begin, end - begin));
        begin = end + 1;
    }
    constexpr std::size_t BehindName = 4;
    if (fields.size() <= BehindName + 2) {
        return std::nullopt;
    }
    const auto isNumber = [](std::string_view text) {
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    const std::size_t level = fields.size() - BehindName;
    if (!isNumber(fields[0]) || !isNumber(fields[level]) || !isNumber(fields[level + 1]) ||
        !isNumber(fields[level + 2])) {
        return std::nullopt;
    }
    const auto nameEnd = static_cast<std::size_t>(fields[level].data() - value.data()) - 1;
    const std::size_t nameBegin = fields[0].size() + 1;
    return value.substr(nameBegin, nameEnd - nameBegin);
}

void SayIfHostIsMissing() {
    static bool isSaid = false;
    if (!isSaid && !HasHostLibrary()) {
        Say("the host's PmxDocMgr is not beside this program: what is inside favorite files stays unknown");
        isSaid = true;
    }
}

} // namespace pmx::tool
