#include "commands.h"
#include "host_library.h"
#include "names.h"
#include "terminal.h"

#include "store/favorite_files.h"
#include "store/import_export.h"
#include "store/list_holder.h"
#include "store/rules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace pmx::tool {

namespace {

int Refuse(std::string_view reason) {
    Say(reason);
    return Found;
}

/// A list that is about to change, and the favorite that a name means.
class Change {
public:
    explicit Change(const FolderChoice& choice)
        : Favorites(choice.ListFile.c_str(), choice.Extension.c_str(), SystemStoreServices()) {
        IsOpen = Favorites.Open(choice.Folder.c_str());
        if (!IsOpen) {
            Say("there is no folder that can be read: " + Readable(choice.Folder));
        }
    }

    bool IsOpened() const { return IsOpen; }
    CPMXTemplUIListDataArray& List() { return Favorites.GetList(); }

    /// Position of the favorite, from 0; none, after a message.
    std::optional<std::int64_t> Find(const std::string& name) {
        std::optional<std::int64_t> similar;
        for (std::int64_t index = 0; index < List().GetSize(); ++index) {
            const std::string& other = List().At(index).GetName();
            if (other == name) {
                return index;
            }
            if (!similar && EqualIgnoringCase(other, name)) {
                similar = index;
            }
        }
        if (!similar) {
            Say("there is no favorite of that name: " + Readable(name));
        }
        return similar;
    }

    /// Saves the list with these favorites, in this order, and deletes the files of those marked deleted.
    int Save(const std::vector<const CPMXTemplUIListData*>& order) {
        const auto count = std::count_if(order.begin(), order.end(), [](const CPMXTemplUIListData* record) {
            return record->GetDeleteFlag() != 1;
        });
        if (!List().WriteListFile(order, count)) {
            return Refuse("the list could not be saved: nothing has changed");
        }
        List().DeleteFilesOfDeleted(List().GetRecords());
        return Fine;
    }

    int Save() { return Save(List().GetRecords()); }

private:
    CPMXTemplUIListHolder Favorites;
    bool IsOpen = false;
};

/// Calls `work` with the opened list and the position of the favorite in it.
template <typename Work>
int WithFavorite(const FolderChoice& choice, const std::string& name, Work work) {
    Change opened(choice);
    if (!opened.IsOpened()) {
        return WrongCall;
    }
    const std::optional<std::int64_t> index = opened.Find(name);
    return index ? work(opened, *index) : Found;
}

/// Finds the favorite and changes it; saves the list when `change` gives Fine.
template <typename Work>
int ChangeOne(const FolderChoice& choice, const std::string& name, Work change) {
    return WithFavorite(choice, name, [&](Change& opened, std::int64_t index) {
        const int result = change(opened.List(), index);
        return result == Fine ? opened.Save() : result;
    });
}

std::string_view ReasonOf(StoreResult result) {
    switch (result) {
    case StoreResult::NoFileName:
        return "no file name is free";
    case StoreResult::NotWritten:
        return "the file could not be written";
    case StoreResult::NotRead:
        return "the file is no favorite, damaged or in use";
    case StoreResult::NotCopied:
        return "the file is missing, or could not be copied into the folder";
    case StoreResult::OwnFile:
        return "that is the file of a favorite of the folder";
    default:
        return "there was no memory for it";
    }
}

std::string_view FaultOfName(const std::string& name) {
    if (name.empty()) {
        return "a favorite needs a name";
    }
    if (name.size() > NameLimit) {
        return "the name has more than 32 bytes";
    }
    return HasSeparator(name) ? "a name cannot hold ~" : std::string_view();
}

bool IsNameTaken(const CPMXTemplUIListDataArray& list, const std::string& name) {
    return list.CheckName(name) != NameUse::Unused;
}

/// Imports of one call, which become favorites together when the list is saved.
class Imports {
public:
    Imports(Change& change, OnClash onClash) : Opened(change), Rule(onClash) {}

    void Take(const std::string& path) {
        FavoriteImport import(Opened.List());
        const StoreResult result = import.Read(path);
        if (result != StoreResult::Success) {
            Fail(path, ReasonOf(result));
            return;
        }
        const std::string name = TrimmedName(import.GetRecord().GetName());
        const std::string_view fault = FaultOfName(name);
        const std::int32_t level = import.GetRecord().GetLevel();
        if (!fault.empty() || level < PMX_LEVEL_DOCUMENT || level > PMX_LEVEL_PAGE) {
            Fail(path, fault.empty() ? "it is a copy of a standard favorite" : fault);
            return;
        }
        if (!IsNameTaken(Opened.List(), name)) {
            import.Finish(name);
        } else if (Rule == OnClash::Rename) {
            int number = 1;
            import.Finish(FreeName(name, number, [this](const std::string& candidate) {
                return IsNameTaken(Opened.List(), candidate);
        }));
    }
    else if (Rule == OnClash::Skip) {
        Fail(path, "there is a favorite of that name: " + Readable(name));
    }
    else {
        Replace(import, path, name);
    }
}

    /// Saves the list; what was imported goes again when that fails.
    int Finish() {
    const int saved = Opened.Save(Order());
    if (saved != Fine) {
        for (const CPMXTemplUIListData* const record : Opened.List().GetRecords()) {
            if (record->GetImportFlag() == 1) {
                Opened.List().DeleteFavorite(*record);
            }
        }
    }
    return saved == Fine && !HasFailed ? Fine : Found;
}

private:
void Fail(const std::string& path, std::string_view reason) {
    Say("not imported: " + Readable(path) + ": " + std::string(reason));
    HasFailed = true;
}

/// The new favorite takes place, name, mark and icon of the old one.
void Replace(FavoriteImport& import, const std::string& path, const std::string& name) {
    const std::optional<std::int64_t> index = Opened.Find(name);
    CPMXTemplUIListData& former = Opened.List().At(*index);
    if (former.IsStandard()) {
        Fail(path, "a standard favorite has that name: " + Readable(name));
        return;
    }
    CPMXTemplUIListData& record = Opened.List().At(import.Finish(former.GetName()));
    record.SetIconIndex(former.GetIconIndex());
    record.SetToolbar(IsDocumentLevel(record.GetLevel()) ? former.GetToolbar() : 0);
    former.SetDeleteFlag(1);
    former.SetName({}); // free for others
    Replaced.emplace_back(&former, &record);
}

/// The list with each new favorite before the one that it replaces.
std::vector<const CPMXTemplUIListData*> Order() {
    std::vector<const CPMXTemplUIListData*> order = Opened.List().GetRecords();
    for (const auto& [former, record] : Replaced) {
        order.erase(std::find(order.begin(), order.end(), record));
        order.insert(std::find(order.begin(), order.end(), former), record);
    }
    return order;
}

Change& Opened;
const OnClash Rule;
std::vector<std::pair<const CPMXTemplUIListData*, const CPMXTemplUIListData*>> Replaced;
bool HasFailed = false;
}; // namespace

} // namespace pmx::tool

/// The name inside the favorite file follows when the host next saves that, as after the editor.
int RenameFavorite(const FolderChoice& choice, const std::string& name, const std::string& newName) {
    return ChangeOne(choice, name, [&](CPMXTemplUIListDataArray& list, std::int64_t index) {
        CPMXTemplUIListData& record = list.At(index);
        const std::string given = TrimmedName(newName);
        const std::string_view fault = FaultOfName(given);
        if (record.IsStandard()) {
            return Refuse("a standard favorite keeps its name");
        }
        if (!fault.empty()) {
            return Refuse(fault);
        }
        if (!list.IsNameUnique(index, given)) {
            return Refuse("there is a favorite of that name: " + Readable(given));
        }
        record.SetName(given);
        return Fine;
    });
}

int MoveFavorite(const FolderChoice& choice, const std::string& name, std::int64_t position) {
    return WithFavorite(choice, name, [&](Change& opened, std::int64_t index) {
        std::vector<const CPMXTemplUIListData*> order = opened.List().GetRecords();
        if (position < 1 || position > opened.List().GetSize()) {
            return Refuse("positions go from 1 to " + std::to_string(order.size()));
        }
        const CPMXTemplUIListData* const moved = order[static_cast<std::size_t>(index)];
        order.erase(order.begin() + index);
        order.insert(order.begin() + (position - 1), moved);
        return opened.Save(order);
    });
}

int RemoveFavorite(const FolderChoice& choice, const std::string& name) {
    return ChangeOne(choice, name, [&](CPMXTemplUIListDataArray& list, std::int64_t index) {
        if (list.At(index).IsStandard()) {
            return Refuse("a standard favorite stays");
        }
        list.At(index).SetDeleteFlag(1);
        return Fine;
    });
}

int SetToolbar(const FolderChoice& choice, const std::string& name, bool isOn) {
    return ChangeOne(choice, name, [&](CPMXTemplUIListDataArray& list, std::int64_t index) {
        CPMXTemplUIListData& record = list.At(index);
        if (isOn && !IsDocumentLevel(record.GetLevel())) {
            return Refuse("only favorites of document level can be on the toolbar");
        }
        const std::vector<const CPMXTemplUIListData*> records = list.GetRecords();
        const auto marks =
            std::count_if(records.begin(), records.end(),
                          [](const CPMXTemplUIListData* other) { return other->GetToolbar() != 0; });
        if (isOn && record.GetToolbar() != 1 && marks >= ToolbarLimit) {
            return Refuse("the toolbar is full: 20 favorites are on it");
        }
        record.SetToolbar(isOn ? 1 : 0);
        return Fine;
    });
}

int SetIcon(const FolderChoice& choice, const std::string& name, std::int64_t icon) {
    return ChangeOne(choice, name, [&](CPMXTemplUIListDataArray& list, std::int64_t index) {
        if (icon < FirstOfferedIcon || icon > LastOfferedIcon) {
            return Refuse("icons go from " + std::to_string(FirstOfferedIcon) + " to " +
                          std::to_string(LastOfferedIcon));
        }
        list.At(index).SetIconIndex(icon);
        return Fine;
    });
}

int Export(const FolderChoice& choice, const std::string& name, const std::string& path) {
    return WithFavorite(choice, name, [&](Change& opened, std::int64_t index) {
        SayIfHostIsMissing();
        CPMXTemplUIListData& record = opened.List().At(index);
        if (record.IsStandard()) {
            return Refuse("a standard favorite has no file");
        }
        if (!HasHostLibrary()) {
            return Refuse("nothing is exported");
        }
        if (!opened.List().EnsureLoaded(record)) {
            return Refuse(ReasonOf(StoreResult::NotRead));
        }
        const StoreResult result = ExportFavorite(opened.List(), record, path);
        return result == StoreResult::Success ? Fine : Refuse(ReasonOf(result));
    });
}

int Import(const FolderChoice& choice, const std::vector<std::string>& paths, OnClash onClash) {
    Change opened(choice);
    if (!opened.IsOpened()) {
        return WrongCall;
    }
    SayIfHostIsMissing();
    if (!HasHostLibrary()) {
        return Refuse("nothing is imported");
    }
    Imports imports(opened, onClash);
    Progress progress(paths.size());
    for (const std::string& path : paths) {
        imports.Take(path);
        progress.Step();
    }
    return imports.Finish();
}

} // namespace pmx::tool
