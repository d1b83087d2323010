#include "frame/app.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto Own = ModuleHandle{0x1000};
constexpr auto FromHost = ModuleHandle{0x2000};

/// What the host's user library was asked, and what it answers.
struct UserLibraryState {
    std::vector<std::pair<void*, std::string>> Asked;
    void* Answer = nullptr;
    bool Raises = false;
};

UserLibraryState User;

extern "C" void* LoadDefaultResources(void* instance, const char* tag) {
    User.Asked.emplace_back(instance, tag);
    if (User.Raises) {
        throw std::runtime_error("an error of the host");
    }
    return User.Answer;
}

class FakeStates : public ModuleStates {
public:
    std::vector<ModuleHandle> Set;

    ModuleHandle OwnModule() const override { return Own; }
    ModuleHandle Current() const override { return ModuleHandle::None; }
    void SetResourceModule(ModuleHandle module) override { Set.push_back(module); }
    ModuleHandle ResourceModule() const override { return Set.empty() ? Own : Set.back(); }
    void RunInside(const std::function<void()>& work) override { work(); }
};

class AppTest : public testing::Test {
protected:
    AppTest() { User = {}; }

    FakeStates States;
    CPMXTemplUIApp App{&LoadDefaultResources, States};
};

TEST_F(AppTest, TheHostIsAskedWithTheOwnModuleAndTheTag) {
    EXPECT_TRUE(App.InitInstance());
    EXPECT_THAT(User.Asked, ElementsAre(std::pair(reinterpret_cast<void*>(Own), std::string("ENU"))));
}

TEST_F(AppTest, TheHostsResourceLibraryBecomesTheModulesResources) {
    User.Answer = reinterpret_cast<void*>(FromHost);
    EXPECT_TRUE(App.InitInstance());
    EXPECT_THAT(States.Set, ElementsAre(FromHost));
}

TEST_F(AppTest, TheOwnResourcesStayWhenTheHostHasNoLibraryForThem) {
    EXPECT_TRUE(App.InitInstance());
    EXPECT_THAT(States.Set, IsEmpty());
}

TEST_F(AppTest, TheOwnResourcesStayWithoutAChoiceOfTheHost) {
    CPMXTemplUIApp app(nullptr, States);
    EXPECT_TRUE(app.InitInstance());
    EXPECT_THAT(States.Set, IsEmpty());
}

TEST_F(AppTest, AnErrorInTheUserLibraryDoesNotKeepTheModuleFromLoading) {
    User.Raises = true;
    User.Answer = reinterpret_cast<void*>(FromHost);
    EXPECT_TRUE(App.InitInstance());
    EXPECT_EQ(User.Asked.size(), 1U);
    EXPECT_THAT(States.Set, IsEmpty());
}

TEST_F(AppTest, ASecondInitialisationLoadsNothing) {
    User.Answer = reinterpret_cast<void*>(FromHost);
    EXPECT_TRUE(App.InitInstance());
    EXPECT_TRUE(App.InitInstance());
    EXPECT_EQ(User.Asked.size(), 1U);
    EXPECT_THAT(States.Set, ElementsAre(FromHost));
}

TEST(App, TheBaseClassInitialisesSuccessfully) {
    CPmxApp base;
    EXPECT_TRUE(base.InitInstance());
}

} // namespace
} // namespace pmx::test
