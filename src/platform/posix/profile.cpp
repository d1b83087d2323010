#include "platform/profile.h"

#include "platform/posix/code_page.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/files.h"
#include "platform/posix/profile_document.h"
#include "platform/posix/profile_text.h"
#include "platform/profile_lines.h"

#include <cerrno>
#include <cstddef>
#include <memory>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pmx {

namespace {

using posix::CallText;
using posix::FileBytes;
using posix::FileDescriptor;
using posix::ProfileEditor;
using posix::ProfileEncoding;
using posix::ProfileLine;
using posix::ProfileReader;
using posix::ProfileText;

/// The integer read cuts a text at 29 characters, and one in quotes that has just as many inside at 28.
constexpr std::size_t LongestInteger = 29;

FileDescriptor OpenProfile(const std::string& nativePath, int flags) {
    constexpr mode_t Mode = 0666;
    // Without blocking, because the name may be that of a pipe.
    return FileDescriptor(open(nativePath.c_str(), flags | O_CLOEXEC | O_NONBLOCK, Mode));
}

/// False when it is no regular file or cannot be read to its end.
bool ReadAll(const FileDescriptor& file, FileBytes& bytes) {
    struct stat status {};
    if (fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    bytes.Data = std::make_unique_for_overwrite<char[]>(size);
    while (bytes.Size < size) {
        const ssize_t count = read(file.Get(), bytes.Data.get() + bytes.Size, size - bytes.Size);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count == 0;
        }
        bytes.Size += static_cast<std::size_t>(count);
    }
    return true;
}

bool WriteBytes(const FileDescriptor& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = write(file.Get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Drops what the file has beyond that size. File systems do much to cut a file, even where nothing is.
bool CutAt(const FileDescriptor& file, std::size_t size) {
    struct stat status {};
    const auto wanted = static_cast<off_t>(size);
    return fstat(file.Get(), &status) == 0 &&
           (status.st_size <= wanted || ftruncate(file.Get(), wanted) == 0);
}

/// Exchanges the content of the file, which must be at its beginning. On failure its content is undefined.
bool WriteAll(const FileDescriptor& file, const ProfileEditor::Content& content) {
    return WriteBytes(file, content.Head) && WriteBytes(file, content.Tail) &&
           CutAt(file, content.Head.size() + content.Tail.size());
}

/// Reads a file as one that is copied, so that it must not be held by another; a missing one is empty.
FileError ReadWhole(const std::string& nativePath, FileBytes& bytes) {
    FileError error = FileError::None;
    const FileDescriptor file = posix::OpenToCopy(nativePath, error);
    if (!file.IsOpen()) {
        return error == FileError::NotFound ? FileError::None : error;
    }
    return ReadAll(file, bytes) ? FileError::None : FileError::Other;
}

/// The file's text; nothing when there is a file that cannot be read. A missing one has no text.
std::optional<ProfileText> TryReadProfile(const std::string& path) {
    const FileDescriptor file = OpenProfile(posix::NativePath(path), O_RDONLY);
    if (!file.IsOpen() && (errno == ENOENT || errno == ENOTDIR)) {
        return ProfileText();
    }
    FileBytes bytes;
    if (!file.IsOpen() || !ReadAll(file, bytes)) {
        return std::nullopt;
    }
    return ProfileText(std::move(bytes));
}

ProfileText ReadProfile(const std::string& path) {
    return TryReadProfile(path).value_or(ProfileText());
}

/// True when the folder exists that the file would be in.
bool HasFolder(const std::string& nativePath) {
    const std::size_t separator = nativePath.rfind('/');
    const std::string folder =
        separator == std::string::npos ? "." : nativePath.substr(0, separator == 0 ? 1 : separator);
    return access(folder.c_str(), F_OK) == 0;
}

/// Reads the file for writing. A missing one is empty when it could be created; false when the file cannot be
/// written.
bool ReadForChange(const std::string& nativePath, FileBytes& bytes) {
    const FileDescriptor file = OpenProfile(nativePath, O_RDWR);
    if (!file.IsOpen()) {
        return errno == ENOENT && HasFolder(nativePath);
    }
    return ReadAll(file, bytes);
}

bool WriteProfile(const std::string& nativePath, const ProfileEditor::Content& content) {
    const FileDescriptor file = OpenProfile(nativePath, O_WRONLY | O_CREAT);
    return file.IsOpen() && WriteAll(file, content);
}

/// Reads the file, lets `edit` change it and writes it if that made a difference.
template <typename Edit>
bool ChangeProfile(const std::string& path, const Edit& edit) {
    const std::string nativePath = posix::NativePath(path);
    FileBytes bytes;
    if (!ReadForChange(nativePath, bytes)) {
        return false;
    }
    ProfileText text(std::move(bytes));
    ProfileEditor editor(text);
    edit(editor);
    if (!editor.IsChanged()) {
        return true;
    }
    return WriteProfile(nativePath, editor.Bytes());
}

/// Calls `take` for the lines of the first section of that name until it returns false. All texts are those
/// of the file.
template <typename Taker>
void ForEachLine(const ProfileText& text, std::string_view section, const Taker& take) {
    const CallText asked(section, text.Encoding());
    ProfileReader reader(text.View(), text.Encoding());
    if (!posix::FindSection(reader, posix::WithoutBlanks(asked.View()), text.Encoding())) {
        return;
    }
    ProfileLine line;
    while (reader.NextLine(line) && take(line)) {
    }
}

void Visit(SectionLines& lines, const ProfileLine& line, ProfileEncoding encoding) {
    if (!line.Value) {
        lines.TakeBare(posix::ToCaller(line.Name, encoding));
    } else if (encoding == ProfileEncoding::CodePage) {
        lines.Take(line.Name, *line.Value);
    } else {
        lines.Take(posix::ToCaller(line.Name, encoding), posix::ToCaller(*line.Value, encoding));
    }
}

/// The value of a key with its quotes; nothing when there is no such key or its line has no `=`.
std::optional<std::string> FindValue(const ProfileText& text, std::string_view section,
                                     std::string_view key) {
    const CallText askedText(key, text.Encoding());
    const std::string_view asked = posix::WithoutBlanks(askedText.View());
    std::optional<std::string> value;
    ForEachLine(text, section, [&](const ProfileLine& line) {
        if (!posix::EqualNames(line.Name, asked, text.Encoding())) {
            return true;
        }
        if (line.Value) {
            value = posix::ToCaller(*line.Value, text.Encoding());
        }
        return false;
    });
    return value;
}

/// The default as the platform gives it back: blanks at the end are dropped, but for the last of nothing
/// else.
std::string DefaultText(std::string_view text) {
    std::string canonical(CallText(text, ProfileEncoding::CodePage).View());
    while (canonical.size() > 1 && canonical.back() == ' ') {
        canonical.pop_back();
    }
    return canonical;
}

bool IsBlank(std::string_view section) {
    return posix::WithoutBlanks(posix::UpToZero(section)).empty();
}

class PosixProfile final : public Profile {
public:
    bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        const std::optional<ProfileText> text = TryReadProfile(path);
        if (!text) {
            return false;
        }
        SectionLines lines(visit);
        ForEachLine(*text, section, [&](const ProfileLine& line) {
            Visit(lines, line, text->Encoding());
            return true;
        });
        return true;
    }

    std::string ReadString(const std::string& path, std::string_view section, std::string_view key,
                           std::string_view defaultValue) override {
        const std::optional<std::string> found = FindValue(ReadProfile(path), section, key);
        return std::string(WithoutQuotes(found ? *found : DefaultText(defaultValue)));
    }

    std::int32_t ReadInt(const std::string& path, std::string_view section, std::string_view key,
                         std::int32_t defaultValue) override {
        const std::optional<std::string> found = FindValue(ReadProfile(path), section, key);
        return found ? ProfileInteger(IntegerText(*found), defaultValue) : defaultValue;
    }

    bool WriteString(const std::string& path, std::string_view section, std::optional<std::string_view> key,
                     std::optional<std::string_view> value) override {
        return ChangeProfile(path, [&](ProfileEditor& editor) {
            if (!key) {
                editor.RemoveSection(section);
            } else if (!value) {
                editor.RemoveKey(section, *key);
            } else {
                editor.Set(section, *key, *value);
            }
        });
    }

    FileError ReplaceSection(const std::string& source, const std::string& target, std::string_view section,
                             const ProfileEntries& entries) override {
        if (IsBlank(section)) {
            return FileError::InvalidParameter;
        }
        FileBytes bytes;
        const FileError error = ReadWhole(posix::NativePath(source), bytes);
        if (error != FileError::None) {
            return error;
        }
        ProfileText text = ProfileText::AsItStands(std::move(bytes));
        ProfileEditor editor(text, section);
        editor.SetAll(section, entries);
        if (!editor.IsChanged()) {
            return CopyUnchanged(source, target);
        }
        errno = 0;
        const bool isWritten = WriteProfile(posix::NativePath(target), editor.Bytes());
        return isWritten ? FileError::None : posix::ErrorOf(errno, posix::NativePath(target));
    }

private:
    static FileError CopyUnchanged(const std::string& source, const std::string& target) {
        const FileError error =
            source == target ? FileError::None : SystemFiles().Copy(source, target, false);
        return error == FileError::NotFound ? FileError::None : error;
    }

    static std::string_view IntegerText(std::string_view value) {
        const std::string_view text = WithoutQuotes(value);
        const bool wasQuoted = text.size() != value.size();
        return wasQuoted && text.size() == LongestInteger ? text.substr(0, LongestInteger - 1) : text;
    }
};

} // namespace

Profile& SystemProfile() {
    static PosixProfile profile;
    return profile;
}

} // namespace pmx
