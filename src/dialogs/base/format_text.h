#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace pmx {

/// What takes the place of a placeholder.
using TextArgument = std::variant<std::string_view, std::int64_t>;

/// `pattern` with its placeholders replaced by the arguments in order: `%s` and `%d` alike take the next
/// argument, whatever its kind; `%%` is a percent sign. Placeholders beyond the arguments and any other use
/// of `%` stay as they are, so that a pattern from a foreign resource library can do no harm. Placeholders
/// inside arguments are not looked at.
std::string FormatText(std::string_view pattern, std::initializer_list<TextArgument> arguments);

} // namespace pmx
