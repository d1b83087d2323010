#pragma once

#include "exports/export_test.h"
#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace pmx::exports_test {

/// A favorites folder with the user favorites A, B and C of level 1 (a.pmt with table 10, and so on), which
/// is seen through a folder that nobody can write to. At the end of the test it must be as it was.
class ReadOnlyFolder : public ExportTest {
protected:
    void SetUp() override {
        const char* const disk = std::getenv("PMX_SMALL_DISK");
        const char* const view = std::getenv("PMX_READ_ONLY_VIEW");
        if (disk == nullptr || view == nullptr) {
            GTEST_SKIP() << "there is no read-only folder: run this through tools/with-small-disk";
        }
        Disk = std::make_unique<test::TempFolder>(std::filesystem::absolute(disk), "read-only");
        unsigned char seed = 10;
        for (const char* const name : {"a.pmt", "b.pmt", "c.pmt"}) {
            WriteFavorite(name, TableOf(seed++));
            Disk->Write(name, Folder.Read(name));
        }
        Disk->Write(ListFile, Section({"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt", "0~C~1~0~14~c.pmt"}));
        const std::string own = Disk->Path().substr(0, Disk->Path().size() - 1);
        ViewPath = (std::filesystem::absolute(view) / test::DiskPath(own).filename()).string();
        Before = Content();
    }

    void TearDown() override {
        if (Disk) {
            EXPECT_TRUE(Content() == Before) << "the folder changed";
        }
    }

    /// The folder as it cannot be written.
    const std::string& View() const { return ViewPath; }
    ListHandle OpenView() const { return ListHandle(EX_CreateTemplList(View().c_str(), nullptr, nullptr)); }

private:
    std::map<std::string, std::string> Content() const {
        std::map<std::string, std::string> files;
        for (const std::string& name : Disk->Names()) {
            files[name] = Disk->Read(name);
        }
        return files;
    }

    std::unique_ptr<test::TempFolder> Disk;
    std::string ViewPath;
    std::map<std::string, std::string> Before;
};

} // namespace pmx::exports_test
