#include "dialogs/base/help_engine.h"

namespace pmx {

namespace {

constexpr const char* RegisteredPathKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr const char* EngineFile = "hhctrl.ocx";
constexpr unsigned EntryOrdinal = 14;

} // namespace

std::uintptr_t LazyHelpEngine::Call(WindowHandle caller, const char* file, std::uint32_t command,
                                    const HelpNote& note) {
    if (Failed) {
        return 0;
    }
    if (!EnsureModule() || !EnsureEntry()) {
        Failed = true;
        return 0;
    }
    return Function(caller, file, command, reinterpret_cast<std::uintptr_t>(&note));
}

bool LazyHelpEngine::EnsureModule() {
    if (!Module) {
        Module = LoadRegistered();
    }
    if (!Module) {
        Module = Libraries.Load(EngineFile);
    }
    return Module != nullptr;
}

std::unique_ptr<DynamicLibrary> LazyHelpEngine::LoadRegistered() {
    const std::optional<std::string> path = SystemRegistry.ClassesRootDefault(RegisteredPathKey);
    return path ? Libraries.Load(*path) : nullptr;
}

bool LazyHelpEngine::EnsureEntry() {
    if (!Function) {
        Function = reinterpret_cast<Entry>(Module->FindOrdinal(EntryOrdinal));
    }
    return Function != nullptr;
}

HelpEngine& SystemHelpEngine() {
    static auto& engine = *new LazyHelpEngine(SystemRegistry(), SystemDynamicLibraries());
    return engine;
}

} // namespace pmx
