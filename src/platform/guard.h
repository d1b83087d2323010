#pragma once

#include <functional>

namespace pmx {

/// Runs calls into foreign code (the host's libraries) and deals with whatever they raise: C++ exceptions
/// and, on Windows, structured exceptions of any compiler's run-time. Objects that the foreign code leaves
/// half-way are its own concern; objects of ours between the raising place and the guard are destroyed, as
/// far as the compilers of both sides agree on how that is done.
class Guard {
public:
    virtual ~Guard() = default;

    /// Calls `work`; false when it raised anything. What it raises and handles itself is not noticed.
    virtual bool Run(const std::function<void()>& work) = 0;

    /// Calls `work` and then `cleanup`, also when `work` raised something, which passes on to the caller
    /// after `cleanup`. `cleanup` itself must raise nothing.
    virtual void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup) = 0;

protected:
    Guard() = default;
    Guard(const Guard&) = default;
    Guard& operator=(const Guard&) = default;
};

/// The system's guard. Lives as long as the process.
Guard& SystemGuard();

} // namespace pmx
