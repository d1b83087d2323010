// A list file that another process holds for longer than a save waits. The clock is the system's.
#include "store/list_data_array.h"

#include "support/holding_process.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <string>

namespace pmx {
namespace {

using test::HoldingProcess;
using testing::ElementsAre;

class HeldListTest : public testing::Test {
protected:
    HeldListTest() {
        Folder.Write(DefaultListFileName, Before);
        EXPECT_TRUE(List.Open(Folder.Path().c_str()));
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetName("B");
        record->SetFileName("b.pmt");
        List.Add(std::move(record));
    }

    /// Saves the list while it is held. No file stays beside it, and nobody waits for long.
    bool Save() {
        const auto start = std::chrono::steady_clock::now();
        const bool isSaved = List.WriteListFile();
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
        EXPECT_THAT(Folder.Names(), ElementsAre(DefaultListFileName));
        return isSaved;
    }

    const std::string Before = "; mine\r\n" + Section({"0~A~1~0~14~a.pmt"});
    const test::TempFolder Folder;
    CPMXTemplUIListDataArray List{nullptr, nullptr, SystemStoreServices()};

    static std::string Section(const ListValues& values) {
        return FormatSection(values, static_cast<std::int64_t>(values.size()));
    }
};

TEST_F(HeldListTest, IsSavedThroughWhenItIsShared) {
    const HoldingProcess holder = test::HoldShared(List.GetListFilePath());
    EXPECT_TRUE(Save());
    const std::string added = FormatListValue(List.At(1));
    EXPECT_EQ(Folder.Read(DefaultListFileName), "; mine\r\n" + Section({"0~A~1~0~14~a.pmt", added}));
}

TEST_F(HeldListTest, StaysAsItIsWhenItIsNotShared) {
    HoldingProcess holder(List.GetListFilePath());
    EXPECT_FALSE(Save());
    holder.Release();
    EXPECT_EQ(Folder.Read(DefaultListFileName), Before);
    EXPECT_TRUE(Save());
}

} // namespace
} // namespace pmx
