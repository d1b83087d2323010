#pragma once

#include <functional>

namespace pmx {

/// Runs calls into foreign code (the host's libraries) and stops whatever they raise: C++ exceptions and, on
/// Windows, structured exceptions of any compiler's run-time.
class Guard {
public:
    virtual ~Guard() = default;

    /// Calls `work`; false when it raised anything. Objects that the foreign code left half-way are its own
    /// concern.
    virtual bool Run(const std::function<void()>& work) = 0;

protected:
    Guard() = default;
    Guard(const Guard&) = default;
    Guard& operator=(const Guard&) = default;
};

/// The system's guard. Lives as long as the process.
Guard& SystemGuard();

} // namespace pmx
