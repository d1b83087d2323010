#define SI_NO_CONVERSION
#include <SimpleIni.h>

#include "peers.h"

#include "durable.h"
#include "parse.h"

#include "store/list_file.h"

#include <algorithm>
#include <stdexcept>

namespace pmx::bench {

namespace {

constexpr bool Utf8 = false;
constexpr bool MultiKey = false;
constexpr bool MultiLine = false;

/// Walks the section, whose keys are kept in the order of their bytes, and puts each favorite in its place.
Records Load(const std::string& path) {
    CSimpleIniCaseA file(Utf8, MultiKey, MultiLine);
    if (file.LoadFile(path.c_str()) != SI_OK) {
        throw std::runtime_error("SimpleIni cannot read the list file");
    }
    const CSimpleIniCaseA::TKeyVal* const section = file.GetSection(SectionName);
    const char* const stated = section != nullptr ? file.GetValue(SectionName, CountName) : nullptr;
    if (stated == nullptr) {
        throw std::runtime_error("SimpleIni does not find the section of the list file");
    }
    Records records(std::min<std::size_t>(CountOf(stated), section->size()));
    for (const auto& [key, value] : *section) {
        const std::optional<std::size_t> number = DataNumber(key.pItem);
        if (number && *number < records.size()) {
            records[*number] = FavoriteOf(value, true);
        }
    }
    return records;
}

void Save(const std::string& path, const Records& records) {
    CSimpleIniCaseA file(Utf8, MultiKey, MultiLine);
    file.SetValue(SectionName, CountName, std::to_string(records.size()).c_str());
    for (std::size_t number = 0; number < records.size(); ++number) {
        file.SetValue(SectionName, (DataName + std::to_string(number)).c_str(),
                      FormatListValue(*records[number]).c_str());
    }
    const std::string temporary = path + ".new";
    if (file.SaveFile(temporary.c_str()) != SI_OK) {
        throw std::runtime_error("SimpleIni cannot write the list file");
    }
    RenameDurably(temporary, path);
}

} // namespace

const Peer SimpleIniPeer{"SimpleIni", false, Load, Save};

} // namespace pmx::bench
