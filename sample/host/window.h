#pragma once

#include <optional>

#include <windows.h>

namespace pmx::host {

/// A window of a class of its own whose messages an object answers. The object outlives the window or
/// destroys it.
class Window {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window();

    HWND Get() const { return Handle; }

protected:
    struct Look {
        const wchar_t* ClassName;
        const wchar_t* Title = L"";
        DWORD Style = 0;
        RECT Place{};
        HWND Parent = nullptr;
        HMENU MenuOrId = nullptr;
        HICON Icon = nullptr;
    };

    /// Makes the window; throws std::runtime_error when the system makes none.
    void Create(const Look& look);

    /// Answers a message, or gives nothing when the system shall.
    virtual std::optional<LRESULT> Answer(UINT message, WPARAM wParam, LPARAM lParam) = 0;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND Handle = nullptr;
};

} // namespace pmx::host
