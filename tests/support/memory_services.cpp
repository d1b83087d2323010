#include "support/memory_services.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <ostream>

namespace pmx::test {

namespace {

std::int32_t LittleEndian(std::span<const std::byte> bytes, std::size_t position) {
    std::uint32_t value = 0;
    for (std::size_t index = 4; index-- > 0;) {
        value = (value << 8) | std::to_integer<std::uint32_t>(bytes[position + index]);
    }
    return static_cast<std::int32_t>(value);
}

std::string Described(const Message& message) {
    static constexpr const char* Icons[] = {"exclamation", "stop", "question"};
    std::string result = Icons[static_cast<int>(message.Icon)];
    result += message.Buttons == MessageButtons::YesNo ? ", Yes/No" : ", OK";
    result += message.Default == MessageAnswer::No ? ", default No: " : ": ";
    return result + Utf8(message.Text);
}

class MemoryLibrary final : public DynamicLibrary {
public:
    MemoryLibrary(const MemoryLibraries::Exports& exports, int& loaded) : Exports(exports), Loaded(loaded) {
        ++Loaded;
    }
    ~MemoryLibrary() override { --Loaded; }

    Function Find(const char* name) const override {
        const auto found = Exports.ByName.find(name);
        return found == Exports.ByName.end() ? nullptr : found->second;
    }

private:
    const MemoryLibraries::Exports& Exports;
    int& Loaded;
};

std::optional<std::string> NextAnswer(std::deque<std::optional<std::string>>& answers) {
    if (answers.empty()) {
        ADD_FAILURE() << "a file dialog was opened that the test did not foresee";
        return std::nullopt;
    }
    std::optional<std::string> answer = answers.front();
    answers.pop_front();
    return answer;
}

} // namespace

std::unique_ptr<Icon> MemoryImageList::IconOf(std::int64_t index) const {
    if (index < 0 || index >= Images) {
        return nullptr;
    }
    return std::make_unique<MemoryIcon>(MemoryImage{Source, index});
}

std::unique_ptr<ImageList> MemoryImageLists::FromBitmap(ResourceId bitmap, int imageWidth, Color mask) {
    constexpr std::size_t WidthPosition = 4; // in the bitmap's header
    Requests.push_back({bitmap, imageWidth, mask});
    const std::span<const std::byte> bytes = Bitmaps.BitmapOf(bitmap);
    if (Failing || bytes.size() < WidthPosition + 4) {
        return nullptr;
    }
    return std::make_unique<MemoryImageList>(bitmap, LittleEndian(bytes, WidthPosition) / imageWidth);
}

MemoryMessages::~MemoryMessages() {
    for (const Expectation& expectation : Foreseen) {
        ADD_FAILURE() << "this message did not come: " << Described(expectation.Wanted);
    }
}

void MemoryMessages::Expect(ResourceId id, MessageIcon icon) {
    const auto text = Strings.StringOf(id);
    if (!text) {
        ADD_FAILURE() << "there is no string " << id;
    }
    ExpectText(text.value_or(std::string()), icon);
}

void MemoryMessages::ExpectText(const std::string& text, MessageIcon icon) {
    Expectation expectation;
    expectation.Wanted.Text = text;
    expectation.Wanted.Icon = icon;
    Foreseen.push_back(std::move(expectation));
}

void MemoryMessages::ExpectQuestion(ResourceId id, MessageAnswer answer) {
    Expect(id, MessageIcon::Question);
    Foreseen.back().Wanted.Buttons = MessageButtons::YesNo;
    Foreseen.back().Wanted.Default = MessageAnswer::No;
    Foreseen.back().Answer = answer;
}

MessageAnswer MemoryMessages::Ask(const Message& message) {
    Shown.push_back(message);
    if (Foreseen.empty()) {
        ADD_FAILURE() << "this message was not foreseen: " << Described(message);
        return message.Default;
    }
    const Expectation expectation = std::move(Foreseen.front());
    Foreseen.pop_front();
    EXPECT_EQ(Described(message), Described(expectation.Wanted));
    const std::function<void()> meanwhile = expectation.Action ? expectation.Action : [] {};
    return Show(message, expectation.Answer, meanwhile);
}

std::optional<std::string> MemoryFileDialogs::AskOpen(const FileRequest& request) {
    OpenRequests.push_back(request);
    return NextAnswer(OpenAnswers);
}

std::optional<std::string> MemoryFileDialogs::AskSave(const FileRequest& request) {
    SaveRequests.push_back(request);
    return NextAnswer(SaveAnswers);
}

std::unique_ptr<DynamicLibrary> MemoryLibraries::LoadHostLibrary(const std::string& fileName) {
    Asked.push_back(fileName);
    const auto found = Present.find(fileName);
    if (found == Present.end()) {
        return nullptr;
    }
    return std::make_unique<MemoryLibrary>(found->second, Loaded);
}

} // namespace pmx::test
