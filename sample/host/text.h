#pragma once

#include <cwchar>
#include <string>
#include <string_view>

/// Text of the host: wide inside, because its windows are Unicode windows, and narrow only where it calls the
/// favorites library.
namespace pmx::host {

/// Narrow text in the system's code page, as the favorites library speaks it, and back.
std::wstring ToWide(std::string_view narrow);
std::string ToNarrow(std::wstring_view wide);

/// A text of the host's own resources.
std::wstring ResourceText(unsigned id);

/// A text of the resources with its places filled in as by printf.
template <typename... Values>
std::wstring FormatText(unsigned id, Values... values) {
    const std::wstring format = ResourceText(id);
    constexpr std::size_t Longest = 1024;
    std::wstring text(Longest, L'\0');
    const int length = std::swprintf(text.data(), text.size(), format.c_str(), values...);
    text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return text;
}

} // namespace pmx::host
