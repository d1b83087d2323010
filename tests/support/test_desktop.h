#pragma once

#include "dialogs/base/dialog_services.h"
#include "support/dialog_user.h"
#include "support/memory_services.h"

#include <functional>

namespace pmx::test {

/// What every kind of desktop has for tests.
class TestDesktop {
public:
    using Script = std::function<void(DialogUser&)>;

    virtual ~TestDesktop() = default;
    TestDesktop(const TestDesktop&) = delete;
    TestDesktop& operator=(const TestDesktop&) = delete;

    /// The next dialog that opens must be of that template, and is driven by `script`.
    virtual void OnOpened(ResourceId dialogTemplate, Script script) = 0;

    MemoryMessages Messages;
    MemoryFileDialogs FileChoice;
    MemoryHelp Help;
    MemoryLibraries Libraries;
    DialogServices Services;

protected:
    TestDesktop(Resources& resources, DialogRunner& dialogs, ImageLists& images)
        : Messages(resources),
          Services{.Strings = resources,
                   .Dialogs = dialogs,
                   .Messages = Messages,
                   .FileChoice = FileChoice,
                   .Images = images,
                   .Help = Help,
                   .Libraries = Libraries} {}
};

} // namespace pmx::test
