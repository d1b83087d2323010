#include "store/favorite_files.h"

#include "store/aside_file.h"

#include "host/QrtCommon.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>

namespace pmx {

namespace {

constexpr int AttemptsAtOneWait = 4;
constexpr std::uint32_t FirstLongWait = 1000; // milliseconds
constexpr std::uint32_t LastLongWait = 4000;
constexpr std::uint32_t ShortWait = 50;
constexpr std::uint32_t LongestShortWait = 1000;
constexpr std::uint32_t LockWait = 10; // a save takes a few milliseconds
constexpr std::uint32_t LongestLockWait = 2000;

constexpr std::size_t LongestBaseName = 255; // bytes
constexpr std::string_view ForbiddenInFileNames = "\\/:*?\"<>|";
constexpr std::string_view NeverSecondBytes("/:\0", 3);

constexpr std::array<std::string_view, 24> DeviceNames = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",   "COM8",
    "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9", "CONIN$", "CONOUT$"};

bool IsDeviceName(std::string_view fileName) {
    std::string_view base = fileName.substr(0, fileName.find('.'));
    while (!base.empty() && base.back() == ' ') {
        base.remove_suffix(1);
    }
    return std::any_of(DeviceNames.begin(), DeviceNames.end(),
                       [base](std::string_view device) { return EqualIgnoringCase(base, device); });
}

FileError CopyFile(const StoreServices& services, const std::string& source, const std::string& target) {
    std::string content;
    const FileError error = services.FileSystem.Read(source, content);
    if (error != FileError::None) {
        return error;
    }
    AsideFile copy(services, FolderOf(target), content);
    return copy.Error() == FileError::None ? copy.PutNew(target) : copy.Error();
}

} // namespace

FileError RetryWhileHeld(const StoreServices& services, const std::function<FileError()>& attempt) {
    FileError error = attempt();
    for (std::uint32_t wait = FirstLongWait; wait <= LastLongWait; wait *= 2) {
        for (int count = 0; count < AttemptsAtOneWait && error == FileError::Held; ++count) {
            services.Timer.Sleep(wait);
            error = attempt();
        }
    }
    return error;
}

FileError RetryBriefly(const StoreServices& services, const std::function<FileError()>& attempt) {
    FileError error = attempt();
    for (std::uint32_t waited = 0; waited < LongestShortWait && error == FileError::Held;
         waited += ShortWait) {
        services.Timer.Sleep(ShortWait);
        error = attempt();
    }
    return error;
}

FileError RetryCreateFile(const StoreServices& services, const std::string& path) {
    return RetryWhileHeld(services, [&] { return services.FileSystem.TryOpen(path); });
}

FileError RetryCopyFile(const StoreServices& services, const std::string& source, const std::string& target) {
    return RetryWhileHeld(services, [&] { return CopyFile(services, source, target); });
}

bool RetryDeleteFile(const StoreServices& services, const std::string& path) {
    try {
        return RetryWhileHeld(services, [&] { return services.FileSystem.Remove(path); }) == FileError::None;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

std::unique_ptr<FileLock> WaitForLock(const StoreServices& services, const std::string& path) {
    LockResult lock = services.FileSystem.Lock(path);
    for (std::uint32_t waited = 0; waited < LongestLockWait && lock.Error == FileError::Held;
         waited += LockWait) {
        services.Timer.Sleep(LockWait);
        lock = services.FileSystem.Lock(path);
    }
    return std::move(lock.Lock);
}

std::string SanitizeFileName(const std::string& name) {
    if (CheckFileName(name.c_str()) != 0) {
        return name;
    }
    std::string safe = name;
    for (std::size_t position = 0; position < safe.size();
         position += CharacterLength(safe, position, SystemLeadBytes())) {
        if (ForbiddenInFileNames.find(safe[position]) != std::string_view::npos) {
            safe[position] = '=';
        }
    }
    return safe;
}

bool IsPlainFileName(std::string_view fileName) {
    return fileName.find_first_not_of(". ") != std::string_view::npos && !IsDeviceName(fileName) &&
           fileName.find_first_of(NeverSecondBytes) == std::string_view::npos &&
           FindSingleByte(fileName, '\\', SystemLeadBytes()) == std::string_view::npos;
}

std::string FoldedFileName(std::string_view fileName, const LeadByteTable& leadBytes) {
    return FoldedName(fileName.substr(0, fileName.find_last_not_of(". ") + 1), leadBytes);
}

std::string FoldedName(std::string_view name, const LeadByteTable& leadBytes) {
    std::string text(name);
    for (std::size_t position = 0; position < text.size();
         position += CharacterLength(text, position, leadBytes)) {
        if (text[position] >= 'A' && text[position] <= 'Z') {
            text[position] = static_cast<char>(text[position] - 'A' + 'a');
        }
    }
    return text;
}

std::string FolderOf(std::string_view path) {
    return std::string(path.substr(0, FileNameStart(path)));
}

std::string BaseNameOf(std::string_view path) {
    const std::string_view fileName = path.substr(FileNameStart(path));
    // The dot is never a second byte.
    const std::string_view base = fileName.substr(0, fileName.rfind('.'));
    return std::string(base.substr(0, LengthWithin(base, LongestBaseName, SystemLeadBytes())));
}

} // namespace pmx
