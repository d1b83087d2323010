#include "support/editor_test.h"

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

constexpr ControlId List = control::EditorList;

struct LevelPart {
    std::int32_t Level;
    std::int32_t Kind;
    std::size_t Start; ///< of the part in the table
};

constexpr LevelPart LevelParts[] = {{1, 0, 0}, {2, 1, 82}, {3, 2, 126}, {4, 3, 150}, {5, 4, 2221}};

template <class AnyDesktop>
class EditorAttributes : public EditorTestOn<AnyDesktop> {
protected:
    void ExpectFailure(ResourceId id) { this->Desktop.Messages.Expect(id, MessageIcon::Stop); }

    static void Edit(DialogUser& user) { user.Press(control::EditorEdit); }
};

TYPED_TEST_SUITE(EditorAttributes, test::AllDesktops);

using EditorAttributesInMemory = EditorAttributes<MemoryDesktop>;

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

TYPED_TEST(EditorAttributes, MissingLibraryIsReportedWhenTheDialogIsNeeded) {
    this->Given({{.Name = "A"}});
    this->Desktop.Libraries.Present.clear();
    this->ExpectFailure(text::AttributeDialogMissing);
    this->RunAndCancel(TestFixture::Edit);
}

TYPED_TEST(EditorAttributes, MissingEntryIsReportedWhenTheDialogIsNeeded) {
    this->Given({{.Name = "A"}});
    this->Desktop.Libraries.Present["PMXPropUI.dll"] = {};
    this->ExpectFailure(text::AttributeDialogMissing);
    this->RunAndCancel(TestFixture::Edit);
}

TYPED_TEST(EditorAttributes, MissingLibraryKeepsNewFromMakingAnything) {
    this->Desktop.Libraries.Present.clear();
    this->ExpectFailure(text::AttributeDialogMissing);
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("N");
        user.Press(control::EditorNew);
        EXPECT_EQ(user.RowCount(List), 0);
    });
    EXPECT_FALSE(this->Folder.Exists("N.pmt"));
    EXPECT_EQ(this->Host.LiveDocuments, 0U);
}

TYPED_TEST(EditorAttributes, MissingLibraryDoesNotKeepCopyFromWorking) {
    this->Given({{.Name = "A"}});
    this->Desktop.Libraries.Present.clear();
    this->RunAndAccept([this](DialogUser& user) {
        this->AnswerName("N");
        user.Press(control::EditorCopy);
    });
    EXPECT_TRUE(this->Folder.Exists("N.pmt"));
}

TYPED_TEST(EditorAttributes, FailingDialogIsReported) {
    for (const std::int32_t result : {0, -1, 3}) {
        this->Given({{.Name = "A"}});
        this->Attributes.User = [result](unsigned char* part) {
            part[0] = 0xEE;
            return result;
        };
        this->ExpectFailure(text::AttributeDialogFailed);
        this->RunAndCancel(TestFixture::Edit);
        EXPECT_TRUE(
            SameTable(FakeHost::ReadFavorite(this->Folder, "F0.pmt").Table, TableOf(TestFixture::SeedOf(0))));
    }
}

TYPED_TEST(EditorAttributes, RaisingDialogIsReportedAndNotCalledAgainUntilTheEditorIsOpenedAnew) {
    this->Given({{.Name = "A"}});
    this->Attributes.User = [](unsigned char*) -> std::int32_t { throw std::runtime_error("of the host"); };
    this->ExpectFailure(text::AttributeDialogMissing);
    this->ExpectFailure(text::AttributeDialogMissing);
    this->RunAndCancel([this](DialogUser& user) {
        TestFixture::Edit(user);
        TestFixture::Edit(user);
        EXPECT_EQ(this->Attributes.Calls.size(), 1U);
    });
    this->Attributes.User = [](unsigned char*) { return PMX_PROPUI_OK; };
    this->RunAndCancel(TestFixture::Edit);
    EXPECT_EQ(this->Attributes.Calls.size(), 2U);
}

TEST_F(EditorAttributesInMemory, SameEditorLooksTheDialogUpAnewEachTimeItIsOpened) {
    Given({{.Name = "A"}});
    CPMXTemplUIMainDlg editor(Folder.Path(), test::ListFile, ".pmt", WindowHandle::None, Desktop.Services,
                              Store.Services);
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

TYPED_TEST(EditorAttributes, TableThatTheDocumentRefusesIsReportedAndTheFileStays) {
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        this->Given({{.Name = "A"}});
        this->Host.Plan.Heal();
        this->Host.Plan.FailFrom(HostCall::SetTable, 1, failure);
        this->ExpectFailure(text::AttributeTableFailed);
        this->RunAndCancel(TestFixture::Edit);
    }
    EXPECT_TRUE(this->Host.SavedPaths.empty());
}

TYPED_TEST(EditorAttributes, TableThatCannotBeReadIsReportedWithoutTheDialog) {
    this->Given({{.Name = "A"}});
    this->Host.Plan.FailFrom(HostCall::GetTable, 1, HostFailure::Raise);
    this->ExpectFailure(text::AttributeTableFailed);
    this->RunAndCancel(TestFixture::Edit);
    EXPECT_TRUE(this->Attributes.Calls.empty());
}

} // namespace
} // namespace pmx
