#include "layout/imposition.h"
#include "layout/layout.h"

#include <cstring>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pmx::sample {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const Original TwelvePages{12, {1, 3, 8}};

AttributeTable TwoUp() {
    AttributeTable table = FreshTable();
    SetTwoUpBothSides(table);
    return table;
}

AttributeTable SaddleStitched() {
    AttributeTable table = FreshTable();
    SetSaddleStitchedBooklet(table);
    return table;
}

AttributeTable UpperLeft() {
    AttributeTable table = FreshTable();
    SetBothSidesBoundUpperLeft(table);
    return table;
}

TEST(ImpositionTest, FreshTableGivesOnePageASheet) {
    const auto sheets = Impose(FreshTable(), TwelvePages);
    ASSERT_THAT(sheets, SizeIs(12));
    EXPECT_THAT(sheets[4].Front, ElementsAre(5));
    EXPECT_THAT(sheets[4].Back, IsEmpty());
}

TEST(ImpositionTest, TwoUpOnBothSidesGivesFourPagesASheet) {
    const auto sheets = Impose(TwoUp(), TwelvePages);
    ASSERT_THAT(sheets, SizeIs(3));
    EXPECT_THAT(sheets[1].Front, ElementsAre(5, 6));
    EXPECT_THAT(sheets[1].Back, ElementsAre(7, 8));
}

TEST(ImpositionTest, BookletPutsOuterPagesOutside) {
    const auto sheets = Impose(SaddleStitched(), TwelvePages);
    ASSERT_THAT(sheets, SizeIs(3));
    EXPECT_THAT(sheets[0].Front, ElementsAre(12, 1));
    EXPECT_THAT(sheets[0].Back, ElementsAre(2, 11));
    EXPECT_THAT(sheets[2].Front, ElementsAre(8, 5));
    EXPECT_THAT(sheets[2].Back, ElementsAre(6, 7));
}

TEST(ImpositionTest, BookletBoundAtTheRightIsMirrored) {
    AttributeTable table = SaddleStitched();
    table.Document.Binding = Edge::Right;
    EXPECT_THAT(Impose(table, TwelvePages)[0].Front, ElementsAre(1, 12));
}

TEST(ImpositionTest, BookletOfSignaturesStartsAnewInEach) {
    AttributeTable table = SaddleStitched();
    table.Document.SheetsPerSignature = std::uint16_t{2};
    const auto sheets = Impose(table, TwelvePages);
    ASSERT_THAT(sheets, SizeIs(3));
    EXPECT_THAT(sheets[0].Front, ElementsAre(8, 1));
    EXPECT_THAT(sheets[2].Front, ElementsAre(12, 9));
}

TEST(ImpositionTest, BookletFillsUpWithEmptyPlaces) {
    const auto sheets = Impose(SaddleStitched(), {10, {1}});
    ASSERT_THAT(sheets, SizeIs(3));
    EXPECT_THAT(sheets[0].Front, ElementsAre(0, 1));
    EXPECT_THAT(sheets[0].Back, ElementsAre(2, 0));
}

TEST(ImpositionTest, OrderOfPagesFollowsTheTable) {
    AttributeTable table = FreshTable();
    table.Face.Pages = PagesPerFace::Four;
    EXPECT_THAT(Impose(table, TwelvePages)[0].Front, ElementsAre(1, 2, 3, 4));
    table.Face.Order = PageOrder::DownThenRight;
    EXPECT_THAT(Impose(table, TwelvePages)[0].Front, ElementsAre(1, 3, 2, 4));
    table.Face.Order = PageOrder::LeftThenDown;
    EXPECT_THAT(Impose(table, TwelvePages)[0].Front, ElementsAre(2, 1, 4, 3));
    table.Face.Order = PageOrder::DownThenLeft;
    EXPECT_THAT(Impose(table, TwelvePages)[0].Front, ElementsAre(3, 1, 4, 2));
}

TEST(ImpositionTest, SectionsCanStartOnNewFaceOrSheet) {
    AttributeTable table = TwoUp();
    table.Section.StartsOn = SectionStart::NewFace;
    EXPECT_THAT(Impose(table, TwelvePages)[1].Back, ElementsAre(7, 0));
    table.Section.StartsOn = SectionStart::NewSheet;
    const auto sheets = Impose(table, TwelvePages);
    EXPECT_THAT(sheets[0].Front, ElementsAre(1, 2));
    EXPECT_THAT(sheets[0].Back, ElementsAre(0, 0));
    EXPECT_THAT(sheets[1].Front, ElementsAre(3, 4));
}

TEST(ImpositionTest, TabSheetsStandBeforeEachSection) {
    AttributeTable table = FreshTable();
    table.Section.TabSheet = true;
    const auto sheets = Impose(table, TwelvePages);
    ASSERT_THAT(sheets, SizeIs(15));
    EXPECT_EQ(sheets[0].Kind, SheetKind::Tab);
    EXPECT_EQ(sheets[3].Kind, SheetKind::Tab);
    EXPECT_EQ(sheets[3].Section, 2);
}

TEST(ImpositionTest, PrintedCoversTakeTheirPagesFromTheDocument) {
    AttributeTable table = UpperLeft();
    table.Document.FrontCover.Kind = Cover::PrintedOutside;
    table.Document.BackCover.Kind = Cover::PrintedOutside;
    const auto sheets = Impose(table, TwelvePages);
    ASSERT_THAT(sheets, SizeIs(7));
    EXPECT_THAT(sheets.front().Front, ElementsAre(1));
    EXPECT_THAT(sheets.front().Back, IsEmpty());
    EXPECT_THAT(sheets[1].Front, ElementsAre(2));
    EXPECT_EQ(sheets.back().Kind, SheetKind::BackCover);
    EXPECT_THAT(sheets.back().Front, IsEmpty());
    EXPECT_THAT(sheets.back().Back, ElementsAre(12));
}

TEST(LayoutTest, BindingChangesSidesWhenTheSheetIsTurnedOver) {
    const auto layout = LayOut(UpperLeft(), TwelvePages);
    const SheetLayout& sheet = layout.Sheets[0];
    ASSERT_THAT(sheet.Front.Staples, SizeIs(1));
    EXPECT_LT(sheet.Front.Staples[0].From.X, sheet.Paper.Width / 2);
    EXPECT_GT(sheet.Back.Staples[0].From.X, sheet.Paper.Width / 2);
    EXPECT_LT(sheet.Back.Staples[0].From.Y, sheet.Paper.Height / 2);
}

TEST(LayoutTest, TwoUpTurnsThePaper) {
    EXPECT_EQ(LayOut(TwoUp(), TwelvePages).Sheets[0].Paper.Width, 2970);
    EXPECT_EQ(LayOut(FreshTable(), TwelvePages).Sheets[0].Paper.Width, 2100);
}

TEST(LayoutTest, GutterWidensTheBoundEdgeOnBothSides) {
    AttributeTable table = UpperLeft();
    table.Face.Gutter = std::uint16_t{150};
    const auto layout = LayOut(table, TwelvePages);
    EXPECT_EQ(layout.Sheets[0].Front.Printable.X, 200);
    EXPECT_EQ(layout.Sheets[0].Back.Printable.X, 50);
    EXPECT_EQ(layout.Sheets[0].Back.Printable.Right(), 2100 - 200);
}

TEST(LayoutTest, NumbersAreWrittenAsAsked) {
    AttributeTable table = FreshTable();
    EXPECT_THAT(LayOut(table, TwelvePages).Sheets[3].Front.Texts, IsEmpty());
    table.Document.NumberAt = NumberPlace::BottomOutside;
    const auto wordsOfFourth = [&](NumberFormat format) {
        table.Document.NumberAs = format;
        return LayOut(table, TwelvePages).Sheets[3].Front.Texts.at(0).Words;
    };
    EXPECT_EQ(wordsOfFourth(NumberFormat::Plain), "4");
    EXPECT_EQ(wordsOfFourth(NumberFormat::Dashes), "- 4 -");
    EXPECT_EQ(wordsOfFourth(NumberFormat::OfTotal), "4 / 12");
    EXPECT_EQ(wordsOfFourth(NumberFormat::Roman), "iv");
    EXPECT_EQ(wordsOfFourth(NumberFormat::SectionAndNumber), "2-4");
    table.Section.RestartNumbers = true;
    EXPECT_EQ(wordsOfFourth(NumberFormat::SectionAndNumber), "2-2");
    EXPECT_EQ(LayOut(table, TwelvePages).Sheets[3].Front.Texts[0].At, TextPlace::Left);
    EXPECT_EQ(LayOut(table, TwelvePages).Sheets[4].Front.Texts[0].At, TextPlace::Right);
}

TEST(LayoutTest, PagesLieInsideTheirCellsWhenFitted) {
    for (const auto pages :
         {PagesPerFace::One, PagesPerFace::Two, PagesPerFace::Six, PagesPerFace::Sixteen}) {
        AttributeTable table = FreshTable();
        table.Face.Pages = pages;
        table.Face.GapX = table.Face.GapY = std::uint16_t{30};
        const auto layout = LayOut(table, TwelvePages);
        for (const auto& page : layout.Sheets[0].Front.Pages) {
            EXPECT_GE(page.Area.X, page.Cell.X);
            EXPECT_LE(page.Area.Right(), page.Cell.Right());
            EXPECT_GE(page.Area.Y, page.Cell.Y);
            EXPECT_LE(page.Area.Bottom(), page.Cell.Bottom());
        }
    }
}

TEST(LayoutTest, EveryPageAppearsOnceWhateverTheTableHolds) {
    std::mt19937 random(4711);
    for (int round = 0; round < 300; ++round) {
        AttributeTable table;
        std::vector<unsigned char> bytes(TableSize);
        for (auto& byte : bytes) {
            byte = static_cast<unsigned char>(random() % (round % 2 == 0 ? 256 : 4));
        }
        std::memcpy(static_cast<void*>(&table), bytes.data(), TableSize);
        std::vector<int> seen(13);
        for (const auto& sheet : LayOut(table, TwelvePages).Sheets) {
            for (const FaceLayout* face : {&sheet.Front, &sheet.Back}) {
                for (const auto& page : face->Pages) {
                    ++seen.at(static_cast<std::size_t>(page.Number));
                }
            }
        }
        EXPECT_THAT(seen, ElementsAre(0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1));
    }
}

TEST(LayoutTest, EmptyDocumentHasNoSheets) {
    EXPECT_THAT(LayOut(FreshTable(), {0, {}}).Sheets, IsEmpty());
    EXPECT_THAT(LayOut(SaddleStitched(), {0, {}}).Sheets, IsEmpty());
}

} // namespace
} // namespace pmx::sample
