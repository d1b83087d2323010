#include "support/built_resources.h"

#include "res/ids.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace pmx {
namespace {

using test::BuiltResources;
using test::Language;

constexpr int FirstControl = 3000;
constexpr int LastControl = 3049;

/// Every control that has a note, the buttons that close a dialog included.
const std::set<int> WithNote{1,    2,    3003, 3004, 3006, 3007, 3009, 3010, 3012, 3014, 3016, 3017, 3018,
                             3020, 3022, 3023, 3024, 3025, 3026, 3027, 3028, 3029, 3030, 3031, 3032, 3034,
                             3035, 3037, 3038, 3039, 3040, 3041, 3042, 3044, 3045, 3046, 3047, 3048, 3049};

/// Controls without one: they only divide or prompt.
const std::set<int> WithoutNote{control::Separator, control::CreateLevelLine, control::CreatePrompt};

/// Form of a note: a heading with items, and perhaps an empty line and a second heading with items.
struct NoteForm {
    std::u16string Function;
    std::u16string Operation;
    std::u16string Item;
};

const NoteForm JapaneseForm{u"【機能】", u"【操作】", u"・"};
const NoteForm EnglishForm{u"[Function]", u"[Operation]", u"- "};

std::vector<std::u16string> Lines(const std::u16string& text) {
    std::vector<std::u16string> lines(1);
    for (const char16_t unit : text) {
        if (unit == u'\n') {
            lines.emplace_back();
        } else {
            lines.back() += unit;
        }
    }
    return lines;
}

bool IsItem(const std::u16string& line, const NoteForm& form) {
    return line.starts_with(form.Item) && line.size() > form.Item.size();
}

/// Moves `at` behind a heading and its items; false when there is no such heading or no item.
bool PassSection(const std::vector<std::u16string>& lines, std::size_t& at, const std::u16string& heading,
                 const NoteForm& form) {
    if (at == lines.size() || lines[at] != heading) {
        return false;
    }
    const std::size_t first = ++at;
    while (at < lines.size() && IsItem(lines[at], form)) {
        ++at;
    }
    return at > first;
}

bool HasForm(const std::u16string& note, const NoteForm& form) {
    const auto lines = Lines(note);
    std::size_t at = 0;
    if (!PassSection(lines, at, form.Function, form)) {
        return false;
    }
    if (at == lines.size()) {
        return true;
    }
    return lines[at++].empty() && PassSection(lines, at, form.Operation, form) && at == lines.size();
}

TEST(HelpForm, AllowsOneOrTwoHeadingsWithItems) {
    EXPECT_TRUE(HasForm(u"【機能】\n・a", JapaneseForm));
    EXPECT_TRUE(HasForm(u"【機能】\n・a\n\n【操作】\n・b\n・c", JapaneseForm));
    for (const std::u16string note : {u"・a", u"【機能】", u"【機能】\n", u"【機能】\n・", u"【機能】\n・a\n",
                                      u"【機能】\n・a\n\n", u"【機能】\n・a\n【操作】\n・b",
                                      u"【機能】\n・a\n\n【操作】", u"【機能】\r\n・a", u"【操作】\n・a"}) {
        EXPECT_FALSE(HasForm(note, JapaneseForm));
    }
}

TEST(JapaneseHelp, HasTheFixedForm) {
    for (const int id : WithNote) {
        const auto note = BuiltResources::Of(Language::Japanese).StringOf(id);
        EXPECT_TRUE(note && HasForm(*note, JapaneseForm)) << id;
    }
}

TEST(EnglishHelp, HasTheFixedForm) {
    for (const int id : WithNote) {
        const auto note = BuiltResources::Of(Language::English).StringOf(id);
        EXPECT_TRUE(note && HasForm(*note, EnglishForm)) << id;
    }
}

TEST(EnglishHelp, StatesTheLimitsThatTheJapaneseHelpStates) {
    const auto says = [](int id, const std::u16string& words) {
        return BuiltResources::Of(Language::English).StringOf(id).value_or(u"").find(words) !=
               std::u16string::npos;
    };
    for (const int id : {3003, 3007, 3012, 3041, 3042, 3044, 3045, 3046}) {
        EXPECT_TRUE(says(id, u"up to 32 single-byte characters (16 double-byte characters)")) << id;
        EXPECT_TRUE(says(id, u"'~' (tilde)")) << id;
    }
    for (const int id : {3014, 3028, 3029, 3030, 3031, 3032}) {
        EXPECT_TRUE(says(id, u"The category cannot be changed when")) << id;
    }
    EXPECT_TRUE(says(control::EditorList, u"up to 20 favorites"));
}

TEST(JapaneseHelp, IsThereForTheControlsThatHaveItAndNoOther) {
    const auto& resources = BuiltResources::Of(Language::Japanese);
    for (const int id : WithoutNote) {
        EXPECT_FALSE(resources.StringOf(id)) << id;
    }
    for (int id = FirstControl; id <= LastControl; ++id) {
        EXPECT_EQ(resources.StringOf(id).has_value(), WithNote.contains(id)) << id;
    }
}

TEST(JapaneseHelp, HasTheFixedNotes) {
    const std::u16string icons = u"【機能】\n"
                                 u"・ツールバー上に表示されるアイコンイメージを一覧表示します。\n"
                                 u"\n"
                                 u"【操作】\n"
                                 u"・変更したいアイコンを選択します。";
    const std::map<int, std::u16string> expected{
        {1, u"【機能】\n"
            u"・設定内容を保存し画面を閉じます。\n"
            u"\n"
            u"【操作】\n"
            u"・設定した項目に誤りがある場合、エラーメッセージを表示します。"},
        {2, u"【機能】\n・処理を中断し画面を閉じます。"},
        {3006, u"【機能】\n・現在使用しているアイコンを表示します。"},
        {3010, icons},
        {3018, u"【機能】\n・お気に入りをファイルから取り込み、[お気に入り一覧]に追加します。"},
        {3035, icons},
    };
    for (const auto& [id, note] : expected) {
        EXPECT_EQ(BuiltResources::Of(Language::Japanese).StringOf(id), note) << id;
    }
}

TEST(JapaneseHelp, IsTheSameForALabelAndTheControlItNames) {
    const auto& resources = BuiltResources::Of(Language::Japanese);
    const std::map<int, int> named{{control::BasicNameLabel, control::BasicName},
                                   {control::BasicListLabel, control::BasicList},
                                   {control::EditorNameLabel, control::EditorName},
                                   {control::EditorListLabel, control::EditorList},
                                   {control::PickerLabel, control::PickerIcons},
                                   {control::CreateNameLabel, control::CreateName},
                                   {control::RegisterNameLabel, control::RegisterName},
                                   {control::CurrentIconLabel, control::EditorIcon}};
    for (const auto& [label, controlId] : named) {
        EXPECT_EQ(resources.StringOf(label), resources.StringOf(controlId)) << label;
    }
}

bool Says(int id, const std::u16string& words) {
    return BuiltResources::Of(Language::Japanese).StringOf(id).value_or(u"").find(words) !=
           std::u16string::npos;
}

TEST(JapaneseHelp, StatesTheLimitsOfNames) {
    for (const int id : {3003, 3007, 3012, 3041, 3042, 3044, 3045, 3046}) {
        EXPECT_TRUE(Says(id, u"\n・名前の文字数は、半角32文字(全角16文字)以内です。\n")) << id;
        EXPECT_TRUE(Says(id, u"'~'(チルダ)は使用できません。")) << id;
    }
}

TEST(JapaneseHelp, SaysWhenTheLevelIsGiven) {
    for (const int id : {3014, 3028, 3029, 3030, 3031, 3032}) {
        EXPECT_TRUE(Says(id, u"印刷属性画面からお気に入りを作成する場合、属性は変更できません。")) << id;
        EXPECT_TRUE(Says(id, u"お気に入りをコピーする場合、属性は変更できません。")) << id;
    }
}

TEST(JapaneseHelp, SaysWhatBecomesOfTheToolbar) {
    EXPECT_TRUE(Says(control::EditorList, u"最大20個まで"));
    EXPECT_TRUE(Says(control::EditorUp, u"ツールバー上では、1つ左へ移動します。"));
    EXPECT_TRUE(Says(control::BasicUp, u"ツールバー上では、1つ左へ移動します。"));
    EXPECT_TRUE(Says(control::EditorDown, u"ツールバー上では、1つ右へ移動します。"));
    EXPECT_TRUE(Says(control::BasicDown, u"ツールバー上では、1つ右へ移動します。"));
    EXPECT_TRUE(Says(control::BasicDelete, u"ツールバーからも削除されます。"));
}

TEST(JapaneseHelp, SaysWhatStandardFavoritesDoNotAllow) {
    EXPECT_TRUE(Says(control::EditorExport, u"・標準のお気に入りの書き出しはできません。"));
    EXPECT_TRUE(Says(control::EditorEdit, u"・標準のお気に入りの編集はできません。"));
    EXPECT_TRUE(Says(control::EditorCopy, u"・標準のお気に入りのコピーはできません。"));
    EXPECT_TRUE(Says(control::EditorDelete, u"・標準のお気に入りの削除はできません。"));
    EXPECT_TRUE(Says(control::BasicDelete, u"・標準のお気に入りの削除はできません。"));
}

} // namespace
} // namespace pmx
