// Import and export with the sample host's document model: what reaches a favorites folder is a whole
// favorite.
#include "docmgr/favorite_file.h"
#include "store/import_export.h"
#include "store/list_data_array.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pmx {
namespace {

using test::Sjis;
using test::TempFolder;

class SampleExchangeTest : public testing::Test {
protected:
    SampleExchangeTest() {
        CPMXTemplUIListData favorite;
        favorite.SetName(Sjis(u8"表紙"));
        favorite.SetLevel(3);
        favorite.SetFileName("Mine.pmt");
        EXPECT_TRUE(favorite.EnsureDocument());
        EXPECT_TRUE(List.SetFolder(Folder.Path().c_str()));
        EXPECT_TRUE(List.SaveFavorite(favorite));
        EXPECT_EQ(ExportFavorite(List, favorite, Outside.Path("Whole.pmt")), StoreResult::Success);
        Bytes = Outside.Read("Whole.pmt");
        Folder.Remove("Mine.pmt");
    }

    StoreResult Import(const std::string& bytes) {
        Outside.Write("X.pmt", bytes);
        FavoriteImport import(List);
        const StoreResult result = import.Read(Outside.Path("X.pmt"));
        if (result == StoreResult::Success) {
            import.Finish("Imported");
        }
        return result;
    }

    void ExpectRefused(const std::string& bytes) {
        EXPECT_EQ(Import(bytes), StoreResult::NotRead);
        EXPECT_TRUE(Folder.Names().empty());
        EXPECT_EQ(List.GetSize(), 0);
    }

    TempFolder Folder{"favorites"};
    TempFolder Outside{"outside"};
    CPMXTemplUIListDataArray List{nullptr, nullptr, SystemStoreServices()};
    std::string Bytes; ///< of an exported favorite
};

TEST_F(SampleExchangeTest, ExportedFavoriteCarriesNameAndLevelAndCanBeImported) {
    EXPECT_EQ(Outside.Names(), std::vector<std::string>{"Whole.pmt"});
    FavoriteImport import(List);
    ASSERT_EQ(import.Read(Outside.Path("Whole.pmt")), StoreResult::Success);
    EXPECT_EQ(import.GetRecord().GetName(), Sjis(u8"表紙"));
    EXPECT_EQ(import.GetRecord().GetLevel(), 3);
    import.Finish("Other");
    EXPECT_EQ(Folder.Read("Whole.pmt"), Bytes);
}

TEST_F(SampleExchangeTest, FileTruncatedAnywhereIsRefusedAndLeavesNothingBehind) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{8}, std::size_t{16},
                                     Bytes.size() / 2, Bytes.size() - 4, Bytes.size() - 1}) {
        SCOPED_TRACE(length);
        ExpectRefused(Bytes.substr(0, length));
    }
}

TEST_F(SampleExchangeTest, FileAlteredAnywhereIsRefusedAndLeavesNothingBehind) {
    constexpr std::size_t Step = 499; // a prime, so that every part of the file is met
    for (std::size_t position = 0; position < Bytes.size(); position += Step) {
        SCOPED_TRACE(position);
        std::string altered = Bytes;
        altered[position] = static_cast<char>(altered[position] ^ 0x10);
        ExpectRefused(altered);
    }
    std::string wrongChecksum = Bytes;
    wrongChecksum.back() = static_cast<char>(wrongChecksum.back() ^ 1);
    ExpectRefused(wrongChecksum);
}

TEST_F(SampleExchangeTest, FileThatIsNoFavoriteIsRefusedAndLeavesNothingBehind) {
    ExpectRefused("[PMXTemplateList]\r\nTemplateNum=0\r\n");
    ExpectRefused(Bytes + "more");
    ExpectRefused(std::string(Bytes.size(), '\0'));
}

TEST_F(SampleExchangeTest, WholeFileIsTakenIn) {
    EXPECT_EQ(Import(Bytes), StoreResult::Success);
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"X.pmt"});
    EXPECT_EQ(Import(Bytes), StoreResult::Success);
    EXPECT_EQ(Folder.Names(), (std::vector<std::string>{"X-1.pmt", "X.pmt"}));
}

} // namespace
} // namespace pmx
