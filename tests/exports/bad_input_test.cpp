// Bad input at every export: the failure result, and nothing changes.
#include "exports/export_test.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

namespace pmx::exports_test {
namespace {

using testing::Each;

constexpr const char* Missing[] = {nullptr, ""};

class BadInputTest : public ExportTest {
protected:
    BadInputTest() {
        Fill();
        Handle = Open();
        Before = Snapshot();
        SizeBefore = EX_GetTemplListSize(Handle.get(), 101);
    }
    ~BadInputTest() override {
        EXPECT_EQ(Snapshot(), Before) << "the folder changed";
        EXPECT_EQ(EX_GetTemplListSize(Handle.get(), 101), SizeBefore) << "the list changed";
        EXPECT_THAT(Buffer, Each(0xEE)) << "the buffer changed";
    }

    const char* FolderPath() const { return Folder.Path().c_str(); }

    ListHandle Handle;
    std::map<std::string, std::string> Before;
    std::int64_t SizeBefore = 0;
    std::vector<unsigned char> Buffer = std::vector<unsigned char>(PMX_TABLE_SIZE + 100, 0xEE);
};

TEST_F(BadInputTest, CreateTemplListGivesNull) {
    EXPECT_EQ(EX_CreateTemplList(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(EX_CreateTemplList("", ListFile, ".pmt"), nullptr);
    EXPECT_EQ(EX_CreateTemplList(Folder.Path("missing").c_str(), nullptr, nullptr), nullptr);
    EXPECT_EQ(EX_CreateTemplList(Folder.Path("first.pmt").c_str(), nullptr, nullptr), nullptr);
    EXPECT_EQ(EX_CreateTemplList(Folder.Path("a|b*?").c_str(), nullptr, nullptr), nullptr);
    EXPECT_EQ(EX_CreateTemplList(std::string(100'000, 'x').c_str(), nullptr, nullptr), nullptr);
}

TEST_F(BadInputTest, DestroyTemplListRefusesNull) {
    EXPECT_EQ(EX_DestroyTemplList(nullptr), -1);
}

TEST_F(BadInputTest, GetTemplListSizeRefusesNull) {
    EXPECT_EQ(EX_GetTemplListSize(nullptr, 1), -1);
    EXPECT_EQ(EX_GetTemplListSize(nullptr, 101), -1);
}

TEST_F(BadInputTest, GetAllTemplInfoRefusesNullsAndNegativeSizes) {
    std::int64_t count = 77;
    EXPECT_EQ(EX_GetAllTemplInfo(nullptr, 101, Buffer.data(), 8000, &count), -1);
    EXPECT_EQ(EX_GetAllTemplInfo(Handle.get(), 101, nullptr, 8000, &count), -1);
    EXPECT_EQ(EX_GetAllTemplInfo(Handle.get(), 101, Buffer.data(), -1, &count), -1);
    EXPECT_EQ(EX_GetAllTemplInfo(Handle.get(), 101, Buffer.data(), std::numeric_limits<std::int64_t>::min(),
                                 &count),
              -1);
    EXPECT_EQ(EX_GetAllTemplInfo(Handle.get(), 101, Buffer.data(), 8000, nullptr), -1);
    EXPECT_EQ(count, 77);
}

TEST_F(BadInputTest, CurTemplInfoRefusesNullsAndNegativeSizes) {
    EXPECT_EQ(EX_CurTemplInfo(nullptr, 0, 1, Buffer.data(), 8657), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0, 1, nullptr, 8657), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0, 1, Buffer.data(), -1), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0, 1, Buffer.data(), -8657), -1);
}

TEST_F(BadInputTest, CurTemplInfoRefusesOtherPositionsPartsAndLengths) {
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 4, 1, Buffer.data(), 8657), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0x1'0000'0000, 1, Buffer.data(), 8657), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0, 6, Buffer.data(), 8657), -1);
    EXPECT_EQ(EX_CurTemplInfo(Handle.get(), 0, 1, Buffer.data(), 8656), -1);
}

TEST_F(BadInputTest, CreateDefaultTemplRefusesNull) {
    EXPECT_EQ(EX_CreateDefaultTempl(nullptr, "name", 3, 14), -1);
}

TEST_F(BadInputTest, CreateDefaultChoiceRefusesNull) {
    EXPECT_EQ(EX_CreateDefaultChoice(nullptr, "name", 3, 14), -1);
}

TEST_F(BadInputTest, SaveAsTemplInfoRefusesNullsAndOtherTableSizes) {
    TemplInfo info{};
    info.Level = 1;
    std::strcpy(info.Name, "name");
    const TemplInfo infoBefore = info;
    const std::vector<unsigned char> table = TableOf(1);
    for (const std::int32_t mode : {0, 1}) {
        EXPECT_EQ(EX_SaveAsTemplInfo(nullptr, mode, &info, table.data(), 8657, nullptr), -1);
        EXPECT_EQ(EX_SaveAsTemplInfo(Handle.get(), mode, nullptr, table.data(), 8657, nullptr), -1);
        EXPECT_EQ(EX_SaveAsTemplInfo(Handle.get(), mode, &info, nullptr, 8657, nullptr), -1);
        for (const std::int64_t size : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{8656},
                                        std::int64_t{8658}, std::int64_t{8657} + 0x1'0000'0000}) {
            EXPECT_EQ(EX_SaveAsTemplInfo(Handle.get(), mode, &info, table.data(), size, nullptr), -1) << size;
        }
    }
    EXPECT_EQ(std::memcmp(&info, &infoBefore, sizeof info), 0);
}

TEST_F(BadInputTest, ConvertChoiceDataRefusesMissingStringsAndANullBuffer) {
    for (const char* const missing : Missing) {
        EXPECT_EQ(EX_ConvertChoiceData(missing, FolderPath(), ListFile, ".pmt", Buffer.data(), 1), -1);
        EXPECT_EQ(EX_ConvertChoiceData("First", missing, ListFile, ".pmt", Buffer.data(), 1), -1);
        EXPECT_EQ(EX_ConvertChoiceData("First", FolderPath(), missing, ".pmt", Buffer.data(), 1), -1);
        EXPECT_EQ(EX_ConvertChoiceData("First", FolderPath(), ListFile, missing, Buffer.data(), 1), -1);
    }
    EXPECT_EQ(EX_ConvertChoiceData("First", FolderPath(), ListFile, ".pmt", nullptr, 1), -1);
}

TEST_F(BadInputTest, ConvertChoiceDataRefusesNoFolderAndUnknownFavorites) {
    const std::string missing = Folder.Path("missing");
    EXPECT_EQ(EX_ConvertChoiceData("First", missing.c_str(), ListFile, ".pmt", Buffer.data(), 1), -1);
    EXPECT_EQ(EX_ConvertChoiceData("First", FolderPath(), "Other.ini", ".pmt", Buffer.data(), 1), -1);
    EXPECT_EQ(EX_ConvertChoiceData("Third", FolderPath(), ListFile, ".pmt", Buffer.data(), 1), -1);
    EXPECT_EQ(EX_ConvertChoiceData("First", FolderPath(), ListFile, ".pmt", Buffer.data(), 2), -1);
}

TEST_F(BadInputTest, ShowTemplateUIRefusesAMissingFolder) {
    for (const char* const missing : Missing) {
        EXPECT_EQ(EX_ShowTemplateUI(missing, nullptr), -1);
    }
}

TEST_F(BadInputTest, ShowChoiceUIEntryRefusesMissingStrings) {
    const std::vector<unsigned char> table = TableOf(1);
    for (const char* const missing : Missing) {
        EXPECT_EQ(EX_ShowChoiceUIEntry(missing, ListFile, ".pmt", table.data(), 1, nullptr), -1);
        EXPECT_EQ(EX_ShowChoiceUIEntry(FolderPath(), missing, ".pmt", table.data(), 1, nullptr), -1);
        EXPECT_EQ(EX_ShowChoiceUIEntry(FolderPath(), ListFile, missing, table.data(), 1, nullptr), -1);
    }
}

TEST_F(BadInputTest, ShowChoiceUIBasicRefusesMissingStrings) {
    for (const char* const missing : Missing) {
        EXPECT_EQ(EX_ShowChoiceUIBasic(missing, ListFile, ".pmt", nullptr), -1);
        EXPECT_EQ(EX_ShowChoiceUIBasic(FolderPath(), missing, ".pmt", nullptr), -1);
        EXPECT_EQ(EX_ShowChoiceUIBasic(FolderPath(), ListFile, missing, nullptr), -1);
    }
}

} // namespace
} // namespace pmx::exports_test
