#include "exports/export_test.h"

#include <array>
#include <cstring>

namespace pmx::exports_test {

std::vector<unsigned char> TableOf(unsigned char seed) {
    std::vector<unsigned char> table(PMX_TABLE_SIZE);
    for (std::size_t position = 0; position < table.size(); ++position) {
        table[position] = static_cast<unsigned char>(position * 31 + position / 256 + seed);
    }
    return table;
}

std::size_t StartOf(std::int32_t level) {
    constexpr std::array<std::size_t, 5> Starts = {0, 82, 126, 150, 2221};
    return Starts.at(static_cast<std::size_t>(level - 1));
}

std::vector<unsigned char> PartOf(const std::vector<unsigned char>& table, std::int32_t level) {
    return {table.begin() + static_cast<std::ptrdiff_t>(StartOf(level)), table.end()};
}

std::string Section(const std::vector<std::string>& values) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(values.size()) + "\r\n";
    for (std::size_t number = 0; number < values.size(); ++number) {
        text += "TemplateData" + std::to_string(number) + "=" + values[number] + "\r\n";
    }
    return text;
}

ListHandle ExportTest::Open(const char* listFileName, const char* extension) const {
    ListHandle handle(EX_CreateTemplList(Folder.Path().c_str(), listFileName, extension));
    EXPECT_NE(handle, nullptr);
    return handle;
}

void ExportTest::WriteFavorite(std::string_view fileName, const std::vector<unsigned char>& table,
                               std::int32_t level, const std::string& name) const {
    CPmxDocument document;
    _LM_DOCUMENTLAYOUTTABLE block{};
    std::memcpy(block.Bytes, table.data(), table.size());
    document.SetTemplateLevel(level);
    ASSERT_TRUE(document.SetTable(block, false));
    ASSERT_TRUE(document.SetName(name));
    ASSERT_TRUE(document.Save(Folder.Path(fileName).c_str()));
}

void ExportTest::Fill() const {
    WriteFavorite("first.pmt", TableOf(10), 1, "First");
    WriteFavorite("second.pmt", TableOf(20), 3, "Second");
    Folder.Write(ListFile, Section({"0~First~1~1~20~first.pmt", "0~Second~3~0~14~second.pmt",
                                    "1~Duplex~101~1~3~3", "1~Unknown~101~0~0~5"}));
}

std::map<std::string, std::string> ExportTest::Snapshot() const {
    std::map<std::string, std::string> files;
    for (const std::string& name : Folder.Names()) {
        files[name] = Folder.Read(name);
    }
    return files;
}

std::vector<TemplInfo> ExportTest::Summaries(void* handle, std::int32_t level) {
    const std::int64_t size = EX_GetTemplListSize(handle, level);
    EXPECT_EQ(size % 548, 0);
    std::vector<TemplInfo> summaries(static_cast<std::size_t>(size / 548));
    TemplInfo nothing{};
    void* const buffer = summaries.empty() ? &nothing : summaries.data();
    std::int64_t count = -1;
    EXPECT_EQ(EX_GetAllTemplInfo(handle, level, buffer, size, &count), 0);
    EXPECT_EQ(count, static_cast<std::int64_t>(summaries.size()));
    return summaries;
}

std::vector<unsigned char> ExportTest::Part(void* handle, std::int64_t position, std::int32_t level) {
    std::vector<unsigned char> buffer(PMX_TABLE_SIZE - StartOf(level), 0xEE);
    const std::int64_t result =
        EX_CurTemplInfo(handle, position, level, buffer.data(), static_cast<std::int64_t>(buffer.size()));
    return result == 0 ? buffer : std::vector<unsigned char>();
}

} // namespace pmx::exports_test
