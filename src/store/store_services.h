#pragma once

#include "platform/clock.h"
#include "platform/files.h"

#include <cstdint>
#include <limits>

namespace pmx {

/// What the store asks of the operating system. Whoever makes it keeps the services alive for as long as the
/// objects that were given it.
struct StoreServices {
    Files& FileSystem;
    Clock& Timer;

    /// The highest number that a favorite's file name gets when the name itself is taken.
    std::int32_t LastFileNumber = std::numeric_limits<std::int32_t>::max();
};

/// The system's own services. Lives as long as the process.
const StoreServices& SystemStoreServices();

} // namespace pmx
