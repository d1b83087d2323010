#pragma once

#include "store/store_services.h"
#include "support/fake_clock.h"
#include "support/fake_files.h"
#include "support/fake_profile.h"

namespace pmx::test {

/// The services that a store is given in tests: real files, profiles and texts, of which files and profiles
/// fail as planned, and a clock that does not wait.
class FakeServices {
public:
    FakeFiles Disk;
    FakeProfile Profiles;
    FakeClock Clock;
    StoreServices Services{Disk, Profiles, Clock};
};

} // namespace pmx::test
