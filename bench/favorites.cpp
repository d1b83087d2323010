#include "favorites.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

namespace pmx::bench {

namespace {

/// Names in code page 932 as users give them: both sides, booklet, cover (trail byte `\`), perforation (trail
/// byte `~`), two pages a sheet, A4 minutes, "Draft", confidential papers for the board meeting.
constexpr std::array<const char*, 8> BaseNames = {
    "\x97\xBC\x96\xCA\x88\xF3\x8D\xFC",
    "\x8F\xAC\x8D\xFB\x8E\x71",
    "\x95\x5C\x8E\x86",
    "\x83\x7E\x83\x56\x83\x93\x96\xDA",
    "2\x83\x79\x81\x5B\x83\x57/\x96\x87",
    "A4 \x8B\x63\x8E\x96\x98\x5E",
    "Draft",
    "\x96\xF0\x88\xF5\x89\xEF\x97\x70 \x8B\x40\x96\xA7\x8E\x91\x97\xBF",
};

constexpr std::size_t ToolbarFavorites = 20;
constexpr std::int64_t FirstIcon = 14;
constexpr std::int64_t IconCount = 46;

std::unique_ptr<CPMXTemplUIListData> MakeFavorite(std::size_t number) {
    const std::string name = BaseNames[number % BaseNames.size()] + (" " + std::to_string(number));
    std::string fileName = name;
    std::replace(fileName.begin(), fileName.end(), '/', '=');
    auto record = std::make_unique<CPMXTemplUIListData>();
    record->SetName(name);
    record->SetLevel(1);
    record->SetFileName(fileName + ".pmt");
    record->SetToolbar(number < ToolbarFavorites ? 1 : 0);
    record->SetIconIndex(FirstIcon + static_cast<std::int64_t>(number) % IconCount);
    return record;
}

bool AreEqualRecords(const CPMXTemplUIListData& left, const CPMXTemplUIListData& right) {
    return left.GetStandard() == right.GetStandard() && left.GetName() == right.GetName() &&
           left.GetLevel() == right.GetLevel() && left.GetToolbar() == right.GetToolbar() &&
           left.GetIconIndex() == right.GetIconIndex() && left.GetFileName() == right.GetFileName();
}

} // namespace

void Open(const Place& place, CPMXTemplUIListDataArray& list) {
    Require(list.SetFolder(place.Folder.c_str()), "the folder cannot be opened");
}

void AddFavorites(std::size_t count, CPMXTemplUIListDataArray& list) {
    for (std::size_t number = 0; number < count; ++number) {
        list.Add(MakeFavorite(number));
    }
}

void WriteFavorites(std::size_t count, const Place& place) {
    SystemList list;
    Open(place, list);
    AddFavorites(count, list);
    Require(list.WriteListFile(), "the list file cannot be written");
}

bool AreEqual(const CPMXTemplUIListDataArray& left, const CPMXTemplUIListDataArray& right) {
    if (left.GetSize() != right.GetSize()) {
        return false;
    }
    for (std::int64_t index = 0; index < left.GetSize(); ++index) {
        if (!AreEqualRecords(left.At(index), right.At(index))) {
            return false;
        }
    }
    return true;
}

void Require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

} // namespace pmx::bench
