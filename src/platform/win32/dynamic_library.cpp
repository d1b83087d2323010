#include "platform/dynamic_library.h"

#include <type_traits>
#include <utility>

#include <windows.h>

namespace pmx {

namespace {

constexpr unsigned LargestOrdinal = 0xFFFF;

/// While it lives, the calling thread's loads fail without a message box of the system.
class SilentErrors {
public:
    SilentErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &Before); }
    ~SilentErrors() { SetThreadErrorMode(Before, nullptr); }
    SilentErrors(const SilentErrors&) = delete;
    SilentErrors& operator=(const SilentErrors&) = delete;

private:
    DWORD Before = 0;
};

struct Releaser {
    void operator()(HMODULE handle) const { FreeLibrary(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HMODULE>, Releaser>;

class Module : public DynamicLibrary {
public:
    explicit Module(Handle handle) : Library(std::move(handle)) {}

    Function Find(const char* name) const override {
        return reinterpret_cast<Function>(GetProcAddress(Library.get(), name));
    }

    /// The system takes a larger number for the address of a name.
    Function FindOrdinal(unsigned ordinal) const override {
        if (ordinal == 0 || ordinal > LargestOrdinal) {
            return nullptr;
        }
        return reinterpret_cast<Function>(GetProcAddress(Library.get(), MAKEINTRESOURCEA(ordinal)));
    }

private:
    const Handle Library;
};

class Modules : public DynamicLibraries {
public:
    std::unique_ptr<DynamicLibrary> Load(const std::string& nameOrPath) override {
        if (nameOrPath.empty() || nameOrPath.find('\0') != std::string::npos) {
            return nullptr;
        }
        const SilentErrors silence;
        Handle handle(LoadLibraryA(nameOrPath.c_str()));
        return handle == nullptr ? nullptr : std::make_unique<Module>(std::move(handle));
    }
};

} // namespace

DynamicLibraries& SystemDynamicLibraries() {
    static Modules libraries;
    return libraries;
}

} // namespace pmx
