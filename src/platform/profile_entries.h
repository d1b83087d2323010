#pragma once

#include "platform/text_buffer.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace pmx {

/// One key of a section and its value, in the system's code page.
struct ProfileEntry {
    std::string_view Key;
    std::string_view Value;
};

/// How the values of items are written: HasValue tells whether an item has one, MostBytes gives at least its
/// size, and Write puts it where so much room is and gives its end.
template <typename Format, typename Item>
concept ProfileValueFormat = requires(const Item& item, char* room) {
    { Format::HasValue(item) } -> std::same_as<bool>;
    { Format::MostBytes(item) } -> std::same_as<std::size_t>;
    { Format::Write(item, room) } -> std::same_as<char*>;
};

/// A prefix and a number in decimal, without zeros before it, that counts up from 0.
class NumberedKey {
public:
    explicit NumberedKey(std::string_view prefix) : Text(prefix), PrefixSize(prefix.size()) {
        Text.push_back('0');
    }

    std::string_view View() const { return Text; }

    void Advance() {
        std::size_t digit = Text.size() - 1;
        while (Text[digit] == '9') {
            Text[digit] = '0';
            if (digit == PrefixSize) {
                Text.insert(PrefixSize, 1, '1');
                return;
            }
            --digit;
        }
        ++Text[digit];
    }

private:
    std::string Text;
    std::size_t PrefixSize;
};

/// Keys with their values in the order in which they are to be written, kept as the lines that a profile has:
/// `key=value` and CR LF each, one after the other in one text.
class ProfileEntries {
public:
    ProfileEntries() = default;
    ProfileEntries(std::initializer_list<ProfileEntry> entries) {
        for (const ProfileEntry& entry : entries) {
            Add(entry.Key, entry.Value);
        }
    }

    void Add(std::string_view key, std::string_view value) {
        char* end = BeginLine(key, value.size());
        end = std::copy(value.begin(), value.end(), end);
        EndLine(end);
        NumberedFrom = Size();
    }

    /// Adds an entry for each of the items that has a value; `prefix` and the number of the entry, counted
    /// from 0, are the key. That those keys are different and in order then needs no proof.
    template <typename Format, typename Item>
    requires ProfileValueFormat<Format, Item>
    void AddNumbered(std::string_view prefix, const std::vector<Item>& items) {
        constexpr std::size_t UsualLine = 80;
        NumberedFrom = Size();
        HasOuterSpaces = false;
        Places.reserve(Size() + items.size());
        Text.Reserve(Text.Size() + items.size() * UsualLine);
        NumberedKey key(prefix);
        for (const Item& item : items) {
            if (Format::HasValue(item)) {
                AddOne<Format>(key.View(), item);
                key.Advance();
            }
        }
    }

    /// Number of the first of the entries that AddNumbered added last; Size() when they are not the last.
    std::size_t FirstNumbered() const { return NumberedFrom; }

    /// True when the value of one of those begins or ends with a space.
    bool HaveNumberedOuterSpaces() const { return HasOuterSpaces; }

    std::size_t Size() const { return Places.size(); }

    ProfileEntry operator[](std::size_t index) const {
        const std::string_view text = Text.View();
        const std::size_t value = Places[index].Sign + 1;
        return {text.substr(Places[index].Begin, Places[index].Sign - Places[index].Begin),
                text.substr(value, EndOf(index) - LineEnd.size() - value)};
    }

    /// The lines of the entries from `first` on.
    std::string_view Lines(std::size_t first) const {
        return Text.View().substr(first == 0 ? 0 : EndOf(first - 1));
    }

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = ProfileEntry;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = ProfileEntry;

        Iterator(const ProfileEntries& entries, std::size_t index) : Entries(&entries), Index(index) {}
        ProfileEntry operator*() const { return (*Entries)[Index]; }
        Iterator& operator++() {
            ++Index;
            return *this;
        }
        Iterator operator++(int) { return {*Entries, Index++}; }
        bool operator==(const Iterator& other) const { return Index == other.Index; }

    private:
        const ProfileEntries* Entries;
        std::size_t Index;
    };

    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, Size()}; }

private:
    static constexpr std::string_view LineEnd = "\r\n";

    struct Place {
        std::size_t Begin;
        std::size_t Sign; ///< of the `=`
    };

    template <typename Format, typename Item>
    void AddOne(std::string_view key, const Item& item) {
        char* const value = BeginLine(key, Format::MostBytes(item));
        char* const end = Format::Write(item, value);
        EndLine(end);
        HasOuterSpaces = HasOuterSpaces || *value == ' ' || end[-1] == ' ';
    }

    /// Begins a line with room for a value of so many bytes, and gives the room.
    char* BeginLine(std::string_view key, std::size_t valueBytes) {
        char* const line = Text.Room(key.size() + 1 + valueBytes + LineEnd.size());
        char* const sign = std::copy(key.begin(), key.end(), line);
        *sign = '=';
        Places.push_back({Text.Size(), Text.Size() + key.size()});
        return sign + 1;
    }

    /// Ends the line that was begun last behind its value.
    void EndLine(char* valueEnd) { Text.EndAt(std::copy(LineEnd.begin(), LineEnd.end(), valueEnd)); }

    std::size_t EndOf(std::size_t index) const {
        return index + 1 == Places.size() ? Text.Size() : Places[index + 1].Begin;
    }

    TextBuffer Text;
    std::vector<Place> Places;
    std::size_t NumberedFrom = 0;
    bool HasOuterSpaces = false;
};

} // namespace pmx
