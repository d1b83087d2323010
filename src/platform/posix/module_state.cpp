#include "platform/module_state.h"
#include "platform/guard.h"

#include <atomic>

namespace pmx {

namespace {

/// Stands for the program: resources are part of it, and there is nothing to switch but what Current reports.
constexpr ModuleHandle Program{1};

class ProgramModuleStates final : public ModuleStates {
public:
    ModuleHandle OwnModule() const override { return Program; }
    ModuleHandle Current() const override { return CurrentOfThread; }
    void SetResourceModule(ModuleHandle module) override { Chosen.exchange(module); }

    ModuleHandle ResourceModule() const override {
        const ModuleHandle chosen = Chosen.load();
        return chosen == ModuleHandle::None ? Program : chosen;
    }

    void RunInside(const std::function<void()>& work) override {
        const ModuleHandle previous = CurrentOfThread;
        CurrentOfThread = ResourceModule();
        RunThen(work, [previous] { CurrentOfThread = previous; });
    }

private:
    static inline thread_local ModuleHandle CurrentOfThread = ModuleHandle::None;
    std::atomic<ModuleHandle> Chosen = ModuleHandle::None;
};

} // namespace

ModuleStates& SystemModuleStates() {
    static ProgramModuleStates states;
    return states;
}

} // namespace pmx
