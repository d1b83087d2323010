#pragma once

#include <cwchar>
#include <string>
#include <string_view>

#include <windows.h>

/// Text of the host: wide inside, because its windows are Unicode windows, and narrow only where it calls the
/// favorites library or fills an attribute table.
namespace pmx::sample {

/// Narrow text in the system's code page, as the favorites library speaks it, and back.
std::wstring ToWide(std::string_view narrow);
std::string ToNarrow(std::wstring_view wide);

/// The program or library that contains this code.
HMODULE OwnModule();

/// Loads a library that lies beside OwnModule, and only there: by name alone, one in the current folder could
/// be taken for it. Null when it cannot be loaded.
HMODULE LoadBeside(std::string_view fileName);

/// Where texts, menus and dialogs are taken from: the resource library of the user's language beside
/// OwnModule, chosen by PmxUser as for the favorites library, or OwnModule itself (Japanese). Chosen once.
HMODULE ResourceModule();

/// A text of the resources.
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

} // namespace pmx::sample
