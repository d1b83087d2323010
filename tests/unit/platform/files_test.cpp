#include "platform/files.h"

#include "support/holding_process.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace pmx {
namespace {

using test::HoldingProcess;
using test::Sjis;
using test::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;

OpenRequest Request(const std::string& path, FileAccess access, FileShare share,
                    FileDisposition disposition) {
    return {path, access, share, disposition};
}

OpenRequest ForReading(const std::string& path) {
    return Request(path, FileAccess::Read, FileShare::Read, FileDisposition::OpenExisting);
}

OpenRequest ForChanging(const std::string& path) {
    return Request(path, FileAccess::ReadWrite, FileShare::ReadWrite, FileDisposition::OpenExisting);
}

OpenRequest Exclusively(const std::string& path) {
    return Request(path, FileAccess::Read, FileShare::None, FileDisposition::OpenExisting);
}

FileError OpenError(const OpenRequest& request) {
    const OpenResult result = SystemFiles().Open(request);
    EXPECT_EQ(result.File == nullptr, result.Error != FileError::None);
    return result.Error;
}

/// A folder with an ordinary file, a read-only file and a folder.
class SystemFilesTest : public testing::Test {
protected:
    SystemFilesTest() {
        Folder.Write("file", "old");
        Folder.Write("locked", "locked");
        Folder.SetReadOnly("locked", true);
        Folder.AddFolder("folder");
    }

    std::string Path(std::string_view name) const { return Folder.Path(name); }

    /// Every test leaves no file behind but those that it made itself.
    void ExpectNoFurtherFiles() const {
        EXPECT_THAT(Folder.Names(), ElementsAre("file", "folder", "locked"));
    }

    const TempFolder Folder;
    Files& Service = SystemFiles();
};

class NamesOnDisk : public testing::TestWithParam<std::string> {
protected:
    std::string Name() const { return GetParam() + ".pmt"; }
};

INSTANTIATE_TEST_SUITE_P(DoubleByte, NamesOnDisk,
                         testing::Values(Sjis(u8"ミ"), Sjis(u8"表"), Sjis(u8"ソ"), Sjis(u8"ア"), Sjis(u8"ヂ"),
                                         Sjis(u8"ｱｲｳ"), Sjis(u8"能十予ソ表"), Sjis(u8"～－￢"),
                                         Sjis(u8"①髙﨑"), Sjis(u8"Ａａ"), Sjis(u8"\uE000\uE757"), "a~b"));

TEST_P(NamesOnDisk, AreTheSameWhateverReachesThem) {
    const TempFolder folder;
    const std::string inner = Sjis(u8"表") + '\\';
    folder.AddFolder(Sjis(u8"表"));
    const std::string path = folder.Path(inner + Name());
    EXPECT_FALSE(SystemFiles().Exists(path));
    EXPECT_EQ(OpenError(Request(path, FileAccess::Write, FileShare::None, FileDisposition::CreateNew)),
              FileError::None);
    EXPECT_TRUE(SystemFiles().Exists(path));
    EXPECT_TRUE(folder.Exists(inner + Name()));
    folder.Write(inner + Name(), "x");
    EXPECT_EQ(SystemFiles().Copy(path, folder.Path(Name()), true), FileError::None);
    EXPECT_EQ(SystemFiles().Remove(path), FileError::None);
    EXPECT_EQ(folder.Read(Name()), "x");
    EXPECT_THAT(folder.Names(), testing::UnorderedElementsAre(Name(), Sjis(u8"表")));
    EXPECT_FALSE(folder.Exists(inner + Name()));
}

TEST(NameOnDisk, DiffersForCharactersWhoseSecondBytesDifferInCaseOnly) {
    const TempFolder folder;
    folder.Write(Sjis(u8"ア"), "1");
    EXPECT_FALSE(SystemFiles().Exists(folder.Path(Sjis(u8"ヂ"))));
}

TEST_F(SystemFilesTest, TellsFilesFromFolders) {
    EXPECT_TRUE(Service.Exists(Path("file")));
    EXPECT_FALSE(Service.IsFolder(Path("file")));
    EXPECT_TRUE(Service.Exists(Path("folder")));
    EXPECT_TRUE(Service.IsFolder(Path("folder")));
    EXPECT_TRUE(Service.IsFolder(Path("folder\\")));
    EXPECT_FALSE(Service.Exists(Path("missing")));
    EXPECT_FALSE(Service.IsFolder(Path("missing")));
}

TEST_F(SystemFilesTest, KnowsReadOnlyFiles) {
    EXPECT_TRUE(Service.IsReadOnly(Path("locked")));
    EXPECT_FALSE(Service.IsReadOnly(Path("file")));
    EXPECT_FALSE(Service.IsReadOnly(Path("folder")));
    EXPECT_FALSE(Service.IsReadOnly(Path("missing")));
}

TEST_F(SystemFilesTest, RefusesPathsThatNoFileCanHave) {
    const std::string zero = Path(std::string("file\0x", 6));
    EXPECT_FALSE(Service.Exists(zero));
    EXPECT_FALSE(Service.IsFolder(zero));
    EXPECT_FALSE(Service.IsReadOnly(zero));
    EXPECT_EQ(OpenError(ForReading(zero)), FileError::InvalidName);
    EXPECT_EQ(Service.Copy(zero, Path("new"), false), FileError::InvalidName);
    EXPECT_EQ(Service.Copy(Path("file"), zero, false), FileError::InvalidName);
    EXPECT_EQ(Service.Replace(zero, Path("file")), FileError::InvalidName);
    EXPECT_EQ(Service.Replace(Path("file"), zero), FileError::InvalidName);
    EXPECT_EQ(Service.Remove(zero), FileError::InvalidName);
    EXPECT_EQ(Service.Flush(zero), FileError::InvalidName);
    FileError error = FileError::None;
    EXPECT_EQ(Service.CreateTemporary(zero, error), "");
    EXPECT_EQ(error, FileError::InvalidName);
    EXPECT_FALSE(Service.Exists(""));
    EXPECT_EQ(OpenError(ForReading("")), FileError::PathNotFound);
    EXPECT_EQ(Service.Remove(""), FileError::PathNotFound);
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, SaysWhyItCannotOpen) {
    EXPECT_EQ(OpenError(ForReading(Path("missing"))), FileError::NotFound);
    EXPECT_EQ(OpenError(ForReading(Path("missing\\file"))), FileError::PathNotFound);
    EXPECT_EQ(OpenError(ForReading(Path("file\\file"))), FileError::PathNotFound);
    EXPECT_EQ(OpenError(ForReading(Path("folder"))), FileError::AccessDenied);
    EXPECT_EQ(OpenError(ForChanging(Path("folder"))), FileError::AccessDenied);
    EXPECT_EQ(OpenError(ForChanging(Path("locked"))), FileError::AccessDenied);
    EXPECT_EQ(OpenError(ForReading(Path("locked"))), FileError::None);
    EXPECT_EQ(OpenError(ForChanging(Path("file"))), FileError::None);
}

TEST_F(SystemFilesTest, OpensAsTheDispositionSays) {
    const auto disposition = [&](std::string_view name, FileDisposition wanted) {
        return OpenError(Request(Path(name), FileAccess::ReadWrite, FileShare::None, wanted));
    };
    EXPECT_EQ(disposition("file", FileDisposition::CreateNew), FileError::FileExists);
    EXPECT_EQ(disposition("locked", FileDisposition::CreateNew), FileError::FileExists);
    EXPECT_EQ(disposition("file", FileDisposition::OpenAlways), FileError::None);
    EXPECT_EQ(disposition("locked", FileDisposition::CreateAlways), FileError::AccessDenied);
    EXPECT_EQ(disposition("missing\\a", FileDisposition::CreateNew), FileError::PathNotFound);
    EXPECT_EQ(Folder.Read("file"), "old");
    EXPECT_EQ(Folder.Read("locked"), "locked");
    ExpectNoFurtherFiles();
    EXPECT_EQ(disposition("file", FileDisposition::CreateAlways), FileError::None);
    EXPECT_EQ(disposition("new1", FileDisposition::CreateNew), FileError::None);
    EXPECT_EQ(disposition("new2", FileDisposition::CreateAlways), FileError::None);
    EXPECT_EQ(disposition("new3", FileDisposition::OpenAlways), FileError::None);
    EXPECT_EQ(Folder.Read("file"), "");
    EXPECT_THAT(Folder.Names(), ElementsAre("file", "folder", "locked", "new1", "new2", "new3"));
}

TEST_F(SystemFilesTest, ExcludesOthersFromAFileThatIsNotShared) {
    OpenResult held = Service.Open(Exclusively(Path("file")));
    ASSERT_EQ(held.Error, FileError::None);
    EXPECT_EQ(OpenError(ForReading(Path("file"))), FileError::SharingViolation);
    EXPECT_EQ(Service.Copy(Path("file"), Path("new"), true), FileError::SharingViolation);
    EXPECT_EQ(Service.Copy(Path("locked"), Path("file"), false), FileError::SharingViolation);
    EXPECT_EQ(Service.Remove(Path("file")), FileError::SharingViolation);
    held.File.reset();
    EXPECT_EQ(OpenError(ForReading(Path("file"))), FileError::None);
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, DoesNotExcludeThoseWhoShare) {
    const OpenResult first = Service.Open(ForChanging(Path("file")));
    ASSERT_EQ(first.Error, FileError::None);
    EXPECT_EQ(OpenError(ForChanging(Path("file"))), FileError::None);
    EXPECT_EQ(OpenError(Exclusively(Path("file"))), FileError::SharingViolation);
    EXPECT_EQ(Service.Remove(Path("file")), FileError::SharingViolation);
}

TEST_F(SystemFilesTest, IsExcludedFromAFileThatAnotherProcessHolds) {
    Folder.Write(Sjis(u8"ソ表"), "held");
    HoldingProcess holder(Path(Sjis(u8"ソ表")));
    EXPECT_EQ(OpenError(ForChanging(Path(Sjis(u8"ソ表")))), FileError::SharingViolation);
    EXPECT_EQ(Service.Remove(Path(Sjis(u8"ソ表"))), FileError::SharingViolation);
    EXPECT_EQ(Service.Copy(Path("file"), Path(Sjis(u8"ソ表")), false), FileError::SharingViolation);
    EXPECT_EQ(Service.Replace(Path("file"), Path(Sjis(u8"ソ表"))), FileError::AccessDenied);
    holder.Release();
    EXPECT_EQ(Folder.Read(Sjis(u8"ソ表")), "held");
    EXPECT_EQ(Service.Remove(Path(Sjis(u8"ソ表"))), FileError::None);
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, CopiesToANewFile) {
    const std::string bytes(200000, '\x83');
    Folder.Write("file", bytes);
    EXPECT_EQ(Service.Copy(Path("file"), Path("copy"), true), FileError::None);
    EXPECT_EQ(Folder.Read("copy"), bytes);
    EXPECT_EQ(Folder.Read("file"), bytes);
    EXPECT_THAT(Folder.Names(), ElementsAre("copy", "file", "folder", "locked"));
}

TEST_F(SystemFilesTest, CopiesOverAFileOnlyWhenAllowed) {
    Folder.Write("copy", "longer than the old one");
    EXPECT_EQ(Service.Copy(Path("file"), Path("copy"), true), FileError::FileExists);
    EXPECT_EQ(Folder.Read("copy"), "longer than the old one");
    EXPECT_EQ(Service.Copy(Path("file"), Path("copy"), false), FileError::None);
    EXPECT_EQ(Folder.Read("copy"), "old");
}

TEST_F(SystemFilesTest, LetsOnlyOneOfSeveralCopiersMakeAFile) {
    constexpr int Copiers = 4;
    std::atomic<int> made = 0;
    std::vector<std::thread> threads;
    threads.reserve(Copiers);
    for (int copier = 0; copier < Copiers; ++copier) {
        threads.emplace_back([&, copier] {
            const std::string source = "source" + std::to_string(copier);
            Folder.Write(source, source);
            for (int round = 0; round < 50; ++round) {
                const std::string target = Path("target" + std::to_string(round));
                made += Service.Copy(Path(source), target, true) == FileError::None ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(made, 50);
}

TEST_F(SystemFilesTest, CopiesAReadOnlyFileToOneThatCanBeChanged) {
    EXPECT_EQ(Service.Copy(Path("locked"), Path("copy"), true), FileError::None);
    EXPECT_FALSE(Service.IsReadOnly(Path("copy")));
    EXPECT_EQ(Service.Remove(Path("copy")), FileError::None);
}

TEST_F(SystemFilesTest, SaysWhyItCannotCopy) {
    EXPECT_EQ(Service.Copy(Path("missing"), Path("new"), true), FileError::NotFound);
    EXPECT_EQ(Service.Copy(Path("missing\\a"), Path("new"), true), FileError::PathNotFound);
    EXPECT_EQ(Service.Copy(Path("file"), Path("missing\\a"), true), FileError::PathNotFound);
    EXPECT_EQ(Service.Copy(Path("folder"), Path("new"), true), FileError::AccessDenied);
    EXPECT_EQ(Service.Copy(Path("file"), Path("folder"), false), FileError::AccessDenied);
    EXPECT_EQ(Service.Copy(Path("file"), Path("folder"), true), FileError::FileExists);
    EXPECT_EQ(Service.Copy(Path("file"), Path("locked"), false), FileError::AccessDenied);
    EXPECT_EQ(Folder.Read("locked"), "locked");
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, RemovesFilesButNotFoldersOrReadOnlyFiles) {
    EXPECT_EQ(Service.Remove(Path("folder")), FileError::AccessDenied);
    EXPECT_EQ(Service.Remove(Path("locked")), FileError::AccessDenied);
    EXPECT_EQ(Service.Remove(Path("missing")), FileError::NotFound);
    EXPECT_EQ(Service.Remove(Path("missing\\a")), FileError::PathNotFound);
    ExpectNoFurtherFiles();
    EXPECT_EQ(Service.Remove(Path("file")), FileError::None);
    EXPECT_THAT(Folder.Names(), ElementsAre("folder", "locked"));
}

TEST_F(SystemFilesTest, FlushesAnExistingFile) {
    EXPECT_EQ(Service.Flush(Path("file")), FileError::None);
    EXPECT_EQ(Service.Flush(Path("missing")), FileError::NotFound);
}

TEST_F(SystemFilesTest, ReplacesAFile) {
    Folder.Write("new", "new");
    EXPECT_EQ(Service.Replace(Path("new"), Path("file")), FileError::None);
    EXPECT_EQ(Folder.Read("file"), "new");
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, ShowsAReaderTheOldOrTheNewFileWhole) {
    const std::string whole[] = {std::string(20000, '0'), std::string(20000, '1')};
    Folder.Write("file", whole[0]);
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int round = 0; round < 60; ++round) {
            Folder.Write("new", whole[round % 2]);
            const FileError error = Service.Replace(Path("new"), Path("file"));
            // Windows does not replace what the reader has open.
            EXPECT_TRUE(error == FileError::None || error == FileError::AccessDenied);
        }
        isDone = true;
    });
    int torn = 0;
    int missing = 0;
    while (!isDone) {
        try {
            const std::string content = Folder.Read("file");
            torn += content == whole[0] || content == whole[1] ? 0 : 1;
        } catch (const std::runtime_error&) {
            // Windows does not open a file that is being replaced.
            missing += Folder.Exists("file") ? 0 : 1;
        }
    }
    writer.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(missing, 0);
}

TEST_F(SystemFilesTest, ReplacesAFileThatIsNotThereYet) {
    EXPECT_EQ(Service.Replace(Path("file"), Path("target")), FileError::None);
    EXPECT_EQ(Folder.Read("target"), "old");
    EXPECT_THAT(Folder.Names(), ElementsAre("folder", "locked", "target"));
}

TEST_F(SystemFilesTest, SaysWhyItCannotReplace) {
    EXPECT_EQ(Service.Replace(Path("file"), Path("locked")), FileError::AccessDenied);
    EXPECT_EQ(Service.Replace(Path("file"), Path("folder")), FileError::AccessDenied);
    EXPECT_EQ(Service.Replace(Path("folder"), Path("new")), FileError::AccessDenied);
    EXPECT_EQ(Service.Replace(Path("missing"), Path("file")), FileError::NotFound);
    EXPECT_EQ(Service.Replace(Path("file"), Path("missing\\a")), FileError::PathNotFound);
    EXPECT_EQ(Folder.Read("file"), "old");
    EXPECT_EQ(Folder.Read("locked"), "locked");
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, CreatesTemporaryFilesOfTheirOwn) {
    FileError error = FileError::Other;
    const std::string first = Service.CreateTemporary(Path("folder\\"), error);
    EXPECT_EQ(error, FileError::None);
    const std::string second = Service.CreateTemporary(Path("folder\\"), error);
    EXPECT_EQ(error, FileError::None);
    EXPECT_NE(first, second);
    for (const std::string& path : {first, second}) {
        EXPECT_THAT(path, testing::StartsWith(Path("folder\\Pmx")));
        EXPECT_THAT(path, testing::EndsWith(".tmp"));
        EXPECT_EQ(Folder.Read(path.substr(Folder.Path().size())), "");
        EXPECT_EQ(Service.Remove(path), FileError::None);
    }
}

TEST_F(SystemFilesTest, SaysWhyItCannotCreateATemporaryFile) {
    FileError error = FileError::None;
    EXPECT_EQ(Service.CreateTemporary(Path("missing\\"), error), "");
    EXPECT_EQ(error, FileError::PathNotFound);
    EXPECT_EQ(Service.CreateTemporary("", error), "");
    EXPECT_EQ(error, FileError::PathNotFound);
}

FileError LockError(const std::string& path) {
    return SystemFiles().Lock(path).Error;
}

TEST_F(SystemFilesTest, ALockIsHadByOneAtATime) {
    for (const char* const name : {"file", "missing"}) {
        const OpenResult lock = SystemFiles().Lock(Path(name));
        EXPECT_EQ(lock.Error, FileError::None);
        EXPECT_NE(lock.File, nullptr);
        EXPECT_EQ(LockError(Path(name)), FileError::SharingViolation);
    }
    EXPECT_EQ(LockError(Path("file")), FileError::None);
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, ALockedFileCanBeReadAndReplaced) {
    const OpenResult lock = SystemFiles().Lock(Path("file"));
    EXPECT_EQ(OpenError(ForReading(Path("file"))), FileError::None);
    Folder.Write("source", "new");
    EXPECT_EQ(SystemFiles().Replace(Path("source"), Path("file")), FileError::None);
    EXPECT_EQ(LockError(Path("file")), FileError::SharingViolation);
}

TEST_F(SystemFilesTest, ALockEndsWithItsProcessAndLeavesNothingBehind) {
    HoldingProcess holder("pmx_hold_lock", Path("file"));
    EXPECT_EQ(LockError(Path("file")), FileError::SharingViolation);
    holder.Kill();
    EXPECT_EQ(LockError(Path("file")), FileError::None);
    ExpectNoFurtherFiles();
}

TEST_F(SystemFilesTest, WhereNoLockCanBeThatIsSaid) {
    EXPECT_NE(LockError(Path("missing\\file")), FileError::None);
    EXPECT_NE(LockError(Path("missing\\file")), FileError::SharingViolation);
    EXPECT_EQ(LockError(""), FileError::PathNotFound);
    EXPECT_EQ(LockError(std::string("a\0b", 3)), FileError::InvalidName);
}

TEST_F(SystemFilesTest, AFileThatIsInThePlaceOfALockStays) {
    Folder.Write("file.lock", "somebody's");
    {
        const OpenResult lock = SystemFiles().Lock(Path("file"));
        EXPECT_EQ(lock.Error, FileError::None);
        EXPECT_EQ(LockError(Path("file")), FileError::SharingViolation);
    }
    EXPECT_EQ(Folder.Read("file.lock"), "somebody's");
}

} // namespace
} // namespace pmx
