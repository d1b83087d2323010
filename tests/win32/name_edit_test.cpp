#include "platform/win32/name_edit.h"

#include "dialogs/base/pmx_dlg.h"
#include "res/ids.h"
#include "support/sjis.h"
#include "win32/support/real_desktop.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <commctrl.h>
#include <imm.h>

// The limit of a name box, in bytes of the code page, for every way in which text gets into the box.

namespace pmx {
namespace {

using test::RealUser;
using test::Sjis;

constexpr ControlId Box = control::RegisterName;

class NameDlg final : public CPmxDlg {
public:
    explicit NameDlg(const DialogServices& services)
        : CPmxDlg(dialog::RegisterFavorite, WindowHandle::None, services) {}

    using CPmxDlg::LimitName;
    using CPmxDlg::Window;

private:
    bool OnInitDialog() override {
        LimitName(Box);
        return true;
    }
};

class NameEditTest : public testing::Test {
protected:
    /// Opens a dialog with an empty name box that has the focus.
    void Run(const std::function<void(RealUser&)>& script) {
        Screen.Dialogs.OnOpened(dialog::RegisterFavorite, [script](RealUser& user) {
            user.TabTo(Box);
            script(user);
            user.Escape();
        });
        EXPECT_EQ(Dialog.DoModal(), CodeCancel);
    }

    /// Sends messages to the box, as programs and input methods do.
    static void Send(RealUser& user, UINT message, const std::wstring& characters) {
        const HWND box = user.Item(Box);
        user.OnDialogThread([&] {
            for (const wchar_t character : characters) {
                SendMessageW(box, message, character, 1);
            }
        });
    }

    static void Select(RealUser& user, WPARAM begin, LPARAM end) {
        const HWND box = user.Item(Box);
        user.OnDialogThread([&] { SendMessageW(box, EM_SETSEL, begin, end); });
    }

    test::RealDesktop Screen;
    NameDlg Dialog{Screen.Services};
};

std::string Bytes(std::size_t count) {
    return std::string(count, 'a');
}

/// Sixteen characters of two bytes, the second of which is that of a separator of paths.
std::string Sixteen() {
    return Sjis(u8"ソソソソソソソソソソソソソソソソ");
}

TEST_F(NameEditTest, TypedTextEndsAt32Bytes) {
    Run([](RealUser& user) {
        user.Type(Bytes(40));
        EXPECT_EQ(user.Text(Box), Bytes(32));
        user.Fill(Box, Sixteen() + Sjis(u8"表") + "a");
        EXPECT_EQ(user.Text(Box), Sixteen());
    });
}

TEST_F(NameEditTest, DoubleByteCharacterThatDoesNotFitIsLeftOutWhole) {
    Run([](RealUser& user) {
        user.Type(Bytes(31) + Sjis(u8"表"));
        EXPECT_EQ(user.Text(Box), Bytes(31));
        user.Type("b");
        EXPECT_EQ(user.Text(Box), Bytes(31) + "b");
    });
}

TEST_F(NameEditTest, HalfWidthKanaCountOneByte) {
    Run([](RealUser& user) {
        std::string kana;
        for (int count = 0; count < 33; ++count) {
            kana += Sjis(u8"ｱ");
        }
        user.Type(kana);
        EXPECT_EQ(user.Text(Box), kana.substr(0, 32));
    });
}

TEST_F(NameEditTest, WhatReplacesTheSelectionHasItsRoom) {
    Run([](RealUser& user) {
        user.Type(Sixteen());
        Select(user, 3, 5);
        user.Type("abcde");
        EXPECT_EQ(user.Text(Box), Sixteen().substr(0, 6) + "abcd" + Sixteen().substr(0, 22));
    });
}

TEST_F(NameEditTest, CharactersWithoutACodeAreNotTaken) {
    Run([](RealUser& user) {
        user.TypeWide(L"a\u20ACb\U0001F600c");
        EXPECT_EQ(user.Text(Box), "abc");
        user.TabTo(Box);
        user.PasteWide(L"d\u00E9\u20ACe");
        EXPECT_EQ(user.Text(Box), "de");
    });
}

TEST_F(NameEditTest, WaveDashBecomesTheOneOfTheCodePage) {
    Run([](RealUser& user) {
        user.TypeWide(L"\u301C");
        EXPECT_EQ(user.Text(Box), Sjis(u8"～"));
    });
}

TEST_F(NameEditTest, PastedTextIsCutBetweenCharacters) {
    Run([](RealUser& user) {
        user.Paste("x" + Sixteen());
        EXPECT_EQ(user.Text(Box), "x" + Sixteen().substr(0, 30));
        Select(user, 0, 1);
        user.Paste(Sjis(u8"表"));
        EXPECT_EQ(user.Text(Box), Sjis(u8"表") + Sixteen().substr(0, 30));
        Select(user, 0, 0);
        user.Paste("y");
        EXPECT_EQ(user.Text(Box), Sjis(u8"表") + Sixteen().substr(0, 30));
    });
}

/// The clipboard, held open and empty.
class HeldClipboard {
public:
    explicit HeldClipboard(HWND owner) {
        EXPECT_TRUE(OpenClipboard(owner));
        EXPECT_TRUE(EmptyClipboard());
    }
    ~HeldClipboard() { CloseClipboard(); }
    HeldClipboard(const HeldClipboard&) = delete;
    HeldClipboard& operator=(const HeldClipboard&) = delete;
};

TEST_F(NameEditTest, PastingWithoutATextChangesNothing) {
    Run([this](RealUser& user) {
        user.Type("abc");
        Select(user, 0, -1);
        const HWND box = user.Item(Box);
        { const HeldClipboard emptied(Screen.Host()); }
        user.OnDialogThread([box] { SendMessageW(box, WM_PASTE, 0, 0); });
        EXPECT_EQ(user.Text(Box), "abc");
        const HeldClipboard held(nullptr);
        user.OnDialogThread([box] { SendMessageW(box, WM_PASTE, 0, 0); });
        EXPECT_EQ(user.Text(Box), "abc");
    });
}

TEST_F(NameEditTest, NullIsTheEmptyText) {
    Run([](RealUser& user) {
        const HWND box = user.Item(Box);
        user.Type("abc");
        Select(user, 0, 1);
        user.OnDialogThread([box] { SendMessageW(box, EM_REPLACESEL, TRUE, 0); });
        EXPECT_EQ(user.Text(Box), "bc");
        user.OnDialogThread([box] { SendMessageW(box, WM_SETTEXT, 0, 0); });
        EXPECT_EQ(user.Text(Box), "");
    });
}

TEST_F(NameEditTest, ControlCharactersAreNoText) {
    Run([](RealUser& user) {
        user.Type("abc");
        Send(user, WM_CHAR, L"\x7F");
        EXPECT_EQ(user.Text(Box), "abc");
    });
}

TEST_F(NameEditTest, CharactersOfAnInputMethodEndAt32Bytes) {
    Run([](RealUser& user) {
        Send(user, WM_IME_CHAR, L"a" + std::wstring(20, L'\u30BD'));
        EXPECT_EQ(user.Text(Box), "a" + Sixteen().substr(0, 30));
        Send(user, WM_IME_CHAR, L"b");
        EXPECT_EQ(user.Text(Box), "a" + Sixteen().substr(0, 30) + "b");
        Send(user, WM_IME_CHAR, L"c\u20AC");
        EXPECT_EQ(user.Text(Box), "a" + Sixteen().substr(0, 30) + "b");
    });
}

TEST_F(NameEditTest, NarrowCharactersOfAnInputMethodAreTakenWhole) {
    Run([](RealUser& user) {
        const HWND box = user.Item(Box);
        user.Type(Bytes(28));
        user.OnDialogThread([box] {
            for (int count = 0; count < 3; ++count) {
                SendMessageA(box, WM_IME_CHAR, 0x835C, 1); // first byte in the upper half
            }
        });
        EXPECT_EQ(user.Text(Box), Bytes(28) + Sixteen().substr(0, 4));
    });
}

/// Needs an input method, which systems without a screen lack; see the tests of the input method in the
/// build.
class InputMethodTest : public NameEditTest {
protected:
    void SetUp() override {
        bool hasInputMethod = false;
        Run([&](RealUser& user) { hasInputMethod = user.HasInputMethod(); });
        if (!hasInputMethod) {
            GTEST_SKIP() << "no input method here";
        }
    }
};

TEST_F(InputMethodTest, CompositionIsCutBetweenCharacters) {
    Run([](RealUser& user) {
        user.Type("ab");
        Select(user, 1, 1);
        user.Compose(std::wstring(20, L'\u30BD'));
        EXPECT_EQ(user.Text(Box), "a" + Sixteen().substr(0, 30) + "b");
        user.Compose(L"\u8868");
        EXPECT_EQ(user.Text(Box), "a" + Sixteen().substr(0, 30) + "b");
    });
}

TEST_F(InputMethodTest, CompositionThatIsOpenWhenTheFocusLeavesIsTaken) {
    Run([](RealUser& user) {
        user.Type("a");
        user.BeginComposing(L"\u8868\u30BD");
        user.TabTo(control::Ok);
        EXPECT_EQ(user.Text(Box), "a" + Sjis(u8"表ソ"));
        user.TabTo(Box);
        user.Key(test::key::End);
        user.BeginComposing(L"\u30DF");
        user.VisitAnotherWindow();
        EXPECT_EQ(user.Text(Box), "a" + Sjis(u8"表ソミ"));
    });
}

TEST_F(InputMethodTest, CompositionThatFitsIsTakenWhole) {
    Run([](RealUser& user) {
        user.Compose(L"\u8868\u30BD");
        EXPECT_EQ(user.Text(Box), Sjis(u8"表ソ"));
    });
}

/// An edit box that puts in itself what an input method has composed, as some systems' do.
LRESULT CALLBACK PutInComposition(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                  DWORD_PTR composed) {
    if (message == WM_IME_COMPOSITION) {
        return DefSubclassProc(window, EM_REPLACESEL, TRUE, static_cast<LPARAM>(composed));
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(NameEditTest, CompositionThatTheBoxPutsInItselfIsCutBetweenCharacters) {
    Run([](RealUser& user) {
        user.OnDialogThread([&user] {
            const HWND box = CreateWindowExW(0, L"Edit", L"ab", WS_CHILD | ES_AUTOHSCROLL, 0, 0, 10, 10,
                                             user.Window(), nullptr, nullptr, nullptr);
            ASSERT_NE(box, nullptr);
            const std::wstring composed(20, L'\u30BD');
            SetWindowSubclass(box, &PutInComposition, 7, reinterpret_cast<DWORD_PTR>(composed.c_str()));
            win32::NameEdit edit(box, [] { FAIL() << "nothing is to fail"; });
            edit.SetLimit(9);
            SendMessageW(box, EM_SETLIMITTEXT, 0, 0); // the box itself takes any length
            SendMessageW(box, EM_SETSEL, 1, 1);
            SendMessageW(box, WM_IME_COMPOSITION, 0, GCS_COMPSTR);
            SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"ab"));
            SendMessageW(box, EM_SETSEL, 1, 1);
            SendMessageW(box, WM_IME_COMPOSITION, 0, GCS_RESULTSTR);
            std::wstring text(40, L'\0');
            text.resize(static_cast<std::size_t>(GetWindowTextW(box, text.data(), 40)));
            EXPECT_EQ(text, L"a\u30BD\u30BD\u30BDb");
            DWORD caret = 0;
            SendMessageW(box, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
            EXPECT_EQ(caret, 4U);
            DestroyWindow(box);
        });
    });
}

TEST_F(NameEditTest, TextThatTheDialogPutsInIsCutBetweenCharacters) {
    Run([this](RealUser& user) {
        user.OnDialogThread([this] { Dialog.Window().SetText(Box, "x" + Sixteen()); });
        EXPECT_EQ(user.Text(Box), "x" + Sixteen().substr(0, 30));
    });
}

TEST_F(NameEditTest, TextThatProgramsPutInIsCutBetweenCharacters) {
    Run([](RealUser& user) {
        const HWND box = user.Item(Box);
        const std::string text = "x" + Sixteen();
        user.OnDialogThread([&] { SetWindowTextA(box, text.c_str()); });
        EXPECT_EQ(user.Text(Box), text.substr(0, 31));
        Select(user, 0, -1);
        user.OnDialogThread(
            [&] { SendMessageA(box, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str())); });
        EXPECT_EQ(user.Text(Box), text.substr(0, 31));
        Select(user, 0, 0);
        user.OnDialogThread(
            [&] { SendMessageW(box, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\u8868")); });
        EXPECT_EQ(user.Text(Box), text.substr(0, 31));
    });
}

TEST_F(NameEditTest, UndoBringsNoLongerTextBack) {
    Run([](RealUser& user) {
        const HWND box = user.Item(Box);
        user.Type(Bytes(20));
        Select(user, 0, -1);
        user.Paste(Sixteen());
        user.OnDialogThread([box] { SendMessageW(box, EM_UNDO, 0, 0); });
        EXPECT_LE(user.Text(Box).size(), 32U);
    });
}

TEST_F(NameEditTest, LimitSetLaterCutsWhatIsThere) {
    Run([](RealUser& user) {
        user.OnDialogThread([&user] {
            const HWND box = CreateWindowExW(0, L"Edit", L"", WS_CHILD, 0, 0, 10, 10, user.Window(), nullptr,
                                             nullptr, nullptr);
            ASSERT_NE(box, nullptr);
            win32::NameEdit edit(box, [] { FAIL() << "nothing is to fail"; });
            SetWindowTextW(box, L"ab\u30BDd");
            EXPECT_EQ(GetWindowTextLengthW(box), 4);
            edit.SetLimit(3);
            EXPECT_EQ(GetWindowTextLengthW(box), 2);
            DestroyWindow(box);
        });
    });
}

} // namespace
} // namespace pmx
