#pragma once

#include <cstdint>

namespace pmx {

/// Waiting, as a service so that tests need not wait.
class Clock {
public:
    virtual ~Clock() = default;

    /// Blocks the calling thread for at least `milliseconds`.
    virtual void Sleep(std::uint32_t milliseconds) = 0;

protected:
    Clock() = default;
    Clock(const Clock&) = default;
    Clock& operator=(const Clock&) = default;
};

/// The system's clock. Lives as long as the process.
Clock& SystemClock();

} // namespace pmx
