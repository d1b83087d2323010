#include "platform/module_state.h"

#include <gtest/gtest.h>

#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#endif

namespace pmx::test {
namespace {

class ModuleStateTest : public testing::Test {
protected:
    ModuleStates& States = SystemModuleStates();
    const ModuleHandle Before = States.Current();
};

TEST_F(ModuleStateTest, TheModulesResourcesAreCurrentInsideAndTheCallersAgainAfterwards) {
    ModuleHandle inside = ModuleHandle::None;
    States.RunInside([&] { inside = States.Current(); });
    EXPECT_EQ(inside, States.ResourceModule());
    EXPECT_EQ(States.Current(), Before);
    EXPECT_NE(States.OwnModule(), ModuleHandle::None);
}

TEST_F(ModuleStateTest, AFailureThatPassesOnRestoresTheCallersState) {
    EXPECT_THROW(States.RunInside([] { throw std::runtime_error("failure"); }), std::runtime_error);
    EXPECT_EQ(States.Current(), Before);
}

TEST_F(ModuleStateTest, ACallFromInsideReturnsInside) {
    ModuleHandle afterwards = ModuleHandle::None;
    States.RunInside([&] {
        States.RunInside([] {});
        afterwards = States.Current();
    });
    EXPECT_EQ(afterwards, States.ResourceModule());
    EXPECT_EQ(States.Current(), Before);
}

TEST_F(ModuleStateTest, AChosenResourceModuleTakesThePlaceOfTheLibrarysOwn) {
    constexpr ModuleHandle Chosen{77};
    States.SetResourceModule(Chosen);
    ModuleHandle inside = ModuleHandle::None;
    States.RunInside([&] { inside = States.Current(); });
    EXPECT_EQ(States.ResourceModule(), Chosen);
    EXPECT_EQ(inside, Chosen);
    States.SetResourceModule(ModuleHandle::None);
    EXPECT_EQ(States.ResourceModule(), States.OwnModule());
}

#ifdef _WIN32
TEST_F(ModuleStateTest, TheActivationContextIsTheCallersAgainAlsoAfterAFailure) {
    const auto current = [] {
        HANDLE context = nullptr;
        EXPECT_TRUE(GetCurrentActCtx(&context));
        if (context != nullptr) {
            ReleaseActCtx(context);
        }
        return context;
    };
    const HANDLE before = current();
    HANDLE inside = nullptr;
    EXPECT_THROW(States.RunInside([&] {
        inside = current();
        throw std::runtime_error("failure");
    }),
                 std::runtime_error);
    EXPECT_NE(inside, before);
    EXPECT_EQ(current(), before);
}
#endif

} // namespace
} // namespace pmx::test
