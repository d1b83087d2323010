#pragma once

/// For tests that run on every kind of desktop there is:
///
///     class ExampleDlgTest : public testing::TestWithParam<DesktopKind> { AnyDesktop Screen; };
///     INSTANTIATE_TEST_SUITE_P(On, ExampleDlgTest, AllDesktops, NameOfDesktop);
///
/// Scripts of such tests take a DialogUser&. A fixture that other tests use on one kind only is a template over
/// the kind, and OnEachDesktop<Fixture> the one that the parameter is for.

#include "support/memory_window.h"

#ifdef _WIN32
#include "win32/support/real_desktop.h"
#endif

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace pmx::test {

enum class DesktopKind { Memory, Real };

#ifdef _WIN32
inline const auto AllDesktops = testing::Values(DesktopKind::Memory, DesktopKind::Real);
#else
inline const auto AllDesktops = testing::Values(DesktopKind::Memory);
#endif

inline std::string NameOfDesktop(const testing::TestParamInfo<DesktopKind>& test) {
    return test.param == DesktopKind::Memory ? "InMemory" : "InWindows";
}

inline std::unique_ptr<TestDesktop> MakeDesktop([[maybe_unused]] DesktopKind kind) {
#ifdef _WIN32
    if (kind == DesktopKind::Real) {
        return std::make_unique<RealDesktop>();
    }
#endif
    return std::make_unique<MemoryDesktop>();
}

/// The desktop that the test's parameter names.
class AnyDesktop {
    const std::unique_ptr<TestDesktop> Chosen =
        MakeDesktop(testing::WithParamInterface<DesktopKind>::GetParam());

public:
    struct AnyDialogs {
        using Script = TestDesktop::Script;

        TestDesktop& Owner;

        void OnOpened(ResourceId dialogTemplate, Script script) {
            Owner.OnOpened(dialogTemplate, std::move(script));
        }
    };

    AnyDialogs Dialogs{*Chosen};
    MemoryMessages& Messages = Chosen->Messages;
    MemoryFileDialogs& FileChoice = Chosen->FileChoice;
    MemoryHelp& Help = Chosen->Help;
    MemoryLibraries& Libraries = Chosen->Libraries;
    const DialogServices& Services = Chosen->Services;
};

template <template <class> class Fixture>
class OnEachDesktop : public Fixture<AnyDesktop>, public testing::WithParamInterface<DesktopKind> {};

} // namespace pmx::test
