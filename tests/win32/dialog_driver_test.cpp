#include "win32/support/dialog_driver.h"

#include "dialogs/base/pmx_dlg.h"
#include "res/ids.h"
#include "support/sjis.h"
#include "win32/support/real_desktop.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

// What becomes of tests whose scripts go wrong: the failure is told, and the next dialog works as usual.

namespace pmx {
namespace {

using test::DialogUser;
using test::RealDesktop;

class PlainDlg final : public CPmxDlg {
public:
    explicit PlainDlg(const DialogServices& services)
        : CPmxDlg(dialog::BasicList, WindowHandle::None, services) {}

    using CPmxDlg::Fail;

private:
    void OnOK() override { Fail(text::OutOfMemory); }
};

class DialogDriverTest : public testing::Test {
protected:
    /// Runs a dialog with a script that goes wrong. What was reported.
    std::string FailuresOf(const std::function<void(DialogUser&)>& script) {
        testing::TestPartResultArray results;
        {
            const testing::ScopedFakeTestPartResultReporter reporter(
                testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results);
            Screen.Dialogs.OnOpened(dialog::BasicList, script);
            PlainDlg(Screen.Services).DoModal();
        }
        std::string failures;
        for (int index = 0; index < results.size(); ++index) {
            failures += results.GetTestPartResult(index).message();
        }
        return failures;
    }

    void ExpectThatTheNextDialogWorks() {
        Screen.Dialogs.OnOpened(dialog::BasicList, [](DialogUser& user) {
            user.Fill(control::BasicName, "A");
            EXPECT_EQ(user.Text(control::BasicName), "A");
            user.Press(control::Cancel);
        });
        EXPECT_EQ(PlainDlg(Screen.Services).DoModal(), CodeCancel);
    }

    static void ExpectTold(const std::string& failures, const char* expected) {
        EXPECT_NE(failures.find(expected), std::string::npos) << failures;
    }

    RealDesktop Screen;
};

TEST_F(DialogDriverTest, ADialogThatItsScriptLeavesOpenIsClosed) {
    ExpectTold(FailuresOf([](DialogUser&) {}), "the script left this dialog open");
    ExpectThatTheNextDialogWorks();
}

TEST_F(DialogDriverTest, AScriptThatThrowsIsGivenUp) {
    ExpectTold(FailuresOf([](DialogUser&) { throw std::runtime_error("no luck"); }), "no luck");
    ExpectThatTheNextDialogWorks();
}

TEST_F(DialogDriverTest, AMessageThatNobodyAnswersIsClosedWithItsDialog) {
    Screen.Messages.Expect(text::OutOfMemory, MessageIcon::Stop);
    Screen.Messages.Meanwhile([] { throw std::runtime_error("walked away"); });
    ExpectTold(FailuresOf([](DialogUser& user) { user.Enter(); }), "walked away");
    ExpectThatTheNextDialogWorks();
}

TEST_F(DialogDriverTest, AControlThatIsMissingIsTold) {
    ExpectTold(FailuresOf([](DialogUser& user) {
                   user.Press(control::CreateName);
                   user.Escape();
               }),
               "the dialog has no control");
    ExpectThatTheNextDialogWorks();
}

} // namespace
} // namespace pmx
