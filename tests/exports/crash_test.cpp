// The process is killed while it saves, or the folder goes away or is held by another: nothing is lost.
#include "exports/export_test.h"

#include "support/holding_process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

namespace pmx::exports_test {
namespace {

using test::HoldingProcess;

#ifdef _WIN32
constexpr int KilledPrograms = 25; // starting a process takes long
#else
constexpr int KilledPrograms = 200;
#endif

class CrashTest : public ExportTest {
protected:
    CrashTest() { Fill(); }

    /// A list of the favorites of Fill and so many more, behind another section.
    static std::string ListWith(std::size_t added) {
        std::vector<std::string> values = {"0~First~1~1~20~first.pmt", "0~Second~3~0~14~second.pmt",
                                           "1~Duplex~101~1~3~3", "1~Unknown~101~0~0~5"};
        values.insert(values.end(), added, "1~Saved~101~1~14~3");
        return "; mine\r\n[Other]\r\nx=1\r\n" + Section(values);
    }

    /// How many favorites were added to the list that the folder holds; it must be whole.
    std::size_t Added() const {
        const std::string list = Folder.Read(ListFile);
        std::size_t added = 0;
        for (std::size_t at = list.find("~Saved~"); at != std::string::npos;
             at = list.find("~Saved~", at + 1)) {
            ++added;
        }
        EXPECT_EQ(list, ListWith(added));
        return added;
    }
};

TEST_F(CrashTest, AProcessThatIsKilledLeavesTheOldListOrTheNewOne) {
    const auto before = Snapshot();
    // A separator at the end would escape the quote behind it in a command line.
    const std::string folder = Folder.Path().substr(0, Folder.Path().size() - 1);
    std::mt19937 random(932);
    std::size_t most = 0;
    for (int kill = 0; kill < KilledPrograms; ++kill) {
        SCOPED_TRACE(kill);
        Folder.Write(ListFile, ListWith(0));
        HoldingProcess saving("pmx_save_forever", folder);
        // The moment of the kill is what this is about; there is no condition to wait for.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 10'000));
        saving.Kill();
        most = std::max(most, Added());
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(most, 1U) << "it did save";
    for (const char* const name : {"first.pmt", "second.pmt"}) {
        EXPECT_EQ(Folder.Read(name), before.at(name));
    }
}

TEST_F(CrashTest, AListThatAnotherProcessHeldWhenItWasReadIsNotOverwritten) {
    const auto before = Snapshot();
    ListHandle handle;
    {
        const HoldingProcess other(Folder.Path(ListFile));
        handle = Open();
    }
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "New", 3, 14), 0);
    EXPECT_EQ(Snapshot(), before) << "what could not be read is not overwritten";
    handle = Open();
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "New", 3, 14), 0);
    EXPECT_EQ(EX_GetTemplListSize(Open().get(), 101), 4 * 548);
}

TEST_F(CrashTest, AFolderThatIsGoneIsNotMadeAgain) {
    Folder.AddFolder("Favorites");
    Folder.Write(std::string("Favorites\\") + ListFile, Section({"0~A~1~0~14~a.pmt"}));
    const ListHandle handle(EX_CreateTemplList(Folder.Path("Favorites").c_str(), nullptr, nullptr));
    ASSERT_NE(handle, nullptr);
    Folder.Remove("Favorites");
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "New", 3, 14), 0);
    EXPECT_THAT(Part(handle.get(), 0, 1), testing::IsEmpty());
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 2 * 548);
    EXPECT_FALSE(Folder.Exists("Favorites"));
}

} // namespace
} // namespace pmx::exports_test
