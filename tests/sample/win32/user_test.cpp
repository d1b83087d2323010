// The choice of the resource library, through the entry that the favorites library looks up.
#include "host/PmxUser.h"
#include "win32/support/module.h"

#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <windows.h>

namespace {

namespace fs = std::filesystem;

using pmx::test::Module;

/// A library in a folder of its own, whose resource library for the tag "ENU" can be put beside it or not.
class UserTest : public testing::Test {
protected:
    UserTest() {
        fs::remove_all(Folder);
        fs::create_directories(Folder);
        fs::copy_file(FolderOfProgram() / "QrtCommon.dll", Folder / "Library.dll");
        Library.reset(LoadLibraryW((Folder / "Library.dll").c_str()));
        Host.reset(LoadLibraryA(PMX_USER_LIBRARY));
    }
    ~UserTest() override {
        Library.reset();
        SetEnvironmentVariableA("PMX_UI_LANGUAGE", nullptr);
        std::error_code ignored;
        fs::remove_all(Folder, ignored);
    }

    static fs::path FolderOfProgram() {
        std::wstring path(MAX_PATH, L'\0');
        path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
        return fs::path(path).parent_path();
    }

    void AddResourceLibrary() {
        fs::copy_file(FolderOfProgram() / "QrtCommon.dll", Folder / "LibraryENU.dll");
    }

    /// Whether the host chooses a resource library.
    bool Chooses(const char* language) {
        SetEnvironmentVariableA("PMX_UI_LANGUAGE", language);
        const FARPROC found = GetProcAddress(Host.get(), PMX_USER_ENTRY);
        EXPECT_NE(found, nullptr);
        const auto choose = reinterpret_cast<PmxLoadDefaultResourceDLL>(reinterpret_cast<void (*)()>(found));
        const Module chosen(static_cast<HMODULE>(choose(Library.get(), "ENU")));
        return chosen != nullptr;
    }

    fs::path Folder = fs::temp_directory_path() / L"pmx-user-表";
    Module Library;
    Module Host;
};

TEST_F(UserTest, EnglishTakesTheLibraryBesideTheModule) {
    AddResourceLibrary();
    EXPECT_TRUE(Chooses("en"));
}

TEST_F(UserTest, EnglishWithoutLibraryTakesTheBuiltInResources) {
    const fs::path before = fs::current_path();
    fs::create_directories(Folder / "current");
    fs::copy_file(FolderOfProgram() / "QrtCommon.dll", Folder / "current" / "LibraryENU.dll");
    fs::current_path(Folder / "current");
    EXPECT_FALSE(Chooses("en"));
    fs::current_path(before);
}

TEST_F(UserTest, StaysLoadedWhenTheFavoritesLibraryGoes) {
    for (const char* name : {"PMXTemplUI.dll", "PmxUser.dll"}) {
        fs::copy_file(FolderOfProgram() / name, Folder / name);
    }
    Module favorites(LoadLibraryW((Folder / "PMXTemplUI.dll").c_str()));
    ASSERT_NE(favorites, nullptr);
    favorites.reset();
    EXPECT_EQ(GetModuleHandleW((Folder / "PMXTemplUI.dll").c_str()), nullptr);
    const Module user(GetModuleHandleW((Folder / "PmxUser.dll").c_str()));
    EXPECT_NE(user, nullptr);
}

TEST_F(UserTest, JapaneseTakesTheBuiltInResources) {
    AddResourceLibrary();
    EXPECT_FALSE(Chooses("ja"));
}

TEST_F(UserTest, UnsetFollowsTheLanguageOfTheUser) {
    AddResourceLibrary();
    const bool japanese = PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_JAPANESE;
    EXPECT_EQ(Chooses(nullptr), !japanese);
}

} // namespace
