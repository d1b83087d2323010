#include "platform/guard.h"

#include "platform/win32/guard_thunk.h"

namespace pmx {

namespace {

using Work = std::function<void()>;

struct PlainWork {
    const Work& Function;
};

struct ProtectedWork {
    const Work& Function;
    bool Threw = false;
};

/// Handles C++ exceptions where their language still works, so that the objects between are destroyed.
void RunCatching(void* context) {
    ProtectedWork& work = *static_cast<ProtectedWork*>(context);
    try {
        work.Function();
    } catch (...) {
        work.Threw = true;
    }
}

void RunPlainly(void* context) {
    static_cast<const PlainWork*>(context)->Function();
}

} // namespace

bool RunGuarded(const Work& work) {
    ProtectedWork protectedWork{work};
    return win32::CallProtected(RunCatching, &protectedWork) && !protectedWork.Threw;
}

void RunThen(const Work& work, const Work& cleanup) {
    PlainWork plainWork{work};
    PlainWork plainCleanup{cleanup};
    win32::CallThen(RunPlainly, &plainWork, RunPlainly, &plainCleanup);
}

} // namespace pmx
