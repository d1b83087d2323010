#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

#include <memory>

#include <glib.h>

namespace pmx::bench {

namespace {

struct Free {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
    void operator()(char* text) const { g_free(text); }
};

using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Text = std::unique_ptr<char, Free>;

Text ValueOf(const KeyFile& file, const std::string& key) {
    Text value(g_key_file_get_value(file.get(), Section, key.c_str(), nullptr));
    Require(value != nullptr, "GKeyFile does not find " + key);
    return value;
}

void Load(const Place& place, CPMXTemplUIListDataArray& list) {
    const KeyFile file(g_key_file_new());
    Require(g_key_file_load_from_file(file.get(), place.Path.c_str(), G_KEY_FILE_NONE, nullptr) != 0,
            "GKeyFile cannot load");
    const std::size_t count = NumberOf(ValueOf(file, CountKey).get());
    for (std::size_t number = 0; number < count; ++number) {
        AddFavorite(ValueOf(file, DataKeyPrefix + std::to_string(number)).get(), list);
    }
}

void Save(const Place& place, CPMXTemplUIListDataArray& list) {
    const KeyFile file(g_key_file_new());
    WriteSection(list, [&](const char* key, const char* value) {
        g_key_file_set_value(file.get(), Section, key, value);
    });
    std::size_t length = 0;
    const Text text(g_key_file_to_data(file.get(), &length, nullptr));
    ReplaceWhole(place.Path, {text.get(), length});
}

const Added Glib{{"GKeyFile", Load, Save}};

} // namespace

} // namespace pmx::bench
