#include "platform/dynamic_library.h"

#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <windows.h>

namespace pmx {
namespace {

/// The path of the host's library, which lies beside this program.
std::filesystem::path HostFile() {
    const auto host = SystemDynamicLibraries().LoadHostLibrary("PmxUser.dll");
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(GetModuleHandleW(L"PmxUser.dll"), path.data(), MAX_PATH));
    return path;
}

/// A file beside this program, of a name that no other process gives.
class FileBesideProgram {
public:
    FileBesideProgram() = default;
    ~FileBesideProgram() { std::filesystem::remove(Place); }
    FileBesideProgram(const FileBesideProgram&) = delete;
    FileBesideProgram& operator=(const FileBesideProgram&) = delete;

    const std::string Name = test::Sjis(u8"表ソ-") + std::to_string(GetCurrentProcessId()) + ".dll";
    const std::filesystem::path Place = HostFile().replace_filename(test::DiskPath(Name));
};

TEST(Modules, OfTheHostAreLookedForBesideTheLibraryAndTheProgramOnly) {
    const FileBesideProgram file;
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(file.Name), nullptr);
    std::filesystem::copy_file(HostFile(), file.Place);
    const auto library = SystemDynamicLibraries().LoadHostLibrary(file.Name);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("EX_LoadDefaultResourceDLL"), nullptr);
    EXPECT_EQ(library->Find("NoSuchFunction"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary("kernel32.dll"), nullptr);
}

TEST(Modules, GivesNoneForWhatCannotBeLoaded) {
    const FileBesideProgram file;
    std::ofstream(file.Place) << "no library";
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(file.Name), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(""), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(std::string("PmxUser.dll\0x", 13)), nullptr);
}

} // namespace
} // namespace pmx
