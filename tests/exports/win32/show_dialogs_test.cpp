// The three dialogs of the built library, as a host shows them, with the sample host's document model.
#include "exports/export_test.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"
#include "support/sjis.h"

namespace pmx::exports_test {
namespace {

using test::Sjis;

/// A window that stands for the host's.
class HostWindow {
public:
    HostWindow()
        : Handle(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 160,
                                 nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    ~HostWindow() { DestroyWindow(Handle); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND Get() const { return Handle; }

private:
    HWND Handle;
};

class ShowDialogsTest : public ExportTest {
protected:
    ShowDialogsTest() {
        for (const char* fileName : {"a.pmt", "b.pmt", "c.pmt"}) {
            WriteFavorite(fileName, TableOf(10));
        }
        Folder.Write(ListFile, Section({"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt", "0~C~1~0~14~c.pmt"}));
    }

    std::int64_t ShowEditor(const std::function<void(const OpenDialog&)>& use, const std::string& folder) {
        return CallWithDialog([&] { return EX_ShowTemplateUI(folder.c_str(), Host.Get()); }, use);
    }

    std::int64_t ShowBasicList(const std::function<void(const OpenDialog&)>& use) {
        return CallWithDialog(
            [&] { return EX_ShowChoiceUIBasic(Folder.Path().c_str(), ListFile, ".pmt", Host.Get()); }, use);
    }

    std::int64_t Register(const std::function<void(const OpenDialog&)>& use) {
        return CallWithDialog(
            [&] {
                return EX_ShowChoiceUIEntry(Folder.Path().c_str(), ListFile, ".pmt", Table.data(), 1,
                                            Host.Get());
            },
            use);
    }

    void ExpectModalToTheHost(const OpenDialog& dialog) const {
        EXPECT_EQ(GetWindow(dialog.Handle(), GW_OWNER), Host.Get());
        EXPECT_FALSE(IsWindowEnabled(Host.Get()));
    }

    /// The names of the favorites in the order of the list.
    std::vector<std::string> ListedNames() const {
        std::vector<std::string> names;
        for (const TemplInfo& info : Summaries(Open().get(), 1)) {
            names.emplace_back(info.Name);
        }
        return names;
    }

    HostWindow Host;
    std::vector<unsigned char> Table = TableOf(90);
};

TEST_F(ShowDialogsTest, AcceptedEditorGives0AndWritesTheList) {
    EXPECT_EQ(ShowEditor(
                  [this](const OpenDialog& dialog) {
                      EXPECT_EQ(dialog.Title(), Sjis(u8"お気に入りの編集"));
                      ExpectModalToTheHost(dialog);
                      dialog.Press(EditorDownButton);
                      dialog.Press(EditorDownButton);
                      dialog.Press(OkButton);
                  },
                  Folder.Path()),
              0);
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"B", "C", "A"}));
    EXPECT_TRUE(IsWindowEnabled(Host.Get()));
}

TEST_F(ShowDialogsTest, CancelledEditorGives1AndChangesNothing) {
    const auto before = Snapshot();
    EXPECT_EQ(ShowEditor(
                  [](const OpenDialog& dialog) {
                      dialog.Press(EditorDownButton);
                      dialog.Press(CancelButton);
                  },
                  Folder.Path()),
              1);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ShowDialogsTest, FolderThatIsTooLongOpensAnEmptyEditor) {
    EXPECT_EQ(ShowEditor([](const OpenDialog& dialog) { dialog.Press(CancelButton); }, std::string(600, 'x')),
              1);
}

TEST_F(ShowDialogsTest, AcceptedBasicListGives0AndWritesTheList) {
    EXPECT_EQ(ShowBasicList([this](const OpenDialog& dialog) {
                  EXPECT_EQ(dialog.Title(), Sjis(u8"お気に入りの編集"));
                  ExpectModalToTheHost(dialog);
                  dialog.Press(BasicDownButton);
                  dialog.Press(BasicDownButton);
                  dialog.Press(OkButton);
              }),
              0);
    EXPECT_EQ(ListedNames(), (std::vector<std::string>{"B", "C", "A"}));
}

TEST_F(ShowDialogsTest, CancelledBasicListGives1AndChangesNothing) {
    const auto before = Snapshot();
    EXPECT_EQ(ShowBasicList([](const OpenDialog& dialog) {
                  dialog.Press(BasicDownButton);
                  dialog.Press(CancelButton);
              }),
              1);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ShowDialogsTest, AcceptedRegistrationGives0AndStoresTheTableOnTheToolbar) {
    EXPECT_EQ(Register([this](const OpenDialog& dialog) {
                  EXPECT_EQ(dialog.Title(), Sjis(u8"お気に入りの登録"));
                  ExpectModalToTheHost(dialog);
                  dialog.SetText(RegisterNameBox, Sjis(u8"表紙"));
                  dialog.Press(OkButton);
              }),
              0);
    const std::vector<TemplInfo> infos = Summaries(Open().get(), 1);
    ASSERT_FALSE(infos.empty());
    EXPECT_EQ(infos.back().Name, Sjis(u8"表紙"));
    EXPECT_EQ(infos.back().Toolbar, 1);
    std::vector<unsigned char> stored(PMX_TABLE_SIZE);
    EXPECT_EQ(
        EX_ConvertChoiceData(infos.back().Name, Folder.Path().c_str(), ListFile, ".pmt", stored.data(), 1),
        0);
    EXPECT_EQ(stored, Table);
}

TEST_F(ShowDialogsTest, CancelledRegistrationGives1AndChangesNothing) {
    const auto before = Snapshot();
    EXPECT_EQ(Register([](const OpenDialog& dialog) {
                  dialog.SetText(RegisterNameBox, "New");
                  dialog.Press(CancelButton);
              }),
              1);
    EXPECT_EQ(Snapshot(), before);
}

} // namespace
} // namespace pmx::exports_test
