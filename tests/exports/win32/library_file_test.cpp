// The library's file as the system sees it: what it exports, needs, and tells of itself.
#include "PMXTemplUI.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include <windows.h>

namespace pmx::exports_test {
namespace {

using testing::Contains;
using testing::UnorderedElementsAre;

/// A library that is loaded into this process, byte by byte.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const wchar_t* name) : Module(GetModuleHandleW(name)) {}

    HMODULE Get() const { return Module; }

    const IMAGE_NT_HEADERS& Headers() const {
        return *At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }

    const IMAGE_DATA_DIRECTORY& Directory(std::size_t index) const {
        return Headers().OptionalHeader.DataDirectory[index];
    }

    template <typename Part>
    const Part* At(DWORD offset) const {
        return reinterpret_cast<const Part*>(reinterpret_cast<const char*>(Module) + offset);
    }

private:
    HMODULE Module;
};

class LibraryFileTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(EX_DestroyTemplList(nullptr), -1) << "keeps the linker from leaving the library out";
        ASSERT_NE(Library.Get(), nullptr);
    }

    LoadedLibrary Library{L"PMXTemplUI.dll"};
};

TEST_F(LibraryFileTest, ExportsTheTwelveFunctionsUnderTheirPlainNamesAndNothingElse) {
    const auto& exports =
        *Library.At<IMAGE_EXPORT_DIRECTORY>(Library.Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress);
    const auto* const offsets = Library.At<DWORD>(exports.AddressOfNames);
    std::vector<std::string> names;
    for (DWORD number = 0; number < exports.NumberOfNames; ++number) {
        names.emplace_back(Library.At<char>(offsets[number]));
    }
    EXPECT_THAT(names,
                UnorderedElementsAre("EX_ShowTemplateUI", "EX_CreateTemplList", "EX_DestroyTemplList",
                                     "EX_GetTemplListSize", "EX_GetAllTemplInfo", "EX_CurTemplInfo",
                                     "EX_CreateDefaultTempl", "EX_CreateDefaultChoice", "EX_SaveAsTemplInfo",
                                     "EX_ShowChoiceUIEntry", "EX_ConvertChoiceData", "EX_ShowChoiceUIBasic"));
    const auto* const functions = Library.At<DWORD>(exports.AddressOfFunctions);
    const auto used = std::count_if(functions, functions + exports.NumberOfFunctions,
                                    [](DWORD address) { return address != 0; });
    EXPECT_EQ(used, 12) << "none without a name";
}

TEST_F(LibraryFileTest, MayBeLoadedAnywhereAndRunsNoData) {
    const WORD marks = Library.Headers().OptionalHeader.DllCharacteristics;
    EXPECT_TRUE(marks & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
    EXPECT_TRUE(marks & IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA);
    EXPECT_TRUE(marks & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
    EXPECT_FALSE(Library.Headers().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
    EXPECT_GT(Library.Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC).Size, 0U);
}

TEST_F(LibraryFileTest, NeedsOnlyTheSystemAndTheHost) {
    const std::vector<std::string> allowed = {"kernel32.dll",  "user32.dll",   "gdi32.dll", "comctl32.dll",
                                              "comdlg32.dll",  "advapi32.dll", "imm32.dll", "msvcrt.dll",
                                              "pmxdocmgr.dll", "qrtcommon.dll"};
    const auto* import =
        Library.At<IMAGE_IMPORT_DESCRIPTOR>(Library.Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
    ASSERT_NE(import->Name, 0U);
    for (; import->Name != 0; ++import) {
        std::string name = Library.At<char>(import->Name);
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        EXPECT_THAT(allowed, Contains(name));
    }
    EXPECT_EQ(Library.Directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT).Size, 0U);
}

TEST_F(LibraryFileTest, TellsItsVersion) {
    const HRSRC found = FindResourceW(Library.Get(), MAKEINTRESOURCEW(VS_VERSION_INFO),
                                      MAKEINTRESOURCEW(16 /* RT_VERSION */));
    ASSERT_NE(found, nullptr);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(Library.Get(), found)));
    ASSERT_NE(bytes, nullptr);
    // Behind the lengths, the type, and the name, at the next multiple of four.
    constexpr std::size_t FixedPart = 40;
    VS_FIXEDFILEINFO version{};
    ASSERT_GE(SizeofResource(Library.Get(), found), FixedPart + sizeof version);
    std::memcpy(&version, bytes + FixedPart, sizeof version);
    EXPECT_EQ(version.dwSignature, 0xFEEF04BDU);
    EXPECT_EQ(version.dwFileVersionMS, 0x0001'0000U);
    EXPECT_EQ(version.dwProductVersionMS, version.dwFileVersionMS);
    EXPECT_EQ(version.dwFileType, static_cast<DWORD>(VFT_DLL));
}

} // namespace
} // namespace pmx::exports_test
