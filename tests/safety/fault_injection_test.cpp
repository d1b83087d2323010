// Every call of the services, and of the host, fails in turn, once or from then on, while an operation
// changes favorites. Whatever fails, no favorite is lost.
#include "safety/changing_operations.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

/// One of the things that may fail, with the ways in which it does.
struct Source {
    const char* Name;
    std::function<std::size_t(World&)> Calls;
    /// Lets the n-th call fail, once or from then on.
    std::function<void(World&, std::size_t number, bool forGood)> Fail;
};

template <typename Plan, typename Failure>
void FailIn(Plan& plan, std::size_t number, bool forGood, Failure failure) {
    if (forGood) {
        plan.FailFromAny(number, failure);
    } else {
        plan.FailAtAny(number, failure);
    }
}

Source FilesFailingWith(const char* name, FileError error) {
    return {name, [](World& world) { return world.Store.Disk.Plan.Calls(); },
            [error](World& world, std::size_t number, bool forGood) {
                FailIn(world.Store.Disk.Plan, number, forGood, error);
            }};
}

Source HostThat(const char* name, HostFailure failure) {
    return {name, [](World& world) { return world.Host.Plan.Calls(); },
            [failure](World& world, std::size_t number, bool forGood) {
                FailIn(world.Host.Plan, number, forGood, failure);
            }};
}

const Source Sources[] = {
    FilesFailingWith("files denied", FileError::Held),
    FilesFailingWith("files without room", FileError::Other),
    {"dialogs, pictures and libraries", [](World& world) { return world.Desktop.Plan.Calls(); },
     [](World& world, std::size_t number, bool forGood) {
         FailIn(world.Desktop.Plan, number, forGood, DesktopFailure{});
     }},
    HostThat("host refuses", HostFailure::Refuse),
    HostThat("host raises", HostFailure::Raise),
};

class FaultInjection : public testing::TestWithParam<Operation> {
protected:
    /// Runs the operation; an error of the host may pass on to the caller.
    static void Run(World& world) {
        try {
            GetParam().Run(world);
        } catch (const HostError&) {
        }
    }

    /// Lets call after call of `source` fail, until the operation makes no more.
    static void FailEachCall(const Source& source, bool forGood, const Outcome& outcome) {
        constexpr std::size_t MostCalls = 2000;
        bool wasReached = true;
        for (std::size_t number = 1; wasReached; ++number) {
            SCOPED_TRACE(testing::Message()
                         << source.Name << ", call " << number << (forGood ? " and all later ones" : ""));
            World world;
            source.Fail(world, number, forGood);
            Run(world);
            wasReached = source.Calls(world) >= number;
            ExpectNothingLost(GetParam(), outcome, world.Content());
            const bool mayLeaveFiles = forGood && std::string(source.Name).starts_with("files");
            if (!mayLeaveFiles) {
                EXPECT_EQ(world.LeftBehind(), std::vector<std::string>()) << "temporary files";
            }
            if (testing::Test::HasFailure()) {
                return;
            }
            ASSERT_LT(number, MostCalls);
        }
    }
};

TEST_P(FaultInjection, NoFavoriteIsLost) {
    const Outcome outcome = OutcomeOf(GetParam());
    for (const Source& source : Sources) {
        for (const bool forGood : {false, true}) {
            FailEachCall(source, forGood, outcome);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultInjection, testing::ValuesIn(ChangingOperations()),
                         [](const testing::TestParamInfo<Operation>& parameter) {
                             return std::string(parameter.param.Name);
                         });

} // namespace
} // namespace pmx::test
