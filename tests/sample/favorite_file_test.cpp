#include "docmgr/favorite_file.h"

#include "support/sjis.h"

#include <cstring>

#include <gtest/gtest.h>

namespace pmx::sample {
namespace {

FavoriteContent SampleContent() {
    FavoriteContent content;
    content.Level = 3;
    content.Name = test::Sjis(u8"ミ表ソ 2面");
    content.Table.Document.Copies = std::uint16_t{7};
    content.Table.Page.Overrides.back().Percent = std::uint16_t{50};
    return content;
}

TEST(FavoriteFileTest, ReadsBackWhatItWrote) {
    const FavoriteContent written = SampleContent();
    const auto read = Decode(Encode(written));
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->Level, written.Level);
    EXPECT_EQ(read->Name, written.Name);
    EXPECT_EQ(std::memcmp(&read->Table, &written.Table, TableSize), 0);
}

TEST(FavoriteFileTest, HasTheDocumentedBytes) {
    FavoriteContent content;
    content.Level = 5;
    content.Name = "ab";
    const auto bytes = Encode(content);
    const std::vector<unsigned char> head{'P', 'M', 'X', 'F', 13, 10, 26, 10,  1,
                                          0,   2,   0,   5,   0,  0,  0,  'a', 'b'};
    ASSERT_EQ(bytes.size(), head.size() + TableSize + 4);
    EXPECT_TRUE(std::equal(head.begin(), head.end(), bytes.begin()));
}

TEST(FavoriteFileTest, RefusesEveryShorterFile) {
    const auto bytes = Encode(SampleContent());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(Decode(std::span(bytes).first(size)).has_value()) << size;
    }
}

TEST(FavoriteFileTest, RefusesLongerFile) {
    auto bytes = Encode(SampleContent());
    bytes.push_back(0);
    EXPECT_FALSE(Decode(bytes).has_value());
}

TEST(FavoriteFileTest, RefusesChangeOfAnyByte) {
    auto bytes = Encode(SampleContent());
    for (auto& byte : bytes) {
        byte ^= 0x20;
        EXPECT_FALSE(Decode(bytes).has_value()) << &byte - bytes.data();
        byte ^= 0x20;
    }
    EXPECT_TRUE(Decode(bytes).has_value());
}

TEST(FavoriteFileTest, RefusesWhatOnlyTheContentMakesWrong) {
    for (const std::int32_t level : {-1, 0, 6, 100, 106, 0x7FFFFFFF}) {
        FavoriteContent content;
        content.Level = level;
        EXPECT_FALSE(IsStorable(content)) << level;
        EXPECT_FALSE(Decode(Encode(content)).has_value()) << level;
    }
    FavoriteContent content;
    content.Name = std::string("a\0b", 3);
    EXPECT_FALSE(IsStorable(content));
    EXPECT_FALSE(Decode(Encode(content)).has_value());
}

TEST(FavoriteFileTest, TakesNamesUpToTheLongest) {
    FavoriteContent content;
    EXPECT_TRUE(Decode(Encode(content)).has_value());
    content.Name.assign(MaxNameSize, 'n');
    EXPECT_TRUE(IsStorable(content));
    EXPECT_EQ(Encode(content).size(), MaxFavoriteSize);
    EXPECT_TRUE(Decode(Encode(content)).has_value());
    content.Name += 'n';
    EXPECT_FALSE(IsStorable(content));
    EXPECT_FALSE(Decode(Encode(content)).has_value());
}

} // namespace
} // namespace pmx::sample
