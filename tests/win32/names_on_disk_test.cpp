#include "support/sjis.h"

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

TEST(NamesUnderWine, AreTheSameAsThoseOfTheNativeBuild) {
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    const auto unixName = reinterpret_cast<UnixNameQuery>(
        reinterpret_cast<void*>(GetProcAddress(kernel, "wine_get_unix_file_name")));
    if (unixName == nullptr) {
        GTEST_SKIP() << "only Wine has names of another system behind its own";
    }
    for (const auto& [name, onDisk] : test::NamesOnDisk()) {
        const std::unique_ptr<char, HeapReleaser> path(unixName(Wide("Z:\\tmp\\" + name).c_str()));
        ASSERT_NE(path, nullptr);
        EXPECT_STREQ(path.get(), ("/tmp/" + onDisk).c_str());
    }
}

} // namespace
} // namespace pmx
