// Folders made to do harm: whatever their list says, dialogs open without harm, and nothing outside is touched. What
// the other exports read of such folders, and files that are none, the tests of the exports show.
#include "frame/dialog_exports.h"
#include "res/ids.h"
#include "support/fake_attribute_dialog.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/hostile_lists.h"
#include "support/quiet_desktop.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using testing::ElementsAre;

constexpr const char* Favorites = "Favorites";
constexpr const char* Outside = "outside.pmt";

/// A favorites folder beside a file that does not belong to it.
class HostileFolder : public testing::Test {
protected:
    HostileFolder() {
        Folder.AddFolder(Favorites);
        FakeHost::WriteFavorite(Folder, Outside, {TableOf(1), 1, "outside"});
        OutsideBefore = Folder.Read(Outside);
        FakeAttributeDialog::PutInto(Desktop.Inner.Libraries);
    }

    ~HostileFolder() override {
        EXPECT_THAT(Folder.Names(), ElementsAre(Favorites, Outside))
            << "something outside was made or deleted";
        EXPECT_EQ(Folder.Read(Outside), OutsideBefore);
    }

    std::string Inside(const std::string& name) const { return std::string(Favorites) + '\\' + name; }
    std::string FavoritesPath() const { return Folder.Path(Favorites); }

    void Write(const std::string& count, const std::vector<std::string>& values) const {
        std::string text = "[PMXTemplateList]\r\nTemplateNum=" + count + "\r\n";
        for (std::size_t number = 0; number < values.size(); ++number) {
            text += "TemplateData" + std::to_string(number) + "=" + values[number] + "\r\n";
        }
        Folder.Write(Inside(ListFile), text);
    }

    void Write(const std::vector<std::string>& values) const { Write(std::to_string(values.size()), values); }

    static void PressIfEnabled(MemoryUser& user, ControlId button) {
        if (user.IsOpen() && user.IsEnabled(button)) {
            user.Press(button);
        }
    }

    /// Uses each row of the editor, deletes it, and accepts or cancels.
    void UseEditor(bool accept) {
        Desktop.Scripts[dialog::Editor] = [accept](MemoryUser& user) {
            while (user.RowCount(control::EditorList) > 0) {
                const int rows = user.RowCount(control::EditorList);
                user.ClickRow(control::EditorList, 0);
                user.ClickStateImage(control::EditorList, 0);
                for (const ControlId button : {control::EditorEdit, control::EditorCopy, control::EditorDown,
                                               control::EditorUp, control::EditorExport}) {
                    PressIfEnabled(user, button);
                }
                user.ClickRow(control::EditorList, 0);
                PressIfEnabled(user, control::EditorDelete);
                if (user.RowCount(control::EditorList) >= rows) {
                    break; // a standard favorite
                }
            }
            if (accept) {
                PressIfEnabled(user, control::Ok);
            }
        };
        ShowEditor(FavoritesPath().c_str(), WindowHandle::None, Desktop.Services, Store.Services);
    }

    void UseBasicList() {
        Desktop.Scripts[dialog::BasicList] = [](MemoryUser& user) {
            for (int row = user.RowCount(control::BasicList); row-- > 0;) {
                user.ClickRow(control::BasicList, row);
                PressIfEnabled(user, control::BasicUp);
                PressIfEnabled(user, control::BasicDelete);
            }
            PressIfEnabled(user, control::Ok);
        };
        ShowBasicList(FavoritesPath().c_str(), ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                      Store.Services);
    }

    void UseRegisterDialog(const std::string& name) {
        Desktop.Scripts[dialog::RegisterFavorite] = [name](MemoryUser& user) {
            user.Fill(control::RegisterName, name);
            PressIfEnabled(user, control::Ok);
        };
        const _LM_DOCUMENTLAYOUTTABLE table = TableOf(9);
        ShowRegisterDialog(FavoritesPath().c_str(), ListFile, ".pmt", table.Bytes, 1, WindowHandle::None,
                           Desktop.Services, Store.Services);
    }

    /// Opens the folder in every way, after writing the list anew for each.
    void OpenEverywhere(const std::vector<std::string>& values, const std::string& registered = "New") {
        Write(values);
        UseEditor(false);
        UseEditor(true);
        Write(values);
        UseBasicList();
        Write(values);
        UseRegisterDialog(registered);
    }

    FakeHost Host;
    FakeServices Store;
    TempFolder Folder{"hostile"};
    QuietDesktop Desktop;
    FakeAttributeDialog Attributes;
    std::string OutsideBefore;
};

TEST_F(HostileFolder, FileFieldsThatPointOutsideReachNothing) {
    OpenEverywhere(FavoritesThatPointOutside(Folder.Path(Outside)), "A");
}

TEST_F(HostileFolder, NumbersAtAndBeyondEveryLimitAreOnlyNumbers) {
    OpenEverywhere(FavoritesAtEveryLimit());
}

TEST_F(HostileFolder, CountsAtAndBeyondEveryLimitCostNothing) {
    const std::vector<std::string> values = {"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt"};
    for (const std::string& count : HostileCounts()) {
        SCOPED_TRACE(count);
        Write(count, values);
        UseEditor(true);
        Write(count, values);
        UseBasicList();
        Write(count, values);
        UseRegisterDialog("New");
    }
}

TEST_F(HostileFolder, NamesAreOnlyNames) {
    OpenEverywhere(FavoritesWithBrokenNames());
}

TEST_F(HostileFolder, AHundredFavoritesOnTheToolbarAndOfOneNameAreShown) {
    OpenEverywhere(std::vector<std::string>(100, "0~Same~1~1~14~same.pmt"), "Same");
}

TEST_F(HostileFolder, AFolderInTheFilesPlaceIsAMissingFile) {
    Folder.AddFolder(Inside("a.pmt"));
    Folder.Write(Inside("a.pmt\\kept"), "content");
    OpenEverywhere({"0~A~1~1~14~a.pmt"}, "A");
    EXPECT_EQ(Folder.Read(Inside("a.pmt\\kept")), "content");
    EXPECT_EQ(Store.Clock.Total(), 0U) << "no folder becomes a file by waiting";
}

#ifndef _WIN32
TEST_F(HostileFolder, DeletingALinkLeavesWhatItLinksTo) {
    const auto link = DiskPath(Folder.Path(Inside("link.pmt")));
    std::filesystem::create_symlink(DiskPath(Folder.Path(Outside)), link);
    Write({"0~A~1~1~14~link.pmt"});
    Desktop.Scripts[dialog::Editor] = [](MemoryUser& user) {
        user.ClickRow(control::EditorList, 0);
        user.Press(control::EditorDelete);
        user.Press(control::Ok);
    };
    ShowEditor(FavoritesPath().c_str(), WindowHandle::None, Desktop.Services, Store.Services);
    EXPECT_FALSE(std::filesystem::is_symlink(link)) << "the favorite was deleted";
}
#endif

} // namespace
} // namespace pmx::test
