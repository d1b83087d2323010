#include "support/list_dialog_test.h"

#include <stdexcept>

namespace pmx {
namespace {

using test::DialogUser;
using test::EditorTestOn;
using test::FakeHost;
using test::HostCall;
using test::HostFailure;
using test::MemoryDesktop;
using test::MemoryUser;
using test::SameTable;
using test::TableOf;

struct LevelPart {
    std::int32_t Level;
    std::int32_t Kind;
    std::size_t Start; ///< of the part in the table
};

constexpr LevelPart LevelParts[] = {{1, 0, 0}, {2, 1, 82}, {3, 2, 126}, {4, 3, 150}, {5, 4, 2221}};

template <class AnyScreen>
class EditorAttributesOn : public EditorTestOn<AnyScreen> {
protected:
    static void Edit(DialogUser& user) { user.Press(control::EditorEdit); }
};

using EditorAttributes = test::OnEachDesktop<EditorAttributesOn>;
INSTANTIATE_TEST_SUITE_P(On, EditorAttributes, test::AllDesktops, test::NameOfDesktop);

using EditorAttributesInMemory = EditorAttributesOn<MemoryDesktop>;

class EditorAttributeLevels : public EditorAttributesInMemory,
                              public testing::WithParamInterface<LevelPart> {};

TEST_P(EditorAttributeLevels, DialogGetsTheKindAndThePartOfTheLevel) {
    const LevelPart part = GetParam();
    Given({{.Name = "A", .Level = part.Level}});
    const _LM_DOCUMENTLAYOUTTABLE before = TableOf(SeedOf(0));
    _LM_DOCUMENTLAYOUTTABLE after = before;
    after.Bytes[part.Start] ^= 0xFF;
    after.Bytes[sizeof after.Bytes - 1] ^= 0xFF;
    Attributes.User = [&](unsigned char* bytes) {
        const std::size_t length = sizeof before.Bytes - part.Start;
        EXPECT_TRUE(std::equal(bytes, bytes + length, before.Bytes + part.Start));
        bytes[0] ^= 0xFF;
        bytes[length - 1] ^= 0xFF;
        return PMX_PROPUI_OK;
    };
    RunAndCancel(Edit);
    ASSERT_EQ(Attributes.Calls.size(), 1U);
    EXPECT_EQ(Attributes.Calls[0].Kind, part.Kind);
    const test::HostContent content = FakeHost::ReadFavorite(Folder, "F0.pmt");
    EXPECT_TRUE(SameTable(content.Table, after));
    EXPECT_EQ(content.Level, part.Level);
    EXPECT_EQ(Host.SetTableFlag, 0);
}

INSTANTIATE_TEST_SUITE_P(AllLevels, EditorAttributeLevels, testing::ValuesIn(LevelParts));

TEST_F(EditorAttributesInMemory, DialogIsModalToTheEditorAndGetsTheFixedArguments) {
    Given({{.Name = "A"}});
    RunAndCancel([this](MemoryUser& user) {
        Edit(user);
        ASSERT_EQ(Attributes.Calls.size(), 1U);
        EXPECT_EQ(Attributes.Calls[0].Mode, 1);
        EXPECT_EQ(Attributes.Calls[0].Flag, 1);
        EXPECT_EQ(Attributes.Calls[0].Owner, reinterpret_cast<void*>(user.Handle()));
        EXPECT_EQ(Attributes.Calls[0].Reserved, 0);
    });
}

TEST_F(EditorAttributesInMemory, EventsWhileTheDialogIsOpenAreIgnored) {
    Given({{.Name = "A"}, {.Name = "B"}});
    RunAndCancel([this](MemoryUser& user) {
        Attributes.User = [&user](unsigned char*) {
            user.Events().OnEvent({.Control = control::EditorDelete, .Event = DialogEvent::Pressed});
            user.Events().OnOkAsked();
            user.Events().OnCancelAsked();
            return PMX_PROPUI_OK;
        };
        Edit(user);
        EXPECT_TRUE(user.IsOpen());
        EXPECT_EQ(user.RowCount(List), 2);
    });
}

TEST_P(EditorAttributes, MissingLibraryIsReportedWhenTheDialogIsNeeded) {
    Given({{.Name = "A"}});
    Desktop.Libraries.Present.clear();
    ExpectFailure(text::AttributeDialogMissing);
    RunAndCancel(Edit);
}

TEST_P(EditorAttributes, MissingEntryIsReportedWhenTheDialogIsNeeded) {
    Given({{.Name = "A"}});
    Desktop.Libraries.Present["PMXPropUI.dll"] = {};
    ExpectFailure(text::AttributeDialogMissing);
    RunAndCancel(Edit);
}

TEST_P(EditorAttributes, MissingLibraryKeepsNewFromMakingAnything) {
    Desktop.Libraries.Present.clear();
    ExpectFailure(text::AttributeDialogMissing);
    RunAndAccept([this](DialogUser& user) {
        AnswerName("N");
        user.Press(control::EditorNew);
        EXPECT_EQ(user.RowCount(List), 0);
    });
    EXPECT_FALSE(Folder.Exists("N.pmt"));
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_P(EditorAttributes, MissingLibraryDoesNotKeepCopyFromWorking) {
    Given({{.Name = "A"}});
    Desktop.Libraries.Present.clear();
    RunAndAccept([this](DialogUser& user) {
        AnswerName("N");
        user.Press(control::EditorCopy);
    });
    EXPECT_TRUE(Folder.Exists("N.pmt"));
}

TEST_P(EditorAttributes, FailingDialogIsReported) {
    for (const std::int32_t result : {0, -1, 3}) {
        Given({{.Name = "A"}});
        Attributes.User = [result](unsigned char* part) {
            part[0] = 0xEE;
            return result;
        };
        ExpectFailure(text::AttributeDialogFailed);
        RunAndCancel(Edit);
        EXPECT_TRUE(SameTable(FakeHost::ReadFavorite(Folder, "F0.pmt").Table, TableOf(SeedOf(0))));
    }
}

TEST_P(EditorAttributes, RaisingDialogIsReportedAndNotCalledAgainUntilTheEditorIsOpenedAnew) {
    Given({{.Name = "A"}});
    Attributes.User = [](unsigned char*) -> std::int32_t { throw std::runtime_error("of the host"); };
    ExpectFailure(text::AttributeDialogMissing);
    ExpectFailure(text::AttributeDialogMissing);
    RunAndCancel([this](DialogUser& user) {
        Edit(user);
        Edit(user);
        EXPECT_EQ(Attributes.Calls.size(), 1U);
    });
    Attributes.User = [](unsigned char*) { return PMX_PROPUI_OK; };
    RunAndCancel(Edit);
    EXPECT_EQ(Attributes.Calls.size(), 2U);
}

TEST_F(EditorAttributesInMemory, SameEditorLooksTheDialogUpAnewEachTimeItIsOpened) {
    Given({{.Name = "A"}});
    CPMXTemplUIMainDlg editor(Folder.Path().c_str(), test::ListFile, ".pmt", WindowHandle::None,
                              Desktop.Services, Store.Services);
    Attributes.User = [](unsigned char*) -> std::int32_t { throw std::runtime_error("of the host"); };
    ExpectFailure(text::AttributeDialogMissing);
    for (int times = 0; times < 2; ++times) {
        Desktop.Dialogs.OnOpened(dialog::Editor, [this](MemoryUser& user) {
            EXPECT_EQ(Desktop.Libraries.Loaded, 1);
            Edit(user);
            user.Escape();
        });
        EXPECT_EQ(editor.DoModal(), CodeCancel);
        Attributes.User = [](unsigned char*) { return PMX_PROPUI_OK; };
    }
    EXPECT_EQ(Attributes.Calls.size(), 2U);
    EXPECT_EQ(Desktop.Libraries.Asked.size(), 2U);
}

TEST_P(EditorAttributes, TableThatTheDocumentRefusesIsReportedAndTheFileStays) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        Given({{.Name = "A"}});
        Host.Plan.Heal();
        Host.Plan.FailFrom(HostCall::SetTable, 1, failure);
        ExpectFailure(text::AttributeTableFailed);
        RunAndCancel(Edit);
    }
    EXPECT_TRUE(Host.SavedPaths.empty());
}

TEST_P(EditorAttributes, TableThatCannotBeReadIsReportedWithoutTheDialog) {
    Given({{.Name = "A"}});
    Host.Plan.FailFrom(HostCall::GetTable, 1, HostFailure::Raise);
    ExpectFailure(text::AttributeTableFailed);
    RunAndCancel(Edit);
    EXPECT_TRUE(Attributes.Calls.empty());
}

} // namespace
} // namespace pmx
