#include "dialogs/base/icon_dlg.h"

#include "dialogs/base/favorite_icons.h"
#include "res/ids.h"
#include "support/desktops.h"
#include "support/memory_window.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace pmx {
namespace {

using test::DialogUser;
using test::MemoryDesktop;
using test::MemoryList;
using test::MemoryUser;
using test::Sjis;

constexpr ControlId Picker = control::PickerIcons;

class IconPickerTest : public testing::TestWithParam<test::DesktopKind> {
protected:
    /// Runs the picker for a favorite with that icon; the icon afterwards.
    std::int64_t Pick(std::int64_t icon, const std::function<void(DialogUser&)>& script) {
        CPMXTemplUIIconDlg picker(icon, 0, std::nullopt, WindowHandle::None, Screen.Services);
        Screen.Dialogs.OnOpened(dialog::IconPicker, script);
        Code = picker.DoModal();
        return picker.IconValue();
    }

    int InitialRow(std::int64_t icon) {
        int row = -1;
        Pick(icon, [&row](DialogUser& user) {
            row = user.SelectedRow(Picker);
            user.Escape();
        });
        return row;
    }

    test::AnyDesktop Screen;
    int Code = 0;
};

INSTANTIATE_TEST_SUITE_P(On, IconPickerTest, test::AllDesktops, test::NameOfDesktop);

TEST_P(IconPickerTest, Shows46IconsAndTheStandardTitle) {
    Pick(14, [](DialogUser& user) {
        EXPECT_EQ(user.RowCount(Picker), 46);
        EXPECT_EQ(user.Title(), Sjis(u8"アイコンの変更"));
        EXPECT_EQ(user.Focused(), Picker);
        user.Escape();
    });
}

TEST_P(IconPickerTest, SelectsTheIconOfTheFavoriteOrTheFirst) {
    EXPECT_EQ(InitialRow(14), 0);
    EXPECT_EQ(InitialRow(59), 45);
    EXPECT_EQ(InitialRow(3), 0);
    EXPECT_EQ(InitialRow(60), 0);
}

TEST_P(IconPickerTest, OkReturnsTheUntouchedSelection) {
    EXPECT_EQ(Pick(59, [](DialogUser& user) { user.Press(control::Ok); }), 59);
    EXPECT_EQ(Code, CodeOk);
    EXPECT_EQ(Pick(3, [](DialogUser& user) { user.Enter(); }), 14);
}

TEST_P(IconPickerTest, DoubleClickOrEnterOnAnIconTakesIt) {
    EXPECT_EQ(Pick(14, [](DialogUser& user) { user.DoubleClickRow(Picker, 3); }), 17);
    EXPECT_EQ(Code, CodeOk);
    const std::int64_t entered = Pick(14, [](DialogUser& user) {
        user.ClickRow(Picker, 5);
        user.Enter();
    });
    EXPECT_EQ(entered, 19);
    EXPECT_EQ(Code, CodeOk);
}

TEST_P(IconPickerTest, ClickBesideTheIconsKeepsTheOneThatWasSelected) {
    const std::int64_t icon = Pick(14, [](DialogUser& user) {
        user.ClickRow(Picker, 3);
        user.ClickBesideRows(Picker);
        user.Press(control::Ok);
    });
    EXPECT_EQ(icon, 17);
}

TEST_P(IconPickerTest, OkReturnsTheIconThatTheUserSelected) {
    const std::int64_t clicked = Pick(14, [](DialogUser& user) {
        user.ClickRow(Picker, 40);
        EXPECT_EQ(user.SelectedRow(Picker), 40);
        user.Press(control::Ok);
    });
    EXPECT_EQ(clicked, 54);
    const std::int64_t lastByKey = Pick(14, [](DialogUser& user) {
        user.Key(test::key::End);
        user.Enter();
    });
    EXPECT_EQ(lastByKey, 59);
}

TEST_P(IconPickerTest, ClickBesideTheIconsLeavesTheMarkAndSoTheIcon) {
    const std::int64_t icon = Pick(20, [](DialogUser& user) {
        user.ClickRow(Picker, 45); // scrolls to the end, where there is room beside the icons
        user.ClickBesideRows(Picker);
        EXPECT_EQ(user.SelectedRow(Picker), -1);
        user.Press(control::Ok);
    });
    EXPECT_EQ(icon, 59);
}

TEST_P(IconPickerTest, CancelKeepsTheIcon) {
    const std::int64_t icon = Pick(14, [](DialogUser& user) {
        user.ClickRow(Picker, 20);
        user.Press(control::Cancel);
    });
    EXPECT_EQ(icon, 14);
    EXPECT_EQ(Code, CodeCancel);
    EXPECT_EQ(Pick(30, [](DialogUser& user) { user.Close(); }), 30);
}

TEST_P(IconPickerTest, TitleIsTheOneGiven) {
    CPMXTemplUIIconDlg picker(14, 0, Sjis(u8"\"ミ\"のアイコンの変更"), WindowHandle::None, Screen.Services);
    Screen.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"\"ミ\"のアイコンの変更"));
        user.Escape();
    });
    picker.DoModal();
}

TEST_P(IconPickerTest, HelpIsTheSameForTheLabelAndTheList) {
    Pick(14, [](DialogUser& user) {
        user.AskHelp();
        user.AskHelpOn(control::PickerLabel);
        user.Escape();
    });
    const std::string text =
        Sjis(u8"【機能】\n・ツールバー上に表示されるアイコンイメージを一覧表示します。\n\n【操作】\n"
             u8"・変更したいアイコンを選択します。");
    ASSERT_EQ(Screen.Help.Requests.size(), 2U);
    EXPECT_EQ(Screen.Help.Requests[0].Text, text);
    EXPECT_EQ(Screen.Help.Requests[1].Text, text);
}

// What only the window in memory shows

class IconDlgTest : public testing::Test {
protected:
    /// Runs the picker for a favorite with that icon; the icon afterwards.
    std::int64_t Pick(std::int64_t icon, const test::MemoryDialogs::Script& script) {
        CPMXTemplUIIconDlg picker(icon, 1, std::nullopt, WindowHandle::None, Desktop.Services);
        Desktop.Dialogs.OnOpened(dialog::IconPicker, script);
        Code = picker.DoModal();
        return picker.IconValue();
    }

    int InitialRow(std::int64_t icon) {
        int row = -1;
        Pick(icon, [&row](MemoryUser& user) {
            row = user.SelectedRow(Picker);
            EXPECT_EQ(user.List(Picker).LastMadeVisible, row);
            user.Escape();
        });
        return row;
    }

    MemoryDesktop Desktop;
    int Code = 0;
};

TEST_F(IconDlgTest, ShowsImages14To59InOrder) {
    Pick(14, [](MemoryUser& user) {
        const MemoryList& list = user.List(Picker);
        ASSERT_EQ(list.RowCount(), 46);
        for (int row = 0; row < 46; ++row) {
            EXPECT_EQ(list.Rows[static_cast<std::size_t>(row)].Image, row + 14);
        }
        EXPECT_EQ(list.LargeBitmap, bitmap::LargeIcons);
        EXPECT_FALSE(list.FullRowSelection);
        EXPECT_EQ(list.RedrawPauses, 1);
        EXPECT_TRUE(list.Redraw);
        user.Escape();
    });
    using Request = test::MemoryImageLists::Request;
    EXPECT_EQ(Desktop.Images.Requests, std::vector<Request>{(Request{2001, 32, Color::LightGrey})});
}

TEST_F(IconDlgTest, IsModalToTheGivenWindow) {
    CPMXTemplUIIconDlg picker(14, 0, std::nullopt, WindowHandle{3}, Desktop.Services);
    Desktop.Dialogs.OnOpened(dialog::IconPicker, [](MemoryUser& user) {
        EXPECT_EQ(user.Parent(), WindowHandle{3});
        user.Escape();
    });
    picker.DoModal();
}

TEST_F(IconDlgTest, MarksAndShowsTheIconOfTheFavorite) {
    EXPECT_EQ(InitialRow(30), 16);
    EXPECT_EQ(InitialRow(59), 45);
}

TEST_F(IconDlgTest, SelectsTheFirstIconWhenThatOfTheFavoriteIsNotOffered) {
    for (const std::int64_t icon :
         {std::int64_t{3}, std::int64_t{13}, std::int64_t{60}, std::int64_t{-1}, std::int64_t{0x100000020}}) {
        EXPECT_EQ(InitialRow(icon), 0) << icon;
    }
}

TEST_F(IconDlgTest, WorksWithoutPictures) {
    Desktop.Images.Failing = true;
    EXPECT_EQ(Pick(30, [](MemoryUser& user) { user.Press(control::Ok); }), 30);
}

TEST_F(IconDlgTest, TakesTheIconsOfTheScreensResolution) {
    using Request = test::MemoryImageLists::Request;
    const std::pair<int, Request> expected[] = {
        {72, {2001, 32, Color::LightGrey}},  {96, {2001, 32, Color::LightGrey}},
        {119, {2001, 32, Color::LightGrey}}, {120, {2040, 40, Color::LightGrey}},
        {144, {2048, 48, Color::LightGrey}}, {192, {2064, 64, Color::LightGrey}},
        {288, {2064, 64, Color::LightGrey}}};
    for (const auto& [resolution, request] : expected) {
        Desktop.Dialogs.Resolution = resolution;
        Desktop.Images.Requests.clear();
        Pick(14, [](MemoryUser& user) { user.Escape(); });
        EXPECT_EQ(Desktop.Images.Requests, std::vector<Request>{request}) << resolution;
    }
}

TEST_F(IconDlgTest, TakesTheFirstIconsFromResourcesWithoutLargerOnes) {
    Desktop.Dialogs.Resolution = 144;
    Desktop.Images.Failing = true;
    Pick(14, [](MemoryUser& user) { user.Escape(); });
    using Request = test::MemoryImageLists::Request;
    EXPECT_EQ(Desktop.Images.Requests,
              (std::vector<Request>{{2048, 48, Color::LightGrey}, {2001, 32, Color::LightGrey}}));
}

/// A dialog with a current-icon box.
class BoxDlg final : public CPmxDlg {
public:
    explicit BoxDlg(MemoryDesktop& desktop)
        : CPmxDlg(dialog::RegisterFavorite, WindowHandle::None, desktop.Services),
          Icons(LoadFavoriteIcons(desktop.Images, 96)) {}

    void Show(std::int64_t icon) { ShowFavoriteIcon(Window(), control::RegisterIcon, Icons.get(), icon); }
    void DropIcons() { Icons.reset(); }

private:
    std::unique_ptr<ImageList> Icons;
};

TEST(FavoriteIconsTest, BoxShowsTheIconOfTheValueAndKeepsItWhenThereIsNoIcon) {
    MemoryDesktop desktop;
    BoxDlg box(desktop);
    desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [&box](MemoryUser& user) {
        constexpr ControlId Box = control::RegisterIcon;
        EXPECT_FALSE(user.HasIcon(Box));
        box.Show(14);
        EXPECT_EQ(user.IconIn(Box), (test::MemoryImage{2001, 14}));
        box.Show(60);
        box.Show(-1);
        box.Show(std::int64_t{1} << 32);
        EXPECT_EQ(user.IconIn(Box), (test::MemoryImage{2001, 14}));
        box.Show(59);
        EXPECT_EQ(user.IconIn(Box), (test::MemoryImage{2001, 59}));
        box.DropIcons();
        box.Show(20);
        EXPECT_EQ(user.IconIn(Box), (test::MemoryImage{2001, 59}));
        EXPECT_EQ(test::MemoryIcon::Count(), 1) << "an icon that is no longer shown is released";
        user.Escape();
    });
    box.DoModal();
    EXPECT_EQ(test::MemoryIcon::Count(), 0);
}

} // namespace
} // namespace pmx
