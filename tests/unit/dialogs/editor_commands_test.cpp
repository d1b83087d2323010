#include "support/list_dialog_test.h"

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::FakeHost;
using test::FreshSeed;
using test::HostCall;
using test::HostFailure;
using test::MemoryDesktop;
using test::MemoryUser;
using test::SameTable;
using test::Sjis;
using test::Standard;
using test::TableOf;

using Names = std::vector<std::string>;

using EditorNew = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorNew, test::AllDesktops, test::NameOfDesktop);
using EditorEdit = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorEdit, test::AllDesktops, test::NameOfDesktop);
using EditorCopy = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorCopy, test::AllDesktops, test::NameOfDesktop);
using EditorDelete = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorDelete, test::AllDesktops, test::NameOfDesktop);
using EditorMove = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorMove, test::AllDesktops, test::NameOfDesktop);
using EditorIcon = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorIcon, test::AllDesktops, test::NameOfDesktop);

using EditorNewInMemory = EditorTestOn<MemoryDesktop>;
using EditorEditInMemory = EditorTestOn<MemoryDesktop>;
using EditorMoveInMemory = EditorTestOn<MemoryDesktop>;
using EditorIconInMemory = EditorTestOn<MemoryDesktop>;

// New

TEST_P(EditorNew, AddsARowAtTheEndAndAFavoriteFile) {
    GivenThree();
    RunAndAccept([this](DialogUser& user) {
        Create(user, "N");
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B", "C", "N"}));
        EXPECT_EQ(user.Cell(List, 3, test::CategoryColumn), Sjis(u8"文書"));
        EXPECT_EQ(user.Cell(List, 3, test::KindColumn), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.StateImage(List, 3), 1);
        EXPECT_TRUE(Folder.Exists("N.pmt"));
    });
    EXPECT_EQ(ListedValues().back(), "0~N~1~0~14~N.pmt");
    const test::HostContent content = FakeHost::ReadFavorite(Folder, "N.pmt");
    EXPECT_EQ(content.Name, "N");
    EXPECT_EQ(content.Level, 1);
    EXPECT_TRUE(SameTable(content.Table, TableOf(FreshSeed)));
}

TEST_P(EditorNew, SelectionStaysAndTheButtonHasTheFocus) {
    GivenThree();
    RunAndCancel([this](DialogUser& user) {
        user.ClickRow(List, 1);
        Create(user, "N");
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
}

TEST_P(EditorNew, AsksForNameAndLevelWithEmptyNameAndDocumentLevel) {
    GivenThree();
    RunAndCancel([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの作成"));
            EXPECT_EQ(user.Text(control::CreateName), "");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelDocument));
            EXPECT_TRUE(user.IsEnabled(control::CreateLevelPage));
            user.Escape();
        });
        editor.Press(control::EditorNew);
        EXPECT_EQ(editor.RowCount(List), 3);
    });
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_F(EditorNewInMemory, DialogIsModalToTheEditorAndTheNewRowComesIntoView) {
    GivenThree();
    RunAndCancel([this](MemoryUser& editor) {
        editor.ClickRow(List, 1);
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [&editor](MemoryUser& user) {
            EXPECT_EQ(user.Parent(), editor.Handle());
            user.Fill(control::CreateName, "N");
            user.Press(control::Ok);
        });
        editor.Press(control::EditorNew);
        EXPECT_EQ(editor.List(List).LastMadeVisible, 3);
    });
}

TEST_P(EditorNew, LevelIsTheChosenOneAndOtherLevelsCannotBeOnTheToolbar) {
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "N");
            user.Press(control::CreateLevelSheet);
            user.Press(control::Ok);
        });
        editor.Press(control::EditorNew);
        EXPECT_EQ(editor.StateImage(List, 0), 3);
        EXPECT_EQ(editor.Cell(List, 0, test::CategoryColumn), Sjis(u8"用紙"));
    });
    EXPECT_EQ(ListedValues(), Names{"0~N~3~0~14~N.pmt"});
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "N.pmt").Level, 3);
}

TEST_P(EditorNew, NameInUseIsRefusedByTheDialog) {
    GivenThree();
    ExpectWarning(text::CreateNameExists);
    RunAndCancel([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            user.Escape();
        });
        editor.Press(control::EditorNew);
    });
}

TEST_P(EditorNew, CancellingTheAttributeDialogLeavesNoRecordAndNoFile) {
    GivenThree();
    Attributes.User = [](unsigned char*) { return PMX_PROPUI_CANCEL; };
    RunAndAccept([this](DialogUser& user) {
        Create(user, "N");
        EXPECT_EQ(user.RowCount(List), 3);
    });
    EXPECT_FALSE(Folder.Exists("N.pmt"));
    EXPECT_EQ(ListedCount(), "3");
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(EditorNew, TakenFileNameGetsANumber) {
    Folder.Write("N.pmt", "somebody else's");
    RunAndAccept([this](DialogUser& user) { Create(user, "N"); });
    EXPECT_EQ(ListedValues(), Names{"0~N~1~0~14~N-1.pmt"});
    EXPECT_EQ(Folder.Read("N.pmt"), "somebody else's");
}

TEST_P(EditorNew, DocumentThatCannotBeMadeIsReported) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        Host.Plan.Heal();
        Host.Plan.FailFrom(HostCall::Create, 1, failure);
        ExpectFailure(text::OutOfMemory);
        RunAndCancel([this](DialogUser& user) {
            Create(user, "N");
            EXPECT_EQ(user.RowCount(List), 0);
        });
    }
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_P(EditorNew, FileThatCannotBeWrittenIsReportedAndNothingIsAdded) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        Host.Plan.Heal();
        Host.Plan.FailFrom(HostCall::Save, 1, failure);
        ExpectWarning(text::FileNotCreated);
        RunAndAccept([this](DialogUser& user) {
            Create(user, "N");
            EXPECT_EQ(user.RowCount(List), 0);
        });
        EXPECT_EQ(ListedCount(), "0");
        EXPECT_EQ(Host.LiveDocuments, 0U);
    }
}

TEST_P(EditorNew, WantOfAFileNameIsReportedAndNothingIsAdded) {
    Store.Services.LastFileNumber = 0;
    Folder.Write("N.pmt", "somebody else's");
    ExpectFailure(text::NoFileName);
    RunAndAccept([this](DialogUser& user) {
        Create(user, "N");
        EXPECT_EQ(user.RowCount(List), 0);
    });
    EXPECT_EQ(ListedCount(), "0");
    EXPECT_EQ(Folder.Read("N.pmt"), "somebody else's");
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(EditorNewInMemory, FileNameThatNobodyCanProbeFreelyShowsTheWaitCursorMeanwhile) {
    Folder.Write("N.pmt", "");
    Store.Disk.Plan.FailAt(test::FileOperation::TryOpen, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) { Create(user, "N"); });
    EXPECT_FALSE(Store.Clock.Sleeps.empty());
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
}

TEST_P(EditorNew, NewFavoriteCanBeSelectedWithTheDownKeyInAListThatWasEmpty) {
    RunAndAccept([this](DialogUser& user) {
        Create(user, "N");
        EXPECT_EQ(user.SelectedRow(List), -1);
        user.TabTo(List);
        user.Key(test::key::Down);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(Name), "N");
        EXPECT_TRUE(user.IsEnabled(control::EditorEdit));
        EXPECT_TRUE(user.IsEnabled(control::EditorIcon));
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
}

// Edit

TEST_P(EditorEdit, OverwritesTheFavoriteFileAtOnce) {
    GivenThree();
    Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_OK;
    };
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorEdit);
        EXPECT_EQ(user.Focused(), control::EditorEdit);
    });
    _LM_DOCUMENTLAYOUTTABLE expected = TableOf(SeedOf(1));
    expected.Bytes[0] = 0xEE;
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "F1.pmt").Table, expected));
}

TEST_P(EditorEdit, KeepsNameLevelIconMarkAndPlace) {
    Given({{.Name = "A"}, {.Name = "B", .OnToolbar = true, .Icon = 33}});
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorEdit);
        EXPECT_EQ(user.SelectedRow(List), 1);
    });
    EXPECT_EQ(ListedValues()[1], "0~B~1~1~33~F1.pmt");
}

TEST_P(EditorEdit, StampsANameGivenMeanwhileIntoTheFile) {
    GivenThree();
    RunAndCancel([](DialogUser& user) {
        user.Fill(Name, "New");
        user.Press(control::EditorEdit);
    });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F0.pmt").Name, "New");
}

TEST_P(EditorEdit, CancelledDialogChangesNothing) {
    GivenThree();
    Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_CANCEL;
    };
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "F0.pmt").Table, TableOf(SeedOf(0))));
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TEST_P(EditorEdit, MissingFileIsReported) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_P(EditorEdit, MissingFileIsReportedAgainAndReadOnceItIsThere) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([this](DialogUser& user) {
        user.Press(control::EditorEdit);
        FakeHost::WriteFavorite(Folder, "F0.pmt", {.Table = TableOf(9), .Level = 1, .Name = "A"});
        user.Press(control::EditorEdit);
    });
    EXPECT_EQ(Attributes.Calls.size(), 1U);
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "F0.pmt").Table, TableOf(9)));
}

TEST_P(EditorEdit, FileThatCannotBeWrittenIsReported) {
    GivenThree();
    Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Refuse);
    ExpectWarning(text::FileNotCreated);
    RunAndAccept([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
}

TEST_P(EditorEdit, LevelsOfStandardFavoritesEndSilently) {
    for (const std::int32_t level : {101, 103, 105}) {
        Given({{.Name = "A", .Level = level, .File = "1"}});
        RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    }
    EXPECT_TRUE(Attributes.Calls.empty());
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TEST_P(EditorEdit, HostThatCannotCopyTheDocumentIsReported) {
    GivenThree();
    Host.Plan.FailAt(HostCall::Assign, 1, HostFailure::Raise);
    ExpectFailure(text::FavoriteInfoFailed);
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(Attributes.Calls.empty());
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(EditorEdit, HostThatCannotTakeTheEditedDocumentOverIsReportedAndTheFileStays) {
    GivenThree();
    Host.Plan.FailAt(HostCall::Assign, 2, HostFailure::Raise);
    Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_OK;
    };
    ExpectWarning(text::FileNotCreated);
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "F0.pmt").Table, TableOf(SeedOf(0))));
}

TEST_F(EditorEditInMemory, StandardFavoriteIsCopiedThroughTheAttributeDialog) {
    Given({Standard("S", 1)});
    const test::HostContent original{.Table = TableOf(9), .Level = 1, .Name = "S"};
    FakeHost::WriteFavorite(Folder, "Standard.pmt", original);
    Attributes.User = [](unsigned char* part) {
        part[0] ^= 0xFF;
        return PMX_PROPUI_OK;
    };
    RunAndAccept([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](MemoryUser& user) {
            EXPECT_EQ(user.Text(control::CreateName), "");
            user.Fill(control::CreateName, "N");
            user.Press(control::Ok);
        });
        editor.Events().OnEvent({.Control = control::EditorEdit,
                                 .Event = DialogEvent::Pressed}); // the button itself cannot be pressed
    });
    EXPECT_EQ(Attributes.Calls.size(), 1U);
    EXPECT_EQ(ListedValues(), (Names{"1~S~1~0~14~Standard.pmt", "0~N~1~0~14~N.pmt"}));
    _LM_DOCUMENTLAYOUTTABLE edited = TableOf(9);
    edited.Bytes[0] ^= 0xFF;
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "N.pmt").Table, edited));
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "Standard.pmt").Table, original.Table));
}

// Copy

TEST_P(EditorCopy, MakesAFavoriteWithTheSameTableUnderANewName) {
    GivenThree();
    RunAndAccept([this](DialogUser& user) {
        user.ClickRow(List, 1);
        AnswerName("N");
        user.Press(control::EditorCopy);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B", "C", "N"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), control::EditorCopy);
    });
    const test::HostContent content = FakeHost::ReadFavorite(Folder, "N.pmt");
    EXPECT_EQ(content.Name, "N");
    EXPECT_TRUE(SameTable(content.Table, TableOf(SeedOf(1))));
    EXPECT_TRUE(Attributes.Calls.empty()) << "a copy is not edited";
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "B");
}

TEST_P(EditorCopy, HasIcon14AndIsNotOnTheToolbar) {
    Given({{.Name = "A", .OnToolbar = true, .Icon = 40}});
    RunAndAccept([this](DialogUser& user) {
        AnswerName("N");
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.StateImage(List, 1), 1);
    });
    EXPECT_EQ(ListedValues(), (Names{"0~A~1~1~40~F0.pmt", "0~N~1~0~14~N.pmt"}));
}

TEST_P(EditorCopy, DialogProposesNoNameAndKeepsTheLevel) {
    Given({{.Name = "A", .Level = 4}});
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Text(control::CreateName), "");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelFace));
            EXPECT_FALSE(user.IsEnabled(control::CreateLevelFace));
            user.Fill(control::CreateName, "N");
            user.Press(control::Ok);
        });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(ListedValues()[1], "0~N~4~0~14~N.pmt");
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "N.pmt").Level, 4);
}

TEST_P(EditorCopy, NameInUseIsRefusedByTheDialog) {
    GivenThree();
    ExpectWarning(text::CreateNameExists);
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            EXPECT_TRUE(user.IsOpen());
            user.Escape();
        });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
}

TEST_P(EditorCopy, LevelThatTheDialogDoesNotOfferBecomesTheDocumentLevel) {
    Given({{.Name = "A", .Level = 104, .File = "4"}});
    RunAndAccept([this](DialogUser& user) {
        AnswerName("N");
        user.Press(control::EditorCopy);
    });
    EXPECT_EQ(ListedValues(), (Names{"0~A~104~0~14~4", "0~N~1~0~14~N.pmt"}));
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "N.pmt").Level, 1);
}

TEST_P(EditorCopy, CancelledDialogAddsNothing) {
    GivenThree();
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) { user.Escape(); });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(ListedCount(), "3");
}

TEST_P(EditorCopy, MissingFileIsReportedBeforeTheNameIsAsked) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([](DialogUser& user) { user.Press(control::EditorCopy); });
}

TEST_P(EditorCopy, TableThatIsNotTakenIsReportedAndNothingIsAdded) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        GivenThree();
        Host.Plan.Heal();
        Host.Plan.FailFrom(HostCall::SetTable, 1, failure);
        ExpectFailure(text::AttributeTableFailed);
        RunAndAccept([this](DialogUser& user) {
            AnswerName("N");
            user.Press(control::EditorCopy);
        });
        EXPECT_EQ(ListedCount(), "3");
        EXPECT_FALSE(Folder.Exists("N.pmt"));
    }
}

struct HostProblem {
    HostCall Call;
    std::size_t Number;
    ResourceId Message;
    MessageIcon Icon;
    bool NameIsAsked = true;
};

class EditorCopyProblems : public EditorTestOn<MemoryDesktop>,
                           public testing::WithParamInterface<HostProblem> {};

TEST_P(EditorCopyProblems, ShowTheirMessageAndLeaveTheListAsItWas) {
    GivenThree();
    Host.Plan.FailAt(GetParam().Call, GetParam().Number, HostFailure::Raise);
    Desktop.Messages.Expect(GetParam().Message, GetParam().Icon);
    RunAndAccept([this](MemoryUser& user) {
        if (GetParam().NameIsAsked) {
            AnswerName("N");
        }
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.RowCount(List), 3);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_FALSE(Folder.Exists("N.pmt"));
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

constexpr HostProblem CopyProblems[] = {
    {HostCall::Create, 1, text::EditorFavoriteUnreadable, MessageIcon::Exclamation, false},
    {HostCall::Load, 1, text::EditorFavoriteUnreadable, MessageIcon::Exclamation, false},
    {HostCall::Create, 2, text::OutOfMemory, MessageIcon::Stop},
    {HostCall::Assign, 1, text::FavoriteInfoFailed, MessageIcon::Stop},
    {HostCall::GetTable, 1, text::AttributeTableFailed, MessageIcon::Stop},
    {HostCall::SetName, 1, text::AttributeTableFailed, MessageIcon::Stop},
    {HostCall::SetLevel, 1, text::AttributeTableFailed, MessageIcon::Stop},
    {HostCall::SetTable, 1, text::AttributeTableFailed, MessageIcon::Stop},
    {HostCall::Save, 1, text::FileNotCreated, MessageIcon::Exclamation},
};

INSTANTIATE_TEST_SUITE_P(AllCalls, EditorCopyProblems, testing::ValuesIn(CopyProblems));

TEST_P(EditorCopy, WantOfAFileNameIsReportedAndNothingIsAdded) {
    GivenThree();
    Store.Services.LastFileNumber = 0;
    ExpectFailure(text::NoFileName);
    RunAndAccept([this](DialogUser& user) {
        AnswerName("F0"); // as the file of the first is called
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.RowCount(List), 3);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

// Delete

TEST_P(EditorDelete, TakesTheRowAwayAndSelectsTheOneBefore) {
    GivenThree();
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorDelete);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
        EXPECT_EQ(user.Focused(), control::EditorDelete);
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "B"}));
    EXPECT_EQ(ListedCount(), "2");
}

TEST_P(EditorDelete, FirstRowSelectsTheNewFirstRow) {
    GivenThree();
    RunAndCancel([](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
    });
}

TEST_P(EditorDelete, OnlyRowLeavesAnEmptyListWithNothingToDoToIt) {
    Given({{.Name = "A"}});
    RunAndAccept([](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_EQ(user.Text(Name), "");
        for (const ControlId id : {control::EditorEdit, control::EditorCopy, control::EditorDelete,
                                   control::EditorExport, control::EditorName, control::ChangeIcon}) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
    EXPECT_EQ(ListedCount(), "0");
}

TEST_P(EditorDelete, FileStaysUntilTheEditorIsAccepted) {
    GivenThree();
    RunAndAccept([this](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_TRUE(Folder.Exists("F0.pmt"));
    });
    EXPECT_FALSE(Folder.Exists("F0.pmt"));
}

TEST_P(EditorDelete, StandardFavoriteStays) {
    Given({Standard("S")});
    RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Delete);
        EXPECT_EQ(user.RowCount(List), 1);
    });
}

TEST_P(EditorDelete, FocusGoesOnToNewWhereNothingCanBeDeleted) {
    Given({Standard("S"), {.Name = "A"}});
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        EXPECT_FALSE(user.IsEnabled(control::EditorDelete));
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
}

// Up and down

TEST_P(EditorMove, UpOnTheSecondRowMovesItToTheTopAndDisablesUp) {
    GivenThree();
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorUp);
        EXPECT_EQ(NamesInRows(user), (Names{"B", "A", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        EXPECT_EQ(user.Text(Name), "B");
    });
    EXPECT_EQ(ListedNames(), (Names{"B", "A", "C"}));
}

TEST_P(EditorMove, DownOnTheRowBeforeTheLastMovesItToTheEndAndDisablesDown) {
    GivenThree();
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDown);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "C", "B"}));
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
    EXPECT_EQ(ListedNames(), (Names{"A", "C", "B"}));
}

TEST_P(EditorMove, ButtonKeepsTheFocusWhileItCanBePressedAgainAndThenTheOtherHasIt) {
    GivenThree();
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        EXPECT_EQ(user.Focused(), control::EditorUp);
        user.Key(test::key::Space);
        EXPECT_EQ(NamesInRows(user), (Names{"C", "A", "B"}));
        EXPECT_EQ(user.Focused(), control::EditorDown);
        user.Key(test::key::Space);
        user.Key(test::key::Space);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B", "C"}));
        EXPECT_EQ(user.Focused(), control::EditorUp);
    });
    EXPECT_TRUE(Host.LoadedPaths.empty()) << "the focus never passed through the name box";
}

TEST_P(EditorMove, MovedRowKeepsEverythingThatItShowed) {
    Given({{.Name = "A", .OnToolbar = true}, Standard("S", 104), {.Name = "C", .Level = 2}});
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        user.Press(control::EditorUp);
        EXPECT_EQ(NamesInRows(user), (Names{"C", "A", "S"}));
        EXPECT_EQ(user.StateImage(List, 0), 3);
        EXPECT_EQ(user.StateImage(List, 1), 2);
        EXPECT_EQ(user.StateImage(List, 2), 3);
        EXPECT_EQ(user.Cell(List, 2, test::CategoryColumn), Sjis(u8"面"));
        EXPECT_EQ(user.Cell(List, 2, test::KindColumn), Sjis(u8"標準"));
    });
    EXPECT_EQ(ListedValues(), (Names{"0~C~2~0~14~F2.pmt", "0~A~1~1~14~F0.pmt", "1~S~104~0~14~3"}));
}

TEST_F(EditorMoveInMemory, MovingDrawsTheListOnceAndKeepsTheRowInView) {
    GivenThree();
    RunAndCancel([](MemoryUser& user) {
        const int before = user.List(List).RedrawPauses;
        user.Press(control::EditorDown);
        EXPECT_EQ(user.List(List).RedrawPauses, before + 1);
        EXPECT_TRUE(user.List(List).Redraw);
        EXPECT_EQ(user.List(List).LastMadeVisible, 1);
        user.Press(control::EditorUp);
        EXPECT_EQ(user.List(List).LastMadeVisible, 0);
    });
}

TEST_F(EditorMoveInMemory, RowSelectedAfterADeletionIsInView) {
    GivenThree();
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.List(List).LastMadeVisible, 1);
    });
}

TEST_P(EditorMove, RenamingAfterAMoveReachesTheMovedFavorite) {
    GivenThree();
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        user.Fill(Name, "New");
        user.TabTo(List);
    });
    EXPECT_EQ(ListedValues(), (Names{"0~A~1~0~14~F0.pmt", "0~New~1~0~14~F2.pmt", "0~B~1~0~14~F1.pmt"}));
}

// Icons

TEST_P(EditorIcon, ChosenIconIsWritten) {
    Given({{.Name = Sjis(u8"表"), .OnToolbar = true, .Icon = 20}});
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            EXPECT_EQ(user.Title(), Sjis(u8"\"表\"のアイコンの変更"));
            EXPECT_EQ(user.SelectedRow(control::PickerIcons), 6);
            user.ClickRow(control::PickerIcons, 10);
            user.Press(control::Ok);
        });
        editor.Press(control::ChangeIcon);
        EXPECT_EQ(editor.Focused(), control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues(), Names{Sjis(u8"0~表~1~1~24~F0.pmt")});
}

TEST_F(EditorIconInMemory, PickerIsModalToTheEditorAndTheChosenIconIsShown) {
    Given({{.Name = "A", .Icon = 20}});
    RunAndCancel([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [&editor](MemoryUser& user) {
            EXPECT_EQ(user.Parent(), editor.Handle());
            user.ClickRow(control::PickerIcons, 10);
            user.Press(control::Ok);
        });
        editor.Press(control::ChangeIcon);
        EXPECT_EQ(editor.IconIn(control::EditorIcon)->Index, 24);
    });
}

TEST_P(EditorIcon, CancelledPickerChangesNothing) {
    Given({{.Name = "A", .Icon = 20}});
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            user.ClickRow(control::PickerIcons, 10);
            user.Escape();
        });
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues(), Names{"0~A~1~0~20~F0.pmt"});
}

TEST_F(EditorIconInMemory, PickerThatCannotBeShownChangesNothing) {
    Given({{.Name = "A", .Icon = 20}});
    RunAndAccept([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpenedFail(dialog::IconPicker);
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues(), Names{"0~A~1~0~20~F0.pmt"});
}

TEST_P(EditorIcon, StandardFavoriteMayHaveAnotherIcon) {
    Given({Standard("S")});
    RunAndAccept([this](DialogUser& editor) {
        Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            user.ClickRow(control::PickerIcons, 45);
            user.Press(control::Ok);
        });
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues(), Names{"1~S~101~0~59~3"});
}

} // namespace
} // namespace pmx
