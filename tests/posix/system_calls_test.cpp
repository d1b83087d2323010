// What becomes of files when a system call is interrupted, cut short or fails.
#include "posix/system_calls.h"

#include "platform/files.h"
#include "platform/profile.h"
#include "support/profile_checks.h"
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
    SystemCallsTest() { Folder.Write("source", Bytes); }

    FileError CopyTo(const char* target, bool failIfExists = true) const {
        return SystemFiles().Copy(Folder.Path("source"), Folder.Path(target), failIfExists);
    }

    const std::string Bytes = std::string(200'000, 'x') + "end";
    const TempFolder Folder;
    SystemCalls Calls;
};

TEST_F(SystemCallsTest, CopyGoesOnAfterInterruptions) {
    Calls.Plan.FailAt(SystemCall::Read, 1, EINTR);
    Calls.Plan.FailAt(SystemCall::Write, 2, EINTR);
    EXPECT_EQ(CopyTo("copy"), FileError::None);
    EXPECT_GT(Calls.Plan.Calls(SystemCall::Write), 2U);
    EXPECT_EQ(Folder.Read("copy"), Bytes);
}

TEST_F(SystemCallsTest, CopyGoesOnAfterAPart) {
    Calls.LargestPiece = 70'000;
    EXPECT_EQ(CopyTo("copy"), FileError::None);
    Calls.LargestPiece = 999;
    EXPECT_EQ(CopyTo("copy", false), FileError::None);
    EXPECT_EQ(Folder.Read("copy"), Bytes);
}

TEST_F(SystemCallsTest, CopyThatCannotBeReadOrWrittenToItsEndLeavesTheTargetAsItWas) {
    Folder.Write("copy", "old");
    for (const SystemCall call : {SystemCall::Read, SystemCall::Write}) {
        Calls.Plan.FailAt(call, Calls.Plan.Calls(call) + 2, EIO);
        EXPECT_EQ(CopyTo("copy", false), FileError::Other);
        EXPECT_EQ(Folder.Read("copy"), "old");
    }
    EXPECT_THAT(Folder.Names(), ElementsAre("copy", "source"));
}

TEST_F(SystemCallsTest, CopyToANewFileAlsoWorksWhereRenamingCannotSpareOthers) {
    for (const int error : {EINVAL, ENOSYS}) {
        Calls.Plan.Heal();
        Calls.Plan.FailFrom(SystemCall::Rename, 1, error);
        EXPECT_EQ(CopyTo("copy"), FileError::None);
        EXPECT_EQ(Folder.Read("copy"), Bytes);
        EXPECT_THAT(Folder.Names(), ElementsAre("copy", "source"));
        Folder.Remove("copy");
    }
}

/// A link that leads nowhere looks like no file until something is put in its place.
TEST_F(SystemCallsTest, CopyToANewFileReplacesNoLinkThatLeadsNowhere) {
    std::filesystem::create_symlink("nowhere", DiskPath(Folder.Path("copy")));
    EXPECT_EQ(CopyTo("copy"), FileError::FileExists);
    Calls.Plan.FailFrom(SystemCall::Rename, Calls.Plan.Calls(SystemCall::Rename) + 1, EINVAL);
    EXPECT_EQ(CopyTo("copy"), FileError::FileExists);
    EXPECT_TRUE(std::filesystem::is_symlink(DiskPath(Folder.Path("copy"))));
    EXPECT_THAT(Folder.Names(), ElementsAre("copy", "source"));
}

TEST_F(SystemCallsTest, CopyThatCannotBeRenamedLeavesNothing) {
    Calls.Plan.FailFrom(SystemCall::Rename, 1, EIO);
    EXPECT_EQ(CopyTo("copy"), FileError::Other);
    EXPECT_THAT(Folder.Names(), ElementsAre("source"));
}

TEST_F(SystemCallsTest, NobodyIsExcludedWhereFilesCannotBeLocked) {
    Calls.Plan.FailFrom(SystemCall::Lock, 1, ENOLCK);
    const OpenRequest request{.Path = Folder.Path("source"), .Share = FileShare::None};
    const OpenResult first = SystemFiles().Open(request);
    EXPECT_EQ(first.Error, FileError::None);
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::None);
    EXPECT_EQ(SystemFiles().Remove(Folder.Path("source")), FileError::None);
}

TEST_F(SystemCallsTest, FileThatCannotBeEmptiedIsNotOpened) {
    Calls.Plan.FailFrom(SystemCall::Truncate, 1, EIO);
    const OpenResult opened = SystemFiles().Open({.Path = Folder.Path("source"),
                                                  .Access = FileAccess::Write,
                                                  .Share = FileShare::None,
                                                  .Disposition = FileDisposition::CreateAlways});
    EXPECT_EQ(opened.Error, FileError::Other);
    EXPECT_EQ(opened.File, nullptr);
    EXPECT_EQ(Folder.Read("source"), Bytes);
}

TEST_F(SystemCallsTest, FileWhosePermissionsCannotBeKeptIsNotReplaced) {
    Folder.Write("target", "old");
    Calls.Plan.FailFrom(SystemCall::ChangeMode, 1, EPERM);
    EXPECT_EQ(SystemFiles().Replace(Folder.Path("source"), Folder.Path("target")), FileError::AccessDenied);
    EXPECT_EQ(Folder.Read("target"), "old");
    EXPECT_EQ(Folder.Read("source"), Bytes);
}

class ProfileSystemCallsTest : public testing::Test {
protected:
    ProfileSystemCallsTest() { Folder.Write("list.ini", Before); }

    std::string File() const { return Folder.Path("list.ini"); }

    const std::string Before = "[Other]\r\nx=1\r\n[S]\r\nk=v\r\n";
    const TempFolder Folder{"profile"};
    Profile& System = SystemProfile();
    SystemCalls Calls;
};

TEST_F(ProfileSystemCallsTest, ReadingAndWritingGoOnAfterInterruptionsAndParts) {
    Calls.Plan.FailAt(SystemCall::Read, 1, EINTR);
    Calls.Plan.FailAt(SystemCall::Write, 1, EINTR);
    Calls.LargestPiece = 5;
    EXPECT_EQ(System.ReadString(File(), "S", "k", "none"), "v");
    EXPECT_TRUE(System.WriteString(File(), "S", "k", "w"));
    EXPECT_EQ(Folder.Read("list.ini"), "[Other]\r\nx=1\r\n[S]\r\nk=w\r\n");
}

TEST_F(ProfileSystemCallsTest, FileThatCannotBeReadToItsEndIsNotTakenForWhatWasRead) {
    Calls.LargestPiece = 20;
    Calls.Plan.FailFrom(SystemCall::Read, 2, EIO);
    EXPECT_FALSE(System.VisitSection(File(), "Other", [](std::string_view, std::string_view) {}));
    EXPECT_EQ(System.ReadString(File(), "Other", "x", "none"), "none");
    EXPECT_FALSE(System.WriteString(File(), "S", "k", "w"));
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("new.ini"), "S", {{"k", "w"}}), FileError::Other);
    EXPECT_EQ(Folder.Read("list.ini"), Before);
    EXPECT_THAT(Folder.Names(), ElementsAre("list.ini"));
}

TEST_F(ProfileSystemCallsTest, FailureToWriteOrToShortenAFileIsReported) {
    Folder.Write("new.ini", std::string(100, 'x'));
    for (const SystemCall call : {SystemCall::Write, SystemCall::Truncate}) {
        Calls.Plan.Heal();
        Calls.Plan.FailFrom(call, 1, EIO);
        EXPECT_FALSE(System.WriteString(File(), "S", "k", ""));
        EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("new.ini"), "S", {{"k", ""}}), FileError::Other);
    }
}

} // namespace
} // namespace pmx::test
