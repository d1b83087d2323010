#include "check.h"
#include "commands.h"
#include "host_library.h"
#include "json_output.h"
#include "repair.h"
#include "sha256.h"
#include "terminal.h"

#include "store/levels.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

namespace pmx::tool {

namespace {

std::string_view KindOf(const CPMXTemplUIListData& record) {
    return record.IsStandard() ? "standard" : "user";
}

/// The listed favorites, with their positions from 1.
std::vector<const ListLine*> ListedLines(const FavoritesFolder& folder) {
    std::vector<const ListLine*> lines;
    for (const ListLine& line : folder.Lines()) {
        if (line.IsListed()) {
            lines.push_back(&line);
        }
    }
    return lines;
}

Json JsonOf(const CPMXTemplUIListData& record, std::size_t position, FileState state) {
    return {{"position", position},
            {"toolbar", record.GetToolbar() == 1},
            {"name", Readable(record.GetName())},
            {"level", LevelText(record.GetLevel())},
            {"kind", KindOf(record)},
            {"icon", record.GetIconIndex()},
            {"file", Readable(record.GetFileName())},
            {"state", NameOf(state)}};
}

std::vector<std::string> CellsOf(const CPMXTemplUIListData& record, std::size_t position, FileState state) {
    return {std::to_string(position),    record.GetToolbar() == 1 ? "yes" : "-",
            Shown(record.GetName()),     LevelText(record.GetLevel()),
            std::string(KindOf(record)), std::to_string(record.GetIconIndex()),
            Shown(record.GetFileName()), std::string(NameOf(state))};
}

int ExitCodeOf(const FavoritesFolder& folder) {
    const bool isRead = folder.ListError() == FileError::None || folder.ListError() == FileError::NotFound;
    if (!isRead) {
        Say("the list file cannot be read");
    }
    return isRead ? Fine : Found;
}

std::string PlaceOf(const Finding& finding) {
    const std::string key = finding.Number ? "TemplateData" + std::to_string(*finding.Number) : std::string();
    return key.empty() ? Printable(finding.File) : key;
}

std::string ReasonText(const Finding& finding) {
    std::string text(ReasonOf(finding.What));
    if (finding.Number && !finding.File.empty() && CodeOf(finding.What).starts_with("file-")) {
        text += ": " + Printable(finding.File);
    }
    return finding.Detail.empty() ? text : text + " (" + Printable(finding.Detail) + ")";
}

Json JsonOf(const Finding& finding) {
    Json json = {{"code", CodeOf(finding.What)}, {"reason", ReasonOf(finding.What)}};
    json["entry"] = finding.Number ? Json(*finding.Number) : Json();
    json["name"] = finding.Name.empty() ? Json() : Json(Readable(finding.Name));
    json["file"] = finding.File.empty() ? Json() : Json(finding.File);
    json["detail"] = finding.Detail.empty() ? Json() : Json(finding.Detail);
    return json;
}

void PrintEither(const Json& json, const std::vector<std::vector<std::string>>& table, bool asJson) {
    if (asJson) {
        PrintJson(json);
    } else {
        Print(FormatTable(table));
    }
}

void PrintDeeds(Json json, const std::vector<Deed>& deeds, bool asJson) {
    std::vector<std::vector<std::string>> table;
    json["deeds"] = Json::array();
    for (const Deed& deed : deeds) {
        const std::string detail = Printable(deed.Cause.Detail);
        table.push_back({PlaceOf(deed.Cause), std::string(CodeOf(deed.Cause.What)), Shown(deed.Cause.Name),
                         Printable(deed.Action) + (detail.empty() ? detail : " (" + detail + ")")});
        Json line = JsonOf(deed.Cause);
        line["action"] = deed.Action;
        json["deeds"].push_back(std::move(line));
    }
    PrintEither(json, table, asJson);
}

/// Says why nothing can be changed; false when nothing prevents it.
bool IsRepairPrevented(const std::vector<Finding>& findings) {
    bool isPrevented = false;
    for (const Finding& finding : findings) {
        if (PreventsRepair(finding.What)) {
            Say("nothing has changed: " + std::string(ReasonOf(finding.What)));
            isPrevented = true;
        }
    }
    return isPrevented;
}

std::int64_t CountUnmendable(const std::vector<Finding>& findings) {
    return std::count_if(findings.begin(), findings.end(),
                         [](const Finding& finding) { return !finding.IsMendable; });
}

/// What is left in the folder, which is read again.
std::int64_t CountFindings(const FolderChoice& choice) {
    FavoritesFolder folder(choice, SystemStoreServices());
    return folder.Read() ? static_cast<std::int64_t>(Check(folder, Now()).size()) : 1;
}

} // namespace

std::string LevelText(std::int32_t level) {
    constexpr std::array<const char*, 5> Words = {"document", "section", "sheet", "face", "page"};
    const std::int32_t plain = IsStandardLevel(level) ? level - PMX_LEVEL_STANDARD : level;
    const bool isKnown = plain >= PMX_LEVEL_DOCUMENT && plain <= PMX_LEVEL_PAGE;
    return isKnown ? Words[static_cast<std::size_t>(plain - PMX_LEVEL_DOCUMENT)] : std::to_string(level);
}

std::string TimeText(std::int64_t seconds) {
    namespace chrono = std::chrono;
    const chrono::sys_seconds time{chrono::seconds(seconds)};
    const auto day = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(time - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

bool ReadFolder(FavoritesFolder& folder, const FolderChoice& choice) {
    if (folder.Read()) {
        return true;
    }
    Say("there is no folder that can be read: " + Readable(choice.Folder));
    return false;
}

const ListLine* FindListed(const FavoritesFolder& folder, const std::string& name) {
    const ListLine* similar = nullptr;
    for (const ListLine* const line : ListedLines(folder)) {
        if (line->Record->GetName() == name) {
            return line;
        }
        if (similar == nullptr && EqualIgnoringCase(line->Record->GetName(), name)) {
            similar = line;
        }
    }
    if (similar == nullptr) {
        Say("there is no favorite of that name: " + Readable(name));
    }
    return similar;
}

int ListFavorites(const FolderChoice& choice, bool asJson) {
    FavoritesFolder folder(choice, SystemStoreServices());
    if (!ReadFolder(folder, choice)) {
        return WrongCall;
    }
    SayIfHostIsMissing();
    std::vector<std::vector<std::string>> table = {
        {"#", "toolbar", "name", "level", "kind", "icon", "file", "state"}};
    Json json = StartJson(choice);
    json["favorites"] = Json::array();
    const std::vector<const ListLine*> lines = ListedLines(folder);
    {
        Progress progress(lines.size());
        for (std::size_t index = 0; index < lines.size(); ++index) {
            const CPMXTemplUIListData& record = *lines[index]->Record;
            const FileState state = folder.ContentOf(record).State;
            table.push_back(CellsOf(record, index + 1, state));
            json["favorites"].push_back(JsonOf(record, index + 1, state));
            progress.Step();
        }
    }
    PrintEither(json, table, asJson);
    return ExitCodeOf(folder);
}

int ShowFavorite(const FolderChoice& choice, const std::string& name, bool asJson) {
    FavoritesFolder folder(choice, SystemStoreServices());
    if (!ReadFolder(folder, choice)) {
        return WrongCall;
    }
    const ListLine* const line = FindListed(folder, name);
    if (line == nullptr) {
        return Found;
    }
    SayIfHostIsMissing();
    const CPMXTemplUIListData& record = *line->Record;
    const FileContent content = folder.ContentOf(record);
    std::size_t position = 1;
    for (const ListLine* const other : ListedLines(folder)) {
        position += other->Number < line->Number ? 1 : 0;
    }
    Json json = JsonOf(record, position, content.State);
    if (content.State == FileState::Whole) {
        json["name inside"] = Readable(content.Name);
        json["level inside"] = LevelText(content.Level);
    }
    const FolderFile* const file = record.IsStandard() ? nullptr : folder.FindFile(record.GetFileName());
    std::string bytes;
    if (file != nullptr && content.State != FileState::Outside) {
        json["size"] = file->Size;
        json["written"] = TimeText(file->Written);
        if (folder.GetList().GetServices().FileSystem.Read(folder.PathOf(*file), bytes) == FileError::None) {
            json["sha256"] = Sha256(bytes);
        }
    }
    if (asJson) {
        Json whole = StartJson(choice);
        whole["favorite"] = json;
        PrintJson(whole);
        return Fine;
    }
    std::vector<std::vector<std::string>> table;
    for (const auto& [key, value] : json.items()) {
        const std::string text = value.is_boolean()  ? (value.get<bool>() ? "yes" : "-")
                                 : value.is_string() ? Printable(value.get<std::string>())
                                                     : value.dump();
        table.push_back({key, text});
    }
    Print(FormatTable(table));
    return Fine;
}

int CheckFolder(const FolderChoice& choice, bool asJson) {
    FavoritesFolder folder(choice, SystemStoreServices());
    if (!ReadFolder(folder, choice)) {
        return WrongCall;
    }
    SayIfHostIsMissing();
    const std::vector<Finding> findings = Check(folder, Now());
    std::vector<std::vector<std::string>> table;
    Json json = StartJson(choice);
    json["host"] = HasHostLibrary();
    json["findings"] = Json::array();
    for (const Finding& finding : findings) {
        table.push_back(
            {PlaceOf(finding), std::string(CodeOf(finding.What)), Shown(finding.Name), ReasonText(finding)});
        Json line = JsonOf(finding);
        line["mendable"] = finding.IsMendable;
        json["findings"].push_back(std::move(line));
    }
    PrintEither(json, table, asJson);
    return findings.empty() ? Fine : Found;
}

int RepairFolder(const FolderChoice& choice, bool isDryRun, bool asJson) {
    FavoritesFolder folder(choice, SystemStoreServices());
    if (!ReadFolder(folder, choice)) {
        return WrongCall;
    }
    SayIfHostIsMissing();
    const std::int64_t now = Now();
    const std::vector<Finding> findings = Check(folder, now);
    if (IsRepairPrevented(findings)) {
        return Found;
    }
    RepairPlan plan = PlanRepair(folder, findings, now);
    const RepairResult result = isDryRun ? RepairResult{{}, {}, DeedsOf(plan)} : CarryOut(folder, plan, now);
    if (!result.KeptList.empty()) {
        Say("the old list is kept as " + Shown(result.KeptList));
    }
    if (!result.Fault.empty()) {
        Say((result.KeptList.empty() ? "nothing has changed: " : "") + result.Fault);
        return Found;
    }
    const std::int64_t remaining = isDryRun ? CountUnmendable(findings) : CountFindings(choice);
    Json json = StartJson(choice);
    json["host"] = HasHostLibrary();
    json["done"] = !isDryRun;
    json["kept"] = result.KeptList.empty() ? Json() : Json(Readable(result.KeptList));
    json["remaining"] = remaining;
    PrintDeeds(std::move(json), result.Done, asJson);
    if (remaining > 0) {
        Say("findings that repair cannot mend, see check: " + std::to_string(remaining));
    }
    return remaining == 0 && (!isDryRun || result.Done.empty()) ? Fine : Found;
}

} // namespace pmx::tool
