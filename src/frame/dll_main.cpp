#include "frame/app.h"

#include "platform/dynamic_library.h"

#include <new>

#include <windows.h>

namespace {

/// The host's choice of a resource library. PmxUser stays loaded when this library goes: the host may use it,
/// too.
PmxLoadDefaultResourceDLL FindChoiceOfHost() {
    const pmx::DynamicLibrary* const user =
        pmx::SystemDynamicLibraries().LoadHostLibrary(PMX_USER_LIBRARY).release();
    return user == nullptr ? nullptr
                           : reinterpret_cast<PmxLoadDefaultResourceDLL>(user->Find(PMX_USER_ENTRY));
}

pmx::CPMXTemplUIApp& TheApp() {
    static pmx::CPMXTemplUIApp app(FindChoiceOfHost(), pmx::SystemModuleStates());
    return app;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason != DLL_PROCESS_ATTACH) {
        return TRUE;
    }
    DisableThreadLibraryCalls(instance);
    try {
        return TheApp().InitInstance() ? TRUE : FALSE;
    } catch (const std::bad_alloc&) {
        return FALSE; // nothing may be raised through the system's loader
    }
}
