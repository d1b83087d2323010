#include "dialogs/choice/choice_basic_dlg.h"
#include "support/list_dialog_test.h"
#include "support/sjis.h"
#include "win32/support/file_dialog_user.h"

#include <stdexcept>

#include <windows.h>

// Dialogs with what only the system itself can show: its file dialogs, and errors that the host's
// libraries raise by the means of other compilers.

namespace pmx {
namespace {

using test::DialogUser;
using test::FakeHost;
using test::FileDialogUser;
using test::HostCall;
using test::HostFailure;
using test::RealDesktop;
using test::RealUser;
using test::SameTable;
using test::Sjis;
using test::TableOf;
using test::TempFolder;

using Names = std::vector<std::string>;

/// Runs the editor in real windows with the system's file dialogs and the system's guard.
class EditorOnSystem : public test::EditorTestOn<RealDesktop> {
protected:
    int RunEditor(const Script& script) {
        const DialogServices services{.Strings = Desktop.Services.Strings,
                                      .Dialogs = Desktop.Services.Dialogs,
                                      .Messages = Desktop.Services.Messages,
                                      .FileChoice = SystemFileDialogs(),
                                      .Images = Desktop.Services.Images,
                                      .Help = Desktop.Services.Help,
                                      .Libraries = Desktop.Services.Libraries};
        CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", Parent, services,
                                  Store.Services);
        Desktop.Dialogs.OnOpened(dialog::Editor, script);
        return editor.DoModal();
    }

    TempFolder Outside{"outside"};
};

using EditorWithFileDialogs = EditorOnSystem;

TEST_F(EditorWithFileDialogs, ImportTakesTheFileThatTheUserOpens) {
    Given({{.Name = "A"}});
    FakeHost::WriteFavorite(Outside, Sjis(u8"表紙.pmt"), {.Table = TableOf(77), .Level = 2, .Name = "a"});
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorImport);
        FileDialogUser files(user);
        EXPECT_TRUE(files.IsOverDialog());
        EXPECT_EQ(files.Filter(), Sjis(u8"Lumetra お気に入り (*.pmt)"));
        AnswerName("Imported");
        files.Choose(Outside.Path(Sjis(u8"表紙.pmt")));
        EXPECT_EQ(NamesInRows(user), (Names{"A", "Imported"}));
        user.Press(control::Ok);
    });
    EXPECT_EQ(ListedValues().at(1), "0~Imported~2~0~0~" + Sjis(u8"表紙.pmt"));
    EXPECT_EQ(Folder.Read(Sjis(u8"表紙.pmt")), Outside.Read(Sjis(u8"表紙.pmt")));
}

TEST_F(EditorWithFileDialogs, CancelledOpenDialogImportsNothing) {
    Given({{.Name = "A"}});
    RunEditor([](RealUser& user) {
        user.Press(control::EditorImport);
        FileDialogUser(user).Cancel();
        EXPECT_EQ(user.RowCount(List), 1);
        user.Press(control::Ok);
    });
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", test::ListFile}));
}

TEST_F(EditorWithFileDialogs, OpenDialogRefusesAFileThatDoesNotExist) {
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorImport);
        FileDialogUser files(user);
        files.Enter(Outside.Path("None.pmt"));
        files.AnswerQuestion(IDOK); // the system's own message
        files.Cancel();
        EXPECT_EQ(user.RowCount(List), 0);
        user.Escape();
    });
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(EditorWithFileDialogs, ImportedFileThatIsNoFavoriteIsRefused) {
    Given({{.Name = "A"}});
    Outside.Write("X.pmt", "no favorite");
    Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorImport);
        FileDialogUser(user).Choose(Outside.Path("X.pmt"));
        EXPECT_EQ(user.RowCount(List), 1);
        user.Press(control::Ok);
    });
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", test::ListFile}));
}

TEST_F(EditorWithFileDialogs, ExportProposesTheSafeNameAndAppendsTheExtension) {
    Given({{.Name = "A/B" + Sjis(u8"表"), .Level = 3}});
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorExport);
        FileDialogUser files(user);
        EXPECT_EQ(files.FileName(), "A=B" + Sjis(u8"表") + ".pmt");
        EXPECT_EQ(files.Filter(), Sjis(u8"Lumetra お気に入り (*.pmt)"));
        files.Choose(Outside.Path("Out"));
        user.Escape();
    });
    const test::HostContent content = FakeHost::ReadFavorite(Outside, "Out.pmt");
    EXPECT_EQ(content.Name, "A/B" + Sjis(u8"表"));
    EXPECT_EQ(content.Level, 3);
    EXPECT_TRUE(SameTable(content.Table, TableOf(SeedOf(0))));
    EXPECT_EQ(Outside.Names(), Names{"Out.pmt"}) << "nothing else is left beside the file";
}

TEST_F(EditorWithFileDialogs, ExportAsksBeforeItOverwrites) {
    Given({{.Name = "A"}});
    Outside.Write("Out.pmt", "old");
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorExport);
        FileDialogUser refusing(user);
        refusing.Enter(Outside.Path("Out.pmt"));
        refusing.AnswerQuestion(IDNO);
        EXPECT_EQ(Outside.Read("Out.pmt"), "old");
        refusing.Cancel();
        user.Press(control::EditorExport);
        FileDialogUser agreeing(user);
        agreeing.Enter(Outside.Path("Out.pmt"));
        agreeing.AnswerQuestion(IDYES);
        agreeing.WaitUntilClosed();
        user.Escape();
    });
    EXPECT_EQ(FakeHost::ReadFavorite(Outside, "Out.pmt").Name, "A");
}

TEST_F(EditorWithFileDialogs, ExportOntoTheFileOfAUserFavoriteIsRefused) {
    Given({{.Name = "A"}, {.Name = "B"}});
    Desktop.Messages.Expect(text::ImportedNotOverwritable, MessageIcon::Exclamation);
    RunEditor([this](RealUser& user) {
        user.Press(control::EditorExport);
        FileDialogUser files(user);
        files.Enter(Folder.Path("f1.PMT"));
        files.AnswerQuestion(IDYES);
        files.WaitUntilClosed();
        user.Escape();
    });
    EXPECT_EQ(FakeHost::ReadFavorite(Folder, "F1.pmt").Name, "B");
}

// Errors of other compilers

struct RaisedError {
    const char* Description;
    void (*Raise)();
};

void RaiseStructured(DWORD code) {
    RaiseException(code, 0, 0, nullptr);
}

constexpr RaisedError RaisedErrors[] = {
    {"AnExceptionOfOurRunTime", [] { throw std::runtime_error("raised"); }},
    {"AnExceptionOfAnotherCpp", [] { RaiseStructured(0xE06D7363); }},
    {"AStructuredException", [] { RaiseStructured(0xE0001234); }},
    {"AnAccessViolation",
     [] {
         volatile int* const nowhere = nullptr;
         *nowhere = 1;
     }},
};

class EditorRaised : public EditorOnSystem, public testing::WithParamInterface<RaisedError> {
protected:
    void SetUp() override { Host.RaiseError = GetParam().Raise; }
};

TEST_P(EditorRaised, ByTheAttributeDialogCountsAsAMissingDialogUntilTheEditorIsOpenedAnew) {
    Given({{.Name = "A"}});
    const std::string before = Folder.Read("F0.pmt");
    Attributes.User = [](unsigned char*) {
        GetParam().Raise();
        return PMX_PROPUI_OK;
    };
    Desktop.Messages.Expect(text::AttributeDialogMissing, MessageIcon::Stop);
    Desktop.Messages.Expect(text::AttributeDialogMissing, MessageIcon::Stop);
    EXPECT_EQ(RunEditor([](DialogUser& user) {
                  user.Press(control::EditorEdit);
                  user.Press(control::EditorEdit);
                  EXPECT_EQ(user.Text(control::EditorName), "A");
                  user.Press(control::Ok);
              }),
              CodeOk);
    EXPECT_EQ(Attributes.Calls.size(), 1U);
    EXPECT_EQ(Folder.Read("F0.pmt"), before);
    EXPECT_EQ(ListedNames(), Names{"A"});

    Attributes.User = [](unsigned char*) { return PMX_PROPUI_CANCEL; };
    EXPECT_EQ(RunEditor([](DialogUser& user) {
                  user.Press(control::EditorEdit);
                  user.Escape();
              }),
              CodeCancel);
    EXPECT_EQ(Attributes.Calls.size(), 2U);
}

TEST_P(EditorRaised, ByTheDocumentModelAtReadingIsReported) {
    Given({{.Name = "A"}});
    FakeHost::WriteFavorite(Outside, "X.pmt", {.Level = 1, .Name = "X"});
    for (int times = 0; times < 5; ++times) {
        Desktop.Messages.Expect(text::EditorFavoriteUnreadable, MessageIcon::Exclamation);
    }
    RunEditor([this](RealUser& user) {
        Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
        user.Press(control::EditorEdit);
        user.Press(control::EditorCopy);
        user.Press(control::EditorExport);
        user.Press(control::EditorImport);
        FileDialogUser(user).Choose(Outside.Path("X.pmt"));
        user.Fill(control::EditorName, "New");
        user.TabTo(List);
        user.Press(control::Ok);
    });
    EXPECT_TRUE(Attributes.Calls.empty());
    EXPECT_EQ(Folder.Names(), (Names{"F0.pmt", test::ListFile}));
    EXPECT_EQ(ListedNames(), Names{"New"});
}

TEST_P(EditorRaised, ByTheDocumentModelAtWritingIsReported) {
    Given({{.Name = "A"}});
    Outside.Write("Out.pmt", "old");
    for (int times = 0; times < 3; ++times) {
        Desktop.Messages.Expect(text::FileNotCreated, MessageIcon::Exclamation);
    }
    RunEditor([this](RealUser& user) {
        Host.Plan.FailFrom(HostCall::Save, 1, HostFailure::Raise);
        user.Press(control::EditorEdit);
        AnswerName("N");
        user.Press(control::EditorNew);
        user.Press(control::EditorExport);
        FileDialogUser files(user);
        files.Enter(Outside.Path("Out.pmt"));
        files.AnswerQuestion(IDYES);
        files.WaitUntilClosed();
        EXPECT_EQ(user.RowCount(List), 1);
        user.Press(control::Ok);
    });
    EXPECT_EQ(Outside.Read("Out.pmt"), "old");
    EXPECT_EQ(Outside.Names(), Names{"Out.pmt"});
    EXPECT_EQ(ListedNames(), Names{"A"});
}

TEST_P(EditorRaised, ByTheDocumentModelAtTheTableIsReported) {
    Given({{.Name = "A"}});
    const std::string before = Folder.Read("F0.pmt");
    Desktop.Messages.Expect(text::AttributeTableFailed, MessageIcon::Stop);
    Desktop.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    RunEditor([this](DialogUser& user) {
        Host.Plan.FailAt(HostCall::SetTable, 1, HostFailure::Raise);
        user.Press(control::EditorEdit);
        Host.Plan.FailFrom(HostCall::Create, Host.Plan.Calls(HostCall::Create) + 1, HostFailure::Raise);
        AnswerName("N");
        user.Press(control::EditorNew);
        user.Press(control::Ok);
    });
    EXPECT_EQ(Folder.Read("F0.pmt"), before);
    EXPECT_EQ(ListedNames(), Names{"A"});
}

TEST_P(EditorRaised, ByTheDocumentModelInTheBasicListIsReportedAndTheNameStays) {
    Given({{.Name = "A"}});
    Host.Plan.FailFrom(HostCall::Load, 1, HostFailure::Raise);
    Desktop.Messages.Expect(text::BasicFavoriteUnreadable, MessageIcon::Exclamation);
    CPMXTemplUIChoiceBasicDlg list(Folder.Path().c_str(), test::ListFile, ".pmt", Parent, Desktop.Services,
                                   Store.Services);
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
        user.Fill(control::BasicName, "New");
        user.TabTo(control::BasicList);
        user.Press(control::Ok);
    });
    EXPECT_EQ(list.DoModal(), CodeOk);
    EXPECT_EQ(ListedNames(), Names{"A"});
}

INSTANTIATE_TEST_SUITE_P(AnyError, EditorRaised, testing::ValuesIn(RaisedErrors),
                         [](const auto& example) { return example.param.Description; });

} // namespace
} // namespace pmx
