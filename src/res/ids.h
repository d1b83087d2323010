#pragma once

/// Names for the numbers of the resources, one namespace for each kind of resource. Any of them converts to
/// int. The resource compiler gets them as macros, made from this file: IDC_EDITOR_UP is control::EditorUp.
namespace pmx {

/// Dialog templates.
namespace dialog {
enum Id : int {
    Editor = 100,
    CreateFavorite = 101,
    IconPicker = 102,
    RegisterFavorite = 103,
    BasicList = 104,
};
} // namespace dialog

/// Bitmaps: two icon strips whose images correspond one to one, and the state images of the editor's list; below
/// them the same for screens of more than 96 dots per inch, numbered by the width of their images.
namespace bitmap {
enum Id : int {
    SmallIcons = 2000,  ///< 60 images of 16 by 16 pixels, transparent colour 192, 192, 192
    LargeIcons = 2001,  ///< 60 images of 32 by 32 pixels, transparent colour 192, 192, 192
    StateImages = 2002, ///< 20 images of 16 by 14 pixels, transparent colour 255, 255, 255
    Icons20 = 2020,
    Icons24 = 2024,
    Icons40 = 2040,
    Icons48 = 2048,
    Icons64 = 2064,
    States20 = 2120, ///< 20 by 18 pixels
    States24 = 2124, ///< 24 by 21 pixels
    States32 = 2132, ///< 32 by 28 pixels
};
} // namespace bitmap

/// Controls of the dialogs. The help note of a control is the string of the same number.
namespace control {
enum Id : int {
    Ok = 1,
    Cancel = 2,
    Separator = 3000,
    BasicNameLabel = 3003,
    BasicListLabel = 3004,
    CurrentIconLabel = 3006,
    EditorNameLabel = 3007,
    EditorListLabel = 3009,
    PickerLabel = 3010,
    CreateNameLabel = 3012,
    CreateLevelLine = 3013,
    CreateLevelLabel = 3014,
    CreatePrompt = 3015,
    EditorUp = 3016,
    EditorDown = 3017,
    EditorImport = 3018,
    EditorExport = 3020,
    EditorEdit = 3022,
    EditorDelete = 3023,
    EditorNew = 3024,
    ChangeIcon = 3025,
    EditorCopy = 3026,
    BasicDelete = 3027,
    CreateLevelDocument = 3028,
    CreateLevelSection = 3029,
    CreateLevelSheet = 3030,
    CreateLevelFace = 3031,
    CreateLevelPage = 3032,
    EditorList = 3034,
    PickerIcons = 3035,
    BasicList = 3037,
    RegisterIcon = 3038,
    BasicIcon = 3039,
    EditorIcon = 3040,
    BasicName = 3041,
    EditorName = 3042,
    CreateName = 3044,
    RegisterNameLabel = 3045,
    RegisterName = 3046,
    BasicUp = 3047,
    BasicDown = 3048,
    RegisterChangeIcon = 3049,
};
} // namespace control

/// Messages and other texts of the string table.
namespace text {
enum Id : int {
    EditorFavoriteUnreadable = 1000, ///< with the possible causes
    FavoriteInfoFailed = 1002,
    FileNotCreated = 1003,
    AttributeDialogMissing = 1004,
    NoFileName = 1005,
    ImportFailed = 1006,
    StandardNotEditable = 1007,
    AttributeDialogFailed = 1008,
    AttributeTableFailed = 1009,
    StandardNotOverwritable = 1010,
    ImportedNotOverwritable = 1011,
    RegisterStandardNotOverwritable = 1012,
    RegisterAskOverwrite = 1013,
    CreateAskOverwrite = 1014,
    OutOfMemory = 1015,
    RenameNameExists = 1016,
    NameRegistered = 1017,
    CreateNameMissing = 1018,
    RegisterNameMissing = 1019,
    BasicFavoriteUnreadable = 1020,
    ToolbarFull = 1021, ///< format with the limit: %d
    CreateNameExists = 1022,
    ColumnName = 1023,
    ColumnCategory = 1024,
    ColumnKind = 1025,
    ColumnToolbar = 1026,
    ToolbarEnabled = 1030,
    BasicColumnName = 1031,
    KindStandard = 1032,
    KindUser = 1033,
    LevelDocument = 1034,
    LevelSection = 1035,
    LevelSheet = 1036,
    LevelFace = 1037,
    LevelPage = 1038,
    EditorTitle = 1039,
    CreateTitleNew = 1040,
    CreateTitleGivenLevel = 1041, ///< save-as, copy and import
    FilePattern = 1042,           ///< not for people: the pattern of the file dialogs
    PickerTitleFor = 1047,        ///< format with the name of the favorite: %s
    PickerTitle = 1048,
    CreatePromptNew = 1051,
    CreatePromptGivenLevel = 1052, ///< save-as, copy and import
    FileFilter = 1053,             ///< name of the pattern in the file dialogs
    CopyOf = 1054,                 ///< format with the name of the favorite: %s
    RegisterTitle = 1055,
    BasicTitle = 1056,
    NameHasSeparator = 1057,
    AllFilesFilter = 1100, ///< name of the pattern of all files in the file dialogs
};
} // namespace text

} // namespace pmx
