#include "fuzzing.h"

#include "platform/profile.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

// Any INI file and any calls: reading ends, and replacing a section leaves what removing it and writing its
// entries one by one leaves.

namespace pmx::fuzz {

namespace {

constexpr const char* File = "any.ini";
constexpr const char* Target = "target.ini";
constexpr std::size_t MostEntries = 6;

std::string Text(FuzzedDataProvider& input) {
    return input.ConsumeRandomLengthString(40);
}

std::size_t VisitedBytes(std::string_view section) {
    std::size_t bytes = 0;
    SystemProfile().VisitSection(
        Folder().Path(File), section,
        [&bytes](std::string_view key, std::string_view value) { bytes += key.size() + value.size(); });
    return bytes;
}

void Read(FuzzedDataProvider& input, std::size_t fileSize) {
    const std::string section = Text(input);
    const std::string key = Text(input);
    const std::string defaultValue = Text(input);
    // What is no character becomes one of two bytes; a text in Unicode never becomes longer than that.
    Require(VisitedBytes(section) <= 2 * fileSize + 2, "what is read comes from the file");
    SystemProfile().ReadString(Folder().Path(File), section, key, defaultValue);
    SystemProfile().ReadInt(Folder().Path(File), section, key, 0);
}

std::string ReplacedPlainly(std::string_view content, const std::string& section,
                            const ProfileEntries& entries) {
    Profile& profile = SystemProfile();
    const std::string path = Folder().Path(Target);
    PutFile(Target, content);
    for (std::string before; before != Folder().Read(Target);) {
        before = Folder().Read(Target);
        Require(profile.WriteString(path, section, std::nullopt, std::nullopt), "a section can be removed");
    }
    for (const ProfileEntry& entry : entries) {
        Require(profile.WriteString(path, section, entry.Key, entry.Value), "a key can be written");
    }
    return Folder().Read(Target);
}

struct TextValue {
    static bool HasValue(const std::string& /*text*/) { return true; }
    static std::size_t MostBytes(const std::string& text) { return text.size(); }
    static char* Write(const std::string& text, char* to) { return std::copy(text.begin(), text.end(), to); }
};

void AddNumbered(FuzzedDataProvider& input, ProfileEntries& entries) {
    std::vector<std::string> values(input.ConsumeIntegralInRange<std::size_t>(0, 2 * MostEntries));
    const std::string prefix = input.ConsumeBool() ? Text(input) : "Data";
    for (std::string& value : values) {
        value = Text(input);
    }
    entries.AddNumbered<TextValue>(prefix, values);
}

void Replace(FuzzedDataProvider& input, std::string_view content) {
    const std::string section = "S" + Text(input);
    ProfileEntries entries;
    for (std::size_t count = input.ConsumeIntegralInRange<std::size_t>(0, MostEntries); count > 0; --count) {
        const std::string key = input.ConsumeBool() ? Text(input) : "Data" + std::to_string(entries.Size());
        entries.Add(key, Text(input));
    }
    AddNumbered(input, entries);
    PutFile(Target, "");
    Require(SystemProfile().ReplaceSection(Folder().Path(File), Folder().Path(Target), section, entries) ==
                FileError::None,
            "a section can be replaced");
    const std::string replaced = Folder().Read(Target);
    Require(replaced == ReplacedPlainly(content, section, entries),
            "replacing leaves what the single writes leave");
}

void Run(FuzzedDataProvider& input) {
    const bool replaces = input.ConsumeBool();
    const std::string content = input.ConsumeRandomLengthString(4000);
    PutFile(File, content);
    if (replaces) {
        Replace(input, content);
    } else {
        Read(input, content.size());
    }
}

} // namespace

} // namespace pmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    pmx::fuzz::Run(input);
    return 0;
}
