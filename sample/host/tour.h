#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <thread>

#include <windows.h>

namespace pmx::host {

/// A scripted walk through the host: a thread of its own works the window as a user would, and after each
/// step leaves a file `NN-name.ready` in the tour's folder and waits until somebody, having taken a picture,
/// has removed it. Ends the program when it is through.
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
    void Choose(int command);
    void Step(const std::string& name);
    bool WaitFor(const std::function<bool()>& condition) const;
    bool WaitUntilGone(const std::filesystem::path& file);

    HWND Window;
    std::filesystem::path Folder;
    int Count = 0;
    bool Complete = false;
    std::jthread Worker;
};

} // namespace pmx::host
