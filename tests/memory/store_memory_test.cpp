#include "memory/counting_new.h"
#include "store/list_data_array.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace pmx::test {
namespace {

/// Most bytes of memory that a favorite may cost while the list is loaded, beyond those of the file.
constexpr std::size_t BytesPerFavorite = 260;

/// A list file of so many favorites with names of 20 bytes and files of 14.
std::string ListOf(std::size_t count) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(count) + "\r\n";
    for (std::size_t number = 0; number < count; ++number) {
        const std::string digits = std::to_string(1'000'000 + number);
        text += "TemplateData" + std::to_string(number) + "=0~favorite name " + digits.substr(2) +
                "~1~0~14~file" + digits.substr(1) + ".pmt\r\n";
    }
    return text;
}

class StoreMemoryTest : public testing::Test {
protected:
    /// The most bytes in use while a list file of that many favorites is loaded, beyond those in use before.
    std::size_t PeakOfLoading(std::size_t count) {
        const std::string text = ListOf(count);
        Folder.Write(ListFile, text);
        FileSize = text.size();
        CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
        EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
        ResetPeak();
        const std::size_t before = BytesInUse();
        EXPECT_TRUE(list.LoadList());
        EXPECT_EQ(list.GetSize(), static_cast<std::int64_t>(count));
        return PeakBytesInUse() - before;
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder;
    std::size_t FileSize = 0; ///< of the list file that was loaded last
};

TEST_F(StoreMemoryTest, LoadingCostsAFewBytesAFavoriteBeyondTheFile) {
    for (const std::size_t count : {1'000U, 10'000U, 100'000U}) {
        const std::size_t peak = PeakOfLoading(count);
        const double beyond =
            (static_cast<double>(peak) - static_cast<double>(FileSize)) / static_cast<double>(count);
        RecordProperty("bytes_per_favorite_" + std::to_string(count), std::to_string(beyond));
        EXPECT_LE(beyond, BytesPerFavorite) << count << " favorites";
    }
}

TEST_F(StoreMemoryTest, TheMemoryOfLoadingGrowsLinearly) {
    const std::size_t thousand = PeakOfLoading(1'000);
    const std::size_t tenThousand = PeakOfLoading(10'000);
    EXPECT_LE(tenThousand, 11 * thousand);
}

TEST_F(StoreMemoryTest, AHugeCountCostsNoMemory) {
    Folder.Write(ListFile, "[PMXTemplateList]\r\nTemplateNum=2147483647\r\nTemplateData0=0~A~1~0~14~a\r\n"
                           "TemplateData2147483646=0~B~1~0~14~b\r\n");
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    EXPECT_TRUE(list.LoadList());
    ResetPeak();
    const std::size_t before = BytesInUse();
    EXPECT_TRUE(list.LoadList());
    EXPECT_EQ(list.GetSize(), 2);
    EXPECT_LT(PeakBytesInUse() - before, 100'000U);
}

TEST_F(StoreMemoryTest, TheNumberOfAllocationsGrowsLinearly) {
    std::size_t before = Allocations();
    PeakOfLoading(10'000);
    const std::size_t tenThousand = Allocations() - before;
    before = Allocations();
    PeakOfLoading(100'000);
    EXPECT_LE(Allocations() - before, 11 * tenThousand);
}

/// Runs `work` with the first, the second, … allocation refused, until one run needs no more. `check` is told
/// how the work ended; the work lets nothing out.
template <typename Work, typename Check>
void RefuseEachAllocation(Work work, Check check) {
    bool wasFelt = true;
    for (std::size_t granted = 0; wasFelt; ++granted) {
        SCOPED_TRACE(granted);
        bool result = false;
        bool letOut = false;
        {
            const NoMemory atOnce(granted, 1);
            try {
                result = work();
            } catch (...) {
                letOut = true;
            }
            wasFelt = atOnce.WasFelt();
        }
        ASSERT_FALSE(letOut);
        EXPECT_TRUE(result || wasFelt);
        check(result);
        ASSERT_LT(granted, 10'000U);
    }
}

TEST_F(StoreMemoryTest, NoOperationOfARecordLetsLackOfMemoryOut) {
    const std::string path = Folder.Path("a.pmt");
    CPMXTemplUIListData record;
    RefuseEachAllocation(
        [&] {
            return record.EnsureDocument() && record.SaveDocument(path.c_str()) &&
                   record.LoadDocument(path.c_str()) && record.ReleaseDocument();
        },
        [&](bool /*result*/) {});
}

TEST_F(StoreMemoryTest, ARecordIsAddedWithoutMemoryOnceThereIsRoomForIt) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    for (std::int64_t count = 0; count < 100; ++count) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        list.MakeRoom();
        const NoMemory lack;
        EXPECT_EQ(list.Add(std::move(record)), count);
        EXPECT_FALSE(lack.WasFelt());
    }
}

TEST_F(StoreMemoryTest, LackOfMemoryWhileFilesOfDeletedGoLeavesThemAndIsIgnored) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    for (const char* const name : {"a.pmt", "b.pmt"}) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetFileName(name);
        record->SetDeleteFlag(1);
        list.Add(std::move(record));
        Folder.Write(name, "");
    }
    const std::vector<const CPMXTemplUIListData*> records = list.GetRecords();
    {
        const NoMemory lack;
        list.DeleteFilesOfDeleted(records);
        EXPECT_TRUE(lack.WasFelt());
    }
    EXPECT_EQ(Folder.Names().size(), 2U);
    list.DeleteFilesOfDeleted(records);
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(StoreMemoryTest, LackOfMemoryWhileTheListIsReadIsAFalseResult) {
    Folder.Write(ListFile, ListOf(3));
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    RefuseEachAllocation([&] { return list.LoadList(); },
                         [&](bool result) { EXPECT_TRUE(!result || list.GetSize() == 3); });
}

TEST_F(StoreMemoryTest, LackOfMemoryWhileTheListIsWrittenLeavesTheOldListOrTheNewOne) {
    const std::string old = "[Other]\r\nx=1\r\n" + ListOf(2);
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    const std::string firstName = "favorite name 00000";
    std::string merged = old;
    merged.replace(old.find(firstName), firstName.size(), "changed");
    Folder.Write(ListFile, ListOf(3));
    EXPECT_TRUE(list.LoadList());
    list.At(0).SetName("changed");
    Folder.Write(ListFile, old); // another program has deleted the third
    RefuseEachAllocation([&] { return list.WriteListFile(); },
                         [&](bool result) {
                             EXPECT_EQ(Folder.Read(ListFile), result ? merged : old);
                             EXPECT_EQ(Folder.Names().size(), 1U) << "a file is left behind";
                             Folder.Write(ListFile, old);
                         });
}

TEST_F(StoreMemoryTest, LackOfMemoryWhileAFavoriteFileIsDeletedLeavesItOrNot) {
    const std::string fileName = "a name that needs memory.pmt";
    CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    CPMXTemplUIListData record;
    record.SetFileName(fileName);
    Folder.Write(fileName, "x");
    RefuseEachAllocation([&] { return list.DeleteFavorite(record); },
                         [&](bool result) {
                             EXPECT_EQ(Folder.Exists(fileName), !result);
                             Folder.Write(fileName, "x");
                         });
}

} // namespace
} // namespace pmx::test
