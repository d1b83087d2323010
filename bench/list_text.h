#pragma once

#include "store/list_data_array.h"

#include <cstddef>
#include <string>
#include <string_view>

// The words of the list file and the quickest straightforward way with its keys and values. The limit and all
// peers share it, so that they differ only in how they come by keys and values.

namespace pmx::bench {

inline constexpr const char* Section = "PMXTemplateList";
inline constexpr const char* CountKey = "TemplateNum";
inline constexpr const char* DataKeyPrefix = "TemplateData";

/// The number that a text begins with, 0 when it begins with none.
std::size_t NumberOf(std::string_view text);

/// Adds the favorite that a value describes; nothing when it does not have six fields.
void AddFavorite(std::string_view value, CPMXTemplUIListDataArray& list);

/// Appends the value that describes a favorite.
void AppendValue(const CPMXTemplUIListData& record, std::string& text);

/// Fills a list from the section's keys and values in the order of the file.
class SectionReader {
public:
    explicit SectionReader(CPMXTemplUIListDataArray& list) : List(list) {}

    void Take(std::string_view key, std::string_view value);

private:
    CPMXTemplUIListDataArray& List;
    std::size_t Count = 0;
};

/// The section's keys and values for a list, in the order of the file: calls `take` with key and value, both
/// ended by a zero, which live until it returns.
template <typename Taker>
void WriteSection(const CPMXTemplUIListDataArray& list, Taker take) {
    take(CountKey, std::to_string(list.GetSize()).c_str());
    std::string value;
    for (std::int64_t index = 0; index < list.GetSize(); ++index) {
        value.clear();
        AppendValue(list.At(index), value);
        take((DataKeyPrefix + std::to_string(index)).c_str(), value.c_str());
    }
}

} // namespace pmx::bench
