#include "host/tour.h"

#include "host/resource.h"
#include "host/text.h"
#include "propui/resource.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>
#include <stdexcept>
#include <type_traits>

#include <commctrl.h>

namespace pmx::host {

namespace {

using Clock = std::chrono::steady_clock;

constexpr const wchar_t* MenuClass = L"#32768";
constexpr const wchar_t* NoteClass = L"PmxNote";
constexpr auto LongestPicture = std::chrono::seconds(60);

/// Controls of the favorites library's dialogs.
namespace editor {
constexpr int Import = 3018;
constexpr int Export = 3020;
constexpr int New = 3024;
constexpr int Copy = 3026;
constexpr int List = 3034;
constexpr int Name = 3042;
} // namespace editor
namespace create {
constexpr int Face = 3031;
constexpr int Name = 3044;
} // namespace create
namespace enter {
constexpr int Name = 3046;
constexpr int ChangeIcon = 3049;
} // namespace enter
namespace basic {
constexpr int List = 3037;
constexpr int Name = 3041;
constexpr int Up = 3047;
} // namespace basic
constexpr int PickerIcons = 3035;

struct NotificationCloser {
    void operator()(HANDLE notification) const { FindCloseChangeNotification(notification); }
};
using Notification = std::unique_ptr<std::remove_pointer_t<HANDLE>, NotificationCloser>;

BOOL CALLBACK AddPlaceOfDialog(HWND window, LPARAM parameter) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    const std::wstring_view kind = name.data();
    if (IsWindowVisible(window) != FALSE && (kind == L"#32770" || kind == NoteClass)) {
        RECT place{};
        GetWindowRect(window, &place);
        auto& all = *reinterpret_cast<RECT*>(parameter);
        const RECT former = all;
        UnionRect(&all, &former, &place);
    }
    return TRUE;
}

/// The part of the screen that all open dialogs take, or the main window when there is none.
RECT SceneOf(HWND window) {
    RECT scene{};
    EnumThreadWindows(GetWindowThreadProcessId(window, nullptr), &AddPlaceOfDialog,
                      reinterpret_cast<LPARAM>(&scene));
    if (IsRectEmpty(&scene) != FALSE) {
        GetWindowRect(window, &scene);
    }
    return scene;
}

} // namespace

Tour::Tour(HWND window, std::filesystem::path folder)
    : Window(window),
      Dialogs(window),
      Folder(std::move(folder)),
      Worker([this](const std::stop_token& stop) { Run(stop); }) {}

bool Tour::Succeeded() {
    Worker.join();
    return Complete;
}

void Tour::Run(const std::stop_token& stop) {
    try {
        Step("window");
        ShowToolbarFavorites();
        ShowSettings();
        ShowMenu(L'a', "menu-favorites");
        ShowMenu(L'd', "menu-document");
        ShowAttributes();
        SaveNew();
        Register();
        ApplyUserFavorite();
        Update();
        ShowEditor();
        ShowBasicList();
        Step("window-at-the-end");
        Complete = !stop.stop_requested();
        std::ofstream(Folder / "complete").close();
    } catch (const std::exception& error) {
        Fail(error.what());
    }
    PostMessageW(Window, WM_CLOSE, 0, 0);
}

/// Leaves the reason, and the screen as it is until its picture is taken.
void Tour::Fail(const std::string& reason) {
    std::ofstream(Folder / "reason") << reason << '\n';
    std::filesystem::rename(Folder / "reason", Folder / "failed");
    WaitUntilGone(Folder / "failed");
}

void Tour::ShowToolbarFavorites() {
    const HWND toolbar = GetDlgItem(Window, IDC_TOOLBAR);
    const auto count = static_cast<int>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
    for (int index = 0; index < count; ++index) {
        Choose(IDM_TOOLBAR_FIRST + index);
        Step("toolbar-" + std::to_string(index + 1));
    }
}

void Tour::ShowSettings() {
    Choose(IDM_FRESH);
    for (const int command : {IDM_BOTH_SIDES, IDM_STAPLE_TWO_LEFT, IDM_PUNCH_2, IDM_NUMBERS, IDM_COVER}) {
        Choose(command);
    }
    Step("bound-report");
    Choose(IDM_FRESH);
    for (const int command : {IDM_LANDSCAPE, IDM_PAGES_6, IDM_WATERMARK, IDM_GRAY, IDM_TABS}) {
        Choose(command);
    }
    Step("six-on-a-sheet");
}

/// Opens a menu by its access key, as the keyboard does, and closes it again.
void Tour::ShowMenu(wchar_t accessKey, const std::string& name) {
    const auto isOpen = [] { return IsWindowVisible(FindWindowW(MenuClass, nullptr)) != FALSE; };
    PostMessageW(Window, WM_SYSCOMMAND, SC_KEYMENU, accessKey);
    if (!TourDialogs::WaitFor(isOpen)) {
        throw std::runtime_error("the menu of step " + name + " did not open");
    }
    Step(name);
    SendMessageW(Window, WM_CANCELMODE, 0, 0);
    if (!TourDialogs::WaitFor([&] { return !isOpen(); })) {
        throw std::runtime_error("the menu of step " + name + " did not close");
    }
}

void Tour::ShowAttributes() {
    Choose(IDM_FRESH);
    const HWND dialog = Dialogs.Open("print attributes", [this] { Dialogs.Command(IDM_ATTRIBUTES); });
    TourDialogs::Choose(dialog, IDC_SIDES, 1);
    Step("attributes-document");
    TourDialogs::ShowTab(dialog, IDC_TABS, 1);
    TourDialogs::Choose(dialog, IDC_STAPLE, 3);
    TourDialogs::Choose(dialog, IDC_FRONT_COVER, 2);
    TourDialogs::Choose(dialog, IDC_FRONT_COLOR, 1);
    Step("attributes-finishing");
    for (int tab = 2; tab <= 7; ++tab) {
        TourDialogs::ShowTab(dialog, IDC_TABS, tab);
        Step("attributes-tab-" + std::to_string(tab + 1));
    }
    TourDialogs::ShowTab(dialog, IDC_TABS, 6);
    TourDialogs::Check(dialog, IDC_WATERMARK_ON);
    TourDialogs::Type(dialog, IDC_WATERMARK_TEXT, ResourceText(IDS_WATERMARK_TEXT));
    TourDialogs::Check(dialog, IDC_FOOTER_ON);
    TourDialogs::Type(dialog, IDC_FOOTER_RIGHT, ResourceText(IDS_DOCUMENT_TITLE));
    TourDialogs::ShowTab(dialog, IDC_TABS, 5);
    TourDialogs::Choose(dialog, IDC_PAGES, 2);
    TourDialogs::Type(dialog, IDC_GAP_X, L"99");
    const HWND refusal = Dialogs.OpenWith("number refused", dialog, IDOK);
    Step("attributes-refused");
    Dialogs.Close(refusal, [refusal] { PostMessageW(refusal, WM_COMMAND, IDOK, 0); });
    TourDialogs::Type(dialog, IDC_GAP_X, L"5.0");
    Dialogs.CloseWith(dialog, IDOK);
    Step("attributes-accepted");
}

void Tour::SaveNew() {
    const HWND dialog = Dialogs.Open("save as", [this] { Dialogs.Command(IDM_SAVE_AS); });
    TourDialogs::Type(dialog, create::Name, ResourceText(IDS_STANDARD_1 + 3));
    const HWND refusal = Dialogs.OpenWith("name refused", dialog, IDOK);
    Step("save-as-refused");
    Dialogs.Close(refusal, [refusal] { PostMessageW(refusal, WM_COMMAND, IDOK, 0); });
    TourDialogs::Type(dialog, create::Name, ResourceText(IDS_TOUR_NAME));
    Step("save-as");
    Dialogs.CloseWith(dialog, IDOK);
    ExpectFavorites(6, {IDS_TOUR_NAME});
}

void Tour::Register() {
    Choose(IDM_FRESH);
    Choose(IDM_BOOKLET);
    Choose(IDM_COVER);
    HWND dialog = Dialogs.Open("register", [this] { Dialogs.Command(IDM_REGISTER); });
    TourDialogs::Type(dialog, enter::Name, ResourceText(IDS_TOUR_NAME + 1));
    const HWND picker = Dialogs.OpenWith("icon picker", dialog, enter::ChangeIcon);
    TourDialogs::Click(picker, PickerIcons, 12);
    Step("icon-picker");
    Dialogs.CloseWith(picker, IDOK);
    Step("register");
    Dialogs.CloseWith(dialog, IDOK);

    dialog = Dialogs.Open("register again", [this] { Dialogs.Command(IDM_REGISTER); });
    TourDialogs::Type(dialog, enter::Name, ResourceText(IDS_TOUR_NAME + 1));
    const HWND question = Dialogs.OpenWith("overwrite question", dialog, IDOK);
    Step("register-overwrite");
    Dialogs.Close(question, [question] { PostMessageW(question, WM_COMMAND, IDNO, 0); });
    Dialogs.CloseWith(dialog, IDCANCEL);
    ExpectFavorites(7, {IDS_TOUR_NAME, IDS_TOUR_NAME + 1});
}

/// The last button of the toolbar is the favorite that was registered; its settings are fetched by its name.
void Tour::ApplyUserFavorite() {
    const HWND toolbar = GetDlgItem(Window, IDC_TOOLBAR);
    const auto count = static_cast<int>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0));
    Choose(IDM_FRESH);
    ExpectSetting(IDS_SETTING_BOOKLET, IDS_BOOKLET);
    Choose(IDM_TOOLBAR_FIRST + count - 1);
    ExpectSetting(IDS_SETTING_BOOKLET, IDS_BOOKLET + 1);
    ExpectSetting(IDS_SETTING_COVER, IDS_COVER + 2);
    Step("toolbar-registered");
}

/// Saves over the favorite that is applied, and applies it afresh from its file.
void Tour::Update() {
    Choose(IDM_NUMBERS);
    const HWND dialog = Dialogs.Open("update and rename", [this] { Dialogs.Command(IDM_OVERWRITE); });
    TourDialogs::Type(dialog, create::Name, ResourceText(IDS_TOUR_NAME + 2));
    Step("update-and-rename");
    Dialogs.CloseWith(dialog, IDOK);
    ExpectFavorites(7, {IDS_TOUR_NAME, IDS_TOUR_NAME + 2});
    Choose(IDM_FRESH);
    Choose(IDM_REAPPLY);
    ExpectSetting(IDS_SETTING_NUMBERS, IDS_NUMBER_PLACE + 1);
    Step("updated");
}

void Tour::ShowEditor() {
    const HWND dialog = Dialogs.Open("editor", [this] { Dialogs.Command(IDM_EDITOR); });
    CreateInEditor(dialog);
    CopyInEditor(dialog);
    Step("editor");
    ShowHelp(dialog, editor::Name, "help-note");
    RenameInEditor(dialog);
    ExportAndImport(dialog);
    Dialogs.CloseWith(dialog, IDOK);
    ExpectFavorites(
        10, {IDS_TOUR_NAME, IDS_TOUR_NAME + 3, IDS_TOUR_NAME + 4, IDS_TOUR_NAME + 5, IDS_TOUR_NAME + 6});
}

void Tour::CreateInEditor(HWND editor) {
    const HWND dialog = Dialogs.OpenWith("new favorite", editor, editor::New);
    TourDialogs::Type(dialog, create::Name, ResourceText(IDS_TOUR_NAME + 3));
    TourDialogs::Check(dialog, create::Face);
    Step("editor-new");
    const HWND attributes = Dialogs.OpenWith("attributes of the new favorite", dialog, IDOK);
    TourDialogs::Choose(attributes, IDC_PAGES, 3);
    Step("editor-new-attributes");
    Dialogs.CloseWith(attributes, IDOK);
}

void Tour::CopyInEditor(HWND editor) {
    TourDialogs::ClickFavorite(editor, editor::List, 5, 1, editor::Name);
    const HWND dialog = Dialogs.OpenWith("copy", editor, editor::Copy);
    TourDialogs::Type(dialog, create::Name, ResourceText(IDS_TOUR_NAME + 4));
    Step("editor-copy");
    Dialogs.CloseWith(dialog, IDOK);
    TourDialogs::ClickFavorite(editor, editor::List, 6, 1, editor::Name);
}

void Tour::RenameInEditor(HWND editor) {
    TourDialogs::Focus(editor, editor::Name);
    TourDialogs::Type(editor, editor::Name, ResourceText(IDS_TOUR_NAME));
    const HWND refusal = Dialogs.Open("rename refused", [editor] {
        PostMessageW(editor, WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(TourDialogs::Control(editor, editor::List)), TRUE);
    });
    Step("rename-refused");
    Dialogs.Close(refusal, [refusal] { PostMessageW(refusal, WM_COMMAND, IDOK, 0); });
    TourDialogs::Type(editor, editor::Name, ResourceText(IDS_TOUR_NAME + 5));
    TourDialogs::Focus(editor, editor::List);
    Step("renamed");
}

void Tour::ShowHelp(HWND dialog, int control, const std::string& name) {
    const auto find = [] { return FindWindowW(NoteClass, nullptr); };
    TourDialogs::AskHelp(dialog, control);
    if (!TourDialogs::WaitFor([&] { return IsWindowVisible(find()) != FALSE; })) {
        throw std::runtime_error("no help note is shown: " + name);
    }
    Step(name);
    PostMessageW(find(), WM_CLOSE, 0, 0);
    if (!TourDialogs::WaitFor([&] { return find() == nullptr; })) {
        throw std::runtime_error("the help note does not go: " + name);
    }
}

/// Into a file beside the favorites and back: the name is taken then, and the library asks for another.
void Tour::ExportAndImport(HWND editor) {
    const std::wstring file = (Folder / L"export.pmt").wstring();
    const HWND target = Dialogs.OpenWith("export", editor, editor::Export);
    TourDialogs::TypeFileName(target, file);
    Step("export");
    Dialogs.CloseWith(target, IDOK);
    const HWND source = Dialogs.OpenWith("import", editor, editor::Import);
    TourDialogs::TypeFileName(source, file);
    Step("import");
    const HWND clash = Dialogs.OpenWith("name of the import", source, IDOK);
    TourDialogs::Type(clash, create::Name, ResourceText(IDS_TOUR_NAME + 6));
    Step("import-name");
    Dialogs.CloseWith(clash, IDOK);
    Step("imported");
}

void Tour::ShowBasicList() {
    const HWND dialog = Dialogs.Open("basic list", [this] { Dialogs.Command(IDM_BASIC_LIST); });
    TourDialogs::ClickFavorite(dialog, basic::List, 6, 0, basic::Name);
    TourDialogs::Press(dialog, basic::Up);
    Step("basic-list");
    TourDialogs::Focus(dialog, basic::Name);
    TourDialogs::Type(dialog, basic::Name, ResourceText(IDS_TOUR_NAME + 4));
    const HWND refusal = Dialogs.Open("rename refused in the basic list", [dialog] {
        PostMessageW(dialog, WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(TourDialogs::Control(dialog, basic::List)), TRUE);
    });
    Step("basic-list-refused");
    Dialogs.Close(refusal, [refusal] { PostMessageW(refusal, WM_COMMAND, IDOK, 0); });
    TourDialogs::Type(dialog, basic::Name, ResourceText(IDS_TOUR_NAME + 2));
    Dialogs.CloseWith(dialog, IDOK);
    ExpectFavorites(
        10, {IDS_TOUR_NAME, IDS_TOUR_NAME + 2, IDS_TOUR_NAME + 3, IDS_TOUR_NAME + 4, IDS_TOUR_NAME + 6});
}

/// The host's list has so many favorites, those of these names among them.
void Tour::ExpectFavorites(unsigned count, const std::vector<unsigned>& names) const {
    const HWND list = GetDlgItem(Window, IDC_LIST);
    std::set<std::wstring> shown;
    const auto rows = static_cast<unsigned>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (unsigned row = 0; row < rows; ++row) {
        shown.insert(TourDialogs::CellText(list, static_cast<int>(row), 0));
    }
    const bool hasAll = std::all_of(names.begin(), names.end(),
                                    [&](unsigned name) { return shown.count(ResourceText(name)) == 1; });
    if (rows != count || !hasAll) {
        throw std::runtime_error("the list shows " + std::to_string(rows) + " favorites, not the " +
                                 std::to_string(count) + " that were expected");
    }
}

/// The document has that setting now.
void Tour::ExpectSetting(unsigned nameId, unsigned valueId) const {
    const HWND list = GetDlgItem(Window, IDC_SUMMARY);
    const auto rows = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < rows; ++row) {
        const bool isIt = TourDialogs::CellText(list, row, 0) == ResourceText(nameId);
        if (isIt && TourDialogs::CellText(list, row, 1) == ResourceText(valueId)) {
            return;
        }
    }
    throw std::runtime_error("a setting is not what it was expected to be: " + std::to_string(nameId));
}

/// Returns when the command has been carried out.
void Tour::Choose(int command) {
    SendMessageW(Window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void Tour::Step(const std::string& name) {
    const HWND active = Dialogs.Active();
    SetCursorPos(0, 0); // Away from whatever answers to the pointer.
    SendMessageW(active, WM_NULL, 0, 0);
    RedrawWindow(active, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%02d-", ++Count);
    const auto file = Folder / (number.data() + name + ".ready");
    const RECT scene = SceneOf(Window);
    std::ofstream(Folder / "scene") << scene.right - scene.left << 'x' << scene.bottom - scene.top << '+'
                                    << scene.left << '+' << scene.top;
    std::filesystem::rename(Folder / "scene", file); // Whole when it is there.
    if (!WaitUntilGone(file)) {
        throw std::runtime_error("nobody took the picture of step " + name);
    }
}

/// Looks again whenever a file changes in the tour's folder.
bool Tour::WaitUntilGone(const std::filesystem::path& file) const {
    const Notification changes(
        FindFirstChangeNotificationW(Folder.c_str(), FALSE, FILE_NOTIFY_CHANGE_FILE_NAME));
    const auto end = Clock::now() + LongestPicture;
    while (std::filesystem::exists(file)) {
        if (Clock::now() > end) {
            return false;
        }
        constexpr DWORD Pause = 50; // A change made outside of Wine may go unnoticed.
        if (WaitForSingleObject(changes.get(), Pause) == WAIT_OBJECT_0) {
            FindNextChangeNotification(changes.get());
        }
    }
    return true;
}

} // namespace pmx::host
