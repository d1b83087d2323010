#include "platform/posix/profile_document.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace pmx::posix {

namespace {

constexpr std::string_view LineEnd = "\r\n";

bool IsLineEnd(char character) {
    return character == '\r' || character == '\n';
}

/// Where the line begins that has nothing but blanks before `place`; null when it has more. The text begins
/// at `begin`.
const char* LineBeginBefore(const char* begin, const char* place) {
    while (place != begin && IsProfileBlank(place[-1]) && !IsLineEnd(place[-1])) {
        --place;
    }
    return place == begin || IsLineEnd(place[-1]) ? place : nullptr;
}

/// True when the line end before that line, if there is one, may be the second byte of a character.
bool MayBeEaten(const char* begin, const char* lineBegin) {
    return lineBegin - begin >= 2 && static_cast<unsigned char>(lineBegin[-2]) >= 0x80;
}

/// The first such character between two places, or the second place.
const char* Find(const char* from, const char* to, char wanted) {
    const void* const found =
        from == to ? nullptr : std::memchr(from, wanted, static_cast<std::size_t>(to - from));
    return found == nullptr ? to : static_cast<const char*>(found);
}

bool HasLineEnd(std::string_view text) {
    return text.find('\n') != std::string_view::npos || text.find('\r') != std::string_view::npos;
}

bool EndsBlank(std::string_view text) {
    return !text.empty() && IsProfileBlank(text.back());
}

/// True when a line of that name and value reads back as the same line.
bool ReadsBackAsIs(std::string_view name, std::string_view value) {
    const bool isPlainName = !name.empty() && name.front() != '[' && !EndsBlank(name) &&
                             name.find('=') == std::string_view::npos && !HasLineEnd(name);
    return isPlainName && !EndsBlank(value) && !HasLineEnd(value);
}

char Folded(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// True when the names are surely different, and in an order in which no name can come again: longer ones
/// after shorter ones, else byte by byte. All bytes are compared without case, which makes more of them
/// equal.
bool IsAscending(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) {
        return left.size() < right.size();
    }
    const auto [first, second] = std::mismatch(left.begin(), left.end(), right.begin(),
                                               [](char a, char b) { return Folded(a) == Folded(b); });
    return first != left.end() &&
           static_cast<unsigned char>(Folded(*first)) < static_cast<unsigned char>(Folded(*second));
}

/// True when a canonical key without control characters is found again as it is in the line that it is
/// written into.
bool IsPlainName(std::string_view name) {
    return !name.empty() && name.front() != '[' && name.front() != ' ' && name.back() != ' ' &&
           name.find('=') == std::string_view::npos;
}

void AppendLine(std::string& text, const ProfileLine& line) {
    text.append(line.Name);
    if (line.Value) {
        text.append("=").append(*line.Value);
    }
    text.append(LineEnd);
}

/// Equal for names that differ only in case; which others share it does not matter.
std::size_t HashOf(std::string_view name) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char character : name) {
        hash = (hash ^ (static_cast<unsigned char>(character) | 0x20U)) * 1099511628211U;
    }
    return static_cast<std::size_t>(hash ^ hash >> 29U);
}

} // namespace

ProfileReader::ProfileReader(std::string_view text, ProfileEncoding encoding)
    : Position(text.data()),
      End(text.data() + text.size()),
      LineFeed(Find(Position, End, '\n')),
      Encoding(encoding) {}

/// Looks for zeros from the line that was read first on. Those who only look for headers are spared that.
void ProfileReader::FindZeros() {
    HasZeros = Find(Line.data(), End, '\0') != End;
}

/// Reads the next line that is not empty, without the blanks around it.
bool ProfileReader::ReadLine() {
    while (Position != End) {
        if (LineFeed < Position) {
            LineFeed = Find(Position, End, '\n');
        }
        const char* const begin = Position;
        const char* const end = Find(begin, LineFeed, '\r');
        Position = end;
        while (Position != End && IsLineEnd(*Position)) {
            ++Position;
        }
        Line = WithoutBlanks({begin, static_cast<std::size_t>(end - begin)});
        if (!Line.empty()) {
            return true;
        }
    }
    return false;
}

/// True when Line is a header.
bool ProfileReader::ReadHeader(std::string_view& name) const {
    const std::size_t closing = LastClosingBracket(Line, Encoding);
    if (closing == std::string_view::npos) {
        return false;
    }
    name = UpToZero(WithoutBlanks(Line.substr(1, closing - 1)));
    return true;
}

bool ProfileReader::NextSection(std::string_view& name) {
    while (HasLine || ReadLine()) {
        HasLine = false;
        if (Line.front() == '[' && ReadHeader(name)) {
            AfterEmptyName = false;
            return true;
        }
    }
    return false;
}

void ProfileReader::Split(ProfileLine& line) const {
    const char* const end = Line.data() + Line.size();
    const char* const sign = Find(Line.data(), end, '=');
    line.Name = {Line.data(), static_cast<std::size_t>(sign - Line.data())};
    if (sign == end) {
        line.Value.reset();
        return;
    }
    line.Name = WithoutBlanks(line.Name);
    line.Value = WithoutLeadingBlanks({sign + 1, static_cast<std::size_t>(end - sign - 1)});
}

bool ProfileReader::NextLine(ProfileLine& line) {
    while (HasLine || ReadLine()) {
        std::string_view header;
        HasLine = Line.front() == '[' && ReadHeader(header);
        if (HasLine) {
            return false;
        }
        Split(line);
        if (line.Name.empty() && AfterEmptyName) {
            continue;
        }
        if (!HasZeros) {
            FindZeros();
        }
        if (*HasZeros) {
            line.Name = UpToZero(line.Name);
            line.Value = line.Value ? std::optional(UpToZero(*line.Value)) : std::nullopt;
        }
        AfterEmptyName = line.Name.empty();
        return true;
    }
    return false;
}

std::string_view ProfileReader::SkipLines() {
    const char* const begin = HasLine ? Line.data() : Position;
    const char* end = begin;
    while (!HasLine) {
        end = Find(Position, End, '[');
        Position = end;
        if (end == End) {
            break;
        }
        const char* const lineBegin = LineBeginBefore(begin, end);
        if (lineBegin == nullptr) {
            ++Position;
        } else if (ReadLine()) {
            std::string_view header;
            HasLine = ReadHeader(header);
            HasDoubt = HasDoubt || MayBeEaten(begin, lineBegin) || !IsCanonical(Line);
        }
    }
    return WithoutTrailingBlanks({begin, static_cast<std::size_t>(end - begin)});
}

bool FindSection(ProfileReader& reader, std::string_view name, ProfileEncoding encoding) {
    if (name.empty()) {
        return true;
    }
    std::string_view found;
    while (reader.NextSection(found)) {
        if (EqualNames(found, name, encoding)) {
            return true;
        }
    }
    return false;
}

ProfileEditor::ProfileEditor(ProfileText& text) : Source(text) {
    Parse();
}

ProfileEditor::ProfileEditor(ProfileText& text, std::string_view removedSection) : Source(text) {
    Parse(FromCaller(removedSection));
    RemoveSections(removedSection);
}

/// The text in the form of Source.
std::string_view ProfileEditor::FromCaller(std::string_view callText) {
    const CallText text(callText, Source.Encoding());
    return text.IsConverted() ? std::string_view(Converted.emplace_back(text.View())) : text.View();
}

void ProfileEditor::Parse(std::optional<std::string_view> removedSection) {
    if (!TryParse(removedSection)) {
        Source.MakeCanonical();
        TryParse(removedSection);
    }
}

/// False when the text is not surely canonical and something that would be different if it were made so has
/// been met outside the section that will be removed first.
bool ProfileEditor::TryParse(std::optional<std::string_view> removedSection) {
    IsAsRead = true;
    ForgetIndex();
    Sections.clear();
    ProfileReader reader(Source.View(), Source.Encoding());
    bool isCertain = true;
    std::string_view name;
    do {
        Section& section = Sections.emplace_back();
        section.Name = name;
        section.Body = reader.SkipLines();
        if (removedSection && EqualNames(name, *removedSection, Source.Encoding())) {
            removedSection.reset();
        } else {
            isCertain = isCertain && (Source.IsSurelyCanonical() || IsCanonical(section.Body));
        }
    } while (reader.NextSection(name));
    return Source.IsSurelyCanonical() || (isCertain && !reader.HaveSkippedDoubtfully());
}

void ProfileEditor::Settle() {
    if (!MustSettle) {
        return;
    }
    MustSettle = false;
    std::string text = Joined(true);
    Written.reset();
    if (Source.Encoding() == ProfileEncoding::CodePage && HasUnicodeMark(text)) {
        SettledAfter = Rewrites + RewritesToSettle;
        Source.Reread(text);
        Written = std::move(text);
    } else {
        Source.Assign(std::move(text));
    }
    Appended = {};
    Parse();
}

void ProfileEditor::NoteChange(bool readsBackAsIs) {
    ++Rewrites;
    IsAsRead = false;
    if (!readsBackAsIs) {
        SettledAfter = Rewrites + RewritesToSettle;
    }
    MustSettle = Rewrites <= SettledAfter;
}

std::vector<ProfileLine>& ProfileEditor::LinesOf(Section& section) const {
    if (!section.IsTakenApart) {
        section.IsTakenApart = true;
        ProfileReader reader(section.Body, Source.Encoding());
        ProfileLine line;
        while (reader.NextLine(line)) {
            section.Lines.push_back(line);
        }
    }
    return section.Lines;
}

bool ProfileEditor::RemoveSection(std::string_view name) {
    Settle();
    ForgetIndex();
    const std::string_view asked = FromCaller(name);
    const auto found = std::find_if(Sections.begin(), Sections.end(), [&](const Section& section) {
        return EqualNames(section.Name, asked, Source.Encoding());
    });
    if (found == Sections.end()) {
        return false;
    }
    Sections.erase(found);
    // Without the nameless section at its beginning the form is not that of a profile that was read.
    NoteChange(!asked.empty());
    return true;
}

void ProfileEditor::RemoveSections(std::string_view name) {
    const std::string_view asked = FromCaller(name);
    while (RemoveSection(name)) {
        if (Rewrites < SettledAfter) {
            continue;
        }
        Settle();
        const std::size_t removed = std::erase_if(Sections, [&](const Section& section) {
            return EqualNames(section.Name, asked, Source.Encoding());
        });
        IsAsRead = IsAsRead && removed == 0;
    }
}

void ProfileEditor::RemoveKey(std::string_view section, std::string_view key) {
    Settle();
    ForgetIndex();
    const std::string_view askedSection = FromCaller(section);
    const std::string_view askedKey = FromCaller(key);
    for (Section& candidate : Sections) {
        if (!EqualNames(candidate.Name, askedSection, Source.Encoding())) {
            continue;
        }
        std::vector<ProfileLine>& lines = LinesOf(candidate);
        const auto line = std::find_if(lines.begin(), lines.end(), [&](const ProfileLine& each) {
            return EqualNames(each.Name, askedKey, Source.Encoding());
        });
        if (line != lines.end()) {
            lines.erase(line);
            NoteChange(true);
            return;
        }
    }
}

ProfileEditor::Section& ProfileEditor::FindOrAdd(std::string_view name) {
    if (TargetNumber != 0 && TargetAskedFor == name) {
        return Sections[TargetNumber - 1];
    }
    ForgetIndex();
    const std::string_view text = FromCaller(name);
    const std::string_view asked = WithoutBlanks(text);
    auto found = std::find_if(Sections.begin(), Sections.end(), [&](const Section& section) {
        return EqualNames(section.Name, asked, Source.Encoding());
    });
    if (found == Sections.end()) {
        found = Sections.insert(found, {WithoutLeadingBlanks(text), {}, {}, true});
    }
    TargetAskedFor = name;
    TargetNumber = static_cast<std::size_t>(found - Sections.begin()) + 1;
    return *found;
}

void ProfileEditor::ForgetIndex() {
    TargetNumber = 0;
    AscendingLines = 0;
    IndexedLines = 0;
    Index.clear();
}

/// True when the names of the target section's lines are in ascending order, as those of lists are.
bool ProfileEditor::AreAscending(const std::vector<ProfileLine>& lines) {
    while (AscendingLines < lines.size() &&
           (AscendingLines == 0 || IsAscending(lines[AscendingLines - 1].Name, lines[AscendingLines].Name))) {
        ++AscendingLines;
    }
    return AscendingLines == lines.size();
}

/// Number of the line that is the key, or of the line after the last.
std::size_t ProfileEditor::FindLine(const std::vector<ProfileLine>& lines, std::string_view key) {
    if (AreAscending(lines) && (lines.empty() || IsAscending(lines.back().Name, key))) {
        return lines.size();
    }
    while (IndexedLines < lines.size()) {
        IndexLine(lines, IndexedLines++);
    }
    std::size_t place = HashOf(key) & (Index.size() - 1);
    while (Index[place] != 0) {
        if (EqualNames(lines[Index[place] - 1].Name, key, Source.Encoding())) {
            return Index[place] - 1;
        }
        place = (place + 1) & (Index.size() - 1);
    }
    return lines.size();
}

/// Enters the line, unless one of the same name stands before it.
void ProfileEditor::IndexLine(const std::vector<ProfileLine>& lines, std::size_t line) {
    if ((line + 1) * 2 > Index.size()) {
        constexpr std::size_t SmallestIndex = 64;
        Index.assign(std::max(SmallestIndex, Index.size() * 2), 0);
        for (std::size_t earlier = 0; earlier < line; ++earlier) {
            IndexLine(lines, earlier);
        }
    }
    std::size_t place = HashOf(lines[line].Name) & (Index.size() - 1);
    while (Index[place] != 0) {
        if (EqualNames(lines[Index[place] - 1].Name, lines[line].Name, Source.Encoding())) {
            return;
        }
        place = (place + 1) & (Index.size() - 1);
    }
    Index[place] = static_cast<std::uint32_t>(line + 1);
}

void ProfileEditor::Set(std::string_view section, std::string_view key, std::string_view value) {
    Settle();
    const std::size_t sectionsBefore = Sections.size();
    Section& target = FindOrAdd(section);
    const bool isNewSection = Sections.size() != sectionsBefore;
    std::vector<ProfileLine>& lines = LinesOf(target);
    const std::string_view keyText = FromCaller(key);
    const std::size_t line = FindLine(lines, WithoutBlanks(keyText));
    if (line == lines.size()) {
        lines.push_back({WithoutLeadingBlanks(keyText), std::nullopt});
    }
    ProfileLine& changed = lines[line];
    const std::string_view valueText = WithoutLeadingBlanks(FromCaller(value));
    if (changed.Value == valueText) {
        return;
    }
    changed.Value = valueText;
    const bool isPlainHeader = !isNewSection || (!HasLineEnd(target.Name) && !EndsBlank(target.Name));
    NoteChange(isPlainHeader && ReadsBackAsIs(changed.Name, valueText));
}

/// True when adding the entries from `first` on, which are numbered, as lines at the end of the target
/// section is all that setting them does: they are new there, and every line reads back as it is. Their keys
/// are different and in order because they are numbered.
bool ProfileEditor::CanAppend(const ProfileEntries& entries, std::size_t first) {
    if (TargetNumber == 0 || MustSettle || Source.Encoding() != ProfileEncoding::CodePage ||
        entries.HaveNumberedOuterSpaces()) {
        return false;
    }
    const std::vector<ProfileLine>& lines = Sections[TargetNumber - 1].Lines;
    const std::string_view key = entries[first].Key;
    if (lines.empty() || !AreAscending(lines) || !IsAscending(lines.back().Name, key) || !IsPlainName(key)) {
        return false;
    }
    const std::size_t lineEnds = (entries.Size() - first) * LineEnd.size();
    return CountControls(entries.Lines(first)) == lineEnds; // no others
}

void ProfileEditor::SetAll(std::string_view section, const ProfileEntries& entries) {
    bool mayAppend = true;
    for (std::size_t index = 0; index < entries.Size(); ++index) {
        if (mayAppend && index >= entries.FirstNumbered() && Rewrites > SettledAfter) {
            mayAppend = false;
            if (CanAppend(entries, index)) {
                Appended = entries.Lines(index);
                MustSettle = true;
                return;
            }
        }
        const ProfileEntry entry = entries[index];
        Set(section, entry.Key, entry.Value);
    }
}

/// True when the appended lines are the last of the file.
bool ProfileEditor::HasTail() const {
    return !Appended.empty() && TargetNumber == Sections.size();
}

ProfileEditor::Content ProfileEditor::Bytes() const {
    if (IsAsRead && Written) {
        return {*Written, {}};
    }
    std::string text = IsAsRead ? std::string(Source.View()) : Joined(!HasTail());
    return {EncodedProfile(std::move(text), Source.Encoding()), HasTail() ? Appended : std::string_view()};
}

std::string ProfileEditor::Joined(bool withTail) const {
    std::string text;
    for (std::size_t number = 0; number < Sections.size(); ++number) {
        const Section& section = Sections[number];
        if (!section.Name.empty()) {
            text.append("[").append(section.Name).append("]").append(LineEnd);
        }
        if (section.IsTakenApart) {
            for (const ProfileLine& line : section.Lines) {
                AppendLine(text, line);
            }
        } else {
            ProfileReader reader(section.Body, Source.Encoding());
            ProfileLine line;
            while (reader.NextLine(line)) {
                AppendLine(text, line);
            }
        }
        if (number + 1 == TargetNumber && withTail) {
            text.append(Appended);
        }
    }
    return text;
}

} // namespace pmx::posix
