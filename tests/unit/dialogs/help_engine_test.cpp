#include "dialogs/base/help_engine.h"

#include "support/memory_services.h"

#include <gtest/gtest.h>

#include <cstring>

namespace pmx {
namespace {

const std::string RegistryKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
const std::string RegisteredPath = "C:\\windows\\system32\\hhctrl.ocx";
const std::string EngineName = "hhctrl.ocx";

struct EngineCall {
    WindowHandle Caller = WindowHandle::None;
    const char* File = "";
    std::uint32_t Command = 0;
    std::uintptr_t Record = 0;
};
EngineCall LastCall;

std::uintptr_t Engine(WindowHandle caller, const char* file, std::uint32_t command, std::uintptr_t record) {
    LastCall = {caller, file, command, record};
    return 77;
}

class LazyHelpEngineTest : public testing::Test {
protected:
    std::uintptr_t CallEngine() {
        return Help.Call(WindowHandle{5}, nullptr, HelpEngine::DisplayTextPopup, Note);
    }

    void AddEngine(const std::string& name) {
        Libraries.Present[name].ByOrdinal[14] = reinterpret_cast<DynamicLibrary::Function>(&Engine);
    }

    test::MemoryRegistry Registry;
    test::MemoryLibraries Libraries;
    HelpNote Note;
    LazyHelpEngine Help{Registry, Libraries};
};

using Names = std::vector<std::string>;

TEST(HelpNoteTest, HasTheLayoutThatTheEngineReads) {
    HelpNote note;
    note.Position = {.X = 0x11, .Y = 0x22};
    const auto longAt = [&note](std::size_t offset) {
        std::int32_t value = 0;
        std::memcpy(&value, reinterpret_cast<const char*>(&note) + offset, sizeof value);
        return value;
    };
    ASSERT_EQ(sizeof note, 72U);
    EXPECT_EQ(longAt(0), 72);
    EXPECT_EQ(longAt(32), 0x11);
    EXPECT_EQ(longAt(36), 0x22);
    EXPECT_EQ(longAt(40), -1);
    EXPECT_EQ(longAt(44), 0x00F0FFFF);
    EXPECT_EQ(longAt(48), 10);
    EXPECT_EQ(longAt(52), 5);
    EXPECT_EQ(longAt(56), 5);
    EXPECT_EQ(longAt(60), 10);
}

TEST_F(LazyHelpEngineTest, LoadsNothingBeforeTheFirstCall) {
    EXPECT_EQ(Registry.Asked, Names());
    EXPECT_EQ(Libraries.Asked, Names());
}

TEST_F(LazyHelpEngineTest, LoadsTheRegisteredEngineAndPassesTheCallOn) {
    Registry.Defaults[RegistryKey] = RegisteredPath;
    AddEngine(RegisteredPath);
    EXPECT_EQ(CallEngine(), 77U);
    EXPECT_EQ(LastCall.Caller, WindowHandle{5});
    EXPECT_EQ(LastCall.File, nullptr);
    EXPECT_EQ(LastCall.Command, 14U);
    EXPECT_EQ(LastCall.Record, reinterpret_cast<std::uintptr_t>(&Note));
    EXPECT_EQ(Libraries.Asked, Names{RegisteredPath});
}

TEST_F(LazyHelpEngineTest, LoadsByNameWhenNothingIsRegistered) {
    AddEngine(EngineName);
    EXPECT_EQ(CallEngine(), 77U);
    EXPECT_EQ(Registry.Asked, Names{RegistryKey});
    EXPECT_EQ(Libraries.Asked, Names{EngineName});
}

TEST_F(LazyHelpEngineTest, LoadsByNameWhenTheRegisteredEngineCannotBeLoaded) {
    Registry.Defaults[RegistryKey] = RegisteredPath;
    AddEngine(EngineName);
    EXPECT_EQ(CallEngine(), 77U);
    EXPECT_EQ(Libraries.Asked, (Names{RegisteredPath, EngineName}));
}

TEST_F(LazyHelpEngineTest, LooksOnlyOnceForAnEngineThatIsThere) {
    AddEngine(EngineName);
    CallEngine();
    EXPECT_EQ(CallEngine(), 77U);
    EXPECT_EQ(Registry.Asked.size(), 1U);
    EXPECT_EQ(Libraries.Asked.size(), 1U);
    EXPECT_EQ(Libraries.Loaded, 1);
}

TEST_F(LazyHelpEngineTest, LooksOnlyOnceForAnEngineThatIsMissing) {
    EXPECT_EQ(CallEngine(), 0U);
    AddEngine(EngineName);
    EXPECT_EQ(CallEngine(), 0U);
    EXPECT_EQ(Registry.Asked.size(), 1U);
    EXPECT_EQ(Libraries.Asked.size(), 1U);
}

TEST_F(LazyHelpEngineTest, AnEngineWithoutTheEntryIsNoEngine) {
    Libraries.Present[EngineName].ByOrdinal[15] = reinterpret_cast<DynamicLibrary::Function>(&Engine);
    EXPECT_EQ(CallEngine(), 0U);
    AddEngine(EngineName);
    EXPECT_EQ(CallEngine(), 0U);
    EXPECT_EQ(Libraries.Asked.size(), 1U);
}

} // namespace
} // namespace pmx
