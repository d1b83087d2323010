#include "frame/app.h"

#include <new>

#include <windows.h>

namespace {

pmx::CPMXTemplUIApp& TheApp() {
    static pmx::CPMXTemplUIApp app;
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
