#include "platform/profile.h"

#include "support/profile_checks.h"
#include "support/temp_folder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

// What the platform's profile functions make of a few hundred odd files is kept in tests/golden/profile; the
// readme there tells how it is renewed. Both implementations must give the same.

namespace pmx::test {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t CaseCount = 120;
constexpr const char* GoldenFile = PMX_SOURCE_FOLDER "/tests/golden/profile/odd_files.txt";
constexpr const char* FileName = "odd.ini";
constexpr std::int32_t IntegerDefault = 77;

#ifdef _WIN32
constexpr bool IsPlatform = true;
constexpr unsigned ReplacementCount = 5;
#else
constexpr bool IsPlatform = false;
constexpr unsigned ReplacementCount = 150;
#endif

/// Makes odd files, calls and lists; the same for the same seed on every system.
class Oddities {
public:
    explicit Oddities(std::uint32_t seed) : Random(seed) {}

    std::string File() {
        std::string text;
        for (std::size_t count = Below(12); count > 0; --count) {
            text += Line();
            text += Pick(LineEnds);
        }
        return Marked(text);
    }

    std::string Key() { return std::string(Pick(KeyTexts)); }
    std::string Section() { return std::string(Pick(SectionTexts)); }
    std::string Value() { return std::string(Pick(ValueTexts)); }
    std::size_t Below(std::size_t limit) { return Random() % limit; }

    ProfileEntries Entries() {
        ProfileEntries entries;
        for (std::size_t count = Below(7); count > 0; --count) {
            const bool isOdd = Below(3) == 0;
            const std::string key = isOdd ? Key() : "Data" + std::to_string(entries.Size());
            entries.Add(key, Value());
        }
        return entries;
    }

private:
    template <std::size_t Count>
    std::string_view Pick(const std::array<std::string_view, Count>& texts) {
        return texts[Below(Count)];
    }

    std::string Line() {
        std::string line = Below(8) == 0 ? " " : "";
        switch (Below(10)) {
        case 0:
        case 1:
        case 2:
            line += Pick(Headers);
            break;
        case 3:
            for (std::size_t count = Below(6); count > 0; --count) {
                line += Pick(Pieces);
            }
            break;
        default:
            line.append(Pick(KeyTexts)).append(Pick(Signs)).append(Pick(ValueTexts));
        }
        return line + std::string(Below(8) == 0 ? " \t" : "");
    }

    /// Now and then with a Unicode mark, and then in that encoding as far as it is ASCII.
    std::string Marked(const std::string& text) {
        switch (Below(16)) {
        case 0:
            return "\xEF\xBB\xBF" + text;
        case 1:
            return Wide(text, true);
        case 2:
            return Wide(text, false);
        default:
            return text;
        }
    }

    static std::string Wide(const std::string& text, bool isLittle) {
        std::string wide = isLittle ? "\xFF\xFE" : "\xFE\xFF";
        for (const char character : text) {
            const char ascii = static_cast<unsigned char>(character) < 0x80 ? character : '_';
            wide += isLittle ? ascii : '\0';
            wide += isLittle ? '\0' : ascii;
        }
        return wide;
    }

    static constexpr std::array LineEnds = {"\r\n"sv, "\r\n"sv, "\r\n"sv, "\n"sv,       "\n"sv,
                                            "\n"sv,   "\r"sv,   ""sv,     "\r\n\r\n"sv, "\n\r"sv};
    static constexpr std::array Headers = {"[S]"sv,        "[S]"sv,    "[s]"sv,     "[T]"sv,      "[ S ]"sv,
                                           "[]"sv,         "[S"sv,     "[S]]"sv,    "[S] text"sv, "[S]=1"sv,
                                           "[[S]"sv,       "[S\0]"sv,  "[\0S]"sv,   "[S \0]"sv,   "[ ]"sv,
                                           "[\x83\x5D]"sv, "[\x83]"sv, "\x83[S]"sv, ";[S]"sv};
    static constexpr std::array KeyTexts = {"k"sv,   "k"sv,        "K"sv,        "a"sv,        "Data0"sv,
                                            ""sv,    "\x83\x7E"sv, "\x83\x41"sv, "\x83\x61"sv, ";k"sv,
                                            "; a"sv, "#k"sv,       "[k"sv,       "[k]"sv,      "k "sv,
                                            " k"sv,  "k\x83"sv,    "\xED\x40"sv, "k]"sv,       "a b"sv};
    static constexpr std::array Signs = {"="sv, "="sv,     "="sv,   " = "sv, "=="sv,
                                         ""sv,  "\t=\t"sv, "\0="sv, "=\0"sv};
    static constexpr std::array ValueTexts = {"1"sv,
                                              "v"sv,
                                              "-12"sv,
                                              "0x1F"sv,
                                              " v "sv,
                                              ""sv,
                                              "\"q\""sv,
                                              "'q '"sv,
                                              "\""sv,
                                              "\"\"q\"\""sv,
                                              "v ; w"sv,
                                              "a=b"sv,
                                              "v\0w"sv,
                                              "v \0"sv,
                                              "\x95\x5C\x83\x7E"sv,
                                              "v\x83"sv,
                                              "\x83"sv,
                                              "v\x83\x20w"sv,
                                              "\x85\x40"sv,
                                              "\x87\x90\xFA\x54"sv,
                                              "\x80\xA0\xFD\xFF\xF0\x40"sv,
                                              "[T]"sv,
                                              "v]"sv,
                                              "\x81\x40v\x81\x40"sv,
                                              "\xE3\x82\xA2"sv,
                                              "\x1Av\x1A"sv,
                                              "99999999999"sv,
                                              "\x83\x5D"sv};
    static constexpr std::array Pieces = {
        "["sv, "]"sv, "="sv,    ";"sv,    "\""sv,           " "sv,        "\0"sv, "\x83"sv, "\xFC"sv,
        "k"sv, "S"sv, "\x1A"sv, "\xB1"sv, "\xEF\xBB\xBF"sv, "\xFF\xFE"sv, "\v"sv};
    static constexpr std::array SectionTexts = {"S"sv,  "S"sv,  "S"sv, "s"sv,
                                                " S"sv, "S "sv, "T"sv, "\x83\x5D"sv};

    std::mt19937 Random;
};

/// Tells in text what the profile functions do with one odd file.
class Transcript {
public:
    Transcript(std::uint32_t number, const TempFolder& folder)
        : Odd(number), Folder(folder), Content(Odd.File()) {
        Folder.Write(FileName, Content);
        Add("file", Content);
        AddReading();
        AddWriting();
        AddReplacing();
    }

    const std::string& Text() const { return Lines; }

private:
    void Add(std::string_view what, std::string_view bytes) {
        Lines.append(what).append(": ").append(Escaped(bytes)).append("\n");
    }

    void AddReading() {
        const std::string section = Odd.Section();
        std::string visited = section + " ->";
        System.VisitSection(Path, section, [&](std::string_view key, std::string_view value) {
            visited.append(" <").append(key).append("=").append(value).append(">");
        });
        Add("visit", visited);
        for (const std::string_view key : {"k"sv, "a"sv, ""sv, "\x83\x7E"sv}) {
            const std::string value = System.ReadString(Path, section, key, "none");
            Add("read", std::string(key) + " -> " + value);
        }
        Add("integer", std::to_string(System.ReadInt(Path, section, "k", IntegerDefault)));
    }

    void AddWriting() {
        const std::string section = Odd.Section();
        std::optional<std::string> key = Odd.Key();
        std::optional<std::string> value = Odd.Value();
        const std::size_t kind = Odd.Below(6);
        key = kind == 0 ? std::nullopt : key;
        value = kind <= 1 ? std::nullopt : value;
        System.WriteString(Path, section, key, value);
        Add("write", section + "|" + key.value_or("(none)") + "|" + value.value_or("(none)"));
        Add("bytes", Folder.Read(FileName));
    }

    void AddReplacing() {
        const std::string section = Odd.Section();
        const ProfileEntries entries = Odd.Entries();
        Folder.Write(FileName, Content);
        ReplaceInPlace(Path, section, entries);
        std::string call = section;
        for (const ProfileEntry& entry : entries) {
            call.append("|").append(entry.Key).append("=").append(entry.Value);
        }
        Add("replace", call);
        Add("bytes", Folder.Read(FileName));
    }

    Oddities Odd;
    const TempFolder& Folder;
    std::string Content;
    std::string Path = Folder.Path(FileName);
    Profile& System = SystemProfile();
    std::string Lines;
};

std::vector<std::string> Transcripts() {
    const TempFolder folder("golden");
    std::vector<std::string> transcripts;
    for (std::uint32_t number = 0; number < CaseCount; ++number) {
        transcripts.push_back(Transcript(number, folder).Text());
    }
    return transcripts;
}

/// The kept transcripts; they are separated by empty lines.
std::vector<std::string> GoldenTranscripts() {
    std::ifstream file(GoldenFile, std::ios::binary);
    std::vector<std::string> transcripts(1);
    for (std::string line; std::getline(file, line);) {
        if (line.empty()) {
            transcripts.emplace_back();
        } else {
            transcripts.back() += line + "\n";
        }
    }
    transcripts.pop_back();
    return transcripts;
}

void Renew(const std::vector<std::string>& transcripts) {
    std::ofstream file(GoldenFile, std::ios::binary | std::ios::trunc);
    for (const std::string& transcript : transcripts) {
        file << transcript << '\n';
    }
    ASSERT_TRUE(file.flush().good()) << "cannot write " << GoldenFile;
}

TEST(ProfileGolden, OddFilesGiveWhatThePlatformGives) {
    const std::vector<std::string> transcripts = Transcripts();
    if (std::getenv("PMX_RENEW_GOLDEN") != nullptr) {
        ASSERT_TRUE(IsPlatform) << "only the Windows program may renew " << GoldenFile;
        Renew(transcripts);
    }
    const std::vector<std::string> golden = GoldenTranscripts();
    ASSERT_EQ(transcripts.size(), golden.size());
    for (std::size_t number = 0; number < golden.size(); ++number) {
        EXPECT_EQ(transcripts[number], golden[number]) << "odd file " << number;
    }
}

TEST(ProfileGolden, ReplacingASectionInAnOddFileLeavesTheBytesOfThePlainSequence) {
    const TempFolder folder("replace");
    for (std::uint32_t number = 0; number < ReplacementCount; ++number) {
        Oddities odd(number + CaseCount);
        const std::string content = odd.File();
        const std::string section = odd.Section();
        const ProfileEntries entries = odd.Entries();
        folder.Write(FileName, content);
        EXPECT_TRUE(ReplaceInPlace(folder.Path(FileName), section, entries));
        ASSERT_EQ(Escaped(folder.Read(FileName)), Escaped(ReplacedPlainly(folder, content, section, entries)))
            << "odd file " << number << ": " << Escaped(content);
    }
}

} // namespace

} // namespace pmx::test
