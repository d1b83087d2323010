#pragma once

#include "platform/window_types.h"

#include <functional>

namespace pmx {

/// The state of a thread that decides where resources come from and what controls look like: the resource
/// module and the activation context. A host has its own; the library makes its own current during every
/// call.
class ModuleStates {
public:
    virtual ~ModuleStates() = default;

    /// The module that contains this code.
    virtual ModuleHandle OwnModule() const = 0;

    /// The module that the calling thread takes resources from at present: the library's resource module
    /// inside RunInside, none outside.
    virtual ModuleHandle Current() const = 0;

    /// Sets the library's resource module for the process, with an atomic exchange; none stands for
    /// OwnModule. Threads that are inside RunInside keep what they have. The module is never unloaded.
    virtual void SetResourceModule(ModuleHandle module) = 0;

    /// The library's resource module for the process: the one that was set, else OwnModule.
    virtual ModuleHandle ResourceModule() const = 0;

    /// Makes the library's state current for the calling thread, calls `work`, and restores the caller's
    /// state: on return, when a C++ exception leaves `work`, and when an exception of the system or of
    /// another run-time passes through. Exceptions go on to the caller. Calls may be nested (a host calls the
    /// library again from inside one of its own dialogs).
    virtual void RunInside(const std::function<void()>& work) = 0;

protected:
    ModuleStates() = default;
    ModuleStates(const ModuleStates&) = default;
    ModuleStates& operator=(const ModuleStates&) = default;
};

/// The system's module states. Lives as long as the process.
ModuleStates& SystemModuleStates();

} // namespace pmx
