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
template <class AnyScreen, class Dialog>
class ListDialogTestOn : public testing::Test, public FavoriteFolder {
protected:
    using Script = typename decltype(AnyScreen::Dialogs)::Script;

    explicit ListDialogTestOn(ResourceId dialogId) : DialogId(dialogId) {}

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

    void GivenThree() { Given({{.Name = "A"}, {.Name = "B"}, {.Name = "C"}}); }

    void ExpectWarning(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Exclamation); }
    void ExpectFailure(ResourceId id) { Desktop.Messages.Expect(id, MessageIcon::Stop); }

    static std::vector<std::string> TextsInRows(const DialogUser& user, ControlId list, int column) {
        const int rows = user.RowCount(list);
        std::vector<std::string> texts;
        texts.reserve(static_cast<std::size_t>(rows));
        for (int row = 0; row < rows; ++row) {
            texts.push_back(user.Cell(list, row, column));
        }
        return texts;
    }

    AnyScreen Desktop;
    WindowHandle Parent = WindowHandle::None;

private:
    const ResourceId DialogId;
};

/// The columns of the editor's list.
enum EditorColumn : int { ToolbarColumn, NameColumn, CategoryColumn, KindColumn };

/// Runs the favorites editor.
template <class AnyScreen>
class EditorTestOn : public ListDialogTestOn<AnyScreen, CPMXTemplUIMainDlg> {
protected:
    static constexpr ControlId List = control::EditorList;
    static constexpr ControlId Name = control::EditorName;

    EditorTestOn() : ListDialogTestOn<AnyScreen, CPMXTemplUIMainDlg>(dialog::Editor) {
        FakeAttributeDialog::PutInto(this->Desktop.Libraries);
    }

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

    static std::vector<std::string> NamesInRows(const DialogUser& user) {
        return EditorTestOn::TextsInRows(user, control::EditorList, NameColumn);
    }

    FakeAttributeDialog Attributes;
};

using EditorTest = EditorTestOn<MemoryDesktop>;

} // namespace pmx::test
