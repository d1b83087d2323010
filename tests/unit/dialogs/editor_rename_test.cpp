#include "support/editor_test.h"

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::ListedFavorite;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

template <class AnyDesktop>
class EditorRename : public EditorTestOn<AnyDesktop> {
protected:
    void GivenThree() { this->Given({{.Name = "A"}, {.Name = "Beta"}, {.Name = "C"}}); }

    /// Selects a row, types a name in the name box and leaves it for the list.
    static void Rename(DialogUser& user, int row, const std::string& name) {
        user.ClickRow(List, row);
        user.Fill(Name, name);
        user.TabTo(List);
    }

    void ExpectRefusal(ResourceId id) { this->Desktop.Messages.Expect(id, MessageIcon::Exclamation); }
};

TYPED_TEST_SUITE(EditorRename, test::AllDesktops);

using EditorRenameInMemory = EditorRename<MemoryDesktop>;

TEST_F(EditorRenameInMemory, RefusedNameLeavesItsRowInView) {
    GivenThree();
    ExpectRefusal(text::NameHasSeparator);
    RunAndCancel([](MemoryUser& user) {
        Rename(user, 1, "a~b");
        EXPECT_EQ(user.List(List).LastMadeVisible, 1);
    });
}

TYPED_TEST(EditorRename, LeavingTheNameBoxRenamesTheRowAndTheListFileAtTheEnd) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, Sjis(u8"両面印刷"));
        EXPECT_EQ(TestFixture::NamesInRows(user), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
    });
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
}

TYPED_TEST(EditorRename, FavoriteFileKeepsItsNameAndItsContent) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, "New"); });
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Name, "Beta");
    EXPECT_EQ(this->ListedValues()[1], "0~New~1~0~14~F1.pmt");
}

TYPED_TEST(EditorRename, BlanksAroundTheNameAreRemoved) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, "  New name \t");
        EXPECT_EQ(user.Cell(List, 1, 1), "New name");
        EXPECT_EQ(user.Text(Name), "New name");
    });
    EXPECT_EQ(this->ListedNames()[1], "New name");
}

TYPED_TEST(EditorRename, FullWidthBlanksAroundTheNameAreRemovedToo) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, Sjis(u8"　 表　紙 　"));
        EXPECT_EQ(user.Text(Name), Sjis(u8"表　紙"));
    });
    EXPECT_EQ(this->ListedNames()[1], Sjis(u8"表　紙"));
}

TYPED_TEST(EditorRename, BlanksOnlyChangeNothing) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, Sjis(u8" 　 "));
        EXPECT_EQ(user.Cell(List, 1, 1), "Beta");
        EXPECT_EQ(user.Text(Name), "Beta");
    });
    EXPECT_EQ(this->ListedNames()[1], "Beta");
}

TYPED_TEST(EditorRename, NameHasAtMost32BytesAndNoHalfCharacter) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, std::string(40, 'x'));
        EXPECT_EQ(user.Cell(List, 1, 1), std::string(32, 'x'));
        TestFixture::Rename(user, 2, "y" + Sjis(u8"あああああああああああああああああ"));
        EXPECT_EQ(user.Cell(List, 2, 1), "y" + Sjis(u8"あああああああああああああああ"));
    });
}

TYPED_TEST(EditorRename, SeparatorIsRefusedAndTheUserStaysInTheNameBox) {
    this->GivenThree();
    this->ExpectRefusal(text::NameHasSeparator);
    this->RunAndCancel([](DialogUser& user) {
        TestFixture::Rename(user, 1, "a~b");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "a~b");
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Cell(List, 1, 1), "Beta");
    });
}

TYPED_TEST(EditorRename, SecondByteOfACharacterIsNoSeparator) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, Sjis(u8"ミ")); });
    EXPECT_EQ(this->ListedNames()[1], Sjis(u8"ミ"));
}

TYPED_TEST(EditorRename, NameOfAnotherFavoriteInAnotherCaseIsRefused) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndCancel([](DialogUser& user) {
        TestFixture::Rename(user, 0, "bETA");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "bETA");
        EXPECT_EQ(user.Cell(List, 0, 1), "A");
    });
}

TYPED_TEST(EditorRename, DoubleByteLettersOfOtherCaseAreAnotherName) {
    this->Given({{.Name = Sjis(u8"ア")}, {.Name = "B"}});
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, Sjis(u8"ヂ")); });
    EXPECT_EQ(this->ListedNames()[1], Sjis(u8"ヂ"));
}

TYPED_TEST(EditorRename, NameOfAFavoriteDeletedMeanwhileIsRefused) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        TestFixture::Rename(user, 0, "beta");
    });
}

TYPED_TEST(EditorRename, OwnNameInAnotherCaseIsAccepted) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) { TestFixture::Rename(user, 1, "BETA"); });
    EXPECT_EQ(this->ListedNames()[1], "BETA");
}

TYPED_TEST(EditorRename, MarkedRowIsRenamedAlsoWhenItIsNotSelectedAnyMore) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Fill(Name, "New");
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, 1), "New");
    });
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"A", "New", "C"}));
}

TYPED_TEST(EditorRename, RefusedNameSelectsItsRowAgain) {
    this->GivenThree();
    this->ExpectRefusal(text::NameHasSeparator);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Fill(Name, "a~b");
        user.TabTo(List);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TYPED_TEST(EditorRename, RefusedNameCanBeMended) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, "C");
        user.Fill(Name, "D");
        user.TabTo(List);
    });
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"A", "D", "C"}));
}

TYPED_TEST(EditorRename, ClickOnAnotherRowWithARefusedNameStaysOnTheRow) {
    this->GivenThree();
    this->ExpectRefusal(text::NameHasSeparator);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.ClickRow(List, 2);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "~");
        EXPECT_EQ(user.Focused(), Name);
    });
}

TYPED_TEST(EditorRename, ClickOnAnotherRowRenamesTheRowThatTheNameBoxWasEnteredFor) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.ClickRow(List, 2);
        EXPECT_EQ(TestFixture::NamesInRows(user), (std::vector<std::string>{"A", "New", "C"}));
        EXPECT_EQ(user.Text(Name), "C");
    });
}

TYPED_TEST(EditorRename, ButtonPressedWithARefusedNameDoesNothing) {
    this->GivenThree();
    this->ExpectRefusal(text::NameHasSeparator);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 3);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TYPED_TEST(EditorRename, EnterInTheNameBoxRenamesAndAccepts) {
    this->GivenThree();
    EXPECT_EQ(this->Run([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.Enter();
    }),
              CodeOk);
    EXPECT_EQ(this->ListedNames()[1], "New");
}

TYPED_TEST(EditorRename, EnterInTheNameBoxWithARefusedNameKeepsTheEditorOpen) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Enter();
        ASSERT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "C");
    });
    EXPECT_EQ(this->ListedNames()[1], "Beta");
}

TYPED_TEST(EditorRename, OkWithARefusedNameKeepsTheEditorOpen) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
    });
}

TYPED_TEST(EditorRename, EscapeInTheNameBoxCancelsWithoutLookingAtTheName) {
    this->GivenThree();
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
    });
    EXPECT_EQ(this->ListedNames()[1], "Beta");
}

TYPED_TEST(EditorRename, CancelButtonIsLeavingTheNameBoxToo) {
    this->GivenThree();
    this->ExpectRefusal(text::RenameNameExists);
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Cancel);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
    });
}

TYPED_TEST(EditorRename, EmptyNameIsNotComparedWithTheNamesOfOthers) {
    this->Given({{.Name = "Same"}, {.Name = "Same"}});
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 0, "");
        EXPECT_EQ(user.Text(Name), "Same");
    });
    EXPECT_EQ(this->ListedNames(), (std::vector<std::string>{"Same", "Same"}));
}

TYPED_TEST(EditorRename, UnreadableFavoriteFileIsReportedAndTheRowKeepsTheOldText) {
    this->Given({{.Name = "A", .HasFile = false}, {.Name = "B"}});
    this->ExpectRefusal(text::EditorFavoriteUnreadable);
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 0, "New");
        EXPECT_EQ(user.Cell(List, 0, 1), "A");
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(this->ListedNames()[0], "New");
}

TYPED_TEST(EditorRename, UnreadableFavoriteFileDoesNotKeepEnterFromAccepting) {
    this->Given({{.Name = "A", .HasFile = false}});
    this->ExpectRefusal(text::EditorFavoriteUnreadable);
    EXPECT_EQ(this->Run([](DialogUser& user) {
        user.Fill(Name, "New");
        user.Enter();
    }),
              CodeOk);
    EXPECT_EQ(this->ListedNames()[0], "New");
}

TYPED_TEST(EditorRename, FavoriteFileOutsideTheFolderCountsAsMissing) {
    this->Folder.AddFolder("Sub");
    FakeHost::WriteFavorite(this->Folder, "Sub\\X.pmt", {.Level = 1, .Name = "A"});
    this->Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    this->ExpectRefusal(text::EditorFavoriteUnreadable);
    this->RunAndCancel([](DialogUser& user) { TestFixture::Rename(user, 0, "New"); });
    EXPECT_TRUE(this->Host.LoadedPaths.empty());
}

TYPED_TEST(EditorRename, LoadedDocumentGetsTheNameAndIsNotReadAgain) {
    this->GivenThree();
    this->RunAndCancel([this](DialogUser& user) {
        TestFixture::Rename(user, 1, "New");
        TestFixture::Rename(user, 1, "Newer");
        EXPECT_EQ(this->Host.LoadedPaths.size(), 1U);
        user.Press(control::EditorEdit); // saves the document with its name
    });
    EXPECT_EQ(FakeHost::ReadFavorite(this->Folder, "F1.pmt").Name, "Newer");
}

TYPED_TEST(EditorRename, HostThatRaisesAtTheNameChangesNothingElse) {
    this->GivenThree();
    this->Host.Plan.FailFrom(HostCall::SetName, 1, HostFailure::Raise);
    this->RunAndAccept([](DialogUser& user) {
        TestFixture::Rename(user, 1, "New");
        EXPECT_EQ(user.Cell(List, 1, 1), "New");
    });
    EXPECT_EQ(this->ListedNames()[1], "New");
}

TYPED_TEST(EditorRename, HostThatRaisesAtTheFileIsReported) {
    this->GivenThree();
    this->Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    this->ExpectRefusal(text::EditorFavoriteUnreadable);
    this->RunAndCancel([](DialogUser& user) { TestFixture::Rename(user, 1, "New"); });
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TYPED_TEST(EditorRename, NameThatIsNotChangedIsNotChecked) {
    this->Given({{.Name = "Same"}, {.Name = "Same"}, {.Name = "A", .HasFile = false}});
    const int code = this->Run([](DialogUser& user) {
        for (int row = 0; row < 3; ++row) {
            user.ClickRow(List, row);
            user.TabTo(Name);
            user.TabTo(List);
        }
        user.TabTo(Name);
        user.Enter();
    });
    EXPECT_EQ(code, CodeOk);
    EXPECT_TRUE(this->Desktop.Messages.Shown.empty());
}

TYPED_TEST(EditorRename, AnotherWindowLeavesWhatIsBeingTypedAsItIs) {
    this->Given({{.Name = "A"}, {.Name = "B", .HasFile = false}});
    this->RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.TabTo(Name);
        user.Key(test::key::End);
        user.Type("~");
        user.VisitAnotherWindow();
        EXPECT_EQ(user.Focused(), Name);
        user.Type("Y");
        EXPECT_EQ(user.Text(Name), "B~Y");
        user.TabTo(Name); // selects all
        user.VisitAnotherWindow();
        user.Type("Z");
        EXPECT_EQ(user.Text(Name), "Z");
        user.Key(test::key::Backspace);
        user.VisitAnotherWindow();
        EXPECT_EQ(user.Text(Name), "");
        EXPECT_EQ(user.Cell(List, 1, 1), "B");
    });
}

TYPED_TEST(EditorRename, NameTypedBeforeAndAfterAVisitElsewhereIsTakenAsOne) {
    this->GivenThree();
    this->RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.VisitAnotherWindow();
        user.Type("er");
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, 1), "Newer");
    });
}

TYPED_TEST(EditorRename, LeavingANameThatIsTooLongForTheBoxKeepsIt) {
    const std::string longName(40, 'x');
    this->Given({{.Name = longName}, {.Name = "B"}});
    this->RunAndAccept([](DialogUser& user) {
        user.TabTo(Name);
        user.TabTo(List);
    });
    EXPECT_EQ(this->ListedNames()[0], longName);
}

TYPED_TEST(EditorRename, NameBoxOfAnEmptyListCannotBeEntered) {
    this->RunAndCancel([](DialogUser& user) {
        user.Press(Name);
        EXPECT_NE(user.Focused(), Name);
    });
}

TYPED_TEST(EditorRename, SecondRunOfTheSameEditorBeginsAnew) {
    this->GivenThree();
    CPMXTemplUIMainDlg editor(this->Folder.Path(), test::ListFile, ".pmt", WindowHandle::None,
                              this->Desktop.Services, this->Store.Services);
    this->Desktop.Dialogs.OnOpened(dialog::Editor, [](DialogUser& user) {
        TestFixture::Rename(user, 0, "Lost");
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    this->Desktop.Dialogs.OnOpened(dialog::Editor, [](DialogUser& user) {
        EXPECT_EQ(TestFixture::NamesInRows(user), (std::vector<std::string>{"A", "Beta", "C"}));
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
}

} // namespace
} // namespace pmx
