#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

#include <cstring>

#include <minIni.h>

namespace pmx::bench {

namespace {

/// It writes the whole file for every key.
constexpr std::size_t MostSaved = 1000;

int Take(const char* section, const char* key, const char* value, void* reader) {
    if (std::strcmp(section, Section) == 0) {
        static_cast<SectionReader*>(reader)->Take(key, value);
    }
    return 1;
}

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    SectionReader reader(list);
    Require(ini_browse(Take, &reader, place.Path.c_str()) != 0, "minIni cannot load");
}

void Save(const Place& place, CPMXTemplUIListDataArray& list) {
    const std::string path = Aside(place.Path);
    WriteSection(list, [&](const char* key, const char* value) {
        Require(ini_puts(Section, key, value, path.c_str()) != 0, "minIni cannot save");
    });
    PutInPlace(place.Path);
}

const Added MinIni{{"minIni", Load, Save, std::numeric_limits<std::size_t>::max(), MostSaved}};

} // namespace

} // namespace pmx::bench
