#include "platform/dynamic_library.h"

#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include <dlfcn.h>
#include <unistd.h>

namespace pmx {
namespace {

using Cosine = double (*)(double);

std::filesystem::path MathematicsFile() {
    Dl_info information{};
    dladdr(reinterpret_cast<void*>(static_cast<Cosine>(&std::cos)), &information);
    return information.dli_fname;
}

/// A file beside this program, of a name that no other process gives.
class FileBesideProgram {
public:
    FileBesideProgram() : Place(DiskFile()) {}
    ~FileBesideProgram() { std::filesystem::remove(Place); }
    FileBesideProgram(const FileBesideProgram&) = delete;
    FileBesideProgram& operator=(const FileBesideProgram&) = delete;

    const std::string Name = test::Sjis(u8"表ソ-") + std::to_string(getpid()) + ".so";
    const std::filesystem::path Place;

private:
    std::filesystem::path DiskFile() const {
        return std::filesystem::read_symlink("/proc/self/exe").replace_filename(test::DiskPath(Name));
    }
};

TEST(SharedObjects, OfTheHostAreLookedForBesideTheLibraryAndTheProgramOnly) {
    const FileBesideProgram file;
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(file.Name), nullptr);
    std::filesystem::copy_file(MathematicsFile(), file.Place);
    const auto library = SystemDynamicLibraries().LoadHostLibrary(file.Name);
    ASSERT_NE(library, nullptr);
    const auto cosine = reinterpret_cast<Cosine>(library->Find("cos"));
    ASSERT_NE(cosine, nullptr);
    EXPECT_EQ(cosine(0.0), 1.0);
    EXPECT_EQ(library->Find("no_such_function"), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary("libm.so.6"), nullptr);
}

TEST(SharedObjects, GivesNoneForWhatCannotBeLoaded) {
    const FileBesideProgram file;
    std::ofstream(file.Place) << "no library";
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(file.Name), nullptr);
    std::filesystem::copy_file(MathematicsFile(), file.Place,
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(file.Name + std::string("\0x", 2)), nullptr);
    EXPECT_EQ(SystemDynamicLibraries().LoadHostLibrary(""), nullptr);
}

} // namespace
} // namespace pmx
