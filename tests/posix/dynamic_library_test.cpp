#include "platform/dynamic_library.h"

#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

namespace pmx {
namespace {

using Cosine = double (*)(double);

TEST(SharedObjects, FindsFunctionsOfALibraryThatTheSystemFinds) {
    const auto library = SystemDynamicLibraries().Load("libm.so.6");
    ASSERT_NE(library, nullptr);
    const auto cosine = reinterpret_cast<Cosine>(library->Find("cos"));
    ASSERT_NE(cosine, nullptr);
    EXPECT_EQ(cosine(0.0), 1.0);
    EXPECT_EQ(library->Find("no_such_function"), nullptr);
}

std::filesystem::path MathematicsFile() {
    const auto mathematics = SystemDynamicLibraries().Load("libm.so.6");
    Dl_info information{};
    dladdr(reinterpret_cast<void*>(mathematics->Find("cos")), &information);
    return information.dli_fname;
}

TEST(SharedObjects, LoadsFromAPathOfTheCodePage) {
    const test::TempFolder folder;
    const std::string path = folder.Path(test::Sjis(u8"表ソ.so"));
    std::filesystem::copy_file(MathematicsFile(), test::DiskPath(path));
    const auto library = SystemDynamicLibraries().Load(path);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("cos"), nullptr);
}

TEST(SharedObjects, OfTheHostAreLookedForBesideTheLibraryAndTheProgramOnly) {
    const std::string name = "pmx-" + std::to_string(getpid()) + ".so";
    const std::filesystem::path place =
        std::filesystem::read_symlink("/proc/self/exe").replace_filename(name);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(name), nullptr);
    std::filesystem::copy_file(MathematicsFile(), place);
    const auto library = SystemDynamicLibraries().LoadHostLibrary(name);
    std::filesystem::remove(place);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("cos"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary("libm.so.6"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(""), nullptr);
}

TEST(SharedObjects, GivesNoneForWhatCannotBeLoaded) {
    const test::TempFolder folder;
    folder.Write("text.so", "no library");
    EXPECT_EQ(SystemDynamicLibraries().Load("PMXNoSuchLibrary.so"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(folder.Path("text.so")), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(""), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().Load(std::string("libm.so.6\0x", 11)), nullptr);
}

} // namespace
} // namespace pmx
