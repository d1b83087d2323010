#include "platform/win32/screen.h"

namespace pmx::win32 {

int ResolutionOf(HWND window) {
    const DPI_AWARENESS_CONTEXT context = GetWindowDpiAwarenessContext(window);
    const bool isScaledBySystem =
        AreDpiAwarenessContextsEqual(context, DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2) != FALSE;
    const bool isUnaware = AreDpiAwarenessContextsEqual(context, DPI_AWARENESS_CONTEXT_UNAWARE) != FALSE;
    return static_cast<int>(isScaledBySystem || isUnaware ? GetDpiForWindow(window) : GetDpiForSystem());
}

} // namespace pmx::win32
