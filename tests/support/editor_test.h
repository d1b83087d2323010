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

/// The columns of the editor's list.
enum EditorColumn : int { ToolbarColumn, NameColumn, CategoryColumn, KindColumn };

/// Runs the favorites editor on a desktop and a real folder, with the host's libraries faked.
template <class AnyScreen>
class EditorTestOn : public testing::Test, public FavoriteFolder {
protected:
    using Script = typename decltype(AnyScreen::Dialogs)::Script;

    static constexpr ControlId List = control::EditorList;
    static constexpr ControlId Name = control::EditorName;

    EditorTestOn() { FakeAttributeDialog::PutInto(Desktop.Libraries); }

    /// Runs the editor with a script; its end code.
    int Run(const Script& script) {
        CPMXTemplUIMainDlg editor(Folder.Path(), ListFile, ".pmt", Parent, Desktop.Services, Store.Services);
        Desktop.Dialogs.OnOpened(dialog::Editor, script);
        return editor.DoModal();
    }

    /// The same, with the editor's window accepted or cancelled after the script.
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

    /// The next dialog is the create-favorite dialog, in which the user enters a name and presses OK.
    void AnswerName(const std::string& name) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [name](DialogUser& user) {
            user.Fill(control::CreateName, name);
            user.Press(control::Ok);
        });
    }

    static std::vector<std::string> NamesInRows(const DialogUser& user) {
        const int rows = user.RowCount(control::EditorList);
        std::vector<std::string> names;
        names.reserve(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row) {
            names.push_back(user.Cell(control::EditorList, row, NameColumn));
        }
        return names;
    }

    AnyScreen Desktop;
    FakeAttributeDialog Attributes;
    WindowHandle Parent = WindowHandle::None;
};

using EditorTest = EditorTestOn<MemoryDesktop>;

} // namespace pmx::test
