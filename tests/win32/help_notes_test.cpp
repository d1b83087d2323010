#include "platform/win32/help_notes.h"

#include "dialogs/base/pmx_dlg.h"
#include "platform/win32/handles.h"
#include "programs/help_engine.h"
#include "res/ids.h"
#include "support/sjis.h"
#include "support/temp_folder.h"
#include "win32/support/real_desktop.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include <windows.h>

// Context help with an engine that the system loads: a library of the tests, which keeps what it is asked.

namespace pmx {
namespace {

using test::HelpEngineCall;
using test::Sjis;

constexpr const char* EngineKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr const char* OwnClasses = "Software\\PmxTests\\Classes";

/// A library that was built for the tests.
std::filesystem::path BuiltLibrary(const wchar_t* name) {
    std::wstring program(MAX_PATH, L'\0');
    program.resize(GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
    return std::filesystem::path(program).replace_filename(name);
}

/// A classes root of the test's own in the place of the system's, empty at first.
class OwnClassesRoot {
public:
    OwnClassesRoot() {
        HKEY root = nullptr;
        EXPECT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, OwnClasses, &root), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, root), ERROR_SUCCESS);
        RegCloseKey(root);
    }
    ~OwnClassesRoot() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegDeleteTreeA(HKEY_CURRENT_USER, OwnClasses);
    }
    OwnClassesRoot(const OwnClassesRoot&) = delete;
    OwnClassesRoot& operator=(const OwnClassesRoot&) = delete;

    static void SetEngine(const std::string& path, DWORD type = REG_SZ) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyA(HKEY_CLASSES_ROOT, EngineKey, &key), ERROR_SUCCESS);
        EXPECT_EQ(RegSetValueExA(key, nullptr, 0, type, reinterpret_cast<const BYTE*>(path.c_str()),
                                 static_cast<DWORD>(path.size() + 1)),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }
};

class HelpNotesTest : public testing::Test {
protected:
    HelpNotesTest() { SetDllDirectoryW(test::DiskPath(Folder.Path()).c_str()); }
    ~HelpNotesTest() override { SetDllDirectoryW(nullptr); }

    /// Puts the engine of the tests into the test's folder, where libraries are looked for by name.
    std::string PutEngine(const std::string& name,
                          const wchar_t* library = L"pmx_test_help_engine.dll") const {
        std::filesystem::copy_file(BuiltLibrary(library), test::DiskPath(Folder.Path(name)));
        return Folder.Path(name);
    }

    void ShowNote() { Help.ShowNote(WindowHandle{5}, "text", {}); }

    static bool IsLoaded(const std::string& name) { return GetModuleHandleA(name.c_str()) != nullptr; }

    /// What the engine was asked. It must be loaded.
    static HelpEngineCall LastCall(const std::string& name) {
        using Query = const HelpEngineCall* (*)();
        const HMODULE module = GetModuleHandleA(name.c_str());
        const auto query =
            reinterpret_cast<Query>(reinterpret_cast<void*>(GetProcAddress(module, "LastHelpCall")));
        EXPECT_NE(query, nullptr) << name << " is not the engine of the tests";
        return query ? *query() : HelpEngineCall{};
    }

    test::TempFolder Folder;
    OwnClassesRoot Classes;
    win32::HtmlHelpNotes Help;
};

TEST_F(HelpNotesTest, IsLoadedFromThePathInTheRegistry) {
    const std::string path = PutEngine(Sjis(u8"表エンジン.dll"));
    OwnClassesRoot::SetEngine(path);
    ShowNote();
    ShowNote();
    const HelpEngineCall call = LastCall(path);
    EXPECT_EQ(call.Count, 2U);
    EXPECT_EQ(call.Caller, reinterpret_cast<void*>(5));
    EXPECT_EQ(call.File, nullptr);
    EXPECT_EQ(call.Command, 14U);
    EXPECT_STREQ(call.Text, "text");
}

TEST_F(HelpNotesTest, IsLoadedByNameWhenTheRegistryNamesNone) {
    PutEngine("hhctrl.ocx");
    ShowNote();
    EXPECT_EQ(LastCall("hhctrl.ocx").Count, 1U);
}

TEST_F(HelpNotesTest, IsLoadedByNameWhenTheOneInTheRegistryIsMissing) {
    PutEngine("hhctrl.ocx");
    OwnClassesRoot::SetEngine(Folder.Path("missing.dll"));
    ShowNote();
    EXPECT_EQ(LastCall("hhctrl.ocx").Count, 1U);
}

TEST_F(HelpNotesTest, IsLoadedByNameWhenTheValueInTheRegistryIsLongerThan260Bytes) {
    PutEngine("hhctrl.ocx");
    OwnClassesRoot::SetEngine(Folder.Path() + std::string(260, 'x'));
    ShowNote();
    EXPECT_EQ(LastCall("hhctrl.ocx").Count, 1U);
}

TEST_F(HelpNotesTest, IsNotLookedForAgainWhenItCannotBeLoaded) {
    Folder.Write("hhctrl.ocx", "no library");
    ShowNote();
    Folder.Remove("hhctrl.ocx");
    PutEngine("hhctrl.ocx");
    OwnClassesRoot::SetEngine(Folder.Path("hhctrl.ocx"));
    ShowNote();
    EXPECT_FALSE(IsLoaded("hhctrl.ocx"));
}

TEST_F(HelpNotesTest, IsNotAskedForTheEntryAgainWhenItHasNone) {
    OwnClassesRoot::SetEngine(PutEngine("other.dll", L"PmxUser.dll"));
    ShowNote();
    PutEngine("hhctrl.ocx");
    OwnClassesRoot::SetEngine(Folder.Path("hhctrl.ocx"));
    ShowNote();
    EXPECT_FALSE(IsLoaded("hhctrl.ocx"));
}

class DialogWithNotes final : public CPmxDlg {
public:
    explicit DialogWithNotes(const DialogServices& services)
        : CPmxDlg(dialog::BasicList, WindowHandle::None, services) {}
};

/// The number at a place of the record.
std::int32_t LongAt(const HelpEngineCall& call, std::size_t offset) {
    std::int32_t value = 0;
    std::memcpy(&value, call.Record + offset, sizeof value);
    return value;
}

TEST_F(HelpNotesTest, F1InAWindowShowsTheNoteOfTheFocusedControlAtTheMouse) {
    const std::string path = PutEngine("engine.dll");
    OwnClassesRoot::SetEngine(path);
    test::RealDesktop screen;
    const DialogServices services{.Strings = screen.Services.Strings,
                                  .Dialogs = screen.Services.Dialogs,
                                  .Messages = screen.Services.Messages,
                                  .FileChoice = screen.Services.FileChoice,
                                  .Images = screen.Services.Images,
                                  .Help = Help,
                                  .Libraries = screen.Services.Libraries};
    HWND cancelButton = nullptr;
    POINT mouse{};
    screen.Dialogs.OnOpened(dialog::BasicList, [&](test::RealUser& user) {
        cancelButton = user.Item(control::Cancel);
        user.TabTo(control::Cancel);
        GetCursorPos(&mouse);
        user.AskHelp();
        user.AskHelpOn(control::Separator);
        user.Escape();
    });
    DialogWithNotes(services).DoModal();
    const HelpEngineCall call = LastCall(path);
    EXPECT_EQ(call.Count, 1U) << "the separator has no note";
    EXPECT_EQ(call.Caller, cancelButton);
    EXPECT_EQ(call.File, nullptr);
    EXPECT_EQ(call.Command, 14U);
    EXPECT_EQ(call.Text, Sjis(u8"【機能】\n・処理を中断し画面を閉じます。"));
    constexpr std::pair<std::size_t, std::int32_t> Expected[] = {{0, 72},  {16, 0}, {40, -1}, {44, 0xF0FFFF},
                                                                 {48, 10}, {52, 5}, {56, 5},  {60, 10}};
    for (const auto& [offset, value] : Expected) {
        EXPECT_EQ(LongAt(call, offset), value) << offset;
    }
    EXPECT_EQ(LongAt(call, 32), mouse.x);
    EXPECT_EQ(LongAt(call, 36), mouse.y);
}

} // namespace
} // namespace pmx
