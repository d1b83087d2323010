// The attribute table of a favorite by its name.
#include "exports/export_test.h"

#include "support/sjis.h"

#include <gmock/gmock.h>

namespace pmx::exports_test {
namespace {

using test::Sjis;
using testing::Each;

class ConvertChoiceTest : public ExportTest {
protected:
    std::int64_t Convert(const std::string& name, std::int32_t level) {
        return EX_ConvertChoiceData(name.c_str(), Folder.Path().c_str(), ListFile, ".pmt", Buffer.data(),
                                    level);
    }

    std::vector<unsigned char> Buffer = std::vector<unsigned char>(PMX_TABLE_SIZE, 0xEE);
};

TEST_F(ConvertChoiceTest, AUserFavoriteGivesItsTable) {
    Fill();
    const auto before = Snapshot();
    EXPECT_EQ(Convert("First", 1), 0);
    EXPECT_EQ(Buffer, TableOf(10));
    EXPECT_EQ(Snapshot(), before);
}

TEST_F(ConvertChoiceTest, TheLevelMustBeTheFavorites) {
    Fill();
    EXPECT_EQ(Convert("Second", 1), -1);
    EXPECT_THAT(Buffer, Each(0xEE));
    EXPECT_EQ(Convert("Second", 3), 0);
}

TEST_F(ConvertChoiceTest, AStandardFavoriteHasNoFile) {
    Fill();
    EXPECT_EQ(Convert("Duplex", 1), -1);
    EXPECT_EQ(Convert("Duplex", 101), -1);
    WriteFavorite("3", TableOf(1), 1);
    EXPECT_EQ(Convert("Duplex", 101), -1) << "there is no part of level 101";
    EXPECT_THAT(Buffer, Each(0xEE));
}

TEST_F(ConvertChoiceTest, DoubleByteNamesAreFound) {
    WriteFavorite(Sjis(u8"ミ.pmt"), TableOf(8));
    Folder.Write(ListFile, Section({Sjis(u8"0~ミ~1~0~14~ミ.pmt"), Sjis(u8"0~ア~1~0~14~missing.pmt")}));
    EXPECT_EQ(Convert(Sjis(u8"ミ"), 1), 0);
    EXPECT_EQ(Buffer, TableOf(8));
    EXPECT_EQ(Convert(Sjis(u8"ヂ"), 1), -1);
}

} // namespace
} // namespace pmx::exports_test
