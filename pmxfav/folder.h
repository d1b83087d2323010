#pragma once

#include "store/list_data_array.h"
#include "system.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace pmx::tool {

/// Which favorites a command works on. Texts are in the system's code page.
struct FolderChoice {
    std::string Folder;
    std::string ListFile;
    std::string Extension;
};

/// What is known of a favorite's file.
enum class FileState {
    None,    ///< a standard favorite has none
    Whole,   ///< the host reads it
    Unknown, ///< it is there; without the host's library nobody knows more
    Missing,
    Outside,    ///< the file field names no file of the folder
    Unreadable, ///< it is there and cannot be read, because it is held or denied
    Empty,      ///< it has no bytes
    Damaged     ///< the host refuses it
};

/// The word for it in lists.
std::string_view NameOf(FileState state);

/// What a favorite file says of its favorite.
struct FileContent {
    FileState State = FileState::Unknown;
    std::string Name; ///< only of a whole file, as the level
    std::int32_t Level = 0;
};

/// One key of the list with its value.
struct ListLine {
    std::int32_t Number = 0;
    std::string_view Value;
    std::unique_ptr<CPMXTemplUIListData> Record; ///< null when the value describes no favorite
    std::unique_ptr<CPMXTemplUIListData>
        Mended;            ///< what it would describe if its name did not hold `~`; else null
    bool IsSecond = false; ///< another value of the same number stands before it
    bool IsBeyondCount = false;

    /// Whether the library lists it.
    bool IsListed() const { return Record != nullptr && !IsSecond && !IsBeyondCount; }

    /// The favorite as repair would take it over; null when it would not.
    const CPMXTemplUIListData* Kept() const {
        return IsSecond ? nullptr : Record != nullptr ? Record.get() : Mended.get();
    }
};

/// A favorites folder as it lies on the disk, with all that the library passes over. Changes nothing.
class FavoritesFolder {
public:
    /// `services` must outlive this object.
    FavoritesFolder(const FolderChoice& choice, const StoreServices& services);

    /// Reads the list and the names of the files; false when there is no such folder.
    bool Read();

    const CPMXTemplUIListDataArray& GetList() const { return List; }

    /// Whether the list file was read; NotFound when there is none.
    FileError ListError() const { return ReadError; }

    /// The list file's bytes.
    const std::string& ListBytes() const { return Bytes; }

    /// The same in the system's code page.
    const DecodedText& ListText() const { return Content; }

    const ListSectionContent& Section() const { return SectionContent; }
    const std::vector<ListLine>& Lines() const { return ListLines; }
    const std::vector<FolderFile>& AllFiles() const { return Files; }

    /// The file of the folder with that name as the platform takes it; null when there is none.
    const FolderFile* FindFile(const std::string& fileName) const;

    /// What the file of a record is and says.
    FileContent ContentOf(const CPMXTemplUIListData& record) const;

    /// The same for a file of the folder.
    FileContent ContentOf(const FolderFile& file) const;

    /// Whether a file's name has the extension of favorite files. Never the list file.
    bool IsFavoriteFile(const FolderFile& file) const;

    std::string PathOf(const FolderFile& file) const { return List.GetFolder() + file.Name; }

private:
    FileContent ReadFavorite(const FolderFile& file) const;

    CPMXTemplUIListDataArray List;
    std::string Folder;
    std::string Bytes;
    DecodedText Content;
    FileError ReadError = FileError::None;
    ListSectionContent SectionContent;
    std::vector<ListLine> ListLines;
    std::vector<FolderFile> Files;
    std::unordered_map<std::string, std::size_t> FilesByName;
    mutable std::unordered_map<std::string, FileContent> KnownContents;
};

/// The name field of a value that has too many fields because its name holds the separator; none for any other. It is a
/// part of the value.
std::optional<std::string_view> NameWithSeparators(std::string_view value);

/// Says once that the host's library is missing, when it is.
void SayIfHostIsMissing();

} // namespace pmx::tool
