#include "platform/dynamic_library.h"

#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <windows.h>

namespace pmx {
namespace {

using ProcessIdQuery = DWORD(WINAPI*)();

TEST(Modules, FindsFunctionsOfALibraryThatTheSystemFinds) {
    const auto library = SystemDynamicLibraries().Load("kernel32.dll");
    ASSERT_NE(library, nullptr);
    const auto processId = reinterpret_cast<ProcessIdQuery>(library->Find("GetCurrentProcessId"));
    ASSERT_NE(processId, nullptr);
    EXPECT_EQ(processId(), GetCurrentProcessId());
    EXPECT_EQ(library->Find("NoSuchFunction"), nullptr);
}

TEST(Modules, LoadsFromAPathOfTheCodePage) {
    const auto host = SystemDynamicLibraries().Load("PmxUser.dll");
    ASSERT_NE(host, nullptr);
    std::wstring original(MAX_PATH, L'\0');
    original.resize(GetModuleFileNameW(GetModuleHandleW(L"PmxUser.dll"), original.data(), MAX_PATH));
    const test::TempFolder folder;
    const std::string path = folder.Path(test::Sjis(u8"表ソ.dll"));
    std::filesystem::copy_file(original, test::DiskPath(path));
    const auto library = SystemDynamicLibraries().Load(path);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("EX_LoadDefaultResourceDLL"), nullptr);
}

TEST(Modules, OfTheHostAreLookedForBesideTheLibraryAndTheProgramOnly) {
    const auto library = SystemDynamicLibraries().LoadHostLibrary("PmxUser.dll");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("EX_LoadDefaultResourceDLL"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary("kernel32.dll"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(""), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(std::string("PmxUser.dll\0x", 13)), nullptr);
}

TEST(Modules, GivesNoneForWhatCannotBeLoaded) {
    const test::TempFolder folder;
    folder.Write("text.dll", "no library");
    EXPECT_EQ(SystemDynamicLibraries().Load("PMXNoSuchLibrary.dll"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(folder.Path("text.dll")), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(""), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(std::string("kernel32.dll\0x", 14)), nullptr);
}

} // namespace
} // namespace pmx
