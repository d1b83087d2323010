#include "store/list_file.h"

#include "store/favorite_files.h"
#include "store/levels.h"
#include "store/temporary_file.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <optional>

namespace pmx {

namespace {

constexpr std::size_t LongestNumber = std::string_view("-2147483648").size();

char* WriteNumber(std::int32_t number, char* to) {
    if (number >= 0 && number <= 9) {
        *to = static_cast<char>('0' + number);
        return to + 1;
    }
    return std::to_chars(to, to + LongestNumber, number).ptr;
}

char* WriteFlag(bool set, char* to) {
    *to = set ? '1' : '0';
    return to + 1;
}

char* WriteText(std::string_view text, char* to) {
    return std::copy(text.begin(), text.end(), to);
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool EqualKey(std::string_view key, std::string_view wanted) {
    const auto upper = [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    };
    return key == wanted || std::equal(key.begin(), key.end(), wanted.begin(), wanted.end(),
                                       [&](char left, char right) { return upper(left) == upper(right); });
}

/// The number in a "TemplateData" key written as the writer would write it; none for any other key.
std::optional<std::int32_t> DataKeyNumber(std::string_view key) {
    if (key.size() <= DataKeyPrefix.size() || !EqualKey(key.substr(0, DataKeyPrefix.size()), DataKeyPrefix)) {
        return std::nullopt;
    }
    const std::string_view digits = key.substr(DataKeyPrefix.size());
    if (!IsDigit(digits.front()) || (digits.front() == '0' && digits.size() > 1)) {
        return std::nullopt;
    }
    std::int32_t number = 0;
    const std::from_chars_result end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = end.ec == std::errc() && end.ptr == digits.data() + digits.size();
    return whole ? std::optional(number) : std::nullopt;
}

/// Position of the separator at or after `begin`, or of the value's end.
std::size_t FieldEnd(std::string_view value, std::size_t begin, const LeadByteTable& leadBytes) {
    // Most fields are short numbers.
    std::size_t position = begin;
    while (position < value.size() && IsDigit(value[position])) {
        ++position;
    }
    if (position == value.size() || value[position] == FieldSeparator) {
        return position;
    }
    do {
        position = value.find(FieldSeparator, position + 1);
    } while (position != std::string_view::npos && IsTrailByte(value, position, leadBytes, begin));
    return std::min(position, value.size());
}

// One structure for each field of a favorite's value: how much room it needs at most, how it is written
// there, which gives its end, and how its text is taken over, which is false when the text cannot be
// accepted.

struct StandardField {
    static std::size_t MostBytes(const CPMXTemplUIListData& /*record*/) { return 1; }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteFlag(record.GetStandard() == 1, to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& /*leadBytes*/) {
        record.SetStandard(LeadingNumber(text) != 0 ? 1 : 0);
        return true;
    }
};

struct NameField {
    static std::size_t MostBytes(const CPMXTemplUIListData& record) { return record.GetName().size(); }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteText(record.GetName(), to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& leadBytes) {
        record.SetName(Trimmed(text, leadBytes));
        return !record.GetName().empty();
    }
};

struct LevelField {
    static std::size_t MostBytes(const CPMXTemplUIListData& /*record*/) { return LongestNumber; }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteNumber(record.GetLevel(), to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& /*leadBytes*/) {
        record.SetLevel(LeadingNumber(text));
        return true;
    }
};

struct ToolbarField {
    static std::size_t MostBytes(const CPMXTemplUIListData& /*record*/) { return 1; }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteFlag(record.GetToolbar() == 1, to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& /*leadBytes*/) {
        record.SetToolbar(LeadingNumber(text) != 0 ? 1 : 0);
        return true;
    }
};

struct IconField {
    static std::size_t MostBytes(const CPMXTemplUIListData& /*record*/) { return LongestNumber; }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteNumber(static_cast<std::int32_t>(record.GetIconIndex()), to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& /*leadBytes*/) {
        record.SetIconIndex(LeadingNumber(text));
        return true;
    }
};

struct FileField {
    static std::size_t MostBytes(const CPMXTemplUIListData& record) { return record.GetFileName().size(); }
    static char* Write(const CPMXTemplUIListData& record, char* to) {
        return WriteText(record.GetFileName(), to);
    }
    static bool Read(CPMXTemplUIListData& record, std::string_view text, const LeadByteTable& leadBytes) {
        record.SetFileName(Trimmed(text, leadBytes));
        return !record.GetFileName().empty();
    }
};

/// The fields in the order in which they stand in a value.
template <typename... Field>
struct FieldOrder {
    static constexpr std::size_t Count = sizeof...(Field);
    using Texts = std::array<std::string_view, Count>;

    static std::size_t MostBytes(const CPMXTemplUIListData& record) {
        return (Field::MostBytes(record) + ...) + Count;
    }

    static char* Write(const CPMXTemplUIListData& record, char* to) {
        ((to = Field::Write(record, to), *to++ = FieldSeparator), ...);
        return to - 1; // no separator ends the value
    }

    static bool Read(CPMXTemplUIListData& record, const Texts& texts, const LeadByteTable& leadBytes) {
        std::size_t number = 0;
        return (Field::Read(record, texts[number++], leadBytes) && ...);
    }
};

using ListFields = FieldOrder<StandardField, NameField, LevelField, ToolbarField, IconField, FileField>;

/// How ProfileEntries writes the values of records; null and deleted ones have none.
struct ListValue {
    using Record = const CPMXTemplUIListData*;

    static bool HasValue(Record record) { return record != nullptr && record->GetDeleteFlag() != 1; }
    static std::size_t MostBytes(Record record) { return ListFields::MostBytes(*record); }
    static char* Write(Record record, char* to) { return ListFields::Write(*record, to); }
};

/// Takes a value apart, passing over empty fields; false unless there are exactly as many as a favorite has.
bool Split(std::string_view value, const LeadByteTable& leadBytes, ListFields::Texts& texts) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < value.size();) {
        const std::size_t end = FieldEnd(value, begin, leadBytes);
        if (end > begin) {
            if (count == texts.size()) {
                return false;
            }
            texts[count++] = std::string_view(value.data() + begin, end - begin);
        }
        begin = end + 1;
    }
    return count == texts.size();
}

/// Puts the values of a section, met in any order and with duplicates, into the order of their numbers. Those
/// that arrive in order, as the writer leaves them, are passed on at once; only the others are kept.
class ListCollector {
public:
    ListCollector(std::size_t valueLimit, const LeadByteTable& leadBytes,
                  const std::function<void(std::unique_ptr<CPMXTemplUIListData>)>& take)
        : ValueLimit(valueLimit), LeadBytes(leadBytes), Take(take) {}

    void Visit(std::string_view key, std::string_view value) {
        if (const std::optional<std::int32_t> number = DataKeyNumber(key)) {
            VisitData(*number, value);
            return;
        }
        if (!Count && EqualKey(key, CountKey)) {
            Count = std::max(ProfileInteger(value, 0), 0);
        }
    }

    void Finish() {
        for (const auto& [number, value] : Early) {
            if (number < Count.value_or(0)) {
                Pass(value);
            }
        }
    }

private:
    void VisitData(std::int32_t number, std::string_view value) {
        if (!Count) {
            Early.emplace(number, std::string(value));
            return;
        }
        if (number < Next || number >= *Count) {
            return;
        }
        if (number > Next || !Early.empty()) {
            Early.emplace(number, std::string(value));
            return;
        }
        Pass(value);
        ++Next;
    }

    void Pass(std::string_view value) {
        const std::size_t length = LengthWithin(value, ValueLimit, LeadBytes);
        if (std::unique_ptr<CPMXTemplUIListData> record =
                ParseListValue(value.substr(0, length), LeadBytes)) {
            Take(std::move(record));
        }
    }

    std::size_t ValueLimit;
    const LeadByteTable& LeadBytes;
    const std::function<void(std::unique_ptr<CPMXTemplUIListData>)>& Take;
    std::optional<std::int32_t> Count;
    std::int32_t Next = 0; // every number below was passed on
    std::map<std::int32_t, std::string>
        Early; // values that came before their turn; the first of a number counts
};

std::int32_t AnyLeadingNumber(std::string_view text) {
    std::size_t position = 0;
    while (position < text.size() && IsBlank(text[position])) {
        ++position;
    }
    const bool hasSign = position < text.size() && (text[position] == '-' || text[position] == '+');
    const bool isNegative = hasSign && text[position] == '-';
    position += hasSign ? 1 : 0;
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    for (; position < text.size() && IsDigit(text[position]); ++position) {
        number = std::min(number * 10 + (text[position] - '0'), Most + 1);
    }
    return static_cast<std::int32_t>(isNegative ? -number : std::min(number, Most));
}

} // namespace

std::int32_t LeadingNumber(std::string_view text) {
    // Most are a few digits.
    constexpr std::size_t SurelyFits = std::numeric_limits<std::int32_t>::digits10;
    if (text.size() > SurelyFits) {
        return AnyLeadingNumber(text);
    }
    std::int32_t number = 0;
    for (const char character : text) {
        if (!IsDigit(character)) {
            return AnyLeadingNumber(text);
        }
        number = number * 10 + (character - '0');
    }
    return number;
}

std::string FormatListValue(const CPMXTemplUIListData& record) {
    std::string value(ListFields::MostBytes(record), '\0');
    value.resize(static_cast<std::size_t>(ListFields::Write(record, value.data()) - value.data()));
    return value;
}

std::unique_ptr<CPMXTemplUIListData> ParseListValue(std::string_view value, const LeadByteTable& leadBytes) {
    ListFields::Texts texts;
    if (!Split(value, leadBytes, texts)) {
        return nullptr;
    }
    auto record = std::make_unique<CPMXTemplUIListData>();
    if (!ListFields::Read(*record, texts, leadBytes)) {
        return nullptr;
    }
    if (IsStandardLevel(record->GetLevel()) && !IsKnownStandardNumber(LeadingNumber(record->GetFileName()))) {
        return nullptr;
    }
    return record;
}

bool ReadListFile(const std::string& path, std::size_t valueLimit, const StoreServices& services,
                  const std::function<void(std::unique_ptr<CPMXTemplUIListData>)>& take) {
    ListCollector collector(valueLimit, SystemLeadBytes(), take);
    const bool isRead = services.Profiles.VisitSection(
        path, ListSection,
        [&collector](std::string_view key, std::string_view value) { collector.Visit(key, value); });
    collector.Finish();
    return isRead;
}

ProfileEntries MakeListEntries(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count) {
    ProfileEntries entries;
    entries.Add(CountKey, std::to_string(static_cast<std::int32_t>(count)));
    entries.AddNumbered<ListValue>(DataKeyPrefix, records);
    return entries;
}

bool ReplaceListFile(const std::string& folder, const std::string& path, const ProfileEntries& entries,
                     const StoreServices& services) {
    Files& files = services.FileSystem;
    if (files.IsReadOnly(path)) {
        return false;
    }
    TemporaryFile aside(files, services.Timer, folder);
    if (aside.GetPath().empty()) {
        return false;
    }
    const FileError written = RetryWhileHeld(files, services.Timer, [&] {
        return services.Profiles.ReplaceSection(path, aside.GetPath(), ListSection, entries);
    });
    if (written != FileError::None || files.Flush(aside.GetPath()) != FileError::None ||
        !RetryReplaceFile(files, services.Timer, aside.GetPath(), path)) {
        return false;
    }
    aside.Release();
    return true;
}

} // namespace pmx
