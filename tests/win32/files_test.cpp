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

TEST(WindowsFiles, DoesNotReplaceAFileThatSomebodyReads) {
    const TempFolder folder;
    folder.Write("new", "new");
    folder.Write("target", "old");
    {
        const ForeignHandle reader(folder.Path("target"), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        ASSERT_TRUE(reader.IsOpen());
        EXPECT_EQ(SystemFiles().Replace(folder.Path("new"), folder.Path("target")), FileError::AccessDenied);
        EXPECT_EQ(SystemFiles().Copy(folder.Path("new"), folder.Path("target"), false),
                  FileError::SharingViolation);
    }
    EXPECT_EQ(folder.Read("target"), "old");
    EXPECT_EQ(folder.Read("new"), "new");
    EXPECT_EQ(SystemFiles().Replace(folder.Path("new"), folder.Path("target")), FileError::None);
}

TEST(WindowsFiles, HonoursHowAFileIsShared) {
    const TempFolder folder;
    folder.Write("file", "x");
    const ForeignHandle reader(folder.Path("file"), GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(reader.IsOpen());
    OpenRequest request;
    request.Path = folder.Path("file");
    request.Share = FileShare::ReadWrite;
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::None);
    request.Access = FileAccess::ReadWrite;
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::SharingViolation);
}

TEST(WindowsFiles, CopiesOnlyIntoFoldersThatTakeFiles) {
    const TempFolder folder;
    folder.Write("file", "x");
    EXPECT_NE(SystemFiles().Copy(folder.Path("file"), "Z:\\proc\\new", true), FileError::None);
    EXPECT_EQ(folder.Read("file"), "x");
}

TEST(WindowsFiles, AcceptsBothSeparators) {
    const TempFolder folder;
    folder.AddFolder("a");
    folder.Write("file", "x");
    EXPECT_EQ(SystemFiles().Copy(folder.Path("file"), folder.Path("a/b"), true), FileError::None);
    EXPECT_EQ(folder.Read("a\\b"), "x");
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

TEST(WindowsFiles, SetsTheLastErrorOfTheThread) {
    SystemFiles().SetLastError(FileError::SharingViolation);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    SystemFiles().SetLastError(FileError::None);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
}

} // namespace
} // namespace pmx
