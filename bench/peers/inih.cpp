#include "peers.h"

#include "parse.h"

#include <cstring>
#include <stdexcept>

#include <ini.h>

namespace pmx::bench {

namespace {

struct Reading {
    Records Found;
    std::size_t Count = 0;
};

int Take(void* user, const char* section, const char* key, const char* value) {
    if (std::strcmp(section, SectionName) != 0) {
        return 1;
    }
    Reading& reading = *static_cast<Reading*>(user);
    if (const std::optional<std::size_t> number = DataNumber(key)) {
        if (*number < reading.Count) {
            reading.Found.push_back(FavoriteOf(value, true));
        }
    } else if (std::strcmp(key, CountName) == 0) {
        reading.Count = CountOf(value);
    }
    return 1;
}

Records Load(const std::string& path) {
    Reading reading;
    if (ini_parse(path.c_str(), Take, &reading) != 0) {
        throw std::runtime_error("inih cannot read the list file");
    }
    return std::move(reading.Found);
}

} // namespace

const Peer InihPeer{"inih", false, Load, nullptr};

} // namespace pmx::bench
