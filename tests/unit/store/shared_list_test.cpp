// A list whose file another program changes before it is saved. list_merge_test.cpp has the rules.
#include "store/list_data_array.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

constexpr const char* ListFile = "PmxTempleList.ini";
constexpr const char* One = "0~One~1~0~14~one.pmt";
constexpr const char* Two = "0~Two~1~0~14~two.pmt";
constexpr const char* Renamed = "0~Renamed~1~0~14~two.pmt";
constexpr const char* New = "0~New~1~0~14~new.pmt";
constexpr const char* Added = "1~Added~101~0~14~3";

std::string Section(const std::vector<std::string>& values) {
    std::string text = "[PMXTemplateList]\r\nTemplateNum=" + std::to_string(values.size()) + "\r\n";
    for (std::size_t number = 0; number < values.size(); ++number) {
        text += "TemplateData" + std::to_string(number) + "=" + values[number] + "\r\n";
    }
    return text;
}

class SharedListTest : public testing::Test {
protected:
    SharedListTest() {
        Put({One, Two});
        EXPECT_TRUE(List.Open(Folder.Path().c_str()));
    }

    void Put(const std::vector<std::string>& values) const { Folder.Write(ListFile, Section(values)); }
    std::string Content() const { return Folder.Read(ListFile); }

    void Add(const std::string& name) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetStandard(1);
        record->SetName(name);
        record->SetLevel(101);
        record->SetIconIndex(14);
        record->SetFileName("3");
        List.Add(std::move(record));
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder{"shared"};
    CPMXTemplUIListDataArray List{nullptr, nullptr, Fakes.Services};
};

TEST_F(SharedListTest, KeepsWhatAnotherProgramDidAtEverySave) {
    Put({New, Renamed, One});
    Add("Added");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({New, Renamed, One, Added}));
    EXPECT_EQ(List.At(1).GetName(), "Two") << "the list itself does not change";
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({New, Renamed, One, Added}));
}

TEST_F(SharedListTest, CountsInAMergeWhatIsWritten) {
    List.At(0).SetDeleteFlag(1);
    Put({One, Two, New});
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({Two, New}));
}

TEST_F(SharedListTest, IsWrittenAsItIsWhenNothingOfTheSectionHasChanged) {
    Folder.Write(ListFile, "[Other]\r\nx=1\r\n" + Section({One, Two}) + "TemplateData7=x\r\n");
    List.At(0).SetDeleteFlag(1);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), "[Other]\r\nx=1\r\n[PMXTemplateList]\r\nTemplateNum=2\r\nTemplateData0=" +
                             std::string(Two) + "\r\n");
}

TEST_F(SharedListTest, IsWrittenAsItIsWhenTheFileOrItsSectionIsGone) {
    Folder.Remove(ListFile);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({One, Two}));
    Folder.Write(ListFile, "");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({One, Two}));
    Put({});
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({})) << "but a list that has been emptied stays so";
}

TEST_F(SharedListTest, IsNotTakenForChangedByWhatAReaderDoesNotFindInIt) {
    Add("two\r\nlines");
    EXPECT_TRUE(List.WriteListFile());
    const std::string written = Content();
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), written);
    Put({One, Two, "1~two", New});
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Content(), Section({One, Two, "1~two", New}));
}

TEST_F(SharedListTest, KeepsTheFileOfADeletedFavoriteThatTheListFileNames) {
    Folder.Write("one.pmt", "one");
    Folder.Write("two.pmt", "two");
    List.At(0).SetDeleteFlag(1);
    List.At(1).SetDeleteFlag(1);
    Put({One, Renamed});
    EXPECT_TRUE(List.WriteListFile());
    List.DeleteFilesOfDeleted(List.GetRecords());
    EXPECT_EQ(Content(), Section({Renamed}));
    EXPECT_THAT(Folder.Names(), testing::ElementsAre(ListFile, "two.pmt"));
}

TEST_F(SharedListTest, KeepsTheFilesOfDeletedFavoritesWhenTheListFileCannotBeRead) {
    Folder.Write("one.pmt", "one");
    List.At(0).SetDeleteFlag(1);
    Fakes.Disk.Plan.FailFrom(FileOperation::Read, 1, FileError::Other);
    List.DeleteFilesOfDeleted(List.GetRecords());
    EXPECT_TRUE(Folder.Exists("one.pmt"));
}

TEST_F(SharedListTest, IsLookedAtAndChangedUnderOneLock) {
    const std::string path = Folder.Path(ListFile);
    FileError lockMeanwhile = FileError::None;
    EXPECT_FALSE(ChangeListFile(Fakes.Services, path, [&](const std::string& bytes) {
        EXPECT_EQ(bytes, Section({One, Two}));
        lockMeanwhile = SystemFiles().Lock(path).Error;
        return std::nullopt;
    })) << "it was to stay";
    EXPECT_EQ(lockMeanwhile, FileError::Held);
    EXPECT_EQ(Content(), Section({One, Two}));
    EXPECT_TRUE(ChangeListFile(Fakes.Services, path, [](const std::string& bytes) { return bytes + "x"; }));
    EXPECT_EQ(Content(), Section({One, Two}) + "x");
}

TEST_F(SharedListTest, IsSavedUnderALockAndWithoutOneAfterTwoSeconds) {
    Fakes.Disk.Plan.FailFrom(FileOperation::Lock, 1, FileError::Held);
    Add("Added");
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Fakes.Clock.Total(), 2000U);
    Fakes.Disk.Plan.Heal();
    Fakes.Disk.Plan.FailFrom(FileOperation::Lock, 1, FileError::Other);
    EXPECT_TRUE(List.WriteListFile());
    EXPECT_EQ(Fakes.Clock.Total(), 2000U) << "what cannot be had is not waited for";
    EXPECT_EQ(Content(), Section({One, Two, Added}));
}

} // namespace
} // namespace pmx::test
