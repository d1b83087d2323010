#include "platform/clock.h"

#include <windows.h>

namespace pmx {

namespace {

class ThreadClock : public Clock {
public:
    void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }
};

} // namespace

Clock& SystemClock() {
    static ThreadClock clock;
    return clock;
}

} // namespace pmx
