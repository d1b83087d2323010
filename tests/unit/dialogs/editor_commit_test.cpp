#include "support/editor_test.h"

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

constexpr ControlId List = control::EditorList;

using Names = std::vector<std::string>;

template <class AnyDesktop>
class EditorCommit : public EditorTestOn<AnyDesktop> {
protected:
    void GivenThree() { this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    static void Delete(DialogUser& user, int row) {
        user.ClickRow(List, row);
        user.Press(control::EditorDelete);
    }

    void Create(DialogUser& user, const std::string& name) {
        this->AnswerName(name);
        user.Press(control::EditorNew);
    }
};

template <class AnyDesktop>
using EditorCancel = EditorCommit<AnyDesktop>;

TYPED_TEST_SUITE(EditorCommit, test::AllDesktops);
TYPED_TEST_SUITE(EditorCancel, test::AllDesktops);

using EditorCommitInMemory = EditorCommit<MemoryDesktop>;
using EditorCancelInMemory = EditorCancel<MemoryDesktop>;

TYPED_TEST(EditorCommit, EmptyListIsWrittenAsACountOfZero) {
    this->RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(this->ListedCount(), "0");
    EXPECT_TRUE(this->ListedValues().empty());
}

TYPED_TEST(EditorCommit, EveryFieldIsWrittenInItsPlace) {
    this->Given({{.Name = Sjis(u8"ミ 表"), .Level = 5, .OnToolbar = true, .Icon = 59, .File = "x y.pmt"},
                 Standard("S", 101)});
    this->RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(this->ListedValues(), (Names{Sjis(u8"0~ミ 表~5~1~59~x y.pmt"), "1~S~101~0~14~3"}));
    EXPECT_EQ(this->ListedCount(), "2");
}

TYPED_TEST(EditorCommit, FavoriteMovedUpTwiceIsWrittenUnderTheSmallerKeyAndTheOthersKeepTheirOrder) {
    this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}, {.Name = "D"}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 3);
        user.Press(control::EditorUp);
        user.Press(control::EditorUp);
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "D", "B", "C"}));
}

TYPED_TEST(EditorCommit, CountIsTheNumberOfRowsWithoutDeletedFavorites) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 1); });
    EXPECT_EQ(this->ListedCount(), "2");
    EXPECT_EQ(this->ListedNames(), (Names{"A", "C"}));
    EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", "F2.pmt", test::ListFile}));
}

TYPED_TEST(EditorCommit, OtherSectionsOfTheListFileStay) {
    this->GivenThree();
    this->Folder.Write(test::ListFile, "[Other]\r\nKey=Value\r\n" + this->Folder.Read(test::ListFile));
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 1); });
    EXPECT_TRUE(this->Folder.Read(test::ListFile).starts_with("[Other]\r\nKey=Value\r\n"));
}

TYPED_TEST(EditorCommit, FavoriteCreatedAndDeletedAgainLeavesNothing) {
    this->GivenThree();
    this->RunAndAccept([this](DialogUser& user) {
        this->Create(user, "N");
        TestFixture::Delete(user, 3);
        EXPECT_TRUE(this->Folder.Exists("N.pmt"));
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_FALSE(this->Folder.Exists("N.pmt"));
}

TYPED_TEST(EditorCommit, NewListFileIsInPlaceBeforeAnyFavoriteFileIsDeleted) {
    this->GivenThree();
    this->Store.Disk.Plan.FailFrom(FileOperation::Replace, 1, FileError::Other);
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 1); });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TYPED_TEST(EditorCommit, ReadOnlyListFileLosesTheChangesAndNothingElse) {
    this->GivenThree();
    this->Folder.SetReadOnly(test::ListFile, true);
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 1); });
    this->Folder.SetReadOnly(test::ListFile, false);
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_TRUE(this->Folder.Exists("F1.pmt"));
}

TYPED_TEST(EditorCommit, FavoriteFileThatCannotBeDeletedIsNotReported) {
    this->GivenThree();
    this->Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Other);
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 1); });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "C"}));
    EXPECT_TRUE(this->Folder.Exists("F1.pmt"));
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

TYPED_TEST(EditorCommit, FileOutsideTheFolderIsNeverDeleted) {
    this->Folder.AddFolder("Sub");
    this->Folder.Write("Sub\\X.pmt", "precious");
    this->Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 0); });
    EXPECT_EQ(this->Folder.Read("Sub\\X.pmt"), "precious");
    EXPECT_EQ(this->ListedCount(), "0");
}

TYPED_TEST(EditorCommit, ListFileNamedAsAFavoriteFileIsNeverDeleted) {
    this->Given({{.Name = "A", .File = "pmxtemplelist.INI", .HasFile = false}});
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 0); });
    EXPECT_EQ(this->ListedCount(), "0");
}

TYPED_TEST(EditorCommit, FileThatAnotherFavoriteStillUsesStays) {
    this->Given({{.Name = "A", .File = "Same.pmt"}, {.Name = "B", .File = "Same.pmt"}});
    this->RunAndAccept([](DialogUser& user) { TestFixture::Delete(user, 0); });
    EXPECT_TRUE(this->Folder.Exists("Same.pmt"));
}

TYPED_TEST(EditorCommit, ListIsEmptiedAtTheEnd) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TEST_F(EditorCommitInMemory, EditorHoldsNoRecordOnceItHasEnded) {
    GivenThree();
    CPMXTemplUIMainDlg editor(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                              Store.Services);
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

TYPED_TEST(EditorCancel, NothingOfTheListIsWritten) {
    this->GivenThree();
    const std::string before = this->Folder.Read(test::ListFile);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickStateImage(List, 0);
        user.Press(control::EditorDown);
        user.Fill(control::EditorName, "New");
        user.TabTo(List);
        TestFixture::Delete(user, 2);
    });
    EXPECT_EQ(this->Folder.Read(test::ListFile), before);
    EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TYPED_TEST(EditorCancel, ListFileIsNotTouchedWhileTheEditorIsOpen) {
    this->GivenThree();
    const std::string before = this->Folder.Read(test::ListFile);
    this->RunAndAccept([&](DialogUser& user) {
        TestFixture::Delete(user, 1);
        this->Create(user, "N");
        EXPECT_EQ(this->Folder.Read(test::ListFile), before);
    });
    EXPECT_NE(this->Folder.Read(test::ListFile), before);
}

TYPED_TEST(EditorCancel, FilesOfNewAndCopiedFavoritesAreDeleted) {
    this->GivenThree();
    this->RunAndCancel([this](DialogUser& user) {
        this->Create(user, "N");
        this->AnswerName("M");
        user.ClickRow(List, 0);
        user.Press(control::EditorCopy);
        EXPECT_TRUE(this->Folder.Exists("M.pmt"));
    });
    EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", "F1.pmt", "F2.pmt", test::ListFile}));
}

TYPED_TEST(EditorCancel, FileOfAFavoriteCreatedAndDeletedAgainIsDeleted) {
    this->RunAndCancel([this](DialogUser& user) {
        this->Create(user, "N");
        TestFixture::Delete(user, 0);
    });
    EXPECT_TRUE(this->Folder.Names().empty());
}

TYPED_TEST(EditorCancel, FilesOfStandardFavoritesStay) {
    this->Folder.Write("3", "not ours");
    this->Folder.Write("Standard.pmt", "not ours");
    this->Given({Standard("S"), Standard("T", 1)});
    this->RunAndCancel([](DialogUser&) {});
    this->RunAndAccept([](DialogUser&) {});
    EXPECT_EQ(this->Folder.Read("3"), "not ours");
    EXPECT_EQ(this->Folder.Read("Standard.pmt"), "not ours");
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

TYPED_TEST(EditorCancel, CloseBoxCancels) {
    this->GivenThree();
    EXPECT_EQ(this->Run([](DialogUser& user) {
        TestFixture::Delete(user, 0);
        user.Close();
    }),
              CodeCancel);
    EXPECT_EQ(this->ListedCount(), "3");
}

} // namespace
} // namespace pmx
