#include "platform/posix/profile_text.h"

#include "support/profile_checks.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace pmx::test {

namespace {

using posix::Canonical;
using posix::CountControls;
using posix::IsCanonical;
using posix::LoneLead;

/// What CountControls gives, found the slow way.
std::optional<std::size_t> ControlsOneByOne(std::string_view text) {
    if (Canonical(text, LoneLead::Replaced) != text) {
        return std::nullopt;
    }
    return std::count_if(text.begin(), text.end(),
                         [](char character) { return static_cast<unsigned char>(character) < ' '; });
}

/// A text of pieces most of which are canonical.
std::string AnyText(std::mt19937& random) {
    constexpr std::string_view Pieces[] = {"a",
                                           "~",
                                           " ",
                                           "\r\n",
                                           "\x1F",
                                           std::string_view("\0", 1),
                                           "TemplateData",
                                           "\x83\x7E",
                                           "\x95\x5C",
                                           "\xB1",
                                           "\xA0",
                                           "\x80\x82\xA0",
                                           "\x7F",
                                           "\xFF",
                                           "\xE0\x40",
                                           "\xFA\x5C"};
    constexpr std::string_view Broken[] = {"\x83", "\xED\x40", "\x85\x40", "\x81\n"};
    std::string text;
    for (std::size_t count = random() % 24; count > 0; --count) {
        text +=
            random() % 50 == 0 ? Broken[random() % std::size(Broken)] : Pieces[random() % std::size(Pieces)];
    }
    return text;
}

TEST(ProfileTextTest, ControlsOfCanonicalTextsAreCounted) {
    std::mt19937 random(1);
    std::size_t canonical = 0;
    for (int run = 0; run < 20000; ++run) {
        const std::string text = AnyText(random);
        const std::optional<std::size_t> expected = ControlsOneByOne(text);
        ASSERT_EQ(CountControls(text), expected) << Escaped(text);
        ASSERT_EQ(IsCanonical(text), expected.has_value()) << Escaped(text);
        canonical += expected ? 1 : 0;
    }
    EXPECT_GT(canonical, 10000U);
    EXPECT_LT(canonical, 20000U);
}

TEST(ProfileTextTest, EveryPairOfBytesIsCanonicalIfItComesBackAsItIs) {
    for (unsigned pair = 0; pair <= 0xFFFF; ++pair) {
        const std::string text = {static_cast<char>(pair >> 8U), static_cast<char>(pair & 0xFFU)};
        for (const std::string& whole : {text, "0123456789" + text, text + "0123456789"}) {
            ASSERT_EQ(IsCanonical(whole), Canonical(whole, LoneLead::Replaced) == whole) << Escaped(whole);
            ASSERT_EQ(CountControls(whole), ControlsOneByOne(whole)) << Escaped(whole);
        }
    }
}

TEST(ProfileTextTest, AnEmptyTextIsCanonical) {
    EXPECT_TRUE(IsCanonical({}));
    EXPECT_EQ(CountControls({}), 0U);
}

} // namespace

} // namespace pmx::test
