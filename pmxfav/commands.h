#pragma once

#include "folder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The commands. Each prints its result, says to people what they have to know, and gives the tool's exit code. Names and
// paths are in the system's code page.

namespace pmx::tool {

int ListFavorites(const FolderChoice& choice, bool asJson);
int ShowFavorite(const FolderChoice& choice, const std::string& name, bool asJson);
int CheckFolder(const FolderChoice& choice, bool asJson);

/// Compares what two favorites set; fine when nothing differs.
int DiffFavorites(const FolderChoice& choice, const std::string& first, const std::string& second,
                  bool asJson);

/// With `isDryRun` says what it would do, and changes nothing.
int RepairFolder(const FolderChoice& choice, bool isDryRun, bool asJson);

int RenameFavorite(const FolderChoice& choice, const std::string& name, const std::string& newName);

/// `position` counts from 1.
int MoveFavorite(const FolderChoice& choice, const std::string& name, std::int64_t position);
int RemoveFavorite(const FolderChoice& choice, const std::string& name);
int SetToolbar(const FolderChoice& choice, const std::string& name, bool isOn);
int SetIcon(const FolderChoice& choice, const std::string& name, std::int64_t icon);
int Export(const FolderChoice& choice, const std::string& name, const std::string& path);

/// What becomes of a file to import whose name a favorite has.
enum class OnClash { Skip, Rename, Replace };
int Import(const FolderChoice& choice, const std::vector<std::string>& paths, OnClash onClash);

/// What the level of a favorite is called; its number when there is no such level.
std::string LevelText(std::int32_t level);

/// A time, in seconds since the beginning of 1970, as "2026-11-22 10:15:00", UTC.
std::string TimeText(std::int64_t seconds);

/// The line of the list that a person means with a name: the first with exactly this one, else the first that differs in
/// case only. Null, after a message, when there is none.
const ListLine* FindListed(const FavoritesFolder& folder, const std::string& name);

/// Reads the folder; false after a message.
bool ReadFolder(FavoritesFolder& folder, const FolderChoice& choice);

} // namespace pmx::tool
