#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>

namespace pmx {
namespace {

TEST(SystemClock, WaitsAtLeastAsLongAsAsked) {
    const auto before = std::chrono::steady_clock::now();
    SystemClock().Sleep(20);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(19));
}

} // namespace
} // namespace pmx
