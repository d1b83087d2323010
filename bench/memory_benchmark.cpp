#include "favorites.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <new>
#include <stdexcept>

// Counts the bytes that are asked of the heap: prints, for loading and for saving, the most that is in use at
// any moment beyond what was before and beyond one copy of the file, in bytes a favorite.

namespace {

constexpr std::size_t HeaderSize = alignof(std::max_align_t);

std::size_t InUse = 0;
std::size_t Peak = 0;

} // namespace

// NOLINTBEGIN: the heap itself is made here
void* operator new(std::size_t size) {
    auto* const block = static_cast<std::byte*>(std::malloc(size + HeaderSize));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    InUse += size;
    Peak = std::max(Peak, InUse);
    return block + HeaderSize;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        auto* const block = static_cast<std::byte*>(memory) - HeaderSize;
        InUse -= *reinterpret_cast<std::size_t*>(block);
        std::free(block);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
// NOLINTEND

namespace pmx::bench {

namespace {

constexpr std::array<std::size_t, 3> Sizes = {1000, 10000, 100000};

/// Bytes a favorite that `work` needs at most, beyond those in use before and one copy of the file.
template <typename Work>
double PeakPerFavorite(const FavoritesFolder& folder, Work work) {
    const auto fileSize = std::filesystem::file_size(test::DiskPath(folder.Path(ListFileName)));
    const std::size_t before = InUse;
    Peak = InUse;
    work();
    const auto needed = static_cast<double>(Peak - before) - static_cast<double>(fileSize);
    return needed / static_cast<double>(folder.Count());
}

void Print(const char* operation, std::size_t count, double bytes) {
    std::cout << operation << ' ' << count << ' ' << bytes << '\n';
}

void MeasureFolder(std::size_t count) {
    const FavoritesFolder folder(count);
    const auto list = folder.Open();
    bool isDone = false;
    Print("load", count, PeakPerFavorite(folder, [&] { isDone = list->LoadList(); }));
    if (!isDone || list->GetSize() != static_cast<std::int64_t>(count)) {
        throw std::runtime_error("the list does not load");
    }
    Print("save", count, PeakPerFavorite(folder, [&] { isDone = list->WriteListFile(); }));
    if (!isDone) {
        throw std::runtime_error("the list cannot be saved");
    }
}

} // namespace

} // namespace pmx::bench

int main() {
    for (const std::size_t count : pmx::bench::Sizes) {
        pmx::bench::MeasureFolder(count);
    }
    return 0;
}
