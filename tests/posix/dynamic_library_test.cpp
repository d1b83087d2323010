#include "platform/dynamic_library.h"

#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <dlfcn.h>

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
    EXPECT_EQ(library->FindOrdinal(14), nullptr);
}

TEST(SharedObjects, LoadsFromAPathOfTheCodePage) {
    const auto mathematics = SystemDynamicLibraries().Load("libm.so.6");
    ASSERT_NE(mathematics, nullptr);
    Dl_info information{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(mathematics->Find("cos")), &information), 0);
    const test::TempFolder folder;
    const std::string path = folder.Path(test::Sjis(u8"表ソ.so"));
    std::filesystem::copy_file(information.dli_fname, test::DiskPath(path));
    const auto library = SystemDynamicLibraries().Load(path);
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Find("cos"), nullptr);
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
