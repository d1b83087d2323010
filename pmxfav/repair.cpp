#include "repair.h"

#include "commands.h"
#include "host_library.h"
#include "names.h"
#include "terminal.h"

#include "store/aside_file.h"
#include "store/favorite_files.h"
#include "store/host_call.h"
#include "store/rules.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace pmx::tool {

namespace {

constexpr std::string_view LineEnd = "\r\n";
constexpr int MostKeptLists = 100; // of one second

/// What is done about a trouble that is the same for all; empty for any other.
std::string_view CommonAction(Trouble trouble) {
    switch (trouble) {
    case Trouble::ListMark:
        return "saved in the system's code page";
    case Trouble::CountHigh:
        return "put right";
    case Trouble::BeyondCount:
        return "taken over";
    case Trouble::OtherLine:
        return "kept before the section";
    case Trouble::SecondSection:
        return "kept as comments";
    case Trouble::SecondNumber:
    case Trouble::TooFewFields:
    case Trouble::TooManyFields:
    case Trouble::StandardNumber:
    case Trouble::NameEmpty:
    case Trouble::FieldEmpty:
        return "kept as a comment";
    default:
        return {};
    }
}

/// The whole line of the content that a part of it stands in.
std::string_view LineAround(std::string_view content, std::string_view part) {
    const auto position = static_cast<std::size_t>(part.data() - content.data());
    const std::size_t before = content.substr(0, position).find_last_of(LineEnd);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    return content.substr(begin, std::min(content.find_first_of(LineEnd, position), content.size()) - begin);
}

/// What the copy of a favorite file holds that another favorite gets: the same under that one's name or, where the host is
/// missing or refuses the name, the same bytes.
class FileCopy {
public:
    /// `record` names the file to copy and the favorite that the copy is for.
    FileCopy(const CPMXTemplUIListDataArray& list, const CPMXTemplUIListData& record) : List(list) {
        Content = record;
        const std::optional<std::string> path = list.FavoritePath(record);
        IsThere = path && Services().FileSystem.Read(*path, Bytes) == FileError::None;
        bool isNamed = false;
        const bool isLoaded = IsThere && HasHostLibrary() && list.EnsureLoaded(Content);
        HasName = isLoaded && CallHost([&] {
                      CPmxDocument& document = *Content.GetDocument();
                      isNamed =
                          StampDocument(document, record.GetName(), document.GetTemplateLevel(), nullptr);
                  }) &&
                  isNamed;
    }

    /// Whether the file to copy can be read.
    bool IsPossible() const { return IsThere; }

    /// Whether that favorite file is such a copy already.
    bool Is(const CPMXTemplUIListData& other) const {
        std::string bytes;
        const std::optional<std::string> path = List.FavoritePath(other);
        if (!path || Services().FileSystem.Read(*path, bytes) != FileError::None) {
            return false;
        }
        CPMXTemplUIListData read;
        read = other;
        return bytes == Bytes || (HasName && List.EnsureLoaded(read) && IsSameContent(*read.GetDocument()));
    }

    bool Write(const std::string& path) {
        return HasName ? Content.SaveDocument(path.c_str())
                       : Services().FileSystem.Overwrite(path, Bytes) == FileError::None;
    }

private:
    const StoreServices& Services() const { return List.GetServices(); }

    bool IsSameContent(const CPmxDocument& other) const {
        bool isSame = false;
        const bool isRead = CallHost([&] {
            const CPmxDocument& own = *Content.GetDocument();
            _LM_DOCUMENTLAYOUTTABLE ownTable{};
            _LM_DOCUMENTLAYOUTTABLE otherTable{};
            own.GetTable(ownTable);
            other.GetTable(otherTable);
            isSame = own.GetName() == other.GetName() && own.GetTemplateLevel() == other.GetTemplateLevel() &&
                     std::memcmp(ownTable.Bytes, otherTable.Bytes, TableSize) == 0;
        });
        return isRead && isSame;
    }

    const CPMXTemplUIListDataArray& List;
    CPMXTemplUIListData Content;
    std::string Bytes;
    bool IsThere = false;
    bool HasName = false;
};

/// The base of the name of a copy's file: the favorite's name, or that of the file to copy when not every system takes the
/// favorite's.
std::string BaseOfCopy(const CPMXTemplUIListData& record) {
    const std::string& name = record.GetName();
    const bool isUsual = IsAllCharacters(name) && std::none_of(name.begin(), name.end(), [](char unit) {
                             return unit >= '\0' && unit < ' ';
                         });
    const std::string base = isUsual ? name : BaseNameOf(record.GetFileName());
    return base.substr(0, LengthWithin(base, NameLimit, SystemLeadBytes()));
}

/// Makes the plan for one folder.
class Planner {
public:
    Planner(const FavoritesFolder& folder, std::int64_t now) : Folder(folder), Now(now) {}

    RepairPlan Make(const std::vector<Finding>& findings) {
        TakeOverEntries();
        KeepLines();
        for (const Finding& finding : findings) {
            TakeCommon(finding);
        }
        NumberNames();
        TakeOffToolbar();
        PlanCopies();
        for (const FolderFile& file : Folder.AllFiles()) {
            PlanFile(file);
        }
        return Finish();
    }

private:
    void Add(const PlannedFavorite& favorite, Trouble what, std::string action) {
        const CPMXTemplUIListData& record = *favorite.Record;
        EntryDeeds.push_back({{.What = what,
                               .Number = favorite.Number,
                               .Name = record.GetName(),
                               .File = Readable(record.GetFileName()),
                               .Detail = {}},
                              std::move(action)});
    }

    void TakeOverEntries() {
        for (const ListLine* const line : KeptLines(Folder)) {
            PlannedFavorite& favorite = Plan.Favorites.emplace_back();
            favorite.Record = std::make_unique<CPMXTemplUIListData>();
            *favorite.Record = *line->Kept();
            favorite.Number = line->Number;
            favorite.IsMended = line->Record == nullptr;
            ListedFiles.insert(FileKey(favorite.Record->GetFileName()));
            if (favorite.IsMended) {
                Add(favorite, Trouble::NameSeparator,
                    "taken over as " + Readable(favorite.Record->GetName()));
                EntryDeeds.back().Cause.Name = *NameWithSeparators(line->Value);
            }
        }
    }

    /// The favorites whose entries can be read as they stand, before the others.
    std::vector<PlannedFavorite*> SoundFirst() {
        std::vector<PlannedFavorite*> favorites;
        favorites.reserve(Plan.Favorites.size());
        for (PlannedFavorite& favorite : Plan.Favorites) {
            favorites.push_back(&favorite);
        }
        std::stable_partition(favorites.begin(), favorites.end(),
                              [](const PlannedFavorite* favorite) { return !favorite->IsMended; });
        return favorites;
    }

    /// What the section holds beside readable entries, in the order of the file.
    void KeepLines() {
        const std::string_view content = Folder.ListText().Text;
        std::vector<std::string_view> lines = Folder.Section().OtherLines;
        for (const ListLine& line : Folder.Lines()) {
            if (line.IsSecond || line.Record == nullptr) {
                lines.push_back(LineAround(content, line.Value));
            }
        }
        for (std::string_view section : Folder.Section().FurtherSections) {
            while (!section.empty()) {
                const std::size_t length = std::min(section.find_first_of(LineEnd), section.size());
                lines.push_back(section.substr(0, length));
                section.remove_prefix(std::min(length + 1, section.size()));
            }
        }
        std::stable_sort(lines.begin(), lines.end(), [](std::string_view left, std::string_view right) {
            return std::less<>()(left.data(), right.data());
        });
        for (const std::string_view line : lines) {
            const std::string_view text = Trimmed(line, LeadBytesIn(line));
            if (!text.empty()) {
                Plan.Comments += text.starts_with(';') ? "" : "; ";
                Plan.Comments.append(line).append(LineEnd);
            }
        }
    }

    void TakeCommon(const Finding& finding) {
        const std::string_view action = CommonAction(finding.What);
        const bool isSaid =
            finding.What == Trouble::NameEmpty && finding.Detail.empty(); // with too few fields
        if (finding.IsMendable && !action.empty() && !isSaid) {
            (finding.Number ? EntryDeeds : Plan.ListDeeds).push_back({finding, std::string(action)});
        }
    }

    /// A name that no favorite has, made from one that some has.
    std::string NumberedName(const std::string& name) {
        int& number = NextNumbers.try_emplace(NameKey(name), 1).first->second;
        std::string free = FreeName(name, number, [this](const std::string& candidate) {
            return UsedNames.contains(NameKey(candidate));
        });
        UsedNames.insert(NameKey(free));
        return free;
    }

    /// Standard favorites keep their names, which are the host's; of the others the first keeps it.
    void NumberNames() {
        std::unordered_set<std::string> kept;
        for (const PlannedFavorite& favorite : Plan.Favorites) {
            UsedNames.insert(NameKey(favorite.Record->GetName()));
            if (favorite.Record->IsStandard()) {
                kept.insert(NameKey(favorite.Record->GetName()));
            }
        }
        for (const PlannedFavorite* const favorite : SoundFirst()) {
            const std::string name = favorite->Record->GetName();
            if (!favorite->Record->IsStandard() && !kept.insert(NameKey(name)).second) {
                const std::string numbered = NumberedName(name);
                Add(*favorite, Trouble::NameTwice, "renamed: " + Readable(numbered));
                favorite->Record->SetName(numbered);
            }
        }
    }

    void TakeOffToolbar() {
        std::int64_t marks = 0;
        for (const PlannedFavorite* const favorite : SoundFirst()) {
            CPMXTemplUIListData& record = *favorite->Record;
            const bool isDocument = IsDocumentLevel(record.GetLevel());
            if (record.GetToolbar() == 1 && (!isDocument || ++marks > ToolbarLimit)) {
                Add(*favorite, isDocument ? Trouble::ToolbarMany : Trouble::ToolbarLevel,
                    "taken off the toolbar");
                record.SetToolbar(0);
            }
        }
    }

    void PlanCopies() {
        std::unordered_set<std::string> files;
        for (PlannedFavorite* const favorite : SoundFirst()) {
            const CPMXTemplUIListData& record = *favorite->Record;
            if (record.IsStandard() || files.insert(FileKey(record.GetFileName())).second) {
                continue;
            }
            const FileState state = Folder.ContentOf(record).State;
            if (state == FileState::Whole || state == FileState::Unknown) {
                PlanCopy(*favorite);
            }
        }
    }

    void PlanCopy(PlannedFavorite& favorite) {
        CPMXTemplUIListData& record = *favorite.Record;
        const FileCopy copy(Folder.GetList(), record);
        if (!copy.IsPossible()) {
            return;
        }
        const FolderFile* const made = FindCopy(copy, record);
        Add(favorite, Trouble::FileShared,
            made == nullptr ? "gets a copy of its own" : "gets a copy that is there: " + made->Shown);
        favorite.IsCopied = made == nullptr;
        if (made != nullptr) {
            record.SetFileName(made->Name);
            ListedFiles.insert(FileKey(made->Name));
        }
    }

    /// The copy that a repair has made which was killed then: a file that no entry names, under one of the names that the
    /// copy would get. Null when there is none.
    const FolderFile* FindCopy(const FileCopy& copy, const CPMXTemplUIListData& record) const {
        const std::string base = SanitizeFileName(BaseOfCopy(record));
        CPMXTemplUIListData other;
        other = record;
        for (std::int64_t number = 0;; ++number) {
            const std::string fileName = Folder.GetList().FileNameOf(base, number);
            const FolderFile* const file = Folder.FindFile(fileName);
            const bool isListed = ListedFiles.contains(FileKey(fileName));
            if (file == nullptr && !isListed && number > 0) {
                return nullptr;
            }
            if (file == nullptr || isListed) {
                continue;
            }
            other.SetFileName(file->Name);
            if (copy.Is(other)) {
                return file;
            }
        }
    }

    void PlanFile(const FolderFile& file) {
        const bool isListed = ListedFiles.contains(FileKey(file.Name));
        const Leftover leftover = LeftoverKind(Folder, file, isListed);
        if (leftover == Leftover::None && !isListed && Folder.IsFavoriteFile(file)) {
            AddFavorite(file);
        } else if (leftover != Leftover::None && IsOldLeftover(file, Now)) {
            const Trouble what =
                leftover == Leftover::Aside ? Trouble::LeftoverAside : Trouble::LeftoverEmpty;
            Plan.Leftovers.push_back(
                {{{.What = what, .Number = std::nullopt, .Name = {}, .File = file.Shown, .Detail = {}},
                  "deleted"},
                 Folder.PathOf(file)});
        }
    }

    void AddFavorite(const FolderFile& file) {
        std::unique_ptr<CPMXTemplUIListData> record = FavoriteOf(Folder, file);
        if (record == nullptr) {
            return;
        }
        if (!UsedNames.insert(NameKey(record->GetName())).second) {
            record->SetName(NumberedName(record->GetName()));
        }
        FileDeeds.push_back({{.What = Trouble::FileUnlisted,
                              .Number = std::nullopt,
                              .Name = Folder.ContentOf(file).Name,
                              .File = file.Shown,
                              .Detail = {}},
                             "listed as " + Readable(record->GetName())});
        Plan.Favorites.push_back({.Record = std::move(record), .Number = std::nullopt});
    }

    RepairPlan Finish() {
        std::stable_sort(EntryDeeds.begin(), EntryDeeds.end(), [](const Deed& left, const Deed& right) {
            return left.Cause.Number < right.Cause.Number;
        });
        for (std::vector<Deed>* const deeds : {&EntryDeeds, &FileDeeds}) {
            std::move(deeds->begin(), deeds->end(), std::back_inserter(Plan.ListDeeds));
        }
        return std::move(Plan);
    }

    const FavoritesFolder& Folder;
    const std::int64_t Now;
    RepairPlan Plan;
    std::vector<Deed> EntryDeeds;
    std::vector<Deed> FileDeeds;
    std::unordered_set<std::string> ListedFiles;
    std::unordered_set<std::string> UsedNames;
    std::unordered_map<std::string, int> NextNumbers;
};

/// The change of the list that a plan has, with all that goes before it.
class ListChange {
public:
    ListChange(const FavoritesFolder& folder, RepairPlan& plan) : Folder(folder), Plan(plan) {
        for (const PlannedFavorite& favorite : plan.Favorites) {
            ListedFiles.insert(FileKey(favorite.Record->GetFileName()));
        }
    }

    /// Why it is not done; empty when it is.
    std::string CarryOut(std::int64_t now) {
        std::string fault;
        if (Folder.ListError() == FileError::None && !KeepOldList(now)) {
            fault = "the old list could not be kept";
        } else if (!MakeCopies()) {
            fault = "a favorite file could not be copied";
        } else if (!ReplaceList()) {
            fault = IsListAnother ? "another program has changed the list" : "the list could not be saved";
        }
        if (!fault.empty() && (IsListAnother || IsListAsRead())) {
            TakeBack();
        }
        return fault;
    }

    const std::string& KeptList() const { return KeptName; }

private:
    const CPMXTemplUIListDataArray& List() const { return Folder.GetList(); }
    const StoreServices& Services() const { return List().GetServices(); }

    /// The name of a list that is kept: a file that is no favorite.
    std::string NameToKeep(std::int64_t now, int number) const {
        std::string time = TimeText(now);
        std::replace(time.begin(), time.end(), ' ', '-');
        time.erase(std::remove(time.begin(), time.end(), ':'), time.end());
        std::string name = List().GetListFilePath().substr(List().GetFolder().size()) + "." + time +
                           (number == 0 ? std::string() : "-" + std::to_string(number));
        FolderFile file;
        file.Name = name + ".bak";
        return Folder.IsFavoriteFile(file) ? name + ".old" : file.Name;
    }

    bool KeepOldList(std::int64_t now) {
        AsideFile aside(Services(), List().GetFolder(), Folder.ListBytes());
        if (aside.Error() != FileError::None) {
            return false;
        }
        for (int number = 0; number < MostKeptLists; ++number) {
            KeptName = NameToKeep(now, number);
            const FileError error = aside.PutNew(List().GetFolder() + KeptName);
            if (error != FileError::Exists) {
                KeptName = error == FileError::None ? KeptName : std::string();
                return error == FileError::None;
            }
        }
        KeptName.clear();
        return false;
    }

    bool MakeCopies() {
        const auto isCopied = [](const PlannedFavorite& favorite) { return favorite.IsCopied; };
        Progress progress(
            static_cast<std::size_t>(std::count_if(Plan.Favorites.begin(), Plan.Favorites.end(), isCopied)));
        for (PlannedFavorite& favorite : Plan.Favorites) {
            if (!isCopied(favorite)) {
                continue;
            }
            if (!MakeCopy(favorite)) {
                return false;
            }
            Made.push_back(favorite.Record.get());
            progress.Step();
        }
        return true;
    }

    bool MakeCopy(const PlannedFavorite& favorite) const {
        CPMXTemplUIListData& record = *favorite.Record;
        FileCopy copy(List(), record);
        AsideFile aside(Services(), List().GetFolder());
        return copy.IsPossible() && aside.Error() == FileError::None && copy.Write(aside.Path()) &&
               aside.Flush() == FileError::None &&
               List().MakeFavoriteFile(BaseOfCopy(record), record, [&](const std::string& path) {
                   // The name of a missing file is another favorite's, too.
                   const bool isListed = ListedFiles.contains(FileKey(record.GetFileName()));
                   return isListed ? FileError::Exists : aside.PutNew(path);
               }) == StoreResult::Success;
    }

    bool ReplaceList() {
        std::vector<const CPMXTemplUIListData*> records;
        for (const PlannedFavorite& favorite : Plan.Favorites) {
            records.push_back(favorite.Record.get());
        }
        const std::string section = FormatSection(records, static_cast<std::int64_t>(records.size()));
        return ChangeListFile(Services(), List().GetListFilePath(),
                              [&](const std::string& bytes) -> std::optional<std::string> {
                                  IsListAnother = bytes != Folder.ListBytes();
                                  return IsListAnother ? std::nullopt
                                                       : std::optional(WithSection(Folder.ListText().Text,
                                                                                   Plan.Comments + section));
                              });
    }

    bool IsListAsRead() const {
        std::string bytes;
        const FileError error = Services().FileSystem.Read(List().GetListFilePath(), bytes);
        return (error == FileError::None || error == FileError::NotFound) && bytes == Folder.ListBytes();
    }

    void TakeBack() {
        for (const CPMXTemplUIListData* const record : Made) {
            List().DeleteFavorite(*record);
        }
        if (!KeptName.empty()) {
            RetryDeleteFile(Services(), List().GetFolder() + KeptName);
            KeptName.clear();
        }
    }

    const FavoritesFolder& Folder;
    RepairPlan& Plan;
    std::unordered_set<std::string> ListedFiles; // before there are copies
    std::vector<const CPMXTemplUIListData*> Made;
    std::string KeptName;
    bool IsListAnother = false;
};

} // namespace

bool PreventsRepair(Trouble trouble) {
    return trouble == Trouble::ListUnreadable || trouble == Trouble::ListLossy ||
           trouble == Trouble::ListReadOnly || trouble == Trouble::ListHeld ||
           trouble == Trouble::FolderReadOnly;
}

std::vector<Deed> DeedsOf(const RepairPlan& plan) {
    std::vector<Deed> deeds = plan.ListDeeds;
    for (const OldLeftover& leftover : plan.Leftovers) {
        deeds.push_back(leftover.Deletion);
    }
    return deeds;
}

RepairPlan PlanRepair(const FavoritesFolder& folder, const std::vector<Finding>& findings, std::int64_t now) {
    return Planner(folder, now).Make(findings);
}

RepairResult CarryOut(const FavoritesFolder& folder, RepairPlan& plan, std::int64_t now) {
    RepairResult result;
    if (!plan.ListDeeds.empty()) {
        ListChange change(folder, plan);
        result.Fault = change.CarryOut(now);
        result.KeptList = change.KeptList();
        if (!result.Fault.empty()) {
            return result;
        }
        result.Done = plan.ListDeeds;
    }
    const StoreServices& services = folder.GetList().GetServices();
    for (const OldLeftover& leftover : plan.Leftovers) {
        const FileError error =
            RetryBriefly(services, [&] { return services.FileSystem.Remove(leftover.Path); });
        if (error == FileError::None) {
            result.Done.push_back(leftover.Deletion);
        }
    }
    return result;
}

} // namespace pmx::tool
