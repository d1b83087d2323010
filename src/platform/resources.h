#pragma once

#include "platform/window_types.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace pmx {

/// What the library shows: strings, dialog templates and bitmaps by number, from the module that is the
/// calling thread's resource module at the time of the call ("platform/module_state.h").
class Resources {
public:
    virtual ~Resources() = default;

    /// The string of that number in the system's code page, lines separated by a line feed. None when the
    /// string table has no such entry; an empty entry counts as none.
    virtual std::optional<std::string> StringOf(ResourceId id) const = 0;

    /// The compiled dialog template (extended form), as the resource compiler wrote it; empty when there is
    /// none. Valid as long as the resource module is loaded.
    virtual std::span<const std::byte> DialogTemplateOf(ResourceId id) const = 0;

    /// The compiled bitmap (a bitmap file without its file header); empty when there is none. Valid as above.
    virtual std::span<const std::byte> BitmapOf(ResourceId id) const = 0;

protected:
    Resources() = default;
    Resources(const Resources&) = default;
    Resources& operator=(const Resources&) = default;
};

/// The system's resources. Lives as long as the process.
Resources& SystemResources();

} // namespace pmx
