#pragma once

#include "platform/dynamic_library.h"
#include "platform/help_note.h"
#include "platform/registry.h"

#include <memory>
#include <string>

namespace pmx {

/// The platform's help engine, loaded at the first call: from the path that the registry names, else by its
/// file name. When there is none, no later call looks for it again. Once loaded, the engine stays loaded for
/// good: it may own windows that outlive the call.
class LazyHelpEngine final : public HelpEngine {
public:
    LazyHelpEngine(Registry& registry, DynamicLibraries& libraries) noexcept
        : SystemRegistry(registry), Libraries(libraries) {}

    std::uintptr_t Call(WindowHandle caller, const char* file, std::uint32_t command,
                        const HelpNote& note) override;

private:
    using Entry = std::uintptr_t (*)(WindowHandle, const char*, std::uint32_t, std::uintptr_t);

    bool EnsureModule();
    bool EnsureEntry();
    std::unique_ptr<DynamicLibrary> LoadRegistered();

    Registry& SystemRegistry;
    DynamicLibraries& Libraries;
    std::unique_ptr<DynamicLibrary> Module;
    Entry Function = nullptr;
    bool Failed = false;
};

/// The help engine of the process. Never destroyed, so that the engine is never unloaded.
HelpEngine& SystemHelpEngine();

} // namespace pmx
