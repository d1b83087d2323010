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

    FileError ReadError(const std::string& path) const {
        std::string content = "before";
        const FileError error = Service.Read(path, content);
        EXPECT_TRUE(error == FileError::None || content == "before");
        return error;
    }

    FileError LockError(const std::string& path) const {
        const LockResult result = Service.Lock(path);
        EXPECT_EQ(result.Lock == nullptr, result.Error != FileError::None);
        return result.Error;
    }

    /// Nothing has changed, and no test leaves a file behind but those that it made itself.
    void ExpectUnchanged() const {
        EXPECT_THAT(Folder.Names(), ElementsAre("file", "folder", "locked"));
        EXPECT_EQ(Folder.Read("file"), "old");
        EXPECT_EQ(Folder.Read("locked"), "locked");
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
    EXPECT_EQ(SystemFiles().CreateNew(path), FileError::None);
    EXPECT_TRUE(SystemFiles().Exists(path));
    EXPECT_TRUE(folder.Exists(inner + Name()));
    EXPECT_EQ(SystemFiles().Overwrite(path, "x"), FileError::None);
    EXPECT_EQ(folder.Read(inner + Name()), "x");
    EXPECT_EQ(SystemFiles().Rename(path, folder.Path(inner + "a")), FileError::None);
    EXPECT_EQ(SystemFiles().Replace(folder.Path(inner + "a"), path), FileError::None);
    EXPECT_EQ(folder.Read(inner + Name()), "x");
    EXPECT_EQ(SystemFiles().Remove(path), FileError::None);
    EXPECT_FALSE(folder.Exists(inner + Name()));
}

TEST(NameOnDisk, DiffersForCharactersWhoseSecondBytesDifferInCaseOnly) {
    const TempFolder folder;
    folder.Write(Sjis(u8"ア"), "1");
    EXPECT_FALSE(SystemFiles().Exists(folder.Path(Sjis(u8"ヂ"))));
}

// Questions

TEST_F(SystemFilesTest, TellsFilesFromFolders) {
    EXPECT_TRUE(Service.Exists(Path("file")));
    EXPECT_FALSE(Service.IsFolder(Path("file")));
    for (const char* const name : {"folder", "folder\\", "folder/"}) {
        EXPECT_TRUE(Service.Exists(Path(name)));
        EXPECT_TRUE(Service.IsFolder(Path(name)));
    }
    EXPECT_FALSE(Service.Exists(Path("missing")));
    EXPECT_FALSE(Service.IsFolder(Path("missing")));
}

TEST_F(SystemFilesTest, KnowsReadOnlyFiles) {
    EXPECT_TRUE(Service.IsReadOnly(Path("locked")));
    EXPECT_FALSE(Service.IsReadOnly(Path("file")));
    EXPECT_FALSE(Service.IsReadOnly(Path("folder")));
    EXPECT_FALSE(Service.IsReadOnly(Path("missing")));
}

TEST_F(SystemFilesTest, KnowsAFileOrFolderUnderAnySpelling) {
    Folder.Write("folder\\inner", "old");
    for (const char* const name : {"folder\\inner", "folder/inner", "folder\\\\inner", "folder\\.\\inner",
                                   "folder\\..\\folder\\inner"}) {
        EXPECT_TRUE(Service.IsSame(Path("folder\\inner"), Path(name))) << name;
    }
    EXPECT_TRUE(Service.IsSame(Path("folder"), Path("folder\\.\\")));
    EXPECT_FALSE(Service.IsSame(Path("file"), Path("folder\\inner"))) << "they only have the same content";
    EXPECT_FALSE(Service.IsSame(Path("folder"), Path("folder\\inner")));
    EXPECT_FALSE(Service.IsSame(Path("missing"), Path("missing")));
}

// What cannot be done

TEST_F(SystemFilesTest, NoFileHasAnEmptyPathOrOneWithAZeroByte) {
    for (const std::string& path : {std::string(), Path(std::string("file\0x", 6))}) {
        EXPECT_FALSE(Service.Exists(path));
        EXPECT_FALSE(Service.IsFolder(path));
        EXPECT_FALSE(Service.IsReadOnly(path));
        EXPECT_FALSE(Service.IsSame(path, path));
        EXPECT_EQ(ReadError(path), FileError::NotFound);
        EXPECT_EQ(Service.TryOpen(path), FileError::NotFound);
        EXPECT_EQ(Service.CreateNew(path), FileError::NotFound);
        EXPECT_EQ(Service.WriteNew(path, "new"), FileError::NotFound);
        EXPECT_EQ(Service.Overwrite(path, "new"), FileError::NotFound);
        EXPECT_EQ(Service.Flush(path), FileError::NotFound);
        EXPECT_EQ(Service.Replace(path, Path("file")), FileError::NotFound);
        EXPECT_EQ(Service.Replace(Path("file"), path), FileError::NotFound);
        EXPECT_EQ(Service.Rename(path, Path("new")), FileError::NotFound);
        EXPECT_EQ(Service.Rename(Path("file"), path), FileError::NotFound);
        EXPECT_EQ(Service.Remove(path), FileError::NotFound);
        EXPECT_EQ(LockError(path), FileError::Other);
    }
    ExpectUnchanged();
}

TEST_F(SystemFilesTest, SaysWhenThereIsNoSuchFileOrFolder) {
    for (const std::string& path : {Path("missing"), Path("missing\\file"), Path("file\\file")}) {
        EXPECT_EQ(ReadError(path), FileError::NotFound);
        EXPECT_EQ(Service.TryOpen(path), FileError::NotFound);
        EXPECT_EQ(Service.Overwrite(path, "new"), FileError::NotFound);
        EXPECT_EQ(Service.Flush(path), FileError::NotFound);
        EXPECT_EQ(Service.Replace(path, Path("file")), FileError::NotFound);
        EXPECT_EQ(Service.Rename(path, Path("new")), FileError::NotFound);
        EXPECT_EQ(Service.Remove(path), FileError::NotFound);
    }
    EXPECT_EQ(Service.CreateNew(Path("missing\\file")), FileError::NotFound);
    EXPECT_EQ(Service.WriteNew(Path("missing\\file"), "new"), FileError::NotFound);
    EXPECT_EQ(Service.Replace(Path("file"), Path("missing\\file")), FileError::NotFound);
    EXPECT_EQ(Service.Rename(Path("file"), Path("missing\\file")), FileError::NotFound);
    ExpectUnchanged();
}

TEST_F(SystemFilesTest, ChangesNoFolderAndNoReadOnlyFile) {
    EXPECT_EQ(ReadError(Path("folder")), FileError::Held);
    EXPECT_EQ(ReadError(Path("locked")), FileError::None);
    for (const char* const name : {"folder", "locked"}) {
        EXPECT_EQ(Service.TryOpen(Path(name)), FileError::Held);
        EXPECT_EQ(Service.Overwrite(Path(name), "new"), FileError::Held);
        EXPECT_EQ(Service.Replace(Path("file"), Path(name)), FileError::Held);
        EXPECT_EQ(Service.Remove(Path(name)), FileError::Held);
    }
    ExpectUnchanged();
}

// What is done

TEST_F(SystemFilesTest, OverwritesAndReadsAWholeFile) {
    const std::string zero(1, '\0');
    for (const std::string& content :
         {std::string(200'000, '\x83'), "\r\n\x1A" + zero + "x", std::string()}) {
        EXPECT_EQ(Service.Overwrite(Path("file"), content), FileError::None);
        EXPECT_EQ(Folder.Read("file"), content);
        std::string read = "before";
        EXPECT_EQ(Service.Read(Path("file"), read), FileError::None);
        EXPECT_EQ(read, content);
    }
    EXPECT_EQ(Service.TryOpen(Path("file")), FileError::None);
}

TEST_F(SystemFilesTest, MakesANewFileOnly) {
    for (const char* const name : {"file", "folder", "locked"}) {
        EXPECT_EQ(Service.CreateNew(Path(name)), FileError::Exists);
        EXPECT_EQ(Service.WriteNew(Path(name), "new"), FileError::Exists);
    }
    ExpectUnchanged();
    EXPECT_EQ(Service.CreateNew(Path("new")), FileError::None);
    EXPECT_EQ(Folder.Read("new"), "");
}

TEST_F(SystemFilesTest, WritesAWholeNewFile) {
    for (const std::string& content :
         {std::string(200'000, '\x83'), std::string("\r\n\x1A"), std::string()}) {
        EXPECT_EQ(Service.WriteNew(Path("new"), content), FileError::None);
        EXPECT_EQ(Service.Flush(Path("new")), FileError::None);
        EXPECT_EQ(Folder.Read("new"), content);
        Folder.Remove("new");
    }
}

TEST_F(SystemFilesTest, ReplacesAFileWhetherItIsThereOrNot) {
    Folder.Write("new", "new");
    EXPECT_EQ(Service.Replace(Path("new"), Path("file")), FileError::None);
    EXPECT_EQ(Folder.Read("file"), "new");
    EXPECT_EQ(Service.Replace(Path("file"), Path("target")), FileError::None);
    EXPECT_EQ(Folder.Read("target"), "new");
    EXPECT_THAT(Folder.Names(), ElementsAre("folder", "locked", "target"));
}

TEST_F(SystemFilesTest, WritesANewFileOverAnotherAndLeavesItWhereThatIsRefused) {
    bool isMade = false;
    for (const char* const name : {"folder", "locked"}) {
        EXPECT_EQ(Service.WriteOver(Path("new"), "new", Path(name), isMade), FileError::Held);
        EXPECT_TRUE(isMade);
        EXPECT_EQ(Folder.Read("new"), "new");
        EXPECT_EQ(Service.WriteOver(Path("new"), "newer", Path("file"), isMade), FileError::Exists);
        EXPECT_FALSE(isMade);
        EXPECT_EQ(Folder.Read("new"), "new");
        Folder.Remove("new");
    }
    EXPECT_EQ(Service.WriteOver(Path("missing\\new"), "new", Path("file"), isMade), FileError::NotFound);
    EXPECT_FALSE(isMade);
    ExpectUnchanged();
    for (const char* const name : {"file", "target"}) {
        EXPECT_EQ(Service.WriteOver(Path("new"), "new", Path(name), isMade), FileError::None);
        EXPECT_TRUE(isMade);
        EXPECT_EQ(Folder.Read(name), "new");
    }
    EXPECT_THAT(Folder.Names(), ElementsAre("file", "folder", "locked", "target"));
}

TEST_F(SystemFilesTest, ShowsAReaderTheOldOrTheNewFileWhole) {
    const std::string whole[] = {std::string(20000, '0'), std::string(20000, '1')};
    Folder.Write("file", whole[0]);
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int round = 0; round < 60; ++round) {
            bool isMade = false;
            const std::string source = "new" + std::to_string(round);
            const FileError error = Service.WriteOver(Path(source), whole[round % 2], Path("file"), isMade);
            // Windows does not replace what the reader has open.
            EXPECT_TRUE(error == FileError::None || error == FileError::Held);
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

TEST_F(SystemFilesTest, RenamesWithoutEverReplacing) {
    for (const char* const name : {"file", "folder", "locked"}) {
        Folder.Write("new", "new");
        EXPECT_EQ(Service.Rename(Path("new"), Path(name)), FileError::Exists);
        EXPECT_EQ(Folder.Read("new"), "new");
        Folder.Remove("new");
    }
    ExpectUnchanged();
    EXPECT_EQ(Service.Rename(Path("file"), Path("target")), FileError::None);
    EXPECT_EQ(Folder.Read("target"), "old");
    EXPECT_THAT(Folder.Names(), ElementsAre("folder", "locked", "target"));
}

TEST_F(SystemFilesTest, LetsOnlyOneOfSeveralHaveAName) {
    constexpr int Renamers = 4;
    std::atomic<int> made = 0;
    std::vector<std::thread> threads;
    threads.reserve(Renamers);
    for (int renamer = 0; renamer < Renamers; ++renamer) {
        threads.emplace_back([&, renamer] {
            const std::string source = "source" + std::to_string(renamer);
            for (int round = 0; round < 50; ++round) {
                Folder.Write(source, source);
                const std::string target = Path("target" + std::to_string(round));
                made += Service.Rename(Path(source), target) == FileError::None ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(made, 50);
}

TEST_F(SystemFilesTest, RemovesAFile) {
    EXPECT_EQ(Service.Remove(Path("file")), FileError::None);
    EXPECT_THAT(Folder.Names(), ElementsAre("folder", "locked"));
}

// What others hold

TEST_F(SystemFilesTest, IsExcludedFromAFileThatAnotherProcessDoesNotShare) {
    const std::string name = Sjis(u8"ソ表");
    Folder.Write(name, "held");
    HoldingProcess holder(Path(name));
    EXPECT_TRUE(Service.Exists(Path(name)));
    EXPECT_EQ(ReadError(Path(name)), FileError::Held);
    EXPECT_EQ(Service.TryOpen(Path(name)), FileError::Held);
    EXPECT_EQ(Service.Overwrite(Path(name), "new"), FileError::Held);
    EXPECT_EQ(Service.Replace(Path("file"), Path(name)), FileError::Held);
    EXPECT_EQ(Service.Remove(Path(name)), FileError::Held);
    holder.Release();
    EXPECT_EQ(Folder.Read(name), "held");
    EXPECT_EQ(Service.Remove(Path(name)), FileError::None);
    ExpectUnchanged();
}

TEST_F(SystemFilesTest, ReadsAndOverwritesButDoesNotReplaceAFileThatAnotherProcessShares) {
    HoldingProcess holder = test::HoldShared(Path("file"));
    EXPECT_EQ(ReadError(Path("file")), FileError::None);
    EXPECT_EQ(Service.TryOpen(Path("file")), FileError::None);
    Folder.Write("new", "new");
    EXPECT_EQ(Service.Replace(Path("new"), Path("file")), FileError::Held);
    EXPECT_EQ(Service.Remove(Path("file")), FileError::Held);
    EXPECT_EQ(Folder.Read("file"), "old");
    bool isMade = false;
    EXPECT_EQ(Service.WriteOver(Path("newer"), "newer", Path("file"), isMade), FileError::Held);
    EXPECT_TRUE(isMade);
    EXPECT_EQ(Service.Overwrite(Path("file"), "written"), FileError::None);
    EXPECT_EQ(Folder.Read("file"), "written");
    holder.Release();
    EXPECT_EQ(Service.Replace(Path("new"), Path("file")), FileError::None);
}

// Locks

TEST_F(SystemFilesTest, ALockIsHadByOneAtATime) {
    for (const char* const name : {"file", "missing"}) {
        const LockResult lock = Service.Lock(Path(name));
        EXPECT_EQ(lock.Error, FileError::None);
        EXPECT_EQ(LockError(Path(name)), FileError::Held);
    }
    EXPECT_EQ(LockError(Path("file")), FileError::None);
    ExpectUnchanged();
}

TEST_F(SystemFilesTest, ALockedFileCanBeReadAndReplaced) {
    const LockResult lock = Service.Lock(Path("file"));
    EXPECT_EQ(ReadError(Path("file")), FileError::None);
    Folder.Write("source", "new");
    EXPECT_EQ(Service.Replace(Path("source"), Path("file")), FileError::None);
    EXPECT_EQ(LockError(Path("file")), FileError::Held);
}

TEST_F(SystemFilesTest, ALockEndsWithItsProcessAndLeavesNothingBehind) {
    HoldingProcess holder("pmx_hold_lock", Path("file"));
    EXPECT_EQ(LockError(Path("file")), FileError::Held);
    holder.Kill();
    EXPECT_EQ(LockError(Path("file")), FileError::None);
    ExpectUnchanged();
}

TEST_F(SystemFilesTest, WhereNoLockCanBeThatIsSaid) {
    EXPECT_EQ(LockError(Path("missing\\file")), FileError::Other);
}

TEST_F(SystemFilesTest, AFileThatIsInThePlaceOfALockStays) {
    Folder.Write("file.lock", "somebody's");
    {
        const LockResult lock = Service.Lock(Path("file"));
        EXPECT_EQ(lock.Error, FileError::None);
        EXPECT_EQ(LockError(Path("file")), FileError::Held);
    }
    EXPECT_EQ(Folder.Read("file.lock"), "somebody's");
}

} // namespace
} // namespace pmx
