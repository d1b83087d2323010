#include "host/settings_text.h"

#include "host/resource.h"
#include "host/text.h"

namespace pmx::host {

namespace {

template <typename Enum>
std::wstring NameOf(unsigned firstId, const sample::Choice<Enum>& choice) {
    return ResourceText(firstId + static_cast<unsigned>(choice.Get()));
}

std::wstring Millimetres(const sample::Margins& margins) {
    return FormatText(IDS_FORMAT_MARGINS, margins.Top / 10, margins.Bottom / 10, margins.Left / 10,
                      margins.Right / 10);
}

} // namespace

std::vector<SettingLine> DescribeSettings(const sample::AttributeTable& table) {
    const auto& document = table.Document;
    std::vector<SettingLine> lines;
    const auto add = [&lines](unsigned nameId, std::wstring value) {
        lines.push_back({ResourceText(nameId), std::move(value)});
    };
    add(IDS_SETTING_PAPER,
        NameOf(IDS_PAPER, document.Paper) + L" " + NameOf(IDS_ORIENTATION, document.PageOrientation));
    add(IDS_SETTING_SIDES, NameOf(IDS_SIDES, document.Sides));
    add(IDS_SETTING_PAGES, FormatText(IDS_FORMAT_PAGES, sample::CountOf(table.Face.Pages)));
    add(IDS_SETTING_BINDING, NameOf(IDS_EDGE, document.Binding));
    add(IDS_SETTING_BOOKLET, NameOf(IDS_BOOKLET, document.BookletKind));
    add(IDS_SETTING_STAPLE, NameOf(IDS_STAPLE, document.StaplePlace));
    add(IDS_SETTING_PUNCH, NameOf(IDS_PUNCH, document.PunchHoles));
    add(IDS_SETTING_FOLD, NameOf(IDS_FOLD, document.Folding));
    add(IDS_SETTING_COLOR, NameOf(IDS_COLOR, document.Color));
    add(IDS_SETTING_COPIES, FormatText(IDS_FORMAT_COPIES, static_cast<int>(document.Copies)));
    add(IDS_SETTING_MARGINS, Millimetres(table.Face.FrontMargins));
    add(IDS_SETTING_NUMBERS, NameOf(IDS_NUMBER_PLACE, document.NumberAt));
    add(IDS_SETTING_COVER, NameOf(IDS_COVER, document.FrontCover.Kind));
    add(IDS_SETTING_TABS, ResourceText(IDS_YES_NO + (table.Section.TabSheet ? 1U : 0U)));
    return lines;
}

} // namespace pmx::host
