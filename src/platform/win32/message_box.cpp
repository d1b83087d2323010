#include "platform/message_box.h"

#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"

namespace pmx {

namespace {

UINT IconFlag(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Stop:
        return MB_ICONHAND;
    case MessageIcon::Question:
        return MB_ICONQUESTION;
    default:
        return MB_ICONEXCLAMATION;
    }
}

UINT FlagsOf(const Message& message) {
    const bool isYesNo = message.Buttons == MessageButtons::YesNo;
    const UINT buttons = isYesNo ? MB_YESNO : MB_OK;
    const UINT standard = isYesNo && message.Default == MessageAnswer::No ? MB_DEFBUTTON2 : MB_DEFBUTTON1;
    return IconFlag(message.Icon) | buttons | standard;
}

MessageAnswer AnswerOf(int button) {
    switch (button) {
    case IDOK:
        return MessageAnswer::Ok;
    case IDYES:
        return MessageAnswer::Yes;
    case IDNO:
        return MessageAnswer::No;
    default:
        return MessageAnswer::None;
    }
}

class WindowsMessageBoxes final : public MessageBoxes {
public:
    MessageAnswer Ask(const Message& message) override {
        return AnswerOf(MessageBoxW(win32::ToSystem(message.Owner), win32::ToWide(message.Text).c_str(),
                                    win32::ToWide(message.Caption).c_str(), FlagsOf(message)));
    }
};

} // namespace

MessageBoxes& SystemMessageBoxes() {
    static WindowsMessageBoxes messageBoxes;
    return messageBoxes;
}

} // namespace pmx
