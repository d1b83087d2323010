// A library that somebody put into a folder in the hope that it is run: leaves a file beside itself when it
// is.

#include <array>
#include <string>

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        std::array<wchar_t, MAX_PATH> path{};
        GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
        CloseHandle(CreateFileW((path.data() + std::wstring(L".ran")).c_str(), GENERIC_WRITE, 0, nullptr,
                                CREATE_ALWAYS, 0, nullptr));
    }
    return TRUE;
}
