#pragma once

#include "platform/window_types.h"

#include <string>

namespace pmx {

/// Notes that explain a control.
class HelpNotes {
public:
    virtual ~HelpNotes() = default;

    /// Shows a text (system's code page, lines separated by a line feed) at that place, as a note of a control's
    /// window, which may be none. Where the system has no means to, nothing happens.
    virtual void ShowNote(WindowHandle control, const std::string& text, ScreenPoint position) = 0;

protected:
    HelpNotes() = default;
    HelpNotes(const HelpNotes&) = default;
    HelpNotes& operator=(const HelpNotes&) = default;
};

/// The system's. Lives as long as the process.
HelpNotes& SystemHelpNotes();

} // namespace pmx
