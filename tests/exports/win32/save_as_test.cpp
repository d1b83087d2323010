// The current document's attributes as a favorite, through the dialog of the built library.
#include "exports/export_test.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"
#include "support/sjis.h"

#include <cstring>

namespace pmx::exports_test {
namespace {

using test::Sjis;

constexpr std::int32_t NewFavorite = 1;
constexpr std::int32_t Overwrite = 0;

class SaveAsExportTest : public ExportTest {
protected:
    SaveAsExportTest() {
        Fill();
        Handle = Open();
        Info.Level = 1;
        std::strcpy(Info.Name, "Proposal");
    }

    std::int64_t SaveAs(std::int32_t mode, const std::function<void(const OpenDialog&)>& use) {
        return CallWithDialog(
            [&] {
                return EX_SaveAsTemplInfo(Handle.get(), mode, &Info, Table.data(), PMX_TABLE_SIZE, nullptr);
            },
            use);
    }

    std::int64_t SaveAs(std::int32_t mode, const std::string& name) {
        return SaveAs(mode, [&name](const OpenDialog& dialog) {
            dialog.SetText(CreateNameBox, name);
            dialog.Press(OkButton);
        });
    }

    /// The table of a favorite, fetched by its name.
    std::vector<unsigned char> Fetch(const std::string& name, std::int32_t level) {
        std::vector<unsigned char> table(PMX_TABLE_SIZE);
        const std::int64_t result =
            EX_ConvertChoiceData(name.c_str(), Folder.Path().c_str(), ListFile, ".pmt", table.data(), level);
        return result == 0 ? table : std::vector<unsigned char>();
    }

    std::vector<unsigned char> Table = TableOf(90);
    TemplInfo Info{};
    ListHandle Handle;
};

TEST_F(SaveAsExportTest, ANewFavoriteIsStoredAndFoundByItsName) {
    const std::string name = Sjis(u8"ミ表");
    Info.Toolbar = 1;
    Info.IconIndex = 40;
    EXPECT_EQ(SaveAs(NewFavorite,
                     [&name](const OpenDialog& dialog) {
                         EXPECT_EQ(dialog.Title(), Sjis(u8"お気に入りの作成"));
                         EXPECT_EQ(dialog.Text(CreateNameBox), "Proposal");
                         dialog.SetText(CreateNameBox, "  " + name + " ");
                         dialog.Press(OkButton);
                     }),
              0);
    EXPECT_EQ(std::int64_t{Info.Position}, 4);
    EXPECT_EQ(Info.Standard, 0U);
    EXPECT_EQ(Info.Level, 1);
    EXPECT_EQ(Info.Toolbar, 0);
    EXPECT_EQ(std::int64_t{Info.IconIndex}, 14);
    EXPECT_EQ(Info.Name, name);
    EXPECT_EQ(Part(Handle.get(), 4, 1), Table);
    EXPECT_EQ(Fetch(name, 1), Table);
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData4=0~" + name + "~1~0~14~" + name + ".pmt\r\n"),
              std::string::npos);
}

TEST_F(SaveAsExportTest, AnExistingFavoriteIsStoredOver) {
    ASSERT_EQ(Part(Handle.get(), 1, 3), PartOf(TableOf(20), 3));
    Info.Position = 1;
    Info.Level = 3;
    EXPECT_EQ(SaveAs(Overwrite,
                     [](const OpenDialog& dialog) {
                         EXPECT_TRUE(dialog.IsChecked(ThirdLevelButton));
                         dialog.SetText(CreateNameBox, "Renamed");
                         dialog.Press(OkButton);
                     }),
              0);
    EXPECT_STREQ(Info.Name, "Renamed");
    EXPECT_NE(Folder.Read(ListFile).find("TemplateData1=0~Renamed~3~0~14~second.pmt\r\n"), std::string::npos);
    std::vector<unsigned char> expected = PartOf(Table, 3);
    expected.resize(PMX_TABLE_SIZE, 0);
    EXPECT_EQ(Fetch("Renamed", 3), expected);
}

TEST_F(SaveAsExportTest, AFavoriteThatWasNotLoadedIsNotStoredOver) {
    const auto before = Snapshot();
    EXPECT_EQ(SaveAs(Overwrite, "Renamed"), -1);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(SaveAsExportTest, CancelGivesOneAndChangesNothing) {
    const auto before = Snapshot();
    const TemplInfo infoBefore = Info;
    EXPECT_EQ(SaveAs(NewFavorite, [](const OpenDialog& dialog) { dialog.Press(CancelButton); }), 1);
    EXPECT_EQ(Snapshot(), before);
    EXPECT_EQ(std::memcmp(&Info, &infoBefore, sizeof Info), 0);
    EXPECT_EQ(Summaries(Handle.get(), 1).size(), 1U);
}

TEST_F(SaveAsExportTest, AStandardFavoriteIsProposedAsACopy) {
    Info.Standard = 1;
    Info.Level = 101;
    std::strcpy(Info.Name, "Duplex");
    EXPECT_EQ(SaveAs(NewFavorite,
                     [](const OpenDialog& dialog) {
                         EXPECT_EQ(dialog.Text(CreateNameBox), Sjis(u8"コピー ～ Duplex"));
                         EXPECT_TRUE(dialog.IsChecked(FirstLevelButton));
                         dialog.Press(CancelButton);
                     }),
              1);
}

TEST_F(SaveAsExportTest, ATableOfAnotherSizeIsRefusedWithoutADialog) {
    for (const std::int64_t size :
         {std::int64_t{8656}, std::int64_t{8658}, std::int64_t{-1}, std::int64_t{0}}) {
        EXPECT_EQ(EX_SaveAsTemplInfo(Handle.get(), NewFavorite, &Info, Table.data(), size, nullptr), -1)
            << size;
    }
}

TEST_F(SaveAsExportTest, TheHostsWindowIsDisabledMeanwhile) {
    const HWND host = CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 160,
                                      nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    EXPECT_EQ(CallWithDialog(
                  [&] {
                      return EX_SaveAsTemplInfo(Handle.get(), NewFavorite, &Info, Table.data(),
                                                PMX_TABLE_SIZE, host);
                  },
                  [host](const OpenDialog& dialog) {
                      EXPECT_FALSE(IsWindowEnabled(host));
                      EXPECT_EQ(GetWindow(dialog.Handle(), GW_OWNER), host);
                      dialog.Press(CancelButton);
                  }),
              1);
    EXPECT_TRUE(IsWindowEnabled(host));
    DestroyWindow(host);
}

} // namespace
} // namespace pmx::exports_test
