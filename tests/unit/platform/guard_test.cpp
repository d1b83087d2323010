#include "platform/guard.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace pmx {
namespace {

/// Writes down that it is destroyed.
class Witness {
public:
    explicit Witness(std::string& log) : Log(log) {}
    ~Witness() { Log += "destroyed "; }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;

private:
    std::string& Log;
};

TEST(Guard, RunsWorkThatRaisesNothing) {
    int calls = 0;
    EXPECT_TRUE(RunGuarded([&] { ++calls; }));
    EXPECT_EQ(calls, 1);
}

TEST(Guard, StopsEveryKindOfCppException) {
    EXPECT_FALSE(RunGuarded([] { throw std::runtime_error("raised"); }));
    EXPECT_FALSE(RunGuarded([] { throw 7; }));
}

TEST(Guard, DestroysTheObjectsThatAnExceptionPasses) {
    std::string log;
    EXPECT_FALSE(RunGuarded([&] {
        const Witness witness(log);
        throw std::runtime_error("raised");
    }));
    EXPECT_EQ(log, "destroyed ");
}

TEST(Guard, DoesNotNoticeExceptionsHandledInside) {
    EXPECT_TRUE(RunGuarded([] {
        try {
            throw std::runtime_error("raised");
        } catch (const std::runtime_error&) {
        }
    }));
}

TEST(Guard, CanBeNested) {
    bool inner = true;
    EXPECT_TRUE(RunGuarded([&] { inner = RunGuarded([] { throw 1; }); }));
    EXPECT_FALSE(inner);
}

TEST(Guard, CleansUpAfterWork) {
    std::string log;
    RunThen([&] { log += "work "; }, [&] { log += "cleanup"; });
    EXPECT_EQ(log, "work cleanup");
}

TEST(Guard, CleansUpOnceAndLetsAnExceptionPass) {
    std::string log;
    try {
        RunThen(
            [&] {
                const Witness witness(log);
                throw std::runtime_error("raised");
            },
            [&] { log += "cleanup "; });
        FAIL() << "the exception did not pass";
    } catch (const std::runtime_error& error) {
        log += error.what();
    }
    EXPECT_EQ(log, "destroyed cleanup raised");
}

TEST(Guard, CleansUpEveryLevelThatAnExceptionPasses) {
    std::string log;
    EXPECT_FALSE(RunGuarded([&] {
        RunThen([&] { RunThen([] { throw 1; }, [&] { log += "inner "; }); }, [&] { log += "outer"; });
    }));
    EXPECT_EQ(log, "inner outer");
}

} // namespace
} // namespace pmx
