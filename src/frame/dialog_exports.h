#pragma once

#include "PMXTemplUI.h"
#include "dialogs/base/dialog_services.h"
#include "store/store_services.h"

#include <cstddef>
#include <cstdint>

// What the exports that open a dialog do once their required strings are checked.

namespace pmx {

/// The owner window that a host passes, which may be null.
WindowHandle OwnerOf(void* parentWindow);

/// What a dialog export returns for a dialog's end code: 0 for OK, 1 for Cancel, -1 for anything else.
std::int64_t ResultOfDialog(int code);

/// Most bytes of the folder that the editor is opened with. The rest of a longer one is cut off; no character
/// is split.
inline constexpr std::size_t EditorFolderLimit = 519;

/// Runs the favorites editor.
std::int64_t ShowEditor(const char* folder, WindowHandle owner, const DialogServices& services,
                        const StoreServices& storeServices);

/// Runs the register dialog.
std::int64_t ShowRegisterDialog(const char* folder, const char* listFileName, const char* extension,
                                const void* table, std::int32_t level, WindowHandle owner,
                                const DialogServices& services, const StoreServices& storeServices);

/// Runs the basic list.
std::int64_t ShowBasicList(const char* folder, const char* listFileName, const char* extension,
                           WindowHandle owner, const DialogServices& services,
                           const StoreServices& storeServices);

} // namespace pmx
