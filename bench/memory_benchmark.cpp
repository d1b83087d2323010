#include "favorites.h"

#include "memory/counting_new.h"

#include <filesystem>
#include <iostream>

// Usage: memory_benchmark COUNT...
// Prints, for loading and for saving lists of these sizes, the most memory that is in use at any moment
// beyond what was before and beyond one copy of the file, in bytes a favorite.

namespace pmx::bench {

namespace {

template <typename Work>
void Print(const char* operation, const Place& place, std::size_t count, Work work) {
    const std::size_t before = test::BytesInUse();
    test::ResetPeak();
    work();
    const auto used = static_cast<double>(test::PeakBytesInUse() - before);
    const auto fileSize = static_cast<double>(std::filesystem::file_size(place.Path));
    std::cout << operation << " memory " << count << ' ' << (used - fileSize) / static_cast<double>(count)
              << '\n';
}

void Measure(std::size_t count) {
    const FavoritesFolder folder;
    const Place& place = folder.GetPlace();
    WriteFavorites(count, place);
    SystemList list;
    Open(place, list);
    Print("load", place, count, [&] { Require(list.LoadList(), "the list does not load"); });
    Print("save", place, count, [&] { Require(list.WriteListFile(), "the list is not saved"); });
}

} // namespace

} // namespace pmx::bench

int main(int argumentCount, char** arguments) {
    for (int index = 1; index < argumentCount; ++index) {
        pmx::bench::Measure(std::stoul(arguments[index]));
    }
    return 0;
}
