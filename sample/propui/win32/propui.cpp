// The print-attribute dialog as host/PMXPropUI.h declares it.
#include "host/PMXPropUI.h"

#include "propui/win32/attribute_dialog.h"
#include "ui/text.h"

#include <exception>
#include <optional>

#include <commctrl.h>

using namespace pmx::sample;

namespace {

constexpr std::int32_t Failure = -1;

/// While it lives, windows take their controls from this library's manifest, whatever the program's own says.
class ControlsOfLibrary {
public:
    ControlsOfLibrary() : IsActive(ActivateActCtx(Context(), &Cookie) != FALSE) {}
    ControlsOfLibrary(const ControlsOfLibrary&) = delete;
    ControlsOfLibrary& operator=(const ControlsOfLibrary&) = delete;
    ~ControlsOfLibrary() {
        if (IsActive) {
            DeactivateActCtx(0, Cookie);
        }
    }

private:
    /// Made once and kept: windows may still use it.
    static HANDLE Context() {
        static const HANDLE Made = [] {
            constexpr WORD LibraryManifest = 2;
            ACTCTXW request{};
            request.cbSize = sizeof request;
            request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
            request.hModule = OwnModule();
            request.lpResourceName = MAKEINTRESOURCEW(LibraryManifest);
            return CreateActCtxW(&request);
        }();
        return Made;
    }

    ULONG_PTR Cookie = 0;
    bool IsActive;
};

std::optional<Level> LevelOfKind(std::int32_t kind) {
    constexpr std::int32_t LastKind = 4;
    if (kind < 0 || kind > LastKind) {
        return std::nullopt;
    }
    return static_cast<Level>(kind + static_cast<std::int32_t>(Level::Document));
}

std::int32_t Run(Level level, unsigned char* part, HWND owner) {
    const ControlsOfLibrary controls;
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes);
    AttributeDialog dialog(level, part);
    switch (dialog.Run(owner)) {
    case IDOK:
        dialog.CopyPart(part);
        return PMX_PROPUI_OK;
    case IDCANCEL:
        return PMX_PROPUI_CANCEL;
    default:
        return Failure;
    }
}

} // namespace

extern "C" std::int32_t EX_ShowPropUI(std::int32_t /*mode*/, std::int32_t kind, void* tablePart,
                                      std::int32_t /*flag*/, void* parentWindow, std::int64_t /*reserved1*/,
                                      std::int64_t /*reserved2*/, std::int64_t /*reserved3*/) {
    const auto level = LevelOfKind(kind);
    if (tablePart == nullptr || !level) {
        return Failure;
    }
    try {
        return Run(*level, static_cast<unsigned char*>(tablePart), static_cast<HWND>(parentWindow));
    } catch (const std::exception&) {
        return Failure;
    }
}
