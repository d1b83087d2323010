#pragma once

#include "support/temp_folder.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the fuzz targets share.
namespace pmx::fuzz {

/// Ends the program with `what` when something does not hold that always has to; the fuzzer keeps the input.
void Require(bool holds, const char* what);

/// A folder for the files of this process, in memory where the system has such a place.
const test::TempFolder& Folder();

/// Puts a file with these bytes in the place of whatever has that name in the folder.
void PutFile(const char* name, std::string_view bytes);

/// A buffer of `size` bytes with a page before and a page behind it that nobody may touch. It ends right
/// before the page behind it.
class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t size);
    ~GuardedBuffer();
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    char* Data() const { return Begin; }
    std::size_t Size() const { return Length; }
    std::string_view View() const { return {Begin, Length}; }

private:
    std::size_t Length;
    std::size_t MappedSize;
    void* Mapping;
    char* Begin;
};

} // namespace pmx::fuzz
