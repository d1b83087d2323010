#include "win32/support/file_dialog_user.h"

#include "platform/win32/wide_text.h"

#include <array>
#include <stdexcept>
#include <string_view>

#include <dlgs.h>

namespace pmx::test {

namespace {

constexpr int FilterBox = cmb1;
constexpr int ReadOnlyBox = chx1;

/// Which of the two there is depends on the system's version.
HWND FileNameBoxOf(HWND window) {
    const HWND combo = GetDlgItem(window, cmb13);
    return combo ? combo : GetDlgItem(window, edt1);
}

HWND FocusOf(HWND window) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
    return info.hwndFocus;
}

std::string TextOf(HWND item) {
    std::array<wchar_t, 512> buffer{};
    const auto length = static_cast<std::size_t>(
        SendMessageW(item, WM_GETTEXT, buffer.size(), reinterpret_cast<LPARAM>(buffer.data())));
    return win32::ToNarrow(std::wstring_view(buffer.data(), length));
}

void Require(bool condition, const char* failure) {
    if (!condition) {
        throw std::runtime_error(failure);
    }
}

void PressKey(WORD key) {
    DialogDriver::SendKey(key, true);
    DialogDriver::SendKey(key, false);
}

} // namespace

FileDialogUser::FileDialogUser(RealUser& user) : User(user) {
    Require(DialogDriver::WaitUntil([this] { return (Window = FindOwned(User.Window())) != nullptr; }),
            "no file dialog opens");
    WaitForKeyboard(Window);
}

HWND FileDialogUser::FindOwned(HWND owner) const {
    struct Search {
        HWND Owner;
        HWND Found = nullptr;
    };
    Search search{owner};
    EnumThreadWindows(
        GetWindowThreadProcessId(owner, nullptr),
        [](HWND window, LPARAM context) -> BOOL {
            auto& wanted = *reinterpret_cast<Search*>(context);
            if (IsWindowVisible(window) && GetWindow(window, GW_OWNER) == wanted.Owner) {
                wanted.Found = window;
            }
            return wanted.Found == nullptr;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

void FileDialogUser::WaitForKeyboard(HWND window) const {
    const auto hasKeyboard = [window] {
        return GetForegroundWindow() == window && IsChild(window, FocusOf(window));
    };
    Require(DialogDriver::WaitUntil(hasKeyboard), "the file dialog does not get the keyboard");
}

bool FileDialogUser::IsOverDialog() const {
    return !IsWindowEnabled(User.Window());
}

std::string FileDialogUser::FileName() const {
    return TextOf(FileNameBoxOf(Window));
}

std::string FileDialogUser::Filter() const {
    return TextOf(GetDlgItem(Window, FilterBox));
}

bool FileDialogUser::ShowsReadOnlyBox() const {
    const HWND box = GetDlgItem(Window, ReadOnlyBox);
    return box && IsWindowVisible(box);
}

void FileDialogUser::Enter(const std::string& path) {
    SendMessageW(FocusOf(Window), EM_SETSEL, 0, -1);
    for (const wchar_t character : win32::ToWide(path)) {
        DialogDriver::SendCharacter(character);
    }
    Require(DialogDriver::WaitUntil([&] { return FileName() == path; }), "the file name is not taken up");
    PressKey(VK_RETURN);
}

void FileDialogUser::AnswerQuestion(int button) {
    HWND question = nullptr;
    Require(DialogDriver::WaitUntil([&] { return (question = FindOwned(Window)) != nullptr; }),
            "the file dialog asks nothing");
    WaitForKeyboard(question);
    PostMessageW(question, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(question, button)));
    Require(DialogDriver::WaitUntil([question] { return !IsWindow(question); }), "the question stays open");
}

void FileDialogUser::Cancel() {
    WaitForKeyboard(Window);
    PressKey(VK_ESCAPE);
    WaitUntilClosed();
}

void FileDialogUser::WaitUntilClosed() {
    Require(DialogDriver::WaitUntil([this] { return !IsWindow(Window); }), "the file dialog stays open");
    User.Settle();
}

} // namespace pmx::test
