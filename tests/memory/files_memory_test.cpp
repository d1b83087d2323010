// Files while there is no memory: what cannot be done leaves nothing behind.
#include "memory/counting_new.h"
#include "store/favorite_files.h"
#include "store/list_file.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using Names = std::vector<std::string>;

/// Runs `work` with the first, the second, … allocation refused, until one run needs no more, and `check`
/// after each run that failed.
template <typename Work, typename Check>
void RefuseEachAllocationOf(Work work, Check check) {
    bool wasRefused = true;
    for (std::size_t granted = 0; wasRefused; ++granted) {
        SCOPED_TRACE(granted);
        {
            const NoMemory lack(granted, 1);
            try {
                work();
                wasRefused = false;
            } catch (const std::bad_alloc&) {
                wasRefused = true;
            }
        }
        if (wasRefused) {
            check();
        }
    }
}

TEST(FilesMemoryTest, CopyThatFailsLeavesNothingBehind) {
    const TempFolder folder;
    folder.Write("a", "A");
    const std::string source = folder.Path("a");
    const std::string target = folder.Path("b");
    RefuseEachAllocationOf([&] { RetryCopyFile(SystemStoreServices(), source, target); },
                           [&] { EXPECT_EQ(folder.Names(), Names{"a"}); });
    EXPECT_EQ(folder.Read("b"), "A");
}

TEST(FilesMemoryTest, ListFileThatIsNotReplacedStaysAndNothingBesideIt) {
    const TempFolder folder;
    folder.Write("list", "old");
    const std::string path = folder.Path("list");
    RefuseEachAllocationOf([&] { ReplaceListFile(SystemStoreServices(), path, "new"); },
                           [&] {
                               EXPECT_EQ(folder.Names(), Names{"list"});
                               EXPECT_EQ(folder.Read("list"), "old");
                           });
    EXPECT_EQ(folder.Read("list"), "new");
}

} // namespace
} // namespace pmx::test
