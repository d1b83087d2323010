// The document model as the favorites library uses it: through the class over the functions of PmxDocMgr.h.
#include "docmgr/favorite_file.h"
#include "host/CPmxDocument.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

namespace {

using pmx::sample::AttributeTable;
using pmx::test::Sjis;
using pmx::test::TempFolder;

AttributeTable TableOf(const CPmxDocument& document) {
    _LM_DOCUMENTLAYOUTTABLE block;
    document.GetTable(block);
    AttributeTable table;
    std::memcpy(static_cast<void*>(&table), block.Bytes, sizeof block.Bytes);
    return table;
}

_LM_DOCUMENTLAYOUTTABLE Pattern(unsigned char seed) {
    _LM_DOCUMENTLAYOUTTABLE block;
    for (auto& byte : block.Bytes) {
        byte = seed;
        seed = static_cast<unsigned char>(seed * 5 + 1);
    }
    return block;
}

bool Holds(const CPmxDocument& document, const _LM_DOCUMENTLAYOUTTABLE& expected) {
    _LM_DOCUMENTLAYOUTTABLE block;
    document.GetTable(block);
    return std::memcmp(block.Bytes, expected.Bytes, sizeof block.Bytes) == 0;
}

class DocumentTest : public testing::Test {
protected:
    DocumentTest() {
        Filled.SetName(Sjis(u8"ミ表ソ"));
        Filled.SetTemplateLevel(4);
        Filled.SetTable(Pattern(17), false);
    }

    void ExpectRefusal(const std::string& path) {
        EXPECT_FALSE(Filled.Load(path.c_str(), nullptr));
        EXPECT_EQ(Filled.GetName(), Sjis(u8"ミ表ソ"));
        EXPECT_EQ(Filled.GetTemplateLevel(), 4);
        EXPECT_TRUE(Holds(Filled, Pattern(17)));
    }

    TempFolder Folder{"document"};
    // Held by a pointer because a document's destruction may raise an error of the host.
    std::unique_ptr<CPmxDocument> Owner = std::make_unique<CPmxDocument>();
    CPmxDocument& Filled = *Owner;
};

TEST_F(DocumentTest, NewOneIsFreshAtDocumentLevelAndNameless) {
    const CPmxDocument document;
    EXPECT_EQ(document.GetTemplateLevel(), 1);
    EXPECT_EQ(document.GetName(), "");
    EXPECT_EQ(TableOf(document).Document.Sides.Get(), pmx::sample::PrintSides::Front);
}

TEST_F(DocumentTest, SavedFileGivesTheSameDocumentBack) {
    const std::string path = Folder.Path(Sjis(u8"ミ表ソ.pmt"));
    ASSERT_TRUE(Filled.Save(path.c_str()));
    CPmxDocument other;
    ASSERT_TRUE(other.Load(path.c_str(), nullptr));
    EXPECT_EQ(other.GetName(), Sjis(u8"ミ表ソ"));
    EXPECT_EQ(other.GetTemplateLevel(), 4);
    EXPECT_TRUE(Holds(other, Pattern(17)));
}

TEST_F(DocumentTest, SaveReplacesFormerFileAndLeavesNothingElse) {
    Folder.Write("a.pmt", std::string(100000, 'x'));
    ASSERT_TRUE(Filled.Save(Folder.Path("a.pmt").c_str()));
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"a.pmt"});
    EXPECT_TRUE(CPmxDocument().Load(Folder.Path("a.pmt").c_str(), nullptr));
}

TEST_F(DocumentTest, PathWithTwoSeparatorsIsTheSameFile) {
    ASSERT_TRUE(Filled.Save(Folder.Path("a.pmt").c_str()));
    EXPECT_TRUE(CPmxDocument().Load(Folder.Path("\\a.pmt").c_str(), nullptr));
}

TEST_F(DocumentTest, SaveThatCannotReplaceKeepsWhatIsThere) {
    Folder.AddFolder("a.pmt");
    EXPECT_FALSE(Filled.Save(Folder.Path("a.pmt").c_str()));
    EXPECT_FALSE(Filled.Save(Folder.Path("missing\\a.pmt").c_str()));
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"a.pmt"});
}

TEST_F(DocumentTest, SaveLeavesReadOnlyFileAlone) {
    Folder.Write("a.pmt", "former");
    Folder.SetReadOnly("a.pmt", true);
    EXPECT_FALSE(Filled.Save(Folder.Path("a.pmt").c_str()));
    EXPECT_EQ(Folder.Read("a.pmt"), "former");
    EXPECT_EQ(Folder.Names(), std::vector<std::string>{"a.pmt"});
}

TEST_F(DocumentTest, SaveRefusesWhatLoadWouldRefuse) {
    Filled.SetTemplateLevel(6);
    EXPECT_FALSE(Filled.Save(Folder.Path("a.pmt").c_str()));
    EXPECT_TRUE(Folder.Names().empty());
}

TEST_F(DocumentTest, LoadOfNoFavoriteFileKeepsTheDocument) {
    ASSERT_TRUE(CPmxDocument().Save(Folder.Path("good.pmt").c_str()));
    const std::string good = Folder.Read("good.pmt");
    Folder.Write("empty.pmt", "");
    Folder.Write("short.pmt", good.substr(0, good.size() - 1));
    Folder.Write("long.pmt", good + "x");
    Folder.Write("foreign.pmt", std::string(good.size(), 'x'));
    Folder.AddFolder("folder.pmt");
    for (const char* name :
         {"empty.pmt", "short.pmt", "long.pmt", "foreign.pmt", "folder.pmt", "missing.pmt"}) {
        SCOPED_TRACE(name);
        ExpectRefusal(Folder.Path(name));
    }
    ExpectRefusal("");
}

TEST_F(DocumentTest, LoadOfHugeFileIsRefusedWithoutReadingIt) {
    Folder.Write("huge.pmt", "");
    std::filesystem::resize_file(pmx::test::DiskPath(Folder.Path("huge.pmt")), 1ULL << 32);
    ExpectRefusal(Folder.Path("huge.pmt"));
}

TEST_F(DocumentTest, TakesOverTheContentOfAnother) {
    CPmxDocument byPointer;
    CPmxDocument byReference;
    byPointer = &Filled;
    byReference = Filled;
    for (const CPmxDocument* copy : {&byPointer, &byReference}) {
        EXPECT_EQ(copy->GetName(), Filled.GetName());
        EXPECT_EQ(copy->GetTemplateLevel(), 4);
        EXPECT_TRUE(Holds(*copy, Pattern(17)));
    }
}

TEST_F(DocumentTest, NameLongerThanTheFileCanHoldIsRefused) {
    EXPECT_TRUE(Filled.SetName(std::string(260, 'n')));
    EXPECT_FALSE(Filled.SetName(std::string(261, 'm')));
    EXPECT_EQ(Filled.GetName(), std::string(260, 'n'));
}

TEST_F(DocumentTest, StandardCommandsSetTheTable) {
    using namespace pmx::sample;
    CPmxDocument twoUp;
    CPmxDocument booklet;
    CPmxDocument upperLeft;
    twoUp.Cmd_2up_Duplex();
    booklet.Cmd_Booklet_SaddleStapler();
    upperLeft.Cmd_Duplex_UpperLeft();
    EXPECT_EQ(TableOf(twoUp).Face.Pages.Get(), PagesPerFace::Two);
    EXPECT_EQ(TableOf(booklet).Document.BookletKind.Get(), Booklet::SaddleStitch);
    EXPECT_EQ(TableOf(booklet).Document.StaplePlace.Get(), Staple::Saddle);
    EXPECT_EQ(TableOf(upperLeft).Document.StaplePlace.Get(), Staple::UpperLeft);
    for (const CPmxDocument* document : {&twoUp, &booklet, &upperLeft}) {
        EXPECT_EQ(TableOf(*document).Document.Sides.Get(), PrintSides::Both);
    }
}

} // namespace
