#pragma once

#include "folder.h"

#include <nlohmann/json.hpp>

namespace pmx::tool {

/// Keeps the order in which its members were added.
using Json = nlohmann::ordered_json;

/// An object with what every result begins with: which folder and list it is about.
Json StartJson(const FolderChoice& choice);

/// A result, on the output stream.
void PrintJson(const Json& json);

} // namespace pmx::tool
