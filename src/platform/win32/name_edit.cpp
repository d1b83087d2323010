#include "platform/win32/name_edit.h"

#include "platform/win32/wide_text.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <commctrl.h>
#include <imm.h>

namespace pmx::win32 {

namespace {

constexpr UINT_PTR SubclassId = 1;

bool IsControlCharacter(WPARAM character) {
    constexpr WPARAM Delete = 0x7F;
    return character < L' ' || character == Delete;
}

void Refuse() {
    MessageBeep(MB_OK);
}

/// The clipboard, open for as long as this lives.
class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND owner) : IsOpen(OpenClipboard(owner) != FALSE) {}
    ~OpenedClipboard() {
        if (IsOpen) {
            CloseClipboard();
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    std::optional<std::wstring> Text() const {
        const HANDLE data = IsOpen ? GetClipboardData(CF_UNICODETEXT) : nullptr;
        const auto* text = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
        if (!text) {
            return std::nullopt;
        }
        std::wstring result(text, std::find(text, text + GlobalSize(data) / sizeof(wchar_t), L'\0'));
        GlobalUnlock(data);
        return result;
    }

private:
    bool IsOpen;
};

struct Selection {
    std::size_t Begin;
    std::size_t End;
};

Selection SelectionOf(HWND edit) {
    DWORD begin = 0;
    DWORD end = 0;
    SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
    return {begin, end};
}

} // namespace

NameEdit::NameEdit(HWND window, FailureHandler onFailure) : Window(window), OnFailure(std::move(onFailure)) {
    SetWindowSubclass(Window, &NameEdit::Procedure, SubclassId, reinterpret_cast<DWORD_PTR>(this));
}

void NameEdit::SetLimit(std::size_t bytes) {
    Limit = bytes;
    // Never more characters than bytes: a net below the rules here.
    SendMessageW(Window, EM_SETLIMITTEXT, bytes, 0);
    const std::wstring text = Text();
    if (Fitting(text, Limit) != text) {
        SetWindowTextW(Window, text.c_str());
    }
}

LRESULT CALLBACK NameEdit::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                     DWORD_PTR self) {
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, &NameEdit::Procedure, SubclassId);
        return DefSubclassProc(window, message, wParam, lParam);
    }
    auto& edit = *reinterpret_cast<NameEdit*>(self);
    try {
        return edit.Handle(message, wParam, lParam);
    } catch (...) {
        edit.OnFailure();
        return 0;
    }
}

LRESULT NameEdit::Default(UINT message, WPARAM wParam, LPARAM lParam) const {
    return DefSubclassProc(Window, message, wParam, lParam);
}

LRESULT NameEdit::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CHAR:
    case WM_IME_CHAR:
        return TypeCharacter(message, wParam, lParam);
    case WM_PASTE:
        Paste();
        return 0;
    case WM_SETTEXT:
        return SetWholeText(wParam, reinterpret_cast<const wchar_t*>(lParam));
    case EM_REPLACESEL:
        return ReplaceSelection(wParam, reinterpret_cast<const wchar_t*>(lParam));
    case WM_IME_COMPOSITION:
        return TakeComposition(wParam, lParam);
    case WM_KILLFOCUS:
        FinishComposition();
        return Default(message, wParam, lParam);
    default:
        return Default(message, wParam, lParam);
    }
}

LRESULT NameEdit::TypeCharacter(UINT message, WPARAM character, LPARAM lParam) const {
    if (IsControlCharacter(character)) {
        return Default(message, character, lParam);
    }
    const std::wstring accepted =
        Fitting(std::wstring(1, static_cast<wchar_t>(character)), RoomForSelection());
    if (accepted.empty()) {
        Refuse();
        return 0;
    }
    return Default(message, accepted.front(), lParam);
}

LRESULT NameEdit::SetWholeText(WPARAM wParam, const wchar_t* text) const {
    const std::wstring accepted = Fitting(text ? text : L"", Limit);
    return Default(WM_SETTEXT, wParam, reinterpret_cast<LPARAM>(accepted.c_str()));
}

LRESULT NameEdit::ReplaceSelection(WPARAM canUndo, const wchar_t* text) const {
    const std::wstring_view wanted = text ? text : L"";
    const std::wstring accepted = Fitting(wanted, RoomForSelection());
    if (accepted.empty() && !wanted.empty()) {
        return 0; // the selection stays
    }
    return Default(EM_REPLACESEL, canUndo, reinterpret_cast<LPARAM>(accepted.c_str()));
}

void NameEdit::Paste() const {
    std::optional<std::wstring> text;
    {
        const OpenedClipboard clipboard(Window);
        text = clipboard.Text();
    }
    if (!text) {
        return;
    }
    const std::wstring_view line = std::wstring_view(*text).substr(0, text->find_first_of(L"\r\n"));
    const std::wstring accepted = Fitting(line, RoomForSelection());
    if (accepted.size() != line.size()) {
        Refuse();
    }
    if (!accepted.empty()) {
        Default(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(accepted.c_str()));
    }
}

/// The control takes over what the input method composes as it does; afterwards, what it took too much is
/// taken back, from the end of what was put in, which is where the caret is.
LRESULT NameEdit::TakeComposition(WPARAM wParam, LPARAM lParam) const {
    const LRESULT result = Default(WM_IME_COMPOSITION, wParam, lParam);
    if ((lParam & GCS_RESULTSTR) == 0) {
        return result;
    }
    const std::wstring text = Text();
    const std::size_t caret = std::min(SelectionOf(Window).End, text.size());
    const std::wstring tail = text.substr(caret);
    const std::size_t tailSize = NarrowSize(tail);
    const std::wstring kept = Fitting(text.substr(0, caret), Limit > tailSize ? Limit - tailSize : 0) + tail;
    if (kept != text) {
        Refuse();
        Default(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(kept.c_str()));
        const std::size_t end = kept.size() - tail.size();
        SendMessageW(Window, EM_SETSEL, end, static_cast<LPARAM>(end));
    }
    return result;
}

/// What the input method still composes is taken as typed.
void NameEdit::FinishComposition() const {
    const HIMC context = ImmGetContext(Window);
    if (!context) {
        return;
    }
    if (ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0) > 0) {
        ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0);
    }
    ImmReleaseContext(Window, context);
}

std::wstring NameEdit::Text() const {
    const auto length = static_cast<std::size_t>(GetWindowTextLengthW(Window));
    std::wstring text(length + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(Window, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// Bytes that may stand in the place of the selection.
std::size_t NameEdit::RoomForSelection() const {
    const std::wstring text = Text();
    const Selection selection = SelectionOf(Window);
    const std::size_t begin = std::min(selection.Begin, text.size());
    const std::size_t end = std::min(selection.End, text.size());
    const std::size_t kept = NarrowSize(text.substr(0, begin)) + NarrowSize(text.substr(end));
    return Limit > kept ? Limit - kept : 0;
}

/// The longest beginning of the text that fits, without the characters that have no code.
std::wstring NameEdit::Fitting(std::wstring_view text, std::size_t room) const {
    std::wstring result;
    for (const wchar_t character : text) {
        const wchar_t accepted = WithCode(character);
        const std::size_t size = accepted ? NarrowSize(std::wstring_view(&accepted, 1)) : 0;
        if (size > room) {
            break;
        }
        if (accepted) {
            result += accepted;
            room -= size;
        }
    }
    return result;
}

} // namespace pmx::win32
