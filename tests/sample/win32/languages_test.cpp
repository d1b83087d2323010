// The texts and dialogs of the sample host in both languages: one has what the other has.
#include "win32/support/module.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <windows.h>

namespace {

using pmx::test::Module;

Module LoadResources(const char* file) {
    return Module(LoadLibraryExA(file, nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
}

std::map<unsigned, std::wstring> TextsOf(const Module& module) {
    constexpr unsigned Last = 9999;
    std::map<unsigned, std::wstring> texts;
    for (unsigned id = 1; id <= Last; ++id) {
        const wchar_t* text = nullptr;
        const int length = LoadStringW(module.get(), id, reinterpret_cast<wchar_t*>(&text), 0);
        if (length > 0) {
            texts[id].assign(text, static_cast<std::size_t>(length));
        }
    }
    return texts;
}

/// The places that printf fills in, in their order.
std::wstring PlacesIn(const std::wstring& text) {
    std::wstring places;
    for (std::size_t at = text.find(L'%'); at != std::wstring::npos; at = text.find(L'%', at + 1)) {
        places += text.substr(at, text.compare(at, 3, L"%ls") == 0 ? 3 : 2) + L' ';
    }
    return places;
}

struct Control {
    int Id;
    std::wstring Text;
};

BOOL CALLBACK AddControl(HWND window, LPARAM parameter) {
    wchar_t text[200]{};
    GetWindowTextW(window, text, 200);
    reinterpret_cast<std::vector<Control>*>(parameter)->push_back({GetDlgCtrlID(window), text});
    return TRUE;
}

INT_PTR CALLBACK DoNothing(HWND /*window*/, UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return FALSE;
}

/// Made as a real window, never shown; a page as the child of another window.
std::vector<Control> ControlsOf(const Module& module, int dialog) {
    const HWND parent =
        CreateWindowW(L"STATIC", L"", WS_OVERLAPPED, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    const HWND window = CreateDialogParamW(module.get(), MAKEINTRESOURCEW(dialog), parent, &DoNothing, 0);
    std::vector<Control> controls;
    EnumChildWindows(window, &AddControl, reinterpret_cast<LPARAM>(&controls));
    DestroyWindow(window);
    DestroyWindow(parent);
    return controls;
}

/// The letters that Alt reaches the controls with; each once more than allowed is reported.
void ExpectDistinctKeys(const std::vector<Control>& controls) {
    std::set<wchar_t> keys;
    for (const Control& control : controls) {
        const auto mark = control.Text.find(L'&');
        if (mark != std::wstring::npos && mark + 1 < control.Text.size()) {
            EXPECT_TRUE(keys.insert(static_cast<wchar_t>(towupper(control.Text[mark + 1]))).second)
                << "control " << control.Id;
        }
    }
}

using Pair = std::pair<const char*, const char*>;

class LanguagesTest : public testing::TestWithParam<Pair> {
protected:
    Module Japanese = LoadResources(GetParam().first);
    Module English = LoadResources(GetParam().second);
};

TEST_P(LanguagesTest, HaveTheSameTextsWithTheSamePlaces) {
    const auto japanese = TextsOf(Japanese);
    const auto english = TextsOf(English);
    ASSERT_FALSE(japanese.empty());
    EXPECT_EQ(japanese.size(), english.size());
    for (const auto& [id, text] : japanese) {
        const auto other = english.find(id);
        ASSERT_NE(other, english.end()) << "text " << id;
        EXPECT_EQ(PlacesIn(text), PlacesIn(other->second)) << "text " << id;
    }
}

TEST_P(LanguagesTest, EnglishTextsHaveNoJapaneseLeft) {
    for (const auto& [id, text] : TextsOf(English)) {
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](wchar_t each) { return each < 0x100; })) << id;
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, LanguagesTest,
                         testing::Values(Pair{"PmxSampleHost.exe", "PmxSampleHostENU.dll"},
                                         Pair{"PMXPropUI.dll", "PMXPropUIENU.dll"}));

class AttributePagesTest : public testing::TestWithParam<int> {
protected:
    Module Japanese = LoadResources("PMXPropUI.dll");
    Module English = LoadResources("PMXPropUIENU.dll");
};

/// Without the labels: only one of the languages may have a word for a unit.
std::vector<int> NumbersOf(const std::vector<Control>& controls) {
    constexpr int Label = -1;
    std::vector<int> numbers;
    for (const Control& control : controls) {
        if (control.Id != Label) {
            numbers.push_back(control.Id);
        }
    }
    return numbers;
}

TEST_P(AttributePagesTest, HaveTheSameControlsInTheSameOrder) {
    const auto japanese = NumbersOf(ControlsOf(Japanese, GetParam()));
    ASSERT_FALSE(japanese.empty());
    EXPECT_EQ(japanese, NumbersOf(ControlsOf(English, GetParam())));
}

TEST_P(AttributePagesTest, AccessKeysAreDistinctAlsoFromTheFrame) {
    constexpr int Frame = 100;
    for (const Module* language : {&Japanese, &English}) {
        auto controls = ControlsOf(*language, GetParam());
        const auto frame = ControlsOf(*language, Frame);
        if (GetParam() != Frame) {
            controls.insert(controls.end(), frame.begin(), frame.end());
        }
        ExpectDistinctKeys(controls);
    }
}

INSTANTIATE_TEST_SUITE_P(Templates, AttributePagesTest, testing::Range(100, 109));

} // namespace
