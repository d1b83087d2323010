#pragma once

/// For tests that run over every kind of desktop there is:
///
///     template <class Desktop> class ExampleDlgTest : public testing::Test { Desktop Screen; };
///     TYPED_TEST_SUITE(ExampleDlgTest, AllDesktops);
///
/// Scripts of such tests take a DialogUser&.

#include "support/memory_window.h"

#ifdef _WIN32
#include "win32/support/real_desktop.h"
#endif

#include <gtest/gtest.h>

namespace pmx::test {

#ifdef _WIN32
using AllDesktops = testing::Types<MemoryDesktop, RealDesktop>;
#else
using AllDesktops = testing::Types<MemoryDesktop>;
#endif

} // namespace pmx::test
