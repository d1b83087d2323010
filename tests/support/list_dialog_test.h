#pragma once

#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"
#include "support/desktops.h"
#include "support/fake_attribute_dialog.h"
#include "support/favorite_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace pmx::test {

/// Runs a dialog with a list of favorites on a desktop and a real folder, with the host's libraries faked.
template <class AnyScreen, class Dialog, ResourceId DialogId, ControlId ListId, ControlId NameId,
          int ColumnOfNames>
class ListDialogTestOn : public testing::Test, public FavoriteFolder {
protected:
    using Script = typename decltype(AnyScreen::Dialogs)::Script;

    static constexpr ControlId List = ListId;
    static constexpr ControlId Name = NameId;

    /// Runs the dialog with a script; its end code.
    int Run(const Script& script) {
        Dialog dialog(Folder.Path().c_str(), ListFile, ".pmt", Parent, Desktop.Services, Store.Services);
        Desktop.Dialogs.OnOpened(DialogId, script);
        return dialog.DoModal();
    }

    /// The same, with the dialog's window accepted or cancelled after the script.
    void RunAndAccept(const Script& script) {
        EXPECT_EQ(Run([&script](auto& user) {
                      script(user);
                      user.Press(control::Ok);
                  }),
                  CodeOk);
    }

    void RunAndCancel(const Script& script) {
        EXPECT_EQ(Run([&script](auto& user) {
                      script(user);
                      user.Escape();
                  }),
                  CodeCancel);
    }

    void GivenThree(const std::string& second = "B") {
        Given({{.Name = "A"}, {.Name = second}, {.Name = "C"}});
    }

    void ExpectWarning(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Exclamation); }
    void ExpectFailure(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Stop); }

    static std::vector<std::string> NamesInRows(const DialogUser& user) {
        const int rows = user.RowCount(List);
        std::vector<std::string> names;
        names.reserve(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row) {
            names.push_back(user.Cell(List, row, ColumnOfNames));
        }
        return names;
    }

    /// Selects a row, types a name in the name box and leaves it for the list.
    static void Rename(DialogUser& user, int row, const std::string& name) {
        user.ClickRow(List, row);
        user.Fill(Name, name);
        user.TabTo(List);
    }

    AnyScreen Desktop;
    WindowHandle Parent = WindowHandle::None;
};

/// The columns of the editor's list.
enum EditorColumn : int { ToolbarColumn, NameColumn, CategoryColumn, KindColumn };

template <class AnyScreen>
using EditorFixture = ListDialogTestOn<AnyScreen, CPMXTemplUIMainDlg, dialog::Editor, control::EditorList,
                                       control::EditorName, NameColumn>;

/// Runs the favorites editor.
template <class AnyScreen>
class EditorTestOn : public EditorFixture<AnyScreen> {
protected:
    EditorTestOn() { FakeAttributeDialog::PutInto(this->Desktop.Libraries); }

    /// The next dialog is the create-favorite dialog, in which the user enters a name and presses OK.
    void AnswerName(const std::string& name) {
        this->Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [name](DialogUser& user) {
            user.Fill(control::CreateName, name);
            user.Press(control::Ok);
        });
    }

    /// Presses New and answers the name.
    void Create(DialogUser& user, const std::string& name) {
        AnswerName(name);
        user.Press(control::EditorNew);
    }

    FakeAttributeDialog Attributes;
};

using EditorTest = EditorTestOn<MemoryDesktop>;

} // namespace pmx::test
