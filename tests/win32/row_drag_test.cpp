#include "platform/win32/row_drag.h"

#include "support/list_dialog_test.h"

#include <commctrl.h>

// Rows that are dragged with the mouse, in parts.

namespace pmx {
namespace {

using test::DialogDriver;
using test::RealDesktop;
using test::RealUser;

using Names = std::vector<std::string>;

class RowDragTest : public test::EditorTestOn<RealDesktop> {
protected:
    void GivenFavorites(int count) {
        std::vector<test::ListedFavorite> favorites;
        favorites.reserve(static_cast<std::size_t>(count));
        for (int number = 0; number < count; ++number) {
            favorites.push_back({.Name = "F" + std::to_string(number)});
        }
        Given(favorites);
    }

    static POINT In(const RealUser& user, int row) {
        constexpr LONG InName = 100;
        const RECT area = user.AreaOfRow(List, row);
        return {InName, (area.top + area.bottom) / 2};
    }

    /// Takes the first row and holds it over the lower half of the third.
    static POINT HoldFirstBelowThird(RealUser& user) {
        POINT place = In(user, 2);
        place.y = user.AreaOfRow(List, 2).bottom - 2;
        user.HoldAt(List, In(user, 0));
        user.MoveTo(List, In(user, 1));
        user.MoveTo(List, place);
        return place;
    }

    static LRESULT Top(const RealUser& user) { return SendMessageW(user.Item(List), LVM_GETTOPINDEX, 0, 0); }
};

TEST_F(RowDragTest, NothingMovesBeforeTheButtonIsReleased) {
    GivenFavorites(3);
    RunAndCancel([](RealUser& user) {
        const POINT place = HoldFirstBelowThird(user);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F1", "F2"}));
        user.Release(List, place);
        EXPECT_EQ(NamesInRows(user), (Names{"F1", "F2", "F0"}));
        EXPECT_EQ(user.SelectedRow(List), 2);
    });
}

TEST_F(RowDragTest, EscapeLeavesTheRowAndTheDialog) {
    GivenFavorites(3);
    RunAndCancel([](RealUser& user) {
        const POINT place = HoldFirstBelowThird(user);
        user.Escape();
        ASSERT_TRUE(user.IsOpen());
        user.MoveTo(List, In(user, 1));
        user.Release(List, place);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F1", "F2"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        user.DragRow(List, 1, 2);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F2", "F1"})) << "the next one counts";
    });
}

TEST_F(RowDragTest, RightButtonLeavesTheRow) {
    GivenFavorites(3);
    RunAndCancel([](RealUser& user) {
        const POINT place = HoldFirstBelowThird(user);
        user.PressRightButton(List, place);
        user.Release(List, place);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F1", "F2"}));
        user.ClickRow(List, 1);
        EXPECT_EQ(user.SelectedRow(List), 1);
    });
}

TEST_F(RowDragTest, KeyMeanwhileDoesNothingElse) {
    GivenFavorites(3);
    RunAndCancel([](RealUser& user) {
        const POINT place = HoldFirstBelowThird(user);
        user.Key(test::key::Delete);
        user.Release(List, place);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F1", "F2"}));
    });
}

TEST_F(RowDragTest, ClickWithAShakingHandIsAClick) {
    GivenFavorites(3);
    RunAndCancel([](RealUser& user) {
        const RECT row = user.AreaOfRow(List, 1);
        const POINT box{row.left + 8, (row.top + row.bottom) / 2};
        user.HoldAt(List, box);
        user.MoveTo(List, {box.x + 1, box.y + 1});
        user.Release(List, {box.x + 1, box.y + 1});
        EXPECT_EQ(user.StateImage(List, 1), 2);
        EXPECT_EQ(NamesInRows(user), (Names{"F0", "F1", "F2"}));
    });
}

TEST_F(RowDragTest, ListScrollsWhileTheMouseIsAtItsEdge) {
    GivenFavorites(60);
    RunAndAccept([](RealUser& user) {
        RECT area{};
        GetClientRect(user.Item(List), &area);
        const POINT bottom{100, area.bottom - 2};
        user.HoldAt(List, In(user, 1));
        user.MoveTo(List, In(user, 3));
        user.MoveTo(List, bottom);
        EXPECT_TRUE(DialogDriver::WaitUntil([&user] { return Top(user) >= 5; }));
        user.Release(List, bottom);
        const int dropped = user.SelectedRow(List);
        EXPECT_GT(dropped, 10);
        EXPECT_EQ(user.Cell(List, dropped, test::NameColumn), "F1");

        const POINT top{100, user.AreaOfRow(List, static_cast<int>(Top(user))).top + 2};
        user.HoldAt(List, In(user, dropped - 2));
        user.MoveTo(List, In(user, dropped - 4));
        user.MoveTo(List, top);
        EXPECT_TRUE(DialogDriver::WaitUntil([&user] { return Top(user) == 0; }));
        user.Release(List, top);
        EXPECT_EQ(user.SelectedRow(List), 0);
    });
}

} // namespace
} // namespace pmx
