// Where there are no windows, the exports that open a dialog say that it cannot be shown.
#include "exports/export_test.h"

#include <cstring>

namespace pmx::exports_test {
namespace {

class NoWindowsTest : public ExportTest {
protected:
    NoWindowsTest() {
        Fill();
        Before = Snapshot();
    }
    ~NoWindowsTest() override { EXPECT_EQ(Snapshot(), Before) << "the folder changed"; }

    const char* FolderPath() const { return Folder.Path().c_str(); }

    std::map<std::string, std::string> Before;
    std::vector<unsigned char> Table = TableOf(90);
};

TEST_F(NoWindowsTest, NoDialogCanBeShown) {
    EXPECT_EQ(EX_ShowTemplateUI(FolderPath(), nullptr), -1);
    EXPECT_EQ(EX_ShowChoiceUIEntry(FolderPath(), ListFile, ".pmt", Table.data(), 1, nullptr), -1);
    EXPECT_EQ(EX_ShowChoiceUIBasic(FolderPath(), ListFile, ".pmt", nullptr), -1);
}

TEST_F(NoWindowsTest, NobodyCanBeAskedForTheNameOfAFavoriteToSave) {
    const ListHandle handle = Open();
    TemplInfo info{};
    info.Level = 1;
    std::strcpy(info.Name, "name");
    const TemplInfo infoBefore = info;
    for (const std::int32_t mode : {0, 1}) {
        EXPECT_EQ(EX_SaveAsTemplInfo(handle.get(), mode, &info, Table.data(), PMX_TABLE_SIZE, nullptr), -1);
    }
    EXPECT_EQ(std::memcmp(&info, &infoBefore, sizeof info), 0);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 3 * 548);
}

} // namespace
} // namespace pmx::exports_test
