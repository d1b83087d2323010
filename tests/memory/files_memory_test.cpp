// Files while there is no memory: what cannot be done leaves nothing behind.
#include "memory/counting_new.h"
#include "platform/files.h"
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
void RefuseEachAllocation(Work work, Check check) {
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

TEST(FilesMemoryTest, TemporaryFileWhosePathCannotBeToldIsNotLeftBehind) {
    const TempFolder folder;
    FileError error = FileError::None;
    RefuseEachAllocation([&] { SystemFiles().CreateTemporary(folder.Path(), error); },
                         [&] { EXPECT_EQ(folder.Names(), Names()); });
    EXPECT_EQ(error, FileError::None);
    EXPECT_EQ(folder.Names().size(), 1U);
}

TEST(FilesMemoryTest, CopyThatFailsLeavesNothingBehind) {
    const TempFolder folder;
    folder.Write("a", "A");
    const std::string source = folder.Path("a");
    const std::string target = folder.Path("b");
    RefuseEachAllocation([&] { SystemFiles().Copy(source, target, true); },
                         [&] { EXPECT_EQ(folder.Names(), Names{"a"}); });
    EXPECT_EQ(folder.Read("b"), "A");
}

} // namespace
} // namespace pmx::test
