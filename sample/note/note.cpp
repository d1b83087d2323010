// A help engine under the entry that the system's has: a text note that the next key or click takes away.
#include "ui/text.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>

#include <windows.h>

// The engine's own header needs the system's before it.
#include <htmlhelp.h>

namespace {

using pmx::sample::OwnModule;
using pmx::sample::ToWide;

constexpr const wchar_t* NoteClass = L"PmxNote";
constexpr int WidestText = 360;

struct FontDeleter {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

struct HookRemover {
    void operator()(HHOOK hook) const { UnhookWindowsHookEx(hook); }
};
using Hook = std::unique_ptr<std::remove_pointer_t<HHOOK>, HookRemover>;

/// The note on the screen; there is one at a time. It leaves the focus where it is.
class Note {
public:
    Note(HWND owner, const HH_POPUP& request)
        : Text(ToWide(request.pszText)), Margins(request.rcMargins), Background(request.clrBackground) {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        TextFont.reset(CreateFontIndirectW(&metrics.lfMessageFont));
        Create(owner, request.pt);
    }
    Note(const Note&) = delete;
    Note& operator=(const Note&) = delete;
    ~Note() {
        Keys.reset();
        if (IsWindow(Window) != FALSE) {
            SetWindowLongPtrW(Window, GWLP_USERDATA, 0);
            DestroyWindow(Window);
        }
    }

    HWND Get() const { return Window; }

private:
    void Create(HWND owner, POINT position) {
        const SIZE size = Measure();
        WNDCLASSW note{};
        note.lpfnWndProc = &Note::Procedure;
        note.hInstance = OwnModule();
        note.hCursor = LoadCursorA(nullptr, IDC_ARROW);
        note.lpszClassName = NoteClass;
        RegisterClassW(&note);
        const int left = std::max<int>(
            0, std::min<int>(position.x - size.cx / 2, GetSystemMetrics(SM_CXSCREEN) - size.cx));
        const int top = std::max<int>(0, std::min<int>(position.y, GetSystemMetrics(SM_CYSCREEN) - size.cy));
        Window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, NoteClass, nullptr,
                                 WS_POPUP | WS_BORDER, left, top, size.cx, size.cy, owner, nullptr,
                                 OwnModule(), nullptr);
        SetWindowLongPtrW(Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ShowWindow(Window, SW_SHOWNOACTIVATE);
        SetCapture(Window);
        Keys.reset(SetWindowsHookExW(WH_KEYBOARD, &Note::WatchKeys, nullptr, GetCurrentThreadId()));
    }

    SIZE Measure() const {
        const HDC device = GetDC(nullptr);
        RECT text{0, 0, WidestText, 0};
        Draw(device, text, DT_CALCRECT);
        ReleaseDC(nullptr, device);
        constexpr int Borders = 2;
        return {text.right + Margins.left + Margins.right + Borders,
                text.bottom + Margins.top + Margins.bottom + Borders};
    }

    void Draw(HDC device, RECT& area, UINT flags) const {
        const HGDIOBJ former = SelectObject(device, TextFont.get());
        SetBkMode(device, TRANSPARENT);
        DrawTextW(device, Text.c_str(), -1, &area, DT_WORDBREAK | DT_NOPREFIX | flags);
        SelectObject(device, former);
    }

    void Paint() const {
        PAINTSTRUCT paint{};
        const HDC device = BeginPaint(Window, &paint);
        RECT area{};
        GetClientRect(Window, &area);
        const HBRUSH ground = CreateSolidBrush(Background);
        FillRect(device, &area, ground);
        DeleteObject(ground);
        area = {area.left + Margins.left, area.top + Margins.top, area.right, area.bottom};
        Draw(device, area, 0);
        EndPaint(Window, &paint);
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        const auto* note = reinterpret_cast<const Note*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        switch (message) {
        case WM_PAINT:
            if (note != nullptr) {
                note->Paint();
                return 0;
            }
            break;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_CLOSE:
            ReleaseCapture();
            return 0;
        case WM_CAPTURECHANGED:
            DestroyWindow(window);
            return 0;
        default:
            break;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    static LRESULT CALLBACK WatchKeys(int code, WPARAM wParam, LPARAM lParam);

    std::wstring Text;
    RECT Margins;
    COLORREF Background;
    Font TextFont;
    HWND Window = nullptr;
    Hook Keys;
};

std::unique_ptr<Note>& Shown() {
    static std::unique_ptr<Note> note;
    return note;
}

LRESULT CALLBACK Note::WatchKeys(int code, WPARAM wParam, LPARAM lParam) {
    constexpr LPARAM Released = LPARAM{1} << 31;
    const HWND window = Shown() ? Shown()->Get() : nullptr;
    if (code == HC_ACTION && (lParam & Released) == 0 && IsWindow(window) != FALSE) {
        SendMessageW(window, WM_CLOSE, 0, 0);
        return wParam == VK_ESCAPE ? 1 : 0; // Escape is for the note; any other key also does its work.
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

/// Shows notes whose text is given; nothing else is known to this engine. The note's window, or null.
extern "C" HWND WINAPI HtmlHelpA(HWND caller, LPCSTR /*file*/, UINT command, DWORD_PTR data) {
    const auto* request = reinterpret_cast<const HH_POPUP*>(data);
    if (command != HH_DISPLAY_TEXT_POPUP || request == nullptr || request->pszText == nullptr) {
        return nullptr;
    }
    try {
        Shown().reset();
        Shown() = std::make_unique<Note>(caller, *request);
        return Shown()->Get();
    } catch (const std::exception&) {
        return nullptr;
    }
}
