#pragma once

#include "docmgr/attribute_table.h"

#include <span>
#include <string>
#include <string_view>

/// The settings of the print-attribute dialog: which control shows which field of the attribute table. No
/// window is needed to read and write them.
namespace pmx::sample {

enum class SettingType { Choice, Flag, Number, Words };

/// One field of the table and its control: a combo box, a check box, or a box for a number or a text.
struct Setting {
    int Control;
    SettingType Type;
    /// Choice: number of the text of its first value. Words: the most bytes it holds.
    int Detail = 0;
    /// Of a choice, flag or number; both included.
    int Lowest = 0;
    int Highest = 0;
    /// Of a number: digits behind the point when it is shown, 0 to 2.
    int Decimals = 0;

    /// The value; a choice's is its place among the texts.
    int (*Get)(const AttributeTable& table) = nullptr;
    void (*Set)(AttributeTable& table, int value) = nullptr;
    /// The same of a text, in code page 932. A text that is too long changes nothing.
    std::string_view (*GetWords)(const AttributeTable& table) = nullptr;
    bool (*SetWords)(AttributeTable& table, std::string_view words) = nullptr;

    /// Whether the table's other settings leave this one a meaning; null is always.
    bool (*IsUsed)(const AttributeTable& table) = nullptr;
};

/// One tab of the dialog: its template, and the settings on it. They all lie in the part of `Part`.
struct SettingsTab {
    Level Part;
    int Template;
    int Title; ///< number of its text
    std::span<const Setting> Settings;
};

/// All tabs, in the order of their parts. A dialog for a level has those of its part and of the parts behind
/// it.
std::span<const SettingsTab> SettingsTabs();

/// Where a level's part begins; it runs to the table's end.
std::size_t PartStart(Level level);

/// A number as it is shown, and as it was typed: nothing when the text is no number or has more digits behind
/// the point than the setting.
std::string ShownNumber(const Setting& setting, int value);
bool ParseNumber(const Setting& setting, std::string_view text, int& value);

} // namespace pmx::sample
