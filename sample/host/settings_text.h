#pragma once

#include "docmgr/attribute_table.h"

#include <string>
#include <vector>

namespace pmx::host {

struct SettingLine {
    std::wstring Name;
    std::wstring Value;
};

/// What a table says, in words.
std::vector<SettingLine> DescribeSettings(const sample::AttributeTable& table);

} // namespace pmx::host
