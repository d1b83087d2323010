#include "favorites.h"

#include "store/list_file.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <string>

// Loading and saving a list through the platform's section functions, as the store does it, against the same
// key by key. Prints operation, way and the shortest time in microseconds.

namespace pmx::bench {

namespace {

constexpr std::size_t Count = 1000;
constexpr int Repetitions = 5;

void Require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

Records LoadKeyByKey(const std::string& path) {
    const StoreServices& services = SystemStoreServices();
    const std::string section(ListSection);
    const std::int32_t count = services.Profiles.ReadInt(path, section, CountKey, 0);
    Records records;
    for (std::int32_t number = 0; number < count; ++number) {
        const std::string value = services.Profiles.ReadString(
            path, section, std::string(DataKeyPrefix) + std::to_string(number), "");
        if (auto record = ParseListValue(value, services.LeadBytes())) {
            records.push_back(std::move(record));
        }
    }
    return records;
}

void SaveKeyByKey(const std::string& path, const Records& records) {
    Profile& profiles = SystemProfile();
    const auto write = [&](std::string_view key, const std::string& value) {
        Require(profiles.WriteString(path, ListSection, key, value), "a key cannot be written");
    };
    Require(profiles.WriteString(path, ListSection, std::nullopt, std::nullopt), "the section stays");
    write(CountKey, std::to_string(records.size()));
    for (std::size_t number = 0; number < records.size(); ++number) {
        write(std::string(DataKeyPrefix) + std::to_string(number), FormatListValue(*records[number]));
    }
}

template <typename Work>
void Measure(const char* operation, const char* way, Work work) {
    using Clock = std::chrono::steady_clock;
    auto shortest = Clock::duration::max();
    for (int repetition = 0; repetition < Repetitions; ++repetition) {
        const Clock::time_point begin = Clock::now();
        work();
        shortest = std::min(shortest, Clock::now() - begin);
    }
    std::cout << operation << ' ' << way << ' '
              << std::chrono::duration_cast<std::chrono::microseconds>(shortest).count() << '\n';
}

void MeasureAll() {
    const FavoritesFolder folder(Count);
    const std::string path = folder.Path(ListFileName);
    const Records favorites = MakeFavorites(Count);
    const auto list = folder.Open();

    Require(AreEqual(LoadKeyByKey(path), favorites), "key by key, something else is loaded");
    Require(list->LoadList() && list->GetSize() == static_cast<std::int64_t>(Count),
            "the store does not load");
    Measure("load", "section", [&] { list->LoadList(); });
    Measure("load", "keys", [&] { LoadKeyByKey(path); });
    Measure("save", "section", [&] { Require(list->WriteListFile(), "the store does not save"); });
    Measure("save", "keys", [&] { SaveKeyByKey(path, favorites); });
}

} // namespace

} // namespace pmx::bench

int main() {
    pmx::bench::MeasureAll();
    return 0;
}
