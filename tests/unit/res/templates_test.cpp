#include "support/built_resources.h"
#include "support/dialog_template.h"
#include "support/sjis.h"

#include "res/ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace pmx {
namespace {

using test::BuiltResources;
using test::ControlKind;
using test::DialogTemplate;
using test::Language;
using test::ResourceKind;
using test::Sjis;
using test::TemplateControl;

constexpr std::uint32_t ModalFrame = 0x80;
constexpr std::uint32_t ContextHelp = 0x2000;
constexpr std::uint32_t CaptionWithMenu = 0x00C80000;
constexpr std::uint32_t Border = 0x00800000;
constexpr std::uint32_t Group = 0x00020000;
constexpr std::uint32_t TabStop = 0x00010000;
constexpr std::uint32_t DefaultButton = 0x1;
constexpr std::uint32_t AutoRadioButton = 0x9;
constexpr std::uint32_t AutoScroll = 0x80;
constexpr std::uint32_t Icon = 0x3;
constexpr std::uint32_t EtchedLine = 0x10;
constexpr std::uint32_t NoPrefix = 0x80;
constexpr std::uint32_t SingleSelectionAlwaysShown = 0xC;
constexpr std::uint32_t ReportView = 0x1 | SingleSelectionAlwaysShown;
constexpr std::uint32_t IconViewWithoutHeader =
    0x4000 | 0x100 | SingleSelectionAlwaysShown; // and arranged by itself

/// A control as the dialog needs it. Styles are complete but for group and tab stop, visible and child.
struct ExpectedControl {
    int Id;
    const char* ClassName;
    const char8_t* Text;
    std::uint32_t Style = 0;
};

struct ExpectedDialog {
    int Id;
    const char8_t* Title;
    int FontPoints;
    std::optional<std::pair<int, int>> Size; ///< none where the layout decides
    std::vector<ExpectedControl> Controls;
    std::vector<int> TabStops; ///< in order, ending with the buttons that close the dialog
};

const std::vector<ExpectedDialog> ExpectedDialogs{
    {100,
     u8"お気に入りの編集",
     9,
     std::nullopt,
     {{3009, "STATIC", u8"お気に入り一覧(&T):"},
      {3034, "SYSLISTVIEW32", u8"お気に入り一覧", ReportView | Border},
      {3024, "BUTTON", u8"新規(&N)..."},
      {3022, "BUTTON", u8"編集(&E)..."},
      {3026, "BUTTON", u8"コピー(&C)..."},
      {3023, "BUTTON", u8"削除(&L)"},
      {3016, "BUTTON", u8"↑上へ(&U)"},
      {3017, "BUTTON", u8"↓下へ(&D)"},
      {3025, "BUTTON", u8"アイコンの変更(&S)..."},
      {3006, "STATIC", u8"現在のアイコン:"},
      {3040, "STATIC", u8"現在のアイコン", Icon | Border},
      {3007, "STATIC", u8"名前(&A):"},
      {3042, "EDIT", u8"", AutoScroll | Border},
      {3018, "BUTTON", u8"取り込み(&I)..."},
      {3020, "BUTTON", u8"書き出し(&O)..."},
      {1, "BUTTON", u8"OK", DefaultButton},
      {2, "BUTTON", u8"キャンセル"}},
     {3034, 3024, 3022, 3026, 3023, 3016, 3017, 3025, 3042, 3018, 3020, 1, 2}},
    {101,
     u8"お気に入りの新規作成",
     10,
     std::pair{203, 162},
     {{3015, "STATIC", u8"", NoPrefix},
      {3012, "STATIC", u8"作成するお気に入りの名前(&N):"},
      {3044, "EDIT", u8"", AutoScroll | Border},
      {3014, "STATIC", u8"作成するお気に入りの属性"},
      {3013, "STATIC", u8"区切り線", EtchedLine},
      {3028, "BUTTON", u8"文書(&D)", AutoRadioButton},
      {3029, "BUTTON", u8"セクション(&S)", AutoRadioButton},
      {3030, "BUTTON", u8"用紙(&H)", AutoRadioButton},
      {3031, "BUTTON", u8"面(&F)", AutoRadioButton},
      {3032, "BUTTON", u8"原稿(&P)", AutoRadioButton},
      {1, "BUTTON", u8"OK", DefaultButton},
      {2, "BUTTON", u8"キャンセル"}},
     {3044, 3028, 1, 2}},
    {102,
     u8"アイコンの変更",
     9,
     std::pair{262, 203},
     {{3010, "STATIC", u8"アイコン一覧(&I)"},
      {3035, "SYSLISTVIEW32", u8"アイコン一覧", IconViewWithoutHeader | Border},
      {1, "BUTTON", u8"OK", DefaultButton},
      {2, "BUTTON", u8"キャンセル"}},
     {3035, 1, 2}},
    {103,
     u8"お気に入りの登録",
     9,
     std::pair{213, 86},
     {{3045, "STATIC", u8"お気に入りの名前(&A):"},
      {3046, "EDIT", u8"", AutoScroll | Border},
      {3006, "STATIC", u8"現在のアイコン:"},
      {3038, "STATIC", u8"現在のアイコン", Icon | Border},
      {3049, "BUTTON", u8"アイコンの変更(&S)..."},
      {3000, "STATIC", u8"区切り線", EtchedLine},
      {1, "BUTTON", u8"OK", DefaultButton},
      {2, "BUTTON", u8"キャンセル"}},
     {3046, 3049, 1, 2}},
    {104,
     u8"お気に入りの編集",
     9,
     std::pair{314, 195},
     {{3004, "STATIC", u8"お気に入り一覧(&T):"},
      {3037, "SYSLISTVIEW32", u8"お気に入り一覧", ReportView | Border},
      {3027, "BUTTON", u8"削除(&L)"},
      {3047, "BUTTON", u8"↑上へ(&U)"},
      {3048, "BUTTON", u8"↓下へ(&D)"},
      {3025, "BUTTON", u8"アイコンの変更(&S)..."},
      {3006, "STATIC", u8"現在のアイコン:"},
      {3039, "STATIC", u8"現在のアイコン", Icon | Border},
      {3003, "STATIC", u8"名前(&A):"},
      {3041, "EDIT", u8"", AutoScroll | Border},
      {3000, "STATIC", u8"区切り線", EtchedLine},
      {1, "BUTTON", u8"OK", DefaultButton},
      {2, "BUTTON", u8"キャンセル"}},
     {3037, 3027, 3047, 3048, 3025, 3041, 1, 2}}};

DialogTemplate Template(Language language, int id) {
    return test::ParseDialogTemplate(BuiltResources::Of(language).Find(ResourceKind::Dialog, id));
}

/// The letter that the text underlines, in capitals; 0 without one.
char AccessKey(const std::string& text) {
    const std::size_t mark = text.find('&'); // no trail byte
    return mark == std::string::npos || mark + 1 == text.size()
               ? '\0'
               : static_cast<char>(std::toupper(static_cast<unsigned char>(text[mark + 1])));
}

TEST(JapaneseTemplates, HaveTheControlsOfTheirDialogs) {
    constexpr std::uint32_t VisibleChild = 0x50000000;
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        const DialogTemplate dialog = Template(Language::Japanese, expected.Id);
        EXPECT_EQ(dialog.Title, Sjis(expected.Title));
        ASSERT_EQ(dialog.Controls.size(), expected.Controls.size()) << expected.Id;
        for (std::size_t index = 0; index < expected.Controls.size(); ++index) {
            const TemplateControl& control = dialog.Controls[index];
            const ExpectedControl& wanted = expected.Controls[index];
            EXPECT_EQ(control.Id, wanted.Id) << expected.Id;
            EXPECT_EQ(control.ClassName, wanted.ClassName) << control.Id;
            EXPECT_EQ(control.Text, Sjis(wanted.Text)) << control.Id;
            EXPECT_EQ(control.Style & ~(Group | TabStop), wanted.Style | VisibleChild) << control.Id;
            EXPECT_EQ(control.ExtendedStyle, 0U) << control.Id;
        }
    }
}

TEST(JapaneseTemplates, HaveTheirFontAndSize) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        const DialogTemplate dialog = Template(Language::Japanese, expected.Id);
        EXPECT_EQ(dialog.FontName, "MS UI Gothic") << expected.Id;
        EXPECT_EQ(dialog.FontPoints, expected.FontPoints) << expected.Id;
        if (expected.Size) {
            EXPECT_EQ(std::pair(dialog.Width, dialog.Height), *expected.Size) << expected.Id;
        }
    }
}

TEST(JapaneseTemplates, GiveIconBoxesTheirSize) {
    for (const auto& [dialog, box, width, height] :
         {std::tuple{dialog::Editor, control::EditorIcon, 20, 20},
          std::tuple{dialog::RegisterFavorite, control::RegisterIcon, 20, 20},
          std::tuple{dialog::BasicList, control::BasicIcon, 18, 21}}) {
        for (const TemplateControl& control : Template(Language::Japanese, dialog).Controls) {
            if (control.Id == box) {
                EXPECT_EQ(std::pair(control.Width, control.Height), std::pair(width, height)) << box;
            }
        }
    }
}

/// What holds for the dialogs in every language.
class Templates : public testing::TestWithParam<Language> {
protected:
    static DialogTemplate Of(const ExpectedDialog& dialog) { return Template(GetParam(), dialog.Id); }
};

TEST_P(Templates, AreModalDialogsWithAHelpButton) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        const DialogTemplate dialog = Of(expected);
        EXPECT_EQ(dialog.Style & (ModalFrame | ContextHelp | CaptionWithMenu),
                  ModalFrame | ContextHelp | CaptionWithMenu)
            << expected.Id;
    }
}

TEST_P(Templates, UseNoAccessKeyTwice) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        std::set<char> keys;
        for (const TemplateControl& control : Of(expected).Controls) {
            const char key = AccessKey(control.Text);
            EXPECT_TRUE(key == '\0' || keys.insert(key).second) << expected.Id << ' ' << key;
        }
    }
}

TEST_P(Templates, PutALabelWithAnAccessKeyDirectlyBeforeTheControlItNames) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        const DialogTemplate dialog = Of(expected);
        for (std::size_t index = 0; index + 1 < dialog.Controls.size(); ++index) {
            const TemplateControl& control = dialog.Controls[index];
            if (control.Kind == ControlKind::Label && AccessKey(control.Text) != '\0') {
                const TemplateControl& next = dialog.Controls[index + 1];
                EXPECT_TRUE(next.IsTabStop() && AccessKey(next.Text) == '\0')
                    << expected.Id << ' ' << control.Id;
            }
        }
    }
}

TEST_P(Templates, AreWalkedWithTheTabKeyInReadingOrder) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        std::vector<int> stops;
        for (const TemplateControl& control : Of(expected).Controls) {
            if (control.IsTabStop()) {
                stops.push_back(control.Id);
            }
        }
        EXPECT_EQ(stops, expected.TabStops) << expected.Id;
    }
}

TEST_P(Templates, KeepTheArrowKeysAmongTheLevels) {
    std::vector<int> groups;
    for (const TemplateControl& control : Template(GetParam(), dialog::CreateFavorite).Controls) {
        if (control.BeginsGroup()) {
            groups.push_back(control.Id);
        }
    }
    EXPECT_EQ(std::count(groups.begin(), groups.end(), control::CreateLevelDocument), 1);
    EXPECT_EQ(std::count(groups.begin(), groups.end(), control::Ok), 1);
    for (const int level : {control::CreateLevelSection, control::CreateLevelSheet, control::CreateLevelFace,
                            control::CreateLevelPage}) {
        EXPECT_EQ(std::count(groups.begin(), groups.end(), level), 0) << level;
    }
}

TEST_P(Templates, LeaveAMarginAndOverlapNothing) {
    constexpr int Margin = 7;
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        const DialogTemplate dialog = Of(expected);
        for (std::size_t index = 0; index < dialog.Controls.size(); ++index) {
            const TemplateControl& a = dialog.Controls[index];
            EXPECT_GE(a.X, Margin) << expected.Id << ' ' << a.Id;
            EXPECT_GE(a.Y, Margin) << expected.Id << ' ' << a.Id;
            EXPECT_LE(a.X + a.Width, dialog.Width - Margin) << expected.Id << ' ' << a.Id;
            EXPECT_LE(a.Y + a.Height, dialog.Height - Margin) << expected.Id << ' ' << a.Id;
            for (std::size_t other = index + 1; other < dialog.Controls.size(); ++other) {
                const TemplateControl& b = dialog.Controls[other];
                EXPECT_FALSE(a.X < b.X + b.Width && b.X < a.X + a.Width && a.Y < b.Y + b.Height &&
                             b.Y < a.Y + a.Height)
                    << expected.Id << ": " << a.Id << " and " << b.Id;
            }
        }
    }
}

/// A dialog unit is a fourth of the font's mean width: one of a fixed-pitch font takes four units for each
/// byte.
constexpr int UnitsPerByte = 4;

int TextUnits(const std::string& text) {
    return UnitsPerByte * static_cast<int>(text.size() - (AccessKey(text) == '\0' ? 0 : 1));
}

int Decoration(ControlKind kind) {
    constexpr int ButtonFrame = 8;
    constexpr int RadioCircle = 12;
    if (kind == ControlKind::PushButton) {
        return ButtonFrame;
    }
    return kind == ControlKind::RadioButton ? RadioCircle : 0;
}

/// Lists, icon boxes and lines have texts for screen readers only.
bool ShowsText(const TemplateControl& control) {
    const bool isLine = control.ClassName == "STATIC" && (control.Style & 0x1FU) == EtchedLine;
    return control.Kind == ControlKind::PushButton || control.Kind == ControlKind::RadioButton ||
           (control.Kind == ControlKind::Label && !isLine);
}

TEST_P(Templates, CutOffNoText) {
    for (const ExpectedDialog& expected : ExpectedDialogs) {
        for (const TemplateControl& control : Of(expected).Controls) {
            if (!ShowsText(control)) {
                continue;
            }
            EXPECT_LE(TextUnits(control.Text) + Decoration(control.Kind), control.Width)
                << expected.Id << ' ' << control.Id;
        }
    }
}

TEST_P(Templates, HaveRoomForTheLongestPrompt) {
    constexpr int LineHeight = 8;
    const auto& resources = BuiltResources::Of(GetParam());
    for (const TemplateControl& control : Template(GetParam(), dialog::CreateFavorite).Controls) {
        if (control.Id != control::CreatePrompt) {
            continue;
        }
        for (const int id : {text::CreatePromptNew, text::CreatePromptGivenLevel}) {
            const std::u16string prompt = resources.StringOf(id).value_or(u"");
            const bool wide =
                GetParam() == Language::Japanese; // of which every character is a double-byte one
            const int units = UnitsPerByte * (wide ? 2 : 1) * static_cast<int>(prompt.size());
            EXPECT_LE(units, control.Width * (control.Height / LineHeight)) << id;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, Templates, testing::Values(Language::Japanese, Language::English),
                         [](const testing::TestParamInfo<Language>& language) {
                             return language.param == Language::Japanese ? "Japanese" : "English";
                         });

} // namespace
} // namespace pmx
