#include "posix/system_calls.h"

#include <algorithm>
#include <cerrno>

#include <sys/types.h>

namespace pmx::test {

namespace {

SystemCalls* InUse = nullptr;

bool Fails(SystemCall call) {
    const std::optional<int> failure = InUse != nullptr ? InUse->Plan.Next(call) : std::nullopt;
    errno = failure.value_or(errno);
    return failure.has_value();
}

std::size_t PieceOf(std::size_t size) {
    return InUse != nullptr ? std::min(size, InUse->LargestPiece) : size;
}

} // namespace

SystemCalls::SystemCalls() {
    InUse = this;
}

SystemCalls::~SystemCalls() {
    InUse = nullptr;
}

} // namespace pmx::test

// The linker gives the program these functions in the place of the system's, and the system's under other
// names. NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

using pmx::test::Fails;
using pmx::test::PieceOf;
using pmx::test::SystemCall;

extern "C" {

ssize_t __real_read(int file, void* buffer, size_t size);
ssize_t __real_write(int file, const void* buffer, size_t size);
int __real_renameat2(int sourceFolder, const char* source, int targetFolder, const char* target,
                     unsigned flags);
int __real_ftruncate(int file, off_t size);
int __real_flock(int file, int operation);
int __real_chmod(const char* path, mode_t mode);
int __real_fsync(int file);

ssize_t __wrap_read(int file, void* buffer, size_t size) {
    return Fails(SystemCall::Read) ? -1 : __real_read(file, buffer, PieceOf(size));
}

ssize_t __wrap_write(int file, const void* buffer, size_t size) {
    return Fails(SystemCall::Write) ? -1 : __real_write(file, buffer, PieceOf(size));
}

int __wrap_renameat2(int sourceFolder, const char* source, int targetFolder, const char* target,
                     unsigned flags) {
    return Fails(SystemCall::Rename) ? -1
                                     : __real_renameat2(sourceFolder, source, targetFolder, target, flags);
}

int __wrap_ftruncate(int file, off_t size) {
    return Fails(SystemCall::Truncate) ? -1 : __real_ftruncate(file, size);
}

int __wrap_flock(int file, int operation) {
    return Fails(SystemCall::Lock) ? -1 : __real_flock(file, operation);
}

int __wrap_chmod(const char* path, mode_t mode) {
    return Fails(SystemCall::ChangeMode) ? -1 : __real_chmod(path, mode);
}

int __wrap_fsync(int file) {
    return Fails(SystemCall::Flush) ? -1 : __real_fsync(file);
}

} // extern "C"

// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
