#pragma once

#include "host/PmxUser.h"
#include "platform/module_state.h"

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
    /// `loadResources` is the host's choice of a resource library, null when the host has none.
    CPMXTemplUIApp(PmxLoadDefaultResourceDLL loadResources, ModuleStates& states)
        : LoadResources(loadResources), States(states) {}

    /// Asks the host for a resource library, once, and makes it the source of dialogs, texts and pictures; it
    /// is never released. Without one the library's own stay in use. Never fails on that account.
    bool InitInstance() override;

private:
    const PmxLoadDefaultResourceDLL LoadResources;
    ModuleStates& States;
    ModuleHandle ResourceLibrary = ModuleHandle::None; ///< none until one was loaded
};

} // namespace pmx
