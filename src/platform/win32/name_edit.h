#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <windows.h>

namespace pmx::win32 {

/// What an edit box of a dialog accepts: only characters that have a code in the ANSI code page, and at most
/// so many bytes there. The control itself counts wide characters and knows no code page, so this stands
/// before it.
class NameEdit {
public:
    static constexpr std::size_t NoLimit = static_cast<std::size_t>(-1);

    /// Told, inside the handler of an exception, what the box's own code raised. Must raise nothing.
    using FailureHandler = std::function<void()>;

    /// Watches over an edit box, not owned. Must live until the box is destroyed. Exceptions must not cross
    /// the system's frames, so they go to `onFailure`, and the message has no effect.
    NameEdit(HWND window, FailureHandler onFailure);
    ~NameEdit() = default;
    NameEdit(const NameEdit&) = delete;
    NameEdit& operator=(const NameEdit&) = delete;

    /// From now on at most `bytes` bytes. A longer text that is there already is cut.
    void SetLimit(std::size_t bytes);

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR self);

    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const;
    LRESULT TypeCharacter(UINT message, WPARAM character, LPARAM lParam) const;
    LRESULT SetWholeText(WPARAM wParam, const wchar_t* text) const;
    LRESULT ReplaceSelection(WPARAM canUndo, const wchar_t* text) const;
    LRESULT TakeComposition(WPARAM wParam, LPARAM lParam) const;
    void FinishComposition() const;
    void Paste() const;

    std::wstring Text() const;
    std::size_t RoomForSelection() const;
    std::wstring Fitting(std::wstring_view text, std::size_t room) const;

    HWND Window;
    FailureHandler OnFailure;
    std::size_t Limit = NoLimit;
};

} // namespace pmx::win32
