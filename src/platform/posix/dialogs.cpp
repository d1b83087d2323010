#include "platform/dialog_window.h"
#include "platform/file_dialogs.h"
#include "platform/help_notes.h"
#include "platform/message_box.h"

/// The native build has no windows: nothing can be shown, and whoever asks is told so.
namespace pmx {

namespace {

class NoDialogs final : public DialogRunner {
public:
    std::optional<int> Run(ResourceId /*dialogTemplate*/, WindowHandle /*parent*/,
                           DialogEvents& /*events*/) override {
        return std::nullopt;
    }
};

class NoMessageBoxes final : public MessageBoxes {
public:
    MessageAnswer Ask(const Message& /*message*/) override { return MessageAnswer::None; }
};

class NoFileDialogs final : public FileDialogs {
public:
    std::optional<std::string> AskOpen(const FileRequest& /*request*/) override { return std::nullopt; }
    std::optional<std::string> AskSave(const FileRequest& /*request*/) override { return std::nullopt; }
};

class NoImageLists final : public ImageLists {
public:
    std::unique_ptr<ImageList> FromBitmap(ResourceId /*bitmap*/, int /*imageWidth*/,
                                          Color /*mask*/) override {
        return nullptr;
    }
};

class NoHelpNotes final : public HelpNotes {
public:
    void ShowNote(WindowHandle /*control*/, const std::string& /*text*/, ScreenPoint /*position*/) override {}
};

} // namespace

DialogRunner& SystemDialogRunner() {
    static NoDialogs dialogs;
    return dialogs;
}

MessageBoxes& SystemMessageBoxes() {
    static NoMessageBoxes messageBoxes;
    return messageBoxes;
}

FileDialogs& SystemFileDialogs() {
    static NoFileDialogs fileDialogs;
    return fileDialogs;
}

ImageLists& SystemImageLists() {
    static NoImageLists imageLists;
    return imageLists;
}

HelpNotes& SystemHelpNotes() {
    static NoHelpNotes notes;
    return notes;
}

} // namespace pmx
