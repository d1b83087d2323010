#include "pmxfav/damaged_folder.h"

#include "platform/text.h"
#include "support/fake_host.h"
#include "support/favorite_folder.h"
#include "support/hostile_lists.h"
#include "support/sjis.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pmx::test {

namespace {

/// Names of favorites, in lists and inside files.
const std::vector<std::string>& Names() {
    static const std::vector<std::string> Known = {
        "A",
        "a",
        "B",
        "C",
        "A-1",
        " blank ",
        "a/b",
        "a:b",
        "NUL",
        "x~y",
        "~",
        "O~1~P",
        "..",
        std::string(31, 'm'),
        std::string(40, 'n'),
        std::string(33, 'n') + "~",
        Sjis(u8"会議資料"),
        Sjis(u8"ミ"),
        Sjis(u8"ソ表"),
        Sjis(u8"長長長長長長長長長長長長長長長長"),
        Sjis(u8"長長長長長長長長長長長長長長長長長"),
        std::string("X\x81\x20", 3),
        "\x83",
        "",
        "line\r\nend",
        "\x01\x02",
    };
    return Known;
}

/// Names of files that entries name; those with an extension may be there.
const std::vector<std::string>& FilesOfEntries() {
    static const std::vector<std::string> Known = {"a.pmt",
                                                   "A.pmt",
                                                   "A-1.pmt",
                                                   "B.pmt",
                                                   "C.pmt",
                                                   "a=b.pmt",
                                                   "x-y.pmt",
                                                   "new.pmt",
                                                   Sjis(u8"会議資料.pmt"),
                                                   Sjis(u8"ミ.pmt"),
                                                   "missing.pmt",
                                                   "..\\outside.pmt",
                                                   "NUL",
                                                   "3",
                                                   "",
                                                   "PmxTempleList.ini",
                                                   "A-2.pmt",
                                                   "other.txt"};
    return Known;
}

/// All of the list files that the fuzzers start from.
const std::vector<std::string>& ListsOfFuzzers() {
    static const std::vector<std::string> Known = [] {
        std::vector<std::string> read;
        const char* const corpus = std::getenv("PMX_CORPUS");
        if (corpus != nullptr) {
            for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
                std::ifstream file(entry.path(), std::ios::binary);
                read.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
            }
        }
        std::sort(read.begin(), read.end());
        return read;
    }();
    return Known;
}

std::string Joined(const std::vector<std::string>& lines, const std::string& lineEnd) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + lineEnd;
    }
    return text;
}

} // namespace

DamagedFolder::DamagedFolder(unsigned seed) : Random(seed) {
    WriteFiles();
    if (!OneIn(20)) {
        Folder.Write(ListFile, AnyList());
    }
}

std::string DamagedFolder::AnyValue() {
    static const std::vector<std::string> Levels = {"1", "1", "1", "2", "4", "5", "7", "x", "-1"};
    static const std::vector<std::string> Icons = {"14", "20", "59", "60", "-1"};
    if (OneIn(6)) {
        return "1~" + AnyOf(Names()) + "~101~" + std::to_string(Below(2)) + "~4~" + std::to_string(Below(7));
    }
    std::string value = std::string(OneIn(12) ? "1" : "0") + "~" + AnyOf(Names()) + "~" + AnyOf(Levels) +
                        "~" + (OneIn(3) ? "0" : "1") + "~" + AnyOf(Icons) + "~" + AnyOf(FilesOfEntries());
    if (OneIn(8)) {
        value.erase(Below(value.size()), 1 + Below(4));
    }
    if (OneIn(12)) {
        value.insert(Below(value.size() + 1), OneIn(2) ? "~" : "\x81");
    }
    return OneIn(15) ? "'" + value + "'" : value;
}

std::string DamagedFolder::AnyCount(std::size_t values) {
    static const std::vector<std::string> Hostile = HostileCounts();
    if (OneIn(2)) {
        return std::to_string(values);
    }
    return OneIn(2) ? AnyOf(Hostile) : std::to_string(Below(2 * values + 2));
}

std::vector<std::string> DamagedFolder::SectionLines() {
    static const std::vector<std::string> Others = {"; a comment",      "garbage",       "Key=value", "   ",
                                                    "TemplateData01=x", "TemplateNum=3", "[unclosed"};
    const std::size_t count = OneIn(3) ? 20 + Below(15) : Below(10);
    std::vector<std::string> lines = {"[PMXTemplateList]", "TemplateNum=" + AnyCount(count)};
    for (std::size_t number = 0; number < count; ++number) {
        const std::size_t key = OneIn(10) ? Below(count + 5) : number;
        lines.push_back((OneIn(10) ? "templatedata" : "TemplateData") + std::to_string(key) +
                        (OneIn(10) ? " = " : "=") + AnyValue());
        if (OneIn(12)) {
            lines.push_back(AnyOf(Others));
        }
    }
    if (OneIn(4)) {
        std::shuffle(lines.begin() + 1, lines.end(), Random);
    }
    return lines;
}

std::string DamagedFolder::AnyList() {
    if (OneIn(6) && !ListsOfFuzzers().empty()) {
        return AnyOf(ListsOfFuzzers());
    }
    std::vector<std::string> lines = SectionLines();
    if (OneIn(8)) {
        const std::vector<std::string> hostile = OneIn(2)   ? FavoritesAtEveryLimit()
                                                 : OneIn(2) ? FavoritesWithBrokenNames()
                                                            : FavoritesThatPointOutside("outside.pmt");
        for (std::size_t count = Below(20); count > 0; --count) {
            lines.push_back("TemplateData" + std::to_string(count) + "=" + AnyOf(hostile));
        }
    }
    if (OneIn(4)) {
        lines.insert(lines.begin(), {"; before", "[Other]", "Key = value "});
    }
    if (OneIn(4)) {
        lines.insert(lines.end(), {"[Another]", "TemplateData0=0~Not~1~1~14~this.pmt"});
    }
    if (OneIn(6)) {
        const std::vector<std::string> second = SectionLines();
        lines.insert(lines.end(), second.begin(), second.end());
    }
    std::string text = Joined(lines, OneIn(6) ? "\n" : "\r\n");
    if (OneIn(6)) {
        text.resize(text.size() - Below(std::min<std::size_t>(text.size(), 40)));
    }
    return OneIn(12) ? "\xEF\xBB\xBF" + ToUtf8(text) : text;
}

void DamagedFolder::WriteFiles() {
    static const std::vector<std::string> Unlisted = {"lost.pmt", "empty.pmt",  "x1.pmt",
                                                      "a~b.pmt",  " blank.pmt", "O-1-P.pmt"};
    std::vector<std::string> names = Unlisted;
    for (const std::string& name : FilesOfEntries()) {
        if (name.ends_with(".pmt") && name.find('\\') == std::string::npos && name != "missing.pmt") {
            names.push_back(name);
        }
    }
    for (const std::string& name : names) {
        if (OneIn(3)) {
            continue;
        }
        if (OneIn(10)) {
            Folder.Write(name, OneIn(2) ? "" : "damaged");
            continue;
        }
        static const std::vector<std::int32_t> Levels = {1, 1, 1, 2, 3, 4, 5, 7, 101};
        const std::string inside = AnyOf(Names());
        FakeHost::WriteFavorite(Folder, name,
                                {.Table = TableOf(static_cast<unsigned char>(Below(4))),
                                 .Level = AnyOf(Levels),
                                 .Name = inside.substr(0, inside.find('\n'))});
    }
    if (OneIn(4)) {
        Folder.Write("Pmx0123ABCD.tmp", "half of a file");
    }
}

} // namespace pmx::test
