#pragma once

#include "platform/dialog_window.h"
#include "platform/dynamic_library.h"
#include "platform/file_dialogs.h"
#include "platform/help_notes.h"
#include "platform/image_list.h"
#include "platform/message_box.h"
#include "platform/resources.h"

namespace pmx {

/// The services that dialogs use, all borrowed: they must outlive the dialogs that are given them. A dialog
/// passes on what it was given to the dialogs that it opens.
struct DialogServices {
    Resources& Strings;
    DialogRunner& Dialogs;
    MessageBoxes& Messages;
    FileDialogs& FileChoice;
    ImageLists& Images;
    HelpNotes& Help;
    DynamicLibraries& Libraries;
};

/// The system's. Lives as long as the process.
const DialogServices& SystemDialogServices();

} // namespace pmx
