#include "contestant.h"
#include "list_text.h"

#include <cstring>

#include <ini.h>

namespace pmx::bench {

namespace {

int Take(void* reader, const char* section, const char* key, const char* value) {
    if (std::strcmp(section, Section) == 0) {
        static_cast<SectionReader*>(reader)->Take(key, value);
    }
    return 1;
}

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    SectionReader reader(list);
    Require(ini_parse(place.Path.c_str(), Take, &reader) == 0, "inih cannot load");
}

const Added Inih{{"inih", Load, nullptr}};

} // namespace

} // namespace pmx::bench
