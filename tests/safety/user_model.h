#pragma once

/// What a user expects of a folder of favorites, as plain data and in the words of the user. Nothing here
/// knows how the library does it. Texts are in code page 932.

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pmx::test::model {

/// Longest name that can be typed, in bytes.
inline constexpr std::size_t NameLimit = 32;

/// Most favorites on the toolbar.
inline constexpr int ToolbarLimit = 20;

/// The icons of the strip, those that the picker offers, and that of a new favorite.
inline constexpr int IconCount = 60;
inline constexpr int FirstOfferedIcon = 14;
inline constexpr int OfferedIcons = IconCount - FirstOfferedIcon;
inline constexpr int NewIcon = 14;

// Texts

/// Bytes of the character that begins there.
std::size_t CharacterSize(const std::string& text, std::size_t at);

/// Small letters for the single-byte ones.
std::string SmallLetters(const std::string& text);

/// Whether two names are the same to the user: whatever the case.
bool SameName(const std::string& left, const std::string& right);

/// Without the blanks at both ends.
std::string Trimmed(const std::string& text);

/// As much of the beginning as a name box holds.
std::string Cut(const std::string& text);

/// What is in an empty name box after typing the text: a character that does not fit is not taken.
std::string Typed(const std::string& text);

/// Whether the sign that no name may contain is a character of it.
bool HasTilde(const std::string& text);

/// The name with another sign for those that no file name may contain.
std::string SafeFileName(const std::string& name);

/// The name as it can stand in the list file: without blanks at its ends and without the separator.
std::string Listable(const std::string& name);

/// The number that the text begins with, 0 for none.
int NumberIn(const std::string& text);

// Attributes

using TableBytes = std::array<unsigned char, 8657>;
using Table = std::shared_ptr<const TableBytes>;

/// Where the part of a level (1 to 5) starts in the table.
std::size_t PartStart(int level);

inline bool HasPart(int level) {
    return level >= 1 && level <= 5;
}

/// Level 1, also of a standard favorite.
inline bool IsDocumentLevel(int level) {
    return level == 1 || level == 101;
}

// Favorites

/// A favorite file; one without attributes is damaged.
struct File {
    std::string Name;
    int Level = 1;
    Table Attributes;
};

struct Favorite {
    bool IsStandard = false;
    std::string Name{};
    int Level = 1;
    bool OnToolbar = false;
    int Icon = NewIcon;
    std::string File{};

    // Only while a dialog or the host has the list open

    bool IsDeleted = false;
    bool IsNew = false;    ///< its file was made meanwhile
    bool IsOpened = false; ///< its attributes have been asked for
    Table Attributes{};    ///< those that it was read with; null when it was not or could not be read
    std::string Shown{};   ///< the name in its row

    /// The favorite's line in the list file, behind the equals sign.
    std::string Line() const;
};

using Favorites = std::vector<Favorite>;

/// Those that are found in a list file with these lines.
Favorites AfterReading(const Favorites& lines);

/// A folder: the list, and the favorite files by name.
struct Folder {
    Favorites List;
    std::map<std::string, File> Files;

    /// The file of that name, as the system finds it; null for none.
    const File* Find(const std::string& name) const;

    void Write(const std::string& name, const File& content);
    void Remove(const std::string& name);

    /// The name of the file that a new favorite, or an imported file, gets.
    std::string FreeName(const std::string& name) const;

    /// Reads the favorite's attributes unless that is done; false when its file is missing or damaged.
    bool Read(Favorite& favorite) const;

    /// Removes the files of the deleted ones, unless one that stays uses the same file.
    void RemoveFilesOfDeleted(const Favorites& favorites);
};

} // namespace pmx::test::model
