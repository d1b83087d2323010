#include "platform/win32/help_notes.h"

#include "platform/win32/handles.h"
#include "platform/win32/silent_errors.h"

#include <array>

#include <htmlhelp.h>

namespace pmx {

namespace win32 {

namespace {

constexpr const char* RegisteredPathKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr const char* EngineFile = "hhctrl.ocx";
constexpr DWORD LongestPath = 260; // bytes, its terminating zero included
constexpr WORD EntryOrdinal = 14;

/// Never from the current folder.
HMODULE LoadEngine(const char* path) {
    const SilentErrors silence;
    return LoadLibraryExA(path, nullptr, LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
}

HMODULE LoadRegistered() {
    std::array<char, LongestPath> path{};
    DWORD size = LongestPath;
    const LSTATUS status = RegGetValueA(HKEY_CLASSES_ROOT, RegisteredPathKey, nullptr, RRF_RT_REG_SZ, nullptr,
                                        path.data(), &size);
    return status == ERROR_SUCCESS ? LoadEngine(path.data()) : nullptr;
}

} // namespace

bool HtmlHelpNotes::Load() {
    Engine.reset(LoadRegistered());
    if (!Engine) {
        Engine.reset(LoadEngine(EngineFile));
    }
    if (Engine) {
        Function = reinterpret_cast<Entry>(
            reinterpret_cast<void*>(GetProcAddress(Engine.get(), MAKEINTRESOURCEA(EntryOrdinal))));
    }
    return Function != nullptr;
}

void HtmlHelpNotes::ShowNote(WindowHandle control, const std::string& text, ScreenPoint position) {
    constexpr COLORREF PaleYellow = RGB(255, 255, 240);
    constexpr auto DefaultColour = static_cast<COLORREF>(-1);
    if (Failed || (!Function && !Load())) {
        Failed = true;
        return;
    }
    HH_POPUP note{};
    note.cbStruct = sizeof note;
    note.pszText = reinterpret_cast<LPCTSTR>(text.c_str());
    note.pt = {position.X, position.Y};
    note.clrForeground = DefaultColour;
    note.clrBackground = PaleYellow;
    note.rcMargins = {10, 5, 5, 10}; // left, top, right, bottom
    Function(ToSystem(control), nullptr, HH_DISPLAY_TEXT_POPUP, reinterpret_cast<DWORD_PTR>(&note));
}

} // namespace win32

HelpNotes& SystemHelpNotes() {
    static auto& notes = *new win32::HtmlHelpNotes; // never destroyed, so that the engine is never unloaded
    return notes;
}

} // namespace pmx
