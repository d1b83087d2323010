#pragma once

#include <functional>
#include <string>

// Names that the tool gives to favorites. Texts are in the system's code page.

namespace pmx::tool {

/// A text that is the same for all names that the library takes for one.
std::string NameKey(const std::string& name);

/// The name with a number behind it, within the limit of names: the first from `number` on with which it is not taken.
/// `number` is the next one then.
std::string FreeName(const std::string& name, int& number,
                     const std::function<bool(const std::string&)>& isTaken);

/// The name of a favorite whose file holds `nameInside`: without blanks at its ends, cut to the limit, and with `-` in
/// the place of what a list cannot hold. May be empty.
std::string NameFromFile(const std::string& nameInside);

/// Whether the tool may have given this name to a favorite whose file holds `nameInside`, or left it as it is.
bool IsNameFromFile(const std::string& name, const std::string& nameInside);

} // namespace pmx::tool
