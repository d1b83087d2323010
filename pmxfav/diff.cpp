#include "commands.h"
#include "host_library.h"
#include "json_output.h"
#include "terminal.h"

#include "store/host_call.h"
#include "store/levels.h"
#include "store/list_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pmx::tool {

namespace {

/// What one of the two favorites sets.
struct Side {
    std::string ListedName;
    std::optional<std::string> NameInside; ///< none of a standard favorite, which has no file
    std::int32_t Level = 0;
    _LM_DOCUMENTLAYOUTTABLE Table{};
};

/// What a favorite sets: for one of the user what its file holds, for a standard one what the host makes of its number.
/// None, after a message, when that is not to be had.
std::optional<Side> ReadSide(const FavoritesFolder& folder, CPMXTemplUIListData& record) {
    const bool isLoaded =
        record.IsStandard() ? record.EnsureDocument() : folder.GetList().EnsureLoaded(record);
    Side side;
    side.ListedName = record.GetName();
    const bool isRead = isLoaded && CallHost([&] {
                            CPmxDocument& document = *record.GetDocument();
                            if (record.IsStandard()) {
                                ApplyStandardSetting(document, LeadingNumber(record.GetFileName()));
                                side.Level = record.GetLevel();
                            } else {
                                side.NameInside = document.GetName();
                                side.Level = document.GetTemplateLevel();
                            }
                            document.GetTable(side.Table);
                        });
    if (isRead) {
        return side;
    }
    const std::string why = record.IsStandard()
                                ? "the host does not make it"
                                : "its file is " + std::string(NameOf(folder.ContentOf(record).State));
    Say("not compared: " + Readable(record.GetName()) + ": " + why);
    return std::nullopt;
}

/// Bytes of a part of the attribute table that differ. A part has the name of its level, and ends where that of the next
/// level begins.
struct Run {
    std::int32_t Level = 0;
    std::size_t Start = 0; ///< in the table
    std::size_t Size = 0;

    std::size_t First() const { return Start - *PartStart(Level); }
    std::size_t Last() const { return First() + Size - 1; }
};

void AddRuns(const Side& left, const Side& right, std::int32_t level, std::vector<Run>& runs) {
    const std::size_t end = PartStart(level + 1).value_or(TableSize);
    for (std::size_t byte = *PartStart(level); byte < end; ++byte) {
        if (left.Table.Bytes[byte] == right.Table.Bytes[byte]) {
            continue;
        }
        const bool goesOn =
            !runs.empty() && runs.back().Level == level && runs.back().Start + runs.back().Size == byte;
        if (!goesOn) {
            runs.push_back({.Level = level, .Start = byte});
        }
        ++runs.back().Size;
    }
}

std::string Hexadecimal(const Side& side, const Run& run, std::size_t most, std::string_view between) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text;
    for (std::size_t byte = 0; byte < std::min(run.Size, most); ++byte) {
        const unsigned char value = side.Table.Bytes[run.Start + byte];
        text += byte == 0 ? "" : between;
        text += Digits[value >> 4U];
        text += Digits[value & 0xFU];
    }
    return text;
}

/// The first bytes, and how many more there are.
std::string ShownBytes(const Side& side, const Run& run) {
    constexpr std::size_t Most = 8;
    const std::string text = Hexadecimal(side, run, Most, " ");
    return run.Size > Most ? text + " +" + std::to_string(run.Size - Most) : text;
}

/// The differences of two favorites as a table for people and as JSON.
class Comparison {
public:
    Comparison(const Side& left, const Side& right) : Left(left), Right(right) {
        CompareTexts("level inside", LevelText(left.Level), LevelText(right.Level));
        if (left.NameInside && right.NameInside && !AreBothAsListed()) {
            CompareTexts("name inside", Readable(*left.NameInside), Readable(*right.NameInside));
        }
        std::vector<Run> runs;
        for (std::int32_t level = PMX_LEVEL_DOCUMENT; level <= PMX_LEVEL_PAGE; ++level) {
            AddRuns(left, right, level, runs);
        }
        std::for_each(runs.begin(), runs.end(), [this](const Run& run) { Add(run); });
    }

    const Json& AsJson() const { return Differences; }
    const std::vector<std::vector<std::string>>& AsTable() const { return Lines; }

private:
    /// Each file holds the name that the list gives the favorite, so that they differ is no news.
    bool AreBothAsListed() const {
        return Left.NameInside == Left.ListedName && Right.NameInside == Right.ListedName;
    }

    void CompareTexts(const char* what, const std::string& left, const std::string& right) {
        if (left != right) {
            Lines.push_back({what, "-", Printable(left), Printable(right)});
            Differences.push_back(
                {{"part", what}, {"first", nullptr}, {"last", nullptr}, {"values", {left, right}}});
        }
    }

    void Add(const Run& run) {
        const std::string part = LevelText(run.Level);
        const std::string first = std::to_string(run.First());
        Lines.push_back({part, run.Size == 1 ? first : first + "-" + std::to_string(run.Last()),
                         ShownBytes(Left, run), ShownBytes(Right, run)});
        Differences.push_back(
            {{"part", part},
             {"first", run.First()},
             {"last", run.Last()},
             {"values", {Hexadecimal(Left, run, run.Size, ""), Hexadecimal(Right, run, run.Size, "")}}});
    }

    const Side& Left;
    const Side& Right;
    std::vector<std::vector<std::string>> Lines;
    Json Differences = Json::array();
};

} // namespace

int DiffFavorites(const FolderChoice& choice, const std::string& first, const std::string& second,
                  bool asJson) {
    FavoritesFolder folder(choice, SystemStoreServices());
    if (!ReadFolder(folder, choice)) {
        return WrongCall;
    }
    SayIfHostIsMissing();
    const ListLine* const firstLine = FindListed(folder, first);
    const ListLine* const secondLine = FindListed(folder, second);
    if (firstLine == nullptr || secondLine == nullptr || !HasHostLibrary()) {
        return Found;
    }
    const std::optional<Side> left = ReadSide(folder, *firstLine->Record);
    const std::optional<Side> right = ReadSide(folder, *secondLine->Record);
    if (!left || !right) {
        return Found;
    }
    const Comparison comparison(*left, *right);
    if (asJson) {
        Json json = StartJson(choice);
        json["favorites"] = {Readable(left->ListedName), Readable(right->ListedName)};
        json["differences"] = comparison.AsJson();
        PrintJson(json);
    } else if (!comparison.AsTable().empty()) {
        std::vector<std::vector<std::string>> table = {
            {"part", "bytes", Shown(left->ListedName), Shown(right->ListedName)}};
        table.insert(table.end(), comparison.AsTable().begin(), comparison.AsTable().end());
        Print(FormatTable(table));
    }
    return comparison.AsTable().empty() ? Fine : Found;
}

} // namespace pmx::tool
