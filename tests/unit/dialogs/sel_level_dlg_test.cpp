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

template <class AnyScreen>
class SelLevelDlgTestOn : public testing::Test {
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
    AnyScreen Desktop;
    CPMXTemplUIListDataArray List{nullptr, nullptr, SystemStoreServices()};
    CPMXTemplUISelLevelDlg Dialog{&List, WindowHandle::None, Desktop.Services};
};

using SelLevelDlgTest = test::OnEachDesktop<SelLevelDlgTestOn>;
INSTANTIATE_TEST_SUITE_P(On, SelLevelDlgTest, test::AllDesktops, test::NameOfDesktop);

using MemorySelLevelDlgTest = SelLevelDlgTestOn<MemoryDesktop>;

struct ModeCase {
    CreateMode Mode;
    const char8_t* Title;
    const char8_t* Prompt;
    bool LevelsEnabled;
};

TEST_P(SelLevelDlgTest, TitlePromptAndLevelsFollowTheMode) {
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
        Dialog.Mode = expected.Mode;
        Run(Dialog, [&](DialogUser& user) {
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

TEST_P(SelLevelDlgTest, StartsInTheNameBoxAndStaysThereWhenANameIsRefused) {
    Desktop.Messages.Expect(1057, MessageIcon::Exclamation);
    Run(Dialog, [](DialogUser& user) {
        EXPECT_EQ(user.Focused(), control::CreateName);
        user.Type("a~b");
        user.Enter();
        EXPECT_EQ(user.Focused(), control::CreateName);
        EXPECT_EQ(user.Text(control::CreateName), "a~b");
        user.Escape();
    });
}

TEST_P(SelLevelDlgTest, ProposesTheNameWithoutBlanksAtItsEnds) {
    Dialog.SetName(" \t" + Sjis(u8"両面 印刷") + " \r\n");
    Run(Dialog, [](DialogUser& user) {
        EXPECT_EQ(user.Text(control::CreateName), Sjis(u8"両面 印刷"));
        user.Escape();
    });
}

TEST_P(SelLevelDlgTest, TakesAtMost32BytesAndNeverHalfACharacter) {
    Run(Dialog, [](DialogUser& user) {
        user.TabTo(control::CreateName);
        user.Type("a" + Sjis(u8"あいうえおかきくけこさしすせそ") + Sjis(u8"表") + "z");
        EXPECT_EQ(user.Text(control::CreateName), "a" + Sjis(u8"あいうえおかきくけこさしすせそ") + "z");
        user.Escape();
    });
}

TEST_P(SelLevelDlgTest, GivesBackTheChosenLevel) {
    for (std::size_t index = 0; index < LevelButtons.size(); ++index) {
        CPMXTemplUISelLevelDlg dialog(&List, WindowHandle::None, Desktop.Services);
        EXPECT_EQ(dialog.GetLevel(), 0U);
        EXPECT_EQ(Run(dialog,
                      [&](DialogUser& user) {
                          user.Fill(control::CreateName, "A");
                          user.Press(LevelButtons[index]);
                          user.Press(control::Ok);
                      }),
                  CodeOk);
        EXPECT_EQ(dialog.GetLevel(), index + 1);
    }
}

TEST_P(SelLevelDlgTest, ChecksTheProposedLevelAndGivesItBackUnchangedWhereItIsGiven) {
    for (const CreateMode mode : {CreateMode::SaveAs, CreateMode::Copy, CreateMode::Overwrite}) {
        for (std::int32_t level = 1; level <= 5; ++level) {
            CPMXTemplUISelLevelDlg dialog(&List, WindowHandle::None, Desktop.Services);
            dialog.Mode = mode;
            dialog.SetLevel(level);
            Run(dialog, [&](DialogUser& user) {
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

TEST_P(SelLevelDlgTest, KeepsTheLevelWhenAnotherValueIsProposed) {
    Dialog.SetLevel(3);
    for (const std::int32_t level : {0, 6, -1, 101}) {
        Dialog.SetLevel(level);
    }
    Run(Dialog, [](DialogUser& user) {
        EXPECT_TRUE(user.IsChecked(control::CreateLevelSheet));
        user.Escape();
    });
}

TEST_P(SelLevelDlgTest, GivesTheNameWithoutBlanksAtItsEnds) {
    EXPECT_EQ(Enter(CreateMode::New, "  A b ", false), CodeOk);
    EXPECT_EQ(Dialog.GetName(), "A b");
}

TEST_P(SelLevelDlgTest, RefusesAnEmptyNameAndOneOfBlanksOnly) {
    for (const std::string& name : {std::string(), std::string("   "), Sjis(u8"　 　")}) {
        Desktop.Messages.Expect(1018, MessageIcon::Exclamation);
        EXPECT_EQ(Enter(CreateMode::New, name, true), CodeCancel);
    }
}

TEST_P(SelLevelDlgTest, RefusesATildeBeforeItLooksForDuplicates) {
    AddFavorite("a~b");
    Desktop.Messages.Expect(1057, MessageIcon::Exclamation);
    Enter(CreateMode::New, "a~b", true);
}

TEST_P(SelLevelDlgTest, AcceptsATildeThatIsTheSecondByteOfACharacter) {
    EXPECT_EQ(Enter(CreateMode::New, Sjis(u8"ミリ×"), false), CodeOk);
    EXPECT_EQ(Dialog.GetName(), Sjis(u8"ミリ×"));
}

TEST_P(SelLevelDlgTest, RefusesANameInUseWithoutRegardToCaseInEveryMode) {
    AddFavorite("Duplex");
    for (const CreateMode mode : {CreateMode::New, CreateMode::SaveAs, CreateMode::Copy}) {
        Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
        Enter(mode, "dUPLEX", true);
    }
}

TEST_P(SelLevelDlgTest, TellsDoubleByteCharactersApartThatDifferInOneByte) {
    AddFavorite(Sjis(u8"ア"));
    EXPECT_EQ(Enter(CreateMode::New, Sjis(u8"ヂ"), false), CodeOk);
}

TEST_P(SelLevelDlgTest, AcceptsTheNameOfADeletedFavorite) {
    AddFavorite("Duplex").SetDeleteFlag(1);
    EXPECT_EQ(Enter(CreateMode::New, "Duplex", false), CodeOk);
}

TEST_P(SelLevelDlgTest, AcceptsAnyNameWithoutAList) {
    CPMXTemplUISelLevelDlg dialog(nullptr, WindowHandle::None, Desktop.Services);
    EXPECT_EQ(Run(dialog,
                  [](DialogUser& user) {
                      user.Fill(control::CreateName, "Duplex");
                      user.Press(control::Ok);
                  }),
              CodeOk);
}

TEST_P(SelLevelDlgTest, OverwriteModeAsksAndTakesYesOnly) {
    AddFavorite("Duplex");
    Desktop.Messages.ExpectQuestion(1014, MessageAnswer::No);
    EXPECT_EQ(Enter(CreateMode::Overwrite, "duplex", true), CodeCancel);
    Desktop.Messages.ExpectQuestion(1014, MessageAnswer::Yes);
    EXPECT_EQ(Enter(CreateMode::Overwrite, "duplex", false), CodeOk);
    EXPECT_EQ(Dialog.GetName(), "duplex");
}

TEST_P(SelLevelDlgTest, OverwriteModeAsksAgainForEveryFurtherMatch) {
    AddFavorite("Duplex");
    AddFavorite("DUPLEX");
    Desktop.Messages.ExpectQuestion(1014, MessageAnswer::Yes);
    Desktop.Messages.ExpectQuestion(1014, MessageAnswer::No);
    Enter(CreateMode::Overwrite, "duplex", true);
}

TEST_P(SelLevelDlgTest, ACopyOfAStandardFavoriteNeverOverwrites) {
    AddFavorite("Duplex");
    for (const CreateMode mode : AllModes) {
        Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
        Enter(mode, "Duplex", true, 1);
    }
    Desktop.Messages.Expect(1022, MessageIcon::Exclamation);
    Enter(CreateMode{4}, "Duplex", true, 1);
}

TEST_P(SelLevelDlgTest, AnUnknownModeRefusesANameInUseSilently) {
    AddFavorite("Duplex");
    Enter(CreateMode{4}, "Duplex", true);
    EXPECT_TRUE(Desktop.Messages.Shown.empty());
}

TEST_P(SelLevelDlgTest, MessagesBearTheTitleOfTheDialog) {
    Desktop.Messages.Expect(1018, MessageIcon::Exclamation);
    Enter(CreateMode::New, "", true);
    EXPECT_EQ(Desktop.Messages.Shown.front().Caption, Sjis(u8"お気に入りの作成"));
}

TEST_P(SelLevelDlgTest, CancelGivesAnEmptyName) {
    Dialog.SetName("A");
    EXPECT_EQ(Run(Dialog, [](DialogUser& user) { user.Press(control::Cancel); }), CodeCancel);
    EXPECT_EQ(Dialog.GetName(), "");
    Dialog.SetName("A");
    EXPECT_EQ(Run(Dialog, [](DialogUser& user) { user.Close(); }), CodeCancel);
    EXPECT_EQ(Dialog.GetName(), "");
}

TEST_P(SelLevelDlgTest, EnterAccepts) {
    EXPECT_EQ(Run(Dialog,
                  [](DialogUser& user) {
                      user.Fill(control::CreateName, "A");
                      user.Enter();
                  }),
              CodeOk);
    EXPECT_EQ(Dialog.GetName(), "A");
}

TEST_F(MemorySelLevelDlgTest, ADialogThatCannotBeShownIsNeitherOkNorCancel) {
    Desktop.Dialogs.OnOpenedFail(dialog::CreateFavorite);
    EXPECT_EQ(Dialog.DoModal(), CPmxDlg::Failed);
}

} // namespace
} // namespace pmx
