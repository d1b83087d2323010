// What a screen reader is told of every control of every dialog.
#include "res/ids.h"
#include "win32/support/every_dialog.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>
#include <vector>

#include <oleacc.h>

namespace pmx {
namespace {

using test::ControlsOf;
using test::ForEachDialog;
using test::Language;

enum class Role : long {
    Line = 21,
    List = 33,
    Picture = 40,
    Label = 41,
    Text = 42,
    Button = 43,
    RadioButton = 45
};

struct Expected {
    ResourceId Dialog;
    ControlId Id;
    Role Is;
    const wchar_t* Name;
    const wchar_t* Key;
    const wchar_t* EnglishName;
    const wchar_t* EnglishKey;
};

const std::vector<Expected> Controls{
    {100, 3009, Role::Label, L"お気に入り一覧(T):", L"Alt+T", L"Favorites:", L"Alt+t"},
    {100, 3034, Role::List, L"お気に入り一覧", L"", L"Favorites", L""},
    {100, 3024, Role::Button, L"新規(N)...", L"Alt+N", L"New...", L"Alt+N"},
    {100, 3022, Role::Button, L"編集(E)...", L"Alt+E", L"Edit...", L"Alt+E"},
    {100, 3026, Role::Button, L"コピー(C)...", L"Alt+C", L"Copy...", L"Alt+C"},
    {100, 3023, Role::Button, L"削除(L)", L"Alt+L", L"Delete", L"Alt+l"},
    {100, 3016, Role::Button, L"↑上へ(U)", L"Alt+U", L"Move Up", L"Alt+U"},
    {100, 3017, Role::Button, L"↓下へ(D)", L"Alt+D", L"Move Down", L"Alt+D"},
    {100, 3025, Role::Button, L"アイコンの変更(S)...", L"Alt+S", L"Change Icon...", L"Alt+I"},
    {100, 3006, Role::Label, L"現在のアイコン:", L"", L"Current icon:", L""},
    {100, 3040, Role::Picture, L"現在のアイコン", L"", L"Current icon", L""},
    {100, 3007, Role::Label, L"名前(A):", L"Alt+A", L"Name:", L"Alt+a"},
    {100, 3042, Role::Text, L"名前(A):", L"Alt+A", L"Name:", L"Alt+a"},
    {100, 3018, Role::Button, L"取り込み(I)...", L"Alt+I", L"Import...", L"Alt+m"},
    {100, 3020, Role::Button, L"書き出し(O)...", L"Alt+O", L"Export...", L"Alt+x"},
    {100, 1, Role::Button, L"OK", L"", L"OK", L""},
    {100, 2, Role::Button, L"キャンセル", L"", L"Cancel", L""},
    {101, 3015, Role::Label, L"作成するお気に入り名と属性情報を設定してください。", L"",
     L"Enter a name for the new favorite and select the attributes that it sets.", L""},
    {101, 3012, Role::Label, L"作成するお気に入りの名前(N):", L"Alt+N", L"Name of the new favorite:",
     L"Alt+N"},
    {101, 3044, Role::Text, L"作成するお気に入りの名前(N):", L"Alt+N", L"Name of the new favorite:",
     L"Alt+N"},
    {101, 3014, Role::Label, L"作成するお気に入りの属性", L"", L"Attributes of the new favorite", L""},
    {101, 3013, Role::Line, L"区切り線", L"", L"Separator line", L""},
    {101, 3028, Role::RadioButton, L"文書(D)", L"Alt+D", L"Document", L"Alt+D"},
    {101, 3029, Role::RadioButton, L"セクション(S)", L"Alt+S", L"Section", L"Alt+S"},
    {101, 3030, Role::RadioButton, L"用紙(H)", L"Alt+H", L"Sheet", L"Alt+h"},
    {101, 3031, Role::RadioButton, L"面(F)", L"Alt+F", L"Face", L"Alt+F"},
    {101, 3032, Role::RadioButton, L"原稿(P)", L"Alt+P", L"Page", L"Alt+P"},
    {101, 1, Role::Button, L"OK", L"", L"OK", L""},
    {101, 2, Role::Button, L"キャンセル", L"", L"Cancel", L""},
    {102, 3010, Role::Label, L"アイコン一覧(I)", L"Alt+I", L"Icons", L"Alt+I"},
    {102, 3035, Role::List, L"アイコン一覧", L"", L"Icons", L""},
    {102, 1, Role::Button, L"OK", L"", L"OK", L""},
    {102, 2, Role::Button, L"キャンセル", L"", L"Cancel", L""},
    {103, 3045, Role::Label, L"お気に入りの名前(A):", L"Alt+A", L"Favorite name:", L"Alt+a"},
    {103, 3046, Role::Text, L"お気に入りの名前(A):", L"Alt+A", L"Favorite name:", L"Alt+a"},
    {103, 3006, Role::Label, L"現在のアイコン:", L"", L"Current icon:", L""},
    {103, 3038, Role::Picture, L"現在のアイコン", L"", L"Current icon", L""},
    {103, 3049, Role::Button, L"アイコンの変更(S)...", L"Alt+S", L"Change Icon...", L"Alt+I"},
    {103, 3000, Role::Line, L"区切り線", L"", L"Separator line", L""},
    {103, 1, Role::Button, L"OK", L"", L"OK", L""},
    {103, 2, Role::Button, L"キャンセル", L"", L"Cancel", L""},
    {104, 3004, Role::Label, L"お気に入り一覧(T):", L"Alt+T", L"Favorites:", L"Alt+t"},
    {104, 3037, Role::List, L"お気に入り一覧", L"", L"Favorites", L""},
    {104, 3027, Role::Button, L"削除(L)", L"Alt+L", L"Delete", L"Alt+l"},
    {104, 3047, Role::Button, L"↑上へ(U)", L"Alt+U", L"Move Up", L"Alt+U"},
    {104, 3048, Role::Button, L"↓下へ(D)", L"Alt+D", L"Move Down", L"Alt+D"},
    {104, 3025, Role::Button, L"アイコンの変更(S)...", L"Alt+S", L"Change Icon...", L"Alt+I"},
    {104, 3006, Role::Label, L"現在のアイコン:", L"", L"Current icon:", L""},
    {104, 3039, Role::Picture, L"現在のアイコン", L"", L"Current icon", L""},
    {104, 3003, Role::Label, L"名前(A):", L"Alt+A", L"Name:", L"Alt+a"},
    {104, 3041, Role::Text, L"名前(A):", L"Alt+A", L"Name:", L"Alt+a"},
    {104, 3000, Role::Line, L"区切り線", L"", L"Separator line", L""},
    {104, 1, Role::Button, L"OK", L"", L"OK", L""},
    {104, 2, Role::Button, L"キャンセル", L"", L"Cancel", L""},
};

struct Releaser {
    void operator()(IAccessible* object) const { object->Release(); }
};
using Accessible = std::unique_ptr<IAccessible, Releaser>;

Accessible AccessibleOf(HWND window) {
    constexpr IID AccessibleId = {
        0x618736e0, 0x3c3d, 0x11cf, {0x81, 0x0c, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71}};
    void* found = nullptr;
    AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), AccessibleId, &found);
    return Accessible(static_cast<IAccessible*>(found));
}

VARIANT Itself() {
    VARIANT self{};
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
}

std::wstring Taken(BSTR text) {
    std::wstring copy = text == nullptr ? L"" : std::wstring(text);
    SysFreeString(text);
    return copy;
}

void ExpectControl(HWND window, const Expected& expected, bool isEnglish) {
    SCOPED_TRACE(testing::Message() << expected.Dialog << ' ' << expected.Id);
    EXPECT_EQ(GetDlgCtrlID(window), expected.Id);
    const Accessible object = AccessibleOf(window);
    ASSERT_NE(object, nullptr);
    BSTR name = nullptr;
    object->get_accName(Itself(), &name);
    EXPECT_EQ(Taken(name), isEnglish ? expected.EnglishName : expected.Name);
    BSTR key = nullptr;
    object->get_accKeyboardShortcut(Itself(), &key);
    const std::wstring shortcut = Taken(key);
    // Some systems give a list the key of its label, too.
    EXPECT_TRUE(expected.Is == Role::List || shortcut == (isEnglish ? expected.EnglishKey : expected.Key))
        << testing::PrintToString(shortcut);
    VARIANT role{};
    object->get_accRole(Itself(), &role);
    constexpr long Client = 10; // which Wine says of every kind that it does not know more of
    EXPECT_TRUE(role.lVal == static_cast<long>(expected.Is) || role.lVal == Client) << role.lVal;
}

class AccessibleNames : public testing::TestWithParam<Language> {};

TEST_P(AccessibleNames, NameEveryControlOfEveryDialog) {
    CoInitialize(nullptr);
    std::size_t next = 0;
    ForEachDialog(GetParam(), [&next](ResourceId id, HWND dialog) {
        for (const HWND window : ControlsOf(dialog)) {
            ASSERT_LT(next, Controls.size());
            ASSERT_EQ(Controls[next].Dialog, id);
            ExpectControl(window, Controls[next++], GetParam() == Language::English);
        }
    });
    EXPECT_EQ(next, Controls.size());
    CoUninitialize();
}

INSTANTIATE_TEST_SUITE_P(Every, AccessibleNames, testing::Values(Language::Japanese, Language::English),
                         [](const testing::TestParamInfo<Language>& language) {
                             return language.param == Language::Japanese ? "Japanese" : "English";
                         });

} // namespace
} // namespace pmx
