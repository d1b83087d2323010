#pragma once

#include "support/failure_plan.h"

#include <cstddef>

namespace pmx::test {

/// System calls that can be told to fail.
enum class SystemCall { Read, Write, Rename, Truncate, ChangeMode, Lock, Flush };

/// Lets system calls that the library makes in this program fail as long as it lives. A call that fails does
/// nothing and leaves the planned number in `errno`. One at a time.
class SystemCalls {
public:
    SystemCalls();
    ~SystemCalls();
    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    FailurePlan<SystemCall, int> Plan;

    /// The most bytes that one read or write moves.
    std::size_t LargestPiece = static_cast<std::size_t>(-1);
};

} // namespace pmx::test
