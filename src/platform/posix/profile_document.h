#pragma once

#include "platform/posix/profile_text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The lines of a profile: how they are read, and how they are changed.
namespace pmx::posix {

/// A line that is no header: a key and its value, or a line without `=`, comments included.
struct ProfileLine {
    std::string_view Name;
    std::optional<std::string_view> Value;

    bool IsComment() const { return Name.starts_with(';'); }
};

/// Takes a profile's text apart, line by line. Views are into the text.
class ProfileReader {
public:
    ProfileReader(std::string_view text, ProfileEncoding encoding);

    /// Goes on to the next header and gives its name, skipping other lines; false at the end of the text.
    bool NextSection(std::string_view& name);

    /// The next line of the section, false when there is none left. Lines before the first header belong to a
    /// section of their own, in which a new reader stands.
    bool NextLine(ProfileLine& line);

private:
    bool ReadLine();
    bool ReadHeader(std::string_view& name) const;
    ProfileLine Split() const;
    const char* EndOfLine();

    const char* Position;
    const char* End;
    const char* LineFeed; ///< the first at or after Position, or End
    ProfileEncoding Encoding;
    bool HasZeros;
    bool HasLine = false;        ///< Line was read ahead
    bool AfterEmptyName = false; ///< the line before, in the same section, has an empty name
    std::string_view Line;
};

/// Goes to the first section of that name (without regard to case), for the text from its beginning on. An
/// empty name stands for the lines before the first header.
bool FindSection(ProfileReader& reader, std::string_view name, ProfileEncoding encoding);

/// Keeps texts at fixed places.
class TextStore {
public:
    /// A copy of the text that lives as long as the store or until Clear.
    std::string_view Add(std::string_view text);
    void Clear();

private:
    std::vector<std::unique_ptr<char[]>> Blocks;
    std::size_t Free = 0; ///< bytes left at the end of the last block
    char* Next = nullptr;
};

/// A profile that is being changed. Every change that counts is as if the file were written and read again
/// after it, as the platform does, but costs that only when it makes a difference.
class ProfileEditor {
public:
    explicit ProfileEditor(ProfileText& text);
    ProfileEditor(const ProfileEditor&) = delete;
    ProfileEditor& operator=(const ProfileEditor&) = delete;

    /// Removes the first section of exactly that name (without regard to case); false when there is none.
    bool RemoveSection(std::string_view name);

    /// Removes all sections of that name.
    void RemoveSections(std::string_view name);

    /// Removes the first key of that name from the sections of that name.
    void RemoveKey(std::string_view section, std::string_view key);

    /// Gives the first key of that name in the first section of that name a value, or adds it at the end of
    /// the section, or adds the section at the end.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    bool IsChanged() const { return Rewrites != 0; }

    /// The text to be written.
    std::string Text() const { return IsAsRead ? std::string(Source.View()) : Joined(); }

private:
    struct Section {
        std::string_view Name;
        std::vector<ProfileLine> Lines;
    };

    void Parse();
    std::string Joined() const;
    void Settle();
    void NoteChange(bool readsBackAsIs);
    Section& FindOrAdd(std::string_view name);
    std::size_t FindLine(const Section& section, std::string_view key);
    void IndexLine(const Section& section, std::size_t line);
    void ForgetIndex();

    ProfileText& Source;
    std::vector<Section> Sections; ///< the first holds the lines before the first header
    TextStore Kept;                ///< texts of calls that are not in Source
    std::size_t Rewrites = 0;
    bool IsAsRead = true;             ///< Sections have not changed since Source was parsed
    bool MustSettle = false;          ///< the text must be read again before the next change
    std::size_t IndexedSection = 0;   ///< number of the section that Set worked on last plus one, or 0
    std::string IndexedName;          ///< what Set was given for it
    std::vector<std::uint32_t> Index; ///< open hash table of line numbers plus one, 0 for free places
    std::size_t IndexedLines = 0;
};

} // namespace pmx::posix
