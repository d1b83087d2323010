// The folder or its list cannot be written when a dialog of the built library is accepted: the dialog gives
// the result that it always gives, the old list stays whole, and nothing is lost or left behind.
#include "exports/read_only_folder.h"
#include "exports/win32/control_ids.h"
#include "exports/win32/open_dialog.h"
#include "support/holding_process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>

namespace pmx::exports_test {
namespace {

using Use = std::function<void(const OpenDialog&)>;

/// Opens a dialog on a folder, and changes and accepts it. `meanwhile` runs between.
struct DialogCase {
    const char* Name;
    std::int64_t (*Accept)(const std::string& folder, const Use& meanwhile);
};

std::int64_t AcceptEditor(const std::string& folder, const Use& meanwhile) {
    return CallWithDialog([&] { return EX_ShowTemplateUI(folder.c_str(), nullptr); },
                          [&](const OpenDialog& dialog) {
                              dialog.Press(EditorDeleteButton);
                              dialog.Press(EditorDownButton);
                              meanwhile(dialog);
                              dialog.Press(OkButton);
                          });
}

std::int64_t AcceptBasicList(const std::string& folder, const Use& meanwhile) {
    return CallWithDialog([&] { return EX_ShowChoiceUIBasic(folder.c_str(), ListFile, ".pmt", nullptr); },
                          [&](const OpenDialog& dialog) {
                              dialog.Press(BasicDownButton);
                              meanwhile(dialog);
                              dialog.Press(OkButton);
                          });
}

std::int64_t AcceptRegistration(const std::string& folder, const Use& meanwhile) {
    const std::vector<unsigned char> table = TableOf(90);
    return CallWithDialog(
        [&] { return EX_ShowChoiceUIEntry(folder.c_str(), ListFile, ".pmt", table.data(), 1, nullptr); },
        [&](const OpenDialog& dialog) {
            dialog.SetText(RegisterNameBox, "New");
            meanwhile(dialog);
            dialog.Press(OkButton);
        });
}

constexpr DialogCase Dialogs[] = {
    {"Editor", AcceptEditor}, {"BasicList", AcceptBasicList}, {"Registration", AcceptRegistration}};

std::string NameOf(const testing::TestParamInfo<DialogCase>& example) {
    return example.param.Name;
}

class TroubledFolderTest : public ExportTest, public testing::WithParamInterface<DialogCase> {
protected:
    TroubledFolderTest() {
        Folder.AddFolder("Favorites");
        for (const char* const name : {"a.pmt", "b.pmt", "c.pmt"}) {
            WriteFavorite(std::string("Favorites\\") + name, TableOf(10));
        }
        Folder.Write(List, OldList);
    }

    std::int64_t Accept(const Use& meanwhile) const {
        return GetParam().Accept(Folder.Path("Favorites"), meanwhile);
    }

    void ExpectOldFiles() const {
        EXPECT_EQ(Folder.Read(List), OldList);
        for (const char* const name : {"a.pmt", "b.pmt", "c.pmt"}) {
            EXPECT_TRUE(Folder.Exists(std::string("Favorites\\") + name)) << name;
        }
        EXPECT_EQ(TemporaryFiles(), 0);
    }

    /// Accepts again when the trouble is over.
    void ExpectToSaveNow() const {
        EXPECT_EQ(Accept([](const OpenDialog&) {}), 0);
        EXPECT_NE(Folder.Read(List), OldList);
        EXPECT_EQ(TemporaryFiles(), 0);
    }

    int TemporaryFiles() const {
        const std::filesystem::directory_iterator entries(test::DiskPath(Folder.Path("Favorites")));
        return static_cast<int>(std::count_if(begin(entries), end(entries), [](const auto& entry) {
            return entry.path().extension() == ".tmp";
        }));
    }

    const std::string List = std::string("Favorites\\") + ListFile;
    const std::string OldList = "; mine\r\n" +
                                Section({"0~A~1~0~14~a.pmt", "0~B~1~0~14~b.pmt", "0~C~1~0~14~c.pmt"}) +
                                "[Other]\r\nx=1\r\n";
};

TEST_P(TroubledFolderTest, AReadOnlyListStaysAsItIs) {
    EXPECT_EQ(Accept([this](const OpenDialog&) { Folder.SetReadOnly(List, true); }), 0);
    ExpectOldFiles();
    Folder.SetReadOnly(List, false);
    ExpectToSaveNow();
}

TEST_P(TroubledFolderTest, AFolderThatIsGoneIsNotMadeAgain) {
    EXPECT_EQ(Accept([this](const OpenDialog&) { Folder.Remove("Favorites"); }), 0);
    EXPECT_THAT(Folder.Names(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Dialogs, TroubledFolderTest, testing::ValuesIn(Dialogs), NameOf);

using HeldListTest = TroubledFolderTest;

TEST_P(HeldListTest, IsSavedWhereItLies) {
    std::optional<test::HoldingProcess> other;
    EXPECT_EQ(
        Accept([&](const OpenDialog&) { other.emplace("pmx_hold_file", "shared:" + Folder.Path(List)); }), 0);
    other.reset();
    EXPECT_NE(Folder.Read(List), OldList);
    EXPECT_NE(Folder.Read(List).find("; mine\r\n"), std::string::npos);
    EXPECT_EQ(TemporaryFiles(), 0);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, HeldListTest, testing::ValuesIn(Dialogs), NameOf);

class ReadOnlyFolderDialogs : public ReadOnlyFolder, public testing::WithParamInterface<DialogCase> {};

TEST_P(ReadOnlyFolderDialogs, AreAcceptedAndChangeNothing) {
    EXPECT_EQ(GetParam().Accept(View(), [](const OpenDialog&) {}), 0);
}

INSTANTIATE_TEST_SUITE_P(ReadOnlyFolder, ReadOnlyFolderDialogs, testing::ValuesIn(Dialogs), NameOf);

} // namespace
} // namespace pmx::exports_test
