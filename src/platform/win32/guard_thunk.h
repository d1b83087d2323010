#pragma once

/// Calls under the system's frame-based structured exception handling, which the compiler for this system may
/// not have in its language. Contexts are passed through untouched.
namespace pmx::win32 {

using ThunkFunction = void (*)(void* context);

/// Calls `function`; false when a structured exception left it. A C++ exception of our own run-time is one
/// too, but must not get here: its frames are left without destruction.
bool CallProtected(ThunkFunction function, void* context);

/// Calls `function`, then `cleanup`. When an exception of any kind leaves `function` and somebody above
/// handles it, `cleanup` runs while the stack is unwound past this call, and the exception goes on.
void CallThen(ThunkFunction function, void* context, ThunkFunction cleanup, void* cleanupContext);

} // namespace pmx::win32
