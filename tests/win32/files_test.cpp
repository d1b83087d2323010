#include "platform/files.h"

#include "support/temp_folder.h"
#include "support/unix_shell.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace pmx {
namespace {

using test::FolderForLinks;
using test::RunShell;
using test::TempFolder;

/// A file that another program has open, held as some other program would.
class ForeignHandle {
public:
    ForeignHandle(const std::string& path, DWORD access, DWORD share)
        : Handle(CreateFileA(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    ~ForeignHandle() { CloseHandle(Handle); }
    ForeignHandle(const ForeignHandle&) = delete;
    ForeignHandle& operator=(const ForeignHandle&) = delete;

    bool IsOpen() const { return Handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE Handle;
};

/// What another program lets others do with a file counts, whatever it does itself.
TEST(WindowsFiles, AFileThatIsSharedForReadingOnlyIsNotChanged) {
    const TempFolder folder;
    folder.Write("file", "old");
    const ForeignHandle reader(folder.Path("file"), GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(reader.IsOpen());
    std::string content;
    EXPECT_EQ(SystemFiles().Read(folder.Path("file"), content), FileError::None);
    EXPECT_EQ(SystemFiles().TryOpen(folder.Path("file")), FileError::Held);
    EXPECT_EQ(SystemFiles().Overwrite(folder.Path("file"), "new"), FileError::Held);
    EXPECT_EQ(folder.Read("file"), "old");
}

TEST(WindowsFiles, KeepsTheMarksOfAReplacedFile) {
    constexpr DWORD Marks = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const TempFolder folder;
    folder.Write("new", "new");
    folder.Write("target", "old");
    const std::string target = folder.Path("target");
    ASSERT_TRUE(SetFileAttributesA(target.c_str(), Marks));
    EXPECT_EQ(SystemFiles().Replace(folder.Path("new"), target), FileError::None);
    EXPECT_EQ(GetFileAttributesA(target.c_str()) & Marks, Marks);
    bool isMade = false;
    EXPECT_EQ(SystemFiles().WriteOver(folder.Path("other"), "other", target, isMade), FileError::None);
    EXPECT_EQ(GetFileAttributesA(target.c_str()) & Marks, Marks);
    EXPECT_EQ(SystemFiles().Overwrite(target, "newer"), FileError::None);
    EXPECT_EQ(GetFileAttributesA(target.c_str()) & Marks, Marks);
    EXPECT_EQ(folder.Read("target"), "newer");
}

TEST(WindowsFiles, KnowsAFileInAnyCase) {
    const TempFolder folder;
    folder.Write("file", "x");
    EXPECT_TRUE(SystemFiles().IsSame(folder.Path("file"), folder.Path("FILE")));
}

TEST(WindowsFiles, FolderWithTheReadOnlyMarkIsNoReadOnlyFile) {
    const TempFolder folder;
    folder.AddFolder("a");
    const std::string path = folder.Path("a");
    ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(SystemFiles().IsReadOnly(path));
    EXPECT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST(WindowsFiles, WhatCannotBeLookedAtExists) {
    const FolderForLinks folder;
    RunShell(folder, "ln -s loop loop && mkfifo pipe");
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("loop")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("loop\\file")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("pipe")));
    RunShell(folder, "rm loop pipe");
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("loop")));
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("loop\\file")));
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("a?b"))) << "no file can have that name";
    EXPECT_FALSE(SystemFiles().Exists(folder.Path(std::string(300, 'n'))));
}

/// Links of the system below Wine, which Wine takes for what they lead to.
TEST(WindowsFiles, WhatALinkLeadsToIsNeitherDeletedNorReplaced) {
    const FolderForLinks folder;
    folder.AddFolder("inside");
    folder.Write("outside", "outside");
    folder.Write("inside\\other", "other");
    RunShell(folder, "cd inside && ln -s ../outside outside && ln -s other link && ln -s other replaced");
    for (const char* const link : {"inside\\outside", "inside\\link"}) {
        EXPECT_EQ(SystemFiles().Remove(folder.Path(link)), FileError::Other);
    }
    folder.Write("inside\\new", "new");
    EXPECT_EQ(SystemFiles().Replace(folder.Path("inside\\new"), folder.Path("inside\\replaced")),
              FileError::None);
    EXPECT_EQ(folder.Read("inside\\replaced"), "new");
    EXPECT_EQ(folder.Read("outside"), "outside");
    EXPECT_EQ(folder.Read("inside\\other"), "other");
}

TEST(WindowsFiles, FilesThroughALinkedFolderAndInAnyCaseAreDeleted) {
    const FolderForLinks folder;
    folder.AddFolder("real");
    for (const char* const name : {"one", "Two", "three"}) {
        folder.Write(std::string("real\\") + name, "x");
    }
    RunShell(folder, "ln -s real linked");
    EXPECT_EQ(SystemFiles().Remove(folder.Path("linked\\one")), FileError::None);
    EXPECT_EQ(SystemFiles().Remove(folder.Path("REAL\\tWO")), FileError::None);
    EXPECT_EQ(SystemFiles().Remove(folder.Path("real/three")), FileError::None);
}

} // namespace
} // namespace pmx
