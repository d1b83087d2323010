#include "host/print_attributes.h"

#include "host/PMXPropUI.h"
#include "ui/text.h"

namespace pmx::host {

namespace {

/// Looked up like in the favorites library, at run time; kept loaded.
PmxShowPropUI FindDialog() {
    const HMODULE library = sample::LoadBeside(PMX_PROPUI_LIBRARY);
    if (library == nullptr) {
        return nullptr;
    }
    return reinterpret_cast<PmxShowPropUI>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, PMX_PROPUI_ENTRY)));
}

} // namespace

Outcome ShowPrintAttributes(sample::AttributeTable& table, HWND owner) {
    static const PmxShowPropUI Show = FindDialog();
    if (Show == nullptr) {
        return Outcome::Failed;
    }
    constexpr std::int32_t DocumentKind = 0;
    switch (Show(1, DocumentKind, &table, 1, owner, 0, 0, 0)) {
    case PMX_PROPUI_OK:
        return Outcome::Accepted;
    case PMX_PROPUI_CANCEL:
        return Outcome::Cancelled;
    default:
        return Outcome::Failed;
    }
}

} // namespace pmx::host
