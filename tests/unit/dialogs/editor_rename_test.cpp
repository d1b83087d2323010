#include "support/editor_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::ListedFavorite;
using test::MemoryUser;
using test::Sjis;
using test::Standard;

constexpr ControlId List = control::EditorList;
constexpr ControlId Name = control::EditorName;

class EditorRename : public EditorTest {
protected:
    void GivenThree() { Given({{.Name = "A"}, {.Name = "Beta"}, {.Name = "C"}}); }

    /// Selects a row, types a name in the name box and leaves it for the list.
    static void Rename(MemoryUser& user, int row, const std::string& name) {
        user.ClickRow(List, row);
        user.Fill(Name, name);
        user.TabTo(List);
    }

    void ExpectRefusal(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Exclamation); }
};

TEST_F(EditorRename, LeavingTheNameBoxRenamesTheRowAndTheListFileAtTheEnd) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, Sjis(u8"両面印刷"));
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", Sjis(u8"両面印刷"), "C"}));
}

TEST_F(EditorRename, FavoriteFileKeepsItsNameAndItsContent) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "Beta");
    EXPECT_EQ(ListedValues()[1], "0~New~1~0~14~F1.pmt");
}

TEST_F(EditorRename, BlanksAroundTheNameAreRemoved) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, "  New name \t");
        EXPECT_EQ(user.Cell(List, 1, 1), "New name");
        EXPECT_EQ(user.Text(Name), "New name");
    });
    EXPECT_EQ(ListedNames()[1], "New name");
}

TEST_F(EditorRename, BlanksOnlyChangeNothing) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, "   ");
        EXPECT_EQ(user.Cell(List, 1, 1), "Beta");
        EXPECT_EQ(user.Text(Name), "Beta");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_F(EditorRename, NameHasAtMost32BytesAndNoHalfCharacter) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, std::string(40, 'x'));
        EXPECT_EQ(user.Cell(List, 1, 1), std::string(32, 'x'));
        Rename(user, 2, "y" + Sjis(u8"あああああああああああああああああ"));
        EXPECT_EQ(user.Cell(List, 2, 1), "y" + Sjis(u8"あああああああああああああああ"));
    });
}

TEST_F(EditorRename, SeparatorIsRefusedAndTheUserStaysInTheNameBox) {
    GivenThree();
    ExpectRefusal(text::NameHasSeparator);
    RunAndCancel([](MemoryUser& user) {
        Rename(user, 1, "a~b");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "a~b");
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.List(List).SelectionMark(), 1);
        EXPECT_EQ(user.Cell(List, 1, 1), "Beta");
    });
}

TEST_F(EditorRename, SecondByteOfACharacterIsNoSeparator) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) { Rename(user, 1, Sjis(u8"ミ")); });
    EXPECT_EQ(ListedNames()[1], Sjis(u8"ミ"));
}

TEST_F(EditorRename, NameOfAnotherFavoriteInAnotherCaseIsRefused) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndCancel([](MemoryUser& user) {
        Rename(user, 0, "bETA");
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "bETA");
        EXPECT_EQ(user.Cell(List, 0, 1), "A");
    });
}

TEST_F(EditorRename, DoubleByteLettersOfOtherCaseAreAnotherName) {
    Given({{.Name = Sjis(u8"ア")}, {.Name = "B"}});
    RunAndAccept([](MemoryUser& user) { Rename(user, 1, Sjis(u8"ヂ")); });
    EXPECT_EQ(ListedNames()[1], Sjis(u8"ヂ"));
}

TEST_F(EditorRename, NameOfAFavoriteDeletedMeanwhileIsRefused) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Press(control::EditorDelete);
        Rename(user, 0, "beta");
    });
}

TEST_F(EditorRename, OwnNameInAnotherCaseIsAccepted) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) { Rename(user, 1, "BETA"); });
    EXPECT_EQ(ListedNames()[1], "BETA");
}

TEST_F(EditorRename, RefusedNameCanBeMended) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, "C");
        user.Fill(Name, "D");
        user.TabTo(List);
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"A", "D", "C"}));
}

TEST_F(EditorRename, ClickOnAnotherRowWithARefusedNameStaysOnTheRow) {
    GivenThree();
    ExpectRefusal(text::NameHasSeparator);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.ClickRow(List, 2);
        EXPECT_EQ(user.SelectedRow(List), 1);
        EXPECT_EQ(user.Text(Name), "~");
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_F(EditorRename, ClickOnAnotherRowRenamesTheRowThatTheNameBoxWasEnteredFor) {
    GivenThree();
    RunAndAccept([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "New");
        user.ClickRow(List, 2);
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", "New", "C"}));
        EXPECT_EQ(user.Text(Name), "C");
    });
}

TEST_F(EditorRename, ButtonPressedWithARefusedNameDoesNothing) {
    GivenThree();
    ExpectRefusal(text::NameHasSeparator);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "~");
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 3);
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_F(EditorRename, EnterInTheNameBoxRenamesAndAccepts) {
    GivenThree();
    EXPECT_EQ(Run([](MemoryUser& user) {
                  user.ClickRow(List, 1);
                  user.Fill(Name, "New");
                  user.Enter();
              }),
              CodeOk);
    EXPECT_EQ(ListedNames()[1], "New");
}

TEST_F(EditorRename, EnterInTheNameBoxWithARefusedNameKeepsTheEditorOpen) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Enter();
        ASSERT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
        EXPECT_EQ(user.Text(Name), "C");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_F(EditorRename, OkWithARefusedNameKeepsTheEditorOpen) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Ok);
        EXPECT_TRUE(user.IsOpen());
    });
}

TEST_F(EditorRename, EscapeInTheNameBoxCancelsWithoutLookingAtTheName) {
    GivenThree();
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
    });
    EXPECT_EQ(ListedNames()[1], "Beta");
}

TEST_F(EditorRename, CancelButtonIsLeavingTheNameBoxToo) {
    GivenThree();
    ExpectRefusal(text::RenameNameExists);
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "C");
        user.Press(control::Cancel);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.Focused(), Name);
    });
}

TEST_F(EditorRename, EmptyNameIsNotComparedWithTheNamesOfOthers) {
    Given({{.Name = "Same"}, {.Name = "Same"}});
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 0, "");
        EXPECT_EQ(user.Text(Name), "Same");
    });
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"Same", "Same"}));
}

TEST_F(EditorRename, BlanksAroundANameOfTheListFileGoWhenTheBoxIsLeft) {
    Folder.Write(test::ListFile,
                 "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~ A ~1~0~14~F0.pmt\r\n");
    FakeHost::WriteFavorite(Folder, "F0.pmt", {.Level = 1, .Name = " A "});
    RunAndAccept([](MemoryUser& user) {
        user.TabTo(Name);
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 0, 1), "A");
    });
}

TEST_F(EditorRename, UnreadableFavoriteFileIsReportedAndTheRowKeepsTheOldText) {
    Given({{.Name = "A", .HasFile = false}, {.Name = "B"}});
    ExpectRefusal(text::EditorFavoriteUnreadable);
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 0, "New");
        EXPECT_EQ(user.Cell(List, 0, 1), "A");
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_EQ(ListedNames()[0], "New");
}

TEST_F(EditorRename, UnreadableFavoriteFileDoesNotKeepEnterFromAccepting) {
    Given({{.Name = "A", .HasFile = false}});
    ExpectRefusal(text::EditorFavoriteUnreadable);
    EXPECT_EQ(Run([](MemoryUser& user) {
                  user.Fill(Name, "New");
                  user.Enter();
              }),
              CodeOk);
    EXPECT_EQ(ListedNames()[0], "New");
}

TEST_F(EditorRename, FavoriteFileOutsideTheFolderCountsAsMissing) {
    Folder.AddFolder("Sub");
    FakeHost::WriteFavorite(Folder, "Sub\\X.pmt", {.Level = 1, .Name = "A"});
    Given({{.Name = "A", .File = "Sub\\X.pmt", .HasFile = false}});
    ExpectRefusal(text::EditorFavoriteUnreadable);
    RunAndCancel([](MemoryUser& user) { Rename(user, 0, "New"); });
    EXPECT_TRUE(Host.LoadedPaths.empty());
}

TEST_F(EditorRename, LoadedDocumentGetsTheNameAndIsNotReadAgain) {
    GivenThree();
    RunAndCancel([this](MemoryUser& user) {
        Rename(user, 1, "New");
        Rename(user, 1, "Newer");
        EXPECT_EQ(Host.LoadedPaths.size(), 1U);
        user.Press(control::EditorEdit); // saves the document with its name
    });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "Newer");
}

TEST_F(EditorRename, HostThatRaisesAtTheNameChangesNothingElse) {
    GivenThree();
    Host.Plan.FailFrom(HostCall::SetName, 1, HostFailure::Raise);
    RunAndAccept([](MemoryUser& user) {
        Rename(user, 1, "New");
        EXPECT_EQ(user.Cell(List, 1, 1), "New");
    });
    EXPECT_EQ(ListedNames()[1], "New");
}

TEST_F(EditorRename, HostThatRaisesAtTheFileIsReported) {
    GivenThree();
    Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    ExpectRefusal(text::EditorFavoriteUnreadable);
    RunAndCancel([](MemoryUser& user) { Rename(user, 1, "New"); });
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(EditorRename, LeavingANameThatIsTooLongForTheBoxKeepsIt) {
    const std::string longName(40, 'x');
    Given({{.Name = longName}, {.Name = "B"}});
    RunAndAccept([](MemoryUser& user) {
        user.TabTo(Name);
        user.TabTo(List);
    });
    EXPECT_EQ(ListedNames()[0], longName);
}

TEST_F(EditorRename, NameBoxOfAnEmptyListCannotBeEntered) {
    RunAndCancel([](MemoryUser& user) {
        user.Press(Name);
        EXPECT_NE(user.Focused(), Name);
    });
}

TEST_F(EditorRename, SecondRunOfTheSameEditorBeginsAnew) {
    GivenThree();
    CPMXTemplUIMainDlg editor(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                              Store.Services);
    Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) {
        Rename(user, 0, "Lost");
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
    Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) {
        EXPECT_EQ(NamesInRows(user), (std::vector<std::string>{"A", "Beta", "C"}));
        user.Escape();
    });
    EXPECT_EQ(editor.DoModal(), CodeCancel);
}

} // namespace
} // namespace pmx
