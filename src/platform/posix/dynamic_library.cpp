#include "platform/dynamic_library.h"

#include "platform/posix/code_page.h"

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

    /// Shared objects have no ordinals.
    Function FindOrdinal(unsigned) const override { return nullptr; }

private:
    const Handle Object;
};

class SharedObjects : public DynamicLibraries {
public:
    std::unique_ptr<DynamicLibrary> Load(const std::string& nameOrPath) override {
        // The empty name would give the program itself.
        if (nameOrPath.empty() || nameOrPath.find('\0') != std::string::npos) {
            return nullptr;
        }
        Handle handle(dlopen(posix::NativePath(nameOrPath).c_str(), RTLD_NOW | RTLD_LOCAL));
        return handle == nullptr ? nullptr : std::make_unique<SharedObject>(std::move(handle));
    }
};

} // namespace

DynamicLibraries& SystemDynamicLibraries() {
    static SharedObjects libraries;
    return libraries;
}

} // namespace pmx
