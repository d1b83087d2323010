#include "frame/app.h"

#include "platform/guard.h"

namespace pmx {

namespace {

/// The language of which the host is asked for a resource library.
constexpr const char* ResourceTag = "ENU";

} // namespace

bool CPMXTemplUIApp::InitInstance() {
    if (!CPmxApp::InitInstance()) {
        return false;
    }
    if (ResourceLibrary != ModuleHandle::None || LoadResources == nullptr) {
        return true;
    }
    void* loaded = nullptr;
    // An error in the host's library must not keep the favorites from loading.
    const bool completed =
        RunGuarded([&] { loaded = LoadResources(reinterpret_cast<void*>(States.OwnModule()), ResourceTag); });
    if (completed && loaded != nullptr) {
        ResourceLibrary = static_cast<ModuleHandle>(reinterpret_cast<std::uintptr_t>(loaded));
        States.SetResourceModule(ResourceLibrary);
    }
    return true;
}

} // namespace pmx
