// Libraries that lie in the current folder and on the search path, where somebody's documents may lie, are
// not run.
#include "host/PMXPropUI.h"
#include "host/PmxUser.h"
#include "host/resource.h"
#include "sample/win32/running_host.h"
#include "support/sjis.h"
#include "support/temp_folder.h"
#include "ui/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace pmx::sample {
namespace {

namespace fs = std::filesystem;
using test::Sjis;

constexpr DWORD Patience = 20'000;

fs::path FolderOfTests() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return fs::path(path).parent_path();
}

/// Puts a folder in front of the search path of this process and those that it starts.
class SearchPath {
public:
    explicit SearchPath(const fs::path& first) {
        Before.resize(GetEnvironmentVariableW(L"PATH", Before.data(), static_cast<DWORD>(Before.size())));
        SetEnvironmentVariableW(L"PATH", (first.wstring() + L';' + Before).c_str());
    }
    ~SearchPath() { SetEnvironmentVariableW(L"PATH", Before.c_str()); }
    SearchPath(const SearchPath&) = delete;
    SearchPath& operator=(const SearchPath&) = delete;

private:
    std::wstring Before = std::wstring(32768, L'\0');
};

class PlantedLibraries : public testing::Test {
protected:
    PlantedLibraries() {
        for (const char* name : {"PmxSampleHost.exe", "PmxCClient.exe"}) {
            fs::copy_file(FolderOfTests() / name, test::DiskPath(Programs.Path(name)));
        }
    }

    void AddLibrary() const {
        for (const char* name : {"PMXTemplUI.dll", "PmxDocMgr.dll", "QrtCommon.dll"}) {
            fs::copy_file(FolderOfTests() / name, test::DiskPath(Programs.Path(name)));
        }
    }

    void Plant(const char* name) const {
        fs::copy_file(FolderOfTests() / "pmx_test_planted.dll", test::DiskPath(Planted.Path(name)));
    }

    std::vector<std::string> ThoseRun() const {
        std::vector<std::string> names;
        for (const std::string& name : Planted.Names()) {
            if (name.ends_with(".ran")) {
                names.push_back(name);
            }
        }
        return names;
    }

    const test::TempFolder Programs{Sjis(u8"表ソ-programs")};
    const test::TempFolder Favorites{"favorites"};
    const test::TempFolder Planted{Sjis(u8"表ソ-planted")};
    const SearchPath Path{test::DiskPath(Planted.Path())};
};

TEST_F(PlantedLibraries, AreRunWhenTheyAreLoaded) {
    Plant(PMX_USER_LIBRARY);
    FreeLibrary(LoadLibraryW(test::DiskPath(Planted.Path(PMX_USER_LIBRARY)).c_str()));
    EXPECT_EQ(ThoseRun(), std::vector<std::string>{std::string(PMX_USER_LIBRARY) + ".ran"});
}

TEST_F(PlantedLibraries, AreNotRunByTheFavoritesLibraryAndTheSampleHost) {
    AddLibrary();
    Plant(PMX_USER_LIBRARY);
    Plant(PMX_PROPUI_LIBRARY);
    {
        const RunningHost host(Programs.Path("PmxSampleHost.exe"), Favorites.Path(), Planted.Path().c_str());
        host.OpenAndCancel(IDM_EDITOR);
        host.OpenAndCancel(IDM_ATTRIBUTES);
    }
    EXPECT_EQ(ThoseRun(), std::vector<std::string>{});
}

TEST_F(PlantedLibraries, AreNotRunByTheClientInC) {
    Plant("PMXTemplUI.dll");
    const PROCESS_INFORMATION client =
        Start(Programs.Path("PmxCClient.exe"), Favorites.Path(), Planted.Path().c_str());
    CloseHandle(client.hThread);
    const Handle process(client.hProcess);
    ASSERT_EQ(WaitForSingleObject(process.get(), Patience), WAIT_OBJECT_0);
    EXPECT_EQ(ThoseRun(), std::vector<std::string>{});
}

} // namespace
} // namespace pmx::sample
