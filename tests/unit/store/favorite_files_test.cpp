#include "store/favorite_files.h"

#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/holding_process.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <string>

namespace pmx::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Names

class FileNameTest : public testing::Test {
protected:
    std::string Safe(const std::string& name) const { return SanitizeFileName(name); }

    FakeHost Host;
};

TEST_F(FileNameTest, ANameThatTheHostAcceptsStaysAsItIs) {
    EXPECT_EQ(Safe("Name"), "Name");
    Host.AcceptEveryFileName = true;
    EXPECT_EQ(Safe("a/b:c"), "a/b:c");
}

TEST_F(FileNameTest, EachForbiddenCharacterIsReplaced) {
    EXPECT_EQ(Safe("a/b:c"), "a=b=c");
    EXPECT_EQ(Safe("\\/:*?\"<>|"), "=========");
    EXPECT_EQ(Safe("a\\"), "a=");
}

TEST_F(FileNameTest, OtherCharactersOfARefusedNameStay) {
    Host.Plan.FailFrom(HostCall::CheckFileName, 1, HostFailure::Refuse);
    EXPECT_EQ(Safe("a~b.c d'e%"), "a~b.c d'e%");
    EXPECT_EQ(Safe(""), "");
}

TEST_F(FileNameTest, SecondBytesAreNeverReplaced) {
    EXPECT_EQ(Safe(Sjis(u8"表/ソ")), Sjis(u8"表=ソ"));
    EXPECT_EQ(Safe(Sjis(u8"ポ*十|能")), Sjis(u8"ポ=十=能")) << "83 7C, 8F 5C, 94 5C";
    EXPECT_EQ(Safe(Sjis(u8"ｱ/ｲ")), Sjis(u8"ｱ=ｲ")) << "half-width letters are single bytes";
}

TEST_F(FileNameTest, ALeadByteAtTheEndStays) {
    EXPECT_EQ(Safe("a/\x83"), "a=\x83");
}

// Retries

constexpr std::size_t Attempts = 13;

std::vector<std::uint32_t> WholeSchedule() {
    return {1000, 1000, 1000, 1000, 2000, 2000, 2000, 2000, 4000, 4000, 4000, 4000};
}

/// One of the retrying operations on a file "a", which is there.
struct RetryingOperation {
    const char* Name;
    FileOperation Kind;
    std::function<bool(FakeServices&, const TempFolder&)> Run;
};

void PrintTo(const RetryingOperation& operation, std::ostream* out) {
    *out << operation.Name;
}

class RetryTest : public testing::TestWithParam<RetryingOperation> {
protected:
    RetryTest() { Folder.Write("a", "content"); }

    bool Run() { return GetParam().Run(Fakes, Folder); }
    auto& Plan() { return Fakes.Disk.Plan; }
    std::size_t Calls() { return Plan().Calls(GetParam().Kind); }

    TempFolder Folder;
    FakeServices Fakes;
};

TEST_P(RetryTest, ASuccessAtOnceWaitsForNothing) {
    EXPECT_TRUE(Run());
    EXPECT_EQ(Calls(), 1U);
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty());
}

TEST_P(RetryTest, AFileThatStaysHeldIsTriedThirteenTimesIn28Seconds) {
    Plan().FailFrom(GetParam().Kind, 1, FileError::Held);
    EXPECT_FALSE(Run());
    EXPECT_EQ(Calls(), Attempts);
    EXPECT_EQ(Fakes.Clock.Sleeps, WholeSchedule());
    EXPECT_EQ(Fakes.Clock.Total(), 28'000U);
    EXPECT_EQ(Folder.Read("a"), "content");
}

TEST_P(RetryTest, AnyAttemptMaySucceed) {
    for (std::size_t success = 2; success <= Attempts; ++success) {
        FakeServices fakes;
        TempFolder folder;
        folder.Write("a", "content");
        for (std::size_t attempt = 1; attempt < success; ++attempt) {
            fakes.Disk.Plan.FailAt(GetParam().Kind, attempt, FileError::Held);
        }
        EXPECT_TRUE(GetParam().Run(fakes, folder)) << success;
        EXPECT_EQ(fakes.Disk.Plan.Calls(GetParam().Kind), success);
        std::vector<std::uint32_t> waits = WholeSchedule();
        waits.resize(success - 1);
        EXPECT_EQ(fakes.Clock.Sleeps, waits);
    }
}

TEST_P(RetryTest, AnyOtherErrorEndsAtTheFirstAttempt) {
    for (const FileError error : {FileError::NotFound, FileError::Exists, FileError::Other}) {
        FakeServices fakes;
        fakes.Disk.Plan.FailFrom(GetParam().Kind, 1, error);
        EXPECT_FALSE(GetParam().Run(fakes, Folder));
        EXPECT_EQ(fakes.Disk.Plan.Calls(GetParam().Kind), 1U);
        EXPECT_THAT(fakes.Clock.Sleeps, IsEmpty());
    }
}

TEST_P(RetryTest, AnotherErrorAfterSomeAttemptsEndsThere) {
    Plan().FailAt(GetParam().Kind, 1, FileError::Held);
    Plan().FailAt(GetParam().Kind, 2, FileError::Held);
    Plan().FailAt(GetParam().Kind, 3, FileError::Other);
    EXPECT_FALSE(Run());
    EXPECT_EQ(Calls(), 3U);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, RetryTest,
    testing::Values(RetryingOperation{"Create", FileOperation::TryOpen,
                                      [](FakeServices& fakes, const TempFolder& folder) {
                                          return RetryCreateFile(fakes.Services, folder.Path("a")) ==
                                                 FileError::None;
                                      }},
                    RetryingOperation{"Copy", FileOperation::Read,
                                      [](FakeServices& fakes, const TempFolder& folder) {
                                          return RetryCopyFile(fakes.Services, folder.Path("a"),
                                                               folder.Path("b")) == FileError::None;
                                      }},
                    RetryingOperation{"Delete", FileOperation::Remove,
                                      [](FakeServices& fakes, const TempFolder& folder) {
                                          return RetryDeleteFile(fakes.Services, folder.Path("a"));
                                      }}),
    [](const testing::TestParamInfo<RetryingOperation>& parameter) { return parameter.param.Name; });

class RetryingFilesTest : public testing::Test {
protected:
    TempFolder Folder;
    FakeServices Fakes;
};

TEST_F(RetryingFilesTest, OpeningAFileLeavesItAsItIs) {
    Folder.Write("a", "content");
    EXPECT_EQ(RetryCreateFile(Fakes.Services, Folder.Path("a")), FileError::None);
    EXPECT_EQ(RetryCreateFile(Fakes.Services, Folder.Path("missing")), FileError::NotFound);
    EXPECT_EQ(Folder.Read("a"), "content");
    EXPECT_THAT(Folder.Names(), ElementsAre("a"));
}

TEST_F(RetryingFilesTest, ACopyIsWholeAndNotReadOnlyAndReplacesNothing) {
    Folder.Write("a", "new");
    Folder.SetReadOnly("a", true);
    EXPECT_EQ(RetryCopyFile(Fakes.Services, Folder.Path("a"), Folder.Path("b")), FileError::None);
    EXPECT_EQ(Folder.Read("b"), "new");
    EXPECT_FALSE(SystemFiles().IsReadOnly(Folder.Path("b")));
    Folder.Write("c", "old");
    EXPECT_EQ(RetryCopyFile(Fakes.Services, Folder.Path("a"), Folder.Path("c")), FileError::Exists);
    EXPECT_EQ(Folder.Read("c"), "old");
    EXPECT_EQ(RetryCopyFile(Fakes.Services, Folder.Path("missing"), Folder.Path("d")), FileError::NotFound);
    Folder.SetReadOnly("a", false);
    EXPECT_THAT(Folder.Names(), ElementsAre("a", "b", "c"));
}

TEST_F(RetryingFilesTest, ACopyThatFailsLeavesNothing) {
    Folder.Write("a", "new");
    for (const FileOperation operation : {FileOperation::WriteNew, FileOperation::Rename}) {
        FakeServices fakes;
        fakes.Disk.Plan.FailAt(operation, 1, FileError::Other);
        EXPECT_EQ(RetryCopyFile(fakes.Services, Folder.Path("a"), Folder.Path("b")), FileError::Other);
        EXPECT_THAT(Folder.Names(), ElementsAre("a"));
    }
}

TEST_F(RetryingFilesTest, AMissingFileIsNotDeleted) {
    EXPECT_FALSE(RetryDeleteFile(Fakes.Services, Folder.Path("missing")));
}

TEST_F(RetryingFilesTest, AFileThatAnotherProcessHoldsIsDeletedOnceItIsReleased) {
    Folder.Write(Sjis(u8"表.pmt"), "content");
    HoldingProcess other(Folder.Path(Sjis(u8"表.pmt")));
    Fakes.Clock.OnSleep = [&] { other.Release(); };
    EXPECT_TRUE(RetryDeleteFile({SystemFiles(), Fakes.Clock}, Folder.Path(Sjis(u8"表.pmt"))));
    EXPECT_THAT(Fakes.Clock.Sleeps, ElementsAre(1000));
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

/// The system's clock, which really waits; while it does, another process lets a file go.
class WaitingClock : public Clock {
public:
    explicit WaitingClock(HoldingProcess& process) : Other(process) {}

    std::size_t Sleeps = 0;

    void Sleep(std::uint32_t milliseconds) override {
        ++Sleeps;
        Other.Release();
        SystemClock().Sleep(milliseconds);
    }

private:
    HoldingProcess& Other;
};

TEST_F(RetryingFilesTest, AFileThatAnotherProcessLetsGoIsDeletedAfterOneSecondOfRealTime) {
    Folder.Write("a.pmt", "content");
    HoldingProcess other(Folder.Path("a.pmt"));
    WaitingClock clock(other);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(RetryDeleteFile({SystemFiles(), clock}, Folder.Path("a.pmt")));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
    EXPECT_EQ(clock.Sleeps, 1U);
    EXPECT_THAT(Folder.Names(), IsEmpty());
}

// The lock of a save

TEST_F(RetryingFilesTest, ALockIsHadWhenAnotherProcessLetsItGo) {
    HoldingProcess other("pmx_hold_lock", Folder.Path("list"));
    Fakes.Clock.OnSleep = [&] {
        if (Fakes.Clock.Sleeps.size() == 3) {
            other.Release();
        }
    };
    EXPECT_NE(WaitForLock(Fakes.Services, Folder.Path("list")), nullptr);
    EXPECT_EQ(Fakes.Clock.Sleeps.size(), 3U);
}

TEST_F(RetryingFilesTest, ALockIsWaitedForNoLongerThanTwoSeconds) {
    Fakes.Disk.Plan.FailFrom(FileOperation::Lock, 1, FileError::Held);
    EXPECT_EQ(WaitForLock(Fakes.Services, Folder.Path("list")), nullptr);
    EXPECT_EQ(Fakes.Clock.Total(), 2000U);
}

TEST_F(RetryingFilesTest, ALockThatCannotBeIsNotWaitedFor) {
    Fakes.Disk.Plan.FailFrom(FileOperation::Lock, 1, FileError::Other);
    EXPECT_EQ(WaitForLock(Fakes.Services, Folder.Path("list")), nullptr);
    EXPECT_THAT(Fakes.Clock.Sleeps, IsEmpty());
}

// The parts of a path

TEST(BaseName, IsTheFileNameWithoutFolderAndExtension) {
    EXPECT_EQ(BaseNameOf("C:\\a.b\\Name.pmt"), "Name");
    EXPECT_EQ(BaseNameOf("C:/x/a.b.pmt"), "a.b");
    EXPECT_EQ(BaseNameOf("C:Name"), "Name");
    EXPECT_EQ(BaseNameOf("C:\\x.y\\Name"), "Name");
    EXPECT_EQ(BaseNameOf("C:\\x\\.pmt"), "");
    EXPECT_EQ(BaseNameOf(""), "");
}

TEST(BaseName, TakesNoSecondByteForASeparator) {
    EXPECT_EQ(BaseNameOf(Sjis(u8"C:\\表\\ソ表.pmt")), Sjis(u8"ソ表"));
    EXPECT_EQ(FolderOf(Sjis(u8"C:\\表\\ソ表.pmt")), Sjis(u8"C:\\表\\"));
}

TEST(BaseName, HasAtMost255BytesAndNoHalfCharacter) {
    EXPECT_EQ(BaseNameOf(std::string(300, 'x')), std::string(255, 'x'));
    std::string doubleByte;
    for (int count = 0; count < 130; ++count) {
        doubleByte += Sjis(u8"表");
    }
    EXPECT_EQ(BaseNameOf(doubleByte).size(), 254U);
}

// Which names lie in a folder

bool IsPlain(std::string_view name) {
    return IsPlainFileName(name);
}

TEST(PlainFileName, IsAnyNameOfAFileInTheFolder) {
    for (const char* const name : {"a.pmt", "a b", ".pmt", "a..b", "NULL", "COM10", "COM", "LPT0x", "a~1"}) {
        EXPECT_TRUE(IsPlain(name)) << name;
    }
    for (const std::u8string_view name : {u8"表.pmt", u8"ソ", u8"能×ミ", u8"ｱ"}) {
        EXPECT_TRUE(IsPlain(Sjis(name)));
    }
}

TEST(PlainFileName, IsNoPath) {
    for (const char* const name : {"a\\b", "a/b", "\\a", "/a", "..\\a", "C:a", "a:b", "a\\", "C:\\a"}) {
        EXPECT_FALSE(IsPlain(name)) << name;
    }
    EXPECT_FALSE(IsPlain(Sjis(u8"表\\表")));
    EXPECT_FALSE(IsPlain(std::string_view("a\0b", 3)));
    EXPECT_FALSE(IsPlain("\x81/a")) << "no second byte on any system";
    EXPECT_FALSE(IsPlain("\x81:a"));
}

TEST(PlainFileName, IsNotEmptyNorDotsAndBlanksAlone) {
    for (const char* const name : {"", ".", "..", "...", " ", ". ."}) {
        EXPECT_FALSE(IsPlain(name)) << name;
    }
}

TEST(PlainFileName, IsNoDevice) {
    for (const char* const name : {"NUL", "nul", "Con", "prn.txt", "AUX.a.b", "com1", "COM9.pmt", "LPT1 ",
                                   "lpt9 .x", "CONIN$", "conout$"}) {
        EXPECT_FALSE(IsPlain(name)) << name;
    }
}

} // namespace
} // namespace pmx::test
