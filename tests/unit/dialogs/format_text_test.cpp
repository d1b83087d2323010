#include "dialogs/base/format_text.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

namespace pmx {
namespace {

using test::Sjis;

TEST(FormatText, ReplacesPlaceholdersInOrder) {
    EXPECT_EQ(FormatText("%s of %d", {std::string_view("one"), std::int64_t{20}}), "one of 20");
    EXPECT_EQ(FormatText(Sjis(u8"\"%s\"のアイコンの変更"), {std::string_view(Sjis(u8"ミ表"))}),
              Sjis(u8"\"ミ表\"のアイコンの変更"));
}

TEST(FormatText, AnyPlaceholderTakesAnyArgument) {
    EXPECT_EQ(FormatText("%d %s", {std::string_view("text"), std::int64_t{-7}}), "text -7");
}

TEST(FormatText, LeavesPlaceholdersWithoutArgumentAsTheyAre) {
    EXPECT_EQ(FormatText("%s and %s", {std::string_view("one")}), "one and %s");
    EXPECT_EQ(FormatText("%d", {}), "%d");
}

TEST(FormatText, IgnoresArgumentsWithoutPlaceholder) {
    EXPECT_EQ(FormatText("none", {std::int64_t{1}}), "none");
}

TEST(FormatText, LeavesOtherUsesOfThePercentSignAsTheyAre) {
    EXPECT_EQ(FormatText("%n%5d%", {std::int64_t{1}}), "%n%5d%");
}

TEST(FormatText, DoublePercentIsAPercentSign) {
    EXPECT_EQ(FormatText("100%%s%d", {std::int64_t{1}}), "100%s1");
}

TEST(FormatText, DoesNotLookIntoArguments) {
    EXPECT_EQ(FormatText("%s%s", {std::string_view("%s"), std::string_view("%d")}), "%s%d");
}

TEST(FormatText, EmptyPatternGivesEmptyText) {
    EXPECT_EQ(FormatText("", {std::int64_t{1}}), "");
}

} // namespace
} // namespace pmx
