#include "platform/files.h"

#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace pmx {
namespace {

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

TEST(WindowsFiles, SetsTheLastErrorOfTheThread) {
    SystemFiles().SetLastError(FileError::SharingViolation);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    SystemFiles().SetLastError(FileError::None);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_SUCCESS});
}

} // namespace
} // namespace pmx
