#pragma once

#include "platform/posix/profile_text.h"
#include "platform/profile_entries.h"

#include <cstddef>
#include <cstdint>
#include <deque>
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

    /// Goes to the end of the section and gives the text of the lines that NextLine would have gone through.
    std::string_view SkipLines();

    /// True when in a text that is not canonical the sections that were skipped may end elsewhere: a lead
    /// byte eats the bracket or the line end after it.
    bool HaveSkippedDoubtfully() const { return HasDoubt; }

private:
    bool ReadLine();
    void FindZeros();
    bool ReadHeader(std::string_view& name) const;
    void Split(ProfileLine& line) const;

    const char* Position;
    const char* End;
    const char* LineFeed; ///< the first at or after Position, or End
    ProfileEncoding Encoding;
    std::optional<bool> HasZeros; ///< nothing until FindZeros
    bool HasDoubt = false;
    bool HasLine = false;        ///< Line was read ahead
    bool AfterEmptyName = false; ///< the line before, in the same section, has an empty name
    std::string_view Line;
};

/// Goes to the first section of that name (without regard to case), for the text from its beginning on. An
/// empty name stands for the lines before the first header.
bool FindSection(ProfileReader& reader, std::string_view name, ProfileEncoding encoding);

/// A profile that is being changed. Every change that counts is as if the file were written and read again
/// after it, as the platform does, but costs that only when it makes a difference. Names and values are texts
/// of a call (code page 932, up to the first zero) and must stay until the editor is gone.
class ProfileEditor {
public:
    explicit ProfileEditor(ProfileText& text);

    /// Begins by removing sections of that name until there is none. The text may be AsItStands: that of the
    /// first such section is not looked at more closely than to find its end.
    ProfileEditor(ProfileText& text, std::string_view removedSection);

    ~ProfileEditor() = default;
    ProfileEditor(const ProfileEditor&) = delete;
    ProfileEditor& operator=(const ProfileEditor&) = delete;

    /// Removes the first section of exactly that name (without regard to case); false when there is none.
    bool RemoveSection(std::string_view name);

    /// Removes the first key of that name from the sections of that name.
    void RemoveKey(std::string_view section, std::string_view key);

    /// Gives the first key of that name in the first section of that name a value, or adds it at the end of
    /// the section, or adds the section at the end.
    void Set(std::string_view section, std::string_view key, std::string_view value);

    /// Sets all of them, in order. The entries must stay until the editor is gone.
    void SetAll(std::string_view section, const ProfileEntries& entries);

    bool IsChanged() const { return Rewrites != 0; }

    /// The content of the file after the changes, in two parts to be written one after the other.
    struct Content {
        std::string Head;
        std::string_view Tail; ///< refers to the entries of SetAll
    };
    Content Bytes() const;

private:
    /// After this many rewrites a profile is in a form that further ones do not change: the first drops what
    /// stands after zeros and the headers without a name, the second what became a blank or repeated by that.
    static constexpr std::size_t RewritesToSettle = 2;

    struct Section {
        std::string_view Name;
        std::string_view Body;          ///< the text of the lines; counts until they are needed one by one
        std::vector<ProfileLine> Lines; ///< count when IsTakenApart
        bool IsTakenApart = false;
    };

    std::string_view FromCaller(std::string_view callText);
    void RemoveSections(std::string_view name);
    void Parse(std::optional<std::string_view> removedSection = std::nullopt);
    bool TryParse(std::optional<std::string_view> removedSection);
    bool HasTail() const;
    std::string Joined(bool withTail) const;
    void Settle();
    void NoteChange(bool readsBackAsIs);
    std::vector<ProfileLine>& LinesOf(Section& section) const;
    Section& FindOrAdd(std::string_view name);
    std::size_t FindLine(const std::vector<ProfileLine>& lines, std::string_view key);
    void IndexLine(const std::vector<ProfileLine>& lines, std::size_t line);
    void ForgetIndex();
    bool AreAscending(const std::vector<ProfileLine>& lines);
    bool CanAppend(const ProfileEntries& entries, std::size_t first);

    ProfileText& Source;
    std::vector<Section> Sections;     ///< the first holds the lines before the first header
    std::deque<std::string> Converted; ///< texts of calls that are not in the form of Source
    std::size_t Rewrites = 0;
    std::size_t SettledAfter = RewritesToSettle; ///< as a number of Rewrites
    std::optional<std::string> Written; ///< the bytes that Source was read from, if it took them for Unicode
    bool IsAsRead = true;               ///< Sections have not changed since Source was parsed
    bool MustSettle = false;            ///< the text must be read again before the next change

    std::size_t TargetNumber = 0;     ///< number of the section that Set worked on last plus one, or 0
    std::string_view TargetAskedFor;  ///< what Set was given for it
    std::size_t AscendingLines = 0;   ///< so many lines at its beginning are in ascending order
    std::vector<std::uint32_t> Index; ///< hash table of its line numbers plus one, 0 for free places
    std::size_t IndexedLines = 0;
    std::string_view Appended; ///< further lines of it
};

} // namespace pmx::posix
