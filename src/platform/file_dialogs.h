#pragma once

#include "platform/window_types.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace pmx {

/// One line of a file dialog's list of types, for example "Text files (*.txt)" and "*.txt".
struct FileFilter {
    std::string Label;
    std::string Pattern;
};

/// What a file dialog is asked to do. Texts are in the system's code page; titles are the system's own.
struct FileRequest {
    static constexpr std::size_t PathSize = 260; ///< bytes of the longest path, its terminating zero included

    WindowHandle Owner = WindowHandle::None;
    std::vector<FileFilter> Filters; ///< the first one is chosen at the start
    std::string DefaultExtension;    ///< appended to a name typed without one; with or without a leading dot
    std::string ProposedName;        ///< cut to PathSize - 1 bytes
    bool FileMustExist = false;
    bool PathMustExist = false;
    bool AskBeforeOverwriting = false;
};

/// The system's open and save dialogs. They leave the current folder of the process as it was, and have no box
/// for read-only files.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;

    /// Shows the open dialog. The absolute path that the user chose, or none when the user cancelled or the
    /// dialog could not be shown. A character of the path that has no code becomes `?`, which is in no file
    /// name, so that the file is not found by whoever uses the path.
    virtual std::optional<std::string> AskOpen(const FileRequest& request) = 0;

    /// Shows the save dialog; otherwise as AskOpen.
    virtual std::optional<std::string> AskSave(const FileRequest& request) = 0;

protected:
    FileDialogs() = default;
    FileDialogs(const FileDialogs&) = default;
    FileDialogs& operator=(const FileDialogs&) = default;
};

/// The system's file dialogs. Lives as long as the process.
FileDialogs& SystemFileDialogs();

} // namespace pmx
