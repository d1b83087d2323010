#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace pmx {

/// Error numbers of the file service: those of Windows, on every system. On Windows a result may have any
/// other number of the system too.
enum class FileError : std::uint32_t {
    None = 0,
    NotFound = 2,
    PathNotFound = 3,
    AccessDenied = 5,
    SharingViolation = 32,
    FileExists = 80,
    InvalidParameter = 87,
    DiskFull = 112,
    InvalidName = 123,
    AlreadyExists = 183,
    Other = 31 ///< a device does not function: what has no better number
};

/// What an opened file may be used for, as bits. The values are those of the platform's generic access
/// rights.
enum class FileAccess : std::uint32_t { Read = 0x80000000U, Write = 0x40000000U, ReadWrite = 0xC0000000U };

/// What others may do with the file meanwhile, as bits.
enum class FileShare : std::uint32_t { None = 0, Read = 1, Write = 2, ReadWrite = 3 };

/// What to do when the file exists or does not.
enum class FileDisposition : std::uint32_t {
    CreateNew = 1,
    CreateAlways = 2,
    OpenExisting = 3,
    OpenAlways = 4
};

/// Attributes of a file that is created; Normal is the only one that the library needs.
enum class FileAttributes : std::uint32_t { Normal = 0x80 };

/// An open file. Destroying it closes it.
class OpenFile {
public:
    virtual ~OpenFile() = default;
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

protected:
    OpenFile() = default;
};

/// What to open, and how. `SecurityAttributes` and `TemplateFile` of the platform's call are always absent.
struct OpenRequest {
    std::string Path; ///< code page of the system
    FileAccess Access = FileAccess::Read;
    FileShare Share = FileShare::None;
    FileDisposition Disposition = FileDisposition::OpenExisting;
    FileAttributes Attributes = FileAttributes::Normal;
};

/// Result of opening: a file, or none and the reason.
struct OpenResult {
    std::unique_ptr<OpenFile> File; ///< null exactly when Error is not None
    FileError Error = FileError::None;
};

/// Files and folders of the operating system.
///
/// Paths are narrow strings in the system's code page, zero bytes not allowed, with `\` between folders. The
/// posix implementation maps names to UTF-8 and `\` (never a trail byte) to `/`; both separators are accepted
/// there, and the case of letters matters. Every operation reports failure as a FileError and leaves the file
/// system as it was unless stated. An empty path gives PathNotFound, one with a zero byte InvalidName.
///
/// A file that somebody holds open gives SharingViolation as the platform does. On posix, where the platform
/// does not, the users of this service exclude each other (in one process and among several): a file opened
/// with FileShare::None excludes every other open and copy, and any open file excludes overwriting and
/// deleting.
class Files {
public:
    virtual ~Files() = default;

    /// False when nothing has the name `path`. What cannot be looked at counts as existing, so that nobody
    /// takes its name; so does, on posix, a link that leads nowhere.
    virtual bool Exists(const std::string& path) = 0;

    /// True when `path` names an existing folder.
    virtual bool IsFolder(const std::string& path) = 0;

    /// True when `path` names an existing file that is marked read-only (on posix: that this process may not
    /// write).
    virtual bool IsReadOnly(const std::string& path) = 0;

    virtual OpenResult Open(const OpenRequest& request) = 0;

    /// Copies the content of a file; the target is not read-only, even when the source is. With
    /// `failIfExists` an existing target gives FileExists and stays as it was. A copy that fails half-way
    /// leaves no partial target behind and an existing one as it was. A loss of power afterwards may still
    /// harm it, see Flush.
    virtual FileError Copy(const std::string& source, const std::string& target, bool failIfExists) = 0;

    /// Deletes a file. A folder or a read-only file gives AccessDenied. Of a link never what it leads to is
    /// deleted, but the link itself or, where that cannot be done, nothing, with the error Other.
    virtual FileError Remove(const std::string& path) = 0;

    /// Makes the content of an existing file durable: returns after the system has handed it to the device.
    virtual FileError Flush(const std::string& path) = 0;

    /// Atomically puts `source` in the place of `target`, which may or may not exist; both lie in one folder.
    /// A read-only target, a folder, or a target that somebody holds open is refused with AccessDenied. At
    /// any moment the target is the old or the new file, whole. When the platform cannot tell that the
    /// exchange is durable, that is no failure. A target that is a link is replaced itself.
    virtual FileError Replace(const std::string& source, const std::string& target) = 0;

    /// Keeps others that ask for the same from changing the file at `path`, which need not exist, until the
    /// result is destroyed or the process ends, however it ends. At once SharingViolation while another has
    /// it; any other error tells that there cannot be such a lock. It keeps nobody from reading, nor anybody
    /// who does not ask.
    ///
    /// On Windows it is a hidden file beside the other, named after it with `.lock`, which the system, or the
    /// file server, deletes with the process. On posix it is a lock on the folder, which excludes the users of
    /// this service on one machine and leaves nothing behind. The two do not exclude each other.
    virtual OpenResult Lock(const std::string& path) = 0;

    /// Creates an empty file with a name that nobody else uses, in `folder` (ending in a separator), and
    /// gives its path; empty with the reason in `error` on failure. The name ends in `.tmp`. The caller
    /// deletes the file.
    virtual std::string CreateTemporary(const std::string& folder, FileError& error) = 0;

    /// The calling thread's last error, as the platform keeps it: callers that must leave the error of an
    /// earlier operation behind set it again.
    virtual void SetLastError(FileError error) = 0;

protected:
    Files() = default;
    Files(const Files&) = default;
    Files& operator=(const Files&) = default;
};

/// Why no file can have that path, whatever is on the disk (see Files); None when one can. For
/// implementations.
FileError PathError(const std::string& path);

/// The system's files. Lives as long as the process.
Files& SystemFiles();

} // namespace pmx
