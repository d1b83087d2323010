#include "support/editor_test.h"

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

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

using Names = std::vector<std::string>;

template <class AnyDesktop>
class EditorCommands : public EditorTestOn<AnyDesktop> {
protected:
    void GivenThree() { this->Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    void ExpectWarning(ResourceId id) { this->Desktop.Messages.Expect(id, MessageIcon::Exclamation); }
    void ExpectFailure(ResourceId id) { this->Desktop.Messages.Expect(id, MessageIcon::Stop); }

    /// Presses New, answers the name and gives the user back.
    void Create(DialogUser& user, const std::string& name) {
        this->AnswerName(name);
        user.Press(control::EditorNew);
    }
};

template <class AnyDesktop>
using EditorNew = EditorCommands<AnyDesktop>;
template <class AnyDesktop>
using EditorEdit = EditorCommands<AnyDesktop>;
template <class AnyDesktop>
using EditorCopy = EditorCommands<AnyDesktop>;
template <class AnyDesktop>
using EditorDelete = EditorCommands<AnyDesktop>;
template <class AnyDesktop>
using EditorMove = EditorCommands<AnyDesktop>;
template <class AnyDesktop>
using EditorIcon = EditorCommands<AnyDesktop>;

TYPED_TEST_SUITE(EditorNew, test::AllDesktops);
TYPED_TEST_SUITE(EditorEdit, test::AllDesktops);
TYPED_TEST_SUITE(EditorCopy, test::AllDesktops);
TYPED_TEST_SUITE(EditorDelete, test::AllDesktops);
TYPED_TEST_SUITE(EditorMove, test::AllDesktops);
TYPED_TEST_SUITE(EditorIcon, test::AllDesktops);

using EditorNewInMemory = EditorNew<MemoryDesktop>;
using EditorEditInMemory = EditorEdit<MemoryDesktop>;
using EditorMoveInMemory = EditorMove<MemoryDesktop>;
using EditorIconInMemory = EditorIcon<MemoryDesktop>;

// New

TYPED_TEST(EditorNew, AddsARowAtTheEndAndAFavoriteFile) {
    this->GivenThree();
    this->RunAndAccept([this](DialogUser& user) {
        this->Create(user, "N");
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "B", "C", "N"}));
        EXPECT_EQ(user.Cell(List, 3, 2), Sjis(u8"文書"));
        EXPECT_EQ(user.Cell(List, 3, 3), Sjis(u8"ユーザー設定"));
        EXPECT_EQ(user.StateImage(List, 3), 1);
        EXPECT_TRUE(this->Folder.Exists("N.pmt"));
    });
    EXPECT_EQ(this->ListedValues().back(), "0~N~1~0~14~N.pmt");
    const test::HostContent content = FakeHost::ReadFavorite(this->Folder, "N.pmt");
    EXPECT_EQ(content.Name, "N");
    EXPECT_EQ(content.Level, 1);
    EXPECT_TRUE(SameTable(content.Table, TableOf(FreshSeed)));
}

TYPED_TEST(EditorNew, SelectionStaysAndTheButtonHasTheFocus) {
    this->GivenThree();
    this->RunAndCancel([this](DialogUser& user) {
        user.ClickRow(List, 1);
        this->Create(user, "N");
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
}

TYPED_TEST(EditorNew, AsksForNameAndLevelWithEmptyNameAndDocumentLevel) {
    this->GivenThree();
    this->RunAndCancel([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Title(), Sjis(u8"お気に入りの作成"));
            EXPECT_EQ(user.Text(control::CreateName), "");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelDocument));
            EXPECT_TRUE(user.IsEnabled(control::CreateLevelPage));
            user.Escape();
        });
        editor.Press(control::EditorNew);
        EXPECT_EQ(editor.RowCount(List), 3);
    });
    EXPECT_TRUE(this->Attributes.Calls.empty());
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

TYPED_TEST(EditorNew, LevelIsTheChosenOneAndOtherLevelsCannotBeOnTheToolbar) {
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "N");
            user.Press(control::CreateLevelSheet);
            user.Press(control::Ok);
        });
        editor.Press(control::EditorNew);
        EXPECT_EQ(editor.StateImage(List, 0), 3);
        EXPECT_EQ(editor.Cell(List, 0, 2), Sjis(u8"用紙"));
    });
    EXPECT_EQ(this->ListedValues(), Names{"0~N~3~0~14~N.pmt"});
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "N.pmt").Level, 3);
}

TYPED_TEST(EditorNew, NameInUseIsRefusedByTheDialog) {
    this->GivenThree();
    this->ExpectWarning(text::CreateNameExists);
    this->RunAndCancel([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            user.Escape();
        });
        editor.Press(control::EditorNew);
    });
}

TYPED_TEST(EditorNew, CancellingTheAttributeDialogLeavesNoRecordAndNoFile) {
    this->GivenThree();
    this->Attributes.User = [](unsigned char*) { return PMX_PROPUI_CANCEL; };
    this->RunAndAccept([this](DialogUser& user) {
        this->Create(user, "N");
        EXPECT_EQ(user.RowCount(List), 3);
    });
    EXPECT_FALSE(this->Folder.Exists("N.pmt"));
    EXPECT_EQ(this->ListedCount(), "3");
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TYPED_TEST(EditorNew, TakenFileNameGetsANumber) {
    this->Folder.Write("N.pmt", "somebody else's");
    this->RunAndAccept([this](DialogUser& user) { this->Create(user, "N"); });
    EXPECT_EQ(this->ListedValues(), Names{"0~N~1~0~14~N-1.pmt"});
    EXPECT_EQ(this->Folder.Read("N.pmt"), "somebody else's");
}

TYPED_TEST(EditorNew, DocumentThatCannotBeMadeIsReported) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        this->Host.Plan.Heal();
        this->Host.Plan.FailFrom(HostCall::Create, 1, failure);
        this->ExpectFailure(text::OutOfMemory);
        this->RunAndCancel([this](DialogUser& user) {
            this->Create(user, "N");
            EXPECT_EQ(user.RowCount(List), 0);
        });
    }
    EXPECT_TRUE(this->Attributes.Calls.empty());
}

TYPED_TEST(EditorNew, FileThatCannotBeWrittenIsReportedAndNothingIsAdded) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        this->Host.Plan.Heal();
        this->Host.Plan.FailFrom(HostCall::Save, 1, failure);
        this->ExpectWarning(text::FileNotCreated);
        this->RunAndAccept([this](DialogUser& user) {
            this->Create(user, "N");
            EXPECT_EQ(user.RowCount(List), 0);
        });
        EXPECT_EQ(this->ListedCount(), "0");
        EXPECT_EQ(this->Host.LiveDocuments, 0U);
    }
}

TYPED_TEST(EditorNew, WantOfAFileNameIsReportedAndNothingIsAdded) {
    this->Store.Services.LastFileNumber = 0;
    this->Folder.Write("N.pmt", "somebody else's");
    this->ExpectFailure(text::NoFileName);
    this->RunAndAccept([this](DialogUser& user) {
        this->Create(user, "N");
        EXPECT_EQ(user.RowCount(List), 0);
    });
    EXPECT_EQ(this->ListedCount(), "0");
    EXPECT_EQ(this->Folder.Read("N.pmt"), "somebody else's");
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TEST_F(EditorNewInMemory, FileNameThatNobodyCanProbeFreelyShowsTheWaitCursorMeanwhile) {
    Folder.Write("N.pmt", "");
    Store.Disk.Plan.FailAt(test::FileOperation::TryOpen, 1, FileError::Held);
    Store.Clock.OnSleep = [this] { EXPECT_EQ(Desktop.Dialogs.WaitCursors, 1); };
    RunAndCancel([this](MemoryUser& user) { Create(user, "N"); });
    EXPECT_FALSE(Store.Clock.Sleeps.empty());
    EXPECT_EQ(Desktop.Dialogs.WaitCursors, 0);
}

TYPED_TEST(EditorNew, NewFavoriteCanBeSelectedWithTheDownKeyInAListThatWasEmpty) {
    this->RunAndAccept([this](DialogUser& user) {
        this->Create(user, "N");
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

TYPED_TEST(EditorEdit, OverwritesTheFavoriteFileAtOnce) {
    this->GivenThree();
    this->Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_OK;
    };
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorEdit);
        EXPECT_EQ(user.Focused(), control::EditorEdit);
    });
    _LM_DOCUMENTLAYOUTTABLE expected = TableOf(TestFixture::SeedOf(1));
    expected.Bytes[0] = 0xEE;
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Table, expected));
}

TYPED_TEST(EditorEdit, KeepsNameLevelIconMarkAndPlace) {
    this->Given({{.Name = "A"}, {.Name = "B", .OnToolbar = true, .Icon = 33}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorEdit);
        EXPECT_EQ(user.SelectedRow(List), 1);
    });
    EXPECT_EQ(this->ListedValues()[1], "0~B~1~1~33~F1.pmt");
}

TYPED_TEST(EditorEdit, StampsANameGivenMeanwhileIntoTheFile) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.Fill(Name, "New");
        user.Press(control::EditorEdit);
    });
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Name, "New");
}

TYPED_TEST(EditorEdit, CancelledDialogChangesNothing) {
    this->GivenThree();
    this->Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_CANCEL;
    };
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(
        SameTable(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Table, TableOf(TestFixture::SeedOf(0))));
    EXPECT_TRUE(this->Host.SavedPaths.empty());
}

TYPED_TEST(EditorEdit, MissingFileIsReported) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->ExpectWarning(text::EditorFavoriteUnreadable);
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(this->Attributes.Calls.empty());
}

TYPED_TEST(EditorEdit, MissingFileIsReportedAgainAndReadOnceItIsThere) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->ExpectWarning(text::EditorFavoriteUnreadable);
    this->RunAndCancel([this](DialogUser& user) {
        user.Press(control::EditorEdit);
        FakeHost::WriteFavorite(this->Folder, "F0.pmt", {.Table = TableOf(9), .Level = 1, .Name = "A"});
        user.Press(control::EditorEdit);
    });
    EXPECT_EQ(this->Attributes.Calls.size(), 1U);
    EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Table, TableOf(9)));
}

TYPED_TEST(EditorEdit, FileThatCannotBeWrittenIsReported) {
    this->GivenThree();
    this->Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Refuse);
    this->ExpectWarning(text::FileNotCreated);
    this->RunAndAccept([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
}

TYPED_TEST(EditorEdit, LevelsOfStandardFavoritesEndSilently) {
    for (const std::int32_t level : {101, 103, 105}) {
        this->Given({{.Name = "A", .Level = level, .File = "1"}});
        this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    }
    EXPECT_TRUE(this->Attributes.Calls.empty());
    EXPECT_TRUE(this->Host.SavedPaths.empty());
}

TYPED_TEST(EditorEdit, HostThatCannotCopyTheDocumentIsReported) {
    this->GivenThree();
    this->Host.Plan.FailAt(HostCall::Assign, 1, HostFailure::Raise);
    this->ExpectFailure(text::FavoriteInfoFailed);
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(this->Attributes.Calls.empty());
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TYPED_TEST(EditorEdit, HostThatCannotTakeTheEditedDocumentOverIsReportedAndTheFileStays) {
    this->GivenThree();
    this->Host.Plan.FailAt(HostCall::Assign, 2, HostFailure::Raise);
    this->Attributes.User = [](unsigned char* part) {
        part[0] = 0xEE;
        return PMX_PROPUI_OK;
    };
    this->ExpectWarning(text::FileNotCreated);
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorEdit); });
    EXPECT_TRUE(
        SameTable(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Table, TableOf(TestFixture::SeedOf(0))));
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

TYPED_TEST(EditorCopy, MakesAFavoriteWithTheSameTableUnderANewName) {
    this->GivenThree();
    this->RunAndAccept([this](DialogUser& user) {
        user.ClickRow(List, 1);
        this->AnswerName("N");
        user.Press(control::EditorCopy);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "B", "C", "N"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), control::EditorCopy);
    });
    const test::HostContent content = FakeHost::ReadFavorite(this->Folder, "N.pmt");
    EXPECT_EQ(content.Name, "N");
    EXPECT_TRUE(SameTable(content.Table, TableOf(TestFixture::SeedOf(1))));
    EXPECT_TRUE(this->Attributes.Calls.empty()) << "a copy is not edited";
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Name, "B");
}

TYPED_TEST(EditorCopy, HasIcon14AndIsNotOnTheToolbar) {
    this->Given({{.Name = "A", .OnToolbar = true, .Icon = 40}});
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("N");
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.StateImage(List, 1), 1);
    });
    EXPECT_EQ(this->ListedValues(), (Names{"0~A~1~1~40~F0.pmt", "0~N~1~0~14~N.pmt"}));
}

TYPED_TEST(EditorCopy, DialogProposesNoNameAndKeepsTheLevel) {
    this->Given({{.Name = "A", .Level = 4}});
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            EXPECT_EQ(user.Text(control::CreateName), "");
            EXPECT_TRUE(user.IsChecked(control::CreateLevelFace));
            EXPECT_FALSE(user.IsEnabled(control::CreateLevelFace));
            user.Fill(control::CreateName, "N");
            user.Press(control::Ok);
        });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(this->ListedValues()[1], "0~N~4~0~14~N.pmt");
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "N.pmt").Level, 4);
}

TYPED_TEST(EditorCopy, NameInUseIsRefusedByTheDialog) {
    this->GivenThree();
    this->ExpectWarning(text::CreateNameExists);
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) {
            user.Fill(control::CreateName, "b");
            user.Press(control::Ok);
            EXPECT_TRUE(user.IsOpen());
            user.Escape();
        });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
}

TYPED_TEST(EditorCopy, LevelThatTheDialogDoesNotOfferBecomesTheDocumentLevel) {
    this->Given({{.Name = "A", .Level = 104, .File = "4"}});
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("N");
        user.Press(control::EditorCopy);
    });
    EXPECT_EQ(this->ListedValues(), (Names{"0~A~104~0~14~4", "0~N~1~0~14~N.pmt"}));
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "N.pmt").Level, 1);
}

TYPED_TEST(EditorCopy, CancelledDialogAddsNothing) {
    this->GivenThree();
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](DialogUser& user) { user.Escape(); });
        editor.Press(control::EditorCopy);
    });
    EXPECT_EQ(this->ListedCount(), "3");
}

TYPED_TEST(EditorCopy, MissingFileIsReportedBeforeTheNameIsAsked) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->ExpectWarning(text::EditorFavoriteUnreadable);
    this->RunAndCancel([](DialogUser& user) { user.Press(control::EditorCopy); });
}

TYPED_TEST(EditorCopy, TableThatIsNotTakenIsReportedAndNothingIsAdded) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        this->GivenThree();
        this->Host.Plan.Heal();
        this->Host.Plan.FailFrom(HostCall::SetTable, 1, failure);
        this->ExpectFailure(text::AttributeTableFailed);
        this->RunAndAccept([this](DialogUser& user) {
            this->AnswerName("N");
            user.Press(control::EditorCopy);
        });
        EXPECT_EQ(this->ListedCount(), "3");
        EXPECT_FALSE(this->Folder.Exists("N.pmt"));
    }
}

struct HostProblem {
    HostCall Call;
    std::size_t Number;
    ResourceId Message;
    MessageIcon Icon;
    bool NameIsAsked = true;
};

class EditorCopyProblems : public EditorCommands<MemoryDesktop>,
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

TYPED_TEST(EditorCopy, WantOfAFileNameIsReportedAndNothingIsAdded) {
    this->GivenThree();
    this->Store.Services.LastFileNumber = 0;
    this->ExpectFailure(text::NoFileName);
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("F0"); // as the file of the first is called
        user.Press(control::EditorCopy);
        EXPECT_EQ(user.RowCount(List), 3);
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B", "C"}));
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

// Delete

TYPED_TEST(EditorDelete, TakesTheRowAwayAndSelectsTheOneBefore) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorDelete);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "B"}));
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
        EXPECT_EQ(user.Focused(), control::EditorDelete);
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "B"}));
    EXPECT_EQ(this->ListedCount(), "2");
}

TYPED_TEST(EditorDelete, FirstRowSelectsTheNewFirstRow) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_EQ(user.Text(Name), "B");
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
    });
}

TYPED_TEST(EditorDelete, OnlyRowLeavesAnEmptyListWithNothingToDoToIt) {
    this->Given({{.Name = "A"}});
    this->RunAndAccept([](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 0);
        EXPECT_EQ(user.Text(Name), "");
        for (const ControlId id : {control::EditorEdit, control::EditorCopy, control::EditorDelete,
                                   control::EditorExport, control::EditorName, control::ChangeIcon}) {
            EXPECT_FALSE(user.IsEnabled(id)) << id;
        }
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
    EXPECT_EQ(this->ListedCount(), "0");
}

TYPED_TEST(EditorDelete, FileStaysUntilTheEditorIsAccepted) {
    this->GivenThree();
    this->RunAndAccept([this](DialogUser& user) {
        user.Press(control::EditorDelete);
        EXPECT_TRUE(this->Folder.Exists("F0.pmt"));
    });
    EXPECT_FALSE(this->Folder.Exists("F0.pmt"));
}

TYPED_TEST(EditorDelete, StandardFavoriteStays) {
    this->Given({Standard("S")});
    this->RunAndCancel([](DialogUser& user) {
        user.TabTo(List);
        user.Key(test::key::Delete);
        EXPECT_EQ(user.RowCount(List), 1);
    });
}

TYPED_TEST(EditorDelete, FocusGoesOnToNewWhereNothingCanBeDeleted) {
    this->Given({Standard("S"), {.Name = "A"}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        EXPECT_FALSE(user.IsEnabled(control::EditorDelete));
        EXPECT_EQ(user.Focused(), control::EditorNew);
    });
}

// Up and down

TYPED_TEST(EditorMove, UpOnTheSecondRowMovesItToTheTopAndDisablesUp) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorUp);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"B", "A", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
        EXPECT_TRUE(user.IsEnabled(control::EditorDown));
        EXPECT_EQ(user.Text(Name), "B");
    });
    EXPECT_EQ(this->ListedNames(), (Names{"B", "A", "C"}));
}

TYPED_TEST(EditorMove, DownOnTheRowBeforeTheLastMovesItToTheEndAndDisablesDown) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDown);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "C", "B"}));
        EXPECT_EQ(user.SelectedRow(List), 2);
        EXPECT_TRUE(user.IsEnabled(control::EditorUp));
        EXPECT_FALSE(user.IsEnabled(control::EditorDown));
    });
    EXPECT_EQ(this->ListedNames(), (Names{"A", "C", "B"}));
}

TYPED_TEST(EditorMove, ButtonKeepsTheFocusWhileItCanBePressedAgainAndThenTheOtherHasIt) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        EXPECT_EQ(user.Focused(), control::EditorUp);
        user.Key(test::key::Space);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"C", "A", "B"}));
        EXPECT_EQ(user.Focused(), control::EditorDown);
        user.Key(test::key::Space);
        user.Key(test::key::Space);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"A", "B", "C"}));
        EXPECT_EQ(user.Focused(), control::EditorUp);
    });
    EXPECT_TRUE(this->Host.LoadedPaths.empty()) << "the focus never passed through the name box";
}

TYPED_TEST(EditorMove, MovedRowKeepsEverythingThatItShowed) {
    this->Given({{.Name = "A", .OnToolbar = true}, Standard("S", 104), {.Name = "C", .Level = 2}});
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        user.Press(control::EditorUp);
        EXPECT_EQ(TestFixture::NamesInRows(user), (Names{"C", "A", "S"}));
        EXPECT_EQ(user.StateImage(List, 0), 3);
        EXPECT_EQ(user.StateImage(List, 1), 2);
        EXPECT_EQ(user.StateImage(List, 2), 3);
        EXPECT_EQ(user.Cell(List, 2, 2), Sjis(u8"面"));
        EXPECT_EQ(user.Cell(List, 2, 3), Sjis(u8"標準"));
    });
    EXPECT_EQ(this->ListedValues(), (Names{"0~C~2~0~14~F2.pmt", "0~A~1~1~14~F0.pmt", "1~S~104~0~14~3"}));
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

TYPED_TEST(EditorMove, RenamingAfterAMoveReachesTheMovedFavorite) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        user.Fill(Name, "New");
        user.TabTo(List);
    });
    EXPECT_EQ(this->ListedValues(), (Names{"0~A~1~0~14~F0.pmt", "0~New~1~0~14~F2.pmt", "0~B~1~0~14~F1.pmt"}));
}

// Icons

TYPED_TEST(EditorIcon, ChosenIconIsWritten) {
    this->Given({{.Name = Sjis(u8"表"), .OnToolbar = true, .Icon = 20}});
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            EXPECT_EQ(user.Title(), Sjis(u8"\"表\"のアイコンの変更"));
            EXPECT_EQ(user.SelectedRow(control::PickerIcons), 6);
            user.ClickRow(control::PickerIcons, 10);
            user.Press(control::Ok);
        });
        editor.Press(control::ChangeIcon);
        EXPECT_EQ(editor.Focused(), control::ChangeIcon);
    });
    EXPECT_EQ(this->ListedValues(), Names{Sjis(u8"0~表~1~1~24~F0.pmt")});
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

TYPED_TEST(EditorIcon, CancelledPickerChangesNothing) {
    this->Given({{.Name = "A", .Icon = 20}});
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            user.ClickRow(control::PickerIcons, 10);
            user.Escape();
        });
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(this->ListedValues(), Names{"0~A~1~0~20~F0.pmt"});
}

TEST_F(EditorIconInMemory, PickerThatCannotBeShownChangesNothing) {
    Given({{.Name = "A", .Icon = 20}});
    RunAndAccept([this](MemoryUser& editor) {
        Desktop.Dialogs.OnOpenedFail(dialog::IconPicker);
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(ListedValues(), Names{"0~A~1~0~20~F0.pmt"});
}

TYPED_TEST(EditorIcon, StandardFavoriteMayHaveAnotherIcon) {
    this->Given({Standard("S")});
    this->RunAndAccept([this](DialogUser& editor) {
        this->Desktop.Dialogs.OnOpened(dialog::IconPicker, [](DialogUser& user) {
            user.ClickRow(control::PickerIcons, 45);
            user.Press(control::Ok);
        });
        editor.Press(control::ChangeIcon);
    });
    EXPECT_EQ(this->ListedValues(), Names{"1~S~101~0~59~3"});
}

} // namespace
} // namespace pmx
