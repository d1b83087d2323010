#pragma once

#include "platform/dialog_window.h"

#include <span>
#include <variant>

namespace pmx {

/// One line of a dialog's table: which member function handles which event of which control. The function may
/// take the event, or nothing.
template <class Dialog>
struct EventHandler {
    ControlId Control;
    DialogEvent Event;
    std::variant<void (Dialog::*)(), void (Dialog::*)(const ControlEvent&)> Function;
};

/// Calls the handler of the table's line for this event, if there is one.
template <class Dialog>
void Dispatch(Dialog& dialog, std::span<const EventHandler<Dialog>> table, const ControlEvent& event) {
    for (const EventHandler<Dialog>& line : table) {
        if (line.Control != event.Control || line.Event != event.Event) {
            continue;
        }
        if (const auto* plain = std::get_if<void (Dialog::*)()>(&line.Function)) {
            (dialog.**plain)();
        } else {
            (dialog.*std::get<void (Dialog::*)(const ControlEvent&)>(line.Function))(event);
        }
        return;
    }
}

} // namespace pmx
