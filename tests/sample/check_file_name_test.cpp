#include "host/QrtCommon.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using pmx::test::Sjis;

TEST(CheckFileNameTest, RefusesTheNineCharactersAndEmptyNames) {
    for (const char character : std::string("\\/:*?\"<>|")) {
        EXPECT_EQ(CheckFileName((std::string("a") + character + "b").c_str()), 0) << character;
    }
    EXPECT_EQ(CheckFileName(""), 0);
    EXPECT_EQ(CheckFileName(nullptr), 0);
}

TEST(CheckFileNameTest, AcceptsSecondBytesThatLookLikeThem) {
    for (const auto* name : {u8"表", u8"ソ", u8"ポ", u8"十", u8"ミ", u8"ｱｲｳ", u8"2面 (両面)"}) {
        EXPECT_NE(CheckFileName(Sjis(name).c_str()), 0) << Sjis(name);
    }
    EXPECT_EQ(CheckFileName((Sjis(u8"表") + "\\").c_str()), 0);
}

} // namespace
