#include "support/profile_checks.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include <gtest/gtest.h>

namespace pmx::test {

namespace {

struct TextValue {
    static bool HasValue(const std::string& /*text*/) { return true; }
    static std::size_t MostBytes(const std::string& text) { return text.size(); }
    static char* Write(const std::string& text, char* to) { return std::copy(text.begin(), text.end(), to); }
};

} // namespace

std::string Escaped(std::string_view bytes) {
    constexpr std::string_view Digits = "0123456789abcdef";
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte < 0x7F && character != '\\') {
            text += character;
            continue;
        }
        text.append("\\x") += Digits[byte >> 4U];
        text += Digits[byte & 15U];
    }
    return text;
}

std::string ReplacedPlainly(const TempFolder& folder, std::string_view content, std::string_view section,
                            const ProfileEntries& entries) {
    constexpr const char* Name = "plain.ini";
    Profile& system = SystemProfile();
    folder.Write(Name, content);
    std::string before;
    do {
        before = folder.Read(Name);
        EXPECT_TRUE(system.WriteString(folder.Path(Name), section, std::nullopt, std::nullopt));
    } while (folder.Read(Name) != before);
    for (const ProfileEntry& entry : entries) {
        EXPECT_TRUE(system.WriteString(folder.Path(Name), section, entry.Key, entry.Value));
    }
    return folder.Read(Name);
}

bool ReplaceInPlace(const std::string& path, std::string_view section, const ProfileEntries& entries) {
    return SystemProfile().ReplaceSection(path, path, section, entries) == FileError::None;
}

void AddNumbered(ProfileEntries& entries, std::string_view prefix, const std::vector<std::string>& values) {
    entries.AddNumbered<TextValue>(prefix, values);
}

} // namespace pmx::test
