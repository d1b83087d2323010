#include "docmgr/attribute_table.h"

#include <cstring>

#include <gtest/gtest.h>

namespace pmx::sample {
namespace {

bool Same(const AttributeTable& left, const AttributeTable& right) {
    return std::memcmp(&left, &right, TableSize) == 0;
}

AttributeTable TableOf(unsigned char byte) {
    AttributeTable table;
    std::memset(static_cast<void*>(&table), byte, TableSize);
    return table;
}

TEST(AttributeTableTest, NumbersAreStoredLeastSignificantByteFirst) {
    AttributeTable table = FreshTable();
    table.Document.Copies = std::uint16_t{0x1234};
    table.Document.Creep = std::int16_t{-2};
    const auto* bytes = reinterpret_cast<const unsigned char*>(&table);
    EXPECT_EQ(bytes[21], 0x34);
    EXPECT_EQ(bytes[22], 0x12);
    EXPECT_EQ(bytes[13], 0xFE);
    EXPECT_EQ(bytes[14], 0xFF);
    EXPECT_EQ(table.Document.Creep.Get(), -2);
}

TEST(AttributeTableTest, FreshTablePrintsOnePageOnEachFrontOfA4) {
    const AttributeTable table = FreshTable();
    EXPECT_EQ(table.Document.Paper.Get(), PaperSize::A4);
    EXPECT_EQ(table.Document.Sides.Get(), PrintSides::Front);
    EXPECT_EQ(table.Face.Pages.Get(), PagesPerFace::One);
    EXPECT_EQ(table.Document.Copies.Get(), 1);
}

TEST(AttributeTableTest, FreshTableIsWithinItsOwnLimits) {
    EXPECT_TRUE(Same(Limited(FreshTable()), FreshTable()));
}

TEST(AttributeTableTest, StandardSettingsDifferFromFreshOneAndFromEachOther) {
    AttributeTable twoUp = FreshTable();
    AttributeTable booklet = FreshTable();
    AttributeTable upperLeft = FreshTable();
    SetTwoUpBothSides(twoUp);
    SetSaddleStitchedBooklet(booklet);
    SetBothSidesBoundUpperLeft(upperLeft);
    EXPECT_FALSE(Same(twoUp, FreshTable()));
    EXPECT_FALSE(Same(booklet, twoUp));
    EXPECT_FALSE(Same(upperLeft, twoUp));
    EXPECT_FALSE(Same(upperLeft, booklet));
}

TEST(AttributeTableTest, StandardSettingsReplaceEachOther) {
    AttributeTable table = FreshTable();
    SetSaddleStitchedBooklet(table);
    SetBothSidesBoundUpperLeft(table);
    AttributeTable direct = FreshTable();
    SetBothSidesBoundUpperLeft(direct);
    EXPECT_TRUE(Same(table, direct));
}

TEST(AttributeTableTest, UnknownChoicesReadAsTheFirstOne) {
    const AttributeTable table = TableOf(0xFF);
    EXPECT_FALSE(table.Document.Paper.IsKnown());
    EXPECT_EQ(table.Document.Paper.Get(), PaperSize::A4);
    EXPECT_EQ(CountOf(table.Face.Pages), 1);
}

TEST(AttributeTableTest, LimitsBringEveryNumberIntoItsRange) {
    for (const unsigned char byte : {0x00, 0x7F, 0x80, 0xFF}) {
        const AttributeTable table = Limited(TableOf(byte));
        EXPECT_GE(table.Document.Copies.Get(), 1);
        EXPECT_GE(table.Document.CustomWidth.Get(), 900);
        EXPECT_LE(table.Document.CustomHeight.Get(), 4500);
        EXPECT_GE(table.Page.Percent.Get(), 25);
        EXPECT_LE(table.Page.Overrides.back().Percent.Get(), 400);
        EXPECT_LE(table.Face.Overrides.back().Edges.Right.Get(), 500);
    }
}

TEST(AttributeTableTest, LandscapePagesTurnThePaper) {
    AttributeTable table = FreshTable();
    table.Document.PageOrientation = Orientation::Landscape;
    EXPECT_EQ(PaperExtent(table.Document).Width, 2970);
    EXPECT_EQ(PaperExtent(table.Document).Height, 2100);
}

TEST(AttributeTableTest, TextOfFullLengthNeedsNoTerminatorAndLongerOneIsRefused) {
    Text<4> text;
    EXPECT_TRUE(text.Set("abcd"));
    EXPECT_EQ(text.Get(), "abcd");
    EXPECT_FALSE(text.Set("abcde"));
    EXPECT_EQ(text.Get(), "abcd");
    EXPECT_TRUE(text.Set("x"));
    EXPECT_EQ(text.Get(), "x");
}

} // namespace
} // namespace pmx::sample
