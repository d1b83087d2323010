#pragma once

#include "platform/guard.h"

#include <cstddef>
#include <functional>

namespace pmx::test {

/// A guard that counts, and can be told that the foreign code raises something instead of running.
class FakeGuard : public Guard {
public:
    /// How often Run and RunThen were called.
    std::size_t Runs = 0;
    std::size_t RunThens = 0;

    /// Number of the Run (from 1) that fails without calling its work; 0 for none.
    std::size_t FailingRun = 0;

    bool Run(const std::function<void()>& work) override {
        if (++Runs == FailingRun) {
            return false;
        }
        try {
            work();
            return true;
        } catch (...) {
            return false;
        }
    }

    void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup) override {
        ++RunThens;
        try {
            work();
        } catch (...) {
            cleanup();
            throw;
        }
        cleanup();
    }
};

} // namespace pmx::test
