#include "dialogs/base/dialog_services.h"

#include <gtest/gtest.h>

// The native build has no windows, and whoever asks for one is told so.

namespace pmx {
namespace {

TEST(NoWindows, NoMessageIsAnswered) {
    EXPECT_EQ(SystemMessageBoxes().Ask({}), MessageAnswer::None);
}

TEST(NoWindows, NoFileIsChosen) {
    EXPECT_EQ(SystemFileDialogs().AskOpen({}), std::nullopt);
    EXPECT_EQ(SystemFileDialogs().AskSave({}), std::nullopt);
}

TEST(NoWindows, NoPicturesAreMade) {
    EXPECT_EQ(SystemImageLists().FromBitmap(2001, 32, Color::White), nullptr);
}

TEST(NoWindows, DialogsAreGivenTheseServices) {
    const DialogServices& services = SystemDialogServices();
    EXPECT_EQ(&services.Dialogs, &SystemDialogRunner());
    EXPECT_EQ(&services.Messages, &SystemMessageBoxes());
    EXPECT_EQ(&services.FileChoice, &SystemFileDialogs());
    EXPECT_EQ(&services.Images, &SystemImageLists());
    EXPECT_EQ(&services.Help, &SystemHelpNotes());
}

} // namespace
} // namespace pmx
