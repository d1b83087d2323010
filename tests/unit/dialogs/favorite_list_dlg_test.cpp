#include "dialogs/base/favorite_list_dlg.h"

#include "dialogs/choice/choice_basic_dlg.h"
#include "support/editor_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::MemoryDesktop;
using test::MemoryUser;

using Names = std::vector<std::string>;

/// The index of no record.
constexpr std::int64_t Nowhere = 99;

// What commands do with a row behind which there is no record: the editor says so, the basic list does not.

class EditorRowWithoutRecord : public EditorTest {
protected:
    static constexpr ControlId List = control::EditorList;
    static constexpr ControlId Name = control::EditorName;

    EditorRowWithoutRecord() { Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    /// Selects the middle row and takes its record away.
    static void LoseRecord(const MemoryUser& user) { user.List(List).SetRowData(1, Nowhere); }
    static void SelectAndLoseRecord(MemoryUser& user) {
        user.ClickRow(List, 1);
        LoseRecord(user);
    }

    void ExpectReport() { Desktop.Messages.Expect(text::FavoriteInfoFailed, MessageIcon::Stop); }
};

TEST_F(EditorRowWithoutRecord, IsReportedByEditCopyExportAndChangeIcon) {
    RunAndCancel([this](MemoryUser& user) {
        SelectAndLoseRecord(user);
        for (const ControlId id :
             {control::EditorEdit, control::EditorCopy, control::EditorExport, control::ChangeIcon}) {
            ExpectReport();
            user.Press(id);
        }
    });
    EXPECT_EQ(Desktop.Messages.Shown.size(), 4U);
    EXPECT_TRUE(Host.LoadedPaths.empty());
    EXPECT_TRUE(Attributes.Calls.empty());
}

TEST_F(EditorRowWithoutRecord, IsReportedByADoubleClick) {
    RunAndCancel([this](MemoryUser& user) {
        LoseRecord(user);
        ExpectReport();
        user.DoubleClickRow(List, 1);
    });
}

TEST_F(EditorRowWithoutRecord, IsReportedByTheToolbarMarkWhichStaysAsItIs) {
    RunAndCancel([this](MemoryUser& user) {
        SelectAndLoseRecord(user);
        ExpectReport();
        user.ClickStateImage(List, 1);
        ExpectReport();
        user.TabTo(List);
        user.Key(test::key::Space);
        EXPECT_EQ(user.StateImage(List, 1), 1);
    });
}

TEST_F(EditorRowWithoutRecord, IsNotDeletedAndNotReportedByDelete) {
    RunAndCancel([](MemoryUser& user) {
        SelectAndLoseRecord(user);
        user.Press(control::EditorDelete);
        EXPECT_EQ(user.RowCount(List), 3);
    });
}

TEST_F(EditorRowWithoutRecord, IsNotPassedByAMove) {
    RunAndCancel([](MemoryUser& user) {
        LoseRecord(user);
        user.Press(control::EditorDown);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 0);
        user.ClickRow(List, 2);
        user.Press(control::EditorUp);
        EXPECT_EQ(NamesInRows(user), (Names{"A", "B", "C"}));
        EXPECT_EQ(user.SelectedRow(List), 2);
    });
}

TEST_F(EditorRowWithoutRecord, LeavesTheControlsAsTheyAreWhenItIsSelected) {
    RunAndCancel([](MemoryUser& user) {
        LoseRecord(user);
        user.ClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "A");
        EXPECT_FALSE(user.IsEnabled(control::EditorUp));
    });
}

TEST_F(EditorRowWithoutRecord, TakesNoNameNotEvenARefusedOne) {
    RunAndCancel([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "a~b");
        LoseRecord(user);
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, 1), "B");
        EXPECT_EQ(user.Focused(), List);
    });
    EXPECT_TRUE(Host.LoadedPaths.empty());
}

TEST_F(EditorRowWithoutRecord, IsCountedButNotWritten) {
    RunAndAccept(LoseRecord);
    EXPECT_EQ(ListedCount(), "3");
    EXPECT_EQ(ListedValues(), (Names{"0~A~1~0~14~F0.pmt", "0~C~1~0~14~F2.pmt"}));
}

class BasicRowWithoutRecord : public testing::Test, public test::FavoriteFolder {
protected:
    static constexpr ControlId List = control::BasicList;
    static constexpr ControlId Name = control::BasicName;

    BasicRowWithoutRecord() { Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    void RunAndAccept(const test::MemoryDialogs::Script& script) {
        CPMXTemplUIChoiceBasicDlg dialog(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None,
                                         Desktop.Services, Store.Services);
        Desktop.Dialogs.OnOpened(dialog::BasicList, [&script](MemoryUser& user) {
            script(user);
            user.Press(control::Ok);
        });
        EXPECT_EQ(dialog.DoModal(), CodeOk);
    }

    MemoryDesktop Desktop;
};

TEST_F(BasicRowWithoutRecord, IsLeftAloneByEveryCommandAndNotWritten) {
    RunAndAccept([](MemoryUser& user) {
        user.ClickRow(List, 1);
        user.Fill(Name, "a~b");
        user.List(List).SetRowData(1, Nowhere);
        user.TabTo(List);
        EXPECT_EQ(user.Cell(List, 1, 0), "B");
        for (const ControlId id : {control::ChangeIcon, control::BasicDelete}) {
            user.Press(id); // would open a dialog that the test does not foresee, or take the row away
        }
        EXPECT_EQ(user.RowCount(List), 3);
        user.ClickRow(List, 0);
        user.ClickRow(List, 1);
        EXPECT_EQ(user.Text(Name), "A");
    });
    EXPECT_TRUE(Desktop.Messages.Shown.empty());
    EXPECT_EQ(ListedCount(), "2");
    EXPECT_EQ(ListedNames(), (Names{"A", "C"}));
}

} // namespace
} // namespace pmx
