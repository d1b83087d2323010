#include "platform/profile_entries.h"

#include "support/profile_checks.h"

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pmx::test {

namespace {

std::string KeysOf(const ProfileEntries& entries) {
    std::string keys;
    for (const ProfileEntry& entry : entries) {
        keys.append(entry.Key).append("|");
    }
    return keys;
}

TEST(ProfileEntriesTest, AreKeptAsLines) {
    ProfileEntries entries = {{"a", "1"}, {"", ""}, {"b=c", "x\r\ny"}};
    AddNumbered(entries, "n", {"", "2"});
    EXPECT_EQ(entries.Lines(0), "a=1\r\n=\r\nb=c=x\r\ny\r\nn0=\r\nn1=2\r\n");
    EXPECT_EQ(entries.Lines(3), "n0=\r\nn1=2\r\n");
    EXPECT_EQ(entries[2].Key, "b=c");
    EXPECT_EQ(entries[2].Value, "x\r\ny");
    EXPECT_EQ(entries[3].Value, "");
    EXPECT_EQ(entries[4].Key, "n1");
    EXPECT_EQ(entries[4].Value, "2");
}

TEST(ProfileEntriesTest, NumbersCountUpInDecimal) {
    ProfileEntries entries;
    AddNumbered(entries, "Data", std::vector<std::string>(1101, "v"));
    std::string expected;
    for (std::size_t number = 0; number < entries.Size(); ++number) {
        expected.append("Data").append(std::to_string(number)).append("|");
    }
    EXPECT_EQ(KeysOf(entries), expected);
}

TEST(ProfileEntriesTest, NumberedEntriesAreThoseAddedLast) {
    ProfileEntries entries = {{"a", "1"}};
    EXPECT_EQ(entries.FirstNumbered(), 1U);
    AddNumbered(entries, "n", {"1", "2"});
    EXPECT_EQ(entries.FirstNumbered(), 1U);
    AddNumbered(entries, "m", {"1", "2"});
    EXPECT_EQ(entries.FirstNumbered(), 3U);
    entries.Add("b", "2");
    EXPECT_EQ(entries.FirstNumbered(), entries.Size());
}

TEST(ProfileEntriesTest, SpacesAroundNumberedValuesAreNoticed) {
    for (const char* const value : {"x ", " x", " "}) {
        ProfileEntries entries;
        AddNumbered(entries, "n", {"1", value, "2"});
        EXPECT_TRUE(entries.HaveNumberedOuterSpaces()) << value;
        AddNumbered(entries, "m", {"1", "", "x y", "\t"});
        EXPECT_FALSE(entries.HaveNumberedOuterSpaces()) << value;
    }
}

TEST(ProfileEntriesTest, ACopyHasEntriesOfItsOwn) {
    ProfileEntries entries = {{"a", "1"}};
    const ProfileEntries copy = entries;
    entries.Add("b", "2");
    EXPECT_EQ(copy.Lines(0), "a=1\r\n");
    entries = copy;
    EXPECT_EQ(entries.Lines(0), "a=1\r\n");
}

TEST(ProfileEntriesTest, ValuesOfAnyLengthFindRoom) {
    const std::string longValue(100000, 'x');
    ProfileEntries entries;
    AddNumbered(entries, "n", {"1", longValue, "2"});
    EXPECT_EQ(entries[1].Value, longValue);
    EXPECT_EQ(entries[2].Value, "2");
    entries.Add("last", longValue);
    EXPECT_EQ(entries.Lines(0), "n0=1\r\nn1=" + longValue + "\r\nn2=2\r\nlast=" + longValue + "\r\n");
}

} // namespace

} // namespace pmx::test
