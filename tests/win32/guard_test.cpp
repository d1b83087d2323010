#include "platform/guard.h"

#include "platform/win32/guard_thunk.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include <windows.h>

namespace pmx {
namespace {

constexpr DWORD CustomCode = 0xE0001234;
constexpr DWORD ForeignCppException = 0xE06D7363;

void Raise(DWORD code) {
    const ULONG_PTR arguments[3] = {0x19930520, 0, 0};
    RaiseException(code, 0, 3, arguments);
}

void WriteThroughNull() {
    volatile int* const address = nullptr;
    *address = 1;
}

void DivideByZero() {
    volatile int number = 7;
    volatile int zero = 0;
    number = number / zero; // NOLINT(clang-analyzer-core.DivideZero): the fault that is to be stopped
}

TEST(GuardOfWindows, StopsStructuredExceptionsOfAnyKind) {
    EXPECT_FALSE(RunGuarded([] { Raise(CustomCode); }));
    EXPECT_FALSE(RunGuarded([] { Raise(ForeignCppException); }));
    EXPECT_FALSE(RunGuarded(WriteThroughNull));
    EXPECT_FALSE(RunGuarded(DivideByZero));
}

TEST(GuardOfWindows, KeepsTheCallersStateOverAnException) {
    std::string before = "kept";
    int failures = 0;
    for (int round = 0; round < 1000; ++round) {
        const std::string local = before + std::to_string(round);
        failures += RunGuarded([] { Raise(CustomCode); }) ? 0 : 1;
        ASSERT_EQ(local, before + std::to_string(round));
    }
    EXPECT_EQ(failures, 1000);
}

TEST(GuardOfWindows, LeavesCppExceptionsWorkingAfterwards) {
    EXPECT_FALSE(RunGuarded(WriteThroughNull));
    EXPECT_THROW(throw std::runtime_error("raised"), std::runtime_error);
    EXPECT_FALSE(RunGuarded([] { throw std::runtime_error("raised"); }));
}

TEST(GuardOfWindows, StopsExceptionsThroughNestedGuards) {
    bool inner = true;
    EXPECT_FALSE(RunGuarded([&] {
        inner = RunGuarded([] { Raise(CustomCode); });
        WriteThroughNull();
    }));
    EXPECT_FALSE(inner);
}

LONG CALLBACK ContinueCustom(EXCEPTION_POINTERS* exception) {
    const bool isCustom = exception->ExceptionRecord->ExceptionCode == CustomCode;
    return isCustom ? EXCEPTION_CONTINUE_EXECUTION : EXCEPTION_CONTINUE_SEARCH;
}

TEST(GuardOfWindows, DoesNotNoticeAnExceptionThatTheHostHandles) {
    void* const handler = AddVectoredExceptionHandler(1, ContinueCustom);
    bool wentOn = false;
    EXPECT_TRUE(RunGuarded([&] {
        Raise(CustomCode);
        wentOn = true;
    }));
    RemoveVectoredExceptionHandler(handler);
    EXPECT_TRUE(wentOn);
}

TEST(GuardOfWindows, CleansUpWhenAStructuredExceptionPasses) {
    std::string log;
    EXPECT_FALSE(RunGuarded([&] {
        RunThen([&] { RunThen(WriteThroughNull, [&] { log += "inner "; }); }, [&] { log += "outer"; });
        log += "not reached";
    }));
    EXPECT_EQ(log, "inner outer");
}

TEST(GuardOfWindows, CleansUpForEveryKindOfException) {
    for (const DWORD code : {CustomCode, ForeignCppException}) {
        int cleanups = 0;
        EXPECT_FALSE(RunGuarded([&] { RunThen([&] { Raise(code); }, [&] { ++cleanups; }); }));
        EXPECT_EQ(cleanups, 1);
    }
}

void ThrowInteger(void*) {
    throw 1;
}

void CountUp(void* number) {
    ++*static_cast<int*>(number);
}

void ThrowThroughCleanup(void* cleanups) {
    win32::CallThen(ThrowInteger, nullptr, CountUp, cleanups);
}

TEST(CallThen, CleansUpWhenACallerHandlesACppExceptionAsAStructuredOne) {
    int cleanups = 0;
    EXPECT_FALSE(win32::CallProtected(ThrowThroughCleanup, &cleanups));
    EXPECT_EQ(cleanups, 1);
}

TEST(GuardOfWindows, DoesNotNoticeAStructuredExceptionThatIsHandledInItsFrame) {
    bool handled = false;
    EXPECT_TRUE(
        RunGuarded([&] { handled = !win32::CallProtected([](void*) { Raise(CustomCode); }, nullptr); }));
    EXPECT_TRUE(handled);
}

} // namespace
} // namespace pmx
