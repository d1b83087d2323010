#include "dialogs/base/dialog_services.h"

#include "dialogs/base/help_engine.h"

namespace pmx {

const DialogServices& SystemDialogServices() {
    static const DialogServices Services{
        .Strings = SystemResources(),
        .Dialogs = SystemDialogRunner(),
        .Messages = SystemMessageBoxes(),
        .FileChoice = SystemFileDialogs(),
        .Images = SystemImageLists(),
        .Help = SystemHelpEngine(),
        .Libraries = SystemDynamicLibraries(),
    };
    return Services;
}

} // namespace pmx
