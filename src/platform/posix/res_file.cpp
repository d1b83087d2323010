#include "platform/posix/res_file.h"

#include <utility>

namespace pmx::posix {

namespace {

/// Reads little-endian numbers one after the other. Once something was missing, everything further is.
class Reader {
public:
    explicit Reader(std::span<const std::byte> bytes, std::size_t position = 0)
        : Bytes(bytes), At(position) {}

    std::optional<std::uint16_t> Word() {
        const auto bytes = Take(2);
        if (bytes.empty()) {
            return std::nullopt;
        }
        return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[0]) |
                                          (std::to_integer<unsigned>(bytes[1]) << 8));
    }

    std::optional<std::uint32_t> Long() {
        const auto low = Word();
        const auto high = Word();
        if (!low || !high) {
            return std::nullopt;
        }
        return *low | (static_cast<std::uint32_t>(*high) << 16);
    }

    /// The next `count` bytes; empty when there are not that many.
    std::span<const std::byte> Take(std::size_t count) {
        if (Failed || At > Bytes.size() || count > Bytes.size() - At) {
            Failed = true;
            return {};
        }
        const auto taken = Bytes.subspan(At, count);
        At += count;
        return taken;
    }

    std::optional<std::u16string> Units(std::size_t count) {
        std::u16string text;
        for (std::size_t index = 0; index < count; ++index) {
            const auto unit = Word();
            if (!unit) {
                return std::nullopt;
            }
            text += static_cast<char16_t>(*unit);
        }
        return text;
    }

    void AlignToLong() { At = (At + 3) & ~std::size_t{3}; }
    std::size_t Position() const { return At; }
    bool Complete() const { return !Failed; }

private:
    std::span<const std::byte> Bytes;
    std::size_t At;
    bool Failed = false;
};

/// The number of a resource or of a type; none for a name, which is passed over, or when the file ends.
std::optional<std::uint16_t> ReadNumber(Reader& reader) {
    constexpr std::uint16_t NumberFollows = 0xFFFF;
    auto unit = reader.Word();
    if (unit == NumberFollows) {
        return reader.Word();
    }
    while (unit && *unit != 0) {
        unit = reader.Word();
    }
    return std::nullopt;
}

constexpr int StringsInBlock = 16;

} // namespace

std::optional<ResFile::Entry> ResFile::ReadEntry(std::span<const std::byte> file, std::size_t& position) {
    Reader reader(file, position);
    const auto dataSize = reader.Long();
    const auto headerSize = reader.Long();
    Entry entry;
    entry.Type = ReadNumber(reader);
    entry.Id = ReadNumber(reader);
    reader.AlignToLong();
    reader.Take(6); // data version, memory flags
    const auto language = reader.Word();
    reader.Take(8); // version, characteristics
    if (!reader.Complete() || reader.Position() - position != *headerSize) {
        return std::nullopt;
    }
    entry.Language = *language;
    entry.Data = reader.Take(*dataSize);
    if (!reader.Complete()) {
        return std::nullopt;
    }
    reader.AlignToLong();
    position = reader.Position();
    return entry;
}

std::optional<ResFile> ResFile::Read(std::span<const std::byte> file) {
    std::size_t position = 0;
    const auto signature = ReadEntry(file, position); // an empty resource of type 0 marks the file's form
    if (!signature || signature->Type != 0 || signature->Id != 0 || !signature->Data.empty()) {
        return std::nullopt;
    }
    std::vector<Entry> entries;
    while (position < file.size()) {
        auto entry = ReadEntry(file, position);
        if (!entry) {
            return std::nullopt;
        }
        entries.push_back(*entry);
    }
    return ResFile(std::move(entries));
}

std::span<const std::byte> ResFile::Find(ResourceType type, int id,
                                         std::optional<ResourceLanguage> language) const {
    for (const Entry& entry : Entries) {
        if (entry.Type == static_cast<std::uint16_t>(type) && entry.Id == id &&
            (!language || entry.Language == static_cast<std::uint16_t>(*language))) {
            return entry.Data;
        }
    }
    return {};
}

std::optional<std::u16string> ResFile::StringOf(int id) const {
    if (id < 0) {
        return std::nullopt;
    }
    Reader reader(Find(ResourceType::String, id / StringsInBlock + 1));
    for (int before = id % StringsInBlock; before > 0; --before) {
        reader.Take(std::size_t{2} * reader.Word().value_or(0));
    }
    const auto length = reader.Word();
    if (!length || *length == 0) {
        return std::nullopt;
    }
    return reader.Units(*length);
}

std::vector<int> ResFile::Ids(ResourceType type) const {
    std::vector<int> ids;
    for (const Entry& entry : Entries) {
        if (entry.Type == static_cast<std::uint16_t>(type) && entry.Id) {
            ids.push_back(*entry.Id);
        }
    }
    return ids;
}

} // namespace pmx::posix
