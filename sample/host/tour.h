#pragma once

#include "host/tour_dialogs.h"

#include <filesystem>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include <windows.h>

namespace pmx::host {

/// A scripted walk through the host: a thread of its own works the windows as a user would, and after each
/// step leaves a file `NN-name.ready` in the tour's folder, which says where on the screen the step is to be
/// seen, and waits until somebody, having taken a picture, has removed it. Ends the program when it is
/// through; a file `complete` tells that it is, `failed` why it is not.
class Tour {
public:
    Tour(HWND window, std::filesystem::path folder);

    /// Whether every step was done and seen; known when the window is gone.
    bool Succeeded();

private:
    void Run(const std::stop_token& stop);
    void ShowToolbarFavorites();
    void ShowSettings();
    void ShowMenu(wchar_t accessKey, const std::string& name);
    void ShowAttributes();
    void SaveNew();
    void Register();
    void ApplyUserFavorite();
    void Update();
    void ShowEditor();
    void CreateInEditor(HWND editor);
    void CopyInEditor(HWND editor);
    void RenameInEditor(HWND editor);
    void ExportAndImport(HWND editor);
    void ShowBasicList();
    void ShowHelp(HWND dialog, int control, const std::string& name);
    void Fail(const std::string& reason);
    void ExpectFavorites(unsigned count, const std::vector<unsigned>& names) const;
    void ExpectSetting(unsigned nameId, unsigned valueId) const;
    void Choose(int command);
    void Step(const std::string& name);
    bool WaitUntilGone(const std::filesystem::path& file) const;

    HWND Window;
    TourDialogs Dialogs;
    std::filesystem::path Folder;
    int Count = 0;
    bool Complete = false;
    std::jthread Worker;
};

} // namespace pmx::host
