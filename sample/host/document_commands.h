#pragma once

#include "docmgr/attribute_table.h"

#include <span>

namespace pmx::host {

/// A command of the menu that changes the document's settings: what it sets, and whether the table is set so
/// already.
struct DocumentCommand {
    int Id;
    void (*Set)(sample::AttributeTable& table);
    bool (*IsSet)(const sample::AttributeTable& table);
};

std::span<const DocumentCommand> DocumentCommands();

} // namespace pmx::host
