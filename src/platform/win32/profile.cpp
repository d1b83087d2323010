#include "platform/profile.h"

#include "platform/profile_lines.h"
#include "platform/text.h"

#include <algorithm>
#include <cstddef>
#include <set>

#include <windows.h>

namespace pmx {

namespace {

/// Where buffers stop to grow: no text of a file that anybody edits is longer.
constexpr std::size_t LargestBuffer = std::size_t{1} << 30U;
constexpr std::size_t FirstBuffer = 4096;

/// A list of texts that is cut ends two bytes before the end of the buffer; so does one that just fits. A
/// single text that is cut ends one byte before the end, and one in quotes that just fits loses its last
/// letter and ends two bytes before it.
constexpr std::size_t CutMargin = 2;

/// The longest text that the platform takes as section, key or value, in characters.
constexpr std::size_t LongestText = 32766;

/// Writing so many keys brings a file into a form that further writes do not change: what stands after zero
/// bytes, headers without a name and the like are gone then.
constexpr std::size_t KeysToSettle = 3;

/// Calls `read(buffer, size)` with growing buffers until the result is surely whole. `isWhole` becomes false
/// when no buffer is large enough.
template <typename Reader>
std::string ReadGrowing(std::size_t size, const Reader& read, bool& isWhole) {
    std::string buffer;
    for (; size <= LargestBuffer; size *= 4) {
        buffer.assign(size, '\0');
        const std::size_t length = read(buffer.data(), static_cast<DWORD>(size));
        if (length + CutMargin < size) {
            buffer.resize(length);
            isWhole = true;
            return buffer;
        }
    }
    isWhole = false;
    return {};
}

/// Calls `take` for each text of a list in which every text ends with a zero byte.
template <typename Taker>
void ForEachText(std::string_view list, const Taker& take) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find('\0'), list.size());
        take(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

bool IsBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r') || character == '\x1A';
}

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// The text as the platform's functions see it: up to the first zero byte.
std::string CallText(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

/// A size that holds all the file's texts as a list in all but the strangest files.
std::size_t BufferFor(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) == 0 || data.nFileSizeHigh != 0) {
        return FirstBuffer;
    }
    return FirstBuffer + data.nFileSizeLow;
}

/// Makes the platform forget what it keeps of the file in memory: it tells another file in its place only by
/// the time of the last change.
void ForgetFile(const std::string& path) {
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, path.c_str());
}

/// `key` null asks for the names of the keys as a list.
std::string ReadText(const std::string& path, const std::string& section, const char* key,
                     const std::string& defaultValue, bool& isWhole) {
    const auto read = [&](char* buffer, DWORD size) {
        return GetPrivateProfileStringA(section.c_str(), key, defaultValue.c_str(), buffer, size,
                                        path.c_str());
    };
    return ReadGrowing(FirstBuffer, read, isWhole);
}

void TakeLine(SectionLines& lines, std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) {
        lines.TakeBare(line);
    } else {
        lines.Take(line.substr(0, sign), line.substr(sign + 1));
    }
}

/// For a section that is too large for the platform's section read. Of a key that is there more than once
/// every visit gives the first value.
void VisitKeys(const std::string& path, const std::string& section, const Profile::Visitor& visit) {
    bool isWhole = false;
    const std::string keys = ReadText(path, section, nullptr, {}, isWhole);
    ForEachText(keys, [&](std::string_view key) {
        visit(key, ReadText(path, section, std::string(key).c_str(), {}, isWhole));
    });
}

/// True when the platform takes the name. One that is too long is none for it, which would make the call
/// another one.
bool IsPassable(const std::string& name) {
    const int size = static_cast<int>(std::min<std::size_t>(name.size(), LongestText * 2 + 1));
    return static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, name.data(), size, nullptr, 0)) <=
           LongestText;
}

bool EndsInHalfCharacter(std::string_view text) {
    const LeadByteTable& leadBytes = SystemText().LeadBytes();
    std::size_t position = 0;
    while (position + 1 < text.size()) {
        position += CharacterLength(text, position, leadBytes);
    }
    return position < text.size() && leadBytes[static_cast<unsigned char>(text[position])];
}

/// True when the platform writes and reads the text back as it is, alone or in a list.
bool IsPlain(std::string_view text) {
    constexpr std::string_view Separators("\r\n\0", 3);
    return text.find_first_of(Separators) == std::string_view::npos &&
           WithoutBlanks(text).size() == text.size() && text.size() <= LongestText &&
           !EndsInHalfCharacter(text);
}

bool IsPlainKey(std::string_view key) {
    return !key.empty() && key.front() != '[' && key.front() != ';' &&
           key.find('=') == std::string_view::npos && IsPlain(key);
}

/// True when writing the entries as one section leaves the bytes that writing them one by one leaves.
bool CanWriteAsSection(std::string_view section, const std::vector<ProfileEntry>& entries) {
    std::set<std::string> names;
    return IsPlain(section) && std::all_of(entries.begin(), entries.end(), [&](const ProfileEntry& entry) {
               return IsPlainKey(entry.Key) && IsPlain(entry.Value) &&
                      names.insert(InOneCase(entry.Key)).second;
           });
}

std::string SectionText(const std::vector<ProfileEntry>& entries) {
    std::string text;
    for (const ProfileEntry& entry : entries) {
        text.append(entry.Key).append("=").append(entry.Value).push_back('\0');
    }
    return text;
}

std::size_t CountSections(const std::string& path) {
    bool isWhole = false;
    const auto read = [&](char* buffer, DWORD size) {
        return GetPrivateProfileSectionNamesA(buffer, size, path.c_str());
    };
    const std::string names = ReadGrowing(BufferFor(path), read, isWhole);
    std::size_t count = 0;
    ForEachText(names, [&](std::string_view) { ++count; });
    return count;
}

/// Removes the section as often as that makes them fewer. Which it is the platform decides, so no names are
/// compared here.
bool RemoveSections(const std::string& path, const std::string& section) {
    std::size_t before = 0;
    std::size_t after = CountSections(path);
    do {
        if (WritePrivateProfileStringA(section.c_str(), nullptr, nullptr, path.c_str()) == 0) {
            return false;
        }
        before = after;
        after = CountSections(path);
    } while (after < before);
    return true;
}

class WindowsProfile final : public Profile {
public:
    void VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        ForgetFile(path);
        // The section read, unlike that of a key, does not drop the blanks around the name.
        const std::string asked = CallText(section);
        const std::string name(WithoutBlanks(asked));
        const auto read = [&](char* buffer, DWORD size) {
            return GetPrivateProfileSectionA(name.c_str(), buffer, size, path.c_str());
        };
        bool isWhole = false;
        const std::string list = ReadGrowing(BufferFor(path), read, isWhole);
        if (!isWhole) {
            VisitKeys(path, name, visit);
            return;
        }
        SectionLines lines(visit);
        ForEachText(list, [&](std::string_view line) { TakeLine(lines, line); });
    }

    std::string ReadString(const std::string& path, std::string_view section, std::string_view key,
                           std::string_view defaultValue) override {
        bool isWhole = false;
        return ReadText(path, CallText(section), CallText(key).c_str(), CallText(defaultValue), isWhole);
    }

    std::int32_t ReadInt(const std::string& path, std::string_view section, std::string_view key,
                         std::int32_t defaultValue) override {
        return static_cast<std::int32_t>(GetPrivateProfileIntA(
            CallText(section).c_str(), CallText(key).c_str(), defaultValue, path.c_str()));
    }

    bool WriteString(const std::string& path, std::string_view section, std::optional<std::string_view> key,
                     std::optional<std::string_view> value) override {
        const std::string sectionText = CallText(section);
        const std::string keyText = CallText(key.value_or(""));
        const std::string valueText = CallText(value.value_or(""));
        if (!IsPassable(sectionText) || !IsPassable(keyText)) {
            return false;
        }
        return WritePrivateProfileStringA(sectionText.c_str(), key ? keyText.c_str() : nullptr,
                                          value ? valueText.c_str() : nullptr, path.c_str()) != 0;
    }

    bool ReplaceSection(const std::string& path, std::string_view section,
                        const std::vector<ProfileEntry>& entries) override {
        const std::string name = CallText(section);
        if (WithoutBlanks(name).empty() || !IsPassable(name)) {
            return false;
        }
        ForgetFile(path);
        if (!RemoveSections(path, name)) {
            return false;
        }
        const bool asSection = entries.size() > KeysToSettle && CanWriteAsSection(name, entries);
        if (!WriteKeys(path, name, entries, asSection ? KeysToSettle : entries.size())) {
            return false;
        }
        return !asSection ||
               WritePrivateProfileSectionA(name.c_str(), SectionText(entries).c_str(), path.c_str()) != 0;
    }

private:
    bool WriteKeys(const std::string& path, const std::string& section,
                   const std::vector<ProfileEntry>& entries, std::size_t count) {
        return std::all_of(
            entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(count),
            [&](const ProfileEntry& entry) { return WriteString(path, section, entry.Key, entry.Value); });
    }
};

} // namespace

Profile& SystemProfile() {
    static WindowsProfile profile;
    return profile;
}

} // namespace pmx
