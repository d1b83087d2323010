#include "platform/guard.h"

namespace pmx {

bool RunGuarded(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (...) {
        return false;
    }
}

void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup) {
    try {
        work();
    } catch (...) {
        cleanup();
        throw;
    }
    cleanup();
}

} // namespace pmx
