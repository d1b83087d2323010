#include "store/list_merge.h"

#include "support/sjis.h"

#include <gtest/gtest.h>

#include <ctime>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

/// The value of an entry in short: a small letter is a user favorite of that file, `s` and `t` are standard
/// favorites of that name, `?` cannot be read. What follows the letter is what the entry says besides.
std::string ValueOf(const std::string& word) {
    switch (word.front()) {
    case '?':
        return word;
    case 's':
    case 't':
        return std::string("1~") + word.front() + "~101~0~1" + word.substr(1) + "~3";
    default:
        return "0~" + word + "~1~0~14~" + word.front() + ".pmt";
    }
}

std::vector<std::string> ValuesOf(const std::string& words) {
    std::istringstream text(words);
    std::vector<std::string> values;
    for (std::string word; text >> word;) {
        values.push_back(ValueOf(word));
    }
    return values;
}

ListValues ViewsOf(const std::vector<std::string>& values) {
    return {values.begin(), values.end()};
}

std::vector<std::string> Merged(const std::vector<std::string>& base, const std::vector<std::string>& mine,
                                const std::vector<std::string>& theirs) {
    const ListValues merged = MergeValues(ViewsOf(base), ViewsOf(mine), ViewsOf(theirs));
    return {merged.begin(), merged.end()};
}

struct Case {
    const char* What;
    const char* Base;
    const char* Mine;
    const char* Theirs;
    const char* Merged;
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.What;
}

class ListMergeTest : public testing::TestWithParam<Case> {};

TEST_P(ListMergeTest, GivesWhatTheRulesSay) {
    const Case& one = GetParam();
    EXPECT_EQ(Merged(ValuesOf(one.Base), ValuesOf(one.Mine), ValuesOf(one.Theirs)), ValuesOf(one.Merged))
        << one.What << ": " << one.Base << " | " << one.Mine << " | " << one.Theirs;
}

INSTANTIATE_TEST_SUITE_P(
    Members, ListMergeTest,
    testing::Values(
        Case{"nothing has changed", "a b s", "a b s", "a b s", "a b s"},
        Case{"nothing at all", "", "", "", ""}, //
        Case{"theirs has changed one", "a b s", "a b s", "a b1 s1", "a b1 s1"},
        Case{"theirs has deleted one", "a b c", "a b c", "a c", "a c"},
        Case{"theirs has deleted all", "a b c", "a b c", "", ""},
        Case{"mine has changed one", "a b s", "a b1 s1", "a b s", "a b1 s1"},
        Case{"mine has deleted one", "a b c", "a c", "a b c", "a c"},
        Case{"each has changed another one", "a b", "a1 b", "a b1", "a1 b1"},
        Case{"both have changed one", "a b", "a1 b", "a2 b", "a1 b"},
        Case{"mine has changed what theirs has deleted", "a b c", "a b1 c", "a c", "a b1 c"},
        Case{"mine has deleted what theirs has changed", "a b c", "a c", "a b1 c", "a b1 c"},
        Case{"mine has deleted what theirs has moved", "a b c", "a c", "b a c", "a c"},
        Case{"mine has moved what theirs has changed", "a b c", "c a b", "a b c1", "c1 a b"},
        Case{"mine has moved what theirs has deleted", "a b c", "c a b", "a b", "c a b"},
        Case{"theirs has deleted what mine has moved others over", "a b c", "c a b", "b c", "c b"},
        Case{"both have deleted one", "a b c", "a c", "a c", "a c"},
        Case{"both have added standard favorites that are equal", "s", "s s", "s s s", "s s s s"},
        Case{"one of two equal standard favorites has changed", "s s1", "s2 s1", "s s1 s3", "s2 s1 s3"},
        Case{"mine has deleted the first of two alike", "s s1", "s1", "s s2", "s2"},
        Case{"mine has deleted one of two equal ones", "s s", "s", "s s t", "s t"},
        Case{"both have added the same file", "a", "a b1", "a b2 c", "a b1 c"},
        Case{"two entries of one file", "a a1", "a a2", "a3 a1 b", "a3 a2 b"},
        Case{"what could not be read is dropped", "a ?x b", "a b", "a ?x b c", "a b c"},
        Case{"what nobody knew and cannot be read is kept", "a b", "a b1", "a ?x b", "a ?x b1"},
        Case{"mine cannot be read again", "a ?x", "a ?x", "a ?x b", "a ?x b"}));

INSTANTIATE_TEST_SUITE_P(
    Order, ListMergeTest,
    testing::Values(
        Case{"theirs has moved one", "a b c", "a b1 c", "c a b", "c a b1"},
        Case{"mine has moved one", "a b c", "c a b", "a b1 c", "c a b1"},
        Case{"both have moved one", "a b c", "c a b", "b a c", "c a b"},
        Case{"mine has added at the end, theirs moves", "a b", "a b c", "b a", "b a c"},
        Case{"both have added at the end", "a b", "a b c", "a b d e", "a b d e c"},
        Case{"mine has added in the middle", "a b", "a c b", "a d b", "a d c b"},
        Case{"mine has added in front", "a b", "c a b", "d a b", "d c a b"},
        Case{"theirs has added to a list that mine has moved", "a b c", "c b a", "a d e b c f",
             "c f b a d e"},
        Case{"theirs has added behind what mine has deleted", "a b c", "a c", "a b d e c", "a d e c"},
        Case{"the same, in a list that mine has moved", "a b c d", "d a c", "a b e c d", "d a e c"},
        Case{"theirs has added in front", "a b", "a b1", "c d a b", "c d a b1"},
        Case{"the same, in a list that mine has moved", "a b", "b a", "c d a b", "b a c d"},
        Case{"the same, behind what mine has deleted", "a b c", "c b", "a d b c", "c b d"},
        Case{"theirs has added behind one that it has added", "a b", "b a s", "a c d b", "b a c d s"},
        Case{"mine has deleted all", "a b", "", "a c b", "c"},
        Case{"mine had nothing", "", "a", "b c", "b c a"}));

TEST(ListMerge, KnowsAFileWhateverTheCaseOfItsNameAndItsEnd) {
    EXPECT_EQ(Merged({"0~a~1~0~14~Note.pmt", "0~b~1~0~14~b.pmt"}, {"0~a~1~0~14~Note.pmt"},
                     {"0~a~1~1~14~NOTE.PMT. ", "0~b~1~0~14~b.pmt"}),
              std::vector<std::string>{"0~a~1~1~14~NOTE.PMT. "});
    const std::string small = "0~x~1~0~14~" + Sjis(u8"ヂ") + ".pmt"; // differ in the value of a letter
    const std::string large = "0~x~1~0~14~" + Sjis(u8"ア") + ".pmt";
    EXPECT_EQ(Merged({small}, {}, {small, large}), std::vector<std::string>{large});
}

TEST(ListMerge, KnowsAStandardFavoriteByNameAndNumber) {
    const std::string two = "1~x~101~0~1~2";
    const std::string three = "1~x~101~0~1~3";
    const std::string other = "1~X~101~0~1~3";
    EXPECT_EQ(Merged({two, three, other}, {two}, {two, three, other}), std::vector<std::string>{two});
    EXPECT_EQ(Merged({two}, {two}, {"1~x~101~1~9~2", three}),
              (std::vector<std::string>{"1~x~101~1~9~2", three}));
}

TEST(ListMerge, TakesWhatSaysTheSameForUnchanged) {
    const std::string asInFile = "5~ Name ~01~7~+14~ a.pmt";
    EXPECT_EQ(Merged({asInFile}, {"1~Name~1~1~14~a.pmt"}, {"0~Other~1~0~14~a.pmt"}),
              std::vector<std::string>{"0~Other~1~0~14~a.pmt"});
    EXPECT_EQ(Merged({asInFile}, {"1~Name~1~1~14~a.pmt"}, {asInFile, ValueOf("b")}),
              (std::vector<std::string>{"1~Name~1~1~14~a.pmt", ValueOf("b")}));
}

#ifndef _WIN32 // whose clock counts the time of other programs, too

/// Processor time of merging so many entries of each kind, all of them moved.
std::clock_t CostOf(int count) {
    std::vector<std::string> base;
    for (int number = 0; number < count; ++number) {
        base.push_back("0~a~1~0~14~" + std::to_string(number) + ".pmt");
        base.push_back(ValueOf("s"));
        base.push_back(ValueOf("?x"));
    }
    const std::vector<std::string> mine(base.rbegin(), base.rend());
    std::vector<std::string> theirs = base;
    theirs.insert(theirs.end(), base.size(), ValueOf("s"));
    const std::clock_t begin = std::clock();
    EXPECT_EQ(Merged(base, mine, theirs).size(), theirs.size());
    return std::clock() - begin;
}

TEST(ListMerge, CostsTheSameForEachEntryHoweverManyThereAre) {
    EXPECT_LT(CostOf(8'000), 10 * CostOf(2'000) + CLOCKS_PER_SEC / 20);
}

#endif

} // namespace
} // namespace pmx::test
