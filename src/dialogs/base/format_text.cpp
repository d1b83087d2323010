#include "dialogs/base/format_text.h"

namespace pmx {

namespace {

std::string TextOf(const TextArgument& argument) {
    if (const auto* number = std::get_if<std::int64_t>(&argument)) {
        return std::to_string(*number);
    }
    return std::string(std::get<std::string_view>(argument));
}

} // namespace

std::string FormatText(std::string_view pattern, std::initializer_list<TextArgument> arguments) {
    std::string result;
    const TextArgument* argument = arguments.begin();
    // A percent sign is never the second byte of a double-byte character.
    for (std::size_t position = 0; position < pattern.size(); ++position) {
        const char next = position + 1 < pattern.size() ? pattern[position + 1] : '\0';
        const bool isPlaceholder = pattern[position] == '%' && (next == 's' || next == 'd');
        if (isPlaceholder && argument != arguments.end()) {
            result += TextOf(*argument++);
            ++position;
        } else {
            result += pattern[position];
            position += pattern[position] == '%' && next == '%' ? 1 : 0;
        }
    }
    return result;
}

} // namespace pmx
