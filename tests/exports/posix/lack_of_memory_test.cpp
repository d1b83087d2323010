// Each allocation that an export makes is refused in turn, once or from then on: the failure result or
// success, and nothing lost.
#include "exports/export_test.h"
#include "memory/counting_new.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

namespace pmx::exports_test {
namespace {

using test::NoMemory;

class LackOfMemoryTest : public ExportTest {
protected:
    LackOfMemoryTest() { Fill(); }

    /// Calls `work`, which gives 0 or -1, until no allocation of it is refused any more. After each call
    /// `check` is told whether it succeeded.
    void RefuseEachAllocation(const std::function<std::int64_t()>& work,
                              const std::function<void(bool succeeded)>& check) {
        for (const std::size_t refused : {std::size_t{1}, std::numeric_limits<std::size_t>::max()}) {
            bool wasFelt = true;
            for (std::size_t granted = 0; wasFelt; ++granted) {
                SCOPED_TRACE(testing::Message() << granted << " granted, refused " << refused);
                std::int64_t result = 77;
                {
                    const NoMemory lack(granted, refused);
                    result = work();
                    wasFelt = lack.WasFelt();
                }
                EXPECT_TRUE(result == 0 || (result == -1 && wasFelt)) << result;
                check(result == 0);
                ASSERT_FALSE(HasFailure());
                ASSERT_LT(granted, 10'000U);
            }
        }
    }

    /// Removes what cannot be removed for as long as there is no memory at all.
    void RemoveLeftovers() const {
        for (const std::string& name : Folder.Names()) {
            if (name.ends_with(".tmp")) {
                Folder.Remove(name);
            }
        }
    }

    void ExpectUnchanged(const std::map<std::string, std::string>& before) const {
        EXPECT_EQ(Snapshot(), before);
    }
};

TEST_F(LackOfMemoryTest, OpeningGivesNoHandleOrAWholeList) {
    const auto before = Snapshot();
    void* handle = nullptr;
    const std::string path = Folder.Path();
    RefuseEachAllocation(
        [&] {
            handle = EX_CreateTemplList(path.c_str(), nullptr, nullptr);
            return handle == nullptr ? -1 : 0;
        },
        [&](bool succeeded) {
            if (succeeded) {
                EXPECT_EQ(EX_GetTemplListSize(handle, 101), 3 * 548);
                EXPECT_EQ(EX_DestroyTemplList(handle), 0);
            }
            ExpectUnchanged(before);
        });
}

TEST_F(LackOfMemoryTest, SummariesAreCopiedOrRefused) {
    const ListHandle handle = Open();
    std::vector<TemplInfo> summaries(3);
    std::int64_t count = 0;
    RefuseEachAllocation([&] { return EX_GetAllTemplInfo(handle.get(), 101, summaries.data(), 548, &count); },
                         [&](bool succeeded) { EXPECT_TRUE(!succeeded || count == 3); });
    RefuseEachAllocation([&] { return EX_GetTemplListSize(handle.get(), 101) == 3L * 548 ? 0 : -1; },
                         [](bool) {});
}

TEST_F(LackOfMemoryTest, ATableIsCopiedWholeOrRefused) {
    for (const std::int64_t position : {0, 2}) {
        ListHandle handle = Open();
        const std::vector<unsigned char> table = Part(handle.get(), position, 1);
        std::vector<unsigned char> buffer(PMX_TABLE_SIZE);
        handle = Open();
        RefuseEachAllocation(
            [&] { return EX_CurTemplInfo(handle.get(), position, 1, buffer.data(), PMX_TABLE_SIZE); },
            [&](bool succeeded) {
                EXPECT_TRUE(!succeeded || buffer == table);
                handle = Open();
            });
    }
}

TEST_F(LackOfMemoryTest, AConvertedTableIsWholeOrRefused) {
    std::vector<unsigned char> buffer(PMX_TABLE_SIZE);
    const std::string path = Folder.Path();
    RefuseEachAllocation(
        [&] { return EX_ConvertChoiceData("First", path.c_str(), ListFile, ".pmt", buffer.data(), 1); },
        [&](bool succeeded) { EXPECT_TRUE(!succeeded || buffer == TableOf(10)); });
}

TEST_F(LackOfMemoryTest, AStandardFavoriteLeavesTheOldListFileOrTheNewOne) {
    const auto before = Snapshot();
    ListHandle handle = Open();
    ASSERT_EQ(EX_CreateDefaultChoice(handle.get(), "New", 3, 14), 0);
    const auto after = Snapshot();
    Folder.Write(ListFile, before.at(ListFile));
    handle = Open();
    RefuseEachAllocation([&] { return EX_CreateDefaultChoice(handle.get(), "New", 3, 14); },
                         [&](bool succeeded) {
                             RemoveLeftovers();
                             const auto now = Snapshot();
                             EXPECT_TRUE(now == before || (succeeded && now == after));
                             EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), (succeeded ? 4 : 3) * 548);
                             Folder.Write(ListFile, before.at(ListFile));
                             handle = Open();
                         });
}

} // namespace
} // namespace pmx::exports_test
