#include "support/list_dialog_test.h"

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

using EditorRename = test::OnEachDesktop<EditorTestOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorRename, test::AllDesktops, test::NameOfDesktop);

using EditorRenameInMemory = EditorTestOn<MemoryDesktop>;

TEST_F(EditorRenameInMemory, RefusedNameLeavesItsRowInView) {
    GivenThree("Beta");
    ExpectWarning(text::NameHasSeparator);
    RunAndCancel([](MemoryUser& user) {
        Rename(user, 1, "a~b");
        EXPECT_EQ(user.List(List).LastMadeVisible, 1);
    });
}

TEST_P(EditorRename, LeavingTheNameBoxRenamesTheRowAndTheListFileAtTheEnd) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, Sjis(u8"両面印刷"));
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
}

TEST_P(EditorRename, FavoriteFileKeepsItsNameAndItsContent) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "Beta");
    EXPECT_EQ(ListedValues()[1], "0~New~1~0~14~F1.pmt");
}

TEST_P(EditorRename, BlanksAroundTheNameAreRemoved) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, "  New name \t");
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "New name");
        EXPECT_EQ(user.Text(Name), "New name");
    });
    EXPECT_EQ(ListedNames()[1], "New name");
}

TEST_P(EditorRename, FullWidthBlanksAroundTheNameAreRemovedToo) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, Sjis(u8"　 表　紙 　"));
        EXPECT_EQ(user.Text(Name), Sjis(u8"表　紙"));
    });
    EXPECT_EQ(ListedNames()[1], Sjis(u8"表　紙"));
}

TEST_P(EditorRename, BlanksOnlyChangeNothing) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, Sjis(u8" 　 "));
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "Beta");
        EXPECT_EQ(user.Text(Name), "Beta");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_P(EditorRename, NameHasAtMost32BytesAndNoHalfCharacter) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, std::string(40, 'x'));
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), std::string(32, 'x'));
        Rename(user, 2, "y" + Sjis(u8"あああああああああああああああああ"));
        EXPECT_EQ(user.Cell(List, 2, test::NameColumn), "y" + Sjis(u8"あああああああああああああああ"));
    });
}

TEST_P(EditorRename, SeparatorIsRefusedAndTheUserStaysInTheNameBox) {
    GivenThree("Beta");
    ExpectWarning(text::NameHasSeparator);
    RunAndCancel([](DialogUser& user) {
        Rename(user, 1, "a~b");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "a~b");
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "Beta");
    });
}

TEST_P(EditorRename, SecondByteOfACharacterIsNoSeparator) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) { Rename(user, 1, Sjis(u8"ミ")); });
    EXPECT_EQ(ListedNames()[1], Sjis(u8"ミ"));
}

TEST_P(EditorRename, NameOfAnotherFavoriteInAnotherCaseIsRefused) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndCancel([](DialogUser& user) {
        Rename(user, 0, "bETA");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "bETA");
        EXPECT_EQ(user.Cell(List, 0, test::NameColumn), "A");
    });
}

TEST_P(EditorRename, DoubleByteLettersOfOtherCaseAreAnotherName) {
    Given({{.Name = Sjis(u8"ア")}, {.Name = "B"}});
    RunAndAccept([](DialogUser& user) { Rename(user, 1, Sjis(u8"ヂ")); });
    EXPECT_EQ(ListedNames()[1], Sjis(u8"ヂ"));
}

TEST_P(EditorRename, NameOfAFavoriteDeletedMeanwhileIsRefused) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        Rename(user, 0, "beta");
    });
}

TEST_P(EditorRename, OwnNameInAnotherCaseIsAccepted) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) { Rename(user, 1, "BETA"); });
    EXPECT_EQ(ListedNames()[1], "BETA");
}

TEST_P(EditorRename, MarkedRowIsRenamedAlsoWhenItIsNotSelectedAnyMore) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Fill(Name, "New");
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "New");
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", "New", "C"}));
}

TEST_P(EditorRename, RefusedNameSelectsItsRowAgain) {
    GivenThree("Beta");
    ExpectWarning(text::NameHasSeparator);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.ClickBesideRows(List);
        user.Fill(Name, "a~b");
        user.TabTo(List);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_P(EditorRename, RefusedNameCanBeMended) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, "C");
        user.Fill(Name, "D");
        user.TabTo(List);
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", "D", "C"}));
}

TEST_P(EditorRename, ClickOnAnotherRowWithARefusedNameStaysOnTheRow) {
    GivenThree("Beta");
    ExpectWarning(text::NameHasSeparator);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.ClickRow(List, 2);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "~");
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_P(EditorRename, ClickOnAnotherRowRenamesTheRowThatTheNameBoxWasEnteredFor) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.ClickRow(List, 2);
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", "New", "C"}));
        EXPECT_EQ(user.Text(Name), "C");
    });
}

TEST_P(EditorRename, ButtonPressedWithARefusedNameDoesNothing) {
    GivenThree("Beta");
    ExpectWarning(text::NameHasSeparator);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 3);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_P(EditorRename, EnterInTheNameBoxRenamesAndAccepts) {
    GivenThree("Beta");
    EXPECT_EQ(Run([](DialogUser& user) {
                  user.ClickRow(List, 1);
                  user.Fill(Name, "New");
                  user.Enter();
              }),
              CodeOk);
    EXPECT_EQ(ListedNames()[1], "New");
}

TEST_P(EditorRename, EnterInTheNameBoxWithARefusedNameKeepsTheEditorOpen) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Enter();
        ASSERT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "C");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_P(EditorRename, OkWithARefusedNameKeepsTheEditorOpen) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
    });
}

TEST_P(EditorRename, EscapeInTheNameBoxCancelsWithoutLookingAtTheName) {
    GivenThree("Beta");
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_P(EditorRename, CancelButtonIsLeavingTheNameBoxToo) {
    GivenThree("Beta");
    ExpectWarning(text::RenameNameExists);
    RunAndCancel([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Cancel);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_P(EditorRename, EmptyNameIsNotComparedWithTheNamesOfOthers) {
    Given({{.Name = "Same"}, {.Name = "Same"}});
    RunAndAccept([](DialogUser& user) {
        Rename(user, 0, "");
        EXPECT_EQ(user.Text(Name), "Same");
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"Same", "Same"}));
}

TEST_P(EditorRename, UnreadableFavoriteFileIsReportedAndTheRowKeepsTheOldText) {
    Given({{.Name = "A", .HasFile = false}, {.Name = "B"}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndAccept([](DialogUser& user) {
        Rename(user, 0, "New");
        EXPECT_EQ(user.Cell(List, 0, test::NameColumn), "A");
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(ListedNames()[0], "New");
}

TEST_P(EditorRename, UnreadableFavoriteFileDoesNotKeepEnterFromAccepting) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    EXPECT_EQ(Run([](DialogUser& user) {
                  user.Fill(Name, "New");
                  user.Enter();
              }),
              CodeOk);
    EXPECT_EQ(ListedNames()[0], "New");
}

TEST_P(EditorRename, FavoriteFileOutsideTheFolderCountsAsMissing) {
    Folder.AddFolder("Sub");
    FakeHost::WriteFavorite(Folder, "Sub\\X.pmt", {.Level = 1, .Name = "A"});
    Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([](DialogUser& user) { Rename(user, 0, "New"); });
    EXPECT_TRUE(Host.LoadedPaths.empty());
}

TEST_P(EditorRename, LoadedDocumentGetsTheNameAndIsNotReadAgain) {
    GivenThree("Beta");
    RunAndCancel([this](DialogUser& user) {
        Rename(user, 1, "New");
        Rename(user, 1, "Newer");
        EXPECT_EQ(Host.LoadedPaths.size(), 1U);
        user.Press(control::EditorEdit); // saves the document with its name
    });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "Newer");
}

TEST_P(EditorRename, HostThatRaisesAtTheNameChangesNothingElse) {
    GivenThree("Beta");
    Host.Plan.FailFrom(HostCall::SetName, 1, HostFailure::Raise);
    RunAndAccept([](DialogUser& user) {
        Rename(user, 1, "New");
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "New");
    });
    EXPECT_EQ(ListedNames()[1], "New");
}

TEST_P(EditorRename, HostThatRaisesAtTheFileIsReported) {
    GivenThree("Beta");
    Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    ExpectWarning(text::EditorFavoriteUnreadable);
    RunAndCancel([](DialogUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(EditorRename, NameThatIsNotChangedIsNotChecked) {
    Given({{.Name = "Same"}, {.Name = "Same"}, {.Name = "A", .HasFile = false}});
    const int code = Run([](DialogUser& user) {
        for (int row = 0; row < 3; ++row) {
            user.ClickRow(List, row);
            user.TabTo(Name);
            user.TabTo(List);
        }
        user.TabTo(Name);
        user.Enter();
    });
    EXPECT_EQ(code, CodeOk);
    EXPECT_TRUE(Desktop.Messages.Shown.empty());
}

TEST_P(EditorRename, AnotherWindowLeavesWhatIsBeingTypedAsItIs) {
    Given({{.Name = "A"}, {.Name = "B", .HasFile = false}});
    RunAndCancel([](DialogUser& user) {
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
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "B");
    });
}

TEST_P(EditorRename, NameTypedBeforeAndAfterAVisitElsewhereIsTakenAsOne) {
    GivenThree("Beta");
    RunAndAccept([](DialogUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.VisitAnotherWindow();
        user.Type("er");
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, test::NameColumn), "Newer");
    });
}

TEST_P(EditorRename, LeavingANameThatIsTooLongForTheBoxKeepsIt) {
    const std::string longName(40, 'x');
    Given({{.Name = longName}, {.Name = "B"}});
    RunAndAccept([](DialogUser& user) {
        user.TabTo(Name);
        user.TabTo(List);
    });
    EXPECT_EQ(ListedNames()[0], longName);
}

TEST_P(EditorRename, NameBoxOfAnEmptyListCannotBeEntered) {
    RunAndCancel([](DialogUser& user) {
        user.Press(Name);
        EXPECT_NE(user.Focused(), Name);
    });
}

TEST_P(EditorRename, SecondRunOfTheSameEditorBeginsAnew) {
    GivenThree("Beta");
    CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    Desktop.Dialogs.OnOpened(dialog::Editor, [](DialogUser& user) {
        Rename(user, 0, "Lost");
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    Desktop.Dialogs.OnOpened(dialog::Editor, [](DialogUser& user) {
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", "Beta", "C"}));
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
}

} // namespace
} // namespace pmx
