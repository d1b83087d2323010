#pragma once

#include "dialogs/base/dialog_services.h"
#include "support/memory_list.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace pmx::test {

/// An icon that is only its number.
class MemoryIcon final : public Icon {
public:
    explicit MemoryIcon(MemoryImage image) : Shown(image) { ++Living; }
    ~MemoryIcon() override { --Living; }

    MemoryImage Image() const { return Shown; }

    /// How many icons exist at present.
    static int Count() { return Living; }

private:
    static inline int Living = 0;
    MemoryImage Shown;
};

class MemoryImageList final : public ImageList {
public:
    MemoryImageList(ResourceId bitmap, int count) : Source(bitmap), Images(count) {}

    ResourceId Bitmap() const { return Source; }
    int Count() const override { return Images; }
    std::unique_ptr<Icon> IconOf(std::int64_t index) const override;

private:
    ResourceId Source;
    int Images;
};

/// Image lists with as many images as the compiled bitmap has room for.
class MemoryImageLists final : public ImageLists {
public:
    explicit MemoryImageLists(const Resources& resources) : Bitmaps(resources) {}

    struct Request {
        ResourceId Bitmap = 0;
        int ImageWidth = 0;
        Color Mask = Color::White;
        bool operator==(const Request&) const = default;
    };

    std::vector<Request> Requests; ///< all, in order
    bool Failing = false;          ///< every list fails to be made

    std::unique_ptr<ImageList> FromBitmap(ResourceId bitmap, int imageWidth, Color mask) override;

private:
    const Resources& Bitmaps;
};

/// Message boxes that a test foresees. One that was not foreseen, or differs, or does not come, fails the
/// test.
class MemoryMessages final : public MessageBoxes {
public:
    explicit MemoryMessages(const Resources& resources) : Strings(resources) {}
    ~MemoryMessages() override;

    /// The string of that number, with one OK button.
    void Expect(ResourceId id, MessageIcon icon);

    /// A text (code page 932), with one OK button.
    void ExpectText(const std::string& text, MessageIcon icon);

    /// The string of that number as a question with Yes and No, where No is the default.
    void ExpectQuestion(ResourceId id, MessageAnswer answer);

    /// Runs while the message that was foreseen last is open.
    void Meanwhile(std::function<void()> action) { Foreseen.back().Action = std::move(action); }

    /// Every message that was shown.
    std::vector<Message> Shown;

    MessageAnswer Ask(const Message& message) override;

    /// How a foreseen message is shown: gets what was asked, the answer to give, and what to do while it is
    /// open. Returns the user's answer.
    using Shower = std::function<MessageAnswer(const Message&, MessageAnswer planned,
                                               const std::function<void()>& meanwhile)>;

    /// Set by the desktop that this belongs to.
    Shower Show;

private:
    struct Expectation {
        Message Wanted;
        MessageAnswer Answer = MessageAnswer::Ok;
        std::function<void()> Action;
    };

    const Resources& Strings;
    std::deque<Expectation> Foreseen;
};

/// File dialogs that answer as planned; one that was not planned is cancelled and fails the test.
class MemoryFileDialogs final : public FileDialogs {
public:
    std::deque<std::optional<std::string>> OpenAnswers;
    std::deque<std::optional<std::string>> SaveAnswers;
    std::vector<FileRequest> OpenRequests;
    std::vector<FileRequest> SaveRequests;

    std::optional<std::string> AskOpen(const FileRequest& request) override;
    std::optional<std::string> AskSave(const FileRequest& request) override;
};

/// Help notes that are only kept.
class MemoryHelp final : public HelpNotes {
public:
    struct Request {
        WindowHandle Control = WindowHandle::None;
        std::string Text;
        ScreenPoint Position{};
    };

    std::vector<Request> Requests;

    void ShowNote(WindowHandle control, const std::string& text, ScreenPoint position) override {
        Requests.push_back({.Control = control, .Text = text, .Position = position});
    }
};

/// Libraries that consist of functions of the test.
class MemoryLibraries final : public DynamicLibraries {
public:
    struct Exports {
        std::map<std::string, DynamicLibrary::Function> ByName;
    };

    std::map<std::string, Exports> Present; ///< by the name that is asked for
    std::vector<std::string> Asked;         ///< every name that was asked for
    int Loaded = 0;                         ///< how many are loaded at present

    std::unique_ptr<DynamicLibrary> LoadHostLibrary(const std::string& fileName) override;
};

} // namespace pmx::test
