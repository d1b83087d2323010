#include "platform/win32/profile.h"

#include "support/profile_checks.h"
#include "support/temp_folder.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include <windows.h>

#include <gtest/gtest.h>

// What only the implementation over the platform's functions has to answer for.

namespace pmx::test {

namespace {

constexpr const char* FileName = "list.ini";

class WindowsProfileTest : public testing::Test {
protected:
    std::string File() const { return Folder.Path(FileName); }

    static std::string Visited(Profile& profile, const std::string& path, std::string_view section) {
        std::string lines;
        profile.VisitSection(path, section, [&](std::string_view key, std::string_view value) {
            lines.append(key).append("=").append(value).append("|");
        });
        return lines;
    }

    TempFolder Folder{"profile"};
    Profile& System = SystemProfile();
};

/// A file that others may use only as `share` says, for as long as the object lives.
class HeldFile {
public:
    HeldFile(const std::string& path, DWORD share)
        : Handle(CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr, OPEN_EXISTING, 0,
                             nullptr)) {}
    ~HeldFile() { CloseHandle(Handle); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;

    bool IsHeld() const { return Handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE Handle;
};

TEST_F(WindowsProfileTest, SectionTooLargeForItsBufferIsReadKeyByKey) {
    Folder.Write(FileName, "[S]\na=\" 1 \"\nhidden\n;b=2\n\x83\x7E=\x95\x5C\nhidden=3\nc=\n[T]\nd=4\n");
    for (const std::size_t largest : {16U, 32U}) {
        win32::WindowsProfile small(largest);
        EXPECT_EQ(Visited(small, File(), " s"), "a= 1 |\x83\x7E=\x95\x5C|c=|") << largest;
    }
    EXPECT_EQ(Visited(System, File(), " s"), "a= 1 |\x83\x7E=\x95\x5C|c=|");
}

TEST_F(WindowsProfileTest, FileInThePlaceOfAnotherOfTheSameTimeIsRead) {
    // So long ago that the platform trusts what it remembers of the file.
    const auto time = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    Folder.Write("new.ini", "[S]\nk=new\n");
    Folder.Write(FileName, "[S]\nk=old\n");
    std::filesystem::last_write_time(DiskPath(File()), time);
    std::filesystem::last_write_time(DiskPath(Folder.Path("new.ini")), time);
    ASSERT_EQ(Visited(System, File(), "S"), "k=old|");
    ASSERT_EQ(System.ReadString(File(), "S", "k", ""), "old");

    ASSERT_TRUE(MoveFileExA(Folder.Path("new.ini").c_str(), File().c_str(), MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(Visited(System, File(), "S"), "k=new|");
}

TEST_F(WindowsProfileTest, FileHeldByAnotherCannotBeWritten) {
    Folder.Write(FileName, "[S]\nk=1\n");
    const HeldFile held(File(), FILE_SHARE_READ);
    ASSERT_TRUE(held.IsHeld());
    EXPECT_FALSE(System.WriteString(File(), "S", "k", "v"));
    EXPECT_FALSE(ReplaceInPlace(File(), "S", {{"k", "v"}}));
    EXPECT_FALSE(ReplaceInPlace(File(), "missing", {}));
}

TEST_F(WindowsProfileTest, FileHeldWithoutSharingReadsAsEmpty) {
    Folder.Write(FileName, "[S]\nk=1\n");
    const HeldFile held(File(), 0);
    ASSERT_TRUE(held.IsHeld());
    EXPECT_EQ(System.ReadString(File(), "S", "k", "none"), "none");
    EXPECT_EQ(Visited(System, File(), "S"), "");
}

TEST_F(WindowsProfileTest, DeviceIsNoProfile) {
    EXPECT_FALSE(ReplaceInPlace("NUL", "S", {{"k", "v"}}));
}

TEST_F(WindowsProfileTest, TooLongNamesAreThereForNobody) {
    const std::string name(32767, 'n');
    Folder.Write(FileName, "[S]\nk=1\n");
    EXPECT_FALSE(System.WriteString(File(), name, "k", "v"));
    EXPECT_FALSE(System.WriteString(File(), "S", name, "v"));
    EXPECT_FALSE(ReplaceInPlace(File(), name, {{"k", "v"}}));
    EXPECT_EQ(Folder.Read(FileName), "[S]\nk=1\n");
    EXPECT_EQ(System.ReplaceSection(File(), Folder.Path("new.ini"), "S", {{"k", "v"}, {name, "v"}}),
              FileError::Other);
    EXPECT_EQ(Folder.Read(FileName), "[S]\nk=1\n");

    Folder.Write(FileName, "[" + name + "]\nk=1\n[S]\n" + name + "=2\n");
    EXPECT_EQ(System.ReadString(File(), name, "k", "none"), "none");
    EXPECT_EQ(System.ReadString(File(), "S", name, "none"), "none");
    EXPECT_EQ(System.ReadInt(File(), name, "k", 7), 7);
    EXPECT_EQ(Visited(System, File(), name), "");
}

} // namespace

} // namespace pmx::test
