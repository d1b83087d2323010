#pragma once

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/profile.h"
#include "platform/text.h"

namespace pmx {

/// What the store asks of the operating system. References only: whoever makes it keeps the services alive
/// for as long as the objects that were given it.
struct StoreServices {
    Files& FileSystem;
    Profile& Profiles;
    Text& CodePage;
    Clock& Timer;

    const LeadByteTable& LeadBytes() const { return CodePage.LeadBytes(); }
};

/// The system's own services. Lives as long as the process.
const StoreServices& SystemStoreServices();

} // namespace pmx
