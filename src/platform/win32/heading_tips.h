#pragma once

#include <windows.h>

namespace pmx::win32 {

/// Shows the titles of a list's columns that are cut in full, in a tool tip when the mouse rests on them.
class HeadingTips {
public:
    /// Looks at the columns of a list in report view, as they are now.
    void Update(HWND list);

private:
    HWND Tips = nullptr; ///< belongs to the list's dialog, and goes with it
};

} // namespace pmx::win32
