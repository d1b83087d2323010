#pragma once

#include "store/store_services.h"
#include "support/fake_clock.h"
#include "support/fake_files.h"

namespace pmx::test {

/// The services that a store is given in tests: real files that fail as planned, and a clock that does not
/// wait.
class FakeServices {
public:
    FakeFiles Disk;
    FakeClock Clock;
    StoreServices Services{Disk, Clock};
};

} // namespace pmx::test
