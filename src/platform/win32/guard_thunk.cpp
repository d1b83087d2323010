#include "platform/win32/guard_thunk.h"

// The language extension that has __try is on for this file alone.
namespace pmx::win32 {

bool CallProtected(ThunkFunction function, void* context) {
    constexpr int ExecuteHandler = 1; // EXCEPTION_EXECUTE_HANDLER
    __try {
        function(context);
        return true;
    } __except (ExecuteHandler) {
        return false;
    }
}

void CallThen(ThunkFunction function, void* context, ThunkFunction cleanup, void* cleanupContext) {
    __try {
        function(context);
    } __finally {
        cleanup(cleanupContext);
    }
}

} // namespace pmx::win32
