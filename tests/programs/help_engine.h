#pragma once

#include <cstddef>
#include <cstdint>

namespace pmx::test {

/// What the help engine of the tests was asked last.
struct HelpEngineCall {
    static constexpr std::size_t RecordSize = 72;
    static constexpr std::size_t LongestText = 2047;

    std::uint32_t Count = 0; ///< of all calls
    std::uint32_t Command = 0;
    void* Caller = nullptr;
    const char* File = nullptr; ///< no longer valid
    unsigned char Record[RecordSize]{};
    char Text[LongestText + 1]{}; ///< that the record pointed to
};

/// What the engine's entry returns.
inline constexpr std::uintptr_t HelpEngineResult = 77;

} // namespace pmx::test
