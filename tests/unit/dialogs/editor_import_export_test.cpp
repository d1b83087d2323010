#include "support/editor_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::FakeHost;
using test::FileOperation;
using test::HostCall;
using test::HostFailure;
using test::MemoryUser;
using test::SameTable;
using test::Sjis;
using test::Standard;
using test::TableOf;
using test::TempFolder;

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

using Names = std::vector<std::string>;

class EditorImport : public EditorTest {
protected:
    /// A favorite file outside the favorites folder.
    void GivenFile(const std::string& fileName, const std::string& name, std::int32_t level = 1) {
        FakeHost::WriteFavorite(Outside, fileName, {.Table = TableOf(77), .Level = level, .Name = name});
    }

    void Import(MemoryUser& user, const std::string& fileName) {
        Desktop.FileChoice.OpenAnswers.emplace_back(Outside.Path(fileName));
        user.Press(control::EditorImport);
    }

    /// A failure leaves the list, its rows and the folder as they were.
    void ExpectNothingImported() {
        EXPECT_EQ(ListedNames(), Names{"A"});
        EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", test::ListFile}));
        EXPECT_EQ(Host.LiveDocuments, 0U);
    }

    TempFolder Outside{"outside"};
};

class EditorExport : public EditorTest {
protected:
    void ExportTo(MemoryUser& user, const std::string& path) {
        Desktop.FileChoice.SaveAnswers.emplace_back(path);
        user.Press(control::EditorExport);
    }

    TempFolder Outside{"outside"};
};

TEST_F(EditorImport, DialogAsksForAnExistingFavoriteFile) {
    Desktop.FileChoice.OpenAnswers.emplace_back(std::nullopt);
    RunAndCancel([this](MemoryUser& user) {
        user.Press(control::EditorImport);
        EXPECT_EQ(Desktop.FileChoice.OpenRequests.at(0).Owner, user.Handle());
    });
    const FileRequest& request = Desktop.FileChoice.OpenRequests.at(0);
    ASSERT_EQ(request.Filters.size(), 2U);
    EXPECT_EQ(request.Filters[0].Label, Sjis(u8"Lumetra お気に入り (*.pmt)"));
    EXPECT_EQ(request.Filters[0].Pattern, "*.pmt");
    EXPECT_EQ(request.Filters[1].Label, Sjis(u8"すべてのファイル (*.*)"));
    EXPECT_EQ(request.Filters[1].Pattern, "*.*");
    EXPECT_EQ(request.DefaultExtension, ".pmt");
    EXPECT_EQ(request.ProposedName, "");
    EXPECT_TRUE(request.HideReadOnlyBox);
    EXPECT_TRUE(request.FileMustExist);
    EXPECT_TRUE(request.PathMustExist);
    EXPECT_FALSE(request.AskBeforeOverwriting);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(EditorImport, NameThatIsNotInUseAddsAFavoriteWithAnEmptyName) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "Inside", 2);
    RunAndCancel([this](MemoryUser& user) {
        Import(user, "X.pmt");
        ASSERT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(user.Cell(List, 1, 1), "");
        EXPECT_EQ(user.Cell(List, 1, 2), Sjis(u8"セクション"));
        EXPECT_EQ(user.Cell(List, 1, 3), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.StateImage(List, 1), 3);
        EXPECT_EQ(user.List(List).RowData(1), 1);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Focused(), List);
        EXPECT_TRUE(Folder.Exists("X.pmt"));
    });
}

TEST_F(EditorImport, EmptyNameCanBeFilledIn) {
    GivenFile("X.pmt", "Inside");
    RunAndAccept([this](MemoryUser& user) {
        Import(user, "X.pmt");
        user.ClickRow(List, 0);
        user.Fill(Name, "Given");
        user.TabTo(List);
    });
    EXPECT_EQ(ListedValues(), Names{"0~Given~1~0~0~X.pmt"});
}

TEST_F(EditorImport, NameInUseAsksForAnotherAndProposesIt) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "a", 3);
    RunAndAccept([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [&editor](MemoryUser& user) {
            EXPECT_EQ(user.Parent(), editor.Handle());
            EXPECT_EQ(user.Text(control::CreateName), "a");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
            EXPECT_FALSE(user.IsEnabled(control::CreateLevelSheet));
            user.Fill(control::CreateName, "Other");
            user.Press(control::Ok);
        });
        Import(editor, "X.pmt");
        EXPECT_EQ(editor.Cell(List, 1, 1), "Other");
    });
    EXPECT_EQ(ListedValues()[1], "0~Other~3~0~0~X.pmt");
}

TEST_F(EditorImport, NameOfAStandardFavoriteIsInUseToo) {
    Given({Standard("S")});
    GivenFile("X.pmt", "S");
    RunAndAccept([this](MemoryUser& user) {
        AnswerName("T");
        Import(user, "X.pmt");
    });
    EXPECT_EQ(ListedNames(), (Names{"S", "T"}));
}

TEST_F(EditorImport, CancelledNameLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "A");
    RunAndAccept([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [this](MemoryUser& user) {
            EXPECT_TRUE(Folder.Exists("X.pmt"));
            user.Escape();
        });
        Import(editor, "X.pmt");
        EXPECT_EQ(editor.RowCount(List), 1);
        EXPECT_FALSE(Folder.Exists("X.pmt"));
    });
    ExpectNothingImported();
}

TEST_F(EditorImport, NameIsAskedOnceForEveryFavoriteThatHasTheNameOfTheFile) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "B");
    RunAndAccept([this](MemoryUser& user) {
        AnswerName("B");
        user.Press(control::EditorNew);
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete); // still in the list, so its name still counts
        AnswerName("B");
        user.Press(control::EditorNew);
        AnswerName("C");
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](MemoryUser& dialog) {
            EXPECT_EQ(dialog.Text(control::CreateName), "B");
            dialog.Fill(control::CreateName, "D");
            dialog.Press(control::Ok);
        });
        Import(user, "X.pmt");
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "D"}));
}

TEST_F(EditorImport, SameFileTwiceGivesTwoFiles) {
    GivenFile("Name.pmt", "N");
    RunAndCancel([this](MemoryUser& user) {
        Import(user, "Name.pmt");
        Import(user, "Name.pmt");
        EXPECT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(Folder.Names(), (Names{"Name-1.pmt", "Name.pmt"}));
    });
    EXPECT_TRUE(Folder.Names().empty()) << "cancelling takes them away";
}

TEST_F(EditorImport, SourceStaysAsItIs) {
    GivenFile("X.pmt", "N");
    const std::string before = Outside.Read("X.pmt");
    RunAndCancel([this](MemoryUser& user) { Import(user, "X.pmt"); });
    EXPECT_EQ(Outside.Read("X.pmt"), before);
    EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
}

TEST_F(EditorImport, ImportedFavoriteDeletedAgainLeavesNothing) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    RunAndAccept([this](MemoryUser& user) {
        Import(user, "X.pmt");
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
    });
    ExpectNothingImported();
}

TEST_F(EditorImport, FileThatIsNoFavoriteIsRefusedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    Outside.Write("X.pmt", "something else");
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunAndAccept([this](MemoryUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImport, TruncatedFileIsRefusedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    const std::string whole = Outside.Read("X.pmt");
    Outside.Write("X.pmt", whole.substr(0, whole.size() - 1));
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunAndAccept([this](MemoryUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImport, HostThatRaisesIsReportedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    Host.Plan.FailAt(HostCall::Load, 1, HostFailure::Raise);
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunAndAccept([this](MemoryUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImport, DocumentThatCannotBeMadeIsReportedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    Host.Plan.FailAt(HostCall::Create, 1, HostFailure::Refuse);
    Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    RunAndAccept([this](MemoryUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImport, FileThatCannotBeCopiedIsReported) {
    Given({{.Name = "A"}});
    Desktop.Messages.Expect(text::ImportFailed, MessageIcon::Exclamation);
    RunAndAccept([this](MemoryUser& user) { Import(user, "Missing.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImport, LockedFileIsRetriedUnderTheWaitCursor) {
    GivenFile("X.pmt", "N");
    Store.Disk.Plan.FailAt(FileOperation::Copy, 1, FileError::SharingViolation);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) {
        Import(user, "X.pmt");
        EXPECT_EQ(user.RowCount(List), 1);
    });
    EXPECT_EQ(Store.Clock.Sleeps, std::vector<std::uint32_t>{1000});
}

TEST_F(EditorImport, FavoriteOfDocumentLevelCanBePutOnTheToolbar) {
    GivenFile("X.pmt", "N");
    RunAndCancel([this](MemoryUser& user) {
        Import(user, "X.pmt");
        EXPECT_EQ(user.StateImage(List, 0), 1);
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), 2);
    });
}

// Export

TEST_F(EditorExport, DialogProposesTheSafeNameAndAsksBeforeOverwriting) {
    Given({{.Name = Sjis(u8"a/b:表")}});
    Desktop.FileChoice.SaveAnswers.emplace_back(std::nullopt);
    RunAndCancel([this](MemoryUser& user) {
        user.Press(control::EditorExport);
        EXPECT_EQ(Desktop.FileChoice.SaveRequests.at(0).Owner, user.Handle());
    });
    const FileRequest& request = Desktop.FileChoice.SaveRequests.at(0);
    ASSERT_EQ(request.Filters.size(), 2U);
    EXPECT_EQ(request.Filters[0].Pattern, "*.pmt");
    EXPECT_EQ(request.Filters[1].Pattern, "*.*");
    EXPECT_EQ(request.DefaultExtension, ".pmt");
    EXPECT_EQ(request.ProposedName, Sjis(u8"a=b=表.pmt"));
    EXPECT_TRUE(request.HideReadOnlyBox);
    EXPECT_TRUE(request.AskBeforeOverwriting);
    EXPECT_FALSE(request.FileMustExist);
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TEST_F(EditorExport, WritesTheFavoriteUnderItsNameAndLevel) {
    Given({{.Name = "A", .Level = 2}});
    RunAndCancel([this](MemoryUser& user) {
        user.Fill(Name, "New");
        ExportTo(user, Outside.Path("X.pmt"));
        EXPECT_EQ(NamesInRows(user), Names{"New"});
        EXPECT_EQ(user.Focused(), List);
    });
    const test::HostContent content = FakeHost::ReadFavorite(Outside, "X.pmt");
    EXPECT_EQ(content.Name, "New");
    EXPECT_EQ(content.Level, 2);
    EXPECT_TRUE(SameTable(content.Table, TableOf(SeedOf(0))));
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F0.pmt").Name, "A");
}

TEST_F(EditorExport, MissingFileIsReportedAndNothingIsWritten) {
    Given({{.Name = "A", .HasFile = false}});
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunAndCancel([](MemoryUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(Desktop.FileChoice.SaveRequests.empty());
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_F(EditorExport, FileThatVanishesMeanwhileIsReportedAndNothingIsWritten) {
    Given({{.Name = "A"}});
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunAndCancel([this](MemoryUser& user) {
        user.Press(control::EditorEdit); // loads the document
        Folder.Remove("F0.pmt");
        ExportTo(user, Outside.Path("X.pmt"));
    });
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_F(EditorExport, OwnFileOfAUserFavoriteIsRefused) {
    Given({{.Name = "A"}, {.Name = "B"}});
    Desktop.Messages.Expect(text::ImportedNotOverwritable, MessageIcon::Exclamation);
    RunAndCancel([this](MemoryUser& user) { ExportTo(user, Folder.Path("f1.PMT")); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "B");
}

TEST_F(EditorExport, FileOfADeletedFavoriteIsRefusedToo) {
    Given({{.Name = "A"}, {.Name = "B"}});
    Desktop.Messages.Expect(text::ImportedNotOverwritable, MessageIcon::Exclamation);
    RunAndCancel([this](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        ExportTo(user, Folder.Path("F1.pmt"));
    });
}

TEST_F(EditorExport, FileOfAStandardFavoriteIsNotRefused) {
    Given({{.Name = "A"}, Standard("S", 1)});
    RunAndCancel([this](MemoryUser& user) { ExportTo(user, Folder.Path("Standard.pmt")); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "Standard.pmt").Name, "A");
}

TEST_F(EditorExport, TargetThatCannotBeWrittenIsReportedAndStays) {
    Given({{.Name = "A"}});
    Outside.Write("X.pmt", "precious");
    Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Raise);
    Desktop.Messages.Expect(text::FileNotCreated, MessageIcon::Exclamation);
    RunAndCancel([this](MemoryUser& user) { ExportTo(user, Outside.Path("X.pmt")); });
    EXPECT_EQ(Outside.Read("X.pmt"), "precious");
    EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
}

TEST_F(EditorExport, ButtonIsOffForStandardFavorites) {
    Given({Standard("S", 1)});
    RunAndCancel([](MemoryUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(Desktop.FileChoice.SaveRequests.empty());
}

} // namespace
} // namespace pmx
