#pragma once

#include "support/memory_window.h"

#include <map>
#include <string>
#include <utility>

namespace pmx::test {

/// The parts of a desktop that may fail in a QuietDesktop.
enum class DesktopOperation { Dialog, Images, Library };

/// Tells nothing more about a planned failure than that it happens.
struct DesktopFailure {};

/// A desktop in memory for tests that do not foresee which dialogs and messages come: every dialog of a kind
/// is driven by the same script, every message is answered with yes, and some operations fail as planned.
class QuietDesktop {
public:
    QuietDesktop()
        : Services{Inner.Services.Strings, Dialogs,  Messages, FileChoice, Images,
                   Inner.Services.Help,    Libraries} {}

    FailurePlan<DesktopOperation, DesktopFailure> Plan;

    /// How dialogs of a template are used; the others are cancelled. A dialog that is open after its script
    /// is cancelled.
    std::map<ResourceId, MemoryDialogs::Script> Scripts;

    /// What file dialogs answer.
    std::string ChosenFile;

    MemoryDesktop Inner;

    /// What runs the dialogs: those of the inner desktop, or something around them.
    DialogRunner* Runner = &Inner.Dialogs;

private:
    class QuietDialogs final : public DialogRunner {
    public:
        explicit QuietDialogs(QuietDesktop& desktop) : Desktop(desktop) {}
        std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent,
                               DialogEvents& events) override {
            if (Desktop.Plan.Next(DesktopOperation::Dialog)) {
                return std::nullopt;
            }
            const auto found = Desktop.Scripts.find(dialogTemplate);
            const MemoryDialogs::Script script =
                found != Desktop.Scripts.end() ? found->second : [](MemoryUser&) {};
            Desktop.Inner.Dialogs.OnOpened(dialogTemplate, [script](MemoryUser& user) {
                script(user);
                if (user.IsOpen()) {
                    user.Escape();
                }
            });
            return Desktop.Runner->Run(dialogTemplate, parent, events);
        }

    private:
        QuietDesktop& Desktop;
    };

    class QuietMessages final : public MessageBoxes {
    public:
        MessageAnswer Ask(const Message& message) override {
            return message.Buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
        }
    };

    class QuietFileDialogs final : public FileDialogs {
    public:
        explicit QuietFileDialogs(QuietDesktop& desktop) : Desktop(desktop) {}
        std::optional<std::string> AskOpen(const FileRequest& /*request*/) override {
            return Desktop.ChosenFile;
        }
        std::optional<std::string> AskSave(const FileRequest& /*request*/) override {
            return Desktop.ChosenFile;
        }

    private:
        QuietDesktop& Desktop;
    };

    class QuietImages final : public ImageLists {
    public:
        explicit QuietImages(QuietDesktop& desktop) : Desktop(desktop) {}
        std::unique_ptr<ImageList> FromBitmap(ResourceId bitmap, int imageWidth, Color mask) override {
            return Desktop.Plan.Next(DesktopOperation::Images)
                       ? nullptr
                       : Desktop.Inner.Images.FromBitmap(bitmap, imageWidth, mask);
        }

    private:
        QuietDesktop& Desktop;
    };

    class QuietLibraries final : public DynamicLibraries {
    public:
        explicit QuietLibraries(QuietDesktop& desktop) : Desktop(desktop) {}
        std::unique_ptr<DynamicLibrary> LoadHostLibrary(const std::string& fileName) override {
            return Desktop.Plan.Next(DesktopOperation::Library)
                       ? nullptr
                       : Desktop.Inner.Libraries.LoadHostLibrary(fileName);
        }

    private:
        QuietDesktop& Desktop;
    };

    QuietDialogs Dialogs{*this};
    QuietMessages Messages;
    QuietFileDialogs FileChoice{*this};
    QuietImages Images{*this};
    QuietLibraries Libraries{*this};

public:
    DialogServices Services;
};

} // namespace pmx::test
