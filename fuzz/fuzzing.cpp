#include "fuzzing.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <sys/mman.h>
#include <unistd.h>

namespace pmx::fuzz {

namespace {

std::filesystem::path FolderInMemory() {
    const std::filesystem::path memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
}

std::size_t PageSize() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace

void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

const test::TempFolder& Folder() {
    static const test::TempFolder InMemory(FolderInMemory(), "fuzz");
    return InMemory;
}

void PutFile(const char* name, std::string_view bytes) {
    if (Folder().Exists(name)) {
        Folder().Remove(name);
    }
    Folder().Write(name, bytes);
}

GuardedBuffer::GuardedBuffer(std::size_t size) : Length(size) {
    const std::size_t page = PageSize();
    const std::size_t inner = (size + page - 1) / page * page;
    MappedSize = inner + 2 * page;
    Mapping = mmap(nullptr, MappedSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    Require(Mapping != MAP_FAILED, "memory for a buffer");
    char* const first = static_cast<char*>(Mapping) + page;
    Require(inner == 0 || mprotect(first, inner, PROT_READ | PROT_WRITE) == 0, "access to a buffer");
    Begin = first + inner - size;
}

GuardedBuffer::~GuardedBuffer() {
    munmap(Mapping, MappedSize);
}

} // namespace pmx::fuzz
