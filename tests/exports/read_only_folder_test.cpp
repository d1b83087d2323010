// A folder that cannot be written, whatever rights one has. tools/with-small-disk makes one for these tests.
#include "exports/read_only_folder.h"

#include <gmock/gmock.h>

namespace pmx::exports_test {
namespace {

using testing::SizeIs;

TEST_F(ReadOnlyFolder, IsReadAsAnyOther) {
    const ListHandle handle = OpenView();
    ASSERT_NE(handle, nullptr);
    EXPECT_THAT(Summaries(handle.get(), 1), SizeIs(3));
    EXPECT_EQ(Part(handle.get(), 1, 1), TableOf(11));
    std::vector<unsigned char> table(PMX_TABLE_SIZE);
    EXPECT_EQ(EX_ConvertChoiceData("C", View().c_str(), ListFile, ".pmt", table.data(), 1), 0);
    EXPECT_EQ(table, TableOf(12));
}

TEST_F(ReadOnlyFolder, StandardFavoritesAreAddedToTheOpenListOnly) {
    const ListHandle handle = OpenView();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "New", 3, 14), 0);
    EXPECT_EQ(EX_CreateDefaultChoice(handle.get(), "New", 4, 14), 0);
    EXPECT_THAT(Summaries(handle.get(), 101), SizeIs(5));
    EXPECT_THAT(Summaries(OpenView().get(), 101), SizeIs(3));
}

} // namespace
} // namespace pmx::exports_test
