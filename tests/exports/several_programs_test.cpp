// Several programs at one folder: what one of them adds stays there, whatever the others do or suffer.
#include "exports/export_test.h"

#include "support/holding_process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace pmx::exports_test {
namespace {

using test::HoldingProcess;

#ifdef _WIN32
constexpr int Kills = 3; // starting a process takes long
#else
constexpr int Kills = 60;
#endif

class SeveralPrograms : public ExportTest {
protected:
    std::vector<std::unique_ptr<HoldingProcess>> Start(int count) const {
        // A separator at the end would escape the quote behind it in a command line.
        const std::string folder = Folder.Path().substr(0, Folder.Path().size() - 1);
        std::vector<std::unique_ptr<HoldingProcess>> programs;
        programs.reserve(static_cast<std::size_t>(count));
        for (int number = 0; number < count; ++number) {
            programs.push_back(std::make_unique<HoldingProcess>("pmx_append_fifty", folder));
        }
        return programs;
    }

    /// How many favorites each process has added. None may be missing between them.
    std::map<std::string, std::size_t> Added() const {
        std::map<std::string, std::set<int>> numbers;
        const std::string list = Folder.Read(ListFile);
        for (std::size_t at = list.find("=1~"); at != std::string::npos; at = list.find("=1~", at + 1)) {
            const std::size_t dash = list.find('-', at);
            numbers[list.substr(at + 3, dash - at - 3)].insert(std::stoi(list.substr(dash + 1)));
        }
        std::map<std::string, std::size_t> added;
        for (const auto& [process, ofProcess] : numbers) {
            added[process] = ofProcess.size();
            EXPECT_EQ(*ofProcess.rbegin() + 1, static_cast<int>(ofProcess.size())) << process;
        }
        return added;
    }

    std::string ListName() const { return ListFile; }
};

TEST_F(SeveralPrograms, KeepWhatEachOfThemAppends) {
    for (const int count : {2, 4}) {
        Folder.Write(ListFile, Section({}));
        Start(count).clear(); // which waits for them
        const auto added = Added();
        EXPECT_EQ(added.size(), static_cast<std::size_t>(count));
        for (const auto& [process, number] : added) {
            EXPECT_EQ(number, 50U) << process << " of " << count;
        }
        EXPECT_THAT(Folder.Names(), testing::ElementsAre(ListFile));
    }
}

TEST_F(SeveralPrograms, ThatAreKilledTakeNothingFromTheOthersAndBlockNobody) {
    std::mt19937 random(932);
    for (int kill = 0; kill < Kills; ++kill) {
        SCOPED_TRACE(kill);
        Folder.Write(ListFile, Section({}));
        const auto programs = Start(2);
        // The moment of the kill is what this is about; there is no condition to wait for.
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20'000));
        for (const auto& program : programs) {
            program->Kill();
        }
        EXPECT_EQ(Added().size(), programs.size());
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(EX_CreateDefaultTempl(Open().get(), "after-0", 3, 14), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << "the lock is free";
        EXPECT_EQ(Added().count("after"), 1U);
        EXPECT_FALSE(Folder.Exists(ListName() + ".lock"));
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(SeveralPrograms, KeepWhatTheEditorDidWhileAHandleWasOpen) {
    Folder.Write(ListFile, Section({"0~One~1~0~14~one.pmt", "0~Two~1~0~14~two.pmt"}));
    const ListHandle handle = Open();
    Folder.Write(ListFile, Section({"0~New~1~0~14~new.pmt", "0~Renamed~1~0~14~one.pmt"}));
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Added", 3, 14), 0);
    EXPECT_EQ(Folder.Read(ListFile),
              Section({"0~New~1~0~14~new.pmt", "0~Renamed~1~0~14~one.pmt", "1~Added~101~0~14~3"}));
    EXPECT_EQ(EX_GetTemplListSize(handle.get(), 101), 3 * 548) << "the handle's list stays";
    EXPECT_EQ(EX_CreateDefaultTempl(handle.get(), "Last", 4, 14), 0);
    EXPECT_EQ(Folder.Read(ListFile), Section({"0~New~1~0~14~new.pmt", "0~Renamed~1~0~14~one.pmt",
                                              "1~Added~101~0~14~3", "1~Last~101~0~14~4"}));
}

} // namespace
} // namespace pmx::exports_test
