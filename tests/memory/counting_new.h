#pragma once

#include <cstddef>

namespace pmx::test {

/// What the program's operator new has given out: bytes asked for that are in use, and the most that were in
/// use since the last call of ResetPeak.
std::size_t BytesInUse();
std::size_t PeakBytesInUse();
void ResetPeak();

/// How often operator new was called.
std::size_t Allocations();

/// Says, as long as it lives, whether the calls of operator new are among those that a NoMemory counts and
/// may refuse: those of what is tested are, those of a fake or of the test itself need not be. They are when
/// nothing is said; what was said last counts.
class MemoryScope {
public:
    explicit MemoryScope(bool isCounted);
    ~MemoryScope();
    MemoryScope(const MemoryScope&) = delete;
    MemoryScope& operator=(const MemoryScope&) = delete;

private:
    bool Before;
};

/// Lets some calls of operator new throw std::bad_alloc as long as this object lives.
class NoMemory {
public:
    /// All calls.
    NoMemory() : NoMemory(0, static_cast<std::size_t>(-1)) {}

    /// After `granted` calls, the next `refused` ones.
    NoMemory(std::size_t granted, std::size_t refused);
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;

    /// Whether any call was refused.
    bool WasFelt() const;
};

} // namespace pmx::test
