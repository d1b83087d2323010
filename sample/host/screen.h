#pragma once

#include <windows.h>

namespace pmx::host {

/// Dots per inch of the screen that the window is on, for which it has to draw itself.
inline int ResolutionOf(HWND window) {
    return static_cast<int>(GetDpiForWindow(window));
}

/// A length in pixels of a screen with 96 dots per inch, in pixels of one with that resolution.
inline int Scaled(int pixels, int resolution) {
    return MulDiv(pixels, resolution, USER_DEFAULT_SCREEN_DPI);
}

} // namespace pmx::host
