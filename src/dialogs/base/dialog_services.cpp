#include "dialogs/base/dialog_services.h"

namespace pmx {

const DialogServices& SystemDialogServices() {
    static const DialogServices Services{
        .Strings = SystemResources(),
        .Dialogs = SystemDialogRunner(),
        .Messages = SystemMessageBoxes(),
        .FileChoice = SystemFileDialogs(),
        .Images = SystemImageLists(),
        .Help = SystemHelpNotes(),
        .Libraries = SystemDynamicLibraries(),
    };
    return Services;
}

} // namespace pmx
