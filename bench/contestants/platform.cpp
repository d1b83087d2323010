#include "contestant.h"
#include "list_text.h"
#include "whole_file.h"

#include <filesystem>
#include <vector>

#include <windows.h>

// Windows' own functions for such files, by the section and key by key.

namespace pmx::bench {

namespace {

/// Key by key, every call goes through all keys before; writing a section, Wine does the same for each key.
constexpr std::size_t MostByKey = 1000;
constexpr std::size_t MostInSection = 10'000;

void LoadSection(const Place& place, CPMXTemplUIListDataArray& list) {
    std::vector<char> entries(std::filesystem::file_size(place.Path));
    GetPrivateProfileSectionA(Section, entries.data(), static_cast<DWORD>(entries.size()),
                              place.Path.c_str());
    SectionReader reader(list);
    for (const char* next = entries.data(); *next != '\0';) {
        const std::string_view entry = next;
        const std::size_t equals = entry.find('=');
        reader.Take(entry.substr(0, equals), entry.substr(equals + 1));
        next += entry.size() + 1;
    }
}

void SaveSection(const Place& place, CPMXTemplUIListDataArray& list) {
    std::string entries;
    WriteSection(list, [&](const char* key, const char* value) {
        entries.append(key).append("=").append(value).push_back('\0');
    });
    Require(WritePrivateProfileSectionA(Section, entries.c_str(), Aside(place.Path).c_str()) != FALSE,
            "the section cannot be written");
    PutInPlace(place.Path);
}

void LoadKeys(const Place& place, CPMXTemplUIListDataArray& list) {
    constexpr DWORD mostBytes = 1 << 10;
    std::array<char, mostBytes> value{};
    const UINT count = GetPrivateProfileIntA(Section, CountKey, 0, place.Path.c_str());
    for (UINT number = 0; number < count; ++number) {
        const std::string key = DataKeyPrefix + std::to_string(number);
        GetPrivateProfileStringA(Section, key.c_str(), "", value.data(), mostBytes, place.Path.c_str());
        AddFavorite(value.data(), list);
    }
}

void SaveKeys(const Place& place, CPMXTemplUIListDataArray& list) {
    const std::string path = Aside(place.Path);
    WriteSection(list, [&](const char* key, const char* value) {
        Require(WritePrivateProfileStringA(Section, key, value, path.c_str()) != FALSE,
                "a key cannot be written");
    });
    PutInPlace(place.Path);
}

const Added Sections{{"sections", LoadSection, SaveSection, MostInSection, MostInSection}};
const Added Keys{{"keys", LoadKeys, SaveKeys, MostByKey, MostByKey}};

} // namespace

} // namespace pmx::bench
