#pragma once

#include "platform/window_types.h"
#include "support/built_resources.h"

#include <functional>

#include <windows.h>

namespace pmx::test {

/// Opens each of the five dialogs in a real window, with favorites in its list, in that language, and lets `look`
/// look at it before it is shown.
void ForEachDialog(Language language, const std::function<void(ResourceId id, HWND dialog)>& look);

/// The controls of a dialog in their order.
std::vector<HWND> ControlsOf(HWND dialog);

std::wstring TextOf(HWND window);
bool IsOfClass(HWND window, const wchar_t* name);

} // namespace pmx::test
