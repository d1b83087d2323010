#pragma once

#include "platform/text.h"
#include "store/list_data.h"
#include "store/store_services.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The list file: an INI file, of which the library reads one section and replaces it, and keeps every other
// byte. Section and key names ignore the case of A to Z; blanks around sections, keys and values do not count;
// lines end with any run of CR and LF; of equal sections or keys the first counts; one pair of quotes around a
// value is removed. docs/files.md has the format.

namespace pmx {

inline constexpr const char* DefaultListFileName = "PmxTempleList.ini";
inline constexpr std::string_view ListSection = "PMXTemplateList";
inline constexpr std::string_view CountKey = "TemplateNum";
inline constexpr std::string_view DataKeyPrefix = "TemplateData";
inline constexpr char FieldSeparator = '~';

/// The values of a list's entries, in order, as they stand in a list file or are to stand there.
using ListValues = std::vector<std::string_view>;

/// The number that a text begins with, as the C library's string-to-long conversion gives it with 32 bits:
/// leading blanks and a sign allowed, saturating, 0 when there are no digits.
std::int32_t LeadingNumber(std::string_view text);

/// A favorite's value as it stands in the list file.
std::string FormatListValue(const CPMXTemplUIListData& record);

/// The favorite that a value describes, or null when it does not have exactly six fields, lacks name or file,
/// or is a standard favorite with an unknown number. Throws std::bad_alloc.
std::unique_ptr<CPMXTemplUIListData> ParseListValue(std::string_view value, const LeadByteTable& leadBytes);

/// Why a value describes no favorite.
enum class ValueFault { None, TooFewFields, TooManyFields, NoName, NoFile, UnknownStandardNumber };

/// The reason that ParseListValue has for null; None when it gives a favorite.
ValueFault FaultOf(std::string_view value, const LeadByteTable& leadBytes);

/// A value with the number in its key.
struct NumberedValue {
    std::int32_t Number;
    std::string_view Value;
};

/// What the section of a list file holds, whatever counts of it. The texts refer to the content.
struct ListSectionContent {
    std::vector<NumberedValue> Values; ///< in the order of their numbers; the first of a number counts
    std::int32_t Count = 0;
    std::vector<std::string_view> OtherLines;      ///< that say anything else
    std::vector<std::string_view> FurtherSections; ///< others of the same name, as they stand
};

/// Throws std::bad_alloc.
ListSectionContent ReadListSection(std::string_view content);

/// The values of the section in a list file with that content, in the order of their numbers, as many as the
/// count allows; those that describe no favorite, too. They refer to `content`. The cost depends on the size
/// of the content, whatever count it states. Throws std::bad_alloc.
ListValues ReadListValues(std::string_view content);

/// Whether there is the section in a list file with that content, be it empty.
bool HasListSection(std::string_view content);

/// The lines of the section for these records, without those that are marked deleted. `count` is the number
/// that is written.
std::string FormatSection(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count);

/// The same for these values.
std::string FormatSection(const ListValues& values, std::int64_t count);

/// A list file's content with its section taken out and `section` put at the end.
std::string WithSection(std::string_view content, std::string section);

/// Gives a list file that content, which stands beside it whole before anything changes: it is put in the
/// place of the old file by one renaming, or, while another program keeps the old one open for longer than a
/// second, written over it. At any moment the folder holds the old list or the new one; a power failure may
/// still lose a renaming, never the old content. Not None when the file is as it was; Other also when
/// overwriting was begun and failed, and then the new list stays beside the file.
FileError ReplaceListFile(const StoreServices& services, const std::string& path, const std::string& content);

/// Reads the list file at `path`, a missing one as empty, and replaces it by what `change` makes of its bytes, all under
/// the list's lock. False when the file is as it was: `change` gave none, or the file cannot be read or replaced.
/// Otherwise what was written is in `written`, unless that is null. Throws std::bad_alloc.
bool ChangeListFile(const StoreServices& services, const std::string& path,
                    const std::function<std::optional<std::string>(std::string bytes)>& change,
                    std::string* written = nullptr);

} // namespace pmx
