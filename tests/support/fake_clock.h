#pragma once

#include "platform/clock.h"

#include <cstdint>
#include <functional>
#include <numeric>
#include <vector>

namespace pmx::test {

/// A clock that does not wait but keeps what it was asked for.
class FakeClock : public Clock {
public:
    /// What was asked for, in order, in milliseconds.
    std::vector<std::uint32_t> Sleeps;

    /// Runs at every Sleep, after that is recorded; for what happens elsewhere meanwhile. May be empty.
    std::function<void()> OnSleep;

    void Sleep(std::uint32_t milliseconds) override {
        Sleeps.push_back(milliseconds);
        if (OnSleep) {
            OnSleep();
        }
    }

    /// All waiting together, in milliseconds.
    std::uint64_t Total() const { return std::accumulate(Sleeps.begin(), Sleeps.end(), std::uint64_t{0}); }
};

} // namespace pmx::test
