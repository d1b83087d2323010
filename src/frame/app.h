#pragma once

#include "platform/dynamic_library.h"
#include "platform/module_state.h"

#include <memory>

namespace pmx {

/// What every application object has: work done when the library is attached to a process.
class CPmxApp {
public:
    CPmxApp() = default;
    CPmxApp(const CPmxApp&) = delete;
    CPmxApp& operator=(const CPmxApp&) = delete;
    virtual ~CPmxApp() = default;

    /// False makes the loading of the library fail.
    virtual bool InitInstance() { return true; }
};

/// The library's application object, one for each process: chooses where the user interface's resources come
/// from.
class CPMXTemplUIApp final : public CPmxApp {
public:
    explicit CPMXTemplUIApp(DynamicLibraries& libraries = SystemDynamicLibraries(),
                            ModuleStates& states = SystemModuleStates())
        : Libraries(libraries), States(states) {}

    /// Asks the host's user library for a resource library, once, and makes it the source of dialogs, texts
    /// and pictures. Without one the library's own stay in use. Never fails on that account.
    bool InitInstance() override;

    /// The resource library in use; none until one was loaded. Never released.
    ModuleHandle GetResourceLibrary() const { return ResourceLibrary; }

private:
    DynamicLibraries& Libraries;
    ModuleStates& States;
    std::unique_ptr<DynamicLibrary> UserLibrary;
    ModuleHandle ResourceLibrary = ModuleHandle::None;
};

} // namespace pmx
