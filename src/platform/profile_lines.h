#pragma once

#include "platform/profile.h"

#include <set>
#include <string>
#include <string_view>

namespace pmx {

/// The text without one outer pair of quotes of the same kind (`"` or `'`), as the platform's reading of a
/// value removes it.
inline std::string_view WithoutQuotes(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// The name with A to Z as small letters; names that the platform takes for the same become equal.
std::string InOneCase(std::string_view name);

/// Tells a visitor the lines of a section as reading its keys one by one would give them. Common to the
/// implementations of Profile::VisitSection.
class SectionLines {
public:
    /// Keeps a reference to `visitor`.
    explicit SectionLines(const Profile::Visitor& visitor) : Visit(visitor) {}

    /// A line with `=`; the value still has its quotes.
    void Take(std::string_view key, std::string_view value) {
        if (!key.starts_with(';') && (Hidden.empty() || !IsHidden(key))) {
            Visit(key, WithoutQuotes(value));
        }
    }

    /// A line without `=`: is not visited, and hides later keys of that name.
    void TakeBare(std::string_view name);

private:
    bool IsHidden(std::string_view key) const;

    const Profile::Visitor& Visit;
    std::set<std::string> Hidden; ///< names in one case
};

} // namespace pmx
