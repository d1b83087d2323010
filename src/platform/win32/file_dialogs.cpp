#include "platform/file_dialogs.h"

#include "platform/text.h"
#include "platform/win32/handles.h"

#include <algorithm>
#include <array>

#include <commdlg.h>

namespace pmx {

namespace {

using PathBuffer = std::array<char, FileRequest::PathSize>;

/// Labels and patterns in pairs, each ended by a zero, and another one at the end.
std::string FilterText(const FileRequest& request) {
    std::string text;
    for (const FileFilter& filter : request.Filters) {
        text += filter.Label + '\0' + filter.Pattern + '\0';
    }
    return text + '\0';
}

std::string WithoutDot(const std::string& extension) {
    return extension.starts_with('.') ? extension.substr(1) : extension;
}

DWORD FlagsOf(const FileRequest& request) {
    DWORD flags = OFN_EXPLORER | OFN_ENABLESIZING | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
    flags |= request.FileMustExist ? OFN_FILEMUSTEXIST : 0;
    flags |= request.PathMustExist ? OFN_PATHMUSTEXIST : 0;
    flags |= request.AskBeforeOverwriting ? OFN_OVERWRITEPROMPT : 0;
    return flags;
}

/// The narrow dialogs, because the path has to fit a buffer of so many bytes.
std::optional<std::string> Show(const FileRequest& request, BOOL(WINAPI* show)(LPOPENFILENAMEA)) {
    const std::string filter = FilterText(request);
    const std::string extension = WithoutDot(request.DefaultExtension);
    PathBuffer path{};
    std::copy_n(request.ProposedName.begin(),
                LengthWithin(request.ProposedName, path.size() - 1, SystemLeadBytes()), path.begin());

    OPENFILENAMEA dialog{};
    dialog.lStructSize = sizeof(dialog);
    dialog.hwndOwner = win32::ToSystem(request.Owner);
    dialog.lpstrFilter = request.Filters.empty() ? nullptr : filter.c_str();
    dialog.nFilterIndex = 1;
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    dialog.Flags = FlagsOf(request);
    return show(&dialog) ? std::optional<std::string>(path.data()) : std::nullopt;
}

class WindowsFileDialogs final : public FileDialogs {
public:
    std::optional<std::string> AskOpen(const FileRequest& request) override {
        return Show(request, &GetOpenFileNameA);
    }

    std::optional<std::string> AskSave(const FileRequest& request) override {
        return Show(request, &GetSaveFileNameA);
    }
};

} // namespace

FileDialogs& SystemFileDialogs() {
    static WindowsFileDialogs fileDialogs;
    return fileDialogs;
}

} // namespace pmx
