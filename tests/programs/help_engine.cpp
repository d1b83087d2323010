// A help engine that shows nothing and keeps what it was asked. Its entry has the number that the system's
// engine gives its own.

#include "programs/help_engine.h"

#include <cstring>

using pmx::test::HelpEngineCall;

namespace {

constexpr std::size_t PlaceOfText = 24;

HelpEngineCall Last;

} // namespace

extern "C" std::uintptr_t HelpEntry(void* caller, const char* file, std::uint32_t command,
                                    const void* record) {
    ++Last.Count;
    Last.Command = command;
    Last.Caller = caller;
    Last.File = file;
    std::memcpy(Last.Record, record, HelpEngineCall::RecordSize);
    const char* text = nullptr;
    std::memcpy(&text, Last.Record + PlaceOfText, sizeof text);
    std::strncpy(Last.Text, text, HelpEngineCall::LongestText);
    return pmx::test::HelpEngineResult;
}

extern "C" const HelpEngineCall* LastHelpCall() {
    return &Last;
}
