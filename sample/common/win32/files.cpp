#include "common/files.h"

#include "common/unfinished_name.h"

#include <string>
#include <utility>

#include <windows.h>

namespace pmx::sample {

namespace {

/// Owns a file handle.
class FileHandle {
public:
    explicit FileHandle(HANDLE handle) : Handle(handle) {}
    FileHandle(FileHandle&& other) noexcept : Handle(std::exchange(other.Handle, INVALID_HANDLE_VALUE)) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    FileHandle& operator=(FileHandle&&) = delete;
    ~FileHandle() { Close(); }

    bool IsOpen() const { return Handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return Handle; }
    void Close() {
        if (IsOpen()) {
            CloseHandle(std::exchange(Handle, INVALID_HANDLE_VALUE));
        }
    }

private:
    HANDLE Handle;
};

std::int64_t SizeOf(const FileHandle& file) {
    LARGE_INTEGER size{};
    return GetFileSizeEx(file.Get(), &size) != FALSE ? size.QuadPart : -1;
}

FileHandle OpenForReading(const char* path) {
    FileHandle file(CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.IsOpen() && GetFileType(file.Get()) != FILE_TYPE_DISK) {
        file.Close(); // A device or a pipe is no file, and reading it could wait for ever.
    }
    return file;
}

bool WriteAndFlush(const FileHandle& file, std::span<const unsigned char> bytes) {
    DWORD written = 0;
    return WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) !=
               FALSE &&
           written == bytes.size() && FlushFileBuffers(file.Get()) != FALSE;
}

/// The folder of a path with its separator; empty for a mere name. A second byte can look like a separator.
std::string FolderOf(const char* path) {
    const char* end = path;
    for (const char* at = path; *at != '\0'; ++at) {
        if (IsDBCSLeadByte(static_cast<BYTE>(*at)) != FALSE && at[1] != '\0') {
            ++at;
        } else if (*at == '\\' || *at == '/' || *at == ':') {
            end = at + 1;
        }
    }
    return {path, end};
}

/// Creates a file beside `path` that nobody else uses; its path is given back in `temporary`.
FileHandle CreateBeside(const char* path, std::string& temporary) {
    constexpr int Attempts = 100;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        temporary = FolderOf(path) + UnfinishedName(GetCurrentProcessId());
        FileHandle file(CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file.IsOpen() || GetLastError() != ERROR_FILE_EXISTS) {
            return file;
        }
    }
    return FileHandle(INVALID_HANDLE_VALUE);
}

/// Asked for because not every system's replacing by rename respects it.
bool IsReadOnly(const char* path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

} // namespace

std::optional<std::vector<unsigned char>> ReadWholeFile(const char* path, std::size_t maxSize) {
    const FileHandle file = OpenForReading(path);
    const std::int64_t size = file.IsOpen() ? SizeOf(file) : -1;
    if (size < 0 || size > static_cast<std::int64_t>(maxSize)) {
        return std::nullopt;
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
    DWORD read = 0;
    if (ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE ||
        read != bytes.size()) {
        return std::nullopt;
    }
    return bytes;
}

bool ReplaceWholeFile(const char* path, std::span<const unsigned char> bytes) {
    if (IsReadOnly(path)) {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    std::string temporary;
    FileHandle file = CreateBeside(path, temporary);
    if (!file.IsOpen()) {
        return false;
    }
    const bool written = WriteAndFlush(file, bytes);
    file.Close();
    if (written &&
        MoveFileExA(temporary.c_str(), path, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE) {
        return true;
    }
    const DWORD error = GetLastError();
    DeleteFileA(temporary.c_str());
    SetLastError(error);
    return false;
}

} // namespace pmx::sample
