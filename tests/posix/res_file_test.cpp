#include "platform/posix/res_file.h"

#include "res/embedded_resources.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace pmx::posix {
namespace {

using FileBytes = std::vector<std::byte>;

void AddWord(FileBytes& bytes, unsigned value) {
    bytes.push_back(static_cast<std::byte>(value & 0xFF));
    bytes.push_back(static_cast<std::byte>(value >> 8));
}

void AddLong(FileBytes& bytes, unsigned value) {
    AddWord(bytes, value & 0xFFFF);
    AddWord(bytes, value >> 16);
}

void AddResource(FileBytes& bytes, unsigned type, unsigned id, unsigned language, const FileBytes& data) {
    AddLong(bytes, static_cast<unsigned>(data.size()));
    AddLong(bytes, 32);
    AddWord(bytes, 0xFFFF);
    AddWord(bytes, type);
    AddWord(bytes, 0xFFFF);
    AddWord(bytes, id);
    AddLong(bytes, 0);
    AddWord(bytes, 0);
    AddWord(bytes, language);
    AddLong(bytes, 0);
    AddLong(bytes, 0);
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
}

FileBytes EmptyFile() {
    FileBytes bytes;
    AddResource(bytes, 0, 0, 0, {});
    return bytes;
}

/// Strings 32 and 34 of block 3: "ab" and "表".
FileBytes StringBlock() {
    FileBytes block;
    AddWord(block, 2);
    AddWord(block, 'a');
    AddWord(block, 'b');
    AddWord(block, 0);
    AddWord(block, 1);
    AddWord(block, 0x8868);
    for (int index = 3; index < 16; ++index) {
        AddWord(block, 0);
    }
    return block;
}

FileBytes Sample() {
    FileBytes bytes = EmptyFile();
    AddResource(bytes, 6, 3, 0x0411, StringBlock());
    AddResource(bytes, 24, 2, 0, FileBytes(5, std::byte{7}));
    AddResource(bytes, 24, 2, 0x0411, FileBytes(3, std::byte{8}));
    return bytes;
}

TEST(ResFile, FindsResourcesByTypeNumberAndLanguage) {
    const FileBytes bytes = Sample();
    const auto file = ResFile::Read(bytes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Find(ResourceType::Manifest, 2).size(), 5U);
    EXPECT_EQ(file->Find(ResourceType::Manifest, 2, ResourceLanguage::Japanese).size(), 3U);
    EXPECT_TRUE(file->Find(ResourceType::Manifest, 2, ResourceLanguage::English).empty());
    EXPECT_TRUE(file->Find(ResourceType::Manifest, 1).empty());
    EXPECT_TRUE(file->Find(ResourceType::Dialog, 2).empty());
    EXPECT_EQ(file->Ids(ResourceType::Manifest), (std::vector<int>{2, 2}));
}

TEST(ResFile, FindsStringsByNumber) {
    const FileBytes bytes = Sample();
    const auto file = ResFile::Read(bytes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->StringOf(32), u"ab");
    EXPECT_EQ(file->StringOf(33), std::nullopt);
    EXPECT_EQ(file->StringOf(34), u"表");
    EXPECT_EQ(file->StringOf(47), std::nullopt);
    EXPECT_EQ(file->StringOf(48), std::nullopt);
    EXPECT_EQ(file->StringOf(-1), std::nullopt);
}

TEST(ResFile, HasNoStringWhereItsBlockIsCutOff) {
    const FileBytes whole = StringBlock();
    for (std::size_t length = 0; length < 12; ++length) {
        FileBytes bytes = EmptyFile();
        AddResource(bytes, 6, 3, 0x0411,
                    FileBytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
        const auto file = ResFile::Read(bytes);
        ASSERT_TRUE(file);
        EXPECT_EQ(file->StringOf(34), std::nullopt) << length;
    }
}

TEST(ResFile, PassesOverResourcesWithNames) {
    FileBytes bytes = EmptyFile();
    AddLong(bytes, 0);
    AddLong(bytes, 32);
    for (const unsigned unit : {unsigned{'A'}, 0U, unsigned{'B'}, 0U}) {
        AddWord(bytes, unit);
    }
    AddLong(bytes, 0);
    AddLong(bytes, 0);
    AddLong(bytes, 0);
    AddLong(bytes, 0);
    AddResource(bytes, 2, 9, 0, FileBytes(1));
    const auto file = ResFile::Read(bytes);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Find(ResourceType::Bitmap, 9).size(), 1U);
}

/// Each beginning is copied to memory of its own length, where a sanitizer sees any read beyond it.
TEST(ResFile, RefusesAFileCutOffInsideAResource) {
    FileBytes whole = EmptyFile();
    std::set<std::size_t> complete{whole.size()};
    for (const std::size_t size : {std::size_t{0}, std::size_t{5}, std::size_t{8}}) {
        const std::size_t end = whole.size() + 32 + size; // padding may be missing at the end of a file
        AddResource(whole, 24, 2, 0, FileBytes(size));
        for (std::size_t length = end; length <= whole.size(); ++length) {
            complete.insert(length);
        }
    }
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const FileBytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(ResFile::Read(bytes).has_value(), complete.contains(length)) << length;
    }
}

TEST(ResFile, RefusesSizesThatContradictTheFile) {
    for (const std::size_t position : {std::size_t{32}, std::size_t{36}}) {
        FileBytes bytes = Sample();
        for (std::size_t index = 0; index < 4; ++index) {
            bytes[position + index] = std::byte{0xFF};
        }
        EXPECT_FALSE(ResFile::Read(bytes)) << position;
    }
}

TEST(ResFile, RefusesOtherFiles) {
    EXPECT_FALSE(ResFile::Read({}));
    EXPECT_FALSE(ResFile::Read(FileBytes(64)));
    EXPECT_FALSE(ResFile::Read(FileBytes(64, std::byte{0xFF})));
}

TEST(ResFile, ReadsTheLibrarysOwnResources) {
    const auto file = ResFile::Read(EmbeddedResources());
    ASSERT_TRUE(file);
    EXPECT_EQ(file->Ids(ResourceType::Dialog), (std::vector<int>{100, 101, 102, 103, 104}));
}

} // namespace
} // namespace pmx::posix
