#include "platform/clock.h"

#include <chrono>
#include <thread>

namespace pmx {

namespace {

class ThreadClock : public Clock {
public:
    void Sleep(std::uint32_t milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

} // namespace

Clock& SystemClock() {
    static ThreadClock clock;
    return clock;
}

} // namespace pmx
