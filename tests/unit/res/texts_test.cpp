#include "support/built_resources.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace pmx {
namespace {

using test::BuiltResources;
using test::Language;

constexpr int FirstText = 1000;
constexpr int LastText = 1057;
constexpr int LastNote = 3049;

/// Every text of the string table but the help notes. A number that is missing here must be missing there.
const std::map<int, std::u16string> ExpectedTexts{
    {1000, u"お気に入り情報の読み込みに失敗しました。\n"
           u"次の原因が考えられます。\n"
           u"・お気に入りファイルが見つからない\n"
           u"・他のプログラムがお気に入りファイルを使用中\n"
           u"・お気に入りファイルが認識できないフォーマット、またはお気に入りファイルが壊れている\n"},
    {1002, u"お気に入り情報の取得に失敗しました。"},
    {1003, u"お気に入りファイルを作成できませんでした。"},
    {1004, u"属性一覧ダイアログを表示できません。\n"
           u"インストールに失敗している可能性があります。"},
    {1005, u"お気に入り情報のファイル名が作成できませんでした。"},
    {1006, u"お気に入りファイルの取り込みに失敗しました。"},
    {1007, u"標準のお気に入りの編集はできません。\n"
           u"また、コピーの作成もできません。"},
    {1008, u"属性一覧ダイアログ上でエラーが発生しました。"},
    {1009, u"属性テーブルのリストを作成時にエラーが発生しました。"},
    {1010, u"標準お気に入りへの上書きできません。\n"
           u"他のお気に入り名を指定してください。"},
    {1011, u"すでに取り込まれているお気に入りへの上書きはできません。\n"
           u"他のお気に入り名を指定してください。"},
    {1012, u"標準のお気に入りへの上書きはできません。\n"
           u"他のお気に入り名を指定してください。"},
    {1013, u"入力したお気に入り名は既に存在しています。\n"
           u"上書きしますか？"},
    {1014, u"入力したお気に入り名は既に存在しています。\n"
           u"上書きしますか？"},
    {1015, u"メモリが不足しています。"},
    {1016, u"入力したお気に入り名は既に存在しています。\n"
           u"別のお気に入り名を入力してください。"},
    {1017, u"入力したお気に入り名はすでに登録されています。\n"
           u"別のお気に入り名を入力してください。"},
    {1018, u"お気に入り名を入力してください。\n"
           u"(前後の空白は取り除かれます)"},
    {1019, u"お気に入り名を入力してください。\n"
           u"(前後の空白は取り除かれます)"},
    {1020, u"お気に入り情報の読み込みに失敗しました。\n"
           u"次の原因が考えられます。\n"
           u"・お気に入りファイルが見つからない\n"
           u"・他のプログラムがお気に入りを使用中\n"
           u"・お気に入りファイルが認識できないフォーマット、またはお気に入りファイルが壊れている\n"},
    {1021, u"ツールバーの登録は最大%d個までです。\n"
           u"登録を行う場合は、他のお気に入りのツールバー登録を解除してください。"},
    {1022, u"入力したお気に入り名は既に存在しています。\n"
           u"別のお気に入り名を入力してください。"},
    {1023, u"お気に入り名"},
    {1024, u"属性のカテゴリ"},
    {1025, u"種類"},
    {1026, u"ツールバー"},
    {1030, u"有効"},
    {1031, u"お気に入り名"},
    {1032, u"標準"},
    {1033, u"ユーザー設定"},
    {1034, u"文書"},
    {1035, u"セクション"},
    {1036, u"用紙"},
    {1037, u"面"},
    {1038, u"原稿"},
    {1039, u"お気に入りの編集"},
    {1040, u"お気に入りの作成"},
    {1041, u"お気に入りの作成"},
    {1042, u"*.pmt"},
    {1047, u"\"%s\"のアイコンの変更"},
    {1048, u"アイコンの変更"},
    {1051, u"作成するお気に入り名と属性情報を設定してください。"},
    {1052, u"追加するお気に入り名を設定してください。"},
    {1053, u"Lumetra お気に入り (*.pmt)"},
    {1054, u"コピー ～ %s"},
    {1055, u"お気に入りの登録"},
    {1056, u"お気に入りの編集"},
    {1057, u"入力したお気に入り名にセパレータ文字' ~ 'が含まれています。\n"
           u"別のお気に入り名を入力してください。"},
};

TEST(JapaneseTexts, AreTheOnesThatTheProductShows) {
    const auto& resources = BuiltResources::Of(Language::Japanese);
    for (int id = FirstText; id <= LastText; ++id) {
        const auto expected = ExpectedTexts.find(id);
        const auto text = resources.StringOf(id);
        EXPECT_EQ(text.has_value(), expected != ExpectedTexts.end()) << id;
        if (text && expected != ExpectedTexts.end()) {
            EXPECT_EQ(*text, expected->second) << id;
        }
    }
}

TEST(JapaneseTexts, HaveACodeInTheSystemsCodePage) {
    const auto& resources = BuiltResources::Of(Language::Japanese);
    for (int id = 1; id <= LastNote; ++id) {
        const auto text = resources.StringOf(id);
        EXPECT_TRUE(!text || test::HasShiftJisCode(*text)) << id;
    }
    EXPECT_FALSE(test::HasShiftJisCode(u"コピー \u301C %s")) << "the wave dash is not the full-width tilde";
}

} // namespace
} // namespace pmx
