#include "platform/profile.h"

#include "support/profile_checks.h"
#include "support/temp_folder.h"

#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

// What only the native implementation has to answer for.

namespace pmx::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* FileName = "list.ini";

class PosixProfileTest : public testing::Test {
protected:
    std::string File() const { return Folder.Path(FileName); }
    fs::path OnDisk(std::string_view name) const { return DiskPath(Folder.Path(name)); }

    std::size_t CountVisited(std::string_view section) const {
        std::size_t count = 0;
        System.VisitSection(File(), section, [&](std::string_view, std::string_view) { ++count; });
        return count;
    }

    TempFolder Folder{"profile"};
    Profile& System = SystemProfile();
};

/// Files cannot grow beyond a size while the object lives: writing fails as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : OldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &Old);
        rlimit limit = Old;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &Old);
        std::signal(SIGXFSZ, OldHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit Old{};
    void (*OldHandler)(int);
};

std::string Repeated(std::size_t count, std::string_view text) {
    std::string repeated;
    for (; count > 0; --count) {
        repeated += text;
    }
    return repeated;
}

TEST_F(PosixProfileTest, WriteThatFindsNoRoomFails) {
    const std::string value(5000, 'x');
    Folder.Write(FileName, "[S]\nk=1\n");
    const FileSizeLimit limit(1000);
    EXPECT_FALSE(System.WriteString(File(), "S", "k", value));
    EXPECT_FALSE(ReplaceInPlace(File(), "S", {{"k", value}}));
    EXPECT_FALSE(System.WriteString(Folder.Path("new.ini"), "S", "k", value));
}

TEST_F(PosixProfileTest, SymbolicLinkIsWrittenThrough) {
    Folder.Write("real.ini", "[S]\nk=1\n");
    fs::create_symlink("real.ini", OnDisk(FileName));
    EXPECT_TRUE(System.WriteString(File(), "S", "k", "v"));
    EXPECT_TRUE(fs::is_symlink(OnDisk(FileName)));
    EXPECT_EQ(Folder.Read("real.ini"), "[S]\r\nk=v\r\n");
}

TEST_F(PosixProfileTest, SecondHardLinkIsWrittenThrough) {
    Folder.Write(FileName, "[S]\nk=1\n");
    fs::create_hard_link(OnDisk(FileName), OnDisk("second.ini"));
    EXPECT_TRUE(ReplaceInPlace(File(), "S", {{"k", "v"}}));
    EXPECT_EQ(Folder.Read("second.ini"), "[S]\r\nk=v\r\n");
}

TEST_F(PosixProfileTest, ShorterContentLeavesNothingOfTheLonger) {
    Folder.Write(FileName, "[S]\nk=" + std::string(10000, 'x') + "\n");
    EXPECT_TRUE(System.WriteString(File(), "S", "k", "v"));
    EXPECT_EQ(Folder.Read(FileName), "[S]\r\nk=v\r\n");
}

TEST_F(PosixProfileTest, PipeIsNoProfileAndDoesNotBlock) {
    ASSERT_EQ(mkfifo(OnDisk(FileName).c_str(), 0600), 0);
    EXPECT_EQ(System.ReadString(File(), "S", "k", "none"), "none");
    EXPECT_FALSE(System.WriteString(File(), "S", "k", "v"));
}

TEST_F(PosixProfileTest, FileThatMayNotBeWrittenIsLeftAlone) {
    // A program that runs may not be written, not even by the administrator.
    const std::string path = fs::read_symlink("/proc/self/exe").string();
    const auto time = fs::last_write_time(path);
    EXPECT_FALSE(System.WriteString(path, "S", "k", "v"));
    EXPECT_FALSE(System.WriteString(path, "S", std::nullopt, std::nullopt));
    EXPECT_FALSE(ReplaceInPlace(path, "S", {{"k", "v"}}));
    EXPECT_EQ(fs::last_write_time(path), time);
}

// Files that would take minutes, and so the time limit of the tests, if cost were not linear.

TEST_F(PosixProfileTest, ManyLinesWithOnlyCarriageReturnsAreVisitedInOnePass) {
    Folder.Write(FileName, "[S]\r" + Repeated(500000, "k=v\r"));
    EXPECT_EQ(CountVisited("S"), 500000U);
}

TEST_F(PosixProfileTest, ManyLinesWithoutSignAreVisitedInOnePass) {
    std::string content = "[S]\n";
    for (int number = 0; number < 100000; ++number) {
        content += "bare" + std::to_string(number) + "\nBARE" + std::to_string(number) + "=hidden\nk=v\n";
    }
    Folder.Write(FileName, content);
    EXPECT_EQ(CountVisited("S"), 100000U);
}

TEST_F(PosixProfileTest, ManyCopiesOfTheSectionAreReplacedInOnePass) {
    Folder.Write(FileName, Repeated(200000, "[List]\nk=v\n"));
    EXPECT_TRUE(ReplaceInPlace(File(), "List", {{"Num", "0"}}));
    EXPECT_EQ(Folder.Read(FileName), "[List]\r\nNum=0\r\n");
}

TEST_F(PosixProfileTest, ManyEntriesOutOfOrderAreWrittenInOnePass) {
    ProfileEntries entries;
    std::string expected = Repeated(100000, "[Other]\r\nk=v\r\n") + "[List]\r\n";
    for (int number = 200000; number > 0; --number) {
        const std::string key = "Data" + std::to_string(number);
        entries.Add(key, "v");
        expected += key + "=v\r\n";
    }
    Folder.Write(FileName, Repeated(100000, "[Other]\r\nk=v\r\n"));
    EXPECT_TRUE(ReplaceInPlace(File(), "List", entries));
    EXPECT_TRUE(Folder.Read(FileName) == expected);
}

} // namespace

} // namespace pmx::test
