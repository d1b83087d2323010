#include "support/temp_folder.h"

#include "support/sjis.h"

#include <gmock/gmock.h>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TempFolder, KeepsFilesWithJapaneseNames) {
    const TempFolder folder;
    const std::string name = Sjis(u8"ミ表ソアヂｱ.pmt");
    folder.Write(name, std::string("a\0b\r\n", 5));
    EXPECT_TRUE(folder.Exists(name));
    EXPECT_EQ(folder.Read(name), std::string("a\0b\r\n", 5));
    EXPECT_THAT(folder.Names(), ElementsAre(name));
}

TEST(TempFolder, GivesAbsolutePathsThatEndInABackslash) {
    const TempFolder folder(Sjis(u8"表"));
    EXPECT_EQ(folder.Path().back(), '\\');
    EXPECT_TRUE(DiskPath(folder.Path()).is_absolute());
}

TEST(TempFolder, IsGoneAtTheEndWithReadOnlyFilesInIt) {
    std::filesystem::path path;
    {
        const TempFolder folder;
        path = DiskPath(folder.Path());
        folder.Write("a", "1");
        folder.SetReadOnly("a", true);
        folder.AddFolder("f");
        folder.Write("f\\b", "2");
        EXPECT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(TempFolder, RemovesFilesAndFolders) {
    const TempFolder folder;
    folder.Write("a", "1");
    folder.AddFolder("f");
    folder.Write("f\\b", "2");
    folder.Remove("a");
    folder.Remove("f");
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(TempFolder, IsAnotherOneEachTime) {
    const TempFolder first;
    const TempFolder second;
    EXPECT_NE(first.Path(), second.Path());
}

} // namespace
} // namespace pmx::test
