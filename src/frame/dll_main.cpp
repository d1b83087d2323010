#include "frame/app.h"

#include <windows.h>

namespace {

pmx::CPMXTemplUIApp& TheApp() {
    static pmx::CPMXTemplUIApp App;
    return App;
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason != DLL_PROCESS_ATTACH) {
        return TRUE;
    }
    DisableThreadLibraryCalls(instance);
    return TheApp().InitInstance() ? TRUE : FALSE;
}
