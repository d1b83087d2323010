#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::test {

/// The place on disk of a path in code page 932, reached without the library's own file service.
std::filesystem::path DiskPath(std::string_view path);

/// A folder of its own for one test, empty at first, gone with everything in it at the end. It lies under the
/// folder that the environment variable PMX_TEMP_FOLDER or PMX_BUILD_FOLDER names, else under the system's
/// temporary folder.
///
/// All paths and names are in code page 932 and may be Japanese. Operations that cannot do what they say
/// throw.
class TempFolder {
public:
    /// `label` becomes part of the folder's name.
    explicit TempFolder(std::string_view label = "test");

    /// The same in another folder than the usual one.
    TempFolder(const std::filesystem::path& parent, std::string_view label);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Absolute, ending in `\`.
    const std::string& Path() const { return FolderPath; }

    /// The path of the file or folder of that name in the folder.
    std::string Path(std::string_view name) const { return FolderPath + std::string(name); }

    /// Creates or overwrites a file with these bytes.
    void Write(std::string_view name, std::string_view bytes) const;

    /// The bytes of a file.
    std::string Read(std::string_view name) const;

    /// Creates a folder in the folder.
    void AddFolder(std::string_view name) const;

    /// True when there is a file or folder of that name.
    bool Exists(std::string_view name) const;

    /// The names of all files and folders directly in the folder, in the order of their bytes.
    std::vector<std::string> Names() const;

    /// Removes a file, or a folder with all in it.
    void Remove(std::string_view name) const;

    /// Marks a file read-only or takes the mark away.
    void SetReadOnly(std::string_view name, bool readOnly) const;

private:
    std::string FolderPath;
};

} // namespace pmx::test
