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
    names.reserve(summaries.size());
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

TEST_F(ListHandleTest, EachPartOfAFavoritesTableIsCopiedAtItsExactLength) {
    Fill();
    const ListHandle handle = Open();
    for (std::int32_t part = 1; part <= 5; ++part) {
        EXPECT_EQ(Part(handle.get(), 0, part), PartOf(TableOf(10), part)) << part;
        EXPECT_EQ(Part(handle.get(), 1, part), PartOf(TableOf(20), part)) << part;
    }
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

TEST_F(ListHandleTest, ALongListIsReadAndWrittenWholeAndOtherSectionsStay) {
    constexpr std::size_t Count = 100'000;
    const std::string name = Sjis(u8"ミシン目 ");
    const std::string longFileName = Sjis(u8"表") + std::string(60, 'f');
    std::vector<std::string> values;
    values.reserve(Count + 1);
    for (std::size_t number = 0; number < Count; ++number) {
        const std::string digits = std::to_string(number);
        std::string value = "0~" + name;
        value.append(digits).append("~1~0~14~").append(longFileName).append(digits).append(".pmt");
        values.push_back(std::move(value));
    }
    const std::string list = Section(values);
    ASSERT_GT(list.size(), 10'000'000U);
    const std::string before = "; mine\r\n\r\n[Other]\r\n x = 1\n";
    const std::string behind = "[Long]\r\ny=" + std::string(1'000'000, 'y') + "\r\n;z";
    Folder.Write(ListFile, before + list + behind);
    {
        const ListHandle handle = Open();
        const std::vector<TemplInfo> summaries = Summaries(handle.get(), 1);
        ASSERT_EQ(summaries.size(), Count);
        for (std::size_t number = 0; number < Count; ++number) {
            ASSERT_EQ(summaries[number].Name, name + std::to_string(number));
        }
        EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Last", 3, 14), 0);
    }
    values.emplace_back("1~Last~101~0~14~3");
    EXPECT_TRUE(Folder.Read(ListFile) == before + behind + "\r\n" + Section(values));
    EXPECT_EQ(EX_GetTemplListSize(Open().get(), 101), 548 * (std::int64_t{Count} + 1)) << "read again";
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
