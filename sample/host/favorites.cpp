#include "host/favorites.h"

#include "host/resource.h"
#include "host/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string>

namespace pmx::host {

using sample::AttributeTable;

namespace {

constexpr const char* ListFileName = "PmxTempleList.ini";
constexpr const char* Extension = ".pmt";

/// The standard favorites with their icons in the library's strip. The second is the same setting as the
/// first, under a name of its own, and not put on the toolbar.
struct StandardFavorite {
    std::int64_t Number;
    std::int64_t Icon;
    bool OnToolbar;
};
constexpr std::array<StandardFavorite, 5> StandardFavorites{
    {{1, 0, true}, {2, 1, false}, {3, 3, true}, {4, 4, true}, {5, 5, true}}};

constexpr std::array<std::size_t, 5> PartStarts{
    offsetof(AttributeTable, Document), offsetof(AttributeTable, Section), offsetof(AttributeTable, Sheet),
    offsetof(AttributeTable, Face), offsetof(AttributeTable, Page)};

Outcome OutcomeOf(std::int64_t result) {
    switch (result) {
    case 0:
        return Outcome::Accepted;
    case 1:
        return Outcome::Cancelled;
    default:
        return Outcome::Failed;
    }
}

/// Puts a level's part, which runs to the end of the table, into its place.
void SetPart(AttributeTable& table, std::int32_t level, const std::vector<unsigned char>& part) {
    const std::size_t start = PartStarts.at(static_cast<std::size_t>(level - 1));
    std::memcpy(reinterpret_cast<unsigned char*>(&table) + start, part.data(), sample::TableSize - start);
}

} // namespace

Favorites::Favorites(std::string folder) : Folder(std::move(folder)) {
    Open();
    if (IsOpen() && Infos.empty()) {
        AddStandardFavorites();
    }
}

const TemplInfo* Favorites::FindAt(std::int64_t position) const {
    const auto found = std::find_if(Infos.begin(), Infos.end(),
                                    [position](const TemplInfo& each) { return each.Position == position; });
    return found == Infos.end() ? nullptr : &*found;
}

void Favorites::Open() {
    List.reset(EX_CreateTemplList(Folder.c_str(), ListFileName, Extension));
    ReadInfos();
}

void Favorites::Reload() {
    Open();
}

void Favorites::AddStandardFavorites() {
    for (const auto& [number, icon, onToolbar] : StandardFavorites) {
        if (HasStandard(number)) {
            continue;
        }
        const std::string name = ToNarrow(ResourceText(IDS_STANDARD_1 + static_cast<unsigned>(number) - 1));
        const auto create = onToolbar ? EX_CreateDefaultChoice : EX_CreateDefaultTempl;
        create(List.get(), name.c_str(), number, icon);
    }
    ReadInfos();
}

bool Favorites::HasStandard(std::int64_t number) const {
    const std::string file =
        std::to_string(number); // A standard favorite has its number in the place of a path.
    return std::any_of(Infos.begin(), Infos.end(),
                       [&](const TemplInfo& info) { return IsStandard(info) && info.FilePath == file; });
}

void Favorites::ReadInfos() {
    Infos.clear();
    if (!IsOpen()) {
        return;
    }
    for (std::int32_t level = PMX_LEVEL_DOCUMENT; level <= PMX_LEVEL_PAGE; ++level) {
        const auto found = InfosOf(level + PMX_LEVEL_STANDARD); // This asks for the user's favorites as well.
        Infos.insert(Infos.end(), found.begin(), found.end());
    }
    std::sort(Infos.begin(), Infos.end(),
              [](const TemplInfo& left, const TemplInfo& right) { return left.Position < right.Position; });
}

std::vector<TemplInfo> Favorites::InfosOf(std::int32_t level) const {
    const std::int64_t size = EX_GetTemplListSize(List.get(), level);
    if (size <= 0) {
        return {};
    }
    std::vector<TemplInfo> infos(static_cast<std::size_t>(size) / sizeof(TemplInfo));
    std::int64_t count = 0;
    if (EX_GetAllTemplInfo(List.get(), level, infos.data(), size, &count) != 0) {
        return {};
    }
    return infos;
}

bool Favorites::Apply(const TemplInfo& favorite, AttributeTable& table) const {
    const std::int32_t level = LevelOf(favorite);
    std::vector<unsigned char> part(sample::TableSize - PartStarts.at(static_cast<std::size_t>(level - 1)));
    if (EX_CurTemplInfo(List.get(), favorite.Position, level, part.data(),
                        static_cast<std::int64_t>(part.size())) != 0) {
        return false;
    }
    SetPart(table, level, part);
    return true;
}

bool Favorites::ApplyByName(const std::string& name, std::int32_t level, AttributeTable& table) const {
    std::vector<unsigned char> part(sample::TableSize);
    if (EX_ConvertChoiceData(name.c_str(), Folder.c_str(), ListFileName, Extension, part.data(), level) !=
        0) {
        return false;
    }
    SetPart(table, level, part);
    return true;
}

bool Favorites::IsOnlyOneOfItsName(const TemplInfo& favorite) const {
    return std::count_if(Infos.begin(), Infos.end(), [&](const TemplInfo& each) {
               return std::strcmp(each.Name, favorite.Name) == 0;
           }) == 1;
}

Outcome Favorites::SaveAsNew(TemplInfo& info, const AttributeTable& table, HWND owner) {
    constexpr std::int32_t NewFavorite = 1;
    const auto outcome =
        OutcomeOf(EX_SaveAsTemplInfo(List.get(), NewFavorite, &info, &table, sizeof table, owner));
    ReadInfos();
    return outcome;
}

Outcome Favorites::SaveOver(TemplInfo& info, const AttributeTable& table, HWND owner) {
    // The library writes over a favorite only after its settings have been fetched once.
    AttributeTable former = table;
    if (!Apply(info, former)) {
        return Outcome::Failed;
    }
    constexpr std::int32_t ExistingFavorite = 0;
    const auto outcome =
        OutcomeOf(EX_SaveAsTemplInfo(List.get(), ExistingFavorite, &info, &table, sizeof table, owner));
    ReadInfos();
    return outcome;
}

Outcome Favorites::Reloaded(std::int64_t result) {
    Reload();
    return OutcomeOf(result);
}

Outcome Favorites::ShowEditor(HWND owner) {
    return Reloaded(EX_ShowTemplateUI(Folder.c_str(), owner));
}

Outcome Favorites::ShowRegister(const AttributeTable& table, HWND owner) {
    return Reloaded(
        EX_ShowChoiceUIEntry(Folder.c_str(), ListFileName, Extension, &table, PMX_LEVEL_DOCUMENT, owner));
}

Outcome Favorites::ShowBasicList(HWND owner) {
    return Reloaded(EX_ShowChoiceUIBasic(Folder.c_str(), ListFileName, Extension, owner));
}

bool IsStandard(const TemplInfo& favorite) {
    return favorite.Level > PMX_LEVEL_STANDARD;
}

std::int32_t LevelOf(const TemplInfo& favorite) {
    return IsStandard(favorite) ? favorite.Level - PMX_LEVEL_STANDARD : favorite.Level;
}

} // namespace pmx::host
