#include "platform/module_state.h"

#include "platform/guard.h"
#include "platform/win32/handles.h"

#include <atomic>

namespace pmx {

namespace {

/// Number of the manifest resource of a library.
constexpr WORD LibraryManifest = 2;

/// The module that contains this code, found by something of it that is no thread's own.
HMODULE ThisModule() {
    static const char Place = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       &Place, &module);
    return module;
}

/// What the library's manifest asks for: the controls of the current style. Made once and kept for good,
/// because windows may still use it when the library goes.
class LibraryContext {
public:
    explicit LibraryContext(HMODULE module) {
        ACTCTXW request{};
        request.cbSize = sizeof(request);
        request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
        request.hModule = module;
        request.lpResourceName = MAKEINTRESOURCEW(LibraryManifest);
        Context = CreateActCtxW(&request);
    }

    /// True when the context is current now; `cookie` undoes it. False when there is none.
    bool Activate(ULONG_PTR& cookie) const {
        return Context != INVALID_HANDLE_VALUE && ActivateActCtx(Context, &cookie) != FALSE;
    }

private:
    HANDLE Context = INVALID_HANDLE_VALUE;
};

class WindowsModuleStates final : public ModuleStates {
public:
    ModuleHandle OwnModule() const override { return win32::FromSystem(Own); }
    ModuleHandle Current() const override { return CurrentOfThread; }
    void SetResourceModule(ModuleHandle module) override { Chosen.exchange(module); }

    ModuleHandle ResourceModule() const override {
        const ModuleHandle chosen = Chosen.load();
        return chosen == ModuleHandle::None ? OwnModule() : chosen;
    }

    void RunInside(const std::function<void()>& work) override {
        const ModuleHandle previous = CurrentOfThread;
        ULONG_PTR cookie = 0;
        const bool isActive = Context.Activate(cookie);
        CurrentOfThread = ResourceModule();
        RunThen(work, [previous, cookie, isActive] {
            CurrentOfThread = previous;
            if (isActive) {
                // A foreign exception may have left contexts of its own above ours.
                DeactivateActCtx(DEACTIVATE_ACTCTX_FLAG_FORCE_EARLY_DEACTIVATION, cookie);
            }
        });
    }

private:
    static inline thread_local ModuleHandle CurrentOfThread = ModuleHandle::None;

    const HMODULE Own = ThisModule();
    const LibraryContext Context{Own};
    std::atomic<ModuleHandle> Chosen = ModuleHandle::None;
};

} // namespace

ModuleStates& SystemModuleStates() {
    static WindowsModuleStates states;
    return states;
}

namespace win32 {

HMODULE ResourceModuleInUse() {
    const ModuleStates& states = SystemModuleStates();
    const ModuleHandle current = states.Current();
    return ToSystem(current == ModuleHandle::None ? states.ResourceModule() : current);
}

} // namespace win32

} // namespace pmx
