#include "platform/dynamic_library.h"

#include "platform/posix/code_page.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace pmx {

namespace {

struct Closer {
    void operator()(void* handle) const { dlclose(handle); }
};
using Handle = std::unique_ptr<void, Closer>;

class SharedObject : public DynamicLibrary {
public:
    explicit SharedObject(Handle handle) : Object(std::move(handle)) {}

    Function Find(const char* name) const override {
        return reinterpret_cast<Function>(dlsym(Object.get(), name));
    }

private:
    const Handle Object;
};

bool IsEmptyOrCut(const std::string& text) {
    return text.empty() || text.find('\0') != std::string::npos;
}

std::unique_ptr<DynamicLibrary> AsLibrary(Handle handle) {
    return handle == nullptr ? nullptr : std::make_unique<SharedObject>(std::move(handle));
}

/// The file that contains this code.
std::filesystem::path OwnFile() {
    static const char Place = 0;
    Dl_info information{};
    return dladdr(&Place, &information) != 0 ? information.dli_fname : "";
}

std::filesystem::path ProgramFile() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure);
}

Handle LoadBeside(const std::filesystem::path& file, const std::string& fileName) {
    if (!file.is_absolute()) {
        return nullptr; // a bare name would be searched for
    }
    const std::filesystem::path path = file.parent_path() / posix::NativePath(fileName);
    return Handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
}

class SharedObjects : public DynamicLibraries {
public:
    std::unique_ptr<DynamicLibrary> LoadHostLibrary(const std::string& fileName) override {
        if (IsEmptyOrCut(fileName)) {
            return nullptr;
        }
        Handle beside = LoadBeside(OwnFile(), fileName);
        return AsLibrary(beside != nullptr ? std::move(beside) : LoadBeside(ProgramFile(), fileName));
    }
};

} // namespace

DynamicLibraries& SystemDynamicLibraries() {
    static SharedObjects libraries;
    return libraries;
}

} // namespace pmx
