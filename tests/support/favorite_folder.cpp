#include "support/favorite_folder.h"
#include "platform/text.h"

#include <sstream>
#include <utility>

namespace pmx::test {

ListedFavorite Standard(const std::string& name, std::int32_t level) {
    ListedFavorite favorite;
    favorite.Name = name;
    favorite.Level = level;
    favorite.IsStandard = true;
    favorite.File = level > 100 ? "3" : "Standard.pmt";
    favorite.HasFile = false;
    return favorite;
}

std::optional<std::string> ListedValue(const std::string& list, const std::string& key) {
    const std::size_t section = list.find("[PMXTemplateList]\r\n");
    const std::size_t begin = section == std::string::npos ? section : list.find("\r\n" + key + "=", section);
    if (begin == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t value = begin + key.size() + 3;
    return list.substr(value, list.find("\r\n", value) - value);
}

std::vector<std::string> ListedValuesIn(const std::string& list) {
    std::vector<std::string> values;
    while (const auto value = ListedValue(list, "TemplateData" + std::to_string(values.size()))) {
        values.push_back(*value);
    }
    return values;
}

void FavoriteFolder::Given(std::vector<ListedFavorite> favorites) {
    std::ostringstream list;
    list << "[PMXTemplateList]\r\nTemplateNum=" << favorites.size() << "\r\n";
    for (std::size_t position = 0; position < favorites.size(); ++position) {
        ListedFavorite& favorite = favorites[position];
        if (favorite.File.empty()) {
            favorite.File = "F" + std::to_string(position) + ".pmt";
        }
        list << "TemplateData" << position << '=' << (favorite.IsStandard ? 1 : 0) << '~' << favorite.Name
             << '~' << favorite.Level << '~' << (favorite.OnToolbar ? 1 : 0) << '~' << favorite.Icon << '~'
             << favorite.File << "\r\n";
        if (favorite.HasFile) {
            FakeHost::WriteFavorite(
                Folder, favorite.File,
                {.Table = TableOf(SeedOf(position)), .Level = favorite.Level, .Name = favorite.Name});
        }
    }
    Folder.Write(ListFile, list.str());
}

std::string FavoriteFolder::ListedCount() const {
    return ListedValue(Folder.Read(ListFile), "TemplateNum").value_or("none");
}

std::vector<std::string> FavoriteFolder::ListedValues() const {
    return ListedValuesIn(Folder.Read(ListFile));
}

std::vector<std::string> FavoriteFolder::ListedNames() const {
    std::vector<std::string> names;
    for (const std::string& value : ListedValues()) {
        const std::size_t begin = value.find('~') + 1;
        const std::size_t length = FindSingleByte(value.substr(begin), '~', SystemLeadBytes());
        names.push_back(value.substr(begin, length));
    }
    return names;
}

} // namespace pmx::test
