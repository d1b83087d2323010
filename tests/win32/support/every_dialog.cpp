#include "win32/support/every_dialog.h"

#include "dialogs/base/icon_dlg.h"
#include "dialogs/choice/choice_basic_dlg.h"
#include "dialogs/choice/choice_entry_dlg.h"
#include "dialogs/choice/sel_level_dlg.h"
#include "dialogs/editor/main_dlg.h"
#include "platform/module_state.h"
#include "platform/win32/handles.h"
#include "support/favorite_folder.h"
#include "support/memory_services.h"

#include <utility>

namespace pmx::test {

namespace {

/// Passes a dialog's opening on, looks, and closes the dialog.
class Looking final : public DialogEvents {
public:
    Looking(DialogEvents& events, std::function<void(HWND)> look) : Events(events), Look(std::move(look)) {}

    bool OnOpened(DialogWindow& window) override {
        const bool placesFocus = Events.OnOpened(window);
        Look(win32::ToSystem(window.Handle()));
        window.End(CodeCancel);
        return placesFocus;
    }
    void OnEvent(const ControlEvent& /*event*/) override {}
    void OnHelpAsked(const HelpRequest& /*request*/) override {}
    void OnOkAsked() override {}
    void OnCancelAsked() override {}
    void OnClosed() override { Events.OnClosed(); }

private:
    DialogEvents& Events;
    std::function<void(HWND)> Look;
};

class LookingDialogs final : public DialogRunner {
public:
    explicit LookingDialogs(std::function<void(ResourceId, HWND)> look) : Look(std::move(look)) {}

    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override {
        Looking looking(events, [&](HWND dialog) { Look(dialogTemplate, dialog); });
        return SystemDialogRunner().Run(dialogTemplate, parent, looking);
    }

private:
    std::function<void(ResourceId, HWND)> Look;
};

/// The resources of a language are those in use as long as this lives.
class ResourcesOf {
public:
    explicit ResourcesOf(Language language) {
        if (language == Language::English) {
            Module = LoadLibraryExW(L"PMXTemplUIENU.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE);
            SystemModuleStates().SetResourceModule(win32::FromSystem(Module));
        }
    }
    ~ResourcesOf() {
        SystemModuleStates().SetResourceModule(ModuleHandle::None);
        FreeLibrary(Module);
    }
    ResourcesOf(const ResourcesOf&) = delete;
    ResourcesOf& operator=(const ResourcesOf&) = delete;

private:
    HMODULE Module = nullptr;
};

/// What is made as long as this lives is laid out for the resolution of its screen, as in a host that says so.
class ScreensOwnResolution {
public:
    ScreensOwnResolution() = default;
    ~ScreensOwnResolution() { SetThreadDpiAwarenessContext(Before); }
    ScreensOwnResolution(const ScreensOwnResolution&) = delete;
    ScreensOwnResolution& operator=(const ScreensOwnResolution&) = delete;

private:
    const DPI_AWARENESS_CONTEXT Before =
        SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
};

} // namespace

void ForEachDialog(Language language, const std::function<void(ResourceId id, HWND dialog)>& look) {
    const ResourcesOf resources(language);
    const ScreensOwnResolution resolution;
    FavoriteFolder favorites;
    favorites.Given({{.Name = "A", .OnToolbar = true}, {.Name = "B", .Level = 2}, Standard("S")});
    LookingDialogs dialogs(look);
    MemoryMessages messages(SystemResources());
    MemoryFileDialogs files;
    MemoryHelp help;
    MemoryLibraries libraries;
    const DialogServices services{.Strings = SystemResources(),
                                  .Dialogs = dialogs,
                                  .Messages = messages,
                                  .FileChoice = files,
                                  .Images = SystemImageLists(),
                                  .Help = help,
                                  .Libraries = libraries};
    const std::string folder = favorites.Folder.Path();
    const StoreServices& store = favorites.Store.Services;
    const unsigned char table[8657]{};
    CPMXTemplUIMainDlg(folder.c_str(), ListFile, ".pmt", WindowHandle::None, services, store).DoModal();
    CPMXTemplUISelLevelDlg(nullptr, WindowHandle::None, services).DoModal();
    CPMXTemplUIIconDlg(14, 0, std::nullopt, WindowHandle::None, services).DoModal();
    CPMXTemplUIChoiceEntryDlg(folder.c_str(), ListFile, ".pmt", table, 1, WindowHandle::None, services, store)
        .DoModal();
    CPMXTemplUIChoiceBasicDlg(folder.c_str(), ListFile, ".pmt", WindowHandle::None, services, store)
        .DoModal();
}

std::vector<HWND> ControlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        controls.push_back(child);
    }
    return controls;
}

std::wstring TextOf(HWND window) {
    std::wstring text(512, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

bool IsOfClass(HWND window, const wchar_t* name) {
    std::wstring found(64, L'\0');
    found.resize(
        static_cast<std::size_t>(GetClassNameW(window, found.data(), static_cast<int>(found.size()))));
    return lstrcmpiW(found.c_str(), name) == 0;
}

} // namespace pmx::test
