#pragma once

#include <functional>

// Calls into foreign code (the host's libraries), and whatever it raises: C++ exceptions and, on Windows,
// structured exceptions of any compiler's run-time. A C++ exception of our own run-time's kind destroys the
// objects that it passes; any other one does not, so what must be undone in any case belongs into the cleanup
// of RunThen. A stack overflow is not reliably survived.

namespace pmx {

/// Calls `work`; false when it raised anything. What it raises and handles itself is not noticed. Pass a
/// large function by std::ref: then the call needs no memory.
bool RunGuarded(const std::function<void()>& work);

/// Calls `work` and then `cleanup`, also when `work` raised something, which passes on to the caller after
/// `cleanup`. `cleanup` itself must raise nothing. On Windows a C++ exception of our own run-time's kind
/// (GCC's) must be handled by code of that kind again: it fails under another run-time's handler when objects
/// have to be destroyed on the way.
void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup);

} // namespace pmx
