#pragma once

#include <utility>

#include <unistd.h>

namespace pmx::posix {

/// An open file of the system, closed at the end; or none.
class FileDescriptor {
public:
    FileDescriptor() = default;

    /// Takes over the number, which may be negative for none.
    explicit FileDescriptor(int number) : Number(number) {}

    ~FileDescriptor() {
        if (IsOpen()) {
            close(Number);
        }
    }

    FileDescriptor(FileDescriptor&& other) noexcept : Number(std::exchange(other.Number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        FileDescriptor taken(std::move(other));
        std::swap(Number, taken.Number);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    bool IsOpen() const { return Number >= 0; }
    int Get() const { return Number; }

private:
    int Number = -1;
};

} // namespace pmx::posix
