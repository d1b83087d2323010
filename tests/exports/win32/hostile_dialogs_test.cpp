// Folders made to do harm, opened in the dialogs of the built library, with the sample host's libraries.
#include "exports/hostile_folder.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"

#include <gmock/gmock.h>

#include <dlgs.h>

namespace pmx::exports_test {
namespace {

using testing::Contains;
using testing::IsEmpty;

/// The controls of a dialog with a list.
struct ListDialog {
    int List;
    int Delete;
    std::vector<int> Buttons; ///< what may be pressed for a row
};

const ListDialog Editor{
    EditorList,
    EditorDeleteButton,
    {EditorEditButton, EditorCopyButton, ChangeIconButton, EditorDownButton, EditorUpButton}};
const ListDialog Basic{BasicList, BasicDeleteButton, {ChangeIconButton, BasicDownButton, BasicUpButton}};

class HostileDialogs : public HostileFolder {
protected:
    static void PressIfEnabled(const OpenDialog& dialog, int button,
                               const std::function<void(const OpenDialog&)>& fill) {
        if (dialog.IsEnabled(button)) {
            dialog.PressAndAccept(button, fill);
        }
    }

    /// Gives the create-favorite dialog a name that nobody has.
    void FillName(const OpenDialog& other) {
        if (other.Has(CreateNameBox)) {
            other.SetText(CreateNameBox, "made" + std::to_string(++NamesMade));
        }
    }

    /// Uses each of the first rows from the top down: in the next of all ways, or in every way.
    void UseRows(const OpenDialog& dialog, const ListDialog& controls, bool inEveryWay) {
        const auto ways = static_cast<int>(controls.Buttons.size());
        const int rows = dialog.RowCount(controls.List);
        for (int row = 0; row < rows; ++row) {
            for (int way = 0; way < ways; ++way) {
                if (inEveryWay || way == row % ways) {
                    PressIfEnabled(dialog, controls.Buttons[static_cast<std::size_t>(way)],
                                   [this](const OpenDialog& other) { FillName(other); });
                }
            }
            dialog.KeyAndAccept(controls.List, VK_SPACE); // the mark for the toolbar
            dialog.KeyAndAccept(controls.List, VK_DOWN);
        }
    }

    /// Deletes from the bottom up what can be deleted.
    static void DeleteRows(const OpenDialog& dialog, const ListDialog& controls) {
        dialog.KeyAndAccept(controls.List, VK_END);
        for (int row = dialog.RowCount(controls.List); row > 0; --row) {
            const int before = dialog.RowCount(controls.List);
            dialog.KeyAndAccept(controls.List, VK_DELETE);
            if (dialog.RowCount(controls.List) == before) {
                dialog.KeyAndAccept(controls.List, VK_UP); // a standard favorite
            }
        }
    }

    void UseEditor(const std::function<void(const OpenDialog&)>& use, int end) {
        const std::int64_t result =
            CallWithDialog([this] { return EX_ShowTemplateUI(Favorites().c_str(), nullptr); },
                           [&](const OpenDialog& dialog) {
                               use(dialog);
                               dialog.Press(end);
                           });
        EXPECT_EQ(result, end == OkButton ? 0 : 1);
        EXPECT_THAT(LeftBehind(), IsEmpty());
    }

    void UseBasicList(const std::function<void(const OpenDialog&)>& use) {
        const std::int64_t result = CallWithDialog(
            [this] { return EX_ShowChoiceUIBasic(Favorites().c_str(), ListFile, ".pmt", nullptr); },
            [&](const OpenDialog& dialog) {
                use(dialog);
                dialog.Press(OkButton);
            });
        EXPECT_EQ(result, 0);
        EXPECT_THAT(LeftBehind(), IsEmpty());
    }

    void Register(const std::string& name) {
        const std::int64_t result = CallWithDialog(
            [this] {
                return EX_ShowChoiceUIEntry(Favorites().c_str(), ListFile, ".pmt", Table.data(), 1, nullptr);
            },
            [&](const OpenDialog& dialog) {
                dialog.SetText(RegisterNameBox, name);
                dialog.PressAndAccept(OkButton, [](const OpenDialog&) {});
            });
        EXPECT_EQ(result, 0);
        EXPECT_THAT(LeftBehind(), IsEmpty());
    }

    /// Saves the current settings under a name, as a new favorite or over the one at a position.
    std::int64_t SaveAs(std::int32_t mode, std::int64_t position, const std::string& name) {
        const ListHandle handle = Open();
        TemplInfo info{};
        info.Position = position;
        info.Level = 1;
        std::vector<unsigned char> part(PMX_TABLE_SIZE);
        EX_CurTemplInfo(handle.get(), position, 1, part.data(), PMX_TABLE_SIZE);
        return CallWithDialog(
            [&] {
                return EX_SaveAsTemplInfo(handle.get(), mode, &info, Table.data(), PMX_TABLE_SIZE, nullptr);
            },
            [&](const OpenDialog& dialog) {
                dialog.SetText(CreateNameBox, name);
                dialog.Press(OkButton);
            });
    }

    /// Opens every dialog on the list, which is written anew for each.
    void OpenEverywhere(const std::vector<std::string>& values, bool inEveryWay = false) {
        WriteList(values);
        UseEditor([&](const OpenDialog& dialog) { UseRows(dialog, Editor, inEveryWay); }, CancelButton);
        UseEditor([](const OpenDialog& dialog) { DeleteRows(dialog, Editor); }, OkButton);
        WriteList(values);
        UseBasicList([&](const OpenDialog& dialog) {
            UseRows(dialog, Basic, inEveryWay);
            DeleteRows(dialog, Basic);
        });
        WriteList(values);
        Register("Registered");
        EXPECT_EQ(SaveAs(1, 0, "Saved"), 0);
        EXPECT_THAT(ListedNames(), Contains("Registered"));
        EXPECT_THAT(ListedNames(), Contains("Saved"));
    }

    std::vector<unsigned char> Table = TableOf(90);
    int NamesMade = 0;
};

TEST_F(HostileDialogs, FilesOfEveryKindDoNoHarm) {
    WriteEveryKindOfFile();
    OpenEverywhere(FavoritesOfEveryKindOfFile(), true);
    EXPECT_EQ(Folder.Read("Favorites\\folder.pmt\\kept"), "content");
}

TEST_F(HostileDialogs, NamesOfEveryKindOfFileAreTaken) {
    WriteEveryKindOfFile();
    WriteList(std::vector<std::string>{});
    for (const char* const name :
         {"damaged", "huge", "folder", "link", "nowhere", "loop", "linked", "pipe"}) {
        SCOPED_TRACE(name);
        Register(name);
        EXPECT_TRUE(Folder.Exists(std::string("Favorites\\") + name + "-1.pmt") ||
                    name == std::string("nowhere"));
    }
    EXPECT_EQ(SaveAs(1, 0, "good"), 0);
    EXPECT_TRUE(Folder.Exists("Favorites\\good-1.pmt"));
}

TEST_F(HostileDialogs, FavoritesOfEveryKindOfFileAreStoredOverOrRefused) {
    WriteEveryKindOfFile();
    const std::vector<std::string> values = FavoritesOfEveryKindOfFile();
    for (std::size_t position = 0; position < values.size(); ++position) {
        WriteList(values);
        SaveAs(0, static_cast<std::int64_t>(position), "Over");
        WriteList(values);
        Register(values[position].substr(2, values[position].find('~', 2) - 2));
    }
    EXPECT_EQ(Folder.Read("Favorites\\folder.pmt\\kept"), "content");
}

TEST_F(HostileDialogs, FilesOfEveryKindAreImportedAndExportedOrRefused) {
    WriteEveryKindOfFile();
    WriteList(FavoritesOfEveryKindOfFile());
    const auto choose = [this](const std::string& path) {
        return [this, path](const OpenDialog& other) {
            if (other.Has(cmb13) || other.Has(edt1)) {
                other.SetText(other.Has(cmb13) ? cmb13 : edt1, path);
            }
            FillName(other);
        };
    };
    UseEditor(
        [&](const OpenDialog& dialog) {
            for (const char* const name : {"damaged", "link", "folder", "pipe"}) {
                dialog.PressAndAccept(EditorImportButton, choose(Favorites(std::string(name) + ".pmt")));
            }
            for (const char* const name : {"link", "folder", "new"}) {
                PressIfEnabled(dialog, EditorExportButton, choose(Favorites(std::string(name) + ".pmt")));
            }
        },
        OkButton);
    EXPECT_TRUE(Folder.Exists("Favorites\\new.pmt"));
    EXPECT_TRUE(Folder.Exists("Favorites\\link-1.pmt"));
}

TEST_F(HostileDialogs, FileFieldsThatPointOutsideReachNothing) {
    OpenEverywhere(FavoritesThatPointOutside());
}

TEST_F(HostileDialogs, NumbersAtAndBeyondEveryLimitAreOnlyNumbers) {
    OpenEverywhere(FavoritesAtEveryLimit());
}

TEST_F(HostileDialogs, BrokenNamesAreOnlyNames) {
    OpenEverywhere(FavoritesWithBrokenNames());
}

TEST_F(HostileDialogs, CountsAtAndBeyondEveryLimitCostNothing) {
    for (const std::string& count : HostileCounts()) {
        SCOPED_TRACE(count);
        WriteList(count, {"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt"});
        UseEditor([](const OpenDialog& dialog) { EXPECT_LE(dialog.RowCount(Editor.List), 2); }, OkButton);
    }
    WriteList("2147483647", {"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt"});
    UseBasicList([](const OpenDialog& dialog) { EXPECT_EQ(dialog.RowCount(Basic.List), 2); });
    WriteList("2147483647", {"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt"});
    Register("New");
    EXPECT_THAT(ListedNames(), Contains("New"));
}

} // namespace
} // namespace pmx::exports_test
