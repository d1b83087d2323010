#pragma once

#include "platform/window_types.h"

#include <cstddef>
#include <cstdint>

namespace pmx {

/// What the help engine needs to know to show a text note: the engine's own record, laid out as it reads it.
struct HelpNote {
    static constexpr std::int32_t DefaultForeground = -1;    ///< the platform's text colour
    static constexpr std::uint32_t PaleYellow = 0x00F0FFFFU; ///< red 255, green 255, blue 240

    std::int32_t Size = sizeof(HelpNote);
    ModuleHandle Instance = ModuleHandle::None;
    std::uint32_t StringId = 0; ///< 0: the text is given
    const char* Text = nullptr; ///< system's code page, lines separated by a line feed; read during the call
    ScreenPoint Position;       ///< where the note appears
    std::int32_t Foreground = DefaultForeground;
    std::uint32_t Background = PaleYellow;
    std::int32_t MarginLeft = 10; ///< in pixels, as the other margins
    std::int32_t MarginTop = 5;
    std::int32_t MarginRight = 5;
    std::int32_t MarginBottom = 10;
    const char* Font = nullptr; ///< none: the platform's default
};

static_assert(sizeof(void*) != 8 || sizeof(HelpNote) == 72);
static_assert(sizeof(void*) != 8 ||
              (offsetof(HelpNote, Instance) == 8 && offsetof(HelpNote, StringId) == 16 &&
               offsetof(HelpNote, Text) == 24 && offsetof(HelpNote, Position) == 32 &&
               offsetof(HelpNote, Foreground) == 40 && offsetof(HelpNote, Background) == 44 &&
               offsetof(HelpNote, MarginLeft) == 48 && offsetof(HelpNote, MarginTop) == 52 &&
               offsetof(HelpNote, MarginRight) == 56 && offsetof(HelpNote, MarginBottom) == 60 &&
               offsetof(HelpNote, Font) == 64));

/// The engine that draws help notes.
class HelpEngine {
public:
    static constexpr std::uint32_t DisplayTextPopup = 14; ///< the command that shows a text note

    virtual ~HelpEngine() = default;

    /// Passes a command to the engine. `caller` may be none; `file` (system's code page) is null for a text
    /// note. The engine's own result, or 0 when there is no engine; failures are never shown.
    virtual std::uintptr_t Call(WindowHandle caller, const char* file, std::uint32_t command,
                                const HelpNote& note) = 0;

protected:
    HelpEngine() = default;
    HelpEngine(const HelpEngine&) = default;
    HelpEngine& operator=(const HelpEngine&) = default;
};

} // namespace pmx
