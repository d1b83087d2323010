#pragma once

#include "host/PMXPropUI.h"
#include "support/memory_services.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <vector>

namespace pmx::test {

/// The host's print-attribute dialog of the tests, as long as this object lives. One at a time.
class FakeAttributeDialog {
public:
    struct Call {
        std::int32_t Mode = 0;
        std::int32_t Kind = -1;
        std::int32_t Flag = 0;
        void* Owner = nullptr;
        std::int64_t Reserved = 0; ///< the three reserved arguments, added up
    };

    FakeAttributeDialog();
    ~FakeAttributeDialog();
    FakeAttributeDialog(const FakeAttributeDialog&) = delete;
    FakeAttributeDialog& operator=(const FakeAttributeDialog&) = delete;

    std::vector<Call> Calls;

    /// What the user does: may change the part of the table, and gives the result.
    std::function<std::int32_t(unsigned char* tablePart)> User = [](unsigned char*) { return PMX_PROPUI_OK; };

    /// The library with this dialog, under the name that it is looked up by.
    static void PutInto(MemoryLibraries& libraries);

    static std::int32_t Show(std::int32_t mode, std::int32_t kind, void* tablePart, std::int32_t flag,
                             void* owner, std::int64_t reserved1, std::int64_t reserved2,
                             std::int64_t reserved3);
};

} // namespace pmx::test
