#pragma once

#include "platform/help_notes.h"

#include <memory>
#include <type_traits>

#include <windows.h>

namespace pmx::win32 {

/// Notes that the system's help engine draws. It is loaded for the first note: from the path that the registry
/// names, else by its file name. When there is none, no later note looks for it again. The engine stays loaded as
/// long as this lives: it may own windows that outlive the call.
class HtmlHelpNotes final : public HelpNotes {
public:
    void ShowNote(WindowHandle control, const std::string& text, ScreenPoint position) override;

private:
    using Entry = HWND(WINAPI*)(HWND caller, const char* file, UINT command, DWORD_PTR data);

    struct Releaser {
        void operator()(HMODULE module) const { FreeLibrary(module); }
    };

    bool Load();

    std::unique_ptr<std::remove_pointer_t<HMODULE>, Releaser> Engine;
    Entry Function = nullptr;
    bool Failed = false;
};

} // namespace pmx::win32
