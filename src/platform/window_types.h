#pragma once

#include <cstdint>

namespace pmx {

/// A window of the operating system, as an opaque value of pointer size (on Windows the HWND). Never owning.
enum class WindowHandle : std::uintptr_t { None = 0 };

/// A loaded module (library or program), as an opaque value of pointer size. Never owning.
enum class ModuleHandle : std::uintptr_t { None = 0 };

/// A position on the screen, in pixels.
struct ScreenPoint {
    std::int32_t X = 0;
    std::int32_t Y = 0;
    bool operator==(const ScreenPoint&) const = default;
};

/// A colour as 0x00BBGGRR.
enum class Color : std::uint32_t { LightGrey = 0xC0C0C0U, White = 0xFFFFFFU };

/// Number of a dialog template, string or bitmap of the resource module, or of a control of a dialog.
using ResourceId = int;
using ControlId = int;

} // namespace pmx
