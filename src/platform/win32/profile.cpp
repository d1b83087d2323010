#include "platform/win32/profile.h"

#include "platform/files.h"
#include "platform/profile_lines.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <set>

#include <windows.h>

namespace pmx {

namespace win32 {

namespace {

constexpr std::size_t FirstBuffer = 4096;

/// A list of texts that is cut ends two bytes before the end of the buffer; so does one that just fits. A
/// single text that is cut ends one byte before the end, and one in quotes that just fits loses its last
/// letter and ends two bytes before it.
constexpr std::size_t CutMargin = 2;

/// The longest text that the platform's narrow functions take as section, key or value, in characters.
constexpr std::size_t LongestText = 32766;

/// Writing so many keys brings a file into a form that further writes do not change: what stands after zero
/// bytes, headers without a name and the like are gone then.
constexpr std::size_t KeysToSettle = 3;

/// Calls `read(buffer, size)` with growing buffers until the result is surely whole; nothing when not even
/// the largest is enough.
template <typename Reader>
std::optional<std::string> ReadGrowing(std::size_t size, std::size_t largest, const Reader& read) {
    std::string buffer;
    for (; size <= largest; size *= 4) {
        buffer.assign(size, '\0');
        const std::size_t length = read(buffer.data(), static_cast<DWORD>(size));
        if (length + CutMargin < size) {
            buffer.resize(length);
            return buffer;
        }
    }
    return std::nullopt;
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
                     const std::string& defaultValue) {
    const auto read = [&](char* buffer, DWORD size) {
        return GetPrivateProfileStringA(section.c_str(), key, defaultValue.c_str(), buffer, size,
                                        path.c_str());
    };
    return ReadGrowing(FirstBuffer, LargestBuffer, read).value_or(std::string());
}

/// False for a file that is there and cannot be opened, which the platform reads as if it were empty.
bool CanBeRead(const std::string& path) {
    return GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES ||
           std::ifstream(path, std::ios::binary).is_open();
}

void TakeLine(SectionLines& lines, std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos) {
        lines.TakeBare(line);
    } else {
        lines.Take(line.substr(0, sign), line.substr(sign + 1));
    }
}

/// The value of a key that the platform lists; nothing when a line without `=` hides it.
std::optional<std::string> ListedValue(const std::string& path, const std::string& section,
                                       const std::string& key) {
    const std::string oneDefault(1, '\x01');
    const std::string otherDefault(1, '\x02');
    std::string value = ReadText(path, section, key.c_str(), oneDefault);
    if (value == oneDefault && ReadText(path, section, key.c_str(), otherDefault) == otherDefault) {
        return std::nullopt;
    }
    return value;
}

/// For a section that is too large for the platform's section read. Of a key that is there more than once
/// every visit gives the first value.
void VisitKeys(const std::string& path, const std::string& section, const Profile::Visitor& visit) {
    ForEachText(ReadText(path, section, nullptr, {}), [&](std::string_view key) {
        if (const std::optional<std::string> value = ListedValue(path, section, std::string(key))) {
            visit(key, *value);
        }
    });
}

bool EndsInHalfCharacter(std::string_view text) {
    const LeadByteTable& leadBytes = SystemLeadBytes();
    std::size_t position = 0;
    while (position + 1 < text.size()) {
        position += CharacterLength(text, position, leadBytes);
    }
    return position < text.size() && leadBytes[static_cast<unsigned char>(text[position])];
}

/// The text in Unicode; a lone lead byte at its end is lost, as in the narrow functions.
std::wstring Wide(std::string_view text) {
    const int size = static_cast<int>(text.size()) - (EndsInHalfCharacter(text) ? 1 : 0);
    std::wstring wide(text.size(), L'\0');
    const int length =
        MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

/// True when the platform's narrow functions take the text. They count a lone lead byte at its end too.
bool IsPassable(const std::string& text) {
    const std::size_t lost = EndsInHalfCharacter(text) ? 1 : 0;
    return text.size() <= LongestText || Wide(text).size() + lost <= LongestText;
}

bool WriteLongValue(const std::string& path, const std::string& section, const std::string& key,
                    const std::string& value) {
    return WritePrivateProfileStringW(Wide(section).c_str(), Wide(key).c_str(), Wide(value).c_str(),
                                      Wide(path).c_str()) != 0;
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

/// True when writing the entries as one section leaves the bytes that writing them one by one leaves. Names
/// that the platform takes for the same need not have the same bytes.
bool CanWriteAsSection(std::string_view section, const ProfileEntries& entries) {
    std::set<std::wstring> names;
    return IsPlain(section) && std::all_of(entries.begin(), entries.end(), [&](const ProfileEntry& entry) {
               return IsPlainKey(entry.Key) && IsPlain(entry.Value) &&
                      names.insert(Wide(InOneCase(entry.Key))).second;
           });
}

std::string SectionText(const ProfileEntries& entries) {
    std::string text;
    for (const ProfileEntry& entry : entries) {
        text.append(entry.Key).append("=").append(entry.Value).push_back('\0');
    }
    return text;
}

std::size_t CountSections(const std::string& path) {
    const auto read = [&](char* buffer, DWORD size) {
        return GetPrivateProfileSectionNamesA(buffer, size, path.c_str());
    };
    const std::optional<std::string> names = ReadGrowing(BufferFor(path), LargestBuffer, read);
    std::size_t count = 0;
    ForEachText(names.value_or(std::string()), [&](std::string_view) { ++count; });
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

/// Whether the file's last line is whole, in any of the encodings that the platform writes.
bool EndsWithLine(const std::string& path) {
    constexpr std::streamoff Longest = 4;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file.tellg();
    std::array<char, Longest> end{};
    const std::streamoff count = std::min(size, Longest);
    if (!file.seekg(-count, std::ios::end) || !file.read(end.data(), count)) {
        return false;
    }
    const std::string_view text(end.data(), static_cast<std::size_t>(count));
    return text.ends_with("\r\n") || text == std::string_view("\r\0\n\0", Longest) ||
           text == std::string_view("\0\r\0\n", Longest);
}

/// Whether the last of the entries, which end the file, have reached it. On a full disk the platform says
/// that it has written and leaves the file cut where the room ended.
bool IsWritten(const std::string& path, const std::string& section, const ProfileEntries& entries,
               bool arePlain) {
    ForgetFile(path);
    return EndsWithLine(path) &&
           (!arePlain ||
            ListedValue(path, section, std::string(entries[entries.Size() - 1].Key)).has_value());
}

} // namespace

bool WindowsProfile::VisitSection(const std::string& path, std::string_view section, const Visitor& visit) {
    ForgetFile(path);
    // The section read, unlike that of a key, does not drop the blanks around the name.
    const std::string asked = CallText(section);
    const std::string name(WithoutBlanks(asked));
    if (!IsPassable(name)) {
        return CanBeRead(path);
    }
    const auto read = [&](char* buffer, DWORD size) {
        return GetPrivateProfileSectionA(name.c_str(), buffer, size, path.c_str());
    };
    const std::size_t size = std::min(BufferFor(path), LargestSectionBuffer);
    const std::optional<std::string> list = ReadGrowing(size, LargestSectionBuffer, read);
    if (!list) {
        VisitKeys(path, name, visit);
        return true;
    }
    SectionLines lines(visit);
    ForEachText(*list, [&](std::string_view line) { TakeLine(lines, line); });
    return !list->empty() || CanBeRead(path);
}

std::string WindowsProfile::ReadString(const std::string& path, std::string_view section,
                                       std::string_view key, std::string_view defaultValue) {
    const std::string sectionText = CallText(section);
    const std::string keyText = CallText(key);
    if (!IsPassable(sectionText) || !IsPassable(keyText)) {
        return std::string(defaultValue);
    }
    return ReadText(path, sectionText, keyText.c_str(), CallText(defaultValue));
}

std::int32_t WindowsProfile::ReadInt(const std::string& path, std::string_view section, std::string_view key,
                                     std::int32_t defaultValue) {
    return static_cast<std::int32_t>(
        GetPrivateProfileIntA(CallText(section).c_str(), CallText(key).c_str(), defaultValue, path.c_str()));
}

bool WindowsProfile::WriteString(const std::string& path, std::string_view section,
                                 std::optional<std::string_view> key, std::optional<std::string_view> value) {
    const std::string sectionText = CallText(section);
    const std::string keyText = CallText(key.value_or(""));
    const std::string valueText = CallText(value.value_or(""));
    if (!IsPassable(sectionText) || !IsPassable(keyText)) {
        return false;
    }
    if (key && value && !IsPassable(valueText)) {
        return WriteLongValue(path, sectionText, keyText, valueText);
    }
    return WritePrivateProfileStringA(sectionText.c_str(), key ? keyText.c_str() : nullptr,
                                      value ? valueText.c_str() : nullptr, path.c_str()) != 0;
}

bool WindowsProfile::WriteKeys(const std::string& path, const std::string& section,
                               const ProfileEntries& entries, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        const ProfileEntry entry = entries[index];
        if (!WriteString(path, section, entry.Key, entry.Value)) {
            return false;
        }
    }
    return true;
}

FileError WindowsProfile::ReplaceSection(const std::string& source, const std::string& target,
                                         std::string_view section, const ProfileEntries& entries) {
    const std::string name = CallText(section);
    if (WithoutBlanks(name).empty() || !IsPassable(name)) {
        return FileError::InvalidParameter;
    }
    const FileError copied = source == target ? FileError::None : SystemFiles().Copy(source, target, false);
    if (copied != FileError::None && copied != FileError::NotFound) {
        return copied;
    }
    return ReplaceInPlace(target, name, entries) ? FileError::None : FileError::Other;
}

bool WindowsProfile::ReplaceInPlace(const std::string& path, const std::string& section,
                                    const ProfileEntries& entries) {
    ForgetFile(path);
    if (!RemoveSections(path, section)) {
        return false;
    }
    if (entries.Size() == 0) {
        return true;
    }
    const bool arePlain = CanWriteAsSection(section, entries);
    const bool asSection = arePlain && entries.Size() > KeysToSettle;
    if (!WriteKeys(path, section, entries, asSection ? KeysToSettle : entries.Size())) {
        return false;
    }
    if (asSection &&
        WritePrivateProfileSectionA(section.c_str(), SectionText(entries).c_str(), path.c_str()) == 0) {
        return false;
    }
    return IsWritten(path, section, entries, arePlain);
}

} // namespace win32

Profile& SystemProfile() {
    static win32::WindowsProfile profile;
    return profile;
}

} // namespace pmx
