#include "platform/profile.h"

#include <array>
#include <cstddef>

namespace pmx {

namespace {

/// The platform reads the text into a buffer of this size, its final zero included.
constexpr std::size_t IntegerBufferSize = 30;

struct Radix {
    char Letter;
    std::uint32_t Base;
};

constexpr std::array<Radix, 3> Radixes = {{{'x', 16}, {'o', 8}, {'b', 2}}};
constexpr std::uint32_t Decimal = 10;
constexpr std::uint32_t NoDigit = 255;

std::uint32_t DigitValue(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<std::uint32_t>(character - '0');
    }
    if (character >= 'a' && character <= 'z') {
        return static_cast<std::uint32_t>(character - 'a') + Decimal;
    }
    if (character >= 'A' && character <= 'Z') {
        return static_cast<std::uint32_t>(character - 'A') + Decimal;
    }
    return NoDigit;
}

std::string_view WithoutLeadingControls(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size() && static_cast<unsigned char>(text[begin]) <= ' ') {
        ++begin;
    }
    return text.substr(begin);
}

/// Takes a sign off the beginning of the text; true for a minus.
bool TakeSign(std::string_view& text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    return isNegative;
}

/// Takes `0x`, `0o` or `0b` off the beginning of the text and tells the base of the digits that follow.
std::uint32_t TakeBase(std::string_view& text) {
    if (text.size() < 2 || text.front() != '0') {
        return Decimal;
    }
    for (const Radix& radix : Radixes) {
        if (text[1] == radix.Letter) {
            text.remove_prefix(2);
            return radix.Base;
        }
    }
    return Decimal;
}

std::uint32_t LeadingDigits(std::string_view text, std::uint32_t base) {
    std::uint32_t number = 0;
    for (const char character : text) {
        const std::uint32_t digit = DigitValue(character);
        if (digit >= base) {
            break;
        }
        number = number * base + digit;
    }
    return number;
}

} // namespace

std::int32_t ProfileInteger(std::string_view value, std::int32_t defaultValue) {
    if (value.empty()) {
        return defaultValue;
    }
    std::string_view text = WithoutLeadingControls(value.substr(0, IntegerBufferSize - 1));
    const bool isNegative = TakeSign(text);
    const std::uint32_t base = TakeBase(text);
    const std::uint32_t magnitude = LeadingDigits(text, base);
    return static_cast<std::int32_t>(isNegative ? 0U - magnitude : magnitude);
}

} // namespace pmx
