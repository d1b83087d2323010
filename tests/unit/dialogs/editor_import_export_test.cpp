#include "support/list_dialog_test.h"

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::FakeHost;
using test::FileOperation;
using test::HostCall;
using test::HostFailure;
using test::MemoryDesktop;
using test::MemoryUser;
using test::SameTable;
using test::Sjis;
using test::Standard;
using test::TableOf;
using test::TempFolder;

using Names = std::vector<std::string>;

template <class AnyScreen>
class EditorImportOn : public EditorTestOn<AnyScreen> {
protected:
    /// A favorite file outside the favorites folder.
    void GivenFile(const std::string& fileName, const std::string& name, std::int32_t level = 1) {
        FakeHost::WriteFavorite(Outside, fileName, {.Table = TableOf(77), .Level = level, .Name = name});
    }

    void Import(DialogUser& user, const std::string& fileName) {
        this->Desktop.FileChoice.OpenAnswers.emplace_back(Outside.Path(fileName));
        user.Press(control::EditorImport);
    }

    /// A failure leaves the list, its rows and the folder as they were.
    void ExpectNothingImported() {
        EXPECT_EQ(this->ListedNames(), Names{"A"});
        EXPECT_EQ(this->Folder.Names(), (Names{"F0.pmt", test::ListFile}));
        EXPECT_EQ(this->Host.LiveDocuments, 0U);
    }

    TempFolder Outside{"outside"};
};

template <class AnyScreen>
class EditorExportOn : public EditorTestOn<AnyScreen> {
protected:
    void ExportTo(DialogUser& user, const std::string& path) {
        this->Desktop.FileChoice.SaveAnswers.emplace_back(path);
        user.Press(control::EditorExport);
    }

    TempFolder Outside{"outside"};
};

using EditorImport = test::OnEachDesktop<EditorImportOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorImport, test::AllDesktops, test::NameOfDesktop);
using EditorExport = test::OnEachDesktop<EditorExportOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorExport, test::AllDesktops, test::NameOfDesktop);

using EditorImportInMemory = EditorImportOn<MemoryDesktop>;
using EditorExportInMemory = EditorExportOn<MemoryDesktop>;

TEST_F(EditorImportInMemory, DialogAsksForAnExistingFavoriteFile) {
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
    EXPECT_TRUE(request.FileMustExist);
    EXPECT_TRUE(request.PathMustExist);
    EXPECT_FALSE(request.AskBeforeOverwriting);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_P(EditorImport, NameThatIsNotInUseAddsAFavoriteWithAnEmptyName) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "Inside", 2);
    RunAndCancel([this](DialogUser& user) {
        Import(user, "X.pmt");
        ASSERT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "");
        EXPECT_EQ(user.Cell(List, 1, test::CategoryColumn), Sjis(u8"セクション"));
        EXPECT_EQ(user.Cell(List, 1, test::KindColumn), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.StateImage(List, 1), 3);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Focused(), control::EditorImport);
        EXPECT_TRUE(Folder.Exists("X.pmt"));
    });
}

TEST_P(EditorImport, EmptyNameCanBeFilledIn) {
    GivenFile("X.pmt", "Inside");
    RunAndAccept([this](DialogUser& user) {
        Import(user, "X.pmt");
        user.ClickRow(List, 0);
        user.Fill(Name, "Given");
        user.TabTo(List);
    });
    EXPECT_EQ(ListedValues(), Names{"0~Given~1~0~0~X.pmt"});
}

TEST_P(EditorImport, NameInUseAsksForAnotherAndProposesIt) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "a", 3);
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Text(control::CreateName), "a");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
            EXPECT_FALSE(user.IsEnabled(control::CreateLevelSheet));
            user.Fill(control::CreateName, "Other");
            user.Press(control::Ok);
        });
        Import(editor, "X.pmt");
        EXPECT_EQ(editor.Cell(List, 1, test::NameColumn), "Other");
    });
    EXPECT_EQ(ListedValues()[1], "0~Other~3~0~0~X.pmt");
}

TEST_P(EditorImport, OtherNameInUseIsRefusedByTheDialog) {
    Given({{.Name = "A"}, {.Name = "B"}});
    GivenFile("X.pmt", "A");
    ExpectWarning(text::CreateNameExists);
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            EXPECT_TRUE(user.IsOpen());
            user.Escape();
        });
        Import(editor, "X.pmt");
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B"}));
    EXPECT_FALSE(Folder.Exists("X.pmt"));
}

TEST_P(EditorImport, NameOfAStandardFavoriteIsInUseToo) {
    Given({Standard("S")});
    GivenFile("X.pmt", "S");
    RunAndAccept([this](DialogUser& user) {
        AnswerName("T");
        Import(user, "X.pmt");
    });
    EXPECT_EQ(ListedNames(), (Names{"S", "T"}));
}

TEST_P(EditorImport, CancelledNameLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "A");
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [this](DialogUser& user) {
            EXPECT_TRUE(Folder.Exists("X.pmt"));
            user.Escape();
        });
        Import(editor, "X.pmt");
        EXPECT_EQ(editor.RowCount(List), 1);
        EXPECT_FALSE(Folder.Exists("X.pmt"));
    });
    ExpectNothingImported();
}

TEST_P(EditorImport, NameIsAskedOnceForEveryFavoriteThatHasTheNameOfTheFile) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "B");
    RunAndAccept([this](DialogUser& user) {
        AnswerName("B");
        user.Press(control::EditorNew);
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete); // still in the list, so its name still counts
        AnswerName("B");
        user.Press(control::EditorNew);
        AnswerName("C");
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& dialog) {
            EXPECT_EQ(dialog.Text(control::CreateName), "B");
            dialog.Fill(control::CreateName, "D");
            dialog.Press(control::Ok);
        });
        Import(user, "X.pmt");
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "D"}));
}

TEST_P(EditorImport, SameFileTwiceGivesTwoFiles) {
    GivenFile("Name.pmt", "N");
    RunAndCancel([this](DialogUser& user) {
        Import(user, "Name.pmt");
        Import(user, "Name.pmt");
        EXPECT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(Folder.Names(), (Names{"Name-1.pmt", "Name.pmt"}));
    });
    EXPECT_TRUE(Folder.Names().empty()) << "cancelling takes them away";
}

TEST_P(EditorImport, SourceStaysAsItIs) {
    GivenFile("X.pmt", "N");
    const std::string before = Outside.Read("X.pmt");
    RunAndCancel([this](DialogUser& user) { Import(user, "X.pmt"); });
    EXPECT_EQ(Outside.Read("X.pmt"), before);
    EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
}

TEST_P(EditorImport, ImportedFavoriteDeletedAgainLeavesNothing) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    RunAndAccept([this](DialogUser& user) {
        Import(user, "X.pmt");
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
    });
    ExpectNothingImported();
}

TEST_P(EditorImport, FileThatIsNoFavoriteIsRefusedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    Outside.Write("X.pmt", "something else");
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndAccept([this](DialogUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_P(EditorImport, TruncatedFileIsRefusedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    const std::string whole = Outside.Read("X.pmt");
    Outside.Write("X.pmt", whole.substr(0, whole.size() - 1));
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndAccept([this](DialogUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_P(EditorImport, HostThatRaisesIsReportedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    Host.Plan.FailAt(HostCall::Load, 1, HostFailure::Raise);
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndAccept([this](DialogUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_P(EditorImport, DocumentThatCannotBeMadeIsReportedAndLeavesNothingBehind) {
    Given({{.Name = "A"}});
    GivenFile("X.pmt", "N");
    Host.Plan.FailAt(HostCall::Create, 1, HostFailure::Refuse);
    ExpectFailure(text::OutOfMemory);
    RunAndAccept([this](DialogUser& user) { Import(user, "X.pmt"); });
    ExpectNothingImported();
}

TEST_P(EditorImport, FileThatCannotBeCopiedIsReported) {
    Given({{.Name = "A"}});
    ExpectWarning(text::ImportFailed);
    RunAndAccept([this](DialogUser& user) { Import(user, "Missing.pmt"); });
    ExpectNothingImported();
}

TEST_P(EditorImport, WantOfAFileNameIsReported) {
    Given({{.Name = "A"}});
    GivenFile("F0.pmt", "N");
    Store.Services.LastFileNumber = 0;
    ExpectFailure(text::NoFileName);
    RunAndAccept([this](DialogUser& user) { Import(user, "F0.pmt"); });
    ExpectNothingImported();
}

TEST_F(EditorImportInMemory, LockedFileIsRetriedUnderTheWaitCursor) {
    GivenFile("X.pmt", "N");
    Store.Disk.Plan.FailAt(FileOperation::Read, 2, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) {
        Import(user, "X.pmt");
        EXPECT_EQ(user.RowCount(List), 1);
    });
    EXPECT_EQ(Store.Clock.Sleeps, std::vector<std::uint32_t>{1000});
}

TEST_P(EditorImport, FavoriteOfDocumentLevelCanBePutOnTheToolbar) {
    GivenFile("X.pmt", "N");
    RunAndCancel([this](DialogUser& user) {
        Import(user, "X.pmt");
        EXPECT_EQ(user.StateImage(List, 0), 1);
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), 2);
    });
}

TEST_P(EditorImport, LevelsOfStandardFavoritesAreShownLikeTheOthers) {
    GivenFile("X.pmt", "N", 101);
    GivenFile("Y.pmt", "M", 104);
    RunAndAccept([this](DialogUser& user) {
        Import(user, "X.pmt");
        Import(user, "Y.pmt");
        EXPECT_EQ(user.Cell(List, 0, test::CategoryColumn), Sjis(u8"文書"));
        EXPECT_EQ(user.StateImage(List, 0), 1);
        EXPECT_EQ(user.Cell(List, 1, test::CategoryColumn), Sjis(u8"面"));
        EXPECT_EQ(user.StateImage(List, 1), 3);
        EXPECT_EQ(user.Cell(List, 1, test::KindColumn), Sjis(u8"ユーザー設定"));
    });
    EXPECT_EQ(ListedValues(), (Names{"0~~101~0~0~X.pmt", "0~~104~0~0~Y.pmt"}));
}

TEST_F(EditorImportInMemory, CopyThatCannotBeDeletedAfterAFailureIsNotReportedToo) {
    Outside.Write("X.pmt", "no favorite");
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndAccept([this](MemoryUser& user) {
        Import(user, "X.pmt");
        EXPECT_EQ(user.RowCount(List), 0);
    });
    EXPECT_EQ(Store.Clock.Total(), 28000U);
}

// Export

TEST_F(EditorExportInMemory, DialogProposesTheSafeNameAndAsksBeforeOverwriting) {
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
    EXPECT_TRUE(request.AskBeforeOverwriting);
    EXPECT_FALSE(request.FileMustExist);
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TEST_P(EditorExport, WritesTheFavoriteUnderItsNameAndLevel) {
    Given({{.Name = "A", .Level = 2}});
    RunAndCancel([this](DialogUser& user) {
        user.Fill(Name, "New");
        ExportTo(user, Outside.Path("X.pmt"));
        EXPECT_EQ(NamesInRows(user), Names{"New"});
        EXPECT_EQ(user.Focused(), control::EditorExport);
    });
    const test::HostContent content = FakeHost::ReadFavorite(Outside, "X.pmt");
    EXPECT_EQ(content.Name, "New");
    EXPECT_EQ(content.Level, 2);
    EXPECT_TRUE(SameTable(content.Table, TableOf(SeedOf(0))));
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F0.pmt").Name, "A");
}

TEST_P(EditorExport, MissingFileIsReportedAndNothingIsWritten) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(Desktop.FileChoice.SaveRequests.empty());
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_P(EditorExport, FileThatVanishesMeanwhileIsReportedAndNothingIsWritten) {
    Given({{.Name = "A"}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([this](DialogUser& user) {
        user.Press(control::EditorEdit); // loads the document
        Folder.Remove("F0.pmt");
        ExportTo(user, Outside.Path("X.pmt"));
    });
    EXPECT_TRUE(Outside.Names().empty());
}

TEST_P(EditorExport, OwnFileOfAUserFavoriteIsRefused) {
    Given({{.Name = "A"}, {.Name = "B"}});
    ExpectWarning(text::ImportedNotOverwritable);
    RunAndCancel([this](DialogUser& user) { ExportTo(user, Folder.Path("f1.PMT")); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "B");
}

TEST_P(EditorExport, FileOfADeletedFavoriteIsRefusedToo) {
    Given({{.Name = "A"}, {.Name = "B"}});
    ExpectWarning(text::ImportedNotOverwritable);
    RunAndCancel([this](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        ExportTo(user, Folder.Path("F1.pmt"));
    });
}

TEST_P(EditorExport, FileOfAStandardFavoriteIsNotRefused) {
    Given({{.Name = "A"}, Standard("S", 1)});
    RunAndCancel([this](DialogUser& user) { ExportTo(user, Folder.Path("Standard.pmt")); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "Standard.pmt").Name, "A");
}

TEST_P(EditorExport, TargetThatCannotBeWrittenIsReportedAndStays) {
    Given({{.Name = "A"}});
    Outside.Write("X.pmt", "precious");
    Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Raise);
    ExpectWarning(text::FileNotCreated);
    RunAndCancel([this](DialogUser& user) { ExportTo(user, Outside.Path("X.pmt")); });
    EXPECT_EQ(Outside.Read("X.pmt"), "precious");
    EXPECT_EQ(Outside.Names(), Names{"X.pmt"});
}

TEST_P(EditorExport, ButtonIsOffForStandardFavorites) {
    Given({Standard("S", 1)});
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(Desktop.FileChoice.SaveRequests.empty());
}

} // namespace
} // namespace pmx
