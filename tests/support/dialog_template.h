#pragma once

#include "platform/window_types.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace pmx::test {

enum class ControlKind { PushButton, RadioButton, Edit, Label, IconBox, List, Other };

/// One control of a dialog template. Positions and sizes are in dialog units.
struct TemplateControl {
    static constexpr ControlId NoId = -1; ///< of controls that nobody addresses

    ControlId Id = NoId;
    ControlKind Kind = ControlKind::Other;
    std::string
        ClassName;    ///< in capitals, which windows classes do not tell apart, for example SYSLISTVIEW32
    std::string Text; ///< code page 932, with its access key's `&`
    std::uint32_t Style = 0;
    std::uint32_t ExtendedStyle = 0;
    int X = 0;
    int Y = 0;
    int Width = 0;
    int Height = 0;

    bool IsVisible() const { return (Style & 0x10000000U) != 0; }
    bool IsEnabled() const { return (Style & 0x08000000U) == 0; }
    bool IsTabStop() const { return (Style & 0x00010000U) != 0; }
    bool BeginsGroup() const { return (Style & 0x00020000U) != 0; }
    bool IsDefaultButton() const { return Kind == ControlKind::PushButton && (Style & 0xFU) == 1; }
};

/// A dialog template as the resource compiler wrote it.
struct DialogTemplate {
    std::string Title; ///< code page 932
    std::uint32_t Style = 0;
    std::uint32_t ExtendedStyle = 0;
    int Width = 0;
    int Height = 0;
    std::string FontName; ///< code page 932; empty without a font
    int FontPoints = 0;
    std::vector<TemplateControl> Controls; ///< in tab order
};

/// Reads an extended dialog template. Throws std::runtime_error when it is none or is cut off.
DialogTemplate ParseDialogTemplate(std::span<const std::byte> bytes);

} // namespace pmx::test
