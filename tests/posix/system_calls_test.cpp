// What becomes of files when a system call is interrupted, cut short or fails.
#include "posix/system_calls.h"

#include "platform/files.h"
#include "store/list_data_array.h"
#include "support/holding_process.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <string>

namespace pmx::test {
namespace {

using testing::ElementsAre;

class SystemCallsTest : public testing::Test {
protected:
    SystemCallsTest() { Folder.Write("file", Bytes); }

    std::string Path(const char* name) const { return Folder.Path(name); }

    const std::string Bytes = std::string(200'000, 'x') + "end";
    const TempFolder Folder;
    Files& Service = SystemFiles();
    SystemCalls Calls;
};

TEST_F(SystemCallsTest, ReadingAndWritingGoOnAfterInterruptionsAndParts) {
    Calls.LargestPiece = 999;
    Calls.Plan.FailAt(SystemCall::Read, 2, EINTR);
    Calls.Plan.FailAt(SystemCall::Write, 2, EINTR);
    std::string content;
    EXPECT_EQ(Service.Read(Path("file"), content), FileError::None);
    EXPECT_EQ(content, Bytes);
    EXPECT_EQ(Service.Overwrite(Path("file"), Bytes + Bytes), FileError::None);
    EXPECT_EQ(Folder.Read("file"), Bytes + Bytes);
}

TEST_F(SystemCallsTest, FileThatCannotBeReadToItsEndIsNotTakenForWhatWasRead) {
    Calls.Plan.FailFrom(SystemCall::Read, 2, EIO);
    std::string content = "before";
    EXPECT_EQ(Service.Read(Path("file"), content), FileError::Other);
    EXPECT_EQ(content, "before");
}

TEST_F(SystemCallsTest, FailureToWriteToShortenOrToFlushAFileIsReported) {
    for (const SystemCall call : {SystemCall::Write, SystemCall::Truncate, SystemCall::Flush}) {
        Calls.Plan.Heal();
        Calls.Plan.FailFrom(call, 1, EACCES);
        EXPECT_EQ(Service.Overwrite(Path("file"), "new"), FileError::Other) << "it may have changed";
    }
    EXPECT_EQ(Service.Flush(Path("file")), FileError::Held);
}

TEST_F(SystemCallsTest, NewFileThatCannotBeWrittenOrFlushedIsTakenAwayAgain) {
    for (const SystemCall call : {SystemCall::Write, SystemCall::Flush}) {
        Calls.Plan.Heal();
        Calls.Plan.FailFrom(call, 1, ENOSPC);
        EXPECT_EQ(Service.WriteNew(Path("new"), "new"), FileError::Other);
        EXPECT_THAT(Folder.Names(), ElementsAre("file"));
    }
}

TEST_F(SystemCallsTest, ListThatCannotBeFlushedLeavesTheOldOne) {
    CPMXTemplUIListDataArray list("file", nullptr, SystemStoreServices());
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    Calls.Plan.FailFrom(SystemCall::Flush, 1, EIO);
    EXPECT_FALSE(list.WriteListFile());
    EXPECT_EQ(Folder.Read("file"), Bytes);
    EXPECT_THAT(Folder.Names(), ElementsAre("file"));
    Calls.Plan.Heal();
    EXPECT_TRUE(list.WriteListFile());
    EXPECT_NE(Folder.Read("file"), Bytes);
}

TEST_F(SystemCallsTest, ListIsFlushedBeforeItTakesTheOldOnesPlaceAndTheFolderAfterThat) {
    CPMXTemplUIListDataArray list("file", nullptr, SystemStoreServices());
    ASSERT_TRUE(list.SetFolder(Folder.Path().c_str()));
    Calls.Plan.FailAt(SystemCall::Flush, 2, EIO);
    EXPECT_TRUE(list.WriteListFile()) << "what has its name cannot be taken back";
    EXPECT_EQ(Calls.Plan.Calls(SystemCall::Flush), 2U);
}

TEST_F(SystemCallsTest, RenamingAlsoWorksWhereTheSystemCannotSpareOthers) {
    for (const int error : {EINVAL, ENOSYS}) {
        Calls.Plan.Heal();
        Calls.Plan.FailFrom(SystemCall::Rename, 1, error);
        EXPECT_EQ(Service.Rename(Path("file"), Path("target")), FileError::None);
        EXPECT_EQ(Folder.Read("target"), Bytes);
        EXPECT_THAT(Folder.Names(), ElementsAre("target"));
        std::filesystem::create_symlink("nowhere", DiskPath(Path("file")));
        EXPECT_EQ(Service.Rename(Path("target"), Path("file")), FileError::Exists);
        EXPECT_TRUE(std::filesystem::is_symlink(DiskPath(Path("file"))));
        EXPECT_EQ(Service.Replace(Path("target"), Path("file")), FileError::None);
    }
}

TEST_F(SystemCallsTest, FileThatCannotBeRenamedStays) {
    Calls.Plan.FailFrom(SystemCall::Rename, 1, EIO);
    EXPECT_EQ(Service.Rename(Path("file"), Path("target")), FileError::Other);
    EXPECT_THAT(Folder.Names(), ElementsAre("file"));
}

TEST_F(SystemCallsTest, NobodyIsExcludedWhereFilesCannotBeLocked) {
    const HoldingProcess holder(Path("file"));
    Calls.Plan.FailFrom(SystemCall::Lock, 1, ENOLCK);
    EXPECT_EQ(Service.Lock(Path("file")).Error, FileError::Other);
    EXPECT_EQ(Service.TryOpen(Path("file")), FileError::None);
    EXPECT_EQ(Service.Remove(Path("file")), FileError::None);
}

TEST_F(SystemCallsTest, FileWhosePermissionsCannotBeKeptIsNotReplaced) {
    Folder.Write("target", "old");
    std::filesystem::permissions(DiskPath(Path("target")), std::filesystem::perms::owner_all);
    Calls.Plan.FailFrom(SystemCall::ChangeMode, 1, EPERM);
    EXPECT_EQ(Service.Replace(Path("file"), Path("target")), FileError::Held);
    EXPECT_EQ(Folder.Read("target"), "old");
    EXPECT_EQ(Folder.Read("file"), Bytes);
}

} // namespace
} // namespace pmx::test
