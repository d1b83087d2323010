// What happens on a full disk. tools/with-small-disk makes a small one for these tests.
#include "store/list_data_array.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using testing::ElementsAre;

constexpr const char* Filler = "filler";
constexpr std::size_t BlockSize = 4096;
constexpr std::size_t MostBlocks = 16;

std::string ValueOf(std::size_t number) {
    const std::string digits = std::to_string(number);
    return "0~name " + digits + "~1~0~14~file" + digits + ".pmt";
}

std::string ListOf(std::size_t count) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(count) + "\r\n";
    for (std::size_t number = 0; number < count; ++number) {
        text += "TemplateData" + std::to_string(number) + "=" + ValueOf(number) + "\r\n";
    }
    return text;
}

class FullDisk : public testing::Test {
protected:
    void SetUp() override {
        const char* const disk = std::getenv("PMX_SMALL_DISK");
        if (disk == nullptr) {
            GTEST_SKIP() << "there is no small disk: run this through tools/with-small-disk";
        }
        Folder = std::make_unique<TempFolder>(std::filesystem::absolute(disk), "full");
    }

    /// Fills the disk up to so many free blocks.
    void Fill(std::size_t freeBlocks) const {
        const auto room = std::filesystem::space(DiskPath(Folder->Path())).available;
        const std::size_t kept = freeBlocks * BlockSize;
        Folder->Write(Filler, std::string(room > kept ? static_cast<std::size_t>(room) - kept : 0, 'f'));
    }

    std::unique_ptr<TempFolder> Folder;
    FakeHost Host;
    FakeServices Fakes;
};

TEST_F(FullDisk, AListIsSavedWholeOrNotAtAll) {
    const std::string other = "; mine\r\n[Other]\r\nx=1\r\n";
    const std::string old = other + ListOf(100);
    const std::string saved = other + ListOf(300);
    std::size_t refused = 0;
    for (std::size_t blocks = 0; blocks <= MostBlocks; ++blocks) {
        SCOPED_TRACE(blocks);
        CPMXTemplUIListDataArray list(nullptr, nullptr, Fakes.Services);
        ASSERT_TRUE(list.SetFolder(Folder->Path().c_str()));
        Folder->Write(ListFile, old);
        ASSERT_TRUE(list.LoadList());
        for (std::size_t number = 100; number < 300; ++number) {
            list.Add(ParseListValue(ValueOf(number), SystemLeadBytes()));
        }
        Fill(blocks);
        const bool isSaved = list.WriteListFile();
        refused += isSaved ? 0 : 1;
        EXPECT_TRUE(Folder->Read(ListFile) == (isSaved ? saved : old));
        EXPECT_THAT(Folder->Names(), ElementsAre(ListFile, Filler)) << "a file is left behind";
        Folder->Remove(Filler);
    }
    EXPECT_GT(refused, 2U) << "the disk was not full";
    EXPECT_LE(refused, MostBlocks) << "there was room in the end";
}

} // namespace
} // namespace pmx::test
