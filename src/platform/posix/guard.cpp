#include "platform/guard.h"

namespace pmx {

namespace {

class ExceptionGuard : public Guard {
public:
    bool Run(const std::function<void()>& work) override {
        try {
            work();
            return true;
        } catch (...) {
            return false;
        }
    }

    void RunThen(const std::function<void()>& work, const std::function<void()>& cleanup) override {
        try {
            work();
        } catch (...) {
            cleanup();
            throw;
        }
        cleanup();
    }
};

} // namespace

Guard& SystemGuard() {
    static ExceptionGuard guard;
    return guard;
}

} // namespace pmx
