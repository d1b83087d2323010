#pragma once

#include <string>
#include <vector>

namespace pmx::test::shared {

/// An entry of a list file.
struct Entry {
    enum class Kind { User, Standard, Unreadable };

    Kind What = Kind::User;
    std::string Name; ///< of an unreadable one all that it says
    int Icon = 14;
    std::string File = {}; ///< of a standard one its number

    /// As it stands in the list file.
    std::string Value() const;

    /// What it is known by.
    std::string Id() const;
};

using Entries = std::vector<Entry>;

/// The list file's section.
std::string SectionOf(const Entries& entries, std::size_t count);

/// What a list writes that held `base`, now holds `mine` and finds `theirs` in the file: the rules, written
/// down as plainly as they can be.
Entries Merged(const Entries& base, const Entries& mine, const Entries& theirs);

} // namespace pmx::test::shared
