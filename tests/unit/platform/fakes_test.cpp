#include "support/failure_plan.h"
#include "support/fake_clock.h"
#include "support/fake_files.h"

#include <gmock/gmock.h>

namespace pmx::test {
namespace {

using testing::ElementsAre;

enum class Step { First, Second };

TEST(FailurePlan, FailsOnlyTheNamedCall) {
    FailurePlan<Step, int> plan;
    plan.FailAt(Step::First, 2, 7);
    EXPECT_EQ(plan.Next(Step::First), std::nullopt);
    EXPECT_EQ(plan.Next(Step::Second), std::nullopt);
    EXPECT_EQ(plan.Next(Step::First), 7);
    EXPECT_EQ(plan.Next(Step::First), std::nullopt);
    EXPECT_EQ(plan.Calls(Step::First), 3U);
    EXPECT_EQ(plan.Calls(), 4U);
}

TEST(FailurePlan, FailsFromACallOnUntilHealed) {
    FailurePlan<Step, int> plan;
    plan.FailFrom(Step::Second, 2, 7);
    EXPECT_EQ(plan.Next(Step::Second), std::nullopt);
    EXPECT_EQ(plan.Next(Step::Second), 7);
    EXPECT_EQ(plan.Next(Step::Second), 7);
    plan.Heal();
    EXPECT_EQ(plan.Next(Step::Second), std::nullopt);
}

TEST(FailurePlan, CountsAllOperationsTogetherForAnyCall) {
    FailurePlan<Step, int> plan;
    plan.FailAtAny(2, 7);
    EXPECT_EQ(plan.Next(Step::First), std::nullopt);
    EXPECT_EQ(plan.Next(Step::Second), 7);
    EXPECT_EQ(plan.Next(Step::Second), std::nullopt);
}

TEST(FailurePlan, FailsEveryCallFromACallOfAnyKindOn) {
    FailurePlan<Step, int> plan;
    plan.FailFromAny(2, 7);
    EXPECT_EQ(plan.Next(Step::First), std::nullopt);
    EXPECT_EQ(plan.Next(Step::Second), 7);
    EXPECT_EQ(plan.Next(Step::First), 7);
}

TEST(FakeClock, RecordsSleepsAndLetsThingsHappenMeanwhile) {
    FakeClock clock;
    int calls = 0;
    clock.OnSleep = [&] { ++calls; };
    clock.Sleep(1000);
    clock.Sleep(1);
    EXPECT_THAT(clock.Sleeps, ElementsAre(1000, 1));
    EXPECT_EQ(clock.Total(), 1001U);
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace pmx::test
