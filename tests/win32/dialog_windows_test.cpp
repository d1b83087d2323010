#include "dialogs/base/icon_dlg.h"
#include "dialogs/choice/sel_level_dlg.h"
#include "platform/win32/handles.h"
#include "res/ids.h"
#include "win32/support/file_dialog_user.h"
#include "win32/support/real_desktop.h"

#include <gtest/gtest.h>

#include <commctrl.h>

// What only real windows have.

namespace pmx {
namespace {

using test::RealDesktop;
using test::RealUser;

TEST(IconPickerWindow, ShowsLargeImagesInOrderAndSelectsByThem) {
    RealDesktop screen;
    CPMXTemplUIIconDlg picker(30, 0, std::nullopt, WindowHandle::None, screen.Services);
    screen.Dialogs.OnOpened(dialog::IconPicker, [](RealUser& user) {
        const HWND list = user.Item(control::PickerIcons);
        user.OnDialogThread([list] {
            constexpr int Offered = 46;
            constexpr int Initial = 16;
            ASSERT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), Offered);
            for (int row = 0; row < Offered; ++row) {
                LVITEMW item{};
                item.mask = LVIF_IMAGE;
                item.iItem = row;
                EXPECT_TRUE(SendMessageW(list, LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
                EXPECT_EQ(item.iImage, row + 14);
            }
            const auto images =
                reinterpret_cast<HIMAGELIST>(SendMessageW(list, LVM_GETIMAGELIST, LVSIL_NORMAL, 0));
            int width = 0;
            int height = 0;
            EXPECT_TRUE(ImageList_GetIconSize(images, &width, &height));
            EXPECT_EQ(width, 32);
            EXPECT_EQ(height, 32);
            EXPECT_EQ(ImageList_GetImageCount(images), 60);
            EXPECT_EQ(SendMessageW(list, LVM_GETVIEW, 0, 0), LV_VIEW_ICON);
            EXPECT_EQ(SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0), 0);
            EXPECT_EQ(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED), Initial);
            EXPECT_EQ(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), Initial);
            EXPECT_TRUE(SendMessageW(list, LVM_ISITEMVISIBLE, Initial, 0));
        });
        user.Escape();
    });
    EXPECT_EQ(picker.DoModal(), CodeCancel);
}

TEST(CreateFavoriteWindow, KeepsTheLevelOfTheResultWhenNoneIsChecked) {
    RealDesktop screen;
    CPMXTemplUISelLevelDlg dialog(nullptr, WindowHandle::None, screen.Services);
    screen.Dialogs.OnOpened(dialog::CreateFavorite, [](RealUser& user) {
        user.Fill(control::CreateName, "A");
        user.OnDialogThread([&user] {
            for (int id = control::CreateLevelDocument; id <= control::CreateLevelPage; ++id) {
                CheckDlgButton(user.Window(), id, BST_UNCHECKED);
            }
        });
        user.Press(control::Ok);
    });
    EXPECT_EQ(dialog.DoModal(), CodeOk);
    EXPECT_EQ(dialog.GetLevel(), 0U);
}

/// Asks for a file of any kind when its up button is pressed.
class FileAskingDlg final : public CPmxDlg {
public:
    using CPmxDlg::CPmxDlg;

    std::optional<std::string> Chosen = "not asked";

private:
    void OnControlEvent(const ControlEvent& event) override {
        if (event.Event == DialogEvent::Pressed && event.Control == control::BasicUp) {
            FileRequest request;
            request.Owner = Window().Handle();
            const ModalScope scope(*this);
            Chosen = SystemFileDialogs().AskOpen(request);
        }
    }
};

TEST(FileDialog, ShowsNoMoreThanItIsAskedFor) {
    RealDesktop screen;
    FileAskingDlg dialog(dialog::BasicList, WindowHandle::None, screen.Services);
    screen.Dialogs.OnOpened(dialog::BasicList, [](RealUser& user) {
        user.Press(control::BasicUp);
        test::FileDialogUser files(user);
        EXPECT_EQ(files.FileName(), "");
        EXPECT_EQ(files.Filter(), "");
        EXPECT_FALSE(files.ShowsReadOnlyBox());
        files.Cancel();
        user.Escape();
    });
    EXPECT_EQ(dialog.DoModal(), CodeCancel);
    EXPECT_EQ(dialog.Chosen, std::nullopt);
}

/// Counts the requests for help that reach a window.
class HelpCounter {
public:
    explicit HelpCounter(HWND window) : Window(window) {
        SetWindowSubclass(Window, &HelpCounter::Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
    }
    ~HelpCounter() { RemoveWindowSubclass(Window, &HelpCounter::Procedure, 1); }
    HelpCounter(const HelpCounter&) = delete;
    HelpCounter& operator=(const HelpCounter&) = delete;

    int Count = 0;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR /*id*/, DWORD_PTR self) {
        reinterpret_cast<HelpCounter*>(self)->Count += message == WM_HELP ? 1 : 0;
        return DefSubclassProc(window, message, wParam, lParam);
    }

    HWND Window;
};

TEST(ContextHelpWindow, RequestsDoNotReachTheHostsWindow) {
    RealDesktop screen;
    const HelpCounter atHost(screen.Host());
    CPMXTemplUISelLevelDlg dialog(nullptr, win32::FromSystem(screen.Host()), screen.Services);
    screen.Dialogs.OnOpened(dialog::CreateFavorite, [](RealUser& user) {
        user.AskHelp();
        user.AskHelpOn(control::CreatePrompt);
        user.Escape();
    });
    EXPECT_EQ(dialog.DoModal(), CodeCancel);
    EXPECT_EQ(screen.Help.Requests.size(), 1U) << "the prompt has no note";
    EXPECT_EQ(atHost.Count, 0);
}

} // namespace
} // namespace pmx
