#include "support/profile_checks.h"

#include <optional>

#include <gtest/gtest.h>

namespace pmx::test {

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

} // namespace pmx::test
