#include "check.h"

#include "host_library.h"
#include "names.h"
#include "terminal.h"

#include "store/favorite_files.h"
#include "store/rules.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace pmx::tool {

namespace {

struct TroubleText {
    Trouble What;
    std::string_view Code;
    std::string_view Reason;
};

constexpr std::array<TroubleText, 35> Texts = {{
    {Trouble::ListUnreadable, "list-unreadable", "the list file cannot be read"},
    {Trouble::ListLossy, "list-lossy", "the list has characters without a code, so it is never saved"},
    {Trouble::ListMark, "list-mark", "the list begins with a Unicode mark"},
    {Trouble::ListReadOnly, "list-read-only", "the list file is read-only"},
    {Trouble::ListHeld, "list-held", "another program has the list file open"},
    {Trouble::FolderReadOnly, "folder-read-only", "no files can be made in the folder"},
    {Trouble::CountHigh, "count-high", "the count is higher than the entries"},
    {Trouble::BeyondCount, "beyond-count", "the number is beyond the count: not listed"},
    {Trouble::SecondNumber, "second-number", "another entry has the same number: not listed"},
    {Trouble::OtherLine, "other-line", "the line is no entry: lost at the next save"},
    {Trouble::SecondSection, "second-section", "the section stands twice: not listed"},
    {Trouble::TooFewFields, "too-few-fields", "the entry has fewer than six fields: not listed"},
    {Trouble::TooManyFields, "too-many-fields", "the entry has more than six fields: not listed"},
    {Trouble::StandardNumber, "standard-number", "there is no standard favorite of that number: not listed"},
    {Trouble::NameEmpty, "name-empty", "the name is empty"},
    {Trouble::NameLong, "name-long", "the name has more than 32 bytes"},
    {Trouble::NameSeparator, "name-separator", "the name holds ~"},
    {Trouble::NameTwice, "name-twice", "another favorite has the name"},
    {Trouble::Bytes, "bytes", "bytes that are no characters of the code page"},
    {Trouble::Level, "level", "there is no such level"},
    {Trouble::ToolbarLevel, "toolbar-level", "on the toolbar without being of document level"},
    {Trouble::ToolbarMany, "toolbar-many", "on the toolbar beyond the first 20"},
    {Trouble::Icon, "icon", "there is no such icon"},
    {Trouble::FieldEmpty, "field-empty", "the file field is empty: not listed"},
    {Trouble::FileMissing, "file-missing", "there is no such file"},
    {Trouble::FileOutside, "file-outside", "the file field names no file of the folder"},
    {Trouble::FileUnreadable, "file-unreadable", "the file cannot be read"},
    {Trouble::FileEmpty, "file-empty", "the file is empty"},
    {Trouble::FileDamaged, "file-damaged", "the host refuses the file"},
    {Trouble::FileForeign, "file-foreign", "the file is another favorite's"},
    {Trouble::FileShared, "file-shared", "another favorite has the file"},
    {Trouble::FileUnlisted, "file-unlisted", "no entry names the file"},
    {Trouble::FileStray, "file-stray", "no entry can name the file"},
    {Trouble::LeftoverAside, "leftover-aside", "an unfinished file of a program that was killed"},
    {Trouble::LeftoverEmpty, "leftover-empty", "an empty favorite file that no entry names"},
}};

constexpr bool AreInOrder() {
    for (std::size_t index = 0; index < Texts.size(); ++index) {
        if (Texts[index].What != static_cast<Trouble>(index)) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());

bool IsUserLevel(std::int32_t level) {
    return level >= PMX_LEVEL_DOCUMENT && level <= PMX_LEVEL_PAGE;
}

bool IsKnownLevel(std::int32_t level) {
    return IsUserLevel(IsStandardLevel(level) ? level - PMX_LEVEL_STANDARD : level);
}

/// The record as a reader of the list finds it; null when it finds none, or more than this.
std::unique_ptr<CPMXTemplUIListData> ReadBack(const CPMXTemplUIListData& record) {
    const std::string section = FormatSection({&record}, 1);
    const ListValues values = ReadListValues(section);
    return values.size() == 1 ? ParseListValue(values.front(), LeadBytesIn(values.front())) : nullptr;
}

/// Whether an entry of the list can name the file.
bool CanBeListed(const FavoritesFolder& folder, const FolderFile& file) {
    CPMXTemplUIListData record;
    record.SetName("-");
    record.SetFileName(file.Name);
    const std::unique_ptr<CPMXTemplUIListData> read = ReadBack(record);
    return file.IsNameable && read != nullptr && read->GetFileName() == file.Name &&
           folder.GetList().FavoritePath(*read).has_value();
}

/// One check of one folder.
class Checker {
public:
    Checker(const FavoritesFolder& folder, std::int64_t now)
        : Folder(folder), Now(now), FilesDone(folder.AllFiles().size()) {}

    std::vector<Finding> Run() {
        CheckListFile();
        CheckSection();
        CollectNamesAndFiles();
        for (const ListLine& line : Folder.Lines()) {
            CheckLine(line);
        }
        CheckFiles();
        return std::move(Findings);
    }

private:
    Files& System() const { return Folder.GetList().GetServices().FileSystem; }

    void Add(Finding finding) { Findings.push_back(std::move(finding)); }

    void AddToList(Trouble what, bool isMendable = false, std::string detail = {}) {
        Add({what, std::nullopt, {}, ListFileShown(), std::move(detail), isMendable});
    }

    void AddToLine(const ListLine& line, Trouble what, bool isMendable, std::string detail = {}) {
        const std::string name = line.Record ? line.Record->GetName() : std::string();
        const std::string file = line.Record ? Readable(line.Record->GetFileName()) : std::string();
        Add({what, line.Number, name, file, std::move(detail), isMendable});
    }

    std::string ListFileShown() const {
        return Readable(Folder.GetList().GetListFilePath().substr(Folder.GetList().GetFolder().size()));
    }

    void CheckListFile() {
        const std::string& path = Folder.GetList().GetListFilePath();
        const bool isThere = Folder.ListError() != FileError::NotFound;
        const bool isFolder = System().IsFolder(path);
        if (isThere && !isFolder && System().IsReadOnly(path)) {
            AddToList(Trouble::ListReadOnly);
        } else if (isThere && !isFolder && System().TryOpen(path) == FileError::Held) {
            AddToList(Trouble::ListHeld);
        } else if (isFolder || (isThere && Folder.ListError() != FileError::None)) {
            AddToList(Trouble::ListUnreadable);
        }
        if (!Folder.ListText().IsWhole) {
            AddToList(Trouble::ListLossy);
        } else if (Folder.ListText().Text.size() != Folder.ListBytes().size()) {
            AddToList(Trouble::ListMark, true);
        }
        if (!MayAddFiles(Folder.GetList().GetFolder())) {
            Add({Trouble::FolderReadOnly, std::nullopt, {}, {}, {}, false});
        }
    }

    void CheckSection() {
        const ListSectionContent& section = Folder.Section();
        std::int64_t entries = 0;
        for (const ListLine& line : Folder.Lines()) {
            entries += line.IsSecond || line.IsBeyondCount ? 0 : 1;
        }
        if (section.Count > entries) {
            AddToList(Trouble::CountHigh, true,
                      std::to_string(section.Count) + " for " + std::to_string(entries));
        }
        for (const std::string_view line : section.OtherLines) {
            AddToList(Trouble::OtherLine, true, Readable(line));
        }
        for (std::size_t count = 0; count < section.FurtherSections.size(); ++count) {
            AddToList(Trouble::SecondSection, true);
        }
    }

    void CollectNamesAndFiles() {
        for (const ListLine* const line : KeptLines(Folder)) {
            const CPMXTemplUIListData& record = *line->Kept();
            ++NameUses[NameKey(record.GetName())];
            ListedFiles.insert(FileKey(record.GetFileName()));
            if (record.IsStandard()) {
                StandardNames.insert(NameKey(record.GetName()));
            }
        }
    }

    void CheckLine(const ListLine& line) {
        if (line.IsSecond) {
            AddToLine(line, Trouble::SecondNumber, true, Readable(line.Value));
            return;
        }
        if (line.IsBeyondCount && line.Kept() != nullptr) {
            AddToLine(line, Trouble::BeyondCount, true);
        }
        if (!IsAllCharacters(line.Value)) {
            AddToLine(line, Trouble::Bytes, line.Record == nullptr, {});
        }
        if (line.Record == nullptr) {
            CheckDamaged(line);
            return;
        }
        CheckName(line);
        CheckMarks(line);
        CheckFileOf(line);
    }

    void CheckDamaged(const ListLine& line) {
        const ValueFault fault = FaultOf(line.Value, LeadBytesIn(line.Value));
        AddToLine(line, TroubleOf(fault), true, Readable(line.Value));
        if (fault == ValueFault::TooManyFields) {
            if (const std::optional<std::string_view> name = NameWithSeparators(line.Value)) {
                Add({Trouble::NameSeparator, line.Number, std::string(*name), {}, {}, true});
            }
        }
        if (fault == ValueFault::TooFewFields && line.Value.find("~~") < line.Value.find('~') + 1) {
            AddToLine(line, Trouble::NameEmpty, true);
        }
    }

    void CheckName(const ListLine& line) {
        const std::string& name = line.Record->GetName();
        if (name.size() > NameLimit) {
            AddToLine(line, Trouble::NameLong, false, std::to_string(name.size()) + " bytes");
        }
        const std::string key = NameKey(name);
        const bool isFirst = SeenNames.insert(key).second;
        // The one that keeps the name is a standard favorite, whose name is the host's, or else the first.
        const bool keepsName = line.Record->IsStandard() ? isFirst || !SeenStandardNames.contains(key)
                                                         : isFirst && !StandardNames.contains(key);
        if (line.Record->IsStandard()) {
            SeenStandardNames.insert(key);
        }
        if (NameUses[key] > 1 && !keepsName) {
            AddToLine(line, Trouble::NameTwice, !line.Record->IsStandard());
        }
    }

    void CheckMarks(const ListLine& line) {
        const CPMXTemplUIListData& record = *line.Record;
        if (!IsKnownLevel(record.GetLevel())) {
            AddToLine(line, Trouble::Level, false, std::to_string(record.GetLevel()));
        }
        if (record.GetToolbar() == 1 && !IsDocumentLevel(record.GetLevel())) {
            AddToLine(line, Trouble::ToolbarLevel, true);
        } else if (record.GetToolbar() == 1 && ++Marks > ToolbarLimit) {
            AddToLine(line, Trouble::ToolbarMany, true);
        }
        if (record.GetIconIndex() < 0 || record.GetIconIndex() > LastOfferedIcon) {
            AddToLine(line, Trouble::Icon, false, std::to_string(record.GetIconIndex()));
        }
    }

    void CheckFileOf(const ListLine& line) {
        const CPMXTemplUIListData& record = *line.Record;
        const FileContent content = Folder.ContentOf(record);
        static const std::unordered_map<FileState, Trouble> Troubles = {
            {FileState::Missing, Trouble::FileMissing},       {FileState::Outside, Trouble::FileOutside},
            {FileState::Unreadable, Trouble::FileUnreadable}, {FileState::Empty, Trouble::FileEmpty},
            {FileState::Damaged, Trouble::FileDamaged},
        };
        const auto trouble = Troubles.find(content.State);
        if (trouble != Troubles.end()) {
            AddToLine(line, trouble->second, false);
        }
        if (record.IsStandard()) {
            return;
        }
        const bool isFirst = SeenFiles.insert(FileKey(record.GetFileName())).second;
        if (isFirst && Folder.FindFile(record.GetFileName()) != nullptr) {
            FilesDone.Step();
        }
        if (!isFirst) {
            const bool isThere = content.State == FileState::Whole || content.State == FileState::Unknown;
            AddToLine(line, Trouble::FileShared, isThere);
        } else if (content.State == FileState::Whole && !IsNameFromFile(record.GetName(), content.Name) &&
                   NameUses.contains(NameKey(content.Name))) {
            AddToLine(line, Trouble::FileForeign, false, Readable(content.Name));
        }
    }

    void CheckFiles() {
        for (const FolderFile& file : Folder.AllFiles()) {
            const bool isListed = ListedFiles.contains(FileKey(file.Name));
            const Leftover leftover = LeftoverKind(Folder, file, isListed);
            if (leftover != Leftover::None) {
                const Trouble what =
                    leftover == Leftover::Aside ? Trouble::LeftoverAside : Trouble::LeftoverEmpty;
                const bool isOld = IsOldLeftover(file, Now);
                Add({what, std::nullopt, {}, file.Shown, isOld ? "" : "younger than a day", isOld});
            } else if (!isListed && Folder.IsFavoriteFile(file)) {
                CheckUnlisted(file);
            }
            if (!isListed) {
                FilesDone.Step();
            }
        }
    }

    void CheckUnlisted(const FolderFile& file) {
        if (!CanBeListed(Folder, file)) {
            Add({Trouble::FileStray, std::nullopt, {}, file.Shown, {}, false});
            return;
        }
        const FileContent content = Folder.ContentOf(file);
        const bool isMendable = FavoriteOf(Folder, file) != nullptr;
        Add({Trouble::FileUnlisted, std::nullopt, content.Name, file.Shown, UnlistedDetail(content),
             isMendable});
        if (content.State == FileState::Whole && HasSeparator(content.Name)) {
            Add({Trouble::NameSeparator, std::nullopt, content.Name, file.Shown, {}, isMendable});
        }
    }

    /// Why nobody but a person can tell which favorite the file is; empty for one that says it itself.
    static std::string UnlistedDetail(const FileContent& content) {
        if (content.State != FileState::Whole) {
            return std::string(NameOf(content.State));
        }
        if (!IsUserLevel(content.Level)) {
            return "level " + std::to_string(content.Level);
        }
        return NameFromFile(content.Name).empty() ? "without a name" : std::string();
    }

    const FavoritesFolder& Folder;
    const std::int64_t Now;
    Progress FilesDone;
    std::vector<Finding> Findings;
    std::unordered_map<std::string, int> NameUses;
    std::unordered_set<std::string> StandardNames;
    std::unordered_set<std::string> ListedFiles;
    std::unordered_set<std::string> SeenNames;
    std::unordered_set<std::string> SeenStandardNames;
    std::unordered_set<std::string> SeenFiles;
    std::int64_t Marks = 0;
};

} // namespace

std::string_view CodeOf(Trouble trouble) {
    return Texts[static_cast<std::size_t>(trouble)].Code;
}

std::string_view ReasonOf(Trouble trouble) {
    return Texts[static_cast<std::size_t>(trouble)].Reason;
}

Trouble TroubleOf(ValueFault fault) {
    switch (fault) {
    case ValueFault::TooManyFields:
        return Trouble::TooManyFields;
    case ValueFault::NoName:
        return Trouble::NameEmpty;
    case ValueFault::NoFile:
        return Trouble::FieldEmpty;
    case ValueFault::UnknownStandardNumber:
        return Trouble::StandardNumber;
    default:
        return Trouble::TooFewFields;
    }
}

Leftover LeftoverKind(const FavoritesFolder& folder, const FolderFile& file, bool isListed) {
    constexpr std::string_view Begin = "Pmx";
    constexpr std::string_view End = ".tmp";
    constexpr std::size_t Digits = 8;
    const std::string_view name = file.Name;
    const bool isAside =
        name.size() == Begin.size() + Digits + End.size() && name.starts_with(Begin) && name.ends_with(End) &&
        name.substr(Begin.size(), Digits).find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
    if (isAside) {
        return isListed ? Leftover::None : Leftover::Aside;
    }
    const bool isEmpty = file.Size == 0 && !isListed && file.IsNameable && folder.IsFavoriteFile(file);
    return isEmpty ? Leftover::Empty : Leftover::None;
}

bool IsOldLeftover(const FolderFile& file, std::int64_t now) {
    constexpr std::int64_t Day = std::int64_t{24} * 60 * 60;
    return now - file.Written > Day;
}

std::vector<const ListLine*> KeptLines(const FavoritesFolder& folder) {
    std::vector<const ListLine*> kept;
    for (const ListLine& line : folder.Lines()) {
        if (line.Kept() != nullptr) {
            kept.push_back(&line);
        }
    }
    return kept;
}

std::unique_ptr<CPMXTemplUIListData> FavoriteOf(const FavoritesFolder& folder, const FolderFile& file) {
    const FileContent content = folder.ContentOf(file);
    const std::string name = NameFromFile(content.Name);
    if (content.State != FileState::Whole || !IsUserLevel(content.Level) || name.empty() ||
        !CanBeListed(folder, file)) {
        return nullptr;
    }
    auto favorite = std::make_unique<CPMXTemplUIListData>();
    favorite->SetName(name);
    favorite->SetLevel(content.Level);
    favorite->SetFileName(file.Name);
    return favorite;
}

std::vector<Finding> Check(const FavoritesFolder& folder, std::int64_t now) {
    return Checker(folder, now).Run();
}

} // namespace pmx::tool
