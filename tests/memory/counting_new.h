#pragma once

#include <cstddef>

namespace pmx::test {

/// What the program's operator new has given out: bytes asked for that are in use, and the most that were in use
/// since the last call of ResetPeak.
std::size_t BytesInUse();
std::size_t PeakBytesInUse();
void ResetPeak();

/// Lets operator new throw std::bad_alloc as long as this object lives.
class NoMemory {
public:
    NoMemory();
    ~NoMemory();
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

} // namespace pmx::test
