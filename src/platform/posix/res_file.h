#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace pmx::posix {

/// Kinds of resources, by their number in resource files.
enum class ResourceType : std::uint16_t { Bitmap = 2, Dialog = 5, String = 6, Version = 16, Manifest = 24 };

/// Language of a resource: primary language in the low ten bits, sublanguage above.
enum class ResourceLanguage : std::uint16_t { Neutral = 0, English = 0x0409, Japanese = 0x0411 };

/// A compiled resource file (.res), read in place. No reading goes beyond the bytes given, whatever they are.
class ResFile {
public:
    /// Lists the resources of a file, which must outlive the result. None when the file is none of this form,
    /// is cut off or contradicts itself.
    static std::optional<ResFile> Read(std::span<const std::byte> file);

    /// The data of the first resource of that type and number; with `language`, of the first in that
    /// language. Empty when there is none. Resources that have names instead of numbers are never found.
    std::span<const std::byte> Find(ResourceType type, int id,
                                    std::optional<ResourceLanguage> language = std::nullopt) const;

    /// The string of that number; none when the string table has no such entry, an empty one or a broken one.
    std::optional<std::u16string> StringOf(int id) const;

    /// Numbers of all resources of a type, in file order. Strings are stored by blocks of sixteen: block n
    /// has the strings 16 * (n - 1) and following.
    std::vector<int> Ids(ResourceType type) const;

private:
    struct Entry {
        std::optional<std::uint16_t> Type; ///< none when the type has a name
        std::optional<std::uint16_t> Id;   ///< none when the resource has a name
        std::uint16_t Language = 0;
        std::span<const std::byte> Data;
    };

    explicit ResFile(std::vector<Entry> entries) : Entries(std::move(entries)) {}
    static std::optional<Entry> ReadEntry(std::span<const std::byte> file, std::size_t& position);

    std::vector<Entry> Entries;
};

} // namespace pmx::posix
