#pragma once

#include <functional>

namespace pmx {

/// Runs calls into foreign code (the host's libraries) and deals with whatever they raise: C++ exceptions
/// and, on Windows, structured exceptions of any compiler's run-time. A C++ exception destroys the objects
/// that it passes; a structured one those of compilers that see it, which GCC is not, so what must be undone
/// in any case belongs into the cleanup of RunThen. A stack overflow is not reliably survived.
class Guard {
public:
    virtual ~Guard() = default;

    /// Calls `work`; false when it raised anything. What it raises and handles itself is not noticed.
    virtual bool Run(const std::function<void()>& work) = 0;

    /// Calls `work` and then `cleanup`, also when `work` raised something, which passes on to the caller
    /// after `cleanup`. `cleanup` itself must raise nothing. With GCC on Windows a C++ exception that passes
    /// on must be handled by code of GCC again: its run-time fails under another compiler's handler when
    /// objects have to be destroyed on the way.
    virtual void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup) = 0;

protected:
    Guard() = default;
    Guard(const Guard&) = default;
    Guard& operator=(const Guard&) = default;
};

/// The system's guard. Lives as long as the process.
Guard& SystemGuard();

} // namespace pmx
