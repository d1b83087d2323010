#pragma once

#include "dialogs/editor/main_dlg.h"
#include "res/ids.h"
#include "support/fake_attribute_dialog.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/memory_window.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pmx::test {

/// One favorite of a list file, and of a favorite file of the same name and level.
struct ListedFavorite {
    std::string Name{}; ///< code page 932
    std::int32_t Level = 1;
    bool OnToolbar = false;
    std::int64_t Icon = 14;
    bool IsStandard = false;
    std::string File{}; ///< empty: F0.pmt, F1.pmt … by position
    bool HasFile = true;
};

/// A standard favorite as the exports make it.
ListedFavorite Standard(const std::string& name, std::int32_t level = 101);

/// Runs the favorites editor in memory on a real folder, with the host's libraries faked.
class EditorTest : public testing::Test {
protected:
    EditorTest() { FakeAttributeDialog::PutInto(Desktop.Libraries); }

    /// Writes the list file and the files of its user favorites. The table of the favorite at position n is
    /// TableOf(SeedOf(n)).
    void Given(std::vector<ListedFavorite> favorites);

    static unsigned char SeedOf(std::size_t position) { return static_cast<unsigned char>(100 + position); }

    /// Runs the editor with a script; its end code.
    int Run(const MemoryDialogs::Script& script);

    /// The same, with the editor's window accepted or cancelled after the script.
    void RunAndAccept(const MemoryDialogs::Script& script);
    void RunAndCancel(const MemoryDialogs::Script& script);

    /// The next dialog is the create-favorite dialog, in which the user enters a name and presses OK.
    void AnswerName(const std::string& name);

    /// The number of favorites that the list file states, and the values of its numbered keys up to the first
    /// gap.
    std::string ListedCount() const;
    std::vector<std::string> ListedValues() const;

    /// The names in those values, in order.
    std::vector<std::string> ListedNames() const;

    static std::vector<std::string> NamesInRows(const MemoryUser& user);

    TempFolder Folder{"editor"};
    FakeHost Host;
    FakeServices Store;
    MemoryDesktop Desktop;
    FakeAttributeDialog Attributes;
};

inline constexpr const char* ListFile = "PmxTempleList.ini";

} // namespace pmx::test
