#pragma once

#include <windows.h>

namespace pmx::win32 {

/// While it lives, the calling thread's loads fail without a message box of the system.
class SilentErrors {
public:
    SilentErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &Before); }
    ~SilentErrors() { SetThreadErrorMode(Before, nullptr); }
    SilentErrors(const SilentErrors&) = delete;
    SilentErrors& operator=(const SilentErrors&) = delete;

private:
    DWORD Before = 0;
};

} // namespace pmx::win32
