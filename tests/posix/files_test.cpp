#include "platform/posix/files.h"

#include "platform/posix/code_page.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx {
namespace {

using test::TempFolder;
using testing::ElementsAre;

/// While it lives, no file of this process can grow beyond a size, and trying so is an error and no signal.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t size) : SignalBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &Before);
        const rlimit limit{size, Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &Before);
        std::signal(SIGXFSZ, SignalBefore);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit Before{};
    void (*SignalBefore)(int);
};

TEST(PosixFiles, LeavesNothingOfACopyThatFailsHalfWay) {
    const TempFolder folder;
    folder.Write("source", std::string(300000, 'x'));
    folder.Write("target", "old");
    {
        const SmallFiles limit(100000);
        EXPECT_EQ(SystemFiles().Copy(folder.Path("source"), folder.Path("new"), true), FileError::DiskFull);
        EXPECT_EQ(SystemFiles().Copy(folder.Path("source"), folder.Path("target"), false),
                  FileError::DiskFull);
    }
    EXPECT_EQ(folder.Read("target"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("source", "target"));
}

TEST(PosixFiles, DoesNotWaitForAPipeUnderTheNameOfAFile) {
    const TempFolder folder;
    const std::string pipe = folder.Path("pipe.pmt");
    ASSERT_EQ(mkfifo(posix::NativePath(pipe).c_str(), 0600), 0);
    OpenRequest request;
    request.Path = pipe;
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::AccessDenied);
    EXPECT_EQ(SystemFiles().Copy(pipe, folder.Path("copy"), true), FileError::AccessDenied);
    EXPECT_THAT(folder.Names(), ElementsAre("pipe.pmt"));
}

/// While it lives, this process has the rights of an ordinary user.
class OrdinaryUser {
public:
    OrdinaryUser() : Before(geteuid()) {
        if (Before == 0 && seteuid(Nobody) != 0) {
            throw std::runtime_error("cannot give up the rights of the super-user");
        }
    }
    ~OrdinaryUser() {
        if (seteuid(Before) != 0) {
            std::abort();
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t Nobody = 65534;
    const uid_t Before;
};

TEST(PosixFiles, IsDeniedWhatTheUserMayNotDo) {
    const TempFolder folder;
    folder.Write("file", "old");
    folder.Write("private", "private");
    const auto place = test::DiskPath(folder.Path());
    std::filesystem::permissions(test::DiskPath(folder.Path("private")), std::filesystem::perms::none);
    std::filesystem::permissions(place, std::filesystem::perms(0555));
    {
        const OrdinaryUser user;
        if (!SystemFiles().Exists(folder.Path("file"))) {
            GTEST_SKIP() << "ordinary users do not get to " << place;
        }
        FileError error = FileError::None;
        EXPECT_EQ(SystemFiles().CreateTemporary(folder.Path(), error), "");
        EXPECT_EQ(error, FileError::AccessDenied);
        EXPECT_EQ(SystemFiles().Copy(folder.Path("file"), folder.Path("new"), true), FileError::AccessDenied);
        EXPECT_EQ(SystemFiles().Remove(folder.Path("file")), FileError::AccessDenied);
        EXPECT_EQ(SystemFiles().Replace(folder.Path("file"), folder.Path("new")), FileError::AccessDenied);
        OpenRequest request;
        request.Path = folder.Path("private");
        EXPECT_EQ(SystemFiles().Open(request).Error, FileError::AccessDenied);
        EXPECT_TRUE(SystemFiles().IsReadOnly(folder.Path("private")));
    }
    EXPECT_THAT(folder.Names(), ElementsAre("file", "private"));
}

TEST(PosixFiles, DoesNotFollowALinkThatLeadsToItself) {
    const TempFolder folder;
    folder.Write("file", "old");
    std::filesystem::create_symlink("loop", test::DiskPath(folder.Path("loop")));
    OpenRequest request;
    request.Path = folder.Path("loop");
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::Other);
    EXPECT_EQ(SystemFiles().Copy(folder.Path("loop"), folder.Path("copy"), true), FileError::Other);
    EXPECT_EQ(SystemFiles().Replace(folder.Path("loop"), folder.Path("file")), FileError::Other);
    EXPECT_EQ(folder.Read("file"), "old");
    EXPECT_THAT(folder.Names(), ElementsAre("file", "loop"));
}

TEST(PosixFiles, HasNothingToFlushInADevice) {
    EXPECT_EQ(SystemFiles().Flush("\\dev\\null"), FileError::InvalidParameter);
}

TEST(PosixFiles, FindsAMereNameInTheCurrentFolder) {
    EXPECT_EQ(SystemFiles().Remove("no such file"), FileError::NotFound);
}

TEST(PosixFiles, WhatCannotBeLookedAtExists) {
    const TempFolder folder;
    folder.AddFolder("private");
    const auto inner = test::DiskPath(folder.Path("private"));
    std::filesystem::permissions(inner, std::filesystem::perms::none);
    {
        const OrdinaryUser user;
        EXPECT_TRUE(SystemFiles().Exists(folder.Path("private\\file")));
    }
    std::filesystem::permissions(inner, std::filesystem::perms::all);
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("private\\file")));
    std::filesystem::create_symlink("loop", test::DiskPath(folder.Path("loop")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("loop\\file")));
    EXPECT_FALSE(SystemFiles().Exists(folder.Path(std::string(300, 'n')))) << "no file can have that name";
}

TEST(PosixFiles, ALinkThatLeadsNowhereTakesItsName) {
    const TempFolder folder;
    std::filesystem::create_symlink("nowhere", test::DiskPath(folder.Path("link")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("link")));
    OpenRequest request;
    request.Path = folder.Path("link");
    request.Access = FileAccess::Write;
    request.Disposition = FileDisposition::CreateNew;
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::FileExists);
    EXPECT_FALSE(folder.Exists("nowhere"));
}

TEST(PosixFiles, KeepsBrokenNamesApartFromRealOnes) {
    const TempFolder folder;
    OpenRequest request;
    request.Path = folder.Path("\x85\x40");
    request.Access = FileAccess::Write;
    request.Disposition = FileDisposition::CreateNew;
    EXPECT_EQ(SystemFiles().Open(request).Error, FileError::None);
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("\x81\x45")));
    EXPECT_FALSE(SystemFiles().Exists(folder.Path("\x85\x41")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("\x85\x40")));
}

TEST(PosixFiles, KeepsThePermissionsOfAReplacedFile) {
    const TempFolder folder;
    folder.Write("new", "new");
    folder.Write("target", "old");
    const auto target = test::DiskPath(folder.Path("target"));
    std::filesystem::permissions(target, std::filesystem::perms(0640));
    EXPECT_EQ(SystemFiles().Replace(folder.Path("new"), folder.Path("target")), FileError::None);
    EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms(0640));
}

TEST(PosixFiles, AcceptsBothSeparators) {
    const TempFolder folder;
    folder.AddFolder("a");
    folder.Write("a\\b", "1");
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("a\\b")));
    EXPECT_TRUE(SystemFiles().Exists(folder.Path("a/b")));
}

TEST(PosixFiles, KeepsTheLastErrorOfEachThread) {
    SystemFiles().SetLastError(FileError::SharingViolation);
    FileError other = FileError::Other;
    std::thread([&] { other = posix::LastError(); }).join();
    EXPECT_EQ(other, FileError::None);
    EXPECT_EQ(posix::LastError(), FileError::SharingViolation);
}

} // namespace
} // namespace pmx
