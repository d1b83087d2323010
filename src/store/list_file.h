#pragma once

#include "platform/text.h"
#include "store/list_data.h"
#include "store/store_services.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pmx {

/// The list file's words: one section, the number of favorites, and one key a favorite, numbered from 0.
inline constexpr std::string_view ListSection = "PMXTemplateList";
inline constexpr std::string_view CountKey = "TemplateNum";
inline constexpr std::string_view DataKeyPrefix = "TemplateData";
inline constexpr char FieldSeparator = '~';

/// The number that a text begins with, as the C library's string-to-long conversion gives it with 32 bits:
/// leading blanks and a sign allowed, saturating, 0 when there are no digits.
std::int32_t LeadingNumber(std::string_view text);

/// A favorite's value as it stands in the list file.
std::string FormatListValue(const CPMXTemplUIListData& record);

/// The favorite that a value describes, or null when it does not have exactly six fields, lacks name or file,
/// or is a standard favorite with an unknown number. Throws std::bad_alloc.
std::unique_ptr<CPMXTemplUIListData> ParseListValue(std::string_view value, const LeadByteTable& leadBytes);

/// Reads a list file once and hands over its favorites in the order of their numbers. `valueLimit` is the
/// most bytes of a value that are looked at. Cost depends on the size of the file, whatever count it states.
/// False when the file is there and could not be read.
bool ReadListFile(const std::string& path, std::size_t valueLimit, const StoreServices& services,
                  const std::function<void(std::unique_ptr<CPMXTemplUIListData>)>& take);

/// The entries of the section for the given records in order; null and deleted ones are left out. `count` is
/// the number that is written.
ProfileEntries MakeListEntries(const std::vector<const CPMXTemplUIListData*>& records, std::int64_t count);

/// Replaces the section in the list file at `path` in `folder` by these entries, atomically: the new
/// file is written aside and renamed over it. At any moment the folder holds the old list file or the new
/// one; a power failure may still lose the rename itself, never the old content. False when the file is
/// read-only or the new one cannot be made; the old one is then as it was and nothing is left aside.
bool ReplaceListFile(const std::string& folder, const std::string& path, const ProfileEntries& entries,
                     const StoreServices& services);

} // namespace pmx
