#include "peers.h"

#include "durable.h"
#include "parse.h"

#include "store/list_file.h"

#include <charconv>
#include <memory>
#include <stdexcept>

#include <glib.h>

namespace pmx::bench {

namespace {

struct Free {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
    void operator()(char* text) const { g_free(text); }
};

using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Text = std::unique_ptr<char, Free>;

/// Changes the number at the end of a key in place.
class DataKey {
public:
    const char* For(std::size_t number) {
        Key.resize(PrefixLength + DigitRoom);
        char* const begin = Key.data() + PrefixLength;
        *std::to_chars(begin, begin + DigitRoom - 1, number).ptr = '\0';
        return Key.c_str();
    }

private:
    static constexpr std::size_t DigitRoom = 24;
    std::string Key = DataName;
    std::size_t PrefixLength = Key.size();
};

Text ValueOf(GKeyFile* file, const char* key) {
    Text value(g_key_file_get_value(file, SectionName, key, nullptr));
    if (!value) {
        throw std::runtime_error("GKeyFile does not find a key of the list file");
    }
    return value;
}

Records Load(const std::string& path) {
    const KeyFile file(g_key_file_new());
    if (!g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, nullptr)) {
        throw std::runtime_error("GKeyFile cannot read the list file");
    }
    const std::size_t count = CountOf(ValueOf(file.get(), CountName).get());
    Records records;
    DataKey key;
    for (std::size_t number = 0; number < count; ++number) {
        records.push_back(FavoriteOf(ValueOf(file.get(), key.For(number)).get(), false));
    }
    return records;
}

void Save(const std::string& path, const Records& records) {
    const KeyFile file(g_key_file_new());
    g_key_file_set_integer(file.get(), SectionName, CountName, static_cast<int>(records.size()));
    DataKey key;
    for (std::size_t number = 0; number < records.size(); ++number) {
        g_key_file_set_value(file.get(), SectionName, key.For(number),
                             FormatListValue(*records[number]).c_str());
    }
    std::size_t length = 0;
    const Text text(g_key_file_to_data(file.get(), &length, nullptr));
    ReplaceDurably(path, {text.get(), length});
}

} // namespace

const Peer GlibPeer{"GKeyFile", true, Load, Save};

} // namespace pmx::bench
