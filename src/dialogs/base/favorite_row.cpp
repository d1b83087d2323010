#include "dialogs/base/favorite_row.h"

#include "res/ids.h"
#include "store/levels.h"

namespace pmx {

namespace {

struct LevelText {
    std::int32_t Level;
    ResourceId Text;
};

constexpr LevelText LevelTexts[] = {
    {PMX_LEVEL_DOCUMENT, text::LevelDocument}, {PMX_LEVEL_SECTION, text::LevelSection},
    {PMX_LEVEL_SHEET, text::LevelSheet},       {PMX_LEVEL_FACE, text::LevelFace},
    {PMX_LEVEL_PAGE, text::LevelPage},
};

std::string TextOf(const Resources& strings, ResourceId id) {
    return strings.StringOf(id).value_or(std::string());
}

std::string CategoryOf(std::int32_t level, const Resources& strings) {
    const std::int32_t category = IsStandardLevel(level) ? level - PMX_LEVEL_STANDARD : level;
    for (const LevelText& line : LevelTexts) {
        if (line.Level == category) {
            return TextOf(strings, line.Text);
        }
    }
    return {};
}

ToolbarMark MarkOf(const CPMXTemplUIListData& record) {
    if (!IsDocumentLevel(record.GetLevel())) {
        return ToolbarMark::Unavailable;
    }
    return record.GetToolbar() == 1 ? ToolbarMark::Ticked : ToolbarMark::Empty;
}

} // namespace

FavoriteRow FormatRow(const CPMXTemplUIListData& record, const Resources& strings) {
    return {.Mark = MarkOf(record),
            .Name = record.GetName(),
            .Category = CategoryOf(record.GetLevel(), strings),
            .Kind = TextOf(strings, record.IsStandard() ? text::KindStandard : text::KindUser)};
}

} // namespace pmx
