#include "platform/posix/profile_document.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace pmx::posix {

namespace {

constexpr std::string_view LineEnd = "\r\n";

/// After this many rewrites a profile is in a form that further ones do not change: the first drops what
/// stands after zeros and the headers without a name, the second what became a blank or repeated by that.
constexpr std::size_t RewritesToSettle = 2;

bool IsLineEnd(char character) {
    return character == '\r' || character == '\n';
}

bool HasLineEnd(std::string_view text) {
    return std::any_of(text.begin(), text.end(), IsLineEnd);
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
      LineFeed(Position),
      Encoding(encoding),
      HasZeros(!text.empty() && std::memchr(text.data(), 0, text.size()) != nullptr) {
    if (!text.empty()) {
        const void* const found = std::memchr(Position, '\n', text.size());
        LineFeed = found == nullptr ? End : static_cast<const char*>(found);
    }
}

const char* ProfileReader::EndOfLine() {
    if (LineFeed < Position) {
        const void* const found = std::memchr(Position, '\n', static_cast<std::size_t>(End - Position));
        LineFeed = found == nullptr ? End : static_cast<const char*>(found);
    }
    const void* const found = std::memchr(Position, '\r', static_cast<std::size_t>(LineFeed - Position));
    return found == nullptr ? LineFeed : static_cast<const char*>(found);
}

bool ProfileReader::ReadLine() {
    while (Position != End) {
        const char* const begin = Position;
        const char* const end = EndOfLine();
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

bool ProfileReader::ReadHeader(std::string_view& name) const {
    if (Line.front() != '[') {
        return false;
    }
    const std::size_t closing = LastClosingBracket(Line, Encoding);
    if (closing == std::string_view::npos) {
        return false;
    }
    name = WithoutBlanks(Line.substr(1, closing - 1));
    name = HasZeros ? UpToZero(name) : name;
    return true;
}

bool ProfileReader::NextSection(std::string_view& name) {
    while (HasLine || ReadLine()) {
        HasLine = false;
        if (ReadHeader(name)) {
            AfterEmptyName = false;
            return true;
        }
    }
    return false;
}

ProfileLine ProfileReader::Split() const {
    const void* const sign = std::memchr(Line.data(), '=', Line.size());
    if (sign == nullptr) {
        return {Line, std::nullopt};
    }
    const auto length = static_cast<std::size_t>(static_cast<const char*>(sign) - Line.data());
    return {WithoutBlanks(Line.substr(0, length)), WithoutLeadingBlanks(Line.substr(length + 1))};
}

bool ProfileReader::NextLine(ProfileLine& line) {
    while (HasLine || ReadLine()) {
        std::string_view header;
        HasLine = ReadHeader(header);
        if (HasLine) {
            return false;
        }
        line = Split();
        if (line.Name.empty() && AfterEmptyName) {
            continue;
        }
        if (HasZeros) {
            line.Name = UpToZero(line.Name);
            line.Value = line.Value ? std::optional(UpToZero(*line.Value)) : std::nullopt;
        }
        AfterEmptyName = line.Name.empty();
        return true;
    }
    return false;
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

std::string_view TextStore::Add(std::string_view text) {
    constexpr std::size_t BlockSize = std::size_t{1} << 16U;
    if (text.size() > Free) {
        Free = std::max(BlockSize, text.size());
        Next = Blocks.emplace_back(std::make_unique_for_overwrite<char[]>(Free)).get();
    }
    char* const place = Next;
    std::copy(text.begin(), text.end(), place);
    Next += text.size();
    Free -= text.size();
    return {place, text.size()};
}

void TextStore::Clear() {
    Blocks.clear();
    Free = 0;
    Next = nullptr;
}

ProfileEditor::ProfileEditor(ProfileText& text) : Source(text) {
    Parse();
}

void ProfileEditor::Parse() {
    IsAsRead = true;
    ForgetIndex();
    Sections.clear();
    Sections.emplace_back();
    ProfileReader reader(Source.View(), Source.Encoding());
    std::string_view name;
    do {
        ProfileLine line;
        while (reader.NextLine(line)) {
            Sections.back().Lines.push_back(line);
        }
        if (!reader.NextSection(name)) {
            return;
        }
        Sections.push_back({name, {}});
    } while (true);
}

void ProfileEditor::Settle() {
    if (!MustSettle) {
        return;
    }
    MustSettle = false;
    Source.Assign(Joined());
    Parse();
    Kept.Clear();
}

void ProfileEditor::NoteChange(bool readsBackAsIs) {
    ++Rewrites;
    IsAsRead = false;
    MustSettle = !readsBackAsIs || Rewrites <= RewritesToSettle;
}

bool ProfileEditor::RemoveSection(std::string_view name) {
    Settle();
    ForgetIndex();
    const auto found = std::find_if(Sections.begin(), Sections.end(), [&](const Section& section) {
        return EqualNames(section.Name, name, Source.Encoding());
    });
    if (found == Sections.end()) {
        return false;
    }
    Sections.erase(found);
    // Without the nameless section at its beginning the form is not that of a profile that was read.
    NoteChange(!name.empty());
    return true;
}

void ProfileEditor::RemoveSections(std::string_view name) {
    while (RemoveSection(name)) {
        if (Rewrites >= RewritesToSettle) {
            Settle();
            const std::size_t removed = std::erase_if(Sections, [&](const Section& section) {
                return EqualNames(section.Name, name, Source.Encoding());
            });
            IsAsRead = IsAsRead && removed == 0;
        }
    }
}

void ProfileEditor::RemoveKey(std::string_view section, std::string_view key) {
    Settle();
    ForgetIndex();
    for (Section& candidate : Sections) {
        if (!EqualNames(candidate.Name, section, Source.Encoding())) {
            continue;
        }
        const auto line =
            std::find_if(candidate.Lines.begin(), candidate.Lines.end(), [&](const ProfileLine& each) {
                return EqualNames(each.Name, key, Source.Encoding());
            });
        if (line != candidate.Lines.end()) {
            candidate.Lines.erase(line);
            NoteChange(true);
            return;
        }
    }
}

ProfileEditor::Section& ProfileEditor::FindOrAdd(std::string_view name) {
    if (IndexedSection != 0 && IndexedName == name) {
        return Sections[IndexedSection - 1];
    }
    ForgetIndex();
    const std::string_view asked = WithoutBlanks(name);
    auto found = std::find_if(Sections.begin(), Sections.end(), [&](const Section& section) {
        return EqualNames(section.Name, asked, Source.Encoding());
    });
    if (found == Sections.end()) {
        found = Sections.insert(found, {Kept.Add(WithoutLeadingBlanks(name)), {}});
    }
    IndexedName = name;
    IndexedSection = static_cast<std::size_t>(found - Sections.begin()) + 1;
    return *found;
}

void ProfileEditor::ForgetIndex() {
    IndexedSection = 0;
    IndexedLines = 0;
    Index.clear();
}

/// Number of the line that is the key, or of the line after the last.
std::size_t ProfileEditor::FindLine(const Section& section, std::string_view key) {
    while (IndexedLines < section.Lines.size()) {
        IndexLine(section, IndexedLines++);
    }
    if (Index.empty()) {
        return section.Lines.size();
    }
    std::size_t place = HashOf(key) & (Index.size() - 1);
    while (Index[place] != 0) {
        if (EqualNames(section.Lines[Index[place] - 1].Name, key, Source.Encoding())) {
            return Index[place] - 1;
        }
        place = (place + 1) & (Index.size() - 1);
    }
    return section.Lines.size();
}

/// Enters the line, unless one of the same name stands before it.
void ProfileEditor::IndexLine(const Section& section, std::size_t line) {
    if ((line + 1) * 2 > Index.size()) {
        Index.assign(std::max<std::size_t>(64, Index.size() * 2), 0);
        for (std::size_t earlier = 0; earlier < line; ++earlier) {
            IndexLine(section, earlier);
        }
    }
    std::size_t place = HashOf(section.Lines[line].Name) & (Index.size() - 1);
    while (Index[place] != 0) {
        if (EqualNames(section.Lines[Index[place] - 1].Name, section.Lines[line].Name, Source.Encoding())) {
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
    const std::size_t line = FindLine(target, WithoutBlanks(key));
    const std::string_view text = WithoutLeadingBlanks(value);
    if (line == target.Lines.size()) {
        target.Lines.push_back({Kept.Add(WithoutLeadingBlanks(key)), std::nullopt});
    }
    ProfileLine& changed = target.Lines[line];
    if (changed.Value == text) {
        return;
    }
    changed.Value = Kept.Add(text);
    const bool isPlainHeader = !isNewSection || (!HasLineEnd(target.Name) && !EndsBlank(target.Name));
    NoteChange(isPlainHeader && ReadsBackAsIs(changed.Name, text));
}

std::string ProfileEditor::Joined() const {
    std::size_t size = 0;
    for (const Section& section : Sections) {
        size += section.Name.size() + 4;
        for (const ProfileLine& line : section.Lines) {
            size += line.Name.size() + (line.Value ? line.Value->size() + 1 : 0) + LineEnd.size();
        }
    }
    std::string text;
    text.reserve(size);
    for (const Section& section : Sections) {
        if (!section.Name.empty()) {
            text.append("[").append(section.Name).append("]").append(LineEnd);
        }
        for (const ProfileLine& line : section.Lines) {
            text.append(line.Name);
            if (line.Value) {
                text.append("=").append(*line.Value);
            }
            text.append(LineEnd);
        }
    }
    return text;
}

} // namespace pmx::posix
