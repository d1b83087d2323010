#include "platform/module_state.h"

#include "platform/guard.h"
#include "platform/win32/handles.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <thread>

#include <windows.h>

namespace pmx {
namespace {

constexpr DWORD ForeignException = 0xE0001234;
constexpr WORD Manifest = 2;

/// The activation context of the calling thread. Not owning; null for none.
HANDLE CurrentContext() {
    HANDLE context = nullptr;
    EXPECT_TRUE(GetCurrentActCtx(&context));
    if (context) {
        ReleaseActCtx(context);
    }
    return context;
}

/// An activation context that belongs to somebody else, current as long as this lives.
class ForeignContext {
public:
    ForeignContext() {
        ACTCTXW request{};
        request.cbSize = sizeof request;
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = GetModuleHandleW(nullptr);
        request.lpResourceName = MAKEINTRESOURCEW(Manifest);
        Context = CreateActCtxW(&request);
        EXPECT_NE(Context, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(ActivateActCtx(Context, &Cookie));
    }
    ~ForeignContext() {
        EXPECT_TRUE(DeactivateActCtx(0, Cookie)) << "another context was left above this one";
        ReleaseActCtx(Context);
    }
    ForeignContext(const ForeignContext&) = delete;
    ForeignContext& operator=(const ForeignContext&) = delete;

    HANDLE Get() const { return Context; }

private:
    HANDLE Context = nullptr;
    ULONG_PTR Cookie = 0;
};

class ModuleStateOfWindows : public testing::Test {
protected:
    void TearDown() override { States.SetResourceModule(ModuleHandle::None); }

    /// The state is that of a caller who has nothing of the library's.
    void ExpectCallersState(HANDLE context) {
        EXPECT_EQ(States.Current(), ModuleHandle::None);
        EXPECT_EQ(CurrentContext(), context);
    }

    ModuleStates& States = SystemModuleStates();
};

TEST_F(ModuleStateOfWindows, OwnModuleIsTheOneWithThisCode) {
    EXPECT_EQ(States.OwnModule(), win32::FromSystem(GetModuleHandleW(nullptr)));
    EXPECT_EQ(States.ResourceModule(), States.OwnModule());
}

TEST_F(ModuleStateOfWindows, InsideTheLibrarysModuleAndContextAreCurrent) {
    const ForeignContext host;
    HANDLE inside = nullptr;
    States.RunInside([&] {
        EXPECT_EQ(States.Current(), States.OwnModule());
        inside = CurrentContext();
    });
    EXPECT_NE(inside, nullptr);
    EXPECT_NE(inside, host.Get());
    ExpectCallersState(host.Get());
}

TEST_F(ModuleStateOfWindows, CallerWithoutAContextHasNoneAgain) {
    const HANDLE before = CurrentContext();
    States.RunInside([&] { EXPECT_NE(CurrentContext(), before); });
    ExpectCallersState(before);
}

TEST_F(ModuleStateOfWindows, InsideTheChosenResourceModuleIsCurrent) {
    const auto chosen = win32::FromSystem(GetModuleHandleW(L"kernel32.dll"));
    States.SetResourceModule(chosen);
    States.RunInside([&] {
        EXPECT_EQ(States.Current(), chosen);
        States.SetResourceModule(ModuleHandle::None);
        EXPECT_EQ(States.Current(), chosen) << "a call keeps what it began with";
    });
    EXPECT_EQ(States.ResourceModule(), States.OwnModule());
}

TEST_F(ModuleStateOfWindows, NestedCallRestoresTheStateOfTheOuterOne) {
    const ForeignContext host;
    States.RunInside([&] {
        const HANDLE outer = CurrentContext();
        {
            const ForeignContext dialogOfTheHost;
            States.RunInside([&] { EXPECT_EQ(CurrentContext(), outer); });
            EXPECT_EQ(CurrentContext(), dialogOfTheHost.Get());
        }
        EXPECT_EQ(CurrentContext(), outer);
        EXPECT_EQ(States.Current(), States.OwnModule());
    });
    ExpectCallersState(host.Get());
}

TEST_F(ModuleStateOfWindows, ExceptionPassesOnAndTheCallersStateIsRestored) {
    const ForeignContext host;
    EXPECT_THROW(States.RunInside([] { throw std::runtime_error("raised"); }), std::runtime_error);
    ExpectCallersState(host.Get());
}

TEST_F(ModuleStateOfWindows, ExceptionOfAnotherRunTimeRestoresTheCallersState) {
    const ForeignContext host;
    EXPECT_FALSE(
        RunGuarded([&] { States.RunInside([] { RaiseException(ForeignException, 0, 0, nullptr); }); }));
    ExpectCallersState(host.Get());
}

TEST_F(ModuleStateOfWindows, ContextThatAnExceptionLeftBehindGoesToo) {
    const ForeignContext host;
    EXPECT_FALSE(RunGuarded([&] {
        States.RunInside([&] {
            ULONG_PTR cookie = 0;
            ActivateActCtx(host.Get(), &cookie);
            RaiseException(ForeignException, 0, 0, nullptr);
        });
    }));
    ExpectCallersState(host.Get());
}

TEST_F(ModuleStateOfWindows, OtherThreadsKeepTheirState) {
    ModuleHandle elsewhere = States.OwnModule();
    States.RunInside([&] { std::thread([&] { elsewhere = States.Current(); }).join(); });
    EXPECT_EQ(elsewhere, ModuleHandle::None);
}

} // namespace
} // namespace pmx
