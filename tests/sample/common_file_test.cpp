// The common helpers as the favorites library uses them.
#include "host/CComFile.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

using pmx::test::Sjis;
using pmx::test::TempFolder;

TEST(CommonFileTest, TellsTheSizeOfExistingFile) {
    const TempFolder folder("common");
    folder.Write(Sjis(u8"表.ini"), "12345");
    CComFile file;
    EXPECT_EQ(file.Open(folder.Path(Sjis(u8"表.ini")).c_str(), 0), 1);
    EXPECT_EQ(file.GetFileSize(), 5);
    file.Close();
    EXPECT_EQ(file.GetFileSize(), -1);
}

TEST(CommonFileTest, OpensNeitherMissingFileNorFolderNorForWriting) {
    const TempFolder folder("common");
    folder.Write("a", "1");
    CComFile file;
    EXPECT_NE(file.Open(folder.Path("missing").c_str(), 0), 1);
    EXPECT_NE(file.Open(folder.Path().c_str(), 0), 1);
    EXPECT_NE(file.Open(folder.Path("a").c_str(), 1), 1);
    EXPECT_EQ(file.GetFileSize(), -1);
}

TEST(CheckFileNameTest, RefusesTheNineCharactersAndEmptyNames) {
    for (const char character : std::string("\\/:*?\"<>|")) {
        EXPECT_EQ(CheckFileName((std::string("a") + character + "b").c_str()), 0) << character;
    }
    EXPECT_EQ(CheckFileName(""), 0);
    EXPECT_EQ(CheckFileName(nullptr), 0);
}

TEST(CheckFileNameTest, AcceptsSecondBytesThatLookLikeThem) {
    for (const auto* name : {u8"表", u8"ソ", u8"ポ", u8"十", u8"ミ", u8"ｱｲｳ", u8"2面 (両面)"}) {
        EXPECT_NE(CheckFileName(Sjis(name).c_str()), 0) << Sjis(name);
    }
    EXPECT_EQ(CheckFileName((Sjis(u8"表") + "\\").c_str()), 0);
}

} // namespace
