#include "support/fake_attribute_dialog.h"

namespace pmx::test {

namespace {

FakeAttributeDialog* Current = nullptr;

} // namespace

FakeAttributeDialog::FakeAttributeDialog() {
    if (Current != nullptr) {
        throw std::logic_error("there is a FakeAttributeDialog already");
    }
    Current = this;
}

FakeAttributeDialog::~FakeAttributeDialog() {
    Current = nullptr;
}

void FakeAttributeDialog::PutInto(MemoryLibraries& libraries) {
    const PmxShowPropUI entry = &FakeAttributeDialog::Show;
    libraries.Present[PMX_PROPUI_LIBRARY].ByName[PMX_PROPUI_ENTRY] =
        reinterpret_cast<DynamicLibrary::Function>(entry);
}

std::int32_t FakeAttributeDialog::Show(std::int32_t mode, std::int32_t kind, void* tablePart,
                                       std::int32_t flag, void* owner, std::int64_t reserved1,
                                       std::int64_t reserved2, std::int64_t reserved3) {
    if (Current == nullptr) {
        throw std::logic_error("the test needs a FakeAttributeDialog");
    }
    Current->Calls.push_back({.Mode = mode,
                              .Kind = kind,
                              .Flag = flag,
                              .Owner = owner,
                              .Reserved = reserved1 + reserved2 + reserved3});
    return Current->User(static_cast<unsigned char*>(tablePart));
}

} // namespace pmx::test
