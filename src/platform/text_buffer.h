#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace pmx {

/// A text that grows at its end. Unlike that of a std::string its room is written by the caller, so that no
/// byte is written twice.
class TextBuffer {
public:
    TextBuffer() = default;
    TextBuffer(TextBuffer&& other) noexcept { Exchange(other); }
    TextBuffer(const TextBuffer& other) { Append(other.View()); }
    TextBuffer& operator=(TextBuffer&& other) noexcept {
        TextBuffer taken(std::move(other));
        Exchange(taken);
        return *this;
    }
    TextBuffer& operator=(const TextBuffer& other) { return *this = TextBuffer(other); }
    ~TextBuffer() = default;

    std::string_view View() const { return {Bytes.get(), Used}; }
    std::size_t Size() const { return Used; }

    void Reserve(std::size_t size) {
        if (size > Capacity) {
            MoveTo(size);
        }
    }

    /// Room for so many more bytes at the end. Those that are written there count once EndAt is told.
    char* Room(std::size_t size) {
        if (Capacity - Used < size) {
            MoveTo(std::max(Used + size, 2 * Capacity));
        }
        return Bytes.get() + Used;
    }

    /// `end` is in the room given last: behind what was written there.
    void EndAt(const char* end) { Used = static_cast<std::size_t>(end - Bytes.get()); }

    void Append(std::string_view text) { EndAt(std::copy(text.begin(), text.end(), Room(text.size()))); }

private:
    void Exchange(TextBuffer& other) noexcept {
        std::swap(Bytes, other.Bytes);
        std::swap(Used, other.Used);
        std::swap(Capacity, other.Capacity);
    }

    void MoveTo(std::size_t capacity) {
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        std::copy(Bytes.get(), Bytes.get() + Used, larger.get());
        Bytes = std::move(larger);
        Capacity = capacity;
    }

    std::unique_ptr<char[]> Bytes;
    std::size_t Used = 0;
    std::size_t Capacity = 0;
};

} // namespace pmx
