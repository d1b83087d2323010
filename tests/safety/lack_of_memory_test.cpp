// Each allocation that an operation makes is refused in turn, once or from then on, while it changes
// favorites through the store, an export or a dialog. No favorite is lost, and nothing is left behind.
#include "memory/counting_new.h"
#include "safety/changing_operations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

/// Every so manyth allocation is refused: all of them where that is fast, some where the same code runs
/// again.
#if defined(PMX_UNDER_SANITIZERS)
constexpr std::size_t Step = 2;
#elif defined(_WIN32)
constexpr std::size_t Step = 7;
#else
constexpr std::size_t Step = 1;
#endif

/// Hands events on. What the dialog does with them counts.
class CountedEvents final : public DialogEvents {
public:
    explicit CountedEvents(DialogEvents& events) : Events(events) {}

    bool OnOpened(DialogWindow& window) override {
        const MemoryScope scope(true);
        return Events.OnOpened(window);
    }
    void OnEvent(const ControlEvent& event) override {
        const MemoryScope scope(true);
        Events.OnEvent(event);
    }
    void OnHelpAsked(const HelpRequest& request) override {
        const MemoryScope scope(true);
        Events.OnHelpAsked(request);
    }
    void OnOkAsked() override {
        const MemoryScope scope(true);
        Events.OnOkAsked();
    }
    void OnCancelAsked() override {
        const MemoryScope scope(true);
        Events.OnCancelAsked();
    }
    void OnClosed() override {
        const MemoryScope scope(true);
        Events.OnClosed();
    }

private:
    DialogEvents& Events;
};

/// Runs the dialogs of a desktop. What its user does does not count.
class CountedDialogs final : public DialogRunner {
public:
    explicit CountedDialogs(QuietDesktop& desktop) : Dialogs(desktop.Inner.Dialogs) { desktop.Runner = this; }

    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override {
        const MemoryScope scope(false);
        CountedEvents counted(events);
        return Dialogs.Run(dialogTemplate, parent, counted);
    }

private:
    DialogRunner& Dialogs;
};

class LackOfMemory : public testing::TestWithParam<Operation> {
protected:
    /// Runs the operation; false when lack of memory passes on to the caller, which an export turns into its
    /// failure result.
    static bool Run(World& world) {
        try {
            GetParam().Run(world);
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    static void ExpectNothingHeld(World& world) {
        EXPECT_EQ(world.Host.LiveDocuments, 0U);
        EXPECT_EQ(world.Desktop.Inner.Libraries.Loaded, 0);
        EXPECT_EQ(world.Desktop.Inner.Dialogs.WaitCursors, 0);
        EXPECT_EQ(MemoryIcon::Count(), 0);
    }

    /// Whether an operation that lack of memory has ended must leave no favorite that did not get into the
    /// list. One that has been stored stays when the list fails to be written.
    static bool MayLeaveNoFavorite() {
        const std::string name = GetParam().Name;
        return name != "StoreNew" && name != "Register";
    }

    /// No favorite file is there that neither the list names nor the folder held before.
    static void ExpectNoFileWithoutAFavorite(const Outcome& outcome, const FolderContent& now) {
        for (const auto& [name, bytes] : now.Favorites) {
            const std::string end = "~" + name;
            const bool isListed = std::any_of(now.List.begin(), now.List.end(),
                                              [&](const std::string& value) { return value.ends_with(end); });
            EXPECT_TRUE(isListed || outcome.Before.Favorites.contains(name)) << name << " is in no list";
        }
    }

    /// False when the operation needs no more allocations than are granted.
    static bool RunWith(std::size_t granted, std::size_t refused, const Outcome& outcome) {
        World world;
        const CountedDialogs dialogs(world.Desktop);
        bool isComplete = false;
        bool wasFelt = false;
        {
            const NoMemory lack(granted, refused);
            isComplete = Run(world);
            wasFelt = lack.WasFelt();
        }
        EXPECT_TRUE(isComplete || wasFelt);
        ExpectNothingHeld(world);
        const FolderContent now = world.Content();
        ExpectNothingLost(GetParam(), outcome, now);
        // With no memory at all, not even a name can be put together to delete a file.
        if (refused == 1) {
            EXPECT_EQ(world.LeftBehind(), std::vector<std::string>()) << "temporary files";
            if (!isComplete && MayLeaveNoFavorite()) {
                ExpectNoFileWithoutAFavorite(outcome, now);
            }
        }
        return wasFelt;
    }
};

TEST_P(LackOfMemory, LosesNoFavorite) {
    const Outcome outcome = OutcomeOf(GetParam());
    for (const std::size_t refused : {std::size_t{1}, std::numeric_limits<std::size_t>::max()}) {
        constexpr std::size_t MostAllocations = 50'000;
        std::size_t granted = 0;
        while (RunWith(granted, refused, outcome)) {
            ASSERT_FALSE(HasFailure())
                << "allocation " << granted + 1 << (refused == 1 ? "" : " and all later ones");
            granted += Step;
            ASSERT_LT(granted, MostAllocations);
        }
        RecordProperty(refused == 1 ? "allocations" : "allocations_for_good", std::to_string(granted));
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, LackOfMemory, testing::ValuesIn(ChangingOperations()),
                         [](const testing::TestParamInfo<Operation>& parameter) {
                             return std::string(parameter.param.Name);
                         });

} // namespace
} // namespace pmx::test
