// Standard favorites made through the exports.
#include "exports/export_test.h"

#include "support/sjis.h"

#include <gmock/gmock.h>

namespace pmx::exports_test {
namespace {

using test::Sjis;
using testing::ElementsAre;

class DefaultFavoritesTest : public ExportTest {};

TEST_F(DefaultFavoritesTest, AToolbarFavoriteIsTheLastEntryOfTheListFileAndCounts) {
    Fill();
    const ListHandle handle = Open();
    const std::int64_t before = EX_GetTemplListSize(handle.get(), 101);
    EXPECT_EQ(EX_CreateDefaultChoice(handle.get(), Sjis(u8"中とじ").c_str(), 4, 21), 0);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), before + 548);
    EXPECT_EQ(Folder.Read(ListFile),
              Section({"0~First~1~1~20~first.pmt", "0~Second~3~0~14~second.pmt", "1~Duplex~101~1~3~3",
                       "1~Unknown~101~0~0~5", "1~" + Sjis(u8"中とじ") + "~101~1~21~4"}));
    EXPECT_EQ(Summaries(Open().get(), 101).back().Name, Sjis(u8"中とじ")) << "read again";
}

TEST_F(DefaultFavoritesTest, TheOtherExportLeavesItOffTheToolbar) {
    const ListHandle handle = Open();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Fresh", 1, 14), 0);
    EXPECT_EQ(Folder.Read(ListFile), Section({"1~Fresh~101~0~14~1"}));
}

TEST_F(DefaultFavoritesTest, ANullNameCountsAsEmpty) {
    const ListHandle handle = Open();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), nullptr, 3, 14), 0);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 548);
    EXPECT_EQ(Folder.Read(ListFile), Section({"1~~101~0~14~3"}));
}

TEST_F(DefaultFavoritesTest, AListFileThatCannotBeWrittenIsNotReported) {
    Fill();
    const ListHandle handle = Open();
    Folder.SetReadOnly(ListFile, true);
    const auto before = Snapshot();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "New", 3, 14), 0);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 4 * 548);
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(DefaultFavoritesTest, TheFiveStandardFavoritesHaveTheirSettings) {
    const ListHandle handle = Open();
    for (std::int64_t number = 1; number <= 5; ++number) {
        EXPECT_EQ(EX_CreateDefaultChoice(handle.get(), "Standard", number, number), 0);
    }
    ASSERT_EQ(EX_GetTemplListSize(handle.get(), 101), 5 * 548);
    EXPECT_EQ(Part(handle.get(), 0, 1), Part(handle.get(), 1, 1)) << "both the fresh setting";
    for (std::int64_t number = 2; number < 5; ++number) {
        EXPECT_NE(Part(handle.get(), number, 1), Part(handle.get(), number - 1, 1));
    }
    EXPECT_THAT(Folder.Names(), ElementsAre(ListFile)) << "they have no files";
}

} // namespace
} // namespace pmx::exports_test
