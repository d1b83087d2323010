#include "store/list_data.h"

#include "support/fake_host.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <memory>
#include <type_traits>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ListDataTest : public testing::Test {
protected:
    ~ListDataTest() override { EXPECT_EQ(Host.LiveDocuments, 0U) << "a document was not destroyed"; }

    FakeHost Host;
};

void FillFields(CPMXTemplUIListData& record) {
    record.SetStandard(1);
    record.SetName("Name");
    record.SetLevel(3);
    record.SetFileName("Name.pmt");
    record.SetNewFlag(1);
    record.SetDeleteFlag(1);
    record.SetImportFlag(1);
    record.SetToolbar(1);
    record.SetIconIndex(0x1'2345'6789);
}

TEST_F(ListDataTest, ANewRecordHasTheDefaults) {
    const CPMXTemplUIListData record;
    EXPECT_EQ(record.GetStandard(), 0U);
    EXPECT_EQ(record.GetName(), "");
    EXPECT_EQ(record.GetLevel(), 1);
    EXPECT_EQ(record.GetFileName(), "");
    EXPECT_EQ(record.GetNewFlag(), 0);
    EXPECT_EQ(record.GetDeleteFlag(), 0);
    EXPECT_EQ(record.GetImportFlag(), 0);
    EXPECT_EQ(record.GetToolbar(), 0);
    EXPECT_EQ(record.GetIconIndex(), 0);
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_FALSE(record.IsDocumentReady());
}

TEST_F(ListDataTest, EveryFieldKeepsWhatItIsGivenUnchecked) {
    CPMXTemplUIListData record;
    FillFields(record);
    EXPECT_EQ(record.GetStandard(), 1U);
    EXPECT_EQ(record.GetName(), "Name");
    EXPECT_EQ(record.GetLevel(), 3);
    EXPECT_EQ(record.GetFileName(), "Name.pmt");
    EXPECT_EQ(record.GetNewFlag(), 1);
    EXPECT_EQ(record.GetDeleteFlag(), 1);
    EXPECT_EQ(record.GetImportFlag(), 1);
    EXPECT_EQ(record.GetToolbar(), 1);
    EXPECT_EQ(record.GetIconIndex(), 0x1'2345'6789);
    record.SetStandard(7);
    EXPECT_EQ(record.GetStandard(), 7U);
    EXPECT_FALSE(record.IsStandard()) << "only the value 1 is a standard favorite";
}

TEST_F(ListDataTest, CopyingTakesOverEverythingButTheNewFlag) {
    CPMXTemplUIListData source;
    FillFields(source);
    CPMXTemplUIListData target;
    target = source;
    EXPECT_EQ(target.GetStandard(), 1U);
    EXPECT_EQ(target.GetName(), "Name");
    EXPECT_EQ(target.GetLevel(), 3);
    EXPECT_EQ(target.GetFileName(), "Name.pmt");
    EXPECT_EQ(target.GetNewFlag(), 0) << "the target's own";
    EXPECT_EQ(target.GetDeleteFlag(), 1);
    EXPECT_EQ(target.GetImportFlag(), 1);
    EXPECT_EQ(target.GetToolbar(), 1);
    EXPECT_EQ(target.GetIconIndex(), 0x1'2345'6789);
}

TEST_F(ListDataTest, CopyingLeavesATargetThatIsNewNew) {
    const CPMXTemplUIListData source;
    CPMXTemplUIListData target;
    target.SetNewFlag(1);
    target = source;
    EXPECT_EQ(target.GetNewFlag(), 1);
}

TEST_F(ListDataTest, CopyingARecordToItselfChangesNothing) {
    CPMXTemplUIListData record;
    FillFields(record);
    ASSERT_TRUE(record.EnsureDocument());
    const CPmxDocument* const document = record.GetDocument();
    const CPMXTemplUIListData& itself = record;
    record = itself;
    EXPECT_EQ(record.GetName(), "Name");
    EXPECT_EQ(record.GetDocument(), document);
    EXPECT_EQ(Host.Plan.Calls(HostCall::Assign), 0U);
}

TEST_F(ListDataTest, ATargetWithoutADocumentStaysWithoutOne) {
    CPMXTemplUIListData source;
    ASSERT_TRUE(source.EnsureDocument());
    CPMXTemplUIListData target;
    target = source;
    EXPECT_EQ(target.GetDocument(), nullptr);
}

TEST_F(ListDataTest, ATargetKeepsItsDocumentWhenTheSourceHasNone) {
    const CPMXTemplUIListData source;
    CPMXTemplUIListData target;
    ASSERT_TRUE(target.EnsureDocument());
    ASSERT_TRUE(target.GetDocument()->SetName("kept"));
    target = source;
    ASSERT_NE(target.GetDocument(), nullptr);
    EXPECT_EQ(target.GetDocument()->GetName(), "kept");
}

TEST_F(ListDataTest, CopyingGivesTheTargetsDocumentTheSourcesContent) {
    CPMXTemplUIListData source;
    ASSERT_TRUE(source.EnsureDocument());
    source.GetDocument()->SetTable(TableOf(9), false);
    source.GetDocument()->SetTemplateLevel(4);
    source.GetDocument()->SetName("content");
    CPMXTemplUIListData target;
    ASSERT_TRUE(target.EnsureDocument());
    const CPmxDocument* const document = target.GetDocument();
    target = source;
    ASSERT_EQ(target.GetDocument(), document);
    const HostContent content = FakeHost::ContentOf(*document);
    EXPECT_TRUE(SameTable(content.Table, TableOf(9)));
    EXPECT_EQ(content.Level, 4);
    EXPECT_EQ(content.Name, "content");
}

TEST_F(ListDataTest, ADocumentThatCannotTakeOverContentIsGivenUpToBeReadAgain) {
    CPMXTemplUIListData source;
    FillFields(source);
    ASSERT_TRUE(source.EnsureDocument());
    for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
        CPMXTemplUIListData target;
        ASSERT_TRUE(target.EnsureDocument());
        Host.Plan.FailAt(HostCall::Assign, Host.Plan.Calls(HostCall::Assign) + 1, failure);
        EXPECT_NO_THROW(target = source);
        EXPECT_EQ(target.GetDocument(), nullptr);
        EXPECT_EQ(target.GetName(), "Name");
    }
}

TEST_F(ListDataTest, EnsuringADocumentMakesOneOnce) {
    CPMXTemplUIListData record;
    EXPECT_TRUE(record.EnsureDocument());
    const CPmxDocument* const document = record.GetDocument();
    ASSERT_NE(document, nullptr);
    EXPECT_FALSE(record.IsDocumentReady());
    EXPECT_TRUE(record.EnsureDocument());
    EXPECT_EQ(record.GetDocument(), document);
    EXPECT_EQ(Host.Plan.Calls(HostCall::Create), 1U);
    EXPECT_EQ(Host.LiveDocuments, 1U);
}

TEST_F(ListDataTest, ADocumentThatCannotBeMadeLeavesTheRecordWithoutOne) {
    Host.Plan.FailAt(HostCall::Create, 1, HostFailure::Refuse);
    Host.Plan.FailAt(HostCall::Create, 2, HostFailure::Raise);
    CPMXTemplUIListData record;
    EXPECT_FALSE(record.EnsureDocument());
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_FALSE(record.EnsureDocument());
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_FALSE(record.IsDocumentReady());
    EXPECT_TRUE(record.EnsureDocument()) << "later attempts are free";
}

TEST_F(ListDataTest, ReleasingDestroysTheDocument) {
    CPMXTemplUIListData record;
    ASSERT_TRUE(record.EnsureDocument());
    EXPECT_TRUE(record.ReleaseDocument());
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_FALSE(record.IsDocumentReady());
    EXPECT_EQ(Host.LiveDocuments, 0U);
}

TEST_F(ListDataTest, ReleasingWithoutADocumentSucceedsAndCallsNobody) {
    CPMXTemplUIListData record;
    EXPECT_TRUE(record.ReleaseDocument());
    EXPECT_EQ(Host.Plan.Calls(), 0U);
}

TEST_F(ListDataTest, ADestructionThatRaisesIsAFalseResultAndTheDocumentIsGone) {
    CPMXTemplUIListData record;
    ASSERT_TRUE(record.EnsureDocument());
    Host.Plan.FailAt(HostCall::Destroy, 1, HostFailure::Raise);
    EXPECT_FALSE(record.ReleaseDocument());
    EXPECT_EQ(record.GetDocument(), nullptr);
    EXPECT_TRUE(record.EnsureDocument());
}

TEST_F(ListDataTest, DestroyingARecordDestroysItsDocumentWhateverTheHostRaises) {
    static_assert(std::has_virtual_destructor_v<CPMXTemplUIListData>);
    Host.Plan.FailAt(HostCall::Destroy, 2, HostFailure::Raise);
    for (int count = 0; count < 2; ++count) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        ASSERT_TRUE(record->EnsureDocument());
        EXPECT_NO_THROW(record.reset());
        EXPECT_EQ(Host.LiveDocuments, 0U);
    }
}

TEST_F(ListDataTest, TheFilePathIsFolderAndFileNameAsTheyAre) {
    CPMXTemplUIListData record;
    record.SetFileName("a.pmt");
    EXPECT_EQ(record.GetFilePath("C:\\Fav\\"), "C:\\Fav\\a.pmt");
    EXPECT_EQ(record.GetFilePath("C:\\Fav"), "C:\\Fava.pmt");
    EXPECT_EQ(record.GetFilePath(""), "a.pmt");
}

TEST_F(ListDataTest, ADocumentIsWrittenToAndReadFromItsFile) {
    const TempFolder folder;
    const std::string path = folder.Path(Sjis(u8"表ミ.pmt"));
    CPMXTemplUIListData writer;
    ASSERT_TRUE(writer.EnsureDocument());
    writer.GetDocument()->SetTable(TableOf(77), false);
    EXPECT_TRUE(writer.SaveDocument(path.c_str()));
    CPMXTemplUIListData reader;
    ASSERT_TRUE(reader.EnsureDocument());
    EXPECT_TRUE(reader.LoadDocument(path.c_str()));
    EXPECT_TRUE(SameTable(FakeHost::ContentOf(*reader.GetDocument()).Table, TableOf(77)));
    EXPECT_THAT(Host.SavedPaths, ElementsAre(path));
    EXPECT_THAT(Host.LoadedPaths, ElementsAre(path));
    EXPECT_TRUE(Host.LoadOptionsWereNull);
}

TEST_F(ListDataTest, ReadingAndWritingNeedADocumentAndAPath) {
    const TempFolder folder;
    const std::string path = folder.Path("a.pmt");
    CPMXTemplUIListData record;
    EXPECT_FALSE(record.SaveDocument(path.c_str()));
    EXPECT_FALSE(record.LoadDocument(path.c_str()));
    ASSERT_TRUE(record.EnsureDocument());
    for (const char* const missing : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_FALSE(record.SaveDocument(missing));
        EXPECT_FALSE(record.LoadDocument(missing));
    }
    EXPECT_THAT(Host.SavedPaths, IsEmpty());
    EXPECT_THAT(Host.LoadedPaths, IsEmpty());
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST_F(ListDataTest, WhateverTheHostRefusesOrRaisesIsAFalseResult) {
    const TempFolder folder;
    FakeHost::WriteFavorite(folder, "a.pmt", {});
    const std::string path = folder.Path("a.pmt");
    CPMXTemplUIListData record;
    ASSERT_TRUE(record.EnsureDocument());
    for (const HostCall call : {HostCall::Load, HostCall::Save}) {
        Host.Plan.FailAt(call, 1, HostFailure::Refuse);
        Host.Plan.FailAt(call, 2, HostFailure::Raise);
    }
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_FALSE(record.LoadDocument(path.c_str()));
        EXPECT_FALSE(record.SaveDocument(path.c_str()));
    }
    EXPECT_TRUE(record.LoadDocument(path.c_str()));
    EXPECT_TRUE(record.SaveDocument(path.c_str()));
}

TEST_F(ListDataTest, ADocumentIsReadyOnceItIsReadOrWrittenOrSaidToBe) {
    const TempFolder folder;
    const std::string path = folder.Path("a.pmt");
    CPMXTemplUIListData record;
    ASSERT_TRUE(record.EnsureDocument());
    EXPECT_FALSE(record.LoadDocument(path.c_str()));
    CPMXTemplUIListData copy;
    ASSERT_TRUE(copy.EnsureDocument());
    copy = record;
    EXPECT_FALSE(record.IsDocumentReady());
    EXPECT_FALSE(copy.IsDocumentReady());
    EXPECT_TRUE(record.SaveDocument(path.c_str()));
    EXPECT_TRUE(record.IsDocumentReady());
    copy = record;
    EXPECT_TRUE(copy.IsDocumentReady());
    record.ReleaseDocument();
    ASSERT_TRUE(record.EnsureDocument());
    EXPECT_FALSE(record.IsDocumentReady());
    EXPECT_TRUE(record.LoadDocument(path.c_str()));
    EXPECT_TRUE(record.IsDocumentReady());
    record.ReleaseDocument();
    ASSERT_TRUE(record.EnsureDocument());
    record.SetDocumentReady();
    EXPECT_TRUE(record.IsDocumentReady());
}

} // namespace
} // namespace pmx::test
