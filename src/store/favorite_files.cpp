#include "store/favorite_files.h"

#include "host/QrtCommon.h"

#include <algorithm>
#include <array>
#include <new>

namespace pmx {

namespace {

constexpr int AttemptsAtOneWait = 4;
constexpr std::uint32_t LockWait = 10; // a save takes a few milliseconds
constexpr std::uint32_t LongestLockWait = 2000;
constexpr std::string_view ForbiddenInFileNames = "\\/:*?\"<>|";
constexpr std::string_view NeverSecondBytes("/:\0", 3);

constexpr std::array<std::string_view, 24> DeviceNames = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",   "COM8",
    "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9", "CONIN$", "CONOUT$"};

bool IsHeldByAnother(FileError error) {
    return error == FileError::SharingViolation || error == FileError::AccessDenied;
}

char UpperLetter(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsDeviceName(std::string_view fileName) {
    std::string_view base = fileName.substr(0, fileName.find('.'));
    while (!base.empty() && base.back() == ' ') {
        base.remove_suffix(1);
    }
    return std::any_of(DeviceNames.begin(), DeviceNames.end(), [base](std::string_view device) {
        return std::equal(base.begin(), base.end(), device.begin(), device.end(),
                          [](char left, char right) { return UpperLetter(left) == right; });
    });
}

} // namespace

FileError RetryWhileHeld(Files& files, Clock& clock, const std::function<FileError()>& attempt) {
    FileError error = attempt();
    for (std::uint32_t wait = FirstRetryWait; wait <= LastRetryWait; wait *= 2) {
        for (int count = 0; count < AttemptsAtOneWait && IsHeldByAnother(error); ++count) {
            clock.Sleep(wait);
            error = attempt();
        }
    }
    if (error != FileError::None) {
        files.SetLastError(error);
    }
    return error;
}

OpenResult RetryCreateFile(Files& files, Clock& clock, const OpenRequest& request) {
    OpenResult result;
    RetryWhileHeld(files, clock, [&] {
        result = files.Open(request);
        return result.Error;
    });
    return result;
}

bool RetryCopyFile(Files& files, Clock& clock, const std::string& source, const std::string& target,
                   bool failIfExists) {
    return RetryWhileHeld(files, clock, [&] { return files.Copy(source, target, failIfExists); }) ==
           FileError::None;
}

bool RetryDeleteFile(Files& files, Clock& clock, const std::string& path) {
    try {
        return RetryWhileHeld(files, clock, [&] { return files.Remove(path); }) == FileError::None;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool RetryReplaceFile(Files& files, Clock& clock, const std::string& source, const std::string& target) {
    return RetryWhileHeld(files, clock, [&] { return files.Replace(source, target); }) == FileError::None;
}

std::unique_ptr<OpenFile> WaitForLock(Files& files, Clock& clock, const std::string& path) {
    OpenResult lock = files.Lock(path);
    for (std::uint32_t waited = 0; waited < LongestLockWait && lock.Error == FileError::SharingViolation;
         waited += LockWait) {
        clock.Sleep(LockWait);
        lock = files.Lock(path);
    }
    return std::move(lock.File);
}

std::string SanitizeFileName(const std::string& name, const LeadByteTable& leadBytes) {
    if (CheckFileName(name.c_str()) != 0) {
        return name;
    }
    std::string safe = name;
    for (std::size_t position = 0; position < safe.size();
         position += CharacterLength(safe, position, leadBytes)) {
        if (ForbiddenInFileNames.find(safe[position]) != std::string_view::npos) {
            safe[position] = '=';
        }
    }
    return safe;
}

bool IsPlainFileName(std::string_view fileName, const LeadByteTable& leadBytes) {
    return fileName.find_first_not_of(". ") != std::string_view::npos && !IsDeviceName(fileName) &&
           fileName.find_first_of(NeverSecondBytes) == std::string_view::npos &&
           FindSingleByte(fileName, '\\', leadBytes) == std::string_view::npos;
}

std::string FoldedFileName(std::string_view fileName, const LeadByteTable& leadBytes) {
    std::string text(fileName.substr(0, fileName.find_last_not_of(". ") + 1));
    for (std::size_t position = 0; position < text.size();
         position += CharacterLength(text, position, leadBytes)) {
        if (text[position] >= 'A' && text[position] <= 'Z') {
            text[position] = static_cast<char>(text[position] - 'A' + 'a');
        }
    }
    return text;
}

} // namespace pmx
