#pragma once

#include <windows.h>

namespace pmx::win32 {

/// Dots per inch that the window's dialog is laid out for: those of its screen, where the host leaves scaling its
/// dialogs to the system, else those that all its dialogs are laid out for.
int ResolutionOf(HWND window);

/// A length in pixels of a screen with 96 dots per inch, in pixels of the window's.
inline int ScaledFor(HWND window, int pixels) {
    return MulDiv(pixels, ResolutionOf(window), USER_DEFAULT_SCREEN_DPI);
}

} // namespace pmx::win32
