#pragma once

#include "favorites.h"

#include <string>

// The practical limit: what a program would do that trusts the file to be as the store writes it, keeps
// nothing else in it, and does no more work than that needs.

namespace pmx::bench {

/// Reads the whole file and makes the favorites in one pass over its bytes. Keys must be spelt and ordered as
/// the store writes them; a count beyond the keys costs nothing; damaged values are left out. `path` is the
/// system's.
Records LoadAtLimit(const std::string& path);

/// Formats the favorites into one buffer and replaces the file by it, as durably as the store.
void SaveAtLimit(const std::string& path, const Records& records);

} // namespace pmx::bench
