#include "frame/dialog_exports.h"

#include "dialogs/base/pmx_dlg.h"
#include "dialogs/choice/choice_basic_dlg.h"
#include "dialogs/choice/choice_entry_dlg.h"
#include "dialogs/editor/main_dlg.h"
#include "platform/text.h"
#include "store/favorite_files.h"
#include "store/list_file.h"

#include <string>

namespace pmx {

namespace {

std::string WithinLimit(std::string text, std::size_t limit, const LeadByteTable& leadBytes) {
    text.resize(LengthWithin(text, limit, leadBytes));
    return text;
}

} // namespace

WindowHandle OwnerOf(void* parentWindow) {
    return static_cast<WindowHandle>(reinterpret_cast<std::uintptr_t>(parentWindow));
}

std::int64_t ResultOfDialog(int code) {
    constexpr std::int64_t Accepted = 0;
    constexpr std::int64_t Cancelled = 1;
    constexpr std::int64_t Failed = -1;
    if (code == CodeOk) {
        return Accepted;
    }
    return code == CodeCancel ? Cancelled : Failed;
}

std::int64_t ShowEditor(const char* folder, WindowHandle owner, const DialogServices& services,
                        const StoreServices& storeServices) {
    const std::string usedFolder = WithinLimit(folder, EditorFolderLimit, SystemLeadBytes());
    CPMXTemplUIMainDlg dialog(usedFolder.c_str(), DefaultListFileName, DefaultExtension, owner, services,
                              storeServices);
    return ResultOfDialog(dialog.DoModal());
}

std::int64_t ShowRegisterDialog(const char* folder, const char* listFileName, const char* extension,
                                const void* table, std::int32_t level, WindowHandle owner,
                                const DialogServices& services, const StoreServices& storeServices) {
    CPMXTemplUIChoiceEntryDlg dialog(folder, listFileName, extension, table, level, owner, services,
                                     storeServices);
    return ResultOfDialog(dialog.DoModal());
}

std::int64_t ShowBasicList(const char* folder, const char* listFileName, const char* extension,
                           WindowHandle owner, const DialogServices& services,
                           const StoreServices& storeServices) {
    CPMXTemplUIChoiceBasicDlg dialog(folder, listFileName, extension, owner, services, storeServices);
    return ResultOfDialog(dialog.DoModal());
}

} // namespace pmx
