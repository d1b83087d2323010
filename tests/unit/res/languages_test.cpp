#include "support/built_resources.h"
#include "support/dialog_template.h"

#include "res/ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace pmx {
namespace {

using test::BuiltResources;
using test::DialogTemplate;
using test::Language;
using test::ResourceKind;
using test::TemplateControl;

constexpr int LastString = 3100;
constexpr int Dialogs[] = {dialog::Editor, dialog::CreateFavorite, dialog::IconPicker,
                           dialog::RegisterFavorite, dialog::BasicList};

const BuiltResources& Japanese() {
    return BuiltResources::Of(Language::Japanese);
}

const BuiltResources& English() {
    return BuiltResources::Of(Language::English);
}

/// The conversions of a printf format in order, "%%" left out.
std::vector<std::u16string> Placeholders(const std::u16string& format) {
    std::vector<std::u16string> found;
    for (std::size_t at = format.find(u'%'); at != std::u16string::npos; at = format.find(u'%', at + 2)) {
        const std::u16string conversion = format.substr(at, 2);
        if (conversion != u"%%") {
            found.push_back(conversion);
        }
    }
    return found;
}

TEST(EnglishResources, HaveTheStringsOfTheJapaneseOnes) {
    for (int id = 0; id <= LastString; ++id) {
        EXPECT_EQ(English().StringOf(id).has_value(), Japanese().StringOf(id).has_value()) << id;
    }
}

TEST(EnglishResources, HaveThePlaceholdersOfTheJapaneseOnes) {
    for (int id = 0; id <= LastString; ++id) {
        EXPECT_EQ(Placeholders(English().StringOf(id).value_or(u"")),
                  Placeholders(Japanese().StringOf(id).value_or(u"")))
            << id;
    }
    EXPECT_EQ(Placeholders(Japanese().StringOf(text::ToolbarFull).value_or(u"")),
              (std::vector<std::u16string>{u"%d"}));
    EXPECT_EQ(Placeholders(Japanese().StringOf(text::CopyOf).value_or(u"")),
              (std::vector<std::u16string>{u"%s"}));
}

TEST(EnglishResources, KeepTheLineEndAtTheEndOfAText) {
    const auto endsLine = [](const std::optional<std::u16string>& text) {
        return text && text->ends_with(u'\n');
    };
    for (int id = 0; id <= LastString; ++id) {
        EXPECT_EQ(endsLine(English().StringOf(id)), endsLine(Japanese().StringOf(id))) << id;
    }
}

TEST(EnglishResources, AreAsciiSoThatEveryCodePageShowsThem) {
    const auto isAscii = [](char16_t unit) { return unit == u'\n' || (unit >= u' ' && unit <= u'~'); };
    for (int id = 0; id <= LastString; ++id) {
        const std::u16string text = English().StringOf(id).value_or(u"");
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), isAscii)) << id;
    }
    for (const int id : Dialogs) {
        for (const TemplateControl& control :
             test::ParseDialogTemplate(English().Find(ResourceKind::Dialog, id)).Controls) {
            EXPECT_TRUE(std::all_of(control.Text.begin(), control.Text.end(),
                                    [](char byte) { return byte >= ' ' && byte <= '~'; }))
                << id << ' ' << control.Id;
        }
    }
}

TEST(EnglishResources, TranslateEveryTextButPatternsAndOk) {
    for (int id = 0; id <= LastString; ++id) {
        if (id != text::FilePattern && English().StringOf(id)) {
            EXPECT_NE(English().StringOf(id), Japanese().StringOf(id)) << id;
        }
    }
}

TEST(EnglishResources, HaveTheControlsOfTheJapaneseTemplatesInTheirOrder) {
    for (const int id : Dialogs) {
        const DialogTemplate english = test::ParseDialogTemplate(English().Find(ResourceKind::Dialog, id));
        const DialogTemplate japanese = test::ParseDialogTemplate(Japanese().Find(ResourceKind::Dialog, id));
        EXPECT_EQ(english.Style, japanese.Style) << id;
        ASSERT_EQ(english.Controls.size(), japanese.Controls.size()) << id;
        for (std::size_t index = 0; index < english.Controls.size(); ++index) {
            const TemplateControl& control = english.Controls[index];
            const TemplateControl& original = japanese.Controls[index];
            EXPECT_EQ(control.Id, original.Id) << id;
            EXPECT_EQ(control.ClassName, original.ClassName) << id << ' ' << control.Id;
            EXPECT_EQ(control.Style, original.Style) << id << ' ' << control.Id;
            EXPECT_EQ(control.Text.empty(), original.Text.empty()) << id << ' ' << control.Id;
            EXPECT_EQ(control.Text.find('&') == std::string::npos,
                      original.Text.find('&') == std::string::npos)
                << id << ' ' << control.Id;
        }
    }
}

TEST(EnglishResources, HaveThePictures) {
    for (const int id : {bitmap::SmallIcons, bitmap::LargeIcons, bitmap::StateImages, bitmap::Icons20,
                         bitmap::Icons24, bitmap::Icons40, bitmap::Icons48, bitmap::Icons64, bitmap::States20,
                         bitmap::States24, bitmap::States32}) {
        const auto english = English().Find(ResourceKind::Bitmap, id);
        const auto japanese = Japanese().Find(ResourceKind::Bitmap, id);
        EXPECT_FALSE(english.empty()) << id;
        EXPECT_TRUE(std::equal(english.begin(), english.end(), japanese.begin(), japanese.end())) << id;
    }
}

} // namespace
} // namespace pmx
