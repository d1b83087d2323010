// Folders made to do harm, opened through every export that shows no dialog.
#include "exports/hostile_folder.h"

#include <gmock/gmock.h>

#include <limits>

namespace pmx::exports_test {
namespace {

using testing::Contains;
using testing::Each;
using testing::Ge;
using testing::IsEmpty;

class HostileExports : public HostileFolder {
protected:
    /// Asks for everything that a host can have. The positions of the favorites whose tables are given.
    std::vector<std::int64_t> ReadEverything() const {
        const ListHandle handle = Open();
        EXPECT_NE(handle, nullptr);
        ReadSummaries(handle.get());
        ReadByName();
        return ReadTables(handle.get());
    }

    static void ReadSummaries(void* handle) {
        for (const std::int32_t level : {std::numeric_limits<std::int32_t>::min(), -1, 0, 1, 5, 100, 101, 105,
                                         106, std::numeric_limits<std::int32_t>::max()}) {
            const std::int64_t size = EX_GetTemplListSize(handle, level);
            ASSERT_GE(size, 0);
            std::vector<unsigned char> buffer(static_cast<std::size_t>(size) + 1, 0xEE);
            std::int64_t count = -1;
            EXPECT_EQ(EX_GetAllTemplInfo(handle, level, buffer.data(), size, &count), 0);
            EXPECT_EQ(count * static_cast<std::int64_t>(sizeof(TemplInfo)), size);
            EXPECT_EQ(buffer.back(), 0xEE);
        }
    }

    static std::vector<std::int64_t> ReadTables(void* handle) {
        constexpr std::int64_t MostFavorites = 70;
        std::vector<unsigned char> buffer(PMX_TABLE_SIZE);
        std::vector<std::int64_t> readable;
        for (std::int64_t position = -1; position < MostFavorites; ++position) {
            if (EX_CurTemplInfo(handle, position, 1, buffer.data(), PMX_TABLE_SIZE) == 0) {
                readable.push_back(position);
            }
        }
        return readable;
    }

    void ReadByName() const {
        std::vector<unsigned char> buffer(PMX_TABLE_SIZE);
        for (const std::string& name : ListedNames()) {
            EX_ConvertChoiceData(name.c_str(), Favorites().c_str(), ListFile, ".pmt", buffer.data(), 1);
        }
    }

    /// Adds two favorites, which must be found afterwards.
    void AddStandardFavorites() const {
        const ListHandle handle = Open();
        EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Added", 3, 14), 0);
        EXPECT_EQ(EX_CreateDefaultChoice(handle.get(), "Chosen", 4, 15), 0);
        EXPECT_THAT(ListedNames(), Contains("Added"));
        EXPECT_THAT(ListedNames(), Contains("Chosen"));
        EXPECT_THAT(LeftBehind(), IsEmpty());
    }
};

TEST_F(HostileExports, OnlyWholeFilesAreRead) {
    WriteEveryKindOfFile();
    WriteList(FavoritesOfEveryKindOfFile());
    std::vector<std::int64_t> readable = ReadEverything();
    std::erase(readable, 7); // the link to a favorite: a file like others, or refused
    EXPECT_EQ(readable, std::vector<std::int64_t>{0});
    AddStandardFavorites();
    EXPECT_EQ(Folder.Read("Favorites\\folder.pmt\\kept"), "content");
}

TEST_F(HostileExports, AHostileListIsOnlyAList) {
    std::vector<std::string> values = FavoritesThatPointOutside();
    for (const std::vector<std::string>& others : {FavoritesAtEveryLimit(), FavoritesWithBrokenNames()}) {
        values.insert(values.end(), others.begin(), others.end());
    }
    WriteList("2147483647", values);
    EXPECT_THAT(ReadEverything(), Each(Ge(FavoritesThatPointOutside().size())));
    AddStandardFavorites();
}

/// What stands in the place of the list file, made in the favorites folder.
struct ListFileCase {
    const char* Description;
    const char* Script;
};

constexpr ListFileCase ListFileCases[] = {
    {"AFolder", "mkdir PmxTempleList.ini"},
    {"ALinkToAFileOutside", "ln -s ../outside.pmt PmxTempleList.ini"},
    {"ALinkToNothing", "ln -s ../nothing PmxTempleList.ini"},
    {"ALinkToItself", "ln -s PmxTempleList.ini PmxTempleList.ini"},
    {"APipe", "mkfifo PmxTempleList.ini"},
    {"FourMegabytesOfZeros", "truncate -s 4M PmxTempleList.ini"},
};

class HostileListFile : public HostileExports, public testing::WithParamInterface<ListFileCase> {};

TEST_P(HostileListFile, DoesNoHarm) {
    test::RunShell(Folder, std::string("cd Favorites && ") + GetParam().Script);
    ReadEverything();
    const ListHandle handle = Open();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Added", 3, 14), 0);
    EXPECT_THAT(LeftBehind(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Kinds, HostileListFile, testing::ValuesIn(ListFileCases),
                         [](const auto& example) { return example.param.Description; });

} // namespace
} // namespace pmx::exports_test
