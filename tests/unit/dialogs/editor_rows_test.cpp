#include "dialogs/base/favorite_row.h"
#include "support/list_dialog_test.h"

#include <initializer_list>

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::ListedFavorite;
using test::MemoryDesktop;
using test::MemoryList;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId RowControls[] = {control::EditorEdit,   control::EditorCopy, control::EditorDelete,
                                     control::EditorExport, control::EditorUp,   control::EditorDown,
                                     control::EditorName,   control::ChangeIcon, control::EditorIcon};

using EditorRows = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorRows, test::AllDesktops, test::NameOfDesktop);

using EditorRowsInMemory = EditorTestOn<MemoryDesktop>;

ListedFavorite Named(const std::string& name, std::int32_t level = 1, bool onToolbar = false,
                     std::int64_t icon = 14) {
    ListedFavorite favorite;
    favorite.Name = name;
    favorite.Level = level;
    favorite.OnToolbar = onToolbar;
    favorite.Icon = icon;
    return favorite;
}

TEST_F(EditorRowsInMemory, WindowHasTheTitleAndIsModalToTheParent) {
    Parent = WindowHandle{7};
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの編集"));
        EXPECT_EQ(user.Parent(), WindowHandle{7});
    });
}

TEST_F(EditorRowsInMemory, ListHasFourColumnsAndSelectsWholeRows) {
    RunAndCancel([](MemoryUser& user) {
        const MemoryList& list = user.List(List);
        EXPECT_EQ(list.Columns, (std::vector<MemoryList::Column>{{Sjis(u8"ツールバー"), 80},
                                                                 {Sjis(u8"お気に入り名"), 180},
                                                                 {Sjis(u8"属性のカテゴリ"), 80},
                                                                 {Sjis(u8"種類"), 80}}));
        EXPECT_TRUE(list.FullRowSelection);
        EXPECT_EQ(list.StateBitmap, bitmap::StateImages);
    });
}

TEST_F(EditorRowsInMemory, PicturesComeFromTheTwoStrips) {
    RunAndCancel([](MemoryUser&) {});
    using Request = test::MemoryImageLists::Request;
    EXPECT_EQ(Desktop.Images.Requests,
              (std::vector<Request>{{2001, 32, Color::LightGrey}, {2002, 16, Color::White}}));
}

TEST_F(EditorRowsInMemory, PicturesAreThoseOfTheScreensResolution) {
    using Request = test::MemoryImageLists::Request;
    const std::pair<int, Request> expected[] = {{119, {2002, 16, Color::White}},
                                                {120, {2120, 20, Color::White}},
                                                {144, {2124, 24, Color::White}},
                                                {192, {2132, 32, Color::White}}};
    for (const auto& [resolution, request] : expected) {
        Desktop.Dialogs.Resolution = resolution;
        RunAndCancel([](MemoryUser&) {});
        EXPECT_EQ(Desktop.Images.Requests.back(), request) << resolution;
    }
}

TEST_P(EditorRows, RowsShowTheFavoritesInTheOrderOfTheListFile) {
    Given({Named(Sjis(u8"両面印刷"), 1, true), Named("B", 2), Standard("S")});
    RunAndCancel([](DialogUser& user) {
        ASSERT_EQ(user.RowCount(List), 3);
        EXPECT_EQ(user.Cell(List, 0, test::ToolbarColumn), "");
        EXPECT_EQ(user.Cell(List, 0, test::NameColumn), Sjis(u8"両面印刷"));
        EXPECT_EQ(user.Cell(List, 0, test::CategoryColumn), Sjis(u8"文書"));
        EXPECT_EQ(user.Cell(List, 0, test::KindColumn), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "B");
        EXPECT_EQ(user.Cell(List, 1, test::CategoryColumn), Sjis(u8"セクション"));
        EXPECT_EQ(user.Cell(List, 2, test::NameColumn), "S");
        EXPECT_EQ(user.Cell(List, 2, test::CategoryColumn), Sjis(u8"文書"));
        EXPECT_EQ(user.Cell(List, 2, test::KindColumn), Sjis(u8"標準"));
    });
}

TEST_F(EditorRowsInMemory, FillingTheListDrawsItOnce) {
    Given({Named("A"), Named("B")});
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.List(List).RedrawPauses, 1);
        EXPECT_TRUE(user.List(List).Redraw);
    });
}

TEST_P(EditorRows, LevelsAndTheirStandardFormsHaveTheSameNames) {
    const std::string names[] = {Sjis(u8"文書"), Sjis(u8"セクション"), Sjis(u8"用紙"), Sjis(u8"面"),
                                 Sjis(u8"原稿")};
    std::vector<ListedFavorite> favorites;
    for (std::int32_t level = 1; level <= 5; ++level) {
        favorites.push_back(Named("U" + std::to_string(level), level));
        favorites.push_back(Standard("S" + std::to_string(level), 100 + level));
    }
    Given(favorites);
    RunAndCancel([&names](DialogUser& user) {
        for (int row = 0; row < 10; ++row) {
            EXPECT_EQ(user.Cell(List, row, test::CategoryColumn), names[row / 2]) << row;
        }
    });
}

TEST_P(EditorRows, LevelsThatDoNotExistHaveNoName) {
    for (const std::int32_t level : {-1, 0, 6, 100, 106}) {
        CPMXTemplUIListData record;
        record.SetLevel(level);
        EXPECT_EQ(FormatRow(record, SystemResources()).Category, "") << level;
    }
}

TEST_P(EditorRows, ToolbarPictureIsThatOfTheMarkOnDocumentLevelAndUnavailableElsewhere) {
    ListedFavorite standardOn = Standard("D");
    standardOn.OnToolbar = true;
    Given({Named("A", 1, false), Named("B", 1, true), Named("C", 2, true), standardOn, Standard("E"),
           Standard("F", 102), Named("G", 5)});
    RunAndCancel([](DialogUser& user) {
        std::vector<int> images;
        images.reserve(7);
        for (int row = 0; row < user.RowCount(List); ++row) {
            images.push_back(user.StateImage(List, row));
        }
        EXPECT_EQ(images, (std::vector<int>{1, 2, 3, 2, 1, 3, 3}));
    });
}

TEST_F(EditorRowsInMemory, FirstRowIsSelectedAndShownAtTheStart) {
    Given({Named("A", 1, false, 20), Named("B")});
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(control::EditorName), "A");
        EXPECT_EQ(user.IconIn(control::EditorIcon), (test::MemoryImage{bitmap::LargeIcons, 20}));
        EXPECT_EQ(user.Focused(), List);
    });
}

TEST_P(EditorRows, EmptyListLeavesNewImportOkAndCancelUsable) {
    RunAndCancel([](DialogUser& user) {
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_EQ(user.SelectedRow(List), -1);
        for (const ControlId id : RowControls) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        for (const ControlId id : {control::EditorNew, control::EditorImport, control::Ok, control::Cancel}) {
            EXPECT_TRUE(user.IsEnabled(id)) << id;
        }
        EXPECT_EQ(user.Text(control::EditorName), "");
    });
}

TEST_P(EditorRows, FolderThatDoesNotExistGivesAnEmptyList) {
    CPMXTemplUIMainDlg editor(Folder.Path("Missing").c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::Editor, [](DialogUser& user) {
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorNew));
        user.Press(control::Ok);
    });
    EXPECT_EQ(editor.DoModal(), CodeOk);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_P(EditorRows, NewInAFolderThatDoesNotExistWritesNothingBesideIt) {
    CPMXTemplUIMainDlg editor(Folder.Path("Missing").c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    ExpectWarning(text::FileNotCreated);
    Desktop.Dialogs.OnOpened(dialog::Editor, [this](DialogUser& user) {
        AnswerName("N");
        user.Press(control::EditorNew);
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_P(EditorRows, UserFavoriteHasEverythingByItsPosition) {
    Given({Named("A"), Named("B"), Named("C")});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        for (const ControlId id : RowControls) {
            EXPECT_TRUE(user.IsEnabled(id)) << id;
        }
        user.ClickRow(List, 0);
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        user.ClickRow(List, 2);
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
}

TEST_P(EditorRows, SingleRowCannotMove) {
    Given({Named("A")});
    RunAndCancel([](DialogUser& user) {
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
}

TEST_P(EditorRows, StandardFavoriteCanOnlyMoveAndChangeItsIcon) {
    Given({Named("A"), Standard("S"), Standard("T", 102), Named("B")});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        for (const ControlId id : {control::EditorEdit, control::EditorCopy, control::EditorDelete,
                                   control::EditorExport, control::EditorName}) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        EXPECT_TRUE(user.IsEnabled(control::ChangeIcon));
        user.ClickRow(List, 2);
        EXPECT_FALSE(user.IsEnabled(control::ChangeIcon));
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        user.ClickRow(List, 3);
        EXPECT_TRUE(user.IsEnabled(control::EditorName));
    });
}

TEST_F(EditorRowsInMemory, LevelsOtherThanDocumentShowTheFirstIconAndCannotChangeIt) {
    Given({Named("A", 1, false, 30), Named("B", 3, false, 30)});
    RunAndCancel([](MemoryUser& user) {
        EXPECT_EQ(user.IconIn(control::EditorIcon)->Index, 30);
        user.ClickRow(List, 1);
        EXPECT_EQ(user.IconIn(control::EditorIcon)->Index, 0);
        EXPECT_FALSE(user.IsEnabled(control::ChangeIcon));
    });
}

TEST_F(EditorRowsInMemory, IconOutsideTheStripKeepsThePictureBefore) {
    Given({Named("A", 1, false, 30), Named("B", 1, false, 60)});
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        EXPECT_EQ(user.IconIn(control::EditorIcon)->Index, 30);
    });
}

TEST_F(EditorRowsInMemory, WithoutPicturesTheEditorStillWorks) {
    Given({Named("A")});
    Desktop.Images.Failing = true;
    RunAndAccept([](MemoryUser& user) { EXPECT_EQ(user.RowCount(List), 1); });
    EXPECT_EQ(ListedNames(), std::vector<std::string>{"A"});
}

TEST_F(EditorRowsInMemory, AttributeDialogIsLookedUpOnceAndReleasedAtTheEnd) {
    RunAndCancel([this](MemoryUser&) { EXPECT_EQ(Desktop.Libraries.Loaded, 1); });
    EXPECT_EQ(Desktop.Libraries.Asked, std::vector<std::string>{"PMXPropUI.dll"});
    EXPECT_EQ(Desktop.Libraries.Loaded, 0);
}

TEST_P(EditorRows, MissingAttributeDialogIsNotReportedAtTheStart) {
    Desktop.Libraries.Present.clear();
    RunAndCancel([](DialogUser&) {});
    Desktop.Libraries.Present["PMXPropUI.dll"] = {};
    RunAndCancel([](DialogUser&) {});
    EXPECT_TRUE(Desktop.Messages.Shown.empty());
}

TEST_F(EditorRowsInMemory, EveryControlButTheLinesHasAHelpNote) {
    Given({Named("A"), Named("B"), Named("C")});
    RunAndCancel([](MemoryUser& user) {
        for (const ControlId id :
             {control::EditorListLabel, control::EditorList, control::EditorNew, control::EditorEdit,
              control::EditorCopy, control::EditorDelete, control::EditorUp, control::EditorDown,
              control::ChangeIcon, control::CurrentIconLabel, control::EditorIcon, control::EditorNameLabel,
              control::EditorName, control::EditorImport, control::EditorExport, control::Ok,
              control::Cancel}) {
            user.AskHelpOn(id);
        }
    });
    EXPECT_EQ(Desktop.Help.Requests.size(), 17U);
}

TEST_F(EditorRowsInMemory, DialogThatCannotBeShownEndsWithNeitherCode) {
    CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpenedFail(dialog::Editor);
    EXPECT_EQ(editor.DoModal(), CPmxDlg::Failed);
}

} // namespace
} // namespace pmx
