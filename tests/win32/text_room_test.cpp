// Every text of every dialog has the room that it needs, at the resolution of the present screen; the build runs this at
// several.
#include "platform/resources.h"
#include "platform/win32/wide_text.h"
#include "res/ids.h"
#include "win32/support/every_dialog.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

#include <commctrl.h>

namespace pmx {
namespace {

using test::ControlsOf;
using test::ForEachDialog;
using test::IsOfClass;
using test::Language;
using test::TextOf;

int Scaled(int pixels) {
    return MulDiv(pixels, static_cast<int>(GetDpiForSystem()), USER_DEFAULT_SCREEN_DPI);
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

SIZE RoomOf(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

/// What the text takes in the window's font, in lines no wider than `width`; 0 for a single line.
SIZE SizeOf(HWND window, const std::wstring& text, int width) {
    const HDC device = GetDC(window);
    const HGDIOBJ former =
        SelectObject(device, reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)));
    RECT taken{0, 0, width, 0};
    DrawTextW(device, text.c_str(), -1, &taken,
              DT_CALCRECT | static_cast<UINT>(width > 0 ? DT_WORDBREAK : DT_SINGLELINE));
    SelectObject(device, former);
    ReleaseDC(window, device);
    return {taken.right, taken.bottom};
}

void ExpectRoomForLabel(HWND label, const std::wstring& text) {
    const SIZE room = RoomOf(label);
    const SIZE taken = SizeOf(label, text, room.cx);
    EXPECT_LE(taken.cx, room.cx);
    EXPECT_LE(taken.cy, room.cy + 1) << "Descenders of Latin letters aside";
}

void ExpectRoomInButton(HWND button) {
    const bool isRadio = (GetWindowLongW(button, GWL_STYLE) & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
    const int decoration = isRadio ? Scaled(13 + 4) : Scaled(2 * 4);
    const SIZE taken = SizeOf(button, TextOf(button), 0);
    EXPECT_LE(taken.cx + decoration, RoomOf(button).cx);
    EXPECT_LE(taken.cy, RoomOf(button).cy);
}

void ExpectRoomInTitle(HWND dialog) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    const HFONT font = CreateFontIndirectW(&metrics.lfCaptionFont);
    const HDC device = GetDC(dialog);
    const HGDIOBJ former = SelectObject(device, font);
    const std::wstring title = TextOf(dialog);
    SIZE taken{};
    GetTextExtentPoint32W(device, title.c_str(), static_cast<int>(title.size()), &taken);
    SelectObject(device, former);
    DeleteObject(font);
    ReleaseDC(dialog, device);
    EXPECT_LE(taken.cx + 2 * GetSystemMetrics(SM_CXSIZE) + 2 * GetSystemMetrics(SM_CXDLGFRAME),
              RoomOf(dialog).cx);
}

/// The width that the titles of headings leave at both sides of them together.
int MarginsOfHeadings() {
    return 6 * GetSystemMetrics(SM_CXEDGE);
}

/// The texts of cells may come nearer to their right edge before they are cut.
int MarginsOfCells() {
    return 4 * GetSystemMetrics(SM_CXEDGE);
}

/// The tip that shows when the mouse rests on the heading; empty for none.
std::wstring TipOf(HWND header, int column) {
    std::array<wchar_t, 256> text{};
    HWND tips = nullptr;
    while (text[0] == L'\0' && (tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr)) != nullptr) {
        if (GetWindowThreadProcessId(tips, nullptr) == GetCurrentThreadId()) {
            TTTOOLINFOW tool{};
            tool.cbSize = sizeof tool;
            tool.hwnd = header;
            tool.uId = static_cast<UINT_PTR>(column);
            tool.lpszText = text.data();
            SendMessageW(tips, TTM_GETTEXTW, text.size(), reinterpret_cast<LPARAM>(&tool));
        }
    }
    return text.data();
}

void ExpectRoomForHeadings(HWND list) {
    const auto header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    const auto count = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    for (int column = 0; column < count; ++column) {
        std::array<wchar_t, 256> title{};
        HDITEMW item{};
        item.mask = HDI_TEXT | HDI_WIDTH;
        item.pszText = title.data();
        item.cchTextMax = static_cast<int>(title.size());
        SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        const bool isCut = SizeOf(header, title.data(), 0).cx + MarginsOfHeadings() > item.cxy;
        EXPECT_EQ(TipOf(header, column), isCut ? title.data() : L"") << column;
    }
}

void ExpectRoomForTexts(HWND list, int column, std::initializer_list<ResourceId> texts) {
    const auto width =
        static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column), 0));
    for (const ResourceId id : texts) {
        const std::wstring text = win32::ToWide(SystemResources().StringOf(id).value_or(""));
        EXPECT_LE(SizeOf(list, text, 0).cx + MarginsOfCells(), width) << id;
    }
}

void ExpectRoomInControl(HWND control) {
    const LONG style = GetWindowLongW(control, GWL_STYLE);
    if (IsOfClass(control, WC_BUTTONW)) {
        ExpectRoomInButton(control);
    } else if (IsOfClass(control, WC_STATICW) && (style & SS_TYPEMASK) == SS_LEFT) {
        ExpectRoomForLabel(control, TextOf(control));
    } else if (IsOfClass(control, WC_LISTVIEWW) && (style & LVS_TYPEMASK) == LVS_REPORT) {
        ExpectRoomForHeadings(control);
    }
}

/// An icon box takes the size of its icon.
void ExpectNoOverlap(const std::vector<HWND>& controls) {
    for (std::size_t first = 0; first < controls.size(); ++first) {
        for (std::size_t second = first + 1; second < controls.size(); ++second) {
            const RECT a = PlaceOf(controls[first]);
            const RECT b = PlaceOf(controls[second]);
            RECT common{};
            EXPECT_FALSE(IntersectRect(&common, &a, &b))
                << GetDlgCtrlID(controls[first]) << " and " << GetDlgCtrlID(controls[second]);
        }
    }
}

class TextRoom : public testing::TestWithParam<Language> {};

TEST_P(TextRoom, IsThereForEveryTextOfEveryDialog) {
    ForEachDialog(GetParam(), [](ResourceId id, HWND dialog) {
        SCOPED_TRACE(id);
        ExpectRoomInTitle(dialog);
        for (const HWND control : ControlsOf(dialog)) {
            SCOPED_TRACE(GetDlgCtrlID(control));
            ExpectRoomInControl(control);
        }
        ExpectNoOverlap(ControlsOf(dialog));
    });
}

TEST_P(TextRoom, IsThereForWhatStandsInTheListsAndForEveryPrompt) {
    ForEachDialog(GetParam(), [](ResourceId id, HWND dialog) {
        SCOPED_TRACE(id);
        if (id == dialog::Editor) {
            const HWND list = GetDlgItem(dialog, control::EditorList);
            ExpectRoomForTexts(list, 2,
                               {text::LevelDocument, text::LevelSection, text::LevelSheet, text::LevelFace,
                                text::LevelPage});
            ExpectRoomForTexts(list, 3, {text::KindStandard, text::KindUser});
        } else if (id == dialog::BasicList) {
            ExpectRoomForTexts(GetDlgItem(dialog, control::BasicList), 1,
                               {text::KindStandard, text::KindUser});
        } else if (id == dialog::CreateFavorite) {
            for (const ResourceId prompt : {text::CreatePromptNew, text::CreatePromptGivenLevel}) {
                ExpectRoomForLabel(GetDlgItem(dialog, control::CreatePrompt),
                                   win32::ToWide(SystemResources().StringOf(prompt).value_or("")));
            }
        }
    });
}

TEST_P(TextRoom, GrowsWithTheScreen) {
    ForEachDialog(GetParam(), [](ResourceId id, HWND dialog) {
        if (const char* const resolution = std::getenv("PMX_WINE_DPI")) {
            ASSERT_EQ(std::to_string(GetDpiForSystem()), resolution);
        }
        if (id != dialog::Editor && id != dialog::BasicList) {
            return;
        }
        const HWND list = GetDlgItem(dialog, id == dialog::Editor ? control::EditorList : control::BasicList);
        const std::vector<int> widths =
            id == dialog::Editor ? std::vector<int>{80, 180, 80, 80} : std::vector<int>{250, 100};
        for (std::size_t column = 0; column < widths.size(); ++column) {
            EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, column, 0), Scaled(widths[column])) << column;
        }
        if (const auto marks =
                reinterpret_cast<HIMAGELIST>(SendMessageW(list, LVM_GETIMAGELIST, LVSIL_STATE, 0))) {
            int width = 0;
            int height = 0;
            ImageList_GetIconSize(marks, &width, &height);
            EXPECT_EQ(width, Scaled(16));
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Every, TextRoom, testing::Values(Language::Japanese, Language::English),
                         [](const testing::TestParamInfo<Language>& language) {
                             return language.param == Language::Japanese ? "Japanese" : "English";
                         });

} // namespace
} // namespace pmx
