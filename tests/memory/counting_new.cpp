#include "memory/counting_new.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

// Only one thread runs in these tests.
std::size_t InUse = 0;
std::size_t Peak = 0;
std::size_t Calls = 0;
std::size_t FirstRefused = 0;
std::size_t LastRefused = 0; // none when less than the first
bool WasRefused = false;
bool IsCounting = true;

bool IsRefused() {
    if (!IsCounting) {
        return false;
    }
    ++Calls;
    const bool refused = FirstRefused <= Calls && Calls <= LastRefused;
    WasRefused |= refused;
    return refused;
}

/// In front of every block; keeps it aligned.
struct alignas(std::max_align_t) BlockHead {
    std::size_t Size;
};

} // namespace

void* operator new(std::size_t size) {
    auto* const head = IsRefused() ? nullptr : static_cast<BlockHead*>(std::malloc(sizeof(BlockHead) + size));
    if (head == nullptr) {
        throw std::bad_alloc();
    }
    head->Size = size;
    InUse += size;
    Peak = std::max(Peak, InUse);
    return head + 1;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        BlockHead* const head = static_cast<BlockHead*>(block) - 1;
        InUse -= head->Size;
        std::free(head); // NOLINT(cppcoreguidelines-owning-memory): this is what gives memory back
    }
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    operator delete(block);
}

namespace pmx::test {

std::size_t BytesInUse() {
    return InUse;
}

std::size_t PeakBytesInUse() {
    return Peak;
}

void ResetPeak() {
    Peak = InUse;
}

std::size_t Allocations() {
    return Calls;
}

MemoryScope::MemoryScope(bool isCounted) : Before(IsCounting) {
    IsCounting = isCounted;
}

MemoryScope::~MemoryScope() {
    IsCounting = Before;
}

NoMemory::NoMemory(std::size_t granted, std::size_t refused) {
    WasRefused = false;
    FirstRefused = Calls + granted + 1;
    const std::size_t most = static_cast<std::size_t>(-1);
    LastRefused = refused > most - FirstRefused ? most : FirstRefused + refused - 1;
}

NoMemory::~NoMemory() {
    LastRefused = 0;
}

bool NoMemory::WasFelt() const {
    return WasRefused;
}

} // namespace pmx::test
