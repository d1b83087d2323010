#pragma once

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

    /// Makes room for `count` entries whose keys and values have `size` bytes together.
    void Reserve(std::size_t count, std::size_t size) {
        Places.reserve(count);
        Text.reserve(size + count * (LineEnd.size() + 1));
    }

    void Add(std::string_view key, std::string_view value) {
        Add(key, [value](std::string& text) { text.append(value); });
    }

    /// Adds an entry with the value that `append` puts at the end of the text it is given.
    template <typename Append>
    void Add(std::string_view key, const Append& append) requires requires(std::string& text) {
        append(text);
    }
    {
        Places.push_back({Text.size(), Text.size() + key.size()});
        Text.append(key);
        Text.push_back('=');
        append(Text);
        Text.append(LineEnd);
    }

    std::size_t Size() const { return Places.size(); }

    ProfileEntry operator[](std::size_t index) const {
        const std::string_view text = Text;
        const std::size_t value = Places[index].Sign + 1;
        return {text.substr(Places[index].Begin, Places[index].Sign - Places[index].Begin),
                text.substr(value, EndOf(index) - LineEnd.size() - value)};
    }

    /// The lines of the entries from `first` on.
    std::string_view Lines(std::size_t first) const {
        return std::string_view(Text).substr(first == 0 ? 0 : EndOf(first - 1));
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

    std::size_t EndOf(std::size_t index) const {
        return index + 1 == Places.size() ? Text.size() : Places[index + 1].Begin;
    }

    std::string Text;
    std::vector<Place> Places;
};

} // namespace pmx
