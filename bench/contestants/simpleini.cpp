#define SI_NO_CONVERSION
#define SI_IMPLEMENTATION
#include <SimpleIni.h>

#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

namespace pmx::bench {

namespace {

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    CSimpleIniCaseA file;
    Require(file.LoadFile(place.Path.c_str()) == SI_OK, "SimpleIni cannot load");
    const std::size_t count = NumberOf(file.GetValue(Section, CountKey, ""));
    for (std::size_t number = 0; number < count; ++number) {
        const std::string key = DataKeyPrefix + std::to_string(number);
        AddFavorite(file.GetValue(Section, key.c_str(), ""), list);
    }
}

void Save(const Place& place, CPMXTemplUIListDataArray& list) {
    CSimpleIniCaseA file;
    WriteSection(list, [&](const char* key, const char* value) { file.SetValue(Section, key, value); });
    Require(file.SaveFile(Aside(place.Path).c_str()) == SI_OK, "SimpleIni cannot save");
    PutInPlace(place.Path);
}

const Added SimpleIni{{"SimpleIni", Load, Save}};

} // namespace

} // namespace pmx::bench
