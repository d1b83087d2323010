// What repair makes of favorites folders, whatever state they are in and whatever fails meanwhile.
#include "repair.h"

#include "host_library.h"
#include "names.h"
#include "pmxfav/damaged_folder.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace pmx::tool {

namespace {

bool HostIsThere = true;

} // namespace

bool HasHostLibrary() {
    return HostIsThere;
}

} // namespace pmx::tool

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using tool::Deed;
using tool::FavoritesFolder;
using tool::Finding;
using tool::RepairPlan;
using tool::RepairResult;

constexpr std::int64_t TwoDays = std::int64_t{2} * 24 * 60 * 60;

#if defined(_WIN32) || defined(PMX_UNDER_SANITIZERS) // which take their time
constexpr unsigned Rounds = 200;
constexpr unsigned RoundsWithFailures = 2;
#else
constexpr unsigned Rounds = 2000;
constexpr unsigned RoundsWithFailures = 12;
#endif

using FilesByName = std::map<std::string, std::string>;

/// All files of the folder with their bytes.
FilesByName FilesOf(const TempFolder& folder) {
    FilesByName files;
    for (const std::string& name : folder.Names()) {
        files[name] = folder.Read(name);
    }
    return files;
}

/// The names of files that only one of them has, or that have other bytes.
std::vector<std::string> Differences(const FilesByName& left, const FilesByName& right) {
    std::vector<std::string> names;
    for (const auto& [name, bytes] : left) {
        if (!right.contains(name) || right.at(name) != bytes) {
            names.push_back(name);
        }
    }
    for (const auto& [name, bytes] : right) {
        if (!left.contains(name)) {
            names.push_back(name);
        }
    }
    return names;
}

void PutBack(const TempFolder& folder, const FilesByName& files) {
    for (const std::string& name : folder.Names()) {
        if (!files.contains(name)) {
            folder.Remove(name);
        }
    }
    for (const auto& [name, bytes] : files) {
        if (!folder.Exists(name) || folder.Read(name) != bytes) {
            folder.Write(name, bytes);
        }
    }
}

/// The bytes of the file that the system finds under the name; empty when there is none.
std::string BytesOf(const FilesByName& files, const std::string& name) {
    const auto found = std::find_if(files.begin(), files.end(), [&](const auto& file) {
        return tool::FileKey(file.first) == tool::FileKey(name);
    });
    return found == files.end() ? std::string() : found->second;
}

/// What the library lists.
std::vector<std::string> Listed(const TempFolder& folder) {
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    EXPECT_TRUE(list.Open(folder.Path().c_str()));
    std::vector<std::string> values;
    for (const CPMXTemplUIListData* const record : list.GetRecords()) {
        values.push_back(FormatListValue(*record));
    }
    return values;
}

tool::FolderChoice Choice(const TempFolder& folder) {
    return {folder.Path(), ListFile, ".pmt"};
}

/// One run of the command.
struct OneRepair {
    bool IsPrevented = true; ///< the folder cannot be read, or not be changed
    RepairPlan Plan;
    RepairResult Result;

    bool IsDone() const { return !IsPrevented && Result.Fault.empty(); }
};

OneRepair Repair(
    const TempFolder& favorites, const StoreServices& services, std::int64_t now,
    const std::function<void()>& afterReading = [] {}) {
    OneRepair run;
    FavoritesFolder folder(Choice(favorites), services);
    if (!folder.Read()) {
        return run;
    }
    const std::vector<Finding> findings = Check(folder, now);
    run.IsPrevented = std::any_of(findings.begin(), findings.end(),
                                  [](const Finding& finding) { return tool::PreventsRepair(finding.What); });
    if (!run.IsPrevented) {
        run.Plan = PlanRepair(folder, findings, now);
        afterReading();
        run.Result = CarryOut(folder, run.Plan, now);
    }
    return run;
}

std::vector<std::string> CodesOf(const std::vector<Deed>& deeds) {
    std::vector<std::string> codes;
    codes.reserve(deeds.size());
    for (const Deed& deed : deeds) {
        codes.emplace_back(CodeOf(deed.Cause.What));
    }
    return codes;
}

class RepairTest : public testing::Test {
protected:
    RepairTest() { tool::HostIsThere = true; }
    ~RepairTest() override { tool::HostIsThere = true; }

    void PutList(const std::vector<std::string>& values, const std::string& behind = {}) const {
        std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(values.size()) + "\r\n";
        for (std::size_t number = 0; number < values.size(); ++number) {
            text += "TemplateData" + std::to_string(number) + "=" + values[number] + "\r\n";
        }
        Folder.Write(ListFile, text + behind);
    }

    void PutFavorite(const std::string& file, const std::string& name, std::int32_t level = 1,
                     unsigned char seed = 1) const {
        FakeHost::WriteFavorite(Folder, file, {TableOf(seed), level, name});
    }

    OneRepair Repair() { return test::Repair(Folder, Fakes.Services, Now); }

    std::vector<Finding> Findings() const {
        FavoritesFolder folder(Choice(Folder), SystemStoreServices());
        EXPECT_TRUE(folder.Read());
        return Check(folder, Now);
    }

    std::vector<std::string> FindingCodes() const {
        std::vector<std::string> codes;
        for (const Finding& finding : Findings()) {
            codes.emplace_back(CodeOf(finding.What));
        }
        return codes;
    }

    std::string List() const { return Folder.Read(ListFile); }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder{"repair"};
    std::int64_t Now = tool::Now();
};

TEST_F(RepairTest, OfASoundFolderDoesNothing) {
    PutList({"0~A~1~1~14~a.pmt", "1~S~101~1~4~4"});
    PutFavorite("a.pmt", "A");
    const FilesByName before = FilesOf(Folder);
    const OneRepair run = Repair();
    EXPECT_THAT(run.Result.Done, IsEmpty());
    EXPECT_EQ(run.Result.KeptList, "");
    EXPECT_THAT(Differences(FilesOf(Folder), before), IsEmpty());
}

TEST_F(RepairTest, KeepsTheOldListUnderADatedName) {
    Now = 1795318200; // 2026-11-22 03:30:00
    PutList({"0~A~1~1~14~a.pmt"}, "garbage\r\n");
    const std::string before = List();
    Folder.Write("PmxTempleList.ini.2026-11-22-033000.bak", "taken");
    EXPECT_EQ(Repair().Result.KeptList, "PmxTempleList.ini.2026-11-22-033000-1.bak");
    EXPECT_EQ(Folder.Read("PmxTempleList.ini.2026-11-22-033000-1.bak"), before);
    EXPECT_EQ(Folder.Read("PmxTempleList.ini.2026-11-22-033000.bak"), "taken");
    EXPECT_THAT(FindingCodes(), ElementsAre("file-missing")) << "what is kept is no trouble";
}

TEST_F(RepairTest, KeepsLinesThatItDoesNotTakeOverAsCommentsAndAllOtherBytes) {
    const std::string outside = "; above\r\n\r\n[Other]\nTemplateData0 = x\n";
    Folder.Write(ListFile, outside +
                               "[PMXTemplateList]\r\n; inside\r\nTemplateData0=0~A~1\r\n"
                               "templatedata1 = \"0~B~1~0~14~b.pmt\"\r\nTemplateData1=0~C~1~0~14~c.pmt\r\n"
                               "other\r\nTemplateNum=2\r\n[pmxtemplatelist]\r\nTemplateNum=7\r\n;x\r\n");
    Repair();
    EXPECT_EQ(List(), outside + "; inside\r\n; TemplateData0=0~A~1\r\n; TemplateData1=0~C~1~0~14~c.pmt\r\n"
                                "; other\r\n; [pmxtemplatelist]\r\n; TemplateNum=7\r\n;x\r\n"
                                "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~B~1~0~14~b.pmt\r\n");
}

TEST_F(RepairTest, SavesAListWithAMarkInTheCodePage) {
    Folder.Write(ListFile, "\xEF\xBB\xBF" + Utf8(Sjis(u8"; 印\r\n[PMXTemplateList]\r\nTemplateNum=0\r\n")));
    EXPECT_THAT(CodesOf(Repair().Result.Done), ElementsAre("list-mark"));
    EXPECT_EQ(List(), Sjis(u8"; 印\r\n[PMXTemplateList]\r\nTemplateNum=0\r\n"));
}

TEST_F(RepairTest, PutsTheCountRightAndTakesOverWhatIsBeyondIt) {
    Folder.Write(ListFile, "[PMXTemplateList]\r\nTemplateNum=5\r\nTemplateData0=0~A~1~0~14~a.pmt\r\n"
                           "TemplateData9=0~B~1~0~14~b.pmt\r\n");
    EXPECT_THAT(CodesOf(Repair().Result.Done), ElementsAre("count-high", "beyond-count"));
    EXPECT_EQ(List(), "[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=0~A~1~0~14~a.pmt\r\n"
                      "TemplateData1=0~B~1~0~14~b.pmt\r\n");
}

TEST_F(RepairTest, TakesOverAnEntryWhoseNameHoldsTheSeparator) {
    PutList({"0~A~1~0~14~a.pmt", "0~x~y~~z~1~1~20~x.pmt", "0~B~1~0~14~b.pmt", "0~ ~~1~0~14~c.pmt"});
    PutFavorite("x.pmt", "x");
    const OneRepair run = Repair();
    EXPECT_THAT(Listed(Folder), ElementsAre("0~A~1~0~14~a.pmt", "0~x-y--z~1~1~20~x.pmt", "0~B~1~0~14~b.pmt"));
    EXPECT_THAT(List(), StartsWith("; TemplateData1=0~x~y~~z~1~1~20~x.pmt\r\n"
                                   "; TemplateData3=0~ ~~1~0~14~c.pmt\r\n"))
        << "the second has no name";
    EXPECT_EQ(run.Result.Done[0].Action, "taken over as x-y--z");
}

TEST_F(RepairTest, NumbersDoubledNamesButThoseOfStandardFavorites) {
    PutList({"0~A~1~0~14~a.pmt", "0~a-1~1~0~14~b.pmt", "0~a~1~0~14~c.pmt", "1~A~101~0~4~4", "1~a~101~0~4~3",
             "0~" + std::string(32, 'n') + "~1~0~14~d.pmt", "0~" + std::string(32, 'N') + "~1~0~14~e.pmt",
             "0~B~1~0~14~f.pmt", "0~x~B~1~0~14~g.pmt", "0~x-B~1~0~14~h.pmt"});
    Repair();
    EXPECT_THAT(Listed(Folder),
                ElementsAre("0~A-2~1~0~14~a.pmt", "0~a-1~1~0~14~b.pmt", "0~a-3~1~0~14~c.pmt", "1~A~101~0~4~4",
                            "1~a~101~0~4~3", "0~" + std::string(32, 'n') + "~1~0~14~d.pmt",
                            "0~" + std::string(30, 'N') + "-1~1~0~14~e.pmt", "0~B~1~0~14~f.pmt",
                            "0~x-B-1~1~0~14~g.pmt", "0~x-B~1~0~14~h.pmt"));
}

TEST_F(RepairTest, LeavesTheFirstTwentyMarksOfDocumentLevel) {
    std::vector<std::string> values = {"0~P~5~1~14~p.pmt", "0~x~y~1~1~14~x.pmt"};
    for (int number = 0; number < 20; ++number) {
        values.push_back("1~S" + std::to_string(number) + "~101~1~4~4");
    }
    values.emplace_back("0~Last~1~1~14~l.pmt");
    PutList(values);
    const OneRepair run = Repair();
    std::vector<std::string> listed = Listed(Folder);
    EXPECT_EQ(listed.front(), "0~P~5~0~14~p.pmt");
    EXPECT_EQ(listed[1], "0~x-y~1~0~14~x.pmt") << "it was on no toolbar before";
    EXPECT_EQ(listed.back(), "0~Last~1~0~14~l.pmt");
    EXPECT_EQ(std::count_if(listed.begin(), listed.end(),
                            [](const std::string& value) { return value.find("~1~4~") != value.npos; }),
              20);
}

TEST_F(RepairTest, GivesTheSecondOfAFileACopyUnderItsOwnName) {
    PutList({"0~A~2~0~14~a.pmt", "0~b/c~2~0~14~a.pmt", "0~a~2~0~20~a.pmt"});
    PutFavorite("a.pmt", "A", 2, 7);
    PutFavorite("b=c.pmt", "another", 2);
    const std::string before = Folder.Read("a.pmt");
    Repair();
    EXPECT_THAT(Listed(Folder), ElementsAre("0~A~2~0~14~a.pmt", "0~b/c~2~0~14~b=c-1.pmt",
                                            "0~a-1~2~0~20~a-1.pmt", "0~another~2~0~0~b=c.pmt"));
    EXPECT_EQ(Folder.Read("a.pmt"), before);
    for (const auto& [file, name] : {std::pair("b=c-1.pmt", "b/c"), std::pair("a-1.pmt", "a-1")}) {
        const HostContent copy = FakeHost::ReadFavorite(Folder, file);
        EXPECT_EQ(copy.Name, name);
        EXPECT_EQ(copy.Level, 2);
        EXPECT_TRUE(SameTable(copy.Table, TableOf(7)));
    }
    EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(RepairTest, GivesNoCopyTheNameOfAMissingFileThatIsListed) {
    PutList({"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt", "0~C~1~0~14~B.pmt", "0~D~1~0~14~B-1.pmt"});
    PutFavorite("a.pmt", "A");
    PutFavorite("B-2.pmt", "B");
    Repair();
    EXPECT_THAT(Listed(Folder), ElementsAre("0~A~1~0~14~a.pmt", "0~B~1~0~14~B-2.pmt", "0~C~1~0~14~B.pmt",
                                            "0~D~1~0~14~B-1.pmt"));
    Folder.Remove("B-2.pmt");
    PutList({"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt", "0~C~1~0~14~B.pmt"});
    Repair();
    EXPECT_THAT(Listed(Folder), ElementsAre("0~A~1~0~14~a.pmt", "0~B~1~0~14~B-1.pmt", "0~C~1~0~14~B.pmt"));
}

TEST_F(RepairTest, UsesACopyThatAKilledRepairHasMade) {
    PutList(
        {"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt", "0~C~1~0~14~a.pmt", "0~D~1~0~14~a.pmt", "0~E~1~0~14~a.pmt"});
    PutFavorite("a.pmt", "A", 1, 7);
    PutFavorite("D.pmt", "another", 1, 7);
    PutFavorite("E.pmt", "E", 2, 7);
    PutFavorite("B.pmt", "B", 1, 8);
    PutFavorite("B-1.pmt", "B", 1, 7);
    Folder.Write("C.pmt", Folder.Read("a.pmt"));
    Repair();
    EXPECT_THAT(Listed(Folder), ElementsAre("0~A~1~0~14~a.pmt", "0~B~1~0~14~B-1.pmt", "0~C~1~0~14~C.pmt",
                                            "0~D~1~0~14~D-1.pmt", "0~E~1~0~14~E-1.pmt", "0~B-1~1~0~0~B.pmt",
                                            "0~another~1~0~0~D.pmt", "0~E-1~2~0~0~E.pmt"));
}

TEST_F(RepairTest, CopiesTheBytesWithoutTheHostOrWhenThatRefusesTheName) {
    const std::vector<std::string> values = {"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt"};
    for (const bool hasHost : {false, true}) {
        SCOPED_TRACE(hasHost);
        tool::HostIsThere = hasHost;
        PutList(values);
        PutFavorite("a.pmt", "A");
        Host.Plan.FailFrom(HostCall::SetName, 1, HostFailure::Refuse);
        Repair();
        EXPECT_THAT(Listed(Folder), ElementsAre("0~A~1~0~14~a.pmt", "0~B~1~0~14~B.pmt"));
        EXPECT_EQ(Folder.Read("B.pmt"), Folder.Read("a.pmt"));
        Folder.Remove("B.pmt");
    }
}

TEST_F(RepairTest, NamesACopyAfterTheFileWhereNoFileCanHaveTheFavoritesName) {
    PutList({"0~A~1~0~14~a.pmt", "0~\x01~1~0~14~a.pmt", "0~NUL~1~0~14~a.pmt"});
    PutFavorite("a.pmt", "A");
    Repair();
    EXPECT_THAT(Listed(Folder),
                ElementsAre("0~A~1~0~14~a.pmt", "0~\x01~1~0~14~a-1.pmt", "0~NUL~1~0~14~NUL-1.pmt"));
}

TEST_F(RepairTest, ListsWholeFilesThatNobodyNamesUnderTheNameInside) {
    PutList({"0~A~1~0~14~a.pmt"});
    PutFavorite("a.pmt", "A");
    PutFavorite("1.pmt", Sjis(u8"　a "), 3);
    PutFavorite("2.pmt", Sjis(u8"ソ~表"), 5);
    PutFavorite("3.pmt", Sjis(u8"x長長長長長長長長長長長長長長長長"));
    PutFavorite("4.pmt", "x\r\x83", 2);
    for (const auto& [file, level] :
         {std::pair("5.pmt", 101), std::pair("6.pmt", 7), std::pair("7.pmt", 0)}) {
        PutFavorite(file, "none", level);
    }
    PutFavorite("8.pmt", "  ");
    PutFavorite("a~b.pmt", "stray");
    Folder.Write("9.pmt", "damaged");
    const OneRepair run = Repair();
    EXPECT_THAT(Listed(Folder),
                ElementsAre("0~A~1~0~14~a.pmt", "0~a-1~3~0~0~1.pmt", "0~" + Sjis(u8"ソ-表") + "~5~0~0~2.pmt",
                            "0~" + Sjis(u8"x長長長長長長長長長長長長長長長") + "~1~0~0~3.pmt",
                            "0~x--~2~0~0~4.pmt"));
    EXPECT_THAT(FindingCodes(), ElementsAre("file-unlisted", "file-unlisted", "file-unlisted",
                                            "file-unlisted", "file-unlisted", "file-stray"));
}

TEST_F(RepairTest, MakesAListWhereThereIsNone) {
    PutFavorite("a.pmt", "A");
    EXPECT_EQ(Repair().Result.KeptList, "");
    EXPECT_EQ(List(), "[PMXTemplateList]\r\nTemplateNum=1\r\nTemplateData0=0~A~1~0~0~a.pmt\r\n");
}

TEST_F(RepairTest, WithoutTheHostListsNoFile) {
    tool::HostIsThere = false;
    PutFavorite("a.pmt", "A");
    EXPECT_THAT(CodesOf(Repair().Result.Done), IsEmpty());
    EXPECT_FALSE(Folder.Exists(ListFile));
}

TEST_F(RepairTest, DoesNotCountAStandardFavoritesFileAsUnlisted) {
    PutList({"1~S~1~0~4~s.pmt"});
    PutFavorite("s.pmt", "S");
    EXPECT_THAT(Findings(), IsEmpty());
    EXPECT_THAT(CodesOf(Repair().Result.Done), IsEmpty());
}

TEST_F(RepairTest, KnowsAFileByEachOfItsNames) {
    PutList({"0~A~1~0~14~\xFA\x4A.pmt"});
    PutFavorite("\x87\x54.pmt", "A"); // another code of that character
    EXPECT_THAT(Findings(), IsEmpty());
#ifdef _WIN32
    PutList({"0~A~1~0~14~\xFA\x4A.pmt", "0~B~1~0~14~" + Sjis(u8"Ｂ.pmt"), "0~C~1~0~14~C.PMT"});
    PutFavorite(Sjis(u8"ｂ.pmt"), "B");
    PutFavorite("c.pmt", "C");
    EXPECT_THAT(Findings(), IsEmpty());
#endif
}

TEST_F(RepairTest, DeletesLeftoversThatAreOlderThanADay) {
    PutList({"0~A~1~0~14~a.pmt"});
    const std::vector<std::string> leftovers = {"Pmx0123ABCD.tmp", "left.pmt"};
    for (const std::string& name : leftovers) {
        Folder.Write(name, "");
    }
    Folder.Write("a.pmt", "");
    Folder.Write("Pmx0123ABCD.txt", "");
    EXPECT_THAT(CodesOf(Repair().Result.Done), IsEmpty()) << "they are young";
    Now += TwoDays;
    EXPECT_EQ(CodesOf(Repair().Result.Done), (std::vector<std::string>{"leftover-aside", "leftover-empty"}));
    EXPECT_THAT(Folder.Names(), ElementsAre("Pmx0123ABCD.txt", ListFile, "a.pmt"));
}

TEST_F(RepairTest, TellsOfALeftoverThatStays) {
    Folder.Write("left.pmt", "");
    Now += TwoDays;
    Fakes.Disk.Plan.FailFrom(FileOperation::Remove, 1, FileError::Held);
    EXPECT_THAT(CodesOf(Repair().Result.Done), IsEmpty());
    EXPECT_THAT(FindingCodes(), ElementsAre("leftover-empty"));
}

TEST_F(RepairTest, NeverDeletesTheListFileNorWhatTheCodePageCannotName) {
    const tool::FolderChoice choice{Folder.Path(), "list.pmt", ".pmt"};
    Folder.Write("list.pmt", "");
    FavoritesFolder folder(choice, Fakes.Services);
    ASSERT_TRUE(folder.Read());
    EXPECT_THAT(PlanRepair(folder, {}, Now + TwoDays).Leftovers, IsEmpty());
    tool::FolderFile unnameable{.Name = "?.pmt", .Shown = "\U0001F600.pmt", .IsNameable = false};
    EXPECT_EQ(LeftoverKind(folder, unnameable, false), tool::Leftover::None);
}

TEST_F(RepairTest, ChangesNothingWhenAnotherProgramHasChangedTheList) {
    PutList({"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt"});
    PutFavorite("a.pmt", "A");
    FilesByName before;
    const OneRepair run = test::Repair(Folder, Fakes.Services, Now, [&] {
        PutList({"0~C~1~0~14~a.pmt"});
        before = FilesOf(Folder);
    });
    EXPECT_THAT(run.Result.Fault, HasSubstr("another program"));
    EXPECT_THAT(Differences(FilesOf(Folder), before), IsEmpty());
}

TEST_F(RepairTest, ChangesNothingWhenAFileCannotBeCopied) {
    PutList({"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt", "0~C~1~0~14~c.pmt", "0~D~1~0~14~c.pmt"});
    PutFavorite("a.pmt", "A");
    PutFavorite("c.pmt", "C");
    FilesByName before;
    const OneRepair run = test::Repair(Folder, Fakes.Services, Now, [&] {
        Folder.Remove("c.pmt");
        before = FilesOf(Folder);
    });
    EXPECT_THAT(run.Result.Fault, HasSubstr("copied"));
    EXPECT_THAT(Differences(FilesOf(Folder), before), IsEmpty());
}

TEST_F(RepairTest, KeepsTheOldListUnderANameThatIsNoFavorites) {
    PutList({"garbage"});
    FavoritesFolder folder({Folder.Path(), ListFile, ".bak"}, Fakes.Services);
    ASSERT_TRUE(folder.Read());
    RepairPlan plan = PlanRepair(folder, Check(folder, Now), Now);
    EXPECT_THAT(CarryOut(folder, plan, Now).KeptList, EndsWith(".old"));
}

TEST_F(RepairTest, KeepsTheOldListWhenOverwritingItInPlaceWasBegun) {
    struct HalfWritten : FakeFiles {
        std::string List;
        FileError Replace(const std::string& source, const std::string& target) override {
            return target == List ? FileError::Held : FakeFiles::Replace(source, target);
        }
        FileError Overwrite(const std::string& path, const std::string& content) override {
            FakeFiles::Overwrite(path, path == List ? content.substr(0, 10) : content);
            return path == List ? FileError::Other : FileError::None;
        }
    } disk;
    disk.List = Folder.Path(ListFile);
    PutList({"0~A~1~0~14~a.pmt", "0~B~1~0~14~a.pmt"});
    PutFavorite("a.pmt", "A");
    const std::string before = List();
    const OneRepair run = test::Repair(Folder, {disk, Fakes.Clock}, Now);
    EXPECT_THAT(run.Result.Fault, HasSubstr("could not be saved"));
    EXPECT_EQ(Folder.Read(run.Result.KeptList), before);
    EXPECT_TRUE(Folder.Exists("B.pmt")) << "the list that was begun names it";
}

TEST(Names, OfFilesAreCutBetweenTheirBlanks) {
    EXPECT_EQ(tool::NameFromFile(std::string(40, ' ') + "A"), "A");
    EXPECT_EQ(tool::NameFromFile(std::string(31, 'm') + " b"), std::string(31, 'm'));
}

TEST(Names, KnowWhichAFavoriteMayHaveByItsFile) {
    EXPECT_TRUE(tool::IsNameFromFile("a", "A"));
    EXPECT_TRUE(tool::IsNameFromFile("A-12", "A"));
    EXPECT_TRUE(tool::IsNameFromFile("x-y-1", " x~y"));
    EXPECT_TRUE(tool::IsNameFromFile(std::string(30, 'n') + "-1", std::string(40, 'n')));
    EXPECT_TRUE(tool::IsNameFromFile(std::string(32, 'n'), std::string(40, 'n')));
    EXPECT_FALSE(tool::IsNameFromFile("B", "A"));
    EXPECT_FALSE(tool::IsNameFromFile("A-01", "A"));
    EXPECT_FALSE(tool::IsNameFromFile("A-x", "A"));
    EXPECT_FALSE(tool::IsNameFromFile("AB-1", "A"));
    EXPECT_FALSE(tool::IsNameFromFile("A-", "A"));
}

TEST_F(RepairTest, ANumberedNameDoesNotMakeAFileForeign) {
    PutList({"0~A~1~0~14~a.pmt", "0~A-1~1~0~14~b.pmt", "0~B~1~0~14~c.pmt"});
    for (const char* const file : {"a.pmt", "b.pmt", "c.pmt"}) {
        PutFavorite(file, "A");
    }
    EXPECT_THAT(FindingCodes(), ElementsAre("file-foreign"));
}

// Folders damaged by chance

/// Whether a file is the copy of another, under its own name perhaps.
bool IsCopy(const TempFolder& folder, const std::string& original, const std::string& file) {
    const FilesByName files = FilesOf(folder);
    const std::string bytes = BytesOf(files, original);
    const std::string copied = BytesOf(files, file);
    if (bytes.empty() || copied.empty() || bytes == copied) {
        return !bytes.empty() && !copied.empty();
    }
    const HostContent first = FakeHost::ReadFavorite(folder, original);
    const HostContent second = FakeHost::ReadFavorite(folder, file);
    return first.Level == second.Level && SameTable(first.Table, second.Table);
}

/// Whether a favorite is what another was before: of its name, numbered perhaps, with the file of that or a copy.
bool IsStill(const TempFolder& folder, const std::string& formerValue, const std::string& value) {
    const auto former = ParseListValue(formerValue, SystemLeadBytes());
    const auto now = ParseListValue(value, SystemLeadBytes());
    const bool isSame =
        former->GetStandard() == now->GetStandard() && former->GetLevel() == now->GetLevel() &&
        former->GetIconIndex() == now->GetIconIndex() && former->GetToolbar() >= now->GetToolbar() &&
        tool::IsNameFromFile(now->GetName(), former->GetName());
    return isSame && (former->GetFileName() == now->GetFileName() ||
                      IsCopy(folder, former->GetFileName(), now->GetFileName()));
}

/// Every favorite that was listed is listed still, in that order, and every file has the bytes that it had: but for the list
/// file, and leftovers, which may be gone.
void ExpectNothingLost(const TempFolder& folder, const FilesByName& before,
                       const std::vector<std::string>& listedBefore) {
    const std::vector<std::string> listed = Listed(folder);
    auto next = listed.begin();
    for (const std::string& value : listedBefore) {
        next = std::find_if(next, listed.end(),
                            [&](const std::string& other) { return IsStill(folder, value, other); });
        ASSERT_TRUE(next != listed.end()) << testing::PrintToString(value);
        ++next;
    }
    for (const auto& [name, bytes] : before) {
        const bool isLeftover = name.starts_with("Pmx0") || bytes.empty();
        if (name != ListFile && !(isLeftover && !folder.Exists(name))) {
            EXPECT_TRUE(folder.Exists(name) && folder.Read(name) == bytes) << name;
        }
    }
}

/// What holds of every repair that nothing disturbs.
class AnyRepair {
public:
    AnyRepair(const TempFolder& folder, std::int64_t now)
        : Folder(folder), Now(now), Before(FilesOf(folder)), ListedBefore(Listed(folder)) {}

    void Expect() {
        ExpectThatPlanningChangesNothing();
        const OneRepair run = Repair(Folder, SystemStoreServices(), Now);
        After = FilesOf(Folder);
        if (run.IsPrevented) {
            EXPECT_THAT(Differences(After, Before), IsEmpty());
            return;
        }
        ASSERT_EQ(run.Result.Fault, "");
        ExpectNothingLost(Folder, Before, ListedBefore);
        ExpectFiles(run);
        ExpectList(run.Plan);
        ExpectNothingToMend();
        EXPECT_THAT(CodesOf(Repair(Folder, SystemStoreServices(), Now).Result.Done), IsEmpty());
        EXPECT_THAT(Differences(FilesOf(Folder), After), IsEmpty()) << "the second repair";
    }

private:
    void ExpectThatPlanningChangesNothing() {
        FavoritesFolder folder(Choice(Folder), SystemStoreServices());
        ASSERT_TRUE(folder.Read());
        PlanRepair(folder, Check(folder, Now), Now);
        EXPECT_THAT(Differences(FilesOf(Folder), Before), IsEmpty());
    }

    /// What is new is the list that is kept, and copies.
    void ExpectFiles(const OneRepair& run) {
        std::set<std::string> named = {ListFile, run.Result.KeptList};
        for (const tool::PlannedFavorite& favorite : run.Plan.Favorites) {
            named.insert(favorite.Record->GetFileName());
        }
        for (const auto& [name, bytes] : After) {
            EXPECT_TRUE(Before.contains(name) || named.contains(name)) << name;
        }
        const bool isKept =
            Before.contains(ListFile) && BytesOf(After, ListFile) != BytesOf(Before, ListFile);
        EXPECT_EQ(run.Result.KeptList.empty(), !isKept);
        EXPECT_EQ(isKept ? BytesOf(After, run.Result.KeptList) : "", isKept ? BytesOf(Before, ListFile) : "");
    }

    void ExpectList(const RepairPlan& plan) {
        std::vector<std::string> planned;
        for (const tool::PlannedFavorite& favorite : plan.Favorites) {
            planned.push_back(FormatListValue(*favorite.Record));
        }
        const std::vector<std::string> listed = Listed(Folder);
        if (!plan.ListDeeds.empty()) {
            EXPECT_EQ(listed, planned);
        }
        if (!plan.ListDeeds.empty()) {
            ExpectBytesAndComments();
        }
    }

    /// All bytes outside of the section stand where they stood, and what is not taken over stands behind them.
    void ExpectBytesAndComments() {
        const DecodedText before = DecodeContent(BytesOf(Before, ListFile));
        const DecodedText after = DecodeContent(BytesOf(After, ListFile));
        const std::string outside = WithSection(before.Text, "");
        ASSERT_TRUE(after.Text.starts_with(outside));
        const std::string rest = after.Text.substr(outside.size());
        const ListSectionContent section = ReadListSection(before.Text);
        std::int32_t previous = -1;
        for (const NumberedValue& value : section.Values) {
            const bool isReadable = ParseListValue(value.Value, LeadBytesIn(value.Value)) != nullptr;
            if (!isReadable || value.Number == previous) {
                EXPECT_NE(rest.find(value.Value), std::string::npos)
                    << testing::PrintToString(std::string(value.Value));
            }
            previous = value.Number;
        }
        for (const std::string_view line : section.OtherLines) {
            EXPECT_NE(rest.find(line), std::string::npos);
        }
    }

    void ExpectNothingToMend() {
        FavoritesFolder folder(Choice(Folder), SystemStoreServices());
        ASSERT_TRUE(folder.Read());
        for (const Finding& finding : Check(folder, Now)) {
            EXPECT_FALSE(finding.IsMendable)
                << CodeOf(finding.What) << ' ' << finding.File << ' ' << testing::PrintToString(finding.Name);
        }
    }

    const TempFolder& Folder;
    const std::int64_t Now;
    const FilesByName Before;
    const std::vector<std::string> ListedBefore;
    FilesByName After;
};

/// Each folder is old enough for its leftovers to go, or not, and has the host, or not.
std::int64_t TimeOf(unsigned seed) {
    tool::HostIsThere = seed % 5 != 0;
    return tool::Now() + (seed % 3 == 0 ? 0 : TwoDays);
}

TEST_F(RepairTest, OfFoldersDamagedByChanceLosesNothingAndIsDoneAtOnce) {
    for (unsigned seed = 1; seed <= Rounds; ++seed) {
        SCOPED_TRACE(testing::Message() << "damaged by chance " << seed);
        const DamagedFolder damaged(seed);
        AnyRepair(damaged.Folder, TimeOf(seed)).Expect();
        if (HasFailure()) {
            return;
        }
    }
}

/// What the library lists, without the names of files.
std::vector<std::string> ListedWithoutFiles(const TempFolder& folder) {
    std::vector<std::string> values = Listed(folder);
    for (std::string& value : values) {
        value.erase(value.rfind('~'));
    }
    return values;
}

/// A folder before and after a repair that nothing disturbs, for others that are disturbed.
class DisturbedRepair {
public:
    explicit DisturbedRepair(unsigned seed)
        : Damaged(seed),
          Now(TimeOf(seed)),
          Before(FilesOf(Folder())),
          ListedBefore(Listed(Folder())),
          ListedBeforeWithoutFiles(ListedWithoutFiles(Folder())) {
        Repair(Folder(), SystemStoreServices(), Now);
        After = FilesOf(Folder());
        ListedAfter = ListedWithoutFiles(Folder());
        PutBack(Folder(), Before);
    }

    /// Repairs the folder as it was before.
    OneRepair RunWith(
        const StoreServices& services, const std::function<void()>& afterReading = [] {}) const {
        return Repair(Folder(), services, Now, afterReading);
    }

    /// After a disturbed repair: it lists what it did before, or what it is to list, and nothing is lost.
    void ExpectOldOrNew() const {
        const std::vector<std::string> listed = ListedWithoutFiles(Folder());
        EXPECT_TRUE(listed == ListedBeforeWithoutFiles || listed == ListedAfter)
            << testing::PrintToString(listed);
        ExpectNothingLost(Folder(), Before, ListedBefore);
    }

    void ExpectNothingChanged() const { EXPECT_THAT(Differences(FilesOf(Folder()), Before), IsEmpty()); }

    /// Repairs the folder again, gives the list file of that, and puts everything back as it was.
    std::string RepairAgain() const {
        Repair(Folder(), SystemStoreServices(), Now);
        EXPECT_EQ(ListedWithoutFiles(Folder()), ListedAfter);
        std::string list = BytesOf(FilesOf(Folder()), ListFile);
        PutBack(Folder(), Before);
        return list;
    }

    std::string ListAfter() const { return BytesOf(After, ListFile); }

private:
    const TempFolder& Folder() const { return Damaged.Folder; }

    const DamagedFolder Damaged;
    const std::int64_t Now;
    const FilesByName Before;
    const std::vector<std::string> ListedBefore;
    const std::vector<std::string> ListedBeforeWithoutFiles;
    FilesByName After;
    std::vector<std::string> ListedAfter;
};

constexpr std::size_t MostCalls = 5000;

TEST_F(RepairTest, ThatFailsAnywhereLeavesTheOldListOrTheNewOneAndIsMadeUpFor) {
    for (unsigned seed = 1; seed <= RoundsWithFailures; ++seed) {
        const DisturbedRepair repair(seed);
        for (const FileError error : {FileError::Held, FileError::Other}) {
            for (const bool forGood : {false, true}) {
                bool wasReached = true;
                for (std::size_t number = 1; wasReached && number < MostCalls; ++number) {
                    SCOPED_TRACE(testing::Message() << "damaged by chance " << seed << ", call " << number
                                                    << (forGood ? " and all later ones" : ""));
                    FakeServices services;
                    std::size_t first = 0;
                    const OneRepair run = repair.RunWith(services.Services, [&] {
                        first = services.Disk.Plan.Calls() + number;
                        if (forGood) {
                            services.Disk.Plan.FailFromAny(first, error);
                        } else {
                            services.Disk.Plan.FailAtAny(first, error);
                        }
                    });
                    wasReached = first > 0 && services.Disk.Plan.Calls() >= first;
                    repair.ExpectOldOrNew();
                    if (!run.IsDone() && !forGood) {
                        repair.ExpectNothingChanged();
                    }
                    repair.RepairAgain(); // a name that could not be looked at is another file's name
                    ASSERT_FALSE(HasFailure());
                }
                ASSERT_FALSE(wasReached);
            }
        }
    }
}

/// Repairs folders while each call in turn fails that `fail` lets fail and of which `calls` says the number. What cannot be
/// read meanwhile is left alone, and mended by the next repair.
void RepairWhileCallsFail(const StoreServices& services, const std::function<void(std::size_t number)>& fail,
                          const std::function<std::size_t()>& calls) {
    for (unsigned seed = 1; seed <= RoundsWithFailures; ++seed) {
        bool wasReached = true;
        for (std::size_t number = 1; wasReached && number < MostCalls; ++number) {
            SCOPED_TRACE(testing::Message() << "damaged by chance " << seed << ", call " << number);
            const DamagedFolder damaged(seed);
            const std::int64_t now = TimeOf(seed);
            const FilesByName before = FilesOf(damaged.Folder);
            const std::vector<std::string> listedBefore = Listed(damaged.Folder);
            const std::size_t first = calls() + number;
            fail(first);
            const OneRepair run = Repair(damaged.Folder, services, now);
            wasReached = calls() >= first;
            fail(0);
            if (!run.IsDone()) {
                EXPECT_THAT(Differences(FilesOf(damaged.Folder), before), IsEmpty());
            }
            ExpectNothingLost(damaged.Folder, before, listedBefore);
            AnyRepair(damaged.Folder, now).Expect();
            ASSERT_FALSE(testing::Test::HasFailure());
        }
        ASSERT_FALSE(wasReached);
    }
}

TEST_F(RepairTest, LosesNothingWhatCannotBeReadMeanwhile) {
    for (const FileOperation operation :
         {FileOperation::Read, FileOperation::TryOpen, FileOperation::IsFolder}) {
        RepairWhileCallsFail(
            Fakes.Services,
            [&](std::size_t number) {
                Fakes.Disk.Plan.Heal();
                if (number > 0) {
                    Fakes.Disk.Plan.FailAt(operation, number, FileError::Held);
                }
            },
            [&] { return Fakes.Disk.Plan.Calls(operation); });
        ASSERT_FALSE(HasFailure());
    }
}

TEST_F(RepairTest, LosesNothingWhereTheHostFails) {
    for (const HostCall call : {HostCall::Create, HostCall::Load, HostCall::Save, HostCall::GetTable,
                                HostCall::SetLevel, HostCall::SetName}) {
        for (const HostFailure failure : {HostFailure::Refuse, HostFailure::Raise}) {
            RepairWhileCallsFail(
                Fakes.Services,
                [&](std::size_t number) {
                    Host.Plan.Heal();
                    if (number > 0) {
                        Host.Plan.FailAt(call, number, failure);
                    }
                },
                [&] { return Host.Plan.Calls(call); });
            ASSERT_FALSE(HasFailure());
        }
    }
}

#ifndef _WIN32
TEST_F(RepairTest, ThatIsKilledAnywhereLeavesTheOldListOrTheNewOneAndIsMadeUpFor) {
    for (unsigned seed = 1; seed <= RoundsWithFailures; ++seed) {
        const DisturbedRepair repair(seed);
        bool wasKilled = true;
        for (std::size_t number = 1; wasKilled && number < MostCalls; ++number) {
            SCOPED_TRACE(testing::Message() << "damaged by chance " << seed << ", call " << number);
            const pid_t process = fork();
            if (process == 0) {
                std::size_t calls = 0;
                FakeServices services;
                services.Disk.Plan.OnCall = Host.Plan.OnCall = [&] {
                    if (++calls == number) {
                        _exit(1);
                    }
                };
                repair.RunWith(services.Services);
                _exit(0);
            }
            int status = 0;
            ASSERT_EQ(waitpid(process, &status, 0), process);
            ASSERT_TRUE(WIFEXITED(status));
            wasKilled = WEXITSTATUS(status) != 0;
            repair.ExpectOldOrNew();
            EXPECT_EQ(repair.RepairAgain(), repair.ListAfter());
            ASSERT_FALSE(HasFailure());
        }
        ASSERT_FALSE(wasKilled);
    }
}
#endif

} // namespace
} // namespace pmx::test
