#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// The building blocks of the attribute table. Each is made of bytes only, so that a structure of them has no
/// padding and no alignment, and its bytes are the same on every machine: numbers are little-endian.
namespace pmx::sample {

/// A whole number of two or four bytes, least significant byte first.
template <typename Number>
class LittleEndian {
public:
    static_assert(std::is_integral_v<Number>);

    constexpr LittleEndian() = default;
    constexpr LittleEndian(Number value) { Set(value); }
    constexpr operator Number() const { return Get(); }

    constexpr Number Get() const {
        Unsigned value = 0;
        for (std::size_t index = sizeof(Number); index-- > 0;) {
            value = static_cast<Unsigned>((value << 8) | Bytes[index]);
        }
        return static_cast<Number>(value);
    }
    constexpr void Set(Number value) {
        auto rest = static_cast<Unsigned>(value);
        for (auto& byte : Bytes) {
            byte = static_cast<unsigned char>(rest & 0xFF);
            rest = static_cast<Unsigned>(rest >> 8);
        }
    }

private:
    using Unsigned = std::make_unsigned_t<Number>;

    std::array<unsigned char, sizeof(Number)> Bytes{};
};

using U16 = LittleEndian<std::uint16_t>;
using S16 = LittleEndian<std::int16_t>;

/// One of an enumeration's values in one byte. The enumeration names its number of values as `Count`; a byte
/// beyond them, from a newer or a damaged table, reads as the first value.
template <typename Enum>
class Choice {
public:
    constexpr Choice() = default;
    constexpr Choice(Enum value) { Set(value); }
    constexpr operator Enum() const { return Get(); }

    constexpr Enum Get() const { return IsKnown() ? static_cast<Enum>(Byte) : Enum{}; }
    constexpr void Set(Enum value) { Byte = static_cast<unsigned char>(value); }
    constexpr bool IsKnown() const { return Byte < static_cast<unsigned char>(Enum::Count); }

private:
    unsigned char Byte = 0;
};

/// Yes or no in one byte; anything but 0 reads as yes.
class Flag {
public:
    constexpr Flag() = default;
    constexpr Flag(bool value) : Byte(value ? 1 : 0) {}
    constexpr operator bool() const { return Byte != 0; }
    constexpr bool IsKnown() const { return Byte <= 1; }

private:
    unsigned char Byte = 0;
};

/// A text in code page 932, filled up with zero bytes. A text of the full length has no terminator.
template <std::size_t Size>
class Text {
public:
    constexpr std::string_view Get() const {
        const auto end = std::find(Bytes.begin(), Bytes.end(), '\0');
        return {Bytes.data(), static_cast<std::size_t>(end - Bytes.begin())};
    }
    /// Takes over the text when it fits; otherwise keeps the former one and returns false.
    constexpr bool Set(std::string_view text) {
        if (text.size() > Size || text.find('\0') != std::string_view::npos) {
            return false;
        }
        Bytes.fill('\0');
        std::copy(text.begin(), text.end(), Bytes.begin());
        return true;
    }

private:
    std::array<char, Size> Bytes{};
};

/// Bytes kept for later settings; zero in a fresh table and carried along unchanged.
template <std::size_t Size>
struct Reserved {
    std::array<unsigned char, Size> Bytes{};
};

} // namespace pmx::sample
