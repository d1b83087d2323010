#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <windows.h>

namespace pmx {
namespace {

using UnixNameQuery = char*(CDECL*)(const wchar_t* path);

struct HeapReleaser {
    void operator()(char* block) const { HeapFree(GetProcessHeap(), 0, block); }
};

std::wstring Wide(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    wide.resize(static_cast<std::size_t>(MultiByteToWideChar(
        CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

/// The native build maps the same names (its tests of NativePath name the same pairs), so that a folder made
/// by one build opens in the other.
TEST(NamesUnderWine, AreTheSameAsThoseOfTheNativeBuild) {
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto unixName = reinterpret_cast<UnixNameQuery>(
        reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
    if (unixName == nullptr) {
        GTEST_SKIP() << "only Wine has names of another system behind its own";
    }
    const std::pair<std::string, std::string> names[] = {
        {"\x83\x7E", "\xE3\x83\x9F"},
        {"\x95\x5C\x83\x5C", "\xE8\xA1\xA8\xE3\x82\xBD"},
        {"\x81\x60", "\xEF\xBD\x9E"},
        {"\x81\x7C", "\xEF\xBC\x8D"},
        {"\xB1", "\xEF\xBD\xB1"},
        {"\x80\xA0", "\xC2\x80\xEF\xA3\xB0"},
        {"\xFD\xFE\xFF", "\xEF\xA3\xB1\xEF\xA3\xB2\xEF\xA3\xB3"},
        {"\xF0\x40\xF9\xFC", "\xEE\x80\x80\xEE\x9D\x97"},
        {"\xED\x40", "\xE7\xBA\x8A"},
        {"~", "~"}};
    for (const auto& [name, onDisk] : names) {
        const std::unique_ptr<char, HeapReleaser> path(unixName(Wide("Z:\\tmp\\" + name).c_str()));
        ASSERT_NE(path, nullptr);
        EXPECT_STREQ(path.get(), ("/tmp/" + onDisk).c_str());
    }
}

} // namespace
} // namespace pmx
