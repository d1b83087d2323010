#include "store/list_file.h"

#include "store/aside_file.h"
#include "store/favorite_files.h"
#include "store/levels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <utility>

namespace pmx {

namespace {

constexpr std::size_t UsualLineLength = 80;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsLineEnd(char character) {
    return character == '\r' || character == '\n';
}

bool EqualWord(std::string_view left, std::string_view right) {
    const auto upper = [](char letter) {
        return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    };
    return left == right || std::equal(left.begin(), left.end(), right.begin(), right.end(),
                                       [&](char one, char other) { return upper(one) == upper(other); });
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

// The fields of a value

char FlagText(bool isSet) {
    return isSet ? '1' : '0';
}

void AppendNumber(std::string& text, std::int64_t number) {
    std::array<char, 24> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text += std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

struct ListField {
    void (*Append)(const CPMXTemplUIListData& record, std::string& value);

    /// False when the text cannot be accepted.
    bool (*Take)(CPMXTemplUIListData& record, std::string_view text);
};

/// The fields in the order in which they stand in a value. Texts are without blanks at their ends.
constexpr std::array<ListField, 6> Fields = {{
    {[](const CPMXTemplUIListData& record, std::string& value) {
         value += FlagText(record.GetStandard() == 1);
     },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetStandard(LeadingNumber(text) != 0 ? 1 : 0);
         return true;
     }},
    {[](const CPMXTemplUIListData& record, std::string& value) { value += record.GetName(); },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetName(text);
         return !text.empty();
     }},
    {[](const CPMXTemplUIListData& record, std::string& value) { AppendNumber(value, record.GetLevel()); },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetLevel(LeadingNumber(text));
         return true;
     }},
    {[](const CPMXTemplUIListData& record, std::string& value) {
         value += FlagText(record.GetToolbar() == 1);
     },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetToolbar(LeadingNumber(text) != 0 ? 1 : 0);
         return true;
     }},
    {[](const CPMXTemplUIListData& record, std::string& value) {
         AppendNumber(value, static_cast<std::int32_t>(record.GetIconIndex()));
     },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetIconIndex(LeadingNumber(text));
         return true;
     }},
    {[](const CPMXTemplUIListData& record, std::string& value) { value += record.GetFileName(); },
     [](CPMXTemplUIListData& record, std::string_view text) {
         record.SetFileName(text);
         return !text.empty();
     }},
}};

void AppendListValue(const CPMXTemplUIListData& record, std::string& text) {
    bool isFirst = true;
    for (const ListField& field : Fields) {
        if (!isFirst) {
            text += FieldSeparator;
        }
        isFirst = false;
        field.Append(record, text);
    }
}

using FieldTexts = std::array<std::string_view, Fields.size()>;

/// Takes a value apart, passing over empty fields. Gives their number; one more than a favorite has for any higher.
std::size_t Split(std::string_view value, const LeadByteTable& leadBytes, FieldTexts& texts) {
    std::size_t count = 0;
    for (std::size_t begin = 0; begin < value.size();) {
        const std::size_t end =
            std::min(FindSingleByte(value, FieldSeparator, leadBytes, begin), value.size());
        if (end > begin) {
            if (count == texts.size()) {
                return count + 1;
            }
            texts[count++] = Trimmed(value.substr(begin, end - begin), leadBytes);
        }
        begin = end + 1;
    }
    return count;
}

// The lines of the file

/// Bytes up to the next line end. Looks at stretches of growing length: one kind of line end may never come.
std::size_t LineLength(std::string_view text) {
    for (std::size_t size = 256;; size *= 2) {
        const std::string_view stretch = text.substr(0, size);
        const std::string_view line = stretch.substr(0, stretch.find('\n'));
        const std::size_t length = std::min(line.find('\r'), line.size());
        if (length < stretch.size() || stretch.size() == text.size()) {
            return length;
        }
    }
}

/// Takes the next line off the front of `rest`, and the line ends before it. Empty when there is none.
std::string_view NextLine(std::string_view& rest) {
    std::size_t begin = 0;
    while (begin < rest.size() && IsLineEnd(rest[begin])) {
        ++begin;
    }
    rest.remove_prefix(begin);
    const std::string_view line = rest.substr(0, LineLength(rest));
    rest.remove_prefix(line.size());
    return line;
}

/// The name of the section that a line begins; none for any other line. What follows the last bracket does
/// not count.
std::optional<std::string_view> SectionName(std::string_view line) {
    const std::string_view text = WithoutBlanks(line);
    if (!text.starts_with('[')) {
        return std::nullopt;
    }
    std::size_t end = text.rfind(']');
    while (end != std::string_view::npos && IsTrailByte(text, end, LeadBytesIn(text))) {
        end = text.rfind(']', end - 1);
    }
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    return WithoutBlanks(text.substr(1, end - 1));
}

/// A part of the content: a section from its first line on, or what stands before the first one.
struct Part {
    std::string_view Text;
    bool IsList = false;
};

/// The line that a section begins with, as a part of the text that was searched.
struct SectionLine {
    std::size_t Begin;
    std::size_t End;
    std::string_view Name;
};

/// The first section that begins at `from`, where a line begins or ends, or after it; none is one at the end.
/// Looks at nothing but brackets: a save looks for the sections of the whole file.
SectionLine NextSection(std::string_view text, std::size_t from) {
    for (std::size_t bracket = text.find('[', from); bracket != std::string_view::npos;
         bracket = text.find('[', bracket + 1)) {
        std::size_t begin = bracket;
        while (begin > 0 && IsBlank(text[begin - 1]) && !IsLineEnd(text[begin - 1])) {
            --begin;
        }
        if (begin > 0 && !IsLineEnd(text[begin - 1])) {
            continue;
        }
        const std::string_view line = text.substr(begin, LineLength(text.substr(begin)));
        if (const std::optional<std::string_view> name = SectionName(line)) {
            return {begin, begin + line.size(), *name};
        }
    }
    return {text.size(), text.size(), {}};
}

/// Takes the next part off the front of `rest`, which is not empty and begins with a line.
Part NextPart(std::string_view& rest) {
    const SectionLine first = NextSection(rest, 0);
    const bool isSection = first.Begin == 0;
    const std::size_t end = isSection ? NextSection(rest, first.End).Begin : first.Begin;
    const std::string_view text = rest.substr(0, end);
    rest.remove_prefix(end);
    return {text, isSection && EqualWord(first.Name, ListSection)};
}

// The keys of the section

/// A number as the platform reads one from a profile: a sign and digits, modulo 2 to the 32nd.
std::int32_t ProfileNumber(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::uint32_t number = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        number = number * 10 + static_cast<std::uint32_t>(text.front() - '0');
    }
    return static_cast<std::int32_t>(isNegative ? 0 - number : number);
}

/// The number in a "TemplateData" key written as the writer would write it; none for any other key.
std::optional<std::int32_t> DataKeyNumber(std::string_view key) {
    if (key.size() <= DataKeyPrefix.size() ||
        !EqualWord(key.substr(0, DataKeyPrefix.size()), DataKeyPrefix)) {
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

std::string_view WithoutQuotes(std::string_view value) {
    const bool isQuoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

bool ComesBefore(const NumberedValue& left, const NumberedValue& right) {
    return left.Number < right.Number;
}

/// What the lines of the section say.
struct SectionContent {
    std::vector<NumberedValue> Values; ///< in the order of their numbers; the first of a number counts
    std::optional<std::int32_t> Count;
    std::vector<std::string_view> OtherLines;

    void Take(std::string_view line) {
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            if (!WithoutBlanks(line).empty()) {
                OtherLines.push_back(line);
            }
            return;
        }
        const std::string_view key = WithoutBlanks(line.substr(0, equals));
        const std::string_view value = WithoutQuotes(WithoutBlanks(line.substr(equals + 1)));
        if (const std::optional<std::int32_t> number = DataKeyNumber(key)) {
            Values.push_back({*number, value});
        } else if (!Count && EqualWord(key, CountKey)) {
            Count = ProfileNumber(value);
        } else {
            OtherLines.push_back(line);
        }
    }
};

SectionContent ReadSection(std::string_view content) {
    SectionContent section;
    section.Values.reserve(content.size() / UsualLineLength);
    bool isInside = false;
    for (std::string_view line = NextLine(content); !line.empty(); line = NextLine(content)) {
        if (const std::optional<std::string_view> name = SectionName(line)) {
            if (isInside) {
                break;
            }
            isInside = EqualWord(*name, ListSection);
        } else if (isInside) {
            section.Take(line);
        }
    }
    if (!std::is_sorted(section.Values.begin(), section.Values.end(), ComesBefore)) {
        std::stable_sort(section.Values.begin(), section.Values.end(), ComesBefore);
    }
    return section;
}

// The section as it is written

constexpr std::string_view LineEnd = "\r\n";

/// The beginning of the section, with room for that many lines.
std::string SectionHead(std::int64_t count, std::size_t lines) {
    std::string section;
    section.reserve((lines + 1) * UsualLineLength);
    section.append("[").append(ListSection).append("]").append(LineEnd);
    section.append(CountKey).append("=");
    AppendNumber(section, static_cast<std::int32_t>(count));
    return section.append(LineEnd);
}

template <typename Append>
void AppendLine(std::string& section, std::size_t number, Append appendValue) {
    section.append(DataKeyPrefix);
    AppendNumber(section, static_cast<std::int64_t>(number));
    section.append("=");
    appendValue();
    section.append(LineEnd);
}

} // namespace

std::int32_t LeadingNumber(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    constexpr std::int64_t Most = std::numeric_limits<std::int32_t>::max();
    std::int64_t number = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        number = std::min(number * 10 + (text.front() - '0'), Most + 1);
    }
    return static_cast<std::int32_t>(isNegative ? -number : std::min(number, Most));
}

std::string FormatListValue(const CPMXTemplUIListData& record) {
    std::string value;
    AppendListValue(record, value);
    return value;
}

std::unique_ptr<CPMXTemplUIListData> ParseListValue(std::string_view value, const LeadByteTable& leadBytes) {
    FieldTexts texts;
    if (Split(value, leadBytes, texts) != texts.size()) {
        return nullptr;
    }
    auto record = std::make_unique<CPMXTemplUIListData>();
    for (std::size_t position = 0; position < Fields.size(); ++position) {
        if (!Fields[position].Take(*record, texts[position])) {
            return nullptr;
        }
    }
    if (IsStandardLevel(record->GetLevel()) && !IsKnownStandardNumber(LeadingNumber(record->GetFileName()))) {
        return nullptr;
    }
    return record;
}

ValueFault FaultOf(std::string_view value, const LeadByteTable& leadBytes) {
    constexpr std::size_t NamePosition = 1;
    FieldTexts texts;
    const std::size_t count = Split(value, leadBytes, texts);
    if (count != texts.size()) {
        return count < texts.size() ? ValueFault::TooFewFields : ValueFault::TooManyFields;
    }
    if (texts[NamePosition].empty()) {
        return ValueFault::NoName;
    }
    if (texts.back().empty()) {
        return ValueFault::NoFile;
    }
    return ParseListValue(value, leadBytes) ? ValueFault::None : ValueFault::UnknownStandardNumber;
}

ListSectionContent ReadListSection(std::string_view content) {
    SectionContent first = ReadSection(content);
    ListSectionContent section{
        std::move(first.Values), first.Count.value_or(0), std::move(first.OtherLines), {}};
    bool isFirst = true;
    while (!content.empty()) {
        const Part part = NextPart(content);
        if (part.IsList && !isFirst) {
            section.FurtherSections.push_back(part.Text);
        }
        isFirst = isFirst && !part.IsList;
    }
    return section;
}

ListValues ReadListValues(std::string_view content) {
    const SectionContent section = ReadSection(content);
    ListValues values;
    values.reserve(section.Values.size());
    std::int32_t next = 0;
    for (const NumberedValue& line : section.Values) {
        if (line.Number >= next && line.Number < section.Count.value_or(0)) {
            values.push_back(line.Value);
            next = line.Number + 1;
        }
    }
    return values;
}

bool HasListSection(std::string_view content) {
    while (!content.empty()) {
        if (NextPart(content).IsList) {
            return true;
        }
    }
    return false;
}

std::string FormatSection(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count) {
    std::string section = SectionHead(count, records.size());
    std::size_t number = 0;
    for (const CPMXTemplUIListData* const record : records) {
        if (record->GetDeleteFlag() != 1) {
            AppendLine(section, number++, [&] { AppendListValue(*record, section); });
        }
    }
    return section;
}

std::string FormatSection(const ListValues& values, std::int64_t count) {
    std::string section = SectionHead(count, values.size());
    std::size_t number = 0;
    for (const std::string_view value : values) {
        AppendLine(section, number++, [&] { section += value; });
    }
    return section;
}

std::string WithSection(std::string_view content, std::string section) {
    std::string others;
    while (!content.empty()) {
        const Part part = NextPart(content);
        if (!part.IsList) {
            others += part.Text;
        }
    }
    if (!others.empty() && !IsLineEnd(others.back())) {
        others += LineEnd;
    }
    return std::move(section.insert(0, others));
}

FileError ReplaceListFile(const StoreServices& services, const std::string& path,
                          const std::string& content) {
    Files& files = services.FileSystem;
    FileError first = FileError::None;
    AsideFile aside(services, FolderOf(path), content, path, first);
    if (aside.Path().empty()) {
        return aside.Error(); // it is in its place, after which nothing may fail, or could not be made
    }
    FileError error = RetryBriefly(services, [&, isFirst = true]() mutable {
        const FileError refusal = std::exchange(isFirst, false) ? first : aside.PutOver(path);
        const bool isFinal = refusal == FileError::Held && files.IsReadOnly(path);
        return isFinal ? FileError::Other : refusal;
    });
    if (error != FileError::Held) {
        return error;
    }
    error = files.Overwrite(path, content);
    if (error == FileError::Other) {
        aside.Keep();
    }
    return error;
}

bool ChangeListFile(const StoreServices& services, const std::string& path,
                    const std::function<std::optional<std::string>(std::string bytes)>& change,
                    std::string* written) {
    const std::unique_ptr<FileLock> lock = WaitForLock(services, path);
    std::string bytes;
    const FileError error = RetryBriefly(services, [&] { return services.FileSystem.Read(path, bytes); });
    if (error != FileError::None && error != FileError::NotFound) {
        return false;
    }
    std::optional<std::string> changed = change(std::move(bytes));
    if (!changed || ReplaceListFile(services, path, *changed) != FileError::None) {
        return false;
    }
    if (written != nullptr) {
        *written = std::move(*changed);
    }
    return true;
}

} // namespace pmx
