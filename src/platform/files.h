#pragma once

#include <memory>
#include <string>

namespace pmx {

/// Why an operation on a file failed.
enum class FileError {
    None,
    NotFound, ///< there is no such file, or no such folder
    Held,     ///< another program has it open, or the system denies the access: it may work later
    Exists,   ///< there is something of that name already
    Other
};

/// What one program at a time has. Destroying it, or the end of the process, gives it up.
class FileLock {
public:
    virtual ~FileLock() = default;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

protected:
    FileLock() = default;
};

/// A lock, or none and the reason.
struct LockResult {
    std::unique_ptr<FileLock> Lock; ///< null exactly when Error is not None
    FileError Error = FileError::None;
};

/// Files and folders of the operating system.
///
/// Paths are narrow strings in the system's code page, zero bytes not allowed, with `\` between folders. The
/// posix implementation maps names to UTF-8 and `\` (never a trail byte) to `/`; both separators are accepted
/// there, and the case of letters matters. Every operation reports failure as a FileError and leaves the file
/// system as it was unless stated. No file has an empty path or one with a zero byte.
///
/// A file that somebody holds open is refused as the platform refuses it. On posix, where the platform does
/// not, the users of this service exclude each other (in one process and among several) by advisory locks: an
/// exclusive lock excludes every operation on the file, a shared one excludes replacing and deleting it.
/// Programs that ask for no locks are not excluded.
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

    /// True when both paths lead to one existing file or folder, however they are spelt.
    virtual bool IsSame(const std::string& left, const std::string& right) = 0;

    /// Reads a whole file. `content` is as it was on failure. Throws std::bad_alloc.
    virtual FileError Read(const std::string& path, std::string& content) = 0;

    /// None when the existing file may be opened for reading and writing now, beside others who do so.
    virtual FileError TryOpen(const std::string& path) = 0;

    /// Makes an empty file, which somebody else is to write; Exists when there is one.
    virtual FileError CreateNew(const std::string& path) = 0;

    /// Makes a file with that content, durably; Exists when there is one. No file stays after a failure.
    virtual FileError WriteNew(const std::string& path, const std::string& content) = 0;

    /// Gives an existing file that content, durably, where it lies. With Held nothing has changed; with Other
    /// the file may hold a part of the content.
    virtual FileError Overwrite(const std::string& path, const std::string& content) = 0;

    /// Makes durable what somebody else has written to a file.
    virtual FileError Flush(const std::string& path) = 0;

    /// Atomically puts `source`, a file that is durable (WriteNew, Flush), in the place of `target`, which may
    /// or may not exist; both lie in one folder. `source` takes over what marks `target` (hidden, system; on
    /// posix the permissions). A target that is read-only, a folder, or held open by somebody gives Held. At
    /// any moment the target is the old or the new file, whole. When the platform cannot tell that the
    /// exchange is durable, that is no failure. A target that is a link is replaced itself.
    virtual FileError Replace(const std::string& source, const std::string& target) = 0;

    /// Does what WriteNew and then Replace do, without opening `source` twice where the system can. `isMade` says
    /// whether `source` was made; it stays when it could not be put in the place of `target`.
    virtual FileError WriteOver(const std::string& source, const std::string& content,
                                const std::string& target, bool& isMade) {
        const FileError error = WriteNew(source, content);
        isMade = error == FileError::None;
        return isMade ? Replace(source, target) : error;
    }

    /// Renames `source`, which is durable, to `target` in the same folder; Exists when there is one, which
    /// stays.
    virtual FileError Rename(const std::string& source, const std::string& target) = 0;

    /// Deletes a file. A folder or a read-only file gives Held. Of a link never what it leads to is deleted,
    /// but the link itself or, where that cannot be done, nothing, with the error Other.
    virtual FileError Remove(const std::string& path) = 0;

    /// Keeps others that ask for the same from changing the file at `path`, which need not exist, until the
    /// result is destroyed or the process ends, however it ends. At once Held while another has it; any other
    /// error tells that there cannot be such a lock. It keeps nobody from reading, nor anybody who does not
    /// ask.
    ///
    /// On Windows it is a hidden file beside the other, named after it with `.lock`, which the system, or the
    /// file server, deletes with the process. On posix it is a lock on the folder, which excludes the users of
    /// this service on one machine and leaves nothing behind. The two do not exclude each other.
    virtual LockResult Lock(const std::string& path) = 0;

protected:
    Files() = default;
    Files(const Files&) = default;
    Files& operator=(const Files&) = default;
};

/// The system's files. Lives as long as the process.
Files& SystemFiles();

} // namespace pmx
