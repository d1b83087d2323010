#include "host/window.h"

#include <stdexcept>

namespace pmx::host {

Window::~Window() {
    if (Handle != nullptr) {
        DestroyWindow(Handle);
    }
}

void Window::Create(const Look& look) {
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &Window::Procedure;
    windowClass.hInstance = instance;
    windowClass.hIcon = look.Icon;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = look.ClassName;
    RegisterClassExW(&windowClass);
    const RECT& place = look.Place;
    const HWND made = CreateWindowExW(0, look.ClassName, look.Title, look.Style, place.left, place.top,
                                      place.right - place.left, place.bottom - place.top, look.Parent,
                                      look.MenuOrId, instance, this);
    if (made == nullptr) {
        throw std::runtime_error("CreateWindowExW");
    }
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
        static_cast<Window*>(creation->lpCreateParams)->Handle = window;
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const auto answer = self->Answer(message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        self->Handle = nullptr;
    }
    return answer ? *answer : DefWindowProcW(window, message, wParam, lParam);
}

} // namespace pmx::host
