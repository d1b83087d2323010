#include "platform/files.h"

#include "platform/posix/code_page.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace pmx {
namespace {

namespace fs = std::filesystem;
using test::DiskPath;
using testing::ElementsAre;

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

class PosixFiles : public testing::Test {
protected:
    std::string Path(std::string_view name) const { return Folder.Path(name); }

    void Link(const char* leadsTo, const char* name) const {
        fs::create_symlink(leadsTo, DiskPath(Path(name)));
    }

    FileError ReadError(std::string_view name) const {
        std::string content;
        return Service.Read(Path(name), content);
    }

    const test::TempFolder Folder;
    Files& Service = SystemFiles();
};

TEST_F(PosixFiles, DoesNotWaitForAPipeUnderTheNameOfAFile) {
    ASSERT_EQ(mkfifo(posix::NativePath(Path("pipe.pmt")).c_str(), 0600), 0);
    EXPECT_EQ(ReadError("pipe.pmt"), FileError::Held);
    EXPECT_EQ(Service.TryOpen(Path("pipe.pmt")), FileError::Held);
    EXPECT_THAT(Service.Overwrite(Path("pipe.pmt"), "x"), testing::Ne(FileError::None));
}

TEST_F(PosixFiles, IsDeniedWhatTheUserMayNotDo) {
    Folder.Write("file", "old");
    Folder.Write("private", "private");
    const fs::path place = DiskPath(Folder.Path());
    fs::permissions(DiskPath(Path("private")), fs::perms::none);
    fs::permissions(place, fs::perms(0555));
    {
        const OrdinaryUser user;
        if (!Service.Exists(Path("file"))) {
            GTEST_SKIP() << "ordinary users do not get to " << place;
        }
        EXPECT_EQ(Service.CreateNew(Path("new")), FileError::Held);
        EXPECT_EQ(Service.Remove(Path("file")), FileError::Held);
        EXPECT_EQ(Service.Replace(Path("file"), Path("new")), FileError::Held);
        EXPECT_EQ(Service.Rename(Path("file"), Path("new")), FileError::Held);
        EXPECT_EQ(ReadError("private"), FileError::Held);
        EXPECT_TRUE(Service.IsReadOnly(Path("private")));
    }
    EXPECT_THAT(Folder.Names(), ElementsAre("file", "private"));
}

TEST_F(PosixFiles, WhatCannotBeLookedAtExists) {
    Folder.AddFolder("private");
    const fs::path inner = DiskPath(Path("private"));
    fs::permissions(inner, fs::perms::none);
    {
        const OrdinaryUser user;
        EXPECT_TRUE(Service.Exists(Path("private\\file")));
    }
    fs::permissions(inner, fs::perms::all);
    EXPECT_FALSE(Service.Exists(Path("private\\file")));
    Link("loop", "loop");
    EXPECT_TRUE(Service.Exists(Path("loop\\file")));
    EXPECT_FALSE(Service.Exists(Path(std::string(300, 'n')))) << "no file can have that name";
}

TEST_F(PosixFiles, FindsAMereNameInTheCurrentFolder) {
    EXPECT_EQ(Service.Remove("no such file"), FileError::NotFound);
    EXPECT_EQ(Service.Lock("no such file").Error, FileError::None);
}

TEST_F(PosixFiles, KeepsBrokenNamesApartFromRealOnes) {
    EXPECT_EQ(Service.CreateNew(Path("\x85\x40")), FileError::None);
    EXPECT_FALSE(Service.Exists(Path("\x81\x45")));
    EXPECT_FALSE(Service.Exists(Path("\x85\x41")));
    EXPECT_TRUE(Service.Exists(Path("\x85\x40")));
}

TEST_F(PosixFiles, KeepsThePermissionsOfAReplacedFile) {
    Folder.Write("new", "new");
    Folder.Write("target", "old");
    const fs::path target = DiskPath(Path("target"));
    fs::permissions(target, fs::perms(0640));
    EXPECT_EQ(Service.Replace(Path("new"), Path("target")), FileError::None);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
}

// Links

TEST_F(PosixFiles, KnowsAFileThroughItsLinks) {
    Folder.Write("file", "old");
    Link("file", "symbolic");
    fs::create_hard_link(DiskPath(Path("file")), DiskPath(Path("hard")));
    EXPECT_TRUE(Service.IsSame(Path("file"), Path("symbolic")));
    EXPECT_TRUE(Service.IsSame(Path("symbolic"), Path("hard")));
}

TEST_F(PosixFiles, WhatALinkLeadsToIsNeitherDeletedNorReplaced) {
    Folder.Write("file", "old");
    Folder.Write("new", "new");
    Link("file", "deleted");
    Link("file", "replaced");
    EXPECT_EQ(Service.Remove(Path("deleted")), FileError::None);
    EXPECT_EQ(Service.Replace(Path("new"), Path("replaced")), FileError::None);
    EXPECT_EQ(Folder.Read("file"), "old");
    EXPECT_EQ(Folder.Read("replaced"), "new");
    EXPECT_THAT(Folder.Names(), ElementsAre("file", "replaced"));
}

TEST_F(PosixFiles, ALinkThatLeadsNowhereTakesItsName) {
    Folder.Write("file", "old");
    Link("nowhere", "link");
    EXPECT_TRUE(Service.Exists(Path("link")));
    EXPECT_EQ(Service.CreateNew(Path("link")), FileError::Exists);
    EXPECT_EQ(Service.Rename(Path("file"), Path("link")), FileError::Exists);
    EXPECT_TRUE(fs::is_symlink(DiskPath(Path("link"))));
    EXPECT_EQ(Folder.Read("file"), "old");
    EXPECT_FALSE(Folder.Exists("nowhere"));
}

TEST_F(PosixFiles, DoesNotFollowALinkThatLeadsToItself) {
    Folder.Write("file", "old");
    Link("loop", "loop");
    EXPECT_EQ(ReadError("loop"), FileError::Other);
    EXPECT_EQ(Service.Replace(Path("loop"), Path("file")), FileError::Other);
    EXPECT_EQ(Folder.Read("file"), "old");
}

} // namespace
} // namespace pmx
