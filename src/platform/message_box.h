#pragma once

#include "platform/window_types.h"

#include <string>

namespace pmx {

enum class MessageIcon {
    Exclamation, ///< an error of the user, something to mend
    Stop,        ///< a failure
    Question
};

enum class MessageButtons { Ok, YesNo };

enum class MessageAnswer {
    Ok,
    Yes,
    No,
    None ///< the box could not be shown
};

/// A message to the user. Texts are in the system's code page.
struct Message {
    WindowHandle Owner = WindowHandle::None; ///< disabled while the box is open
    std::string Caption;
    std::string Text;
    MessageIcon Icon = MessageIcon::Exclamation;
    MessageButtons Buttons = MessageButtons::Ok;
    MessageAnswer Default = MessageAnswer::Ok; ///< the button that Enter presses; one of `Buttons`
};

/// Modal message boxes.
class MessageBoxes {
public:
    virtual ~MessageBoxes() = default;

    /// Shows the box and waits for the answer. A Yes/No box cannot be closed without one of the two.
    virtual MessageAnswer Ask(const Message& message) = 0;

protected:
    MessageBoxes() = default;
    MessageBoxes(const MessageBoxes&) = default;
    MessageBoxes& operator=(const MessageBoxes&) = default;
};

/// The system's message boxes. Lives as long as the process.
MessageBoxes& SystemMessageBoxes();

} // namespace pmx
