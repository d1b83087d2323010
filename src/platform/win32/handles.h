#pragma once

#include "platform/window_types.h"

#include <windows.h>

/// The library's opaque handles and the system's are the same values.
namespace pmx::win32 {

inline HWND ToSystem(WindowHandle window) {
    return reinterpret_cast<HWND>(static_cast<std::uintptr_t>(window));
}

inline WindowHandle FromSystem(HWND window) {
    return static_cast<WindowHandle>(reinterpret_cast<std::uintptr_t>(window));
}

inline HMODULE ToSystem(ModuleHandle module) {
    return reinterpret_cast<HMODULE>(static_cast<std::uintptr_t>(module));
}

inline ModuleHandle FromSystem(HMODULE module) {
    return static_cast<ModuleHandle>(reinterpret_cast<std::uintptr_t>(module));
}

/// The module to take resources from: the thread's, else the library's.
HMODULE ResourceModuleInUse();

} // namespace pmx::win32
