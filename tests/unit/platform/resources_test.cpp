#include "platform/resources.h"

#include <gtest/gtest.h>

namespace pmx {
namespace {

TEST(Resources, AreEmptyForNumbersThatThereAreNot) {
    const Resources& resources = SystemResources();
    EXPECT_EQ(resources.StringOf(9999), std::nullopt);
    EXPECT_TRUE(resources.DialogTemplateOf(9999).empty());
    EXPECT_TRUE(resources.BitmapOf(9999).empty());
    EXPECT_FALSE(resources.DialogTemplateOf(100).empty());
    EXPECT_FALSE(resources.BitmapOf(2001).empty());
}

} // namespace
} // namespace pmx
