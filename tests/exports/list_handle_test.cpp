// Favorites through a list handle.
#include "exports/export_test.h"

#include "support/sjis.h"

#include <gmock/gmock.h>

#include <cstring>

namespace pmx::exports_test {
namespace {

using test::Sjis;
using testing::ElementsAre;
using testing::IsEmpty;

class ListHandleTest : public ExportTest {};

std::vector<std::string> NamesOf(const std::vector<TemplInfo>& summaries) {
    std::vector<std::string> names;
    for (const TemplInfo& info : summaries) {
        names.emplace_back(info.Name);
    }
    return names;
}

TEST_F(ListHandleTest, AFolderWithoutAListFileIsAnEmptyList) {
    const ListHandle handle = Open();
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 1), 0);
    unsigned char untouched = 0xEE;
    std::int64_t count = -1;
    EXPECT_EQ(EX_GetAllTemplInfo(handle.get(), 1, &untouched, 0, &count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(untouched, 0xEE);
    EXPECT_THAT(Folder.Names(), IsEmpty()) << "opening writes nothing";
}

TEST_F(ListHandleTest, TheListFilesNameAndTheExtensionMayBeGiven) {
    Folder.Write("My.ini", Section({"0~Mine~1~0~14~mine.fav"}));
    Folder.Write(ListFile, Section({"0~Default~1~0~14~default.pmt"}));
    EXPECT_THAT(NamesOf(Summaries(Open("My.ini", ".fav").get(), 1)), ElementsAre("Mine"));
    EXPECT_THAT(NamesOf(Summaries(Open().get(), 1)), ElementsAre("Default"));
    EXPECT_THAT(NamesOf(Summaries(Open(nullptr, ".fav").get(), 1)), ElementsAre("Default"));
}

TEST_F(ListHandleTest, AFolderNeedsNoSeparatorAtItsEnd) {
    Fill();
    const std::string path = Folder.Path().substr(0, Folder.Path().size() - 1);
    const ListHandle handle(EX_CreateTemplList(path.c_str(), nullptr, nullptr));
    ASSERT_NE(handle, nullptr);
    const std::vector<TemplInfo> summaries = Summaries(handle.get(), 1);
    ASSERT_EQ(summaries.size(), 1U);
    EXPECT_EQ(summaries[0].FilePath, path + "\\\\first.pmt");
}

TEST_F(ListHandleTest, ALevelGivesItsUserFavoritesAloneOrWithTheStandardOnes) {
    Fill();
    const ListHandle handle = Open();
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 1), 548);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 3 * 548);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 3), 548);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 103), 548);
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 5), 0);
    EXPECT_THAT(NamesOf(Summaries(handle.get(), 1)), ElementsAre("First"));
    EXPECT_THAT(NamesOf(Summaries(handle.get(), 101)), ElementsAre("First", "Duplex", "Unknown"));
    EXPECT_THAT(NamesOf(Summaries(handle.get(), 3)), ElementsAre("Second"));
}

TEST_F(ListHandleTest, TheBufferSizeIsOnlyAskedForItsSign) {
    Fill();
    const ListHandle handle = Open();
    std::vector<TemplInfo> summaries(3);
    std::int64_t count = 0;
    EXPECT_EQ(EX_GetAllTemplInfo(handle.get(), 101, summaries.data(), 0, &count), 0);
    EXPECT_EQ(count, 3);
}

TEST_F(ListHandleTest, ASummaryIs548BytesWithEveryFieldInItsPlace) {
    const std::string name = Sjis(u8"ミ表×ｱ");
    Folder.Write(ListFile, Section({"0~Other~2~0~14~other.pmt", "0~" + name + "~1~1~59~" + name + ".pmt"}));
    const ListHandle handle = Open();
    ASSERT_EQ(EX_GetTemplListSize(handle.get(), 1), 548);
    std::vector<unsigned char> bytes(548, 0xEE);
    std::int64_t count = 0;
    ASSERT_EQ(EX_GetAllTemplInfo(handle.get(), 1, bytes.data(), 548, &count), 0);
    std::vector<unsigned char> expected(548, 0);
    expected[0] = 1;
    expected[8] = 0;
    expected[12] = 1;
    std::memcpy(expected.data() + 16, name.data(), name.size());
    const std::string path = Folder.Path() + "\\" + name + ".pmt";
    std::memcpy(expected.data() + 276, path.data(), path.size());
    expected[536] = 1;
    expected[540] = 59;
    EXPECT_EQ(bytes, expected);
}

TEST_F(ListHandleTest, AStandardFavoritesSummaryHasItsNumberAsPath) {
    Fill();
    const ListHandle handle = Open();
    const TemplInfo info = Summaries(handle.get(), 101).at(1);
    EXPECT_EQ(std::int64_t{info.Position}, 2);
    EXPECT_EQ(info.Standard, 1U);
    EXPECT_EQ(info.Level, 101);
    EXPECT_STREQ(info.FilePath, "3");
    EXPECT_EQ(info.Toolbar, 1);
    EXPECT_EQ(std::int64_t{info.IconIndex}, 3);
}

TEST_F(ListHandleTest, LongNamesAreCutTo259BytesBetweenCharacters) {
    std::string kanji;
    while (kanji.size() < 300) {
        kanji += Sjis(u8"表");
    }
    Folder.Write(ListFile, Section({"0~" + std::string(260, 'n') + "~1~0~14~a", "0~" + kanji + "~1~0~14~b"}));
    const std::vector<TemplInfo> summaries = Summaries(Open().get(), 1);
    ASSERT_EQ(summaries.size(), 2U);
    EXPECT_EQ(summaries[0].Name, std::string(259, 'n'));
    EXPECT_EQ(summaries[1].Name, kanji.substr(0, 258));
}

TEST_F(ListHandleTest, EachPartOfAFavoritesTableIsCopiedAtItsExactLength) {
    Fill();
    const ListHandle handle = Open();
    for (std::int32_t part = 1; part <= 5; ++part) {
        EXPECT_EQ(Part(handle.get(), 0, part), PartOf(TableOf(10), part)) << part;
        EXPECT_EQ(Part(handle.get(), 1, part), PartOf(TableOf(20), part)) << part;
    }
}

TEST_F(ListHandleTest, ALoadedFavoriteStaysLoadedUntilTheHandleIsClosed) {
    Fill();
    ListHandle handle = Open();
    EXPECT_EQ(Part(handle.get(), 0, 1), TableOf(10));
    WriteFavorite("first.pmt", TableOf(99));
    EXPECT_EQ(Part(handle.get(), 0, 1), TableOf(10));
    handle = Open();
    EXPECT_EQ(Part(handle.get(), 0, 1), TableOf(99));
}

TEST_F(ListHandleTest, AFavoriteWhoseFileIsMissingOrDamagedFailsUntilItIsThere) {
    Fill();
    Folder.Remove("first.pmt");
    Folder.Write("second.pmt", "no favorite");
    const ListHandle handle = Open();
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THAT(Part(handle.get(), 0, 1), IsEmpty());
        EXPECT_THAT(Part(handle.get(), 1, 3), IsEmpty());
    }
    WriteFavorite("first.pmt", TableOf(30));
    EXPECT_EQ(Part(handle.get(), 0, 1), TableOf(30));
}

TEST_F(ListHandleTest, StandardFavoritesAreMadeByTheHost) {
    Fill();
    const ListHandle handle = Open();
    CPmxDocument fresh;
    _LM_DOCUMENTLAYOUTTABLE freshTable{};
    fresh.GetTable(freshTable);
    const std::vector<unsigned char> duplex = Part(handle.get(), 2, 1);
    const std::vector<unsigned char> upperLeft = Part(handle.get(), 3, 1);
    ASSERT_EQ(duplex.size(), sizeof freshTable.Bytes);
    EXPECT_NE(std::memcmp(duplex.data(), freshTable.Bytes, sizeof freshTable.Bytes), 0);
    fresh.Cmd_2up_Duplex();
    fresh.GetTable(freshTable);
    EXPECT_EQ(std::memcmp(duplex.data(), freshTable.Bytes, sizeof freshTable.Bytes), 0);
    EXPECT_NE(duplex, upperLeft);
}

TEST_F(ListHandleTest, FileFieldsThatLeadOutOfTheFolderAreMissingFiles) {
    WriteFavorite("outside.pmt", TableOf(1));
    Folder.AddFolder("Favorites");
    Folder.Write(std::string("Favorites\\") + ListFile,
                 Section({"0~A~1~0~14~..\\outside.pmt", "0~B~1~0~14~../outside.pmt",
                          "0~C~1~0~14~" + Folder.Path("outside.pmt"), "0~D~1~0~14~NUL",
                          std::string("0~E~1~0~14~") + ListFile}));
    const std::string favorites = Folder.Path("Favorites");
    const ListHandle handle(EX_CreateTemplList(favorites.c_str(), nullptr, nullptr));
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(Summaries(handle.get(), 1).size(), 5U);
    for (std::int64_t position = 0; position < 5; ++position) {
        EXPECT_THAT(Part(handle.get(), position, 1), IsEmpty()) << position;
    }
    unsigned char buffer[PMX_TABLE_SIZE];
    EXPECT_EQ(EX_ConvertChoiceData("A", favorites.c_str(), ListFile, ".pmt", buffer, 1), -1);
}

TEST_F(ListHandleTest, AHostileCountIsHarmless) {
    for (const char* const count : {"2147483647", "-1", "4294967295", "x"}) {
        Folder.Write(ListFile, std::string("[PMXTemplateList]\r\nTemplateNum=") + count +
                                   "\r\nTemplateData0=0~A~1~0~14~a\r\n");
        EXPECT_LE(Summaries(Open().get(), 1).size(), 1U) << count;
    }
}

TEST_F(ListHandleTest, FoldersWithDoubleByteNamesAreOpened) {
    for (const std::u8string_view name : {u8"表", u8"ソ×ミ", u8"ｱｲｳ能"}) {
        Folder.AddFolder(Sjis(name));
        WriteFavorite(Sjis(name) + "\\" + Sjis(name) + ".pmt", TableOf(5));
        Folder.Write(Sjis(name) + "\\" + ListFile,
                     Section({"0~" + Sjis(name) + "~1~0~14~" + Sjis(name) + ".pmt"}));
        const ListHandle handle(EX_CreateTemplList(Folder.Path(Sjis(name)).c_str(), nullptr, nullptr));
        ASSERT_NE(handle, nullptr);
        EXPECT_THAT(NamesOf(Summaries(handle.get(), 1)), ElementsAre(Sjis(name)));
        EXPECT_EQ(Part(handle.get(), 0, 1), TableOf(5));
    }
}

} // namespace
} // namespace pmx::exports_test
