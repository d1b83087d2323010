#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include <windows.h>

namespace pmx::exports_test {

/// What is known of a dialog that has been opened and cancelled again.
struct DialogOpening {
    std::chrono::microseconds Time{}; ///< from the call until it was shown, painted and idle
    int Rows = 0;                     ///< of its list then
    std::int64_t Result = 0;          ///< of the export
};

/// Calls an export that opens a dialog over the window that it is given, on the calling thread, and cancels
/// the dialog as soon as it waits for input. `list` is the dialog's list control.
DialogOpening OpenOnce(int list, const std::function<std::int64_t(HWND owner)>& open);

} // namespace pmx::exports_test
