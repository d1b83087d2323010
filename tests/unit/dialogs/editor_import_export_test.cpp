#include "support/editor_test.h"

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

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

using Names = std::vector<std::string>;

template <class AnyDesktop>
class EditorImport : public EditorTestOn<AnyDesktop> {
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

template <class AnyDesktop>
class EditorExport : public EditorTestOn<AnyDesktop> {
protected:
    void ExportTo(DialogUser& user, const std::string& path) {
        this->Desktop.FileChoice.SaveAnswers.emplace_back(path);
        user.Press(control::EditorExport);
    }

    TempFolder Outside{"outside"};
};

TYPED_TEST_SUITE(EditorImport, test::AllDesktops);
TYPED_TEST_SUITE(EditorExport, test::AllDesktops);

using EditorImportInMemory = EditorImport<MemoryDesktop>;
using EditorExportInMemory = EditorExport<MemoryDesktop>;

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
    EXPECT_TRUE(request.HideReadOnlyBox);
    EXPECT_TRUE(request.FileMustExist);
    EXPECT_TRUE(request.PathMustExist);
    EXPECT_FALSE(request.AskBeforeOverwriting);
    EXPECT_TRUE(Folder.Names().empty());
}

TYPED_TEST(EditorImport, NameThatIsNotInUseAddsAFavoriteWithAnEmptyName) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "Inside", 2);
    this->RunAndCancel([this](DialogUser& user) {
        this->Import(user, "X.pmt");
        ASSERT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(user.Cell(List, 1, 1), "");
        EXPECT_EQ(user.Cell(List, 1, 2), Sjis(u8"セクション"));
        EXPECT_EQ(user.Cell(List, 1, 3), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.StateImage(List, 1), 3);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Focused(), control::EditorImport);
        EXPECT_TRUE(this->Folder.Exists("X.pmt"));
    });
}

TYPED_TEST(EditorImport, EmptyNameCanBeFilledIn) {
    this->GivenFile("X.pmt", "Inside");
    this->RunAndAccept([this](DialogUser& user) {
        this->Import(user, "X.pmt");
        user.ClickRow(List, 0);
        user.Fill(Name, "Given");
        user.TabTo(List);
    });
    EXPECT_EQ(this->ListedValues(), Names{"0~Given~1~0~0~X.pmt"});
}

TYPED_TEST(EditorImport, NameInUseAsksForAnotherAndProposesIt) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "a", 3);
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Text(control::CreateName), "a");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
            EXPECT_FALSE(user.IsEnabled(control::CreateLevelSheet));
            user.Fill(control::CreateName, "Other");
            user.Press(control::Ok);
        });
        this->Import(editor, "X.pmt");
        EXPECT_EQ(editor.Cell(List, 1, 1), "Other");
    });
    EXPECT_EQ(this->ListedValues()[1], "0~Other~3~0~0~X.pmt");
}

TYPED_TEST(EditorImport, OtherNameInUseIsRefusedByTheDialog) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->GivenFile("X.pmt", "A");
    this->Desktop.Messages.Expect(text::CreateNameExists, MessageIcon::Exclamation);
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            EXPECT_TRUE(user.IsOpen());
            user.Escape();
        });
        this->Import(editor, "X.pmt");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B"}));
    EXPECT_FALSE(this->Folder.Exists("X.pmt"));
}

TYPED_TEST(EditorImport, NameOfAStandardFavoriteIsInUseToo) {
    this->Given({Standard("S")});
    this->GivenFile("X.pmt", "S");
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("T");
        this->Import(user, "X.pmt");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"S", "T"}));
}

TYPED_TEST(EditorImport, CancelledNameLeavesNothingBehind) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "A");
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [this](DialogUser& user) {
            EXPECT_TRUE(this->Folder.Exists("X.pmt"));
            user.Escape();
        });
        this->Import(editor, "X.pmt");
        EXPECT_EQ(editor.RowCount(List), 1);
        EXPECT_FALSE(this->Folder.Exists("X.pmt"));
    });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, NameIsAskedOnceForEveryFavoriteThatHasTheNameOfTheFile) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "B");
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("B");
        user.Press(control::EditorNew);
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete); // still in the list, so its name still counts
        this->AnswerName("B");
        user.Press(control::EditorNew);
        this->AnswerName("C");
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& dialog) {
            EXPECT_EQ(dialog.Text(control::CreateName), "B");
            dialog.Fill(control::CreateName, "D");
            dialog.Press(control::Ok);
        });
        this->Import(user, "X.pmt");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "D"}));
}

TYPED_TEST(EditorImport, SameFileTwiceGivesTwoFiles) {
    this->GivenFile("Name.pmt", "N");
    this->RunAndCancel([this](DialogUser& user) {
        this->Import(user, "Name.pmt");
        this->Import(user, "Name.pmt");
        EXPECT_EQ(user.RowCount(List), 2);
        EXPECT_EQ(this->Folder.Names(), (Names{"Name-1.pmt", "Name.pmt"}));
    });
    EXPECT_TRUE(this->Folder.Names().empty()) << "cancelling takes them away";
}

TYPED_TEST(EditorImport, SourceStaysAsItIs) {
    this->GivenFile("X.pmt", "N");
    const std::string before = this->Outside.Read("X.pmt");
    this->RunAndCancel([this](DialogUser& user) { this->Import(user, "X.pmt"); });
    EXPECT_EQ(this->Outside.Read("X.pmt"), before);
    EXPECT_EQ(this->Outside.Names(), Names{"X.pmt"});
}

TYPED_TEST(EditorImport, ImportedFavoriteDeletedAgainLeavesNothing) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "N");
    this->RunAndAccept([this](DialogUser& user) {
        this->Import(user, "X.pmt");
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
    });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, FileThatIsNoFavoriteIsRefusedAndLeavesNothingBehind) {
    this->Given({{.Name = "A"}});
    this->Outside.Write("X.pmt", "something else");
    this->Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "X.pmt"); });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, TruncatedFileIsRefusedAndLeavesNothingBehind) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "N");
    const std::string whole = this->Outside.Read("X.pmt");
    this->Outside.Write("X.pmt", whole.substr(0, whole.size() - 1));
    this->Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "X.pmt"); });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, HostThatRaisesIsReportedAndLeavesNothingBehind) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "N");
    this->Host.Plan.FailAt(HostCall::Load, 1, HostFailure::Raise);
    this->Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "X.pmt"); });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, DocumentThatCannotBeMadeIsReportedAndLeavesNothingBehind) {
    this->Given({{.Name = "A"}});
    this->GivenFile("X.pmt", "N");
    this->Host.Plan.FailAt(HostCall::Create, 1, HostFailure::Refuse);
    this->Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "X.pmt"); });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, FileThatCannotBeCopiedIsReported) {
    this->Given({{.Name = "A"}});
    this->Desktop.Messages.Expect(text::ImportFailed, MessageIcon::Exclamation);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "Missing.pmt"); });
    this->ExpectNothingImported();
}

TYPED_TEST(EditorImport, WantOfAFileNameIsReported) {
    this->Given({{.Name = "A"}});
    this->GivenFile("F0.pmt", "N");
    this->Store.Services.LastFileNumber = 0;
    this->Desktop.Messages.Expect(text::NoFileName, MessageIcon::Stop);
    this->RunAndAccept([this](DialogUser& user) { this->Import(user, "F0.pmt"); });
    this->ExpectNothingImported();
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

TYPED_TEST(EditorImport, FavoriteOfDocumentLevelCanBePutOnTheToolbar) {
    this->GivenFile("X.pmt", "N");
    this->RunAndCancel([this](DialogUser& user) {
        this->Import(user, "X.pmt");
        EXPECT_EQ(user.StateImage(List, 0), 1);
        user.ClickStateImage(List, 0);
        EXPECT_EQ(user.StateImage(List, 0), 2);
    });
}

TYPED_TEST(EditorImport, LevelsOfStandardFavoritesAreShownLikeTheOthers) {
    this->GivenFile("X.pmt", "N", 101);
    this->GivenFile("Y.pmt", "M", 104);
    this->RunAndAccept([this](DialogUser& user) {
        this->Import(user, "X.pmt");
        this->Import(user, "Y.pmt");
        EXPECT_EQ(user.Cell(List, 0, 2), Sjis(u8"文書"));
        EXPECT_EQ(user.StateImage(List, 0), 1);
        EXPECT_EQ(user.Cell(List, 1, 2), Sjis(u8"面"));
        EXPECT_EQ(user.StateImage(List, 1), 3);
        EXPECT_EQ(user.Cell(List, 1, 3), Sjis(u8"ユーザー設定"));
    });
    EXPECT_EQ(this->ListedValues(), (Names{"0~~101~0~0~X.pmt", "0~~104~0~0~Y.pmt"}));
}

TEST_F(EditorImportInMemory, CopyThatCannotBeDeletedAfterAFailureIsNotReportedToo) {
    Outside.Write("X.pmt", "no favorite");
    Store.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
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
    EXPECT_TRUE(request.HideReadOnlyBox);
    EXPECT_TRUE(request.AskBeforeOverwriting);
    EXPECT_FALSE(request.FileMustExist);
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TYPED_TEST(EditorExport, WritesTheFavoriteUnderItsNameAndLevel) {
    this->Given({{.Name = "A", .Level = 2}});
    this->RunAndCancel([this](DialogUser& user) {
        user.Fill(Name, "New");
        this->ExportTo(user, this->Outside.Path("X.pmt"));
        EXPECT_EQ(TestFixture::NamesInRows(user), Names{"New"});
        EXPECT_EQ(user.Focused(), control::EditorExport);
    });
    const test::HostContent content = FakeHost::ReadFavorite(this->Outside, "X.pmt");
    EXPECT_EQ(content.Name, "New");
    EXPECT_EQ(content.Level, 2);
    EXPECT_TRUE(SameTable(content.Table, TableOf(TestFixture::SeedOf(0))));
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Name, "A");
}

TYPED_TEST(EditorExport, MissingFileIsReportedAndNothingIsWritten) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(this->Desktop.FileChoice.SaveRequests.empty());
    EXPECT_TRUE(this->Outside.Names().empty());
}

TYPED_TEST(EditorExport, FileThatVanishesMeanwhileIsReportedAndNothingIsWritten) {
    this->Given({{.Name = "A"}});
    this->Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    this->RunAndCancel([this](DialogUser& user) {
        user.Press(control::EditorEdit); // loads the document
        this->Folder.Remove("F0.pmt");
        this->ExportTo(user, this->Outside.Path("X.pmt"));
    });
    EXPECT_TRUE(this->Outside.Names().empty());
}

TYPED_TEST(EditorExport, OwnFileOfAUserFavoriteIsRefused) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->Desktop.Messages.Expect(text::ImportedNotOverwritable, MessageIcon::Exclamation);
    this->RunAndCancel([this](DialogUser& user) { this->ExportTo(user, this->Folder.Path("f1.PMT")); });
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Name, "B");
}

TYPED_TEST(EditorExport, FileOfADeletedFavoriteIsRefusedToo) {
    this->Given({{.Name = "A"}, {.Name = "B"}});
    this->Desktop.Messages.Expect(text::ImportedNotOverwritable, MessageIcon::Exclamation);
    this->RunAndCancel([this](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        this->ExportTo(user, this->Folder.Path("F1.pmt"));
    });
}

TYPED_TEST(EditorExport, FileOfAStandardFavoriteIsNotRefused) {
    this->Given({{.Name = "A"}, Standard("S", 1)});
    this->RunAndCancel([this](DialogUser& user) { this->ExportTo(user, this->Folder.Path("Standard.pmt")); });
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "Standard.pmt").Name, "A");
}

TYPED_TEST(EditorExport, TargetThatCannotBeWrittenIsReportedAndStays) {
    this->Given({{.Name = "A"}});
    this->Outside.Write("X.pmt", "precious");
    this->Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Raise);
    this->Desktop.Messages.Expect(text::FileNotCreated, MessageIcon::Exclamation);
    this->RunAndCancel([this](DialogUser& user) { this->ExportTo(user, this->Outside.Path("X.pmt")); });
    EXPECT_EQ(this->Outside.Read("X.pmt"), "precious");
    EXPECT_EQ(this->Outside.Names(), Names{"X.pmt"});
}

TYPED_TEST(EditorExport, ButtonIsOffForStandardFavorites) {
    this->Given({Standard("S", 1)});
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorExport); });
    EXPECT_TRUE(this->Desktop.FileChoice.SaveRequests.empty());
}

} // namespace
} // namespace pmx
