#include "platform/dynamic_library.h"

#include "platform/module_state.h"
#include "platform/win32/handles.h"
#include "platform/win32/silent_errors.h"
#include "platform/win32/wide_text.h"

#include <type_traits>
#include <utility>

#include <windows.h>

namespace pmx {

namespace {

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

private:
    const Handle Library;
};

bool IsEmptyOrCut(const std::string& text) {
    return text.empty() || text.find('\0') != std::string::npos;
}

std::unique_ptr<DynamicLibrary> AsLibrary(Handle handle) {
    return handle == nullptr ? nullptr : std::make_unique<Module>(std::move(handle));
}

/// The folder of a module (null for the program), ending in a separator; empty when it cannot be told. Wide,
/// because it may have a name that the code page cannot express.
std::wstring FolderOf(HMODULE module) {
    constexpr std::size_t LongestPath = 0x8000;
    std::wstring path(LongestPath, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    path.resize(path.rfind(L'\\') + 1);
    return path;
}

Handle LoadFrom(const std::wstring& folder, const std::string& fileName) {
    if (folder.empty()) {
        return nullptr;
    }
    const std::wstring path = folder + win32::ToWide(fileName);
    return Handle(LoadLibraryExW(path.c_str(), nullptr,
                                 LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS));
}

class Modules : public DynamicLibraries {
public:
    std::unique_ptr<DynamicLibrary> LoadHostLibrary(const std::string& fileName) override {
        if (IsEmptyOrCut(fileName)) {
            return nullptr;
        }
        const win32::SilentErrors silence;
        Handle beside = LoadFrom(FolderOf(win32::ToSystem(SystemModuleStates().OwnModule())), fileName);
        return AsLibrary(beside != nullptr ? std::move(beside) : LoadFrom(FolderOf(nullptr), fileName));
    }
};

} // namespace

DynamicLibraries& SystemDynamicLibraries() {
    static Modules libraries;
    return libraries;
}

} // namespace pmx
