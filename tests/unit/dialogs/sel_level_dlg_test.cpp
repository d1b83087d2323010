#include "dialogs/choice/sel_level_dlg.h"

#include "res/ids.h"
#include "support/desktops.h"
#include "support/fake_host.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

namespace pmx {
namespace {

using test::DialogUser;
using test::MemoryDesktop;
using test::MemoryUser;
using test::Sjis;

constexpr std::array<ControlId, 5> LevelButtons = {control::CreateLevelDocument, control::CreateLevelSection,
                                                   control::CreateLevelSheet, control::CreateLevelFace,
                                                   control::CreateLevelPage};
constexpr std::array AllModes = {CreateMode::New, CreateMode::SaveAs, CreateMode::Copy,
                                 CreateMode::Overwrite};

template <class Screen>
class SelLevelDlgTest : public testing::Test {
protected:
    CPMXTemplUIListData& AddFavorite(const std::string& name, std::uint32_t standard = 0) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetName(name);
        record->SetStandard(standard);
        return List.At(List.Add(std::move(record)));
    }

    int Run(CPMXTemplUISelLevelDlg& dialog, const std::function<void(DialogUser&)>& script) {
        Desktop.Dialogs.OnOpened(dialog::CreateFavorite, script);
        return dialog.DoModal();
    }

    /// Enters a name in that mode and presses OK; with `isRefused` the dialog must still be open, with the
    /// name in place and the focus where it was.
    int Enter(CreateMode mode, const std::string& name, bool isRefused, std::uint32_t sourceIsStandard = 0) {
        Dialog.Mode = mode;
        Dialog.SetSourceIsStandard(sourceIsStandard);
        return Run(Dialog, [&](DialogUser& user) {
            user.Fill(control::CreateName, name);
            user.Press(control::Ok);
            EXPECT_EQ(user.IsOpen(), isRefused);
            if (isRefused) {
                EXPECT_EQ(user.Text(control::CreateName), name);
                EXPECT_EQ(user.Focused(), control::Ok);
                user.Escape();
            }
        });
    }

    test::FakeHost Host;
    Screen Desktop;
    CPMXTemplUIListDataArray List{nullptr, nullptr, SystemStoreServices()};
    CPMXTemplUISelLevelDlg Dialog{&List, WindowHandle::None, Desktop.Services};
};

TYPED_TEST_SUITE(SelLevelDlgTest, test::AllDesktops);

using MemorySelLevelDlgTest = SelLevelDlgTest<MemoryDesktop>;

struct ModeCase {
    CreateMode Mode;
    const char8_t* Title;
    const char8_t* Prompt;
    bool LevelsEnabled;
};

TYPED_TEST(SelLevelDlgTest, TitlePromptAndLevelsFollowTheMode) {
    const std::array cases = {
        ModeCase{CreateMode::New, u8"お気に入りの作成",
                 u8"作成するお気に入り名と属性情報を設定してください。", true},
        ModeCase{CreateMode::SaveAs, u8"お気に入りの作成", u8"追加するお気に入り名を設定してください。",
                 false},
        ModeCase{CreateMode::Copy, u8"お気に入りの作成", u8"追加するお気に入り名を設定してください。", false},
        ModeCase{CreateMode::Overwrite, u8"お気に入りの作成", u8"追加するお気に入り名を設定してください。",
                 false},
        ModeCase{CreateMode{4}, u8"", u8"", true},
    };
    for (const ModeCase& expected : cases) {
        this->Dialog.Mode = expected.Mode;
        this->Run(this->Dialog, [&](DialogUser& user) {
            EXPECT_EQ(user.Title(), Sjis(expected.Title));
            EXPECT_EQ(user.Text(control::CreatePrompt), Sjis(expected.Prompt));
            EXPECT_EQ(user.IsEnabled(control::CreateLevelLabel), expected.LevelsEnabled);
            EXPECT_EQ(user.IsEnabled(control::CreateLevelLine), expected.LevelsEnabled);
            for (const ControlId button : LevelButtons) {
                EXPECT_EQ(user.IsEnabled(button), expected.LevelsEnabled) << button;
            }
            user.Escape();
        });
    }
}

TEST_F(MemorySelLevelDlgTest, IsModalToTheGivenParent) {
    CPMXTemplUISelLevelDlg dialog(&List, WindowHandle{7}, Desktop.Services);
    Desktop.Dialogs.OnOpened(dialog::CreateFavorite, [](MemoryUser& user) {
        EXPECT_EQ(user.Parent(), WindowHandle{7});
        user.Escape();
    });
    EXPECT_EQ(dialog.DoModal(), CodeCancel);
}

TYPED_TEST(SelLevelDlgTest, StartsInTheNameBoxAndStaysThereWhenANameIsRefused) {
    this->Desktop.Messages.Expect(1057, MessageIcon::Exclamation);
    this->Run(this->Dialog, [](DialogUser& user) {
        EXPECT_EQ(user.Focused(), control::CreateName);
        user.Type("a~b");
        user.Enter();
        EXPECT_EQ(user.Focused(), control::CreateName);
        EXPECT_EQ(user.Text(control::CreateName), "a~b");
        user.Escape();
    });
}

TYPED_TEST(SelLevelDlgTest, ProposesTheNameWithoutBlanksAtItsEnds) {
    this->Dialog.SetName(" \t" + Sjis(u8"両面 印刷") + " \r\n");
    this->Run(this->Dialog, [](DialogUser& user) {
        EXPECT_EQ(user.Text(control::CreateName), Sjis(u8"両面 印刷"));
        user.Escape();
    });
}

TYPED_TEST(SelLevelDlgTest, TakesAtMost32BytesAndNeverHalfACharacter) {
    this->Run(this->Dialog, [](DialogUser& user) {
        user.TabTo(control::CreateName);
        user.Type("a" + Sjis(u8"あいうえおかきくけこさしすせそ") + Sjis(u8"表") + "z");
        EXPECT_EQ(user.Text(control::CreateName), "a" + Sjis(u8"あいうえおかきくけこさしすせそ") + "z");
        user.Escape();
    });
}

TYPED_TEST(SelLevelDlgTest, GivesBackTheChosenLevel) {
    for (std::size_t index = 0; index < LevelButtons.size(); ++index) {
        CPMXTemplUISelLevelDlg dialog(&this->List, WindowHandle::None, this->Desktop.Services);
        EXPECT_EQ(dialog.GetLevel(), 0U);
        EXPECT_EQ(this->Run(dialog,
                            [&](DialogUser& user) {
                                user.Fill(control::CreateName, "A");
                                user.Press(LevelButtons[index]);
                                user.Press(control::Ok);
                            }),
                  CodeOk);
        EXPECT_EQ(dialog.GetLevel(), index + 1);
    }
}

TYPED_TEST(SelLevelDlgTest, ChecksTheProposedLevelAndGivesItBackUnchangedWhereItIsGiven) {
    for (const CreateMode mode : {CreateMode::SaveAs, CreateMode::Copy, CreateMode::Overwrite}) {
        for (std::int32_t level = 1; level <= 5; ++level) {
            CPMXTemplUISelLevelDlg dialog(&this->List, WindowHandle::None, this->Desktop.Services);
            dialog.Mode = mode;
            dialog.SetLevel(level);
            this->Run(dialog, [&](DialogUser& user) {
                for (std::size_t index = 0; index < LevelButtons.size(); ++index) {
                    EXPECT_EQ(user.IsChecked(LevelButtons[index]),
                              static_cast<std::int32_t>(index) + 1 == level);
                }
                user.Press(LevelButtons[0]); // disabled: has no effect
                user.Fill(control::CreateName, "A");
                user.Press(control::Ok);
            });
            EXPECT_EQ(dialog.GetLevel(), static_cast<std::uint32_t>(level));
        }
    }
}

TYPED_TEST(SelLevelDlgTest, KeepsTheLevelWhenAnotherValueIsProposed) {
    this->Dialog.SetLevel(3);
    for (const std::int32_t level : {0, 6, -1, 101}) {
        this->Dialog.SetLevel(level);
    }
    this->Run(this->Dialog, [](DialogUser& user) {
        EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
        user.Escape();
    });
}

TYPED_TEST(SelLevelDlgTest, GivesTheNameWithoutBlanksAtItsEnds) {
    EXPECT_EQ(this->Enter(CreateMode::New, "  A b ", false), CodeOk);
    EXPECT_EQ(this->Dialog.GetName(), "A b");
}

TYPED_TEST(SelLevelDlgTest, RefusesAnEmptyNameAndOneOfBlanksOnly) {
    for (const std::string& name : {std::string(), std::string("   ")}) {
        this->Desktop.Messages.Expect(1018, MessageIcon::Exclamation);
        EXPECT_EQ(this->Enter(CreateMode::New, name, true), CodeCancel);
    }
}

TYPED_TEST(SelLevelDlgTest, RefusesATildeBeforeItLooksForDuplicates) {
    this->AddFavorite("a~b");
    this->Desktop.Messages.Expect(1057, MessageIcon::Exclamation);
    this->Enter(CreateMode::New, "a~b", true);
}

TYPED_TEST(SelLevelDlgTest, AcceptsATildeThatIsTheSecondByteOfACharacter) {
    EXPECT_EQ(this->Enter(CreateMode::New, Sjis(u8"ミリ×"), false), CodeOk);
    EXPECT_EQ(this->Dialog.GetName(), Sjis(u8"ミリ×"));
}

TYPED_TEST(SelLevelDlgTest, RefusesANameInUseWithoutRegardToCaseInEveryMode) {
    this->AddFavorite("Duplex");
    for (const CreateMode mode : {CreateMode::New, CreateMode::SaveAs, CreateMode::Copy}) {
        this->Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
        this->Enter(mode, "dUPLEX", true);
    }
}

TYPED_TEST(SelLevelDlgTest, TellsDoubleByteCharactersApartThatDifferInOneByte) {
    this->AddFavorite(Sjis(u8"ア"));
    EXPECT_EQ(this->Enter(CreateMode::New, Sjis(u8"ヂ"), false), CodeOk);
}

TYPED_TEST(SelLevelDlgTest, AcceptsTheNameOfADeletedFavorite) {
    this->AddFavorite("Duplex").SetDeleteFlag(1);
    EXPECT_EQ(this->Enter(CreateMode::New, "Duplex", false), CodeOk);
}

TYPED_TEST(SelLevelDlgTest, AcceptsAnyNameWithoutAList) {
    CPMXTemplUISelLevelDlg dialog(nullptr, WindowHandle::None, this->Desktop.Services);
    EXPECT_EQ(this->Run(dialog,
                        [](DialogUser& user) {
                            user.Fill(control::CreateName, "Duplex");
                            user.Press(control::Ok);
                        }),
              CodeOk);
}

TYPED_TEST(SelLevelDlgTest, OverwriteModeAsksAndTakesYesOnly) {
    this->AddFavorite("Duplex");
    this->Desktop.Messages.ExpectQuestion(1014, MessageAnswer::No);
    EXPECT_EQ(this->Enter(CreateMode::Overwrite, "duplex", true), CodeCancel);
    this->Desktop.Messages.ExpectQuestion(1014, MessageAnswer::Yes);
    EXPECT_EQ(this->Enter(CreateMode::Overwrite, "duplex", false), CodeOk);
    EXPECT_EQ(this->Dialog.GetName(), "duplex");
}

TYPED_TEST(SelLevelDlgTest, OverwriteModeAsksAgainForEveryFurtherMatch) {
    this->AddFavorite("Duplex");
    this->AddFavorite("DUPLEX");
    this->Desktop.Messages.ExpectQuestion(1014, MessageAnswer::Yes);
    this->Desktop.Messages.ExpectQuestion(1014, MessageAnswer::No);
    this->Enter(CreateMode::Overwrite, "duplex", true);
}

TYPED_TEST(SelLevelDlgTest, ACopyOfAStandardFavoriteNeverOverwrites) {
    this->AddFavorite("Duplex");
    for (const CreateMode mode : AllModes) {
        this->Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
        this->Enter(mode, "Duplex", true, 1);
    }
    this->Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
    this->Enter(CreateMode{4}, "Duplex", true, 1);
}

TYPED_TEST(SelLevelDlgTest, AnUnknownModeRefusesANameInUseSilently) {
    this->AddFavorite("Duplex");
    this->Enter(CreateMode{4}, "Duplex", true);
    EXPECT_TRUE(this->Desktop.Messages.Shown.empty());
}

TYPED_TEST(SelLevelDlgTest, MessagesBearTheTitleOfTheDialog) {
    this->Desktop.Messages.Expect(1018, MessageIcon::Exclamation);
    this->Enter(CreateMode::New, "", true);
    EXPECT_EQ(this->Desktop.Messages.Shown.front().Caption, Sjis(u8"お気に入りの作成"));
}

TYPED_TEST(SelLevelDlgTest, CancelGivesAnEmptyName) {
    this->Dialog.SetName("A");
    EXPECT_EQ(this->Run(this->Dialog, [](DialogUser& user) { user.Press(control::Cancel); }), CodeCancel);
    EXPECT_EQ(this->Dialog.GetName(), "");
    this->Dialog.SetName("A");
    EXPECT_EQ(this->Run(this->Dialog, [](DialogUser& user) { user.Close(); }), CodeCancel);
    EXPECT_EQ(this->Dialog.GetName(), "");
}

TYPED_TEST(SelLevelDlgTest, EnterAccepts) {
    EXPECT_EQ(this->Run(this->Dialog,
                        [](DialogUser& user) {
                            user.Fill(control::CreateName, "A");
                            user.Enter();
                        }),
              CodeOk);
    EXPECT_EQ(this->Dialog.GetName(), "A");
}

TEST_F(MemorySelLevelDlgTest, ADialogThatCannotBeShownIsNeitherOkNorCancel) {
    Desktop.Dialogs.OnOpenedFail(dialog::CreateFavorite);
    EXPECT_EQ(Dialog.DoModal(), CPmxDlg::Failed);
}

} // namespace
} // namespace pmx
