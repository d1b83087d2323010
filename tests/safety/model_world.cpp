#include "safety/model_world.h"

#include "frame/list_exports.h"
#include "store/list_file.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <sstream>

namespace pmx::test {

namespace {

constexpr const char* SectionOfOthers = "[Other]\r\nx=1\r\n; mine\r\n";
constexpr std::size_t ActionsKept = 60;

void WriteTo(const TempFolder& folder, const std::string& name, const model::File& content) {
    if (content.Attributes) {
        FakeHost::WriteFavorite(folder, name, {ForHost(content.Attributes), content.Level, content.Name});
    } else {
        folder.Write(name, "no favorite");
    }
}

std::vector<std::string> Sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
}

/// The lines of a section, without their ends.
std::vector<std::string> LinesOf(const std::string& file, const std::string& section) {
    std::vector<std::string> lines;
    std::istringstream stream(file);
    bool isInside = false;
    for (std::string line; std::getline(stream, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        if (line.starts_with("[")) {
            isInside = line == "[" + section + "]";
        } else if (isInside && !line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace

_LM_DOCUMENTLAYOUTTABLE ForHost(const model::Table& table) {
    _LM_DOCUMENTLAYOUTTABLE host{};
    std::memcpy(host.Bytes, table->data(), table->size());
    return host;
}

model::Table FromHost(const _LM_DOCUMENTLAYOUTTABLE& table) {
    auto bytes = std::make_shared<model::TableBytes>();
    std::memcpy(bytes->data(), table.Bytes, bytes->size());
    return bytes;
}

ModelWorld::ModelWorld(unsigned seed) : Random(seed) {
    FillFolders();
}

std::string ModelWorld::AnyName() {
    static const std::array<std::string, 26> Names = {"A",
                                                      "a",
                                                      "AB",
                                                      "aB",
                                                      "b ",
                                                      "\t C ",
                                                      "x y",
                                                      Sjis(u8"ミ"),
                                                      Sjis(u8"ア"),
                                                      Sjis(u8"ヂ"),
                                                      Sjis(u8"表"),
                                                      Sjis(u8"Ａ"),
                                                      Sjis(u8"ソ×能～"),
                                                      Sjis(u8"ｱｲｳ"),
                                                      "Template",
                                                      "Template-1",
                                                      "x/y:z*?",
                                                      "NUL",
                                                      "a=b;[c]\"d'",
                                                      "thirty-two bytes and a few more.",
                                                      "thirty-one bytes and more : abc" + Sjis(u8"表d"),
                                                      Sjis(u8"全角で十六文字よりも長い名前です。"),
                                                      "a~b",
                                                      Sjis(u8"ミ") + "~",
                                                      "",
                                                      "\t  "};
    return AnyOf(Names) + (OneIn(3) ? std::to_string(Below(20)) : "");
}

void ModelWorld::Note(const std::string& action) {
    if (LastActions.size() >= 2 * ActionsKept) {
        LastActions.erase(LastActions.begin(), LastActions.begin() + ActionsKept);
    }
    LastActions.push_back(action);
    ++Count;
}

std::string ModelWorld::Trace() const {
    std::string text;
    const std::size_t first = LastActions.size() > ActionsKept ? LastActions.size() - ActionsKept : 0;
    for (std::size_t number = first; number < LastActions.size(); ++number) {
        text += "  " + Utf8(LastActions[number]) + '\n';
    }
    return text;
}

model::Table ModelWorld::AnyTable() {
    return FromHost(TableOf(static_cast<unsigned char>(Random())));
}

// What happens outside the dialogs

model::Favorite ModelWorld::AnyListed(int number, bool isCrowded) {
    model::Favorite one;
    one.Name = model::Trimmed(AnyName());
    if (one.Name.empty() || model::HasTilde(one.Name) || OneIn(2)) {
        one.Name = "F" + std::to_string(number);
    }
    if (OneIn(12)) {
        one.Name += " - a name that is longer than what the box holds";
    }
    one.IsStandard = OneIn(5);
    one.Level = one.IsStandard ? 101 : OneIn(isCrowded ? 10 : 3) ? AnyLevel() : 1;
    one.OnToolbar = model::IsDocumentLevel(one.Level) && !OneIn(isCrowded ? 8 : 4);
    one.Icon = OneIn(10) ? IntBelow(200) - 70 : IntBelow(model::IconCount);
    one.File = one.IsStandard ? std::to_string(1 + Below(5)) : "F" + std::to_string(number) + ".pmt";
    if (!one.IsStandard && OneIn(25)) {
        one.File = OneIn(2) ? "F0.pmt" : "..\\outside.pmt";
    }
    if (OneIn(40)) {
        one.Level = IntBelow(12);
    }
    return one;
}

void ModelWorld::FillFolders() {
    static constexpr std::array<int, 6> Sizes = {0, 1, 2, 4, 9, 26};
    const int size = AnyOf(Sizes);
    const bool isCrowded = size > model::ToolbarLimit;
    model::Favorites lines;
    for (int number = 0; number < size; ++number) {
        lines.push_back(AnyListed(number, isCrowded));
        const model::Favorite& one = lines.back();
        if (!one.IsStandard && one.File.front() == 'F' && !OneIn(15)) {
            WriteFile(one.File, {one.Name, one.Level, AnyTable()});
        }
    }
    Note("somebody fills the folder with " + std::to_string(size) + " favorites");
    ExpectList(lines, lines.size());
    WriteListFile();
    for (const char* const name : {"A.pmt", "x.y.pmt", " a~b.pmt", "noextension", "damaged.pmt"}) {
        const model::File content{OneIn(8) ? " A" : AnyName(), OneIn(20) ? 9 : AnyLevel(),
                                  std::string(name) == "damaged.pmt" ? nullptr : AnyTable()};
        Outside.Write(name, content);
        WriteTo(Elsewhere, name, content);
    }
}

void ModelWorld::WriteListFile() {
    std::string text = SectionOfOthers + std::string("[PMXTemplateList]\r\nTemplateNum=") +
                       std::to_string(CountInList) + "\r\n";
    for (std::size_t number = 0; number < Lines.size(); ++number) {
        text += Lines[number] + "\r\n";
    }
    Favorites.Write(ListFile, text);
}

void ModelWorld::MeddleWithFiles() {
    if (Inside.Files.empty() || OneIn(3)) {
        const std::string name = Inside.FreeName(model::Trimmed(AnyName()));
        Note("somebody puts a file " + name + " into the folder");
        WriteFile(name, {AnyName(), AnyLevel(), AnyTable()});
        return;
    }
    const std::string name = AnyOf(Inside.Files).first;
    if (OneIn(2)) {
        Note("somebody removes " + name);
        Favorites.Remove(name);
        Inside.Remove(name);
    } else {
        Note("somebody damages " + name);
        WriteFile(name, {});
    }
}

void ModelWorld::WriteFile(const std::string& name, const model::File& content) {
    WriteTo(Favorites, name, content);
    ExpectFile(name, content);
}

// Expectations

void ModelWorld::ExpectList(const model::Favorites& lines, std::size_t count) {
    Lines.clear();
    for (const model::Favorite& line : lines) {
        Lines.push_back("TemplateData" + std::to_string(Lines.size()) + "=" + line.Line());
    }
    CountInList = count;
    Inside.List = model::AfterReading(lines);
}

void ModelWorld::ExpectFile(const std::string& name, const model::File& content) {
    Inside.Write(name, content);
    Changed.insert(name);
}

void ModelWorld::Compare() {
    CompareListFile();
    CompareListRead();
    std::vector<std::string> names = {ListFile};
    for (const auto& [name, content] : Inside.Files) {
        names.push_back(name);
        if (Changed.contains(name) || OneIn(20)) {
            CompareFile(Favorites, name, content);
        }
    }
    Changed.clear();
    EXPECT_EQ(Favorites.Names(), Sorted(names));
    names.clear();
    for (const auto& [name, content] : Outside.Files) {
        names.push_back(name);
        if (OneIn(4)) {
            CompareFile(Elsewhere, name, content);
        }
    }
    EXPECT_EQ(Elsewhere.Names(), Sorted(names));
}

void ModelWorld::CompareListFile() {
    const std::string file = Favorites.Read(ListFile);
    std::vector<std::string> lines = {"TemplateNum=" + std::to_string(CountInList)};
    lines.insert(lines.end(), Lines.begin(), Lines.end());
    EXPECT_EQ(LinesOf(file, "PMXTemplateList"), lines);
    EXPECT_EQ(LinesOf(file, "Other"), (std::vector<std::string>{"x=1", "; mine"}));
}

void ModelWorld::CompareListRead() {
    const auto list = OpenList(Favorites.Path().c_str(), nullptr, nullptr, Store.Services);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->GetSize(), static_cast<std::int64_t>(Inside.List.size()));
    for (std::size_t position = 0; position < Inside.List.size(); ++position) {
        ASSERT_EQ(FormatListValue(list->At(static_cast<std::int64_t>(position))),
                  Inside.List[position].Line());
    }
}

void ModelWorld::CompareFile(const TempFolder& folder, const std::string& name, const model::File& content) {
    if (!content.Attributes) {
        EXPECT_EQ(folder.Read(name), "no favorite") << Utf8(name);
        return;
    }
    const HostContent found = FakeHost::ReadFavorite(folder, name);
    EXPECT_EQ(found.Name, content.Name) << Utf8(name);
    EXPECT_EQ(found.Level, content.Level) << Utf8(name);
    EXPECT_TRUE(std::equal(content.Attributes->begin(), content.Attributes->end(), found.Table.Bytes))
        << Utf8(name) << " has other attributes";
}

} // namespace pmx::test
