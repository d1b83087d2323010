#include "frame/dialog_exports.h"

#include "support/list_dialog_test.h"

namespace pmx {
namespace {

using test::EditorTest;
using test::MemoryUser;
using test::Sjis;

class ShowEditorTest : public EditorTest {
protected:
    std::int64_t Show(const std::string& folder, const test::MemoryDialogs::Script& script) {
        Desktop.Dialogs.OnOpened(dialog::Editor, script);
        return ShowEditor(folder.c_str(), WindowHandle{7}, Desktop.Services, Store.Services);
    }
};

/// Files that note which folder they were asked for.
class FolderNotingFiles final : public test::FakeFiles {
public:
    std::string AskedFolder;

    bool IsFolder(const std::string& path) override {
        AskedFolder = path;
        return false;
    }
};

TEST_F(ShowEditorTest, AcceptedEditorGives0AndUsesTheFixedListFileAndExtension) {
    EXPECT_EQ(Show(Folder.Path(),
                   [this](MemoryUser& user) {
                       EXPECT_EQ(user.Parent(), WindowHandle{7});
                       AnswerName("N");
                       user.Press(control::EditorNew);
                       user.Press(control::Ok);
                   }),
              0);
    EXPECT_EQ(Folder.Names(), (std::vector<std::string>{"N.pmt", "PmxTempleList.ini"}));
}

TEST_F(ShowEditorTest, CancelledEditorGives1) {
    EXPECT_EQ(Show(Folder.Path(), [](MemoryUser& user) { user.Escape(); }), 1);
}

TEST_F(ShowEditorTest, EditorThatCannotBeShownGivesMinus1) {
    Desktop.Dialogs.OnOpenedFail(dialog::Editor);
    EXPECT_EQ(ShowEditor(Folder.Path().c_str(), WindowHandle::None, Desktop.Services, Store.Services), -1);
}

TEST_F(ShowEditorTest, FolderIsCutTo519BytesAndNoCharacterIsSplit) {
    FolderNotingFiles files;
    const StoreServices services{files, Store.Clock};
    const auto askedFor = [&](const std::string& folder) {
        Desktop.Dialogs.OnOpened(dialog::Editor, [](MemoryUser& user) { user.Escape(); });
        ShowEditor(folder.c_str(), WindowHandle::None, Desktop.Services, services);
        return files.AskedFolder;
    };
    EXPECT_EQ(askedFor(std::string(600, 'x')), std::string(519, 'x'));
    EXPECT_EQ(askedFor(std::string(519, 'x')), std::string(519, 'x'));
    EXPECT_EQ(askedFor(std::string(518, 'x') + Sjis(u8"表") + "y"), std::string(518, 'x'));
}

class ShowRegisterDialogTest : public testing::Test, public test::FavoriteFolder {
protected:
    std::int64_t Show(const test::MemoryDialogs::Script& script) {
        Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, script);
        return ShowRegisterDialog(Folder.Path().c_str(), "Mine.ini", ".fav", Table, 2, WindowHandle{7},
                                  Desktop.Services, Store.Services);
    }

    static void Register(MemoryUser& user) {
        user.Fill(control::RegisterName, "N");
        user.Press(control::Ok);
    }

    _LM_DOCUMENTLAYOUTTABLE Content = test::TableOf(90);
    const void* Table = Content.Bytes;
    test::MemoryDesktop Desktop;
};

TEST_F(ShowRegisterDialogTest, AcceptedDialogGives0AndStoresTheTableUnderTheCallersListFileAndLevel) {
    EXPECT_EQ(Show([](MemoryUser& user) {
                  EXPECT_EQ(user.Parent(), WindowHandle{7});
                  Register(user);
              }),
              0);
    EXPECT_EQ(Folder.Names(), (std::vector<std::string>{"Mine.ini", "N.fav"}));
    const test::HostContent stored = test::FakeHost::ReadFavorite(Folder, "N.fav");
    EXPECT_EQ(stored.Level, 2);
    EXPECT_EQ(stored.Table.Bytes[82], Content.Bytes[0]);
}

TEST_F(ShowRegisterDialogTest, CancelledDialogGives1) {
    EXPECT_EQ(Show([](MemoryUser& user) { user.Escape(); }), 1);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(ShowRegisterDialogTest, DialogThatCannotBeShownGivesMinus1) {
    EXPECT_EQ(Show({}), -1);
}

TEST_F(ShowRegisterDialogTest, MissingTableIsNoReasonToRefuse) {
    Table = nullptr;
    EXPECT_EQ(Show(Register), 0);
    EXPECT_TRUE(Folder.Names().empty()) << "but nothing can be stored";
}

TEST_F(ShowRegisterDialogTest, LongFolderReachesTheDialogAsItIs) {
    FolderNotingFiles files;
    const StoreServices services{files, Store.Clock};
    Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [](MemoryUser& user) { user.Escape(); });
    ShowRegisterDialog(std::string(600, 'x').c_str(), "Mine.ini", ".fav", Table, 1, WindowHandle::None,
                       Desktop.Services, services);
    EXPECT_EQ(files.AskedFolder, std::string(600, 'x'));
}

class ShowBasicListTest : public testing::Test, public test::FavoriteFolder {
protected:
    std::int64_t Show(const test::MemoryDialogs::Script& script) {
        Desktop.Dialogs.OnOpened(dialog::BasicList, script);
        return ShowBasicList(Folder.Path().c_str(), "Mine.ini", ".fav", WindowHandle{7}, Desktop.Services,
                             Store.Services);
    }

    test::MemoryDesktop Desktop;
};

TEST_F(ShowBasicListTest, AcceptedListGives0AndUsesTheListFileOfTheCaller) {
    EXPECT_EQ(Show([](MemoryUser& user) {
                  EXPECT_EQ(user.Parent(), WindowHandle{7});
                  user.Press(control::Ok);
              }),
              0);
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"Mine.ini"});
}

TEST_F(ShowBasicListTest, CancelledListGives1) {
    EXPECT_EQ(Show([](MemoryUser& user) { user.Escape(); }), 1);
}

TEST_F(ShowBasicListTest, ListThatCannotBeShownGivesMinus1) {
    EXPECT_EQ(Show({}), -1);
}

TEST_F(ShowBasicListTest, LongFolderReachesTheListAsItIs) {
    FolderNotingFiles files;
    const StoreServices services{files, Store.Clock};
    Desktop.Dialogs.OnOpened(dialog::BasicList, [](MemoryUser& user) { user.Escape(); });
    ShowBasicList(std::string(600, 'x').c_str(), "Mine.ini", ".fav", WindowHandle::None, Desktop.Services,
                  services);
    EXPECT_EQ(files.AskedFolder, std::string(600, 'x'));
}

} // namespace
} // namespace pmx
