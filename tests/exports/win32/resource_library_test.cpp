// Where the texts of the library's dialogs come from: its own resources, or the library that the host
// chooses.
#include "exports/export_test.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"

#include "support/sjis.h"

#include <array>
#include <cstdlib>
#include <string>

namespace pmx::exports_test {
namespace {

constexpr UINT RegisterTitle = 1055;

std::string StringIn(const wchar_t* library, UINT id) {
    const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_NE(module, nullptr);
    std::array<char, 256> text{};
    const int length = LoadStringA(module, id, text.data(), static_cast<int>(text.size()));
    FreeLibrary(module);
    return {text.data(), static_cast<std::size_t>(length)};
}

/// The build runs this with both languages of the sample host.
bool IsEnglish() {
    const char* language = std::getenv("PMX_UI_LANGUAGE");
    return language != nullptr && std::string(language) == "en";
}

TEST(ResourceLibraryTest, ADialogsTextsAreThoseOfTheLanguageThatTheHostChooses) {
    const std::string english = StringIn(L"PMXTemplUIENU.dll", RegisterTitle);
    const std::string japanese = test::Sjis(u8"お気に入りの登録");
    ASSERT_NE(english, japanese);
    ASSERT_FALSE(english.empty());
    const test::TempFolder folder;
    const unsigned char table[PMX_TABLE_SIZE]{};
    std::string title;
    EXPECT_EQ(
        CallWithDialog(
            [&] { return EX_ShowChoiceUIEntry(folder.Path().c_str(), ListFile, ".pmt", table, 1, nullptr); },
            [&title](const OpenDialog& dialog) {
                title = dialog.Title();
                dialog.Press(CancelButton);
            }),
        1);
    EXPECT_EQ(title, IsEnglish() ? english : japanese);
}

} // namespace
} // namespace pmx::exports_test
