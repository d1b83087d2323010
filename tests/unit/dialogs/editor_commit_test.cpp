#include "support/editor_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::FileOperation;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId List = control::EditorList;

using Names = std::vector<std::string>;

class EditorCommit : public EditorTest {
protected:
    void GivenThree() { Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    static void Delete(MemoryUser& user, int row) {
        user.ClickRow(List, row);
        user.Press(control::EditorDelete);
    }

    void Create(MemoryUser& user, const std::string& name) {
        AnswerName(name);
        user.Press(control::EditorNew);
    }
};

using EditorCancel = EditorCommit;

TEST_F(EditorCommit, EmptyListIsWrittenAsACountOfZero) {
    RunAndAccept([](MemoryUser&) {});
    EXPECT_EQ(ListedCount(), "0");
    EXPECT_TRUE(ListedValues().empty());
}

TEST_F(EditorCommit, EveryFieldIsWrittenInItsPlace) {
    Given({{.Name = Sjis(u8"ミ 表"), .Level = 5, .OnToolbar = true, .Icon = 59, .File = "x y.pmt"},
           Standard("S", 101)});
    RunAndAccept([](MemoryUser&) {});
    EXPECT_EQ(ListedValues(), (Names{Sjis(u8"0~ミ 表~5~1~59~x y.pmt"), "1~S~101~0~14~3"}));
    EXPECT_EQ(ListedCount(), "2");
}

TEST_F(EditorCommit, FavoriteMovedUpTwiceIsWrittenUnderTheSmallerKeyAndTheOthersKeepTheirOrder) {
    Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}, {.Name = "D"}});
    RunAndAccept([](MemoryUser& user) {
        user.ClickRow(List, 3);
        user.Press(control::EditorUp);
        user.Press(control::EditorUp);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "D", "B", "C"}));
}

TEST_F(EditorCommit, CountIsTheNumberOfRowsWithoutDeletedFavorites) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedCount(), "2");
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F2.pmt", test::ListFile}));
}

TEST_F(EditorCommit, OtherSectionsOfTheListFileStay) {
    GivenThree();
    Folder.Write(test::ListFile, "[Other]\r\nKey=Value\r\n" + Folder.Read(test::ListFile));
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(SystemProfile().ReadString(Folder.Path(test::ListFile), "Other", "Key", ""), "Value");
}

TEST_F(EditorCommit, FavoriteCreatedAndDeletedAgainLeavesNothing) {
    GivenThree();
    RunAndAccept([this](MemoryUser& user) {
        Create(user, "N");
        Delete(user, 3);
        EXPECT_TRUE(Folder.Exists("N.pmt"));
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_FALSE(Folder.Exists("N.pmt"));
}

TEST_F(EditorCommit, NewListFileIsInPlaceBeforeAnyFavoriteFileIsDeleted) {
    GivenThree();
    Store.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::DiskFull);
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_F(EditorCommit, ReadOnlyListFileLosesTheChangesAndNothingElse) {
    GivenThree();
    Folder.SetReadOnly(test::ListFile, true);
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    Folder.SetReadOnly(test::ListFile, false);
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_TRUE(Folder.Exists("F1.pmt"));
}

TEST_F(EditorCommit, FavoriteFileThatCannotBeDeletedIsNotReported) {
    GivenThree();
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::DiskFull);
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
    EXPECT_TRUE(Folder.Exists("F1.pmt"));
}

TEST_F(EditorCommit, WaitCursorIsShownWhileALockedFileIsRetried) {
    GivenThree();
    Store.Disk.Plan.FailAt(FileOperation::Remove, 1, FileError::SharingViolation);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndAccept([](MemoryUser& user) { Delete(user, 1); });
    EXPECT_EQ(Store.Clock.Sleeps, std::vector<std::uint32_t>{1000});
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
    EXPECT_FALSE(Folder.Exists("F1.pmt"));
}

TEST_F(EditorCommit, FileOutsideTheFolderIsNeverDeleted) {
    Folder.AddFolder("Sub");
    Folder.Write("Sub\\X.pmt", "precious");
    Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    RunAndAccept([](MemoryUser& user) { Delete(user, 0); });
    EXPECT_EQ(Folder.Read("Sub\\X.pmt"), "precious");
    EXPECT_EQ(ListedCount(), "0");
}

TEST_F(EditorCommit, ListFileNamedAsAFavoriteFileIsNeverDeleted) {
    Given({{.Name = "A", .File = "pmxtemplelist.INI", .HasFile = false}});
    RunAndAccept([](MemoryUser& user) { Delete(user, 0); });
    EXPECT_EQ(ListedCount(), "0");
}

TEST_F(EditorCommit, FileThatAnotherFavoriteStillUsesStays) {
    Given({{.Name = "A", .File = "Same.pmt"}, {.Name = "B", .File = "Same.pmt"}});
    RunAndAccept([](MemoryUser& user) { Delete(user, 0); });
    EXPECT_TRUE(Folder.Exists("Same.pmt"));
}

TEST_F(EditorCommit, ListIsEmptiedAtTheEnd) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) { user.Press(control::EditorEdit); });
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(EditorCancel, NothingOfTheListIsWritten) {
    GivenThree();
    const std::string before = Folder.Read(test::ListFile);
    RunAndCancel([](MemoryUser& user) {
        user.ClickStateImage(List, 0);
        user.Press(control::EditorDown);
        user.Fill(control::EditorName, "New");
        user.TabTo(List);
        Delete(user, 2);
    });
    EXPECT_EQ(Folder.Read(test::ListFile), before);
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_F(EditorCancel, ListFileIsNotTouchedWhileTheEditorIsOpen) {
    GivenThree();
    const std::string before = Folder.Read(test::ListFile);
    RunAndAccept([&](MemoryUser& user) {
        Delete(user, 1);
        Create(user, "N");
        EXPECT_EQ(Folder.Read(test::ListFile), before);
    });
    EXPECT_NE(Folder.Read(test::ListFile), before);
}

TEST_F(EditorCancel, FilesOfNewAndCopiedFavoritesAreDeleted) {
    GivenThree();
    RunAndCancel([this](MemoryUser& user) {
        Create(user, "N");
        AnswerName("M");
        user.ClickRow(List, 0);
        user.Press(control::EditorCopy);
        EXPECT_TRUE(Folder.Exists("M.pmt"));
    });
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TEST_F(EditorCancel, FileOfAFavoriteCreatedAndDeletedAgainIsDeleted) {
    RunAndCancel([this](MemoryUser& user) {
        Create(user, "N");
        Delete(user, 0);
    });
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(EditorCancel, FilesOfStandardFavoritesStay) {
    Folder.Write("3", "not ours");
    Folder.Write("Standard.pmt", "not ours");
    Given({Standard("S"), Standard("T", 1)});
    RunAndCancel([](MemoryUser&) {});
    RunAndAccept([](MemoryUser&) {});
    EXPECT_EQ(Folder.Read("3"), "not ours");
    EXPECT_EQ(Folder.Read("Standard.pmt"), "not ours");
}

TEST_F(EditorCancel, FileThatCannotBeDeletedIsRetriedUnderTheWaitCursorAndThenLeft) {
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::SharingViolation);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) { Create(user, "N"); });
    EXPECT_EQ(Store.Clock.Total(), 28000U);
    EXPECT_TRUE(Folder.Exists("N.pmt"));
}

TEST_F(EditorCancel, CloseBoxCancels) {
    GivenThree();
    EXPECT_EQ(Run([](MemoryUser& user) {
                  Delete(user, 0);
                  user.Close();
              }),
              CodeCancel);
    EXPECT_EQ(ListedCount(), "3");
}

} // namespace
} // namespace pmx
