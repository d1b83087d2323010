#include "support/list_dialog_test.h"

#include <new>

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::FileOperation;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

using Names = std::vector<std::string>;

template <class AnyScreen>
class EditorCommitOn : public EditorTestOn<AnyScreen> {
protected:
    static void Delete(DialogUser& user, int row) {
        user.ClickRow(control::EditorList, row);
        user.Press(control::EditorDelete);
    }
};

using EditorCommit = test::OnEachDesktop<EditorCommitOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorCommit, test::AllDesktops, test::NameOfDesktop);
using EditorCancel = test::OnEachDesktop<EditorCommitOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorCancel, test::AllDesktops, test::NameOfDesktop);

using EditorCommitInMemory = EditorCommitOn<MemoryDesktop>;
using EditorCancelInMemory = EditorCommitOn<MemoryDesktop>;

TEST_P(EditorCommit, EmptyListIsWrittenAsACountOfZero) {
    RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(ListedCount(), "0");
    EXPECT_TRUE(ListedValues().empty());
}

TEST_P(EditorCommit, EveryFieldIsWrittenInItsPlace) {
    Given({{.Name = Sjis(u8"ミ 表"), .Level = 5, .OnToolbar = true, .Icon = 59, .File = "x y.pmt"},
           Standard("S", 101)});
    RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(ListedValues(), (Names{Sjis(u8"0~ミ 表~5~1~59~x y.pmt"), "1~S~101~0~14~3"}));
    EXPECT_EQ(ListedCount(), "2");
}

TEST_P(EditorCommit, FavoriteMovedUpTwiceIsWrittenUnderTheSmallerKeyAndTheOthersKeepTheirOrder) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}, {.Name = "D"}});
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 3);
        user.Press(control::EditorUp);
        user.Press(control::EditorUp);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "D", "B", "C"}));
}

TEST_P(EditorCommit, CountIsTheNumberOfRowsWithoutDeletedFavorites) {
    GivenThree();
    RunAndAccept([](DialogUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedCount(), "2");
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F2.pmt", test::ListFile}));
}

TEST_P(EditorCommit, OtherSectionsOfTheListFileStay) {
    GivenThree();
    Folder.Write(test::ListFile, "[Other]\r\nKey=Value\r\n" + Folder.Read(test::ListFile));
    RunAndAccept([](DialogUser& user) { Delete(user, 1); });
    EXPECT_TRUE(Folder.Read(test::ListFile).starts_with("[Other]\r\nKey=Value\r\n"));
}

TEST_P(EditorCommit, FavoriteCreatedAndDeletedAgainLeavesNothing) {
    GivenThree();
    RunAndAccept([this](DialogUser& user) {
        Create(user, "N");
        Delete(user, 3);
        EXPECT_TRUE(Folder.Exists("N.pmt"));
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_FALSE(Folder.Exists("N.pmt"));
}

TEST_P(EditorCommit, NewListFileIsInPlaceBeforeAnyFavoriteFileIsDeleted) {
    GivenThree();
    Store.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::Other);
    RunAndAccept([](DialogUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_P(EditorCommit, ReadOnlyListFileLosesTheChangesAndNothingElse) {
    GivenThree();
    Folder.SetReadOnly(test::ListFile, true);
    RunAndAccept([](DialogUser& user) { Delete(user, 1); });
    Folder.SetReadOnly(test::ListFile, false);
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_TRUE(Folder.Exists("F1.pmt"));
}

TEST_P(EditorCommit, FavoriteFileThatCannotBeDeletedIsNotReported) {
    GivenThree();
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Other);
    RunAndAccept([](DialogUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
    EXPECT_TRUE(Folder.Exists("F1.pmt"));
}

TEST_F(EditorCommitInMemory, WaitCursorIsShownWhileALockedFileIsRetried) {
    GivenThree();
    Store.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(Store.Clock.Sleeps, std::vector<std::uint32_t>{1000});
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
    EXPECT_FALSE(Folder.Exists("F1.pmt"));
}

TEST_P(EditorCommit, FileOutsideTheFolderIsNeverDeleted) {
    Folder.AddFolder("Sub");
    Folder.Write("Sub\\X.pmt", "precious");
    Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    RunAndAccept([](DialogUser& user) { Delete(user, 0); });
    EXPECT_EQ(Folder.Read("Sub\\X.pmt"), "precious");
    EXPECT_EQ(ListedCount(), "0");
}

TEST_P(EditorCommit, ListFileNamedAsAFavoriteFileIsNeverDeleted) {
    Given({{.Name = "A", .File = "pmxtemplelist.INI", .HasFile = false}});
    RunAndAccept([](DialogUser& user) { Delete(user, 0); });
    EXPECT_EQ(ListedCount(), "0");
}

TEST_P(EditorCommit, FileThatAnotherFavoriteStillUsesStays) {
    Given({{.Name = "A", .File = "Same.pmt"}, {.Name = "B", .File = "Same.pmt"}});
    RunAndAccept([](DialogUser& user) { Delete(user, 0); });
    EXPECT_TRUE(Folder.Exists("Same.pmt"));
}

TEST_P(EditorCommit, ListIsEmptiedAtTheEnd) {
    GivenThree();
    RunAndAccept([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(EditorCommitInMemory, EditorHoldsNoRecordOnceItHasEnded) {
    GivenThree();
    CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    for (const ControlId end : {control::Ok, control::Cancel}) {
        Desktop.Dialogs.OnOpened(dialog::Editor, [this, end](MemoryUser& user) {
            user.Press(control::EditorEdit);
            EXPECT_NE(Host.LiveDocuments, 0U);
            user.Press(end);
        });
        EXPECT_EQ(editor.DoModal(), end);
        EXPECT_EQ(Host.LiveDocuments, 0U);
    }
}

TEST_P(EditorCancel, NothingOfTheListIsWritten) {
    GivenThree();
    const std::string before = Folder.Read(test::ListFile);
    RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        user.Press(control::EditorDown);
        user.Fill(control::EditorName, "New");
        user.TabTo(List);
        Delete(user, 2);
    });
    EXPECT_EQ(Folder.Read(test::ListFile), before);
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_P(EditorCancel, ListFileIsNotTouchedWhileTheEditorIsOpen) {
    GivenThree();
    const std::string before = Folder.Read(test::ListFile);
    RunAndAccept([&](DialogUser& user) {
        Delete(user, 1);
        Create(user, "N");
        EXPECT_EQ(Folder.Read(test::ListFile), before);
    });
    EXPECT_NE(Folder.Read(test::ListFile), before);
}

TEST_P(EditorCancel, FilesOfNewAndCopiedFavoritesAreDeleted) {
    GivenThree();
    RunAndCancel([this](DialogUser& user) {
        Create(user, "N");
        AnswerName("M");
        user.ClickRow(List, 0);
        user.Press(control::EditorCopy);
        EXPECT_TRUE(Folder.Exists("M.pmt"));
    });
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_P(EditorCancel, FileOfAFavoriteCreatedAndDeletedAgainIsDeleted) {
    RunAndCancel([this](DialogUser& user) {
        Create(user, "N");
        Delete(user, 0);
    });
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_P(EditorCancel, FilesOfStandardFavoritesStay) {
    Folder.Write("3", "not ours");
    Folder.Write("Standard.pmt", "not ours");
    Given({Standard("S"), Standard("T", 1)});
    RunAndCancel([](DialogUser&) {});
    RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(Folder.Read("3"), "not ours");
    EXPECT_EQ(Folder.Read("Standard.pmt"), "not ours");
}

TEST_F(EditorCancelInMemory, FileThatCannotBeDeletedIsRetriedUnderTheWaitCursorAndThenLeft) {
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) { Create(user, "N"); });
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Exists("N.pmt"));
}

TEST_F(EditorCancelInMemory, EditorThatEndsByAFailureLeavesWhatCancelLeaves) {
    GivenThree();
    const std::string before = Folder.Read(test::ListFile);
    EXPECT_THROW(Run([this](MemoryUser& user) {
                     Create(user, "N");
                     Delete(user, 0);
                     throw std::bad_alloc();
                 }),
                 std::bad_alloc);
    EXPECT_EQ(Folder.Read(test::ListFile), before);
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_P(EditorCancel, CloseBoxCancels) {
    GivenThree();
    EXPECT_EQ(Run([](DialogUser& user) {
                  Delete(user, 0);
                  user.Close();
              }),
              CodeCancel);
    EXPECT_EQ(ListedCount(), "3");
}

} // namespace
} // namespace pmx
