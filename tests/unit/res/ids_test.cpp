#include "res/ids.h"
#include "res/resource_ids.h"

#include <gtest/gtest.h>

namespace pmx {
namespace {

struct Numbers {
    const char* Name;
    int InScript;
    int InCode;
};

constexpr Numbers All[] = {
    {"IDD_EDITOR", IDD_EDITOR, dialog::Editor},
    {"IDD_CREATE_FAVORITE", IDD_CREATE_FAVORITE, dialog::CreateFavorite},
    {"IDD_ICON_PICKER", IDD_ICON_PICKER, dialog::IconPicker},
    {"IDD_REGISTER_FAVORITE", IDD_REGISTER_FAVORITE, dialog::RegisterFavorite},
    {"IDD_BASIC_LIST", IDD_BASIC_LIST, dialog::BasicList},
    {"IDB_SMALL_ICONS", IDB_SMALL_ICONS, bitmap::SmallIcons},
    {"IDB_LARGE_ICONS", IDB_LARGE_ICONS, bitmap::LargeIcons},
    {"IDB_STATE_IMAGES", IDB_STATE_IMAGES, bitmap::StateImages},
    {"IDC_SEPARATOR", IDC_SEPARATOR, control::Separator},
    {"IDC_CURRENT_ICON_LABEL", IDC_CURRENT_ICON_LABEL, control::CurrentIconLabel},
    {"IDC_CHANGE_ICON", IDC_CHANGE_ICON, control::ChangeIcon},
    {"IDC_EDITOR_NAME_LABEL", IDC_EDITOR_NAME_LABEL, control::EditorNameLabel},
    {"IDC_EDITOR_LIST_LABEL", IDC_EDITOR_LIST_LABEL, control::EditorListLabel},
    {"IDC_EDITOR_UP", IDC_EDITOR_UP, control::EditorUp},
    {"IDC_EDITOR_DOWN", IDC_EDITOR_DOWN, control::EditorDown},
    {"IDC_EDITOR_IMPORT", IDC_EDITOR_IMPORT, control::EditorImport},
    {"IDC_EDITOR_EXPORT", IDC_EDITOR_EXPORT, control::EditorExport},
    {"IDC_EDITOR_EDIT", IDC_EDITOR_EDIT, control::EditorEdit},
    {"IDC_EDITOR_DELETE", IDC_EDITOR_DELETE, control::EditorDelete},
    {"IDC_EDITOR_NEW", IDC_EDITOR_NEW, control::EditorNew},
    {"IDC_EDITOR_COPY", IDC_EDITOR_COPY, control::EditorCopy},
    {"IDC_EDITOR_LIST", IDC_EDITOR_LIST, control::EditorList},
    {"IDC_EDITOR_ICON", IDC_EDITOR_ICON, control::EditorIcon},
    {"IDC_EDITOR_NAME", IDC_EDITOR_NAME, control::EditorName},
    {"IDC_CREATE_NAME_LABEL", IDC_CREATE_NAME_LABEL, control::CreateNameLabel},
    {"IDC_CREATE_LEVEL_LINE", IDC_CREATE_LEVEL_LINE, control::CreateLevelLine},
    {"IDC_CREATE_LEVEL_LABEL", IDC_CREATE_LEVEL_LABEL, control::CreateLevelLabel},
    {"IDC_CREATE_PROMPT", IDC_CREATE_PROMPT, control::CreatePrompt},
    {"IDC_CREATE_LEVEL_DOCUMENT", IDC_CREATE_LEVEL_DOCUMENT, control::CreateLevelDocument},
    {"IDC_CREATE_LEVEL_SECTION", IDC_CREATE_LEVEL_SECTION, control::CreateLevelSection},
    {"IDC_CREATE_LEVEL_SHEET", IDC_CREATE_LEVEL_SHEET, control::CreateLevelSheet},
    {"IDC_CREATE_LEVEL_FACE", IDC_CREATE_LEVEL_FACE, control::CreateLevelFace},
    {"IDC_CREATE_LEVEL_PAGE", IDC_CREATE_LEVEL_PAGE, control::CreateLevelPage},
    {"IDC_CREATE_NAME", IDC_CREATE_NAME, control::CreateName},
    {"IDC_PICKER_LABEL", IDC_PICKER_LABEL, control::PickerLabel},
    {"IDC_PICKER_ICONS", IDC_PICKER_ICONS, control::PickerIcons},
    {"IDC_REGISTER_ICON", IDC_REGISTER_ICON, control::RegisterIcon},
    {"IDC_REGISTER_NAME_LABEL", IDC_REGISTER_NAME_LABEL, control::RegisterNameLabel},
    {"IDC_REGISTER_NAME", IDC_REGISTER_NAME, control::RegisterName},
    {"IDC_REGISTER_CHANGE_ICON", IDC_REGISTER_CHANGE_ICON, control::RegisterChangeIcon},
    {"IDC_BASIC_NAME_LABEL", IDC_BASIC_NAME_LABEL, control::BasicNameLabel},
    {"IDC_BASIC_LIST_LABEL", IDC_BASIC_LIST_LABEL, control::BasicListLabel},
    {"IDC_BASIC_DELETE", IDC_BASIC_DELETE, control::BasicDelete},
    {"IDC_BASIC_LIST", IDC_BASIC_LIST, control::BasicList},
    {"IDC_BASIC_ICON", IDC_BASIC_ICON, control::BasicIcon},
    {"IDC_BASIC_NAME", IDC_BASIC_NAME, control::BasicName},
    {"IDC_BASIC_UP", IDC_BASIC_UP, control::BasicUp},
    {"IDC_BASIC_DOWN", IDC_BASIC_DOWN, control::BasicDown},
    {"IDS_EDITOR_FAVORITE_UNREADABLE", IDS_EDITOR_FAVORITE_UNREADABLE, text::EditorFavoriteUnreadable},
    {"IDS_FAVORITE_INFO_FAILED", IDS_FAVORITE_INFO_FAILED, text::FavoriteInfoFailed},
    {"IDS_FILE_NOT_CREATED", IDS_FILE_NOT_CREATED, text::FileNotCreated},
    {"IDS_ATTRIBUTE_DIALOG_MISSING", IDS_ATTRIBUTE_DIALOG_MISSING, text::AttributeDialogMissing},
    {"IDS_NO_FILE_NAME", IDS_NO_FILE_NAME, text::NoFileName},
    {"IDS_IMPORT_FAILED", IDS_IMPORT_FAILED, text::ImportFailed},
    {"IDS_STANDARD_NOT_EDITABLE", IDS_STANDARD_NOT_EDITABLE, text::StandardNotEditable},
    {"IDS_ATTRIBUTE_DIALOG_FAILED", IDS_ATTRIBUTE_DIALOG_FAILED, text::AttributeDialogFailed},
    {"IDS_ATTRIBUTE_TABLE_FAILED", IDS_ATTRIBUTE_TABLE_FAILED, text::AttributeTableFailed},
    {"IDS_STANDARD_NOT_OVERWRITABLE", IDS_STANDARD_NOT_OVERWRITABLE, text::StandardNotOverwritable},
    {"IDS_IMPORTED_NOT_OVERWRITABLE", IDS_IMPORTED_NOT_OVERWRITABLE, text::ImportedNotOverwritable},
    {"IDS_REGISTER_STANDARD_NOT_OVERWRITABLE", IDS_REGISTER_STANDARD_NOT_OVERWRITABLE,
     text::RegisterStandardNotOverwritable},
    {"IDS_REGISTER_ASK_OVERWRITE", IDS_REGISTER_ASK_OVERWRITE, text::RegisterAskOverwrite},
    {"IDS_CREATE_ASK_OVERWRITE", IDS_CREATE_ASK_OVERWRITE, text::CreateAskOverwrite},
    {"IDS_OUT_OF_MEMORY", IDS_OUT_OF_MEMORY, text::OutOfMemory},
    {"IDS_RENAME_NAME_EXISTS", IDS_RENAME_NAME_EXISTS, text::RenameNameExists},
    {"IDS_NAME_REGISTERED", IDS_NAME_REGISTERED, text::NameRegistered},
    {"IDS_CREATE_NAME_MISSING", IDS_CREATE_NAME_MISSING, text::CreateNameMissing},
    {"IDS_REGISTER_NAME_MISSING", IDS_REGISTER_NAME_MISSING, text::RegisterNameMissing},
    {"IDS_BASIC_FAVORITE_UNREADABLE", IDS_BASIC_FAVORITE_UNREADABLE, text::BasicFavoriteUnreadable},
    {"IDS_TOOLBAR_FULL", IDS_TOOLBAR_FULL, text::ToolbarFull},
    {"IDS_CREATE_NAME_EXISTS", IDS_CREATE_NAME_EXISTS, text::CreateNameExists},
    {"IDS_COLUMN_NAME", IDS_COLUMN_NAME, text::ColumnName},
    {"IDS_COLUMN_CATEGORY", IDS_COLUMN_CATEGORY, text::ColumnCategory},
    {"IDS_COLUMN_KIND", IDS_COLUMN_KIND, text::ColumnKind},
    {"IDS_COLUMN_TOOLBAR", IDS_COLUMN_TOOLBAR, text::ColumnToolbar},
    {"IDS_TOOLBAR_ENABLED", IDS_TOOLBAR_ENABLED, text::ToolbarEnabled},
    {"IDS_BASIC_COLUMN_NAME", IDS_BASIC_COLUMN_NAME, text::BasicColumnName},
    {"IDS_KIND_STANDARD", IDS_KIND_STANDARD, text::KindStandard},
    {"IDS_KIND_USER", IDS_KIND_USER, text::KindUser},
    {"IDS_LEVEL_DOCUMENT", IDS_LEVEL_DOCUMENT, text::LevelDocument},
    {"IDS_LEVEL_SECTION", IDS_LEVEL_SECTION, text::LevelSection},
    {"IDS_LEVEL_SHEET", IDS_LEVEL_SHEET, text::LevelSheet},
    {"IDS_LEVEL_FACE", IDS_LEVEL_FACE, text::LevelFace},
    {"IDS_LEVEL_PAGE", IDS_LEVEL_PAGE, text::LevelPage},
    {"IDS_EDITOR_TITLE", IDS_EDITOR_TITLE, text::EditorTitle},
    {"IDS_CREATE_TITLE_NEW", IDS_CREATE_TITLE_NEW, text::CreateTitleNew},
    {"IDS_CREATE_TITLE_GIVEN_LEVEL", IDS_CREATE_TITLE_GIVEN_LEVEL, text::CreateTitleGivenLevel},
    {"IDS_FILE_PATTERN", IDS_FILE_PATTERN, text::FilePattern},
    {"IDS_PICKER_TITLE_FOR", IDS_PICKER_TITLE_FOR, text::PickerTitleFor},
    {"IDS_PICKER_TITLE", IDS_PICKER_TITLE, text::PickerTitle},
    {"IDS_CREATE_PROMPT_NEW", IDS_CREATE_PROMPT_NEW, text::CreatePromptNew},
    {"IDS_CREATE_PROMPT_GIVEN_LEVEL", IDS_CREATE_PROMPT_GIVEN_LEVEL, text::CreatePromptGivenLevel},
    {"IDS_FILE_FILTER", IDS_FILE_FILTER, text::FileFilter},
    {"IDS_COPY_OF", IDS_COPY_OF, text::CopyOf},
    {"IDS_REGISTER_TITLE", IDS_REGISTER_TITLE, text::RegisterTitle},
    {"IDS_BASIC_TITLE", IDS_BASIC_TITLE, text::BasicTitle},
    {"IDS_NAME_HAS_SEPARATOR", IDS_NAME_HAS_SEPARATOR, text::NameHasSeparator},
};

TEST(ResourceIds, AreTheSameInScriptAndCode) {
    for (const Numbers& numbers : All) {
        EXPECT_EQ(numbers.InScript, numbers.InCode) << numbers.Name;
    }
}

} // namespace
} // namespace pmx
