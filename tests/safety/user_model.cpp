#include "safety/user_model.h"

#include <algorithm>
#include <cctype>

namespace pmx::test::model {

namespace {

constexpr const char* Blanks = " \t\n\v\f\r";

bool IsLead(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

/// The text taken apart into its characters.
std::vector<std::string> Characters(const std::string& text) {
    std::vector<std::string> characters;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t size = CharacterSize(text, at);
        characters.push_back(text.substr(at, size));
        at += size;
    }
    return characters;
}

/// Whether two file names mean one file on any system.
bool MaySame(const std::string& left, const std::string& right) {
    return SmallLetters(left) == SmallLetters(right);
}

bool SameFile(const std::string& left, const std::string& right) {
#ifdef _WIN32
    return MaySame(left, right);
#else
    return left == right;
#endif
}

bool IsDevice(const std::string& name) {
    const std::string device = SmallLetters(name.substr(0, name.find('.')));
    return device == "nul" || device == "con";
}

} // namespace

std::size_t CharacterSize(const std::string& text, std::size_t at) {
    return IsLead(text[at]) && at + 1 < text.size() ? 2 : 1;
}

std::string SmallLetters(const std::string& text) {
    std::string small = text;
    for (std::size_t at = 0; at < small.size(); at += CharacterSize(small, at)) {
        if (small[at] >= 'A' && small[at] <= 'Z') {
            small[at] = static_cast<char>(small[at] + ('a' - 'A'));
        }
    }
    return small;
}

bool SameName(const std::string& left, const std::string& right) {
    return left.size() == right.size() && SmallLetters(left) == SmallLetters(right);
}

std::string Trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(Blanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

std::string Cut(const std::string& text) {
    std::string kept;
    for (const std::string& character : Characters(text)) {
        if (kept.size() + character.size() > NameLimit) {
            break;
        }
        kept += character;
    }
    return kept;
}

std::string Typed(const std::string& text) {
    std::string kept;
    for (const std::string& character : Characters(text)) {
        kept += kept.size() + character.size() <= NameLimit ? character : "";
    }
    return kept;
}

bool HasTilde(const std::string& text) {
    const std::vector<std::string> characters = Characters(text);
    return std::find(characters.begin(), characters.end(), "~") != characters.end();
}

std::string Listable(const std::string& name) {
    std::string listable;
    for (const std::string& character : Characters(Trimmed(name))) {
        listable += character == "~" ? "=" : character;
    }
    return listable;
}

std::string SafeFileName(const std::string& name) {
    std::string safe;
    for (const std::string& character : Characters(name)) {
        const bool isForbidden =
            character.size() == 1 && std::string("\\/:*?\"<>|").find(character) != std::string::npos;
        safe += isForbidden ? "=" : character;
    }
    return safe;
}

int NumberIn(const std::string& text) {
    std::size_t end = 0;
    while (end < text.size() && end < 9 && std::isdigit(static_cast<unsigned char>(text[end])) != 0) {
        ++end;
    }
    return end == 0 ? 0 : std::stoi(text.substr(0, end));
}

std::size_t PartStart(int level) {
    constexpr std::array<std::size_t, 5> Starts = {0, 82, 126, 150, 2221};
    return Starts.at(static_cast<std::size_t>(level - 1));
}

std::string Favorite::Line() const {
    return std::string(IsStandard ? "1~" : "0~") + Name + '~' + std::to_string(Level) +
           (OnToolbar ? "~1~" : "~0~") + std::to_string(Icon) + '~' + File;
}

Favorites AfterReading(const Favorites& lines) {
    Favorites found;
    for (const Favorite& line : lines) {
        const int number = NumberIn(line.File);
        const bool isKnown = line.Level <= 100 || (number >= 1 && number <= 5);
        if (!Trimmed(line.Name).empty() && isKnown) {
            found.push_back({.IsStandard = line.IsStandard,
                             .Name = Trimmed(line.Name),
                             .Level = line.Level,
                             .OnToolbar = line.OnToolbar,
                             .Icon = line.Icon,
                             .File = line.File});
        }
    }
    return found;
}

const File* Folder::Find(const std::string& name) const {
    const auto found = std::find_if(Files.begin(), Files.end(),
                                    [&](const auto& file) { return SameFile(file.first, name); });
    return found == Files.end() ? nullptr : &found->second;
}

void Folder::Write(const std::string& name, const File& content) {
    const auto found = std::find_if(Files.begin(), Files.end(),
                                    [&](const auto& file) { return SameFile(file.first, name); });
    if (found != Files.end()) {
        found->second = content;
    } else {
        Files[name] = content;
    }
}

void Folder::Remove(const std::string& name) {
    std::erase_if(Files, [&](const auto& file) { return SameFile(file.first, name); });
}

std::string Folder::FreeName(const std::string& name) const {
    const std::string base = name.empty() ? "Template" : SafeFileName(name);
    std::string candidate = base + ".pmt";
    for (int number = 1; Find(candidate) != nullptr || IsDevice(candidate); ++number) {
        candidate = base + "-" + std::to_string(number) + ".pmt";
    }
    return candidate;
}

bool Folder::Read(Favorite& favorite) const {
    const File* const file = Find(favorite.File);
    if (!favorite.Attributes && file != nullptr) {
        favorite.Attributes = file->Attributes;
    }
    return favorite.Attributes != nullptr;
}

void Folder::RemoveFilesOfDeleted(const Favorites& favorites) {
    const auto isTaken = [](const Favorite& one) { return one.IsDeleted && !one.IsStandard; };
    for (const Favorite& deleted : favorites) {
        const bool isUsed = std::any_of(favorites.begin(), favorites.end(), [&](const Favorite& other) {
            return !isTaken(other) && MaySame(other.File, deleted.File);
        });
        if (isTaken(deleted) && !isUsed) {
            Remove(deleted.File);
        }
    }
}

} // namespace pmx::test::model
